#include "production/ProductionLines.h"

#include <cmath>

namespace gm {

const QStringList& productionColumnCaptions() {
    static const QStringList captions = {QStringLiteral("Commodity"),  QStringLiteral("Bag Type"),
                                         QStringLiteral("Bag Class"),  QStringLiteral("No Of Bags"),
                                         QStringLiteral("Bag Weight"), QStringLiteral("Weight"),
                                         QStringLiteral("Cost")};
    return captions;
}

const std::vector<LineField<ProductionLine>>& productionLineFields() {
    using L = ProductionLine;
    // A cost read from the stock keeps its digits on the screen, as it is saved as it stands.
    static const std::vector<LineField<L>> fields = {
        field(&L::commodity), field(&L::bagsType),  field(&L::bagsClass), field(&L::noOfBags),
        field(&L::bagWeight), field(&L::weight, 6), field(&L::cost, 10)};
    return fields;
}

bool recalcAfterBags(ProductionLine& l) {
    if (double(l.noOfBags) == 0 || double(l.bagWeight) == 0)
        return false;
    l.weight = double(l.noOfBags) * double(l.bagWeight);
    return true;
}

bool recalcAfterWeight(ProductionLine& l) {
    const double bags = l.noOfBags;
    const double divisor = bags < 1 ? 1.0 : bags;
    l.bagWeight = roundHalfEven(double(l.weight) / divisor, 6);
    return bags != 0 && double(l.bagWeight) != 0;
}

LineTotals totalsOf(const std::vector<ProductionLine>& lines) {
    LineTotals t;
    // Each cell as the grid shows it, so the totals are those of the footers.
    const auto& f = productionLineFields();
    for (const ProductionLine& l : lines) {
        t.bags += Currency::fromDouble(leadingNumber(f[PrdNoOfBags].show(l)));
        t.weight += Currency::fromDouble(leadingNumber(f[PrdWeight].show(l)));
        t.cost += Currency::fromDouble(leadingNumber(f[PrdCost].show(l)));
    }
    return t;
}

Balance ShowBalance(Currency consumed, Currency produced) {
    const qint64 d = consumed.raw() - produced.raw();
    const double c = consumed.toDouble();
    Balance b;
    if (d < 10000) {
        b.result = Currency::fromRaw(d < 0 ? -d : d);
        b.ratio = c > 0 ? roundHalfEven(b.result.toDouble() / c * 100.0, 2) : 0.0;
    } else {
        b.shortage = true;
        b.result = Currency::fromRaw(d);
        b.ratio = roundHalfEven(-b.result.toDouble() / c * 100.0, 2);
    }
    return b;
}

Currency ComputeProductCost(Currency consumedCost, double ratio) {
    const double a = consumedCost.toDouble();
    const double adjustment = std::fabs(ratio) * (a / 100.0);
    return Currency::fromDouble(ratio < 1 ? a + adjustment : a - adjustment);
}

Currency ExpensePerWeight(double productionExpense, double otherExpense, Currency consumedWeight) {
    return Currency::fromDouble((productionExpense + otherExpense) / consumedWeight.toDouble());
}

double ratioOf(const ProductionDay& day) {
    return ShowBalance(totalsOf(day.consumption).weight, totalsOf(day.production).weight).ratio;
}

std::optional<Currency> productUnitCost(const ProductionDay& day) {
    const LineTotals consumed = totalsOf(day.consumption);
    if (consumed.weight.raw() == 0)
        return std::nullopt;
    return ComputeProductCost(consumed.cost, day.ratio) +
           ExpensePerWeight(day.productionExpense, day.otherExpense, consumed.weight);
}

} // namespace gm
