#pragma once

#include "arrivals/ArrivalStore.h"
#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "dfc/DFCStore.h"
#include "seed/SampleData.h"
#include "support/TestDb.h"

#include <QDate>
#include <QString>

#include <memory>
#include <vector>

// Payments and the arrivals that spend their letters, on the sample mill's master data:
// centres 1 to 4 ("PR Centre Okara", "PR Centre Renala Khurd", "PR Centre Depalpur",
// "PR Centre Sahiwal"), unit 2 "Mound (40)", bag types 1 "PP 100 Kg" and 2 "Jute 100 Kg",
// classes 1 "New" and 2 "Used", banks 112001 to 112003.
namespace gm::test {

inline constexpr int kWheatGovernment = 2;
inline constexpr const char* kDfcAccount = "6000001"; // District Food Controller

// Master data without sample documents, so that keys and quotas start from nothing.
inline std::unique_ptr<Conn> bareMill() {
    auto conn = freshConn();
    loadSampleMasterData(*conn);
    return conn;
}

inline AuthorityLine letter(const QString& permit, qint64 centre, double bags, double bagWeight,
                            const QDate& date = QDate(2025, 3, 15)) {
    AuthorityLine l;
    l.permitNo = permit;
    l.date = date;
    l.centerId = centre;
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    l.totalWeight = letterTotalWeight(bags, bagWeight);
    return l;
}

// 100 bags of 50 kg at 100 a mound of 40 kg: 5000 kg worth 12500; 10 new PP bags at 25.5.
inline DFCPayment payment(qint32 id, std::vector<AuthorityLine> letters) {
    DFCPayment p;
    p.paymentId = id;
    p.paymentDate = QDate(2025, 3, 14);
    p.commodityId = kWheatGovernment;
    p.bankAccountNo = QStringLiteral("112001");
    p.challanNo = QStringLiteral("CH-77");
    p.noOfBags = 100;
    p.bagWeight = 50;
    p.totalWeight = 5000;
    p.rateUnitId = 2;
    p.ratePerUnit = 100;
    p.value = 12500;
    p.bagsTypeId = 1;
    p.bagsClassId = 1;
    p.bagsQty = 10;
    p.pricePerBag = 25.5;
    p.bagsValue = 255;
    p.userNo = 1;
    p.letters = std::move(letters);
    return p;
}

// An arrival of one vehicle through a centre against a permit.
inline void arriveUnder(const Conn& conn, const QString& permit, qint64 centre, double bags,
                        double bagWeight = 50) {
    ArrivalStore store(conn);
    ArrivalDocument a;
    a.arrivalId = store.nextArrivalId();
    a.arrivalDate = QDate(2025, 3, 20);
    a.centerId = centre;
    a.permitNo = permit;
    a.commodityId = kWheatGovernment;
    a.sellerId = QString::fromLatin1(kDfcAccount);
    ArrivalLine l;
    l.vehicleNo = QStringLiteral("DFC-") + QString::number(a.arrivalId);
    l.bagsTypeId = 1;
    l.bagsClassId = 1;
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    a.lines = {l};
    store.save(a, true);
}

// Bags and weight a centre may still deliver, as the arrival screen shows them.
inline QString remainingAt(const Conn& conn, qint64 centre) {
    const RemainingQuota r = ArrivalStore(conn).remaining(centre);
    return QString::number(r.bags) + QLatin1Char('/') + QString::number(r.weight);
}

inline qint64 countOf(const Conn& conn, const char* sql, std::initializer_list<QVariant> v = {}) {
    return toInt(scalar(conn, QString::fromLatin1(sql), v));
}

// The payment's letters as "permit:centre:bags:bag weight:total", in permit order.
inline QStringList lettersOf(const Conn& conn, qint32 paymentId) {
    Query q(conn, QStringLiteral("SELECT PermitNo, CenterId, NoOfBags, BagWeight, TotalWeight "
                                 "FROM AuthorityLetters WHERE PaymentId = ? ORDER BY PermitNo"));
    q.bind(paymentId).exec();
    QStringList out;
    while (q.next())
        out << QStringList{toText(q.value(0)), QString::number(toInt(q.value(1))),
                           QString::number(toDouble(q.value(2))),
                           QString::number(toDouble(q.value(3))),
                           QString::number(toDouble(q.value(4)))}
                   .join(QLatin1Char(':'));
    return out;
}

} // namespace gm::test
