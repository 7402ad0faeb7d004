#pragma once

#include "entry/LineRows.h"
#include "services/Numeric.h"
#include "services/Objection.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace gm {

// The columns of the authority letters grid, in the order they stand.
enum AuthorityColumn : int {
    ColPermitNo = 0,
    ColLetterDate = 1,
    ColCenter = 2,
    ColLetterBags = 3,
    ColLetterBagWeight = 4, // the weight of ONE bag in kg
    ColLetterWeight = 5,    // the weight the letter authorises in all
    AuthorityColumnCount = 6
};

const QStringList& authorityColumnCaptions();

// One authority letter: a permit addressed to a PR centre for so many bags and so much weight.
// The centre stands as the list shows it; its key is looked up when the payment is saved and
// comes back filled when it is loaded.
struct AuthorityLine {
    QString permitNo; // text: letters and leading zeros are part of it
    QDate date;
    QString centerName;
    Figure noOfBags;
    Figure bagWeight; // keeps its decimals
    Figure totalWeight;

    qint64 centerId = 0; // 0: none chosen
};

// How each column reads and writes a line, in column order.
const std::vector<LineField<AuthorityLine>>& authorityLineFields();

// ---- The payment's own figures ---------------------------------------------------------------

// The largest figures the fields can show; a result above them is not shown.
inline constexpr double kMaxTotalWeight = 10000000;
inline constexpr double kMaxValue = 999999999;

// Total weight of the purchase: bags times the weight of one bag, whole kilograms. Nothing when
// the product passes what the field can hold: the two entries are then emptied.
std::optional<double> dfcTotalWeight(double noOfBags, double bagWeight);
// Value of the goods: the total weight in units of `unitWeightKgs` at `ratePerUnit`, a whole
// amount. Nothing (an empty field) without a unit that weighs anything, or above the field's
// ceiling, so that no value is ever shown that the weight no longer gives.
std::optional<double> dfcValue(double totalWeight, double unitWeightKgs, double ratePerUnit);
// The bags bought with the goods, not rounded.
double dfcBagsValue(double ratePerBag, double bagsQty);
// Value and bags value, a whole amount.
double dfcGrossValue(double value, double bagsValue);
// Kilograms bought per unit of money, six decimals; 0 without a value.
double dfcCost(double totalWeight, double value);
// A letter's total weight: its bags times one bag's weight, whole kilograms.
double letterTotalWeight(double noOfBags, double bagWeight);

// The summed columns of the grid.
inline constexpr std::array<int, 3> kAuthorityFooterColumns = {ColLetterBags, ColLetterBagWeight,
                                                               ColLetterWeight};

// ---- Before a cell is committed --------------------------------------------------------------

inline const QString kCenterTwice = QStringLiteral("PR Center already exists");
inline const QString kLetterBagsRange =
    QStringLiteral("Quantity must be greater than 0 or less then 1000");
inline const QString kLetterWeightRange =
    QStringLiteral("Weight must be greater than 0 or less then 10000");

// "Please provide a valid " + the column's caption in lower case + "."
QString authorityRefusal(int column);

// The refusal of a typed cell of line `row`, or nothing. `centres` are the names of the PR
// centre list; `lines` are the grid's lines, so that one centre stands in one letter only.
std::optional<Objection> checkAuthorityCell(int row, int column, const QString& text,
                                            const QStringList& centres,
                                            const std::vector<AuthorityLine>& lines);

} // namespace gm
