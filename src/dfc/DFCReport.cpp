#include "dfc/DFCReport.h"

#include "services/Numeric.h"

namespace gm {

namespace {

ReportField field(const char* label, const QString& value, const char* name) {
    return ReportField{QString::fromUtf8(label), value, QString::fromLatin1(name), false};
}

} // namespace

Report CrpDFCPurchase(const DFCPayment* payment, const HostSettingsValues& settings) {
    Report r;
    r.name = QStringLiteral("CrpDFCPurchase");
    r.title = QStringLiteral("DFC PURCHASE");
    r.setLetterhead(settings, true);
    if (!payment)
        return r;

    const DFCPayment& p = *payment;
    r.headerColumns = 2;
    r.headerFields = {
        field("Payment Id", QString::number(p.paymentId), "PaymentId"),
        field("Payment Date", formatDate(p.paymentDate), "PaymentDate"),
        field("Commodity", p.commodityName, "CommodityName"),
        field("Bank", p.bankName, "AccountName"),
        field("Challan No", p.challanNo, "ChallanNo"),
        field("Unit", p.unitName, "UnitName"),
        field("No Of Bags", formatNumber(p.noOfBags), "NoOfBags"),
        field("Bag Weight", formatNumber(p.bagWeight), "BagWeight"),
        field("Total Weight", formatNumber(p.totalWeight), "TotalWeight"),
        field("Rate/Unit", formatFixed(p.ratePerUnit), "RatePerUnit"),
        field("Bag Type", p.bagsType, "BagsType"),
        field("Bag Class", p.bagsClass, "BagsClass"),
        field("Bags Qty", formatNumber(p.bagsQty), "BagsQty"),
        field("Rate Per Bag", formatFixed(p.pricePerBag), "PricePerBag"),
    };

    ReportTable t;
    t.caption = QStringLiteral("Authority Letters");
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    const QStringList& caps = authorityColumnCaptions();
    t.columns = {{caps[ColPermitNo], Qt::AlignLeft, 1.3}, {caps[ColLetterDate], Qt::AlignLeft, 1.0},
                 {caps[ColCenter], Qt::AlignLeft, 2.0},   {caps[ColLetterBags], right, 0.9},
                 {caps[ColLetterBagWeight], right, 0.9},  {caps[ColLetterWeight], right, 1.1}};
    double bags = 0, weight = 0;
    for (const AuthorityLine& l : p.letters) {
        t.rows.append({l.permitNo, l.date.isValid() ? formatDate(l.date) : QString(), l.centerName,
                       formatNumber(l.noOfBags), formatNumber(l.bagWeight),
                       formatNumber(l.totalWeight)});
        bags += l.noOfBags;
        weight += l.totalWeight;
    }
    t.totals = {QStringLiteral("Total"), QString(), QString(),
                formatNumber(bags),      QString(), formatNumber(weight)};
    r.tables.append(t);

    r.summaryFields = {
        field("Value", formatFixed(p.value), "TTLValueWheet"),
        field("Bags Value", formatFixed(p.bagsValue), "TTLValueBags"),
        field("Gross Value", formatFixed(p.grossValue()), "GrossValue"),
        field("Letters", QString::number(p.letters.size()), "Letters"),
    };
    return r;
}

} // namespace gm
