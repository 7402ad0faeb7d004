#include "invoices/InvoiceReport.h"

#include "services/Numeric.h"

namespace gm {

namespace {

ReportField field(const char* label, const QString& value, const char* name) {
    return ReportField{QString::fromUtf8(label), value, QString::fromLatin1(name), false};
}

QString money(double value) {
    return formatNumber(value, 2);
}

} // namespace

InvoicePrintFigures printFigures(const InvoiceDocument& d, const InvoiceFigures& f) {
    InvoicePrintFigures p;
    p.unloading = d.unloading.total;
    p.freight = d.freight.total;
    p.expense = d.expense.total;
    p.specialDiscount = d.specialDiscount;
    p.brokerage = f.brokerage;
    p.commPerMound = d.commPerMound;
    p.commValue = f.totals.commValue;
    p.whTaxRatio = d.whTaxRatio;
    p.whTaxValue = f.totals.whTaxValue;
    p.netAmount = f.totals.netAmount;
    return p;
}

Report CrpPurchase(const InvoicePrint* saved, const InvoicePrintFigures& shown,
                   bool hidePreviousBalance, const HostSettingsValues& settings) {
    Report r;
    r.name = QStringLiteral("CrpPurchase");
    r.title = QStringLiteral("PURCHASE INVOICE");
    r.setLetterhead(settings, true);
    if (!saved || saved->lines.empty())
        return r;

    const InvoiceDocument& d = saved->invoice;
    const QString brokerage =
        d.brokerId.isEmpty()
            ? QString()
            : formatNumber(d.brokerageRate) +
                  (d.isBrokeragePerBag ? QStringLiteral(" Per Bag") : QStringLiteral(" %"));
    r.headerFields = {
        field("Purchase ID", QString::number(d.purchaseId), "PurchaseId"),
        field("Purchase Date", formatDate(d.purchaseDate), "PurchaseDate"),
        field("Seller", d.sellerName, "SellerName"),
        field("Contract ID", d.contractId ? QString::number(d.contractId) : QString(),
              "ContractId"),
        field("Broker", d.brokerName, "BrokerName"),
        field("Brokerage Rate", brokerage, "Brokerage"),
    };

    ReportTable t;
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    t.columns = {{QStringLiteral("Arr. ID"), right, 0.7},
                 {QStringLiteral("Arr. Date"), Qt::AlignLeft, 1.3},
                 {QStringLiteral("Vehicle No"), Qt::AlignLeft, 1.4},
                 {QStringLiteral("Commodity"), Qt::AlignLeft, 1.5},
                 {QStringLiteral("Bags"), right, 0.7},
                 {QStringLiteral("Gross Wt"), right, 1.0},
                 {QStringLiteral("Deduction"), right, 1.0},
                 {QStringLiteral("Net Weight"), right, 1.1},
                 {QStringLiteral("Rate"), right, 0.9},
                 {QStringLiteral("Unit"), Qt::AlignLeft, 1.2},
                 {QStringLiteral("Bag Rate"), right, 0.8},
                 {QStringLiteral("Value"), right, 1.1}};
    double bags = 0, gross = 0, deduction = 0, net = 0, value = 0;
    for (const InvoicePrintLine& p : saved->lines) {
        const InvoiceLine& l = p.line;
        const double lineDeduction = p.bagsDeduction + p.otherDeduction;
        t.rows.append({QString::number(l.arrivalId), formatDate(l.arrivalDate), l.vehicleNo,
                       l.commodity, formatNumber(l.bags), formatNumber(p.grossWeight, 2),
                       formatNumber(lineDeduction, 2), formatNumber(l.netWeight, 2),
                       l.rate.toText(4), l.unit, l.bagRate.toText(4), money(l.value)});
        bags += l.bags;
        gross += p.grossWeight;
        deduction += lineDeduction;
        net += l.netWeight;
        value += l.value;
    }
    t.totals = {QStringLiteral("Total"),
                QString(),
                QString(),
                QString(),
                formatNumber(bags),
                formatNumber(gross, 2),
                formatNumber(deduction, 2),
                formatNumber(net, 2),
                QString(),
                QString(),
                QString(),
                money(value)};
    r.tables.append(t);

    // The balance as the saved invoice holds it, or nothing when it is not to be printed.
    const double previous = hidePreviousBalance ? 0.0 : d.previousCredit;
    r.summaryFields = {
        field("Gross Total", money(value), "GrossValue"),
        field("Freight", money(shown.freight), "Freight"),
        field("Unloading", money(shown.unloading), "Unloading"),
        field("Expense", money(shown.expense), "Expense"),
        field("Commission /Mound", formatNumber(shown.commPerMound), "CommPerMound"),
        field("Commission", money(shown.commValue), "CommValue"),
        field("WHTax %", formatNumber(shown.whTaxRatio), "WHTaxRatio"),
        field("WHTax", money(shown.whTaxValue), "WHTaxValue"),
        field("Special Discount", money(shown.specialDiscount), "SpecialDiscount"),
        field("Net Value", money(shown.netAmount), "NetAmount"),
        field("Previous Bal", money(previous), "PreviousCredit1"),
        field("Total Payable", money(roundHalfEven(shown.netAmount + previous, 0)), "TotalPayable"),
        field("Paid Amount", money(d.paidAmount), "PaidAmount"),
        field("Brokerage", money(shown.brokerage), "BrokerageAmount"),
    };
    r.setSuppressed(QStringLiteral("PreviousCredit1"), hidePreviousBalance);
    return r;
}

} // namespace gm
