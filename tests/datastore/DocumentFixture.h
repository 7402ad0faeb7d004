#pragma once

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "seed/SampleData.h"
#include "support/TestDb.h"

#include <QDate>

#include <cmath>

namespace gm::test {

// A new database with the sample mill's master data and no documents at all, so that counts
// and keys below do not depend on the sample documents of the other subsystems.
inline std::unique_ptr<Conn> freshMasterConn() {
    auto conn = freshConn();
    loadSampleMasterData(*conn);
    return conn;
}

// One document of every kind on top of the sample mill, linked as the screens link them:
// contract 1 with arrival 1 (two vehicles, one invoiced by purchase 1), DFC payment 1 with
// letters P-100 (used by arrival 2), P-101 and P-102, a production day and an hourly record.
inline void writeDocuments(const Conn& c) {
    const QDate day(2026, 11, 2);
    Transaction tx(c);
    // Only the columns a key, a stock or a quota total reads, and the line cost that must not
    // reach the stock's.
    execute(c,
            QStringLiteral("INSERT INTO PContracts (ContractId, ContractDate, CommodityId, "
                           "PartyId, IsPosted) VALUES (1, ?, 1, '6100001', 0)"),
            {day});
    execute(c,
            QStringLiteral("INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, "
                           "RatePerUnit, IsPosted) VALUES (1, ?, 2, 3900, 0)"),
            {day});
    for (int i = 0; i < 3; ++i)
        execute(c,
                QStringLiteral("INSERT INTO AuthorityLetters (PaymentId, PermitNo, Date, CenterId, "
                               "NoOfBags, BagWeight, TotalWeight) VALUES (1, ?, ?, ?, 100, 100, "
                               "10000)"),
                {QStringLiteral("P-10%1").arg(i), day, i + 1});
    execute(c, QStringLiteral("UPDATE DFCPayments SET IsPosted = 1 WHERE PaymentId = 1"));

    execute(c,
            QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, "
                           "SellerId, ContractId, IsPosted) VALUES (1, ?, 1, '6100001', 1, 0)"),
            {day});
    execute(c,
            QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, PermitNo, CenterId, "
                           "CommodityId, SellerId, IsPosted) VALUES (2, ?, 'P-100', 1, 2, "
                           "'6000001', 0)"),
            {day});
    const QString line = QStringLiteral(
        "INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo, BagsClassId, BagsTypeId, "
        "NoOfBags, BagWeight, BagsDeduction, OtherDeduction, NetWeight, Cost) "
        "VALUES (?, ?, ?, 1, 2, ?, 100, 0.5, 10, ?, 97.5)");
    execute(c, line, {1, 1, QStringLiteral("LHR-1234"), 200, 19890});
    execute(c, line, {1, 1, QStringLiteral("LES-77"), 100, 9940});
    execute(c, line, {2, 2, QStringLiteral("OKR-55"), 100, 9940});
    execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId IN (1, 2)"));

    execute(c,
            QStringLiteral("INSERT INTO Purchases (PurchaseId, PurchaseDate, ContractId, "
                           "SellerId) VALUES (1, ?, 1, '6100001')"),
            {day});
    execute(c, QStringLiteral("INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, "
                              "CommodityId) VALUES (1, 1, 'LHR-1234', 1)"));
    execute(c,
            QStringLiteral("INSERT INTO DailyProduction (ProductionDate, ProcessId, AddBardana) "
                           "VALUES (?, 1, 0)"),
            {day});
    execute(c,
            QStringLiteral("INSERT INTO Consumption (ProductionDate, ProcessId, CommodityId, "
                           "BagsTypeId, BagsClassId, NoOfBags, BagWeight) VALUES (?, 1, 1, 2, "
                           "1, 100, 100)"),
            {day});
    execute(c,
            QStringLiteral("INSERT INTO Production (ProductionDate, ProcessId, CommodityId, "
                           "BagsTypeId, BagsClassId, NoOfBags, BagWeight) VALUES (?, 1, 4, 3, "
                           "1, 150, 50)"),
            {day});
    execute(c, QStringLiteral("INSERT INTO HourlyProduction (SerialNo, ProcessTime) VALUES (1, ?)"),
            {QDateTime(day, QTime(9, 30))});
    execute(c, QStringLiteral("INSERT INTO HProductionBody (SerialNo, CommodityId, BagsTypeId, "
                              "BagsClassId, NoOfBags, BagWeight, TTLWeight) VALUES (1, 4, 3, 1, "
                              "20, 50, 1000)"));
    tx.commit();
}

// The first total the database keeps that differs from what the documents say. The query
// gives the keys named in keys, then the expected totals named in what, then the kept ones in
// the same order; a kept row that is missing counts as nothing.
inline QString firstDifference(Query& q, std::initializer_list<const char*> keys,
                               std::initializer_list<const char*> what) {
    q.exec();
    const int k = int(keys.size()), n = int(what.size());
    while (q.next())
        for (int i = 0; i < n; ++i) {
            const double expected = toDouble(q.value(k + i));
            const QVariant kept = q.value(k + n + i);
            if (std::abs(expected - toDouble(kept)) <= 1e-6)
                continue;
            QString at;
            for (int j = 0; j < k; ++j)
                at += QStringLiteral("%1 %2 ").arg(QLatin1String(keys.begin()[j]),
                                                   q.value(j).toString());
            return at + QStringLiteral("%1: documents say %2, the database keeps %3")
                            .arg(QLatin1String(what.begin()[i]), QString::number(expected),
                                 kept.isNull() ? QStringLiteral("no row") : kept.toString());
        }
    return {};
}

// The stock as the documents say it should be, beside what the database keeps, computed by
// plain queries only.
inline QString stockFault(const Conn& c) {
    const QString postedLines = QStringLiteral(
        "FROM ArrivalsBody b JOIN Arrivals a ON a.ArrivalId = b.ArrivalId WHERE a.IsPosted = 1");
    Query w(c, QStringLiteral("SELECT c.CommodityId,"
                              " COALESCE((SELECT SUM(b.NetWeight) %1 AND b.CommodityId = "
                              "c.CommodityId), 0)"
                              " - COALESCE((SELECT SUM(NoOfBags * BagWeight) FROM Consumption x "
                              "WHERE x.CommodityId = c.CommodityId), 0)"
                              " + COALESCE((SELECT SUM(NoOfBags * BagWeight) FROM Production x "
                              "WHERE x.CommodityId = c.CommodityId), 0),"
                              " (SELECT TotalWeight FROM CurrentStock s WHERE s.CommodityId = "
                              "c.CommodityId) FROM Commodities c")
                   .arg(postedLines));
    Query b(c, QStringLiteral(
                   "SELECT t.BagsTypeId * 100 + k.BagsClassId,"
                   " COALESCE((SELECT SUM(b.NoOfBags) %1 AND b.BagsTypeId = t.BagsTypeId AND "
                   "b.BagsClassId = k.BagsClassId), 0)"
                   " - COALESCE((SELECT SUM(p.NoOfBags) FROM Production p JOIN DailyProduction d "
                   "ON d.ProductionDate = p.ProductionDate AND d.ProcessId = p.ProcessId WHERE "
                   "d.AddBardana = 0 AND p.BagsTypeId = t.BagsTypeId AND p.BagsClassId = "
                   "k.BagsClassId), 0),"
                   " (SELECT NoOfBags FROM BagsCurrentStock s WHERE s.BagsTypeId = t.BagsTypeId "
                   "AND s.BagsClassId = k.BagsClassId) FROM BagsTypes t CROSS JOIN BagsClasses k")
                   .arg(postedLines));
    const QString fault = firstDifference(w, {"commodity"}, {"weight"});
    return fault.isEmpty() ? firstDifference(b, {"bag kind"}, {"bags"}) : fault;
}

// Each PR centre's quota totals as the letters and vehicles say they should be, beside the
// row the database keeps (no row counts as nothing); the first difference is the fault.
inline QString quotaFault(const Conn& c) {
    Query q(c, QStringLiteral(
                   "SELECT k.CenterId,"
                   " COALESCE((SELECT SUM(NoOfBags) FROM AuthorityLetters l WHERE l.CenterId = "
                   "k.CenterId), 0),"
                   " COALESCE((SELECT SUM(TotalWeight) FROM AuthorityLetters l WHERE l.CenterId "
                   "= k.CenterId), 0),"
                   " COALESCE((SELECT SUM(b.NoOfBags) FROM ArrivalsBody b JOIN Arrivals a ON "
                   "a.ArrivalId = b.ArrivalId WHERE a.CenterId = k.CenterId), 0),"
                   " COALESCE((SELECT SUM(b.NetWeight) FROM ArrivalsBody b JOIN Arrivals a ON "
                   "a.ArrivalId = b.ArrivalId WHERE a.CenterId = k.CenterId), 0),"
                   " (SELECT COUNT(*) FROM AuthorityLetters l WHERE l.CenterId = k.CenterId),"
                   " q.LetterBags, q.LetterWeight, q.ArrivedBags, q.ArrivedWeight, q.Letters"
                   " FROM (SELECT CenterId FROM PRCenters UNION SELECT CenterId FROM "
                   "PRCenterQuota) k LEFT JOIN PRCenterQuota q ON q.CenterId = k.CenterId"
                   " ORDER BY k.CenterId"));
    return firstDifference(
        q, {"centre"},
        {"letter bags", "letter weight", "arrived bags", "arrived weight", "letters"});
}

// Each centre's DFC price sums and counts per commodity as the letters and their payments say,
// beside the row the database keeps; the first difference is the fault.
inline QString ratesFault(const Conn& c) {
    const QString letters = QStringLiteral(
        "FROM AuthorityLetters l JOIN DFCPayments d ON d.PaymentId = l.PaymentId WHERE "
        "l.CenterId = k.CenterId AND d.CommodityId = k.CommodityId");
    Query q(c, QStringLiteral("SELECT k.CenterId, k.CommodityId,"
                              " (SELECT COUNT(*) %1), (SELECT COALESCE(SUM(d.RatePerUnit), 0) %1),"
                              " (SELECT COUNT(d.RatePerUnit) %1),"
                              " (SELECT COALESCE(SUM(d.PricePerBag), 0) %1),"
                              " (SELECT COUNT(d.PricePerBag) %1),"
                              " r.Letters, r.RateSum, r.RateCount, r.PriceSum, r.PriceCount"
                              " FROM (SELECT CenterId, CommodityId FROM PRCenters CROSS JOIN "
                              "Commodities UNION SELECT CenterId, CommodityId FROM PRCenterRates) k"
                              " LEFT JOIN PRCenterRates r ON r.CenterId = k.CenterId AND "
                              "r.CommodityId = k.CommodityId ORDER BY 1, 2")
                   .arg(letters));
    return firstDifference(q, {"centre", "commodity"},
                           {"letters", "rate sum", "rates", "price sum", "prices"});
}

} // namespace gm::test
