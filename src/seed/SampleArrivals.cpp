#include "seed/SampleArrivals.h"

#include "arrivals/ArrivalStore.h"
#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "seed/SampleDFC.h"

#include <QDate>

namespace gm {

namespace {

const QString kDfcAccount = QStringLiteral("6000001");
constexpr int kWheatLocal = 1;
constexpr int kWheatGovernment = 2;
constexpr int kMound = 2;
constexpr int kJute100 = 2;
constexpr int kPP100 = 1;
constexpr int kNew = 1;
constexpr int kUsed = 2;

ArrivalLine line(const char* vehicle, double bags, double bagWeight, double perBag, double other,
                 int type, int cls, const char* driver, const char* bilty) {
    ArrivalLine l;
    l.vehicleNo = QString::fromUtf8(vehicle);
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    l.bagsDeduction = perBag;
    l.otherDeduction = other;
    l.bagsTypeId = type;
    l.bagsClassId = cls;
    l.driverName = QString::fromUtf8(driver);
    l.biltyNo = QString::fromUtf8(bilty);
    return l;
}

void priced(const Conn& conn, ArrivalDocument& a, double ratePerUnit, double bagsRate,
            qint64 unit) {
    const double kgs = toDouble(
        scalar(conn, QStringLiteral("SELECT WeightInKgs FROM Units WHERE UnitId = ?"), {unit}));
    for (ArrivalLine& l : a.lines) {
        l.rateUnit = ratePerUnit;
        l.bagsRate = bagsRate;
        l.rateUnitId = unit;
        l.weightInKgs = kgs;
    }
}

// A contract for the sample to arrive against, when the contracts' own sample left none free.
qint64 freeContract(const Conn& conn) {
    const qint64 free =
        toInt(scalar(conn, QStringLiteral("SELECT MIN(ContractId) FROM PContracts WHERE "
                                          "ContractId NOT IN (SELECT COALESCE(ContractId, 0) "
                                          "FROM Arrivals)")));
    if (free != 0)
        return free;
    const qint64 id = toInt(
        scalar(conn, QStringLiteral("SELECT COALESCE(MAX(ContractId), 0) + 1 FROM PContracts")));
    execute(
        conn,
        QStringLiteral("INSERT INTO PContracts (ContractId, ContractDate, CommodityId, PartyId, "
                       "RateUnitId, ContractMode, Quantity, RatePerUnit, IsWithBags, "
                       "BagsDeduction, OtherDeduction, IsPosted) "
                       "VALUES (?, ?, ?, '6100003', ?, 'Bags', 1000, 3950, 0, 0.5, 10, 0)"),
        {id, QDate::currentDate().addDays(-20), kWheatLocal, kMound});
    return id;
}

struct Permit {
    qint64 centerId = 0;
    QString permitNo;
    qint64 commodityId = 0;
};

// A permit to arrive under: the first letter the sample holds, after the sample's own DFC
// payments when it holds none.
Permit samplePermit(const Conn& conn) {
    Query q(conn,
            QStringLiteral("SELECT AuthorityLetters.CenterId, AuthorityLetters.PermitNo, "
                           "DFCPayments.CommodityId FROM AuthorityLetters INNER JOIN "
                           "DFCPayments ON AuthorityLetters.PaymentId = DFCPayments.PaymentId "
                           "WHERE AuthorityLetters.CenterId IS NOT NULL "
                           "ORDER BY AuthorityLetters.PaymentId, AuthorityLetters.PermitNo"));
    q.exec();
    if (q.next())
        return {toInt(q.value(0)), toText(q.value(1)), toInt(q.value(2))};

    loadSampleDFCPayments(conn);
    return samplePermit(conn);
}

} // namespace

void loadSampleArrivals(const Conn& conn) {
    ArrivalStore store(conn);
    const QDate today = QDate::currentDate();

    ArrivalDocument free;
    free.arrivalId = store.nextArrivalId();
    free.arrivalDate = today.addDays(-6);
    free.commodityId = kWheatLocal;
    free.sellerId = QStringLiteral("6100002");
    free.lines = {line("LES-4471", 120, 100, 0.5, 15, kJute100, kNew, "Muhammad Boota", "B-1182"),
                  line("LHR-2290", 95, 99.5, 0.5, 0, kJute100, kUsed, "Ghulam Rasool", "")};
    priced(conn, free, 3850, 0, kMound);
    store.save(free, true);

    const qint64 contractId = freeContract(conn);
    if (const auto terms = store.contractDefaults(contractId)) {
        ArrivalDocument byContract;
        byContract.arrivalId = store.nextArrivalId();
        byContract.arrivalDate = today.addDays(-4);
        byContract.contractId = contractId;
        byContract.commodityId = terms->commodityId;
        byContract.sellerId = terms->sellerId;
        byContract.lines = {
            line("OKR-1102", 150, 100, 0.5, 10, kJute100, kNew, "Sajjad Hussain", "T-552"),
            line("OKR-1187", 150, 100.25, 0.5, 10, kJute100, kNew, "Nadeem Akhtar", "T-553"),
            line("SWL-908", 80, 100, 1, 5, kJute100, kUsed, "", "")};
        const double rate = toDouble(
            scalar(conn, QStringLiteral("SELECT RatePerUnit FROM PContracts WHERE ContractId = ?"),
                   {contractId}));
        priced(conn, byContract, rate, 0, kMound);
        store.save(byContract, true);
    }

    const Permit permit = samplePermit(conn);
    ArrivalDocument viaCentre;
    viaCentre.arrivalId = store.nextArrivalId();
    viaCentre.arrivalDate = today.addDays(-2);
    viaCentre.centerId = permit.centerId;
    viaCentre.permitNo = permit.permitNo;
    viaCentre.commodityId = permit.commodityId;
    viaCentre.sellerId = kDfcAccount;
    viaCentre.lines = {
        line("DFC-OKR-01", 200, 100, 0, 0, kPP100, kNew, "Khalid Mehmood", "DFC/771"),
        line("DFC-OKR-02", 180, 100, 0, 20, kPP100, kNew, "Arif Ali", "DFC/772")};
    if (const auto rates = store.permitRates(permit.centerId, permit.commodityId))
        priced(conn, viaCentre, rates->ratePerUnit, rates->pricePerBag,
               rates->rateUnitId ? rates->rateUnitId : kMound);
    store.save(viaCentre, true);
}

} // namespace gm
