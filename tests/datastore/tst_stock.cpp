#include "datastore/Sql.h"
#include "DocumentFixture.h"
#include "support/TestDb.h"

#include <QRandomGenerator>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

#include <cmath>
#include <map>

using namespace gm;

namespace {

// What the stock ought to be, computed from the documents alone, next to what the database
// keeps. Keyed by commodity, or by bag type * 100 + bag class.
struct Stock {
    std::map<int, std::pair<double, double>> weight; // expected, kept
    std::map<int, std::pair<double, double>> bags;
    QStringList missingRows;
};

Stock readStock(const Conn& c) {
    Stock s;
    Query w(c, QStringLiteral(
                   "SELECT c.CommodityId, "
                   " COALESCE((SELECT SUM(b.NetWeight) FROM ArrivalsBody b JOIN Arrivals a ON "
                   "   a.ArrivalId = b.ArrivalId WHERE a.IsPosted = 1 AND b.CommodityId = "
                   "   c.CommodityId), 0)"
                   " - COALESCE((SELECT SUM(NoOfBags * BagWeight) FROM Consumption WHERE "
                   "   CommodityId = c.CommodityId), 0)"
                   " + COALESCE((SELECT SUM(NoOfBags * BagWeight) FROM Production WHERE "
                   "   CommodityId = c.CommodityId), 0),"
                   " (SELECT TotalWeight FROM CurrentStock s WHERE s.CommodityId = c.CommodityId),"
                   " (SELECT COUNT(*) FROM ArrivalsBody b JOIN Arrivals a ON a.ArrivalId = "
                   "   b.ArrivalId WHERE a.IsPosted = 1 AND b.CommodityId = c.CommodityId)"
                   " + (SELECT COUNT(*) FROM Consumption WHERE CommodityId = c.CommodityId)"
                   " + (SELECT COUNT(*) FROM Production WHERE CommodityId = c.CommodityId)"
                   " FROM Commodities c"));
    w.exec();
    while (w.next()) {
        const int id = int(toInt(w.value(0)));
        s.weight[id] = {toDouble(w.value(1)), toDouble(w.value(2))};
        if (w.value(2).isNull() && toInt(w.value(3)) > 0)
            s.missingRows << QStringLiteral("commodity %1").arg(id);
    }
    Query b(c, QStringLiteral(
                   "SELECT t.BagsTypeId, k.BagsClassId, "
                   " COALESCE((SELECT SUM(b.NoOfBags) FROM ArrivalsBody b JOIN Arrivals a ON "
                   "   a.ArrivalId = b.ArrivalId WHERE a.IsPosted = 1 AND b.BagsTypeId = "
                   "   t.BagsTypeId AND b.BagsClassId = k.BagsClassId), 0)"
                   " - COALESCE((SELECT SUM(p.NoOfBags) FROM Production p JOIN DailyProduction d "
                   "   ON d.ProductionDate = p.ProductionDate AND d.ProcessId = p.ProcessId WHERE "
                   "   d.AddBardana = 0 AND p.BagsTypeId = t.BagsTypeId AND p.BagsClassId = "
                   "   k.BagsClassId), 0),"
                   " (SELECT NoOfBags FROM BagsCurrentStock s WHERE s.BagsTypeId = t.BagsTypeId "
                   "   AND s.BagsClassId = k.BagsClassId)"
                   " FROM BagsTypes t CROSS JOIN BagsClasses k"));
    b.exec();
    while (b.next()) {
        const int key = int(toInt(b.value(0)) * 100 + toInt(b.value(1)));
        s.bags[key] = {toDouble(b.value(2)), toDouble(b.value(3))};
        if (b.value(3).isNull() && toDouble(b.value(2)) != 0)
            s.missingRows << QStringLiteral("bags %1").arg(key);
    }
    return s;
}

// The first difference between the invariant and the kept stock, or empty.
QString stockFault(const Conn& c) {
    const Stock s = readStock(c);
    if (!s.missingRows.isEmpty())
        return QStringLiteral("no stock row for ") + s.missingRows.join(QStringLiteral(", "));
    for (const auto& [id, v] : s.weight)
        if (std::abs(v.first - v.second) > 1e-6)
            return QStringLiteral("commodity %1 should weigh %2, stock says %3")
                .arg(id)
                .arg(v.first, 0, 'f', 4)
                .arg(v.second, 0, 'f', 4);
    for (const auto& [key, v] : s.bags)
        if (std::abs(v.first - v.second) > 1e-6)
            return QStringLiteral("bags %1 should be %2, stock says %3")
                .arg(key)
                .arg(v.first)
                .arg(v.second);
    return {};
}

// Drives the documents the way the screens and a careless hand might, at random but
// repeatably for one seed.
class Mill {
public:
    Mill(const Conn& c, quint32 seed) : m_c(c), m_rng(seed) {}

    QString step() {
        switch (pick(15)) {
        case 0:
        case 1:
            return newArrival();
        case 2:
            return resaveArrival();
        case 3:
            return turnPosting();
        case 4:
            return addVehicle();
        case 5:
        case 6:
            return changeVehicle();
        case 7:
            return dropVehicle();
        case 8:
            return removeArrival();
        case 9:
            return newDay();
        case 10:
            return turnAddBardana();
        case 11:
            return changeDayLine();
        case 12:
            return addOrDropDayLine();
        case 13:
            return removeDay();
        default:
            return removePostedHeadWithVehicles();
        }
    }

private:
    const Conn& m_c;
    QRandomGenerator m_rng;
    int m_vehicle = 0;

    int pick(int n) { return int(m_rng.bounded(n)); }
    template <typename T> T oneOf(std::initializer_list<T> xs) {
        return xs.begin()[pick(int(xs.size()))];
    }
    QVariant bagType() { return pick(10) == 0 ? QVariant() : QVariant(1 + pick(5)); }
    QVariant bagClass() { return pick(10) == 0 ? QVariant() : QVariant(1 + pick(3)); }

    QList<QVariantList> rows(const QString& sql) {
        Query q(m_c, sql);
        q.exec();
        QList<QVariantList> out;
        while (q.next()) {
            QVariantList r;
            for (int i = 0; i < q.raw().record().count(); ++i)
                r << q.value(i);
            out << r;
        }
        return out;
    }
    QVariantList anyRow(const QString& sql) {
        const auto all = rows(sql);
        return all.isEmpty() ? QVariantList() : all[pick(int(all.size()))];
    }

    void insertVehicle(int arrival) {
        const double bags = 1 + pick(300);
        const double weight = oneOf({40.0, 50.0, 99.5, 100.0, 100.25});
        const double deduction = oneOf({0.0, 0.5, 1.0});
        const double other = oneOf({0.0, 5.0, 12.5});
        execute(m_c,
                QStringLiteral("INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo, "
                               "BagsTypeId, BagsClassId, NoOfBags, BagWeight, BagsDeduction, "
                               "OtherDeduction, NetWeight) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                {arrival, 1 + pick(3), QStringLiteral("V-%1").arg(++m_vehicle), bagType(),
                 bagClass(), bags, weight, deduction, other,
                 bags * weight - bags * deduction - other});
    }

    // A save as the arrival screen does it: head unposted, vehicles rewritten, head posted.
    void saveVehicles(int arrival) {
        execute(m_c, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?"),
                {arrival});
        execute(m_c, QStringLiteral("DELETE FROM ArrivalsBody WHERE ArrivalId = ?"), {arrival});
        for (int i = 1 + pick(3); i > 0; --i)
            insertVehicle(arrival);
        execute(m_c, QStringLiteral("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId = ?"),
                {arrival});
    }

    QString newArrival() {
        const int id = int(toInt(
            scalar(m_c, QStringLiteral("SELECT COALESCE(MAX(ArrivalId), 0) + 1 FROM Arrivals"))));
        Transaction tx(m_c);
        execute(m_c,
                QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, "
                               "SellerId, IsPosted) VALUES (?, ?, 1, '6100001', 0)"),
                {id, QDate(2026, 11, 1)});
        saveVehicles(id);
        if (pick(6) == 0) // left unposted, as a save cut short would leave it
            execute(m_c, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?"),
                    {id});
        tx.commit();
        return QStringLiteral("new arrival %1").arg(id);
    }

    QString resaveArrival() {
        const auto a = anyRow(QStringLiteral("SELECT ArrivalId FROM Arrivals ORDER BY ArrivalId"));
        if (a.isEmpty())
            return newArrival();
        Transaction tx(m_c);
        saveVehicles(a[0].toInt());
        tx.commit();
        return QStringLiteral("resave arrival %1").arg(a[0].toInt());
    }

    QString turnPosting() {
        const auto a =
            anyRow(QStringLiteral("SELECT ArrivalId, IsPosted FROM Arrivals ORDER BY ArrivalId"));
        if (a.isEmpty())
            return newArrival();
        execute(m_c, QStringLiteral("UPDATE Arrivals SET IsPosted = ? WHERE ArrivalId = ?"),
                {1 - a[1].toInt(), a[0]});
        return QStringLiteral("arrival %1 posted %2").arg(a[0].toInt()).arg(1 - a[1].toInt());
    }

    QString addVehicle() {
        const auto a = anyRow(QStringLiteral("SELECT ArrivalId FROM Arrivals ORDER BY ArrivalId"));
        if (a.isEmpty())
            return newArrival();
        insertVehicle(a[0].toInt());
        return QStringLiteral("vehicle added to arrival %1").arg(a[0].toInt());
    }

    QString changeVehicle() {
        const auto v = anyRow(QStringLiteral(
            "SELECT ArrivalId, VehicleNo FROM ArrivalsBody ORDER BY ArrivalId, VehicleNo"));
        if (v.isEmpty())
            return addVehicle();
        const QString where = QStringLiteral(" WHERE ArrivalId = ? AND VehicleNo = ?");
        switch (pick(4)) {
        case 0:
            execute(m_c, QStringLiteral("UPDATE ArrivalsBody SET CommodityId = ?") + where,
                    {1 + pick(3), v[0], v[1]});
            return QStringLiteral("vehicle commodity changed");
        case 1:
            execute(m_c,
                    QStringLiteral("UPDATE ArrivalsBody SET BagsTypeId = ?, BagsClassId = ?") +
                        where,
                    {bagType(), bagClass(), v[0], v[1]});
            return QStringLiteral("vehicle bag kind changed");
        case 2: {
            const double bags = 1 + pick(300);
            execute(m_c,
                    QStringLiteral("UPDATE ArrivalsBody SET NoOfBags = ?, NetWeight = ? * "
                                   "BagWeight - ? * BagsDeduction - OtherDeduction") +
                        where,
                    {bags, bags, bags, v[0], v[1]});
            return QStringLiteral("vehicle bags changed");
        }
        default: {
            // Moved to another arrival, which may be posted or not.
            const auto to =
                anyRow(QStringLiteral("SELECT ArrivalId FROM Arrivals ORDER BY ArrivalId"));
            execute(m_c,
                    QStringLiteral("UPDATE ArrivalsBody SET ArrivalId = ?, CommodityId = ?, "
                                   "NoOfBags = NoOfBags + 1") +
                        where,
                    {to[0], 1 + pick(3), v[0], v[1]});
            return QStringLiteral("vehicle moved to arrival %1").arg(to[0].toInt());
        }
        }
    }

    QString dropVehicle() {
        const auto v = anyRow(QStringLiteral(
            "SELECT ArrivalId, VehicleNo FROM ArrivalsBody ORDER BY ArrivalId, VehicleNo"));
        if (v.isEmpty())
            return addVehicle();
        execute(m_c,
                QStringLiteral("DELETE FROM ArrivalsBody WHERE ArrivalId = ? AND VehicleNo = ?"),
                {v[0], v[1]});
        return QStringLiteral("vehicle dropped");
    }

    QString removeArrival() {
        const auto a = anyRow(QStringLiteral("SELECT ArrivalId FROM Arrivals ORDER BY ArrivalId"));
        if (a.isEmpty())
            return newArrival();
        Transaction tx(m_c);
        const bool unpostFirst = pick(2) == 0; // the screen does; a hand at the database may not
        if (unpostFirst)
            execute(m_c, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?"),
                    {a[0]});
        execute(m_c, QStringLiteral("DELETE FROM ArrivalsBody WHERE ArrivalId = ?"), {a[0]});
        execute(m_c, QStringLiteral("DELETE FROM Arrivals WHERE ArrivalId = ?"), {a[0]});
        tx.commit();
        return QStringLiteral("arrival %1 removed%2")
            .arg(a[0].toInt())
            .arg(unpostFirst ? QStringLiteral(" after unposting") : QString());
    }

    QString removePostedHeadWithVehicles() {
        const auto a =
            anyRow(QStringLiteral("SELECT a.ArrivalId FROM Arrivals a WHERE a.IsPosted = 1 "
                                  "AND EXISTS (SELECT 1 FROM ArrivalsBody b WHERE "
                                  "b.ArrivalId = a.ArrivalId) ORDER BY a.ArrivalId"));
        if (a.isEmpty())
            return newArrival();
        // The statement outlives the transaction: PostgreSQL cannot free it while the refusal
        // keeps the transaction aborted, only after the rollback.
        QSqlQuery q(m_c.db());
        q.prepare(QStringLiteral("DELETE FROM Arrivals WHERE ArrivalId = ?"));
        q.addBindValue(a[0]);
        Transaction tx(m_c);
        const bool refused = !q.exec();
        return refused ? QStringLiteral("removal of posted arrival %1 with vehicles refused")
                             .arg(a[0].toInt())
                       : QStringLiteral("FAULT: posted arrival %1 removed with its vehicles")
                             .arg(a[0].toInt());
    }

    void insertDayLine(const QVariantList& day, bool consumption) {
        const QString table =
            consumption ? QStringLiteral("Consumption") : QStringLiteral("Production");
        execute(
            m_c,
            QStringLiteral("INSERT INTO %1 (ProductionDate, ProcessId, CommodityId, BagsTypeId, "
                           "BagsClassId, NoOfBags, BagWeight) VALUES (?, ?, ?, ?, ?, ?, ?)")
                .arg(table),
            {day[0], day[1], consumption ? 1 + pick(3) : 4 + pick(4), bagType(), bagClass(),
             1 + pick(200), oneOf({10.0, 50.0, 100.0, 99.75})});
    }

    QString newDay() {
        const QVariantList day{QDate(2026, 11, 1).addDays(pick(40)), 1 + pick(2)};
        if (toInt(scalar(m_c,
                         QStringLiteral("SELECT COUNT(*) FROM DailyProduction WHERE "
                                        "ProductionDate = ? AND ProcessId = ?"),
                         {day[0], day[1]})) > 0)
            return removeDay();
        Transaction tx(m_c);
        execute(m_c,
                QStringLiteral("INSERT INTO DailyProduction (ProductionDate, ProcessId, "
                               "AddBardana) VALUES (?, ?, ?)"),
                {day[0], day[1], pick(2)});
        for (int i = 1 + pick(2); i > 0; --i)
            insertDayLine(day, true);
        for (int i = 1 + pick(3); i > 0; --i)
            insertDayLine(day, false);
        tx.commit();
        return QStringLiteral("new production day");
    }

    QString turnAddBardana() {
        const auto d = anyRow(QStringLiteral("SELECT ProductionDate, ProcessId, AddBardana FROM "
                                             "DailyProduction ORDER BY ProductionDate, ProcessId"));
        if (d.isEmpty())
            return newDay();
        execute(m_c,
                QStringLiteral("UPDATE DailyProduction SET AddBardana = ? WHERE ProductionDate "
                               "= ? AND ProcessId = ?"),
                {1 - d[2].toInt(), d[0], d[1]});
        return QStringLiteral("day's own bags turned to %1").arg(1 - d[2].toInt());
    }

    QString changeDayLine() {
        const bool consumption = pick(2) == 0;
        const QString table =
            consumption ? QStringLiteral("Consumption") : QStringLiteral("Production");
        const QString key =
            consumption ? QStringLiteral("ConsumptionId") : QStringLiteral("ProductionLineId");
        const auto l = anyRow(QStringLiteral("SELECT %1 FROM %2 ORDER BY %1").arg(key, table));
        if (l.isEmpty())
            return newDay();
        switch (pick(3)) {
        case 0:
            execute(m_c,
                    QStringLiteral("UPDATE %1 SET NoOfBags = ?, BagWeight = ? WHERE %2 = ?")
                        .arg(table, key),
                    {1 + pick(200), oneOf({10.0, 50.0, 100.0}), l[0]});
            break;
        case 1:
            execute(m_c,
                    QStringLiteral("UPDATE %1 SET CommodityId = ? WHERE %2 = ?").arg(table, key),
                    {1 + pick(7), l[0]});
            break;
        default: {
            // Onto another day, whose bags may be counted differently.
            const auto d =
                anyRow(QStringLiteral("SELECT ProductionDate, ProcessId FROM "
                                      "DailyProduction ORDER BY ProductionDate, ProcessId"));
            execute(m_c,
                    QStringLiteral("UPDATE %1 SET ProductionDate = ?, ProcessId = ?, "
                                   "BagsTypeId = ?, BagsClassId = ? WHERE %2 = ?")
                        .arg(table, key),
                    {d[0], d[1], bagType(), bagClass(), l[0]});
        }
        }
        return table + QStringLiteral(" line changed");
    }

    QString addOrDropDayLine() {
        const bool consumption = pick(2) == 0;
        if (pick(2) == 0) {
            const auto d =
                anyRow(QStringLiteral("SELECT ProductionDate, ProcessId FROM "
                                      "DailyProduction ORDER BY ProductionDate, ProcessId"));
            if (d.isEmpty())
                return newDay();
            insertDayLine(d, consumption);
            return QStringLiteral("day line added");
        }
        const QString table =
            consumption ? QStringLiteral("Consumption") : QStringLiteral("Production");
        const QString key =
            consumption ? QStringLiteral("ConsumptionId") : QStringLiteral("ProductionLineId");
        const auto l = anyRow(QStringLiteral("SELECT %1 FROM %2 ORDER BY %1").arg(key, table));
        if (l.isEmpty())
            return newDay();
        execute(m_c, QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(table, key), {l[0]});
        return QStringLiteral("day line dropped");
    }

    // As the production screen removes a day: its lines one by one, then the day.
    QString removeDay() {
        const auto d =
            anyRow(QStringLiteral("SELECT ProductionDate, ProcessId FROM DailyProduction "
                                  "ORDER BY ProductionDate, ProcessId"));
        if (d.isEmpty())
            return newDay();
        Transaction tx(m_c);
        for (const QString& table : {QStringLiteral("Consumption"), QStringLiteral("Production")})
            execute(m_c,
                    QStringLiteral("DELETE FROM %1 WHERE ProductionDate = ? AND ProcessId = ?")
                        .arg(table),
                    {d[0], d[1]});
        execute(m_c,
                QStringLiteral(
                    "DELETE FROM DailyProduction WHERE ProductionDate = ? AND ProcessId = ?"),
                {d[0], d[1]});
        tx.commit();
        return QStringLiteral("production day removed");
    }
};

double weightOf(const Conn& c, int commodity) {
    return toDouble(
        scalar(c, QStringLiteral("SELECT TotalWeight FROM CurrentStock WHERE CommodityId = ?"),
               {commodity}));
}

} // namespace

class TstStock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The arrival screen's save unposts, rewrites and posts again; stock must count the
    // vehicles once however often that happens, and quantity moves leave the cost alone.
    void arrivalSaveNetsOnce() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshMasterConn();
        const Conn& c = *conn;
        execute(c,
                QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, "
                               "SellerId, IsPosted) VALUES (1, ?, 1, '6100001', 0)"),
                {QDate(2026, 11, 1)});
        const QString line = QStringLiteral(
            "INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo, BagsTypeId, "
            "BagsClassId, NoOfBags, NetWeight) VALUES (1, 1, ?, 2, 1, ?, ?)");
        for (int save = 0; save < 3; ++save) {
            Transaction tx(c);
            execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = 1"));
            execute(c, QStringLiteral("DELETE FROM ArrivalsBody WHERE ArrivalId = 1"));
            execute(c, line, {QStringLiteral("A-1"), 200, 19890.5});
            execute(c, line, {QStringLiteral("A-2"), 100, 9940});
            execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId = 1"));
            tx.commit();
            QCOMPARE(weightOf(c, 1), 29830.5);
            QCOMPARE(
                toDouble(scalar(c, QStringLiteral("SELECT NoOfBags FROM BagsCurrentStock WHERE "
                                                  "BagsTypeId = 2 AND BagsClassId = 1"))),
                300.0);
        }
        QCOMPARE(toDouble(scalar(
                     c, QStringLiteral("SELECT Cost FROM CurrentStock WHERE CommodityId = 1"))),
                 0.0);
        execute(c,
                QStringLiteral("UPDATE CurrentStock SET Cost = 97.123456 WHERE CommodityId = 1"));
        execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = 1"));
        QCOMPARE(weightOf(c, 1), 0.0);
        QCOMPARE(toDouble(scalar(
                     c, QStringLiteral("SELECT Cost FROM CurrentStock WHERE CommodityId = 1"))),
                 97.123456);
        // Invoices and DFC payments carry no quantities.
        execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId = 1"));
        execute(c,
                QStringLiteral("INSERT INTO Purchases (PurchaseId, PurchaseDate, SellerId) VALUES "
                               "(1, '2026-11-02', '6100001')"));
        execute(c,
                QStringLiteral(
                    "INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, "
                    "CommodityId, NoOfBags, TotalWeight) VALUES (1, 1, 'A-1', 1, 200, 19890.5)"));
        execute(c,
                QStringLiteral("INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, "
                               "NoOfBags, TotalWeight, BagsTypeId, BagsClassId, BagsQty, IsPosted) "
                               "VALUES (1, '2026-11-02', 1, 10, 1000, 2, 1, 10, 0)"));
        execute(c, QStringLiteral("UPDATE DFCPayments SET IsPosted = 1 WHERE PaymentId = 1"));
        QCOMPARE(weightOf(c, 1), 29830.5);
        QCOMPARE(stockFault(c), QString());
    }

    // The sample mill, with whatever sample documents it carries, starts out consistent.
    void sampleMillStartsConsistent() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshSampleConn();
        QCOMPARE(stockFault(*conn), QString());
    }

    void invariantHoldsUnderRandomChanges_data() {
        QTest::addColumn<quint32>("seed");
        QTest::addColumn<int>("steps");
        QTest::newRow("seed 7") << quint32(7) << 300;
        QTest::newRow("seed 2026") << quint32(2026) << 300;
    }

    void invariantHoldsUnderRandomChanges() {
        GM_REQUIRE_ENGINE();
        QFETCH(quint32, seed);
        QFETCH(int, steps);
        auto conn = test::freshMasterConn();
        Mill mill(*conn, seed);
        QStringList recent;
        for (int i = 0; i < steps; ++i) {
            const QString what = mill.step();
            recent << QStringLiteral("%1: %2").arg(i).arg(what);
            if (recent.size() > 8)
                recent.removeFirst();
            QVERIFY2(!what.startsWith(QLatin1String("FAULT")), qPrintable(recent.join(u'\n')));
            const QString fault = stockFault(*conn);
            QVERIFY2(fault.isEmpty(), qPrintable(fault + u'\n' + recent.join(u'\n')));
        }
        // The run must have left something in stock to be worth anything.
        QVERIFY(toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM CurrentStock WHERE "
                                                   "TotalWeight <> 0"))) > 0);
    }
};

QTEST_GUILESS_MAIN(TstStock)
#include "tst_stock.moc"
