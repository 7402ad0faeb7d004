#pragma once

#include "entry/LineRows.h"
#include "services/Numeric.h"
#include "services/Objection.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace gm {

// The columns of an arrival's vehicle grid, in the order they stand.
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

// One vehicle of an arrival: what the grid shows, what the checks read and what the store
// keeps. Names stand as the lists show them; their keys are looked up when the arrival is
// saved, and come back filled when it is loaded.
struct ArrivalLine {
    QString vehicleNo;
    QString bagsClass;
    QString bagsType;
    Figure noOfBags;  // "Qty"
    Figure bagWeight; // "Bags": the weight of ONE bag in kg, not a count
    Figure gross;
    Figure bagsDeduction; // "Per Bag"
    Figure otherDeduction;
    Figure netWeight; // as the screen works it out; the store computes what it keeps
    QString driverName;
    QString biltyNo;
    Figure rateUnit;
    Figure bagsRate;
    QString rateUnitName; // column "RateUnitId" shows the unit's name, despite its caption
    Figure weightInKgs;   // of the rate unit: divides the rate into a price per kg

    qint64 bagsClassId = 0;
    qint64 bagsTypeId = 0;
    qint64 rateUnitId = 0; // 0: none
};

// A rate unit as the unit list shows it ("Maund (40)") with its kilograms.
struct RateUnitInfo {
    QString name;
    double weightInKgs = 0;
};

// Recomputation after a change of Qty or Bags (per-bag weight). When both are above zero the
// gross and a provisional net are written and the commodity's rate unit goes into the line;
// then RecalcLineNet has the last word on the net weight.
void recalcAfterQtyOrBags(ArrivalLine& line, const std::optional<RateUnitInfo>& commodityUnit);
// Recomputation after a gross weight typed by hand: the per-bag weight follows from it. With
// no quantity there is nothing to divide by and the per-bag weight is left alone.
void recalcAfterGross(ArrivalLine& line);
// After the rate unit's name was chosen: its kilograms from the loaded unit list.
void applyRateUnit(ArrivalLine& line, const std::optional<RateUnitInfo>& unit);
// The net weight that stays on the screen: Gross - (Other + Per Bag x Qty), unrounded.
// A line without gross keeps whatever net it had.
void RecalcLineNet(ArrivalLine& line);

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

// How each column reads and writes a line, in column order: the grid binds these, and a typed
// text is checked through them as the field it will become.
const std::vector<LineField<ArrivalLine>>& arrivalLineFields();

// The refusal of a line's field, whether typed or written by code, or nothing.
std::optional<Objection> checkArrivalField(const ArrivalLine& line, int column,
                                           const ArrivalCellContext& context);
// The refusal of a typed cell, or nothing. A quantity or weight over a centre's remaining quota
// is not refused here: see exceedsQuota.
std::optional<Objection> checkArrivalCell(int column, const QString& text,
                                          const ArrivalCellContext& context);
// Bags over the centre's remaining bags (or none): a warning the clerk may pass, since the
// quota is the centre's, not a physical limit.
bool exceedsQuota(int column, const QString& text, const ArrivalCellContext& context);
// "Please provide a valid " + the column's caption in lower case + "."
QString standardRefusal(int column);
// That refusal, standing on the line's cell in the arrival grid.
Objection lineRefusal(int row, int column);

inline const QString kQuotaNotice =
    QStringLiteral("Bags Qty of given BagsType can not be greater than DFC Purchase");
inline const QString kQuotaQuestion =
    QStringLiteral("Entered no of bags exceed from remaining bags. Do you want to continue?");

} // namespace gm
