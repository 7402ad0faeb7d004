#pragma once

#include "entry/LineRows.h"
#include "services/Numeric.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace gm {

// The columns of the consumption and the production grid, the same in both, in the order
// they stand. Positions are what the code uses; the captions also name the columns in the
// clerk's messages.
enum ProductionColumn : int {
    PrdCommodity = 0,
    PrdBagType = 1,
    PrdBagClass = 2,
    PrdNoOfBags = 3,
    PrdBagWeight = 4,
    PrdWeight = 5,
    PrdCost = 6,
    ProductionColumnCount = 7
};

// "Commodity", "Bag Type", "Bag Class", "No Of Bags", "Bag Weight", "Weight", "Cost".
const QStringList& productionColumnCaptions();

// One line of a day's consumption or production. Names stand as the lists show them; their
// keys are looked up when the day is saved and come back filled when it is loaded.
struct ProductionLine {
    QString commodity;
    QString bagsType;
    QString bagsClass;
    Figure noOfBags;
    Figure bagWeight; // of one bag
    Figure weight;    // bags x bag weight, or typed by hand; not stored
    Figure cost;      // per unit of weight

    qint64 commodityId = 0;
    qint64 bagsTypeId = 0;
    qint64 bagsClassId = 0;
};

// How each column reads and writes a line, in column order.
const std::vector<LineField<ProductionLine>>& productionLineFields();

// After bags or bag weight changed: with both non-zero the weight becomes their product,
// unrounded, and true says the balance is to follow. With either zero the weight stays as it
// was.
bool recalcAfterBags(ProductionLine& line);
// After a weight typed by hand: the bag weight follows from it, divided by the bags, or by 1
// when there are fewer than one bag, to six decimals; the bags are never touched. True when
// bags and bag weight are both non-zero, so the balance is to follow.
bool recalcAfterWeight(ProductionLine& line);

// The footers of a grid: each column summed cell by cell to four decimals, as the grid shows
// its cells.
struct LineTotals {
    Currency bags;
    Currency weight;
    Currency cost;
};
LineTotals totalsOf(const std::vector<ProductionLine>& lines);

// The day's gain or shortage: consumed weight C against produced weight P.
inline const QString kGain = QStringLiteral("Gain");
inline const QString kShortage = QStringLiteral("Shortage");
struct Balance {
    bool shortage = false;
    Currency result;  // the size of the difference: never negative on a gain
    double ratio = 0; // in percent of C, two decimals; negative for a shortage
    QString status() const { return shortage ? kShortage : kGain; }
    QString resultText() const { return result.toString(); }
    QString ratioText() const { return formatNumber(ratio, 2); }
};
// The threshold is 1, not 0: a difference below 1 in the mill's disfavour still reads as a
// gain, and its size as positive. A gain against no consumption has ratio 0.
Balance ShowBalance(Currency consumed, Currency produced);

// The unit cost of every product of the day, before expenses: the sum A of the consumption
// lines' costs, moved by the ratio R as a percentage of A. Below a ratio of 1 the cost rises,
// from 1 upward it falls: a shortage raises it, a gain of 1 percent or more lowers it, and a
// smaller gain raises it as well. The weight of a product line plays no part.
Currency ComputeProductCost(Currency consumedCost, double ratio);
// The day's expenses spread over each unit of weight consumed, to four decimals. The weight
// must not be zero.
Currency ExpensePerWeight(double productionExpense, double otherExpense, Currency consumedWeight);

// A day's document under its key, date and process.
struct ProductionDay {
    QDate productionDate;
    qint64 processId = 0;
    Figure factoryTime; // running hours; blank or 0 is kept as unknown
    QString remarks;
    Figure productionExpense;
    Figure otherExpense;
    bool addBardana = false; // the output's bags are added in: the mill's own bags are not used
    // The ratio the products are costed with: the one the screen shows.
    double ratio = 0;
    std::vector<ProductionLine> consumption;
    std::vector<ProductionLine> production;
};

// The ratio the day's lines give, as the screen would show it.
double ratioOf(const ProductionDay& day);
// The cost every product line of the day is saved with: ComputeProductCost plus the expenses
// per weight consumed; nothing when the consumption weighs nothing.
std::optional<Currency> productUnitCost(const ProductionDay& day);

} // namespace gm
