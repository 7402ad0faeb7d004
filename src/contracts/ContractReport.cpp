#include "contracts/ContractReport.h"

#include "services/Numeric.h"

namespace gm {

namespace {

QString yesNo(bool on) {
    return on ? QStringLiteral("Yes") : QStringLiteral("No");
}

ReportField field(const char* label, const QString& value, const char* name) {
    return ReportField{QString::fromUtf8(label), value, QString::fromLatin1(name), false};
}

} // namespace

Report CrpPurchaseContract(const ContractRecord& r, const HostSettingsValues& settings) {
    const PurchaseContract& c = r.contract;
    Report report;
    report.name = QStringLiteral("CrpPurchaseContract");
    report.title = QStringLiteral("PURCHASE CONTRACT");
    report.setLetterhead(settings, false);
    report.headerColumns = 2;

    const QString unit = r.unitName.isEmpty()
                             ? QString()
                             : r.unitName + QStringLiteral(" (") +
                                   formatNumber(r.unitWeightInKgs, 0) + QLatin1Char(')');
    const QString brokerage =
        formatNumber(c.brokerage) +
        (c.isBrokeragePerBag ? QStringLiteral(" Per Bag") : QStringLiteral(" % age"));
    report.headerFields = {
        field("Contract ID", QString::number(c.contractId), "ContractId"),
        field("Contract Date", formatDate(c.contractDate), "ContractDate"),
        field("Seller", r.sellerName, "SellerName"),
        field("Broker", r.brokerName, "BrokerName"),
        field("Commodity", r.commodityName, "CommodityName"),
        field("Brokerage", brokerage, "Brokerage"),
        field("Contract Mode", c.contractMode, "ContractMode"),
        field("Quantity", formatNumber(c.quantity) + QLatin1Char(' ') + c.contractMode, "Quantity"),
        field("Units", unit, "UnitName"),
        field("Rate/Unit", formatNumber(c.ratePerUnit), "RatePerUnit"),
        field("/Bag Deduction", formatNumber(c.bagsDeduction), "BagsDeduction"),
        field("Other Deduct.", formatNumber(c.otherDeduction), "OtherDeduction"),
        field("Mode of Payment", c.modeOfPayment, "ModeOfPayment"),
        field("Payment On Site", yesNo(c.isPaymentOnSite), "IsPaymentOnSite"),
        field("Delivery Start Date", formatDate(c.deliveryStartDate), "DeliveryStartDate"),
        field("Delivery End Date", formatDate(c.deliveryEndDate), "DeliveryEndDate"),
        field("With Bags", yesNo(c.isWithBags), "IsWithBags"),
        field("Delivery in Mill", yesNo(c.isDeliveryInMill), "IsDeliveryInMill"),
        field("Contract Completed", yesNo(c.isCompleted), "IsCompleted"),
    };
    // Terms run to any length: as a free line they wrap instead of being cut to a column.
    report.notes = {QStringLiteral("Other Terms: ") + c.otherTerms};
    return report;
}

} // namespace gm
