#include "invoices/InvoiceLines.h"

#include "invoices/PurchaseInvoice.h"

#include <cmath>

namespace gm {

const QStringList& invoiceColumnCaptions() {
    static const QStringList captions = {
        QStringLiteral("S.N"),         QStringLiteral("Arr. ID"),     QStringLiteral("Arr. Date"),
        QStringLiteral("Vehicle No"),  QStringLiteral("Commodity"),   QStringLiteral("Bag Type"),
        QStringLiteral("Bags"),        QStringLiteral("Net Weight"),  QStringLiteral("Rate"),
        QStringLiteral("Bag Rate"),    QStringLiteral("Unit"),        QStringLiteral("Value"),
        QStringLiteral("WeightInKgs"), QStringLiteral("CommodityId"), QStringLiteral("BagWeight"),
        QStringLiteral("SavingBags"),  QStringLiteral("SWeight")};
    return captions;
}

namespace {

// A whole number of the line: a key or the running number, blank while it is 0.
template <class T> LineField<InvoiceLine> wholeField(T InvoiceLine::*member) {
    return {[member](const InvoiceLine& l) {
                return l.*member != 0 ? QString::number(l.*member) : QString();
            },
            [member](InvoiceLine& l, const QString& text) {
                l.*member = T(std::llround(leadingNumber(text)));
            }};
}

LineField<InvoiceLine> dateField(QDate InvoiceLine::*member) {
    return {[member](const InvoiceLine& l) { return formatDate(l.*member); },
            [member](InvoiceLine& l, const QString& text) {
                l.*member = QDate::fromString(text.trimmed(), QLatin1String(kDateFormat));
            }};
}

} // namespace

const std::vector<LineField<InvoiceLine>>& invoiceLineFields() {
    using L = InvoiceLine;
    static const std::vector<LineField<L>> fields = {wholeField(&L::serialNo),
                                                     wholeField(&L::arrivalId),
                                                     dateField(&L::arrivalDate),
                                                     field(&L::vehicleNo),
                                                     field(&L::commodity),
                                                     field(&L::bagsType),
                                                     field(&L::bags),
                                                     field(&L::netWeight),
                                                     field(&L::rate),
                                                     field(&L::bagRate),
                                                     field(&L::unit),
                                                     field(&L::value),
                                                     field(&L::weightInKgs),
                                                     wholeField(&L::commodityId),
                                                     field(&L::bagWeight),
                                                     field(&L::savingBags),
                                                     field(&L::sWeight)};
    return fields;
}

bool isPriced(const InvoiceLine& l) {
    return l.rate > 0 && l.weightInKgs > 0;
}

void applyRateRule(InvoiceLine& l) {
    if (isPriced(l)) {
        l.value = roundHalfEven(l.netWeight / l.weightInKgs * l.rate + l.bags * l.bagRate, 0);
        l.savingBags = l.bags;
        l.sWeight = l.netWeight;
    } else {
        l.value = Figure();
        l.savingBags = 0.0;
        l.sWeight = Figure();
    }
}

bool applyUnitRule(InvoiceLine& l, double weightInKgs) {
    if (!(weightInKgs > 0))
        return false;
    l.weightInKgs = weightInKgs;
    l.value = roundHalfEven(l.netWeight / weightInKgs * l.rate, 2) + l.bags * l.bagRate;
    return true;
}

bool applyCellRule(InvoiceLine& l, int column, double unitWeightInKgs) {
    if (column == InvRate || column == InvBagRate) {
        applyRateRule(l);
        return true;
    }
    if (column == InvUnit)
        return applyUnitRule(l, unitWeightInKgs);
    return true;
}

InvoiceFooters invoiceFooters(const std::vector<InvoiceLine>& lines) {
    // Summed as the grid shows the cells, each taken to four decimals, in fixed point.
    const auto& fields = invoiceLineFields();
    auto cell = [&](const InvoiceLine& l, int column) {
        return Currency::fromDouble(leadingNumber(fields[size_t(column)].show(l)));
    };
    InvoiceFooters f;
    for (const InvoiceLine& l : lines) {
        f.value += cell(l, InvValue);
        f.bags += cell(l, InvSavingBags);
        f.netWeight += cell(l, InvSWeight);
    }
    return f;
}

void chargeTotalTyped(ChargePair& pair, Charge charge, double footerBags, double currentLineBags) {
    if (pair.total == 0) {
        pair.perBag = Figure();
        pair.perBagLocked = false;
        return;
    }
    const double tested = charge == Charge::Unloading ? footerBags : currentLineBags;
    if (tested == 0 || footerBags == 0)
        return;
    pair.perBag = roundHalfEven(pair.total / footerBags, 2);
    pair.perBagLocked = true;
}

void chargePerBagTyped(ChargePair& pair, double footerBags) {
    if (pair.perBag == 0) {
        pair.total = Figure();
        pair.totalLocked = false;
        return;
    }
    if (footerBags == 0)
        return;
    pair.total = chargeTotalOf(pair.perBag, footerBags);
    pair.totalLocked = true;
}

double chargeTotalOf(double perBag, double footerBags) {
    return roundHalfEven(perBag * footerBags, 0);
}

double ComputeBrokerage(const std::vector<InvoiceLine>& lines, double grossValue, double rate,
                        bool perBag) {
    if (!perBag)
        return RoundValue(grossValue / 100 * rate, 0);
    double sum = 0;
    for (const InvoiceLine& l : lines)
        if (l.netWeight > 0)
            sum += rate * l.bags;
    return roundHalfEven(sum, 0);
}

InvoiceTotals ComputeTotals(const TotalsInput& in) {
    InvoiceTotals t;
    t.commValue = roundHalfEven(in.netWeightFooter / kMoundKgs * in.commPerMound, 2);
    t.whTaxValue = roundHalfEven(t.commValue / 100 * in.whTaxRatio, 2);
    t.netAmount = roundHalfEven(in.grossValue + in.freight + in.expense - in.specialDiscount -
                                    in.unloading + (t.commValue - t.whTaxValue),
                                2);
    t.totalPayable = roundHalfEven(t.netAmount + in.previousCredit, 0);
    return t;
}

double previousBalance(double debit) {
    return roundHalfEven(debit, 0);
}

double previousCreditShown(double balance) {
    const double shown = balance >= 1 ? -balance : std::fabs(balance);
    return shown == 0 ? 0.0 : shown;
}

namespace {

double quantity(double q) {
    return roundHalfEven(q, 4);
}

} // namespace

double costAfterReceipt(double stockQty, double stockCost, double lotQty, double lotCost) {
    const double total = quantity(stockQty);
    const double lot = quantity(lotQty);
    const double before = quantity(total - lot);
    if (before < 0 || !(total > 0))
        return lotCost;
    return (lotCost * lot + stockCost * before) / total;
}

CostReversal costAfterReversal(double stockQty, double stockCost, double lotQty, double lotCost) {
    const double total = quantity(stockQty);
    const double lot = quantity(lotQty);
    const double rest = quantity(total - lot);
    if (rest < 0)
        return {stockCost, false,
                QStringLiteral("The stock without the lot would be below 0: cost left as it was")};
    if (rest == 0)
        return {0.0, stockCost != 0, QStringLiteral("No stock remains without the lot: cost 0")};
    const double kept = stockCost * total;
    const double taken = lotCost * lot;
    double value = kept - taken;
    // Costs are kept to ten decimals: a lot taken out of the stock it alone made up leaves
    // a crumb of that rounding either side of nothing, which is nothing.
    if (value < 0 && -value <= 1e-9 * (total + std::fabs(kept) + std::fabs(taken)))
        value = 0;
    if (value < 0)
        return {stockCost, false,
                QStringLiteral("The cost without the lot would be below 0: cost left as it was")};
    const double cost = value / rest;
    return {cost, cost != stockCost, QString()};
}

double invoiceLineCost(const InvoiceLine& l) {
    return l.netWeight > 0 ? l.value / l.netWeight : 0.0;
}

InvoiceFigures computeInvoice(const InvoiceDocument& doc) {
    InvoiceFigures f;
    f.footers = invoiceFooters(doc.lines);
    f.grossValue = f.footers.value.toDouble();
    f.brokerage =
        ComputeBrokerage(doc.lines, f.grossValue, doc.brokerageRate, doc.isBrokeragePerBag);
    TotalsInput in;
    in.netWeightFooter = f.footers.netWeight.toDouble();
    in.grossValue = f.grossValue;
    in.commPerMound = doc.commPerMound;
    in.whTaxRatio = doc.whTaxRatio;
    in.freight = doc.freight.total;
    in.unloading = doc.unloading.total;
    in.expense = doc.expense.total;
    in.specialDiscount = doc.specialDiscount;
    in.previousCredit = doc.previousCredit;
    f.totals = ComputeTotals(in);
    return f;
}

} // namespace gm
