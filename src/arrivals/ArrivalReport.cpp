#include "arrivals/ArrivalReport.h"

#include "arrivals/ArrivalLines.h"
#include "services/Numeric.h"

namespace gm {

Report CrpArrival(const ArrivalDocument* arrival, const HostSettingsValues& settings) {
    Report r;
    r.name = QStringLiteral("CrpArrival");
    r.title = QStringLiteral("ARRIVAL");
    r.setLetterhead(settings, true);
    if (!arrival || arrival->lines.empty())
        return r;

    const ArrivalDocument& a = *arrival;
    r.headerFields = {
        {QStringLiteral("Arrival Id"), QString::number(a.arrivalId), QStringLiteral("ArrivalId")},
        {QStringLiteral("Arrival Date"), formatDate(a.arrivalDate), QStringLiteral("ArrivalDate")},
        {QStringLiteral("Party"), a.sellerName, QStringLiteral("PartyName")},
        {QStringLiteral("Commodity"), a.commodityName, QStringLiteral("CommodityName")},
        {QStringLiteral("Contract"), a.contractId ? QString::number(a.contractId) : QString(),
         QStringLiteral("ContractId")},
        {QStringLiteral("PR Center"), a.centerName, QStringLiteral("CenterName")},
        {QStringLiteral("Permit No"), a.permitNo, QStringLiteral("PermitNo")},
    };

    ReportTable t;
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    t.columns = {{QStringLiteral("Vehicle No"), Qt::AlignLeft, 1.4},
                 {QStringLiteral("Class"), Qt::AlignLeft, 1.0},
                 {QStringLiteral("Type"), Qt::AlignLeft, 1.0},
                 {QStringLiteral("Bags"), right, 0.8},
                 {QStringLiteral("Bag Wt"), right, 0.8},
                 {QStringLiteral("Gross"), right, 1.0},
                 {QStringLiteral("Ded/Bag"), right, 0.8},
                 {QStringLiteral("Other Ded"), right, 0.9},
                 {QStringLiteral("Net Weight"), right, 1.1},
                 {QStringLiteral("Driver Name"), Qt::AlignLeft, 1.4},
                 {QStringLiteral("Bilty No"), Qt::AlignLeft, 1.0}};
    double bags = 0, gross = 0, perBag = 0, other = 0, net = 0;
    for (const ArrivalLine& l : a.lines) {
        const double lineGross = l.noOfBags * l.bagWeight;
        const double lineNet =
            storedNetWeight(l.noOfBags, l.bagWeight, l.bagsDeduction, l.otherDeduction);
        t.rows.append({l.vehicleNo, l.bagsClass, l.bagsType, formatNumber(l.noOfBags),
                       formatNumber(l.bagWeight), formatNumber(lineGross, 2),
                       formatNumber(l.bagsDeduction), formatNumber(l.otherDeduction),
                       formatNumber(lineNet, 2), l.driverName, l.biltyNo});
        bags += l.noOfBags;
        gross += lineGross;
        perBag += l.noOfBags * l.bagsDeduction;
        other += l.otherDeduction;
        net += lineNet;
    }
    t.totals = {QStringLiteral("Total"),
                QString(),
                QString(),
                formatNumber(bags),
                QString(),
                formatNumber(gross, 2),
                formatNumber(perBag, 2),
                formatNumber(other, 2),
                formatNumber(net, 2),
                QString(),
                QString()};
    r.tables.append(t);
    r.summaryFields = {
        {QStringLiteral("Vehicles"), QString::number(a.lines.size()), QStringLiteral("Vehicles")},
        {QStringLiteral("Total Bags"), formatNumber(bags), QStringLiteral("TotalBags")},
        {QStringLiteral("Gross Weight"), formatNumber(gross, 2), QStringLiteral("GrossWeight")},
        {QStringLiteral("Deduction"), formatNumber(perBag + other, 2), QStringLiteral("Deduction")},
        {QStringLiteral("Net Weight"), formatNumber(net, 2), QStringLiteral("NetWeight")},
    };
    return r;
}

} // namespace gm
