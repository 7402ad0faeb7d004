#pragma once

#include "services/Numeric.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace gm {

// The columns of an arrival's vehicle grid. Cells are kept as the clerk sees them, as text;
// every number is read back with leadingNumber.
enum ArrivalColumn : int {
    ColVehicleNo = 0,
    ColClass = 1,
    ColType = 2,
    ColQty = 3,
    ColBags = 4, // the weight of ONE bag in kg, not a count
    ColGross = 5,
    ColPerBag = 6,
    ColOther = 7,
    ColNetWeight = 8,
    ColDriverName = 9,
    ColBiltyNo = 10,
    ColRateUnit = 11,
    ColBagRate = 12,
    ColRateUnitId = 13, // the unit's shown name, despite the caption
    ColWeighInKgs = 14,
    ArrivalColumnCount = 15
};

const QStringList& arrivalColumnCaptions();
// Group headings over the columns: empty, "Bags", "Weight", "Deduction", empty.
struct ColumnGroup {
    QString heading;
    int first;
    int last;
};
const std::vector<ColumnGroup>& arrivalColumnGroups();

using ArrivalRow = QStringList; // ArrivalColumnCount cells
ArrivalRow emptyArrivalRow();

// A rate unit as the unit list shows it ("Maund (40)") with its kilograms.
struct RateUnitInfo {
    QString name;
    double weightInKgs = 0;
};

// Recomputation after a change of Qty or Bags (per-bag weight). When both are above zero the
// gross and a provisional net are written and the commodity's rate unit goes into the line;
// then RecalcLineNet has the last word on the net weight.
void recalcAfterQtyOrBags(ArrivalRow& row, const std::optional<RateUnitInfo>& commodityUnit);
// Recomputation after a gross weight typed by hand: the per-bag weight follows from it. With
// no quantity there is nothing to divide by and the per-bag weight is left alone.
void recalcAfterGross(ArrivalRow& row);
// After the rate unit's name was chosen: its kilograms from the loaded unit list.
void applyRateUnit(ArrivalRow& row, const std::optional<RateUnitInfo>& unit);
// The net weight that stays on the screen: Gross - (Other + Per Bag x Qty), unrounded.
// A line without gross keeps whatever net it had.
void RecalcLineNet(ArrivalRow& row);

// What ArrivalsBody.NetWeight holds, computed from the stored fields, whatever the grid shows.
double storedNetWeight(double noOfBags, double bagWeight, double bagsDeduction,
                       double otherDeduction);
// Price per kilogram of a line: the rate per unit over the unit's kilograms, 0 when either is
// missing.
double lineCostPerKg(double rateUnit, double weightInKgs);

// The summed columns; each footer is SumGridColumn of its column over the rows.
inline constexpr std::array<int, 6> kArrivalFooterColumns = {ColQty,    ColBags,  ColGross,
                                                             ColPerBag, ColOther, ColNetWeight};

// ---- Before a cell is committed -------------------------------------------------------------

struct ArrivalCellContext {
    bool hasCenter = false; // a PR centre is chosen: the DFC quota applies
    QString remainingBags;  // as the remaining fields show them
    QString remainingWeight;
    QStringList bagClasses; // names of the bag class list
    QStringList bagTypes;   // names of the bag type list
};

struct ArrivalCellVerdict {
    enum Kind {
        Accept,
        Refuse,  // information box with `message`, title "Alert"; the edit stays in the cell
        AskQuota // the two quota boxes: a notice, then Yes/No; No refuses
    };
    Kind kind = Accept;
    QString message;
};

ArrivalCellVerdict checkArrivalCell(int column, const QString& text,
                                    const ArrivalCellContext& context);
// "Please provide a valid " + the column's caption in lower case + "."
QString standardRefusal(int column);

inline const QString kQuotaNotice =
    QStringLiteral("Bags Qty of given BagsType can not be greater than DFC Purchase");
inline const QString kQuotaQuestion =
    QStringLiteral("Entered no of bags exceed from remaining bags. Do you want to continue?");

} // namespace gm
