#include "datastore/Schema.h"
#include "datastore/Sql.h"
#include "DocumentFixture.h"
#include "support/TestDb.h"

#include <QRandomGenerator>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

using namespace gm;

namespace {

// Changes the documents as the screens do, and as a careless hand at the database might, at
// random but repeatably for one seed. Each step names what it did.
class Mill {
public:
    Mill(const Conn& c, quint32 seed) : m_c(c), m_rng(seed), m_seed(seed) {}

    QString step() {
        switch (pick(19)) {
        case 0:
        case 17: // arrivals, too, outnumber their removals
            return newArrival();
        case 1:
            return saveArrival(anyArrival());
        case 2:
            return turnPosting();
        case 3:
            return addVehicle();
        case 4:
        case 5:
            return changeVehicle();
        case 6:
            return dropVehicle();
        case 7:
            return removeArrival();
        case 8:
            return newDay();
        case 9:
            return turnAddBardana();
        case 10:
            return changeDayLine();
        case 11:
            return removeDay();
        case 12:
        case 16: // letters outnumber their removals, so that some stay
            return newLetter();
        case 13:
            return changeLetter();
        case 14:
            return removeLetter();
        case 15:
            return moveArrivalCentre();
        default:
            return changePayment();
        }
    }

private:
    const Conn& m_c;
    QRandomGenerator m_rng;
    quint32 m_seed; // in vehicle and permit numbers, so that two mills can share a database
    int m_vehicle = 0;
    int m_permit = 0;

    int pick(int n) { return int(m_rng.bounded(n)); }
    double oneOf(std::initializer_list<double> xs) { return xs.begin()[pick(int(xs.size()))]; }
    // A bag kind is sometimes left out, as loose grain comes.
    QVariant bagType() { return pick(10) ? QVariant(1 + pick(5)) : QVariant(); }
    QVariant bagClass() { return pick(10) ? QVariant(1 + pick(3)) : QVariant(); }
    // Most arrivals and letters name one of the sample mill's centres; some name none.
    QVariant centre() { return pick(4) ? QVariant(1 + pick(4)) : QVariant(); }
    // A DFC payment's prices, now and then left empty.
    QVariant rate() { return pick(5) ? QVariant(oneOf({3900, 4100.5, 3999.9999})) : QVariant(); }
    QVariant price() { return pick(5) ? QVariant(oneOf({80, 95.25})) : QVariant(); }
    void run(const char* sql, std::initializer_list<QVariant> values = {}) {
        execute(m_c, QString::fromUtf8(sql), values);
    }

    // One of the rows the statement gives, or an empty list.
    QVariantList anyRow(const char* sql) {
        Query q(m_c, QString::fromUtf8(sql));
        q.exec();
        QList<QVariantList> all;
        while (q.next()) {
            QVariantList r;
            for (int i = 0; i < q.raw().record().count(); ++i)
                r << q.value(i);
            all << r;
        }
        return all.isEmpty() ? QVariantList() : all[pick(int(all.size()))];
    }
    QVariantList anyArrival() {
        return anyRow("SELECT ArrivalId, IsPosted FROM Arrivals ORDER BY 1");
    }
    QVariantList anyVehicle() {
        return anyRow("SELECT ArrivalId, VehicleNo FROM ArrivalsBody ORDER BY 1, 2");
    }
    QVariantList anyLetter() {
        return anyRow("SELECT PermitNo, CenterId FROM AuthorityLetters ORDER BY 1");
    }
    QVariantList anyDay() {
        return anyRow(
            "SELECT ProductionDate, ProcessId, AddBardana FROM DailyProduction ORDER BY 1, 2");
    }

    void insertVehicle(const QVariant& arrival) {
        const double bags = 1 + pick(300), weight = oneOf({40, 50, 99.5, 100.25});
        const double deduction = oneOf({0, 0.5, 1}), other = oneOf({0, 5, 12.5});
        run("INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo, BagsTypeId, BagsClassId, "
            "NoOfBags, BagWeight, BagsDeduction, OtherDeduction, NetWeight) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
            {arrival, 1 + pick(3), QStringLiteral("V-%1-%2").arg(m_seed).arg(++m_vehicle),
             bagType(), bagClass(), bags, weight, deduction, other,
             bags * weight - bags * deduction - other});
    }

    void insertDayLine(const QVariantList& day, bool consumption) {
        execute(
            m_c,
            QStringLiteral("INSERT INTO %1 (ProductionDate, ProcessId, CommodityId, BagsTypeId, "
                           "BagsClassId, NoOfBags, BagWeight) VALUES (?, ?, ?, ?, ?, ?, ?)")
                .arg(consumption ? QStringLiteral("Consumption") : QStringLiteral("Production")),
            {day[0], day[1], consumption ? 1 + pick(3) : 4 + pick(4), bagType(), bagClass(),
             1 + pick(200), oneOf({10, 50, 99.75})});
    }

    QString newArrival() {
        const QVariant id =
            scalar(m_c, QStringLiteral("SELECT COALESCE(MAX(ArrivalId), 0) + 1 FROM Arrivals"));
        run("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CenterId, CommodityId, SellerId, "
            "IsPosted) VALUES (?, '2026-11-01', ?, 1, '6100001', 0)",
            {id, centre()});
        return saveArrival({id, 0});
    }

    // The arrival screen's save: head unposted, vehicles rewritten, head posted, all in one
    // transaction. Now and then a save stops short of posting.
    QString saveArrival(const QVariantList& a) {
        if (a.isEmpty())
            return newArrival();
        Transaction tx(m_c);
        run("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?", {a[0]});
        run("DELETE FROM ArrivalsBody WHERE ArrivalId = ?", {a[0]});
        for (int i = 1 + pick(3); i > 0; --i)
            insertVehicle(a[0]);
        const bool post = pick(6) != 0;
        if (post)
            run("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId = ?", {a[0]});
        tx.commit();
        return QStringLiteral("arrival %1 saved%2").arg(a[0].toInt()).arg(post ? "" : " unposted");
    }

    QString turnPosting() {
        const auto a = anyArrival();
        if (a.isEmpty())
            return newArrival();
        run("UPDATE Arrivals SET IsPosted = ? WHERE ArrivalId = ?", {1 - a[1].toInt(), a[0]});
        return QStringLiteral("arrival %1 posted %2").arg(a[0].toInt()).arg(1 - a[1].toInt());
    }

    QString addVehicle() {
        const auto a = anyArrival();
        if (a.isEmpty())
            return newArrival();
        insertVehicle(a[0]);
        return QStringLiteral("vehicle added to arrival %1").arg(a[0].toInt());
    }

    QString changeVehicle() {
        const auto v = anyVehicle();
        if (v.isEmpty())
            return addVehicle();
        const auto to = anyArrival();
        const double bags = 1 + pick(300);
        switch (pick(4)) {
        case 0:
            run("UPDATE ArrivalsBody SET CommodityId = ? WHERE ArrivalId = ? AND VehicleNo = ?",
                {1 + pick(3), v[0], v[1]});
            return QStringLiteral("vehicle's commodity changed");
        case 1:
            run("UPDATE ArrivalsBody SET BagsTypeId = ?, BagsClassId = ? WHERE ArrivalId = ? AND "
                "VehicleNo = ?",
                {bagType(), bagClass(), v[0], v[1]});
            return QStringLiteral("vehicle's bag kind changed");
        case 2:
            run("UPDATE ArrivalsBody SET NoOfBags = ?, NetWeight = ? * BagWeight WHERE ArrivalId = "
                "? AND VehicleNo = ?",
                {bags, bags, v[0], v[1]});
            return QStringLiteral("vehicle's bags changed");
        default: // onto another arrival, posted or not
            run("UPDATE ArrivalsBody SET ArrivalId = ?, CommodityId = ?, NoOfBags = NoOfBags + 1 "
                "WHERE ArrivalId = ? AND VehicleNo = ?",
                {to[0], 1 + pick(3), v[0], v[1]});
            return QStringLiteral("vehicle moved to arrival %1").arg(to[0].toInt());
        }
    }

    QString dropVehicle() {
        const auto v = anyVehicle();
        if (v.isEmpty())
            return addVehicle();
        run("DELETE FROM ArrivalsBody WHERE ArrivalId = ? AND VehicleNo = ?", {v[0], v[1]});
        return QStringLiteral("vehicle dropped");
    }

    // The screen unposts before removing; a hand at the database may not, and may even try
    // the head first, which the keys refuse.
    QString removeArrival() {
        const auto a = anyArrival();
        if (a.isEmpty())
            return newArrival();
        QSqlQuery headFirst(m_c.db()); // outlives the transaction that its refusal aborts
        headFirst.prepare(QStringLiteral("DELETE FROM Arrivals WHERE ArrivalId = ?"));
        headFirst.addBindValue(a[0]);
        Transaction tx(m_c);
        const bool hasVehicles = toInt(scalar(
            m_c, QStringLiteral("SELECT COUNT(*) FROM ArrivalsBody WHERE ArrivalId = ?"), {a[0]}));
        if (hasVehicles && pick(4) == 0)
            return headFirst.exec() ? QStringLiteral("FAULT: arrival removed before its vehicles")
                                    : QStringLiteral("removing arrival head first refused");
        const bool unpost = pick(2) == 0;
        if (unpost)
            run("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?", {a[0]});
        run("DELETE FROM ArrivalsBody WHERE ArrivalId = ?", {a[0]});
        run("DELETE FROM Arrivals WHERE ArrivalId = ?", {a[0]});
        tx.commit();
        return QStringLiteral("arrival %1 removed%2")
            .arg(a[0].toInt())
            .arg(unpost ? " unposted" : "");
    }

    QString newDay() {
        const QVariantList day{QDate(2026, 11, 1).addDays(pick(30)), 1 + pick(2)};
        if (toInt(scalar(m_c,
                         QStringLiteral("SELECT COUNT(*) FROM DailyProduction WHERE "
                                        "ProductionDate = ? AND ProcessId = ?"),
                         {day[0], day[1]})))
            return removeDay();
        Transaction tx(m_c);
        run("INSERT INTO DailyProduction (ProductionDate, ProcessId, AddBardana) VALUES (?, ?, ?)",
            {day[0], day[1], pick(2)});
        for (int i = 2 + pick(3); i > 0; --i)
            insertDayLine(day, i % 2);
        tx.commit();
        return QStringLiteral("production day saved");
    }

    QString turnAddBardana() {
        const auto d = anyDay();
        if (d.isEmpty())
            return newDay();
        run("UPDATE DailyProduction SET AddBardana = ? WHERE ProductionDate = ? AND ProcessId = ?",
            {1 - d[2].toInt(), d[0], d[1]});
        return QStringLiteral("day's own bags turned to %1").arg(1 - d[2].toInt());
    }

    // Table and key names come from these constants only.
    QString changeDayLine() {
        const bool consumption = pick(2);
        const QString table =
            consumption ? QStringLiteral("Consumption") : QStringLiteral("Production");
        const QString key =
            consumption ? QStringLiteral("ConsumptionId") : QStringLiteral("ProductionLineId");
        const auto day = anyDay();
        if (day.isEmpty())
            return newDay();
        const QVariant line =
            anyRow(qPrintable(QStringLiteral("SELECT %1 FROM %2 ORDER BY 1").arg(key, table)))
                .value(0);
        switch (line.isNull() ? 0 : 1 + pick(4)) {
        case 0:
            insertDayLine(day, consumption);
            return table + QStringLiteral(" line added");
        case 1:
            execute(m_c, QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(table, key), {line});
            return table + QStringLiteral(" line dropped");
        case 2:
            execute(m_c,
                    QStringLiteral("UPDATE %1 SET NoOfBags = ?, BagWeight = ?, CommodityId = ? "
                                   "WHERE %2 = ?")
                        .arg(table, key),
                    {1 + pick(200), oneOf({10, 50, 100}), 1 + pick(7), line});
            return table + QStringLiteral(" line changed");
        default: // onto another day, whose bags may be counted differently
            execute(m_c,
                    QStringLiteral("UPDATE %1 SET ProductionDate = ?, ProcessId = ?, "
                                   "BagsTypeId = ?, BagsClassId = ? WHERE %2 = ?")
                        .arg(table, key),
                    {day[0], day[1], bagType(), bagClass(), line});
            return table + QStringLiteral(" line moved to another day");
        }
    }

    QString newLetter() {
        for (int payment = 1; payment <= 3; ++payment)
            run("INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, RatePerUnit, "
                "PricePerBag) SELECT ?, ?, ?, ?, ? WHERE NOT EXISTS (SELECT 1 FROM DFCPayments "
                "WHERE PaymentId = ?)",
                {payment, QDate(2026, 11, 1), 1 + pick(2), rate(), price(), payment});
        const double bags = 1 + pick(500);
        // A letter written by hand may leave its figures empty.
        const QVariant weight = pick(8) ? QVariant(bags * oneOf({100, 99.95, 50.5})) : QVariant();
        run("INSERT INTO AuthorityLetters (PaymentId, PermitNo, CenterId, NoOfBags, TotalWeight) "
            "VALUES (?, ?, ?, ?, ?)",
            {1 + pick(3), QStringLiteral("P-%1-%2").arg(m_seed).arg(++m_permit), centre(), bags,
             weight});
        return QStringLiteral("letter %1 written").arg(m_permit);
    }

    QString changeLetter() {
        const auto l = anyLetter();
        if (l.isEmpty())
            return newLetter();
        switch (pick(4)) {
        case 3:
            run("UPDATE AuthorityLetters SET PaymentId = ? WHERE PermitNo = ?",
                {1 + pick(3), l[0]});
            return QStringLiteral("letter %1 moved to another payment").arg(l[0].toString());
        case 0:
            run("UPDATE AuthorityLetters SET CenterId = ? WHERE PermitNo = ?", {centre(), l[0]});
            return QStringLiteral("letter %1 moved to another centre").arg(l[0].toString());
        case 1:
            run("UPDATE AuthorityLetters SET NoOfBags = ?, TotalWeight = ? WHERE PermitNo = ?",
                {pick(6) ? QVariant(1 + pick(500)) : QVariant(), oneOf({0, 1234.5678, 20000}),
                 l[0]});
            return QStringLiteral("letter %1 figures changed").arg(l[0].toString());
        default: // everything at once
            run("UPDATE AuthorityLetters SET CenterId = ?, NoOfBags = NoOfBags + 7, "
                "TotalWeight = TotalWeight - 0.25 WHERE PermitNo = ?",
                {centre(), l[0]});
            return QStringLiteral("letter %1 moved and changed").arg(l[0].toString());
        }
    }

    QString removeLetter() {
        const auto l = anyLetter();
        if (l.isEmpty())
            return newLetter();
        run("DELETE FROM AuthorityLetters WHERE PermitNo = ?", {l[0]});
        return QStringLiteral("letter %1 removed").arg(l[0].toString());
    }

    // A payment's prices or commodity change under the letters it already has.
    QString changePayment() {
        const auto p = anyRow("SELECT PaymentId FROM DFCPayments ORDER BY 1");
        if (p.isEmpty())
            return newLetter();
        switch (pick(3)) {
        case 0:
            run("UPDATE DFCPayments SET RatePerUnit = ? WHERE PaymentId = ?", {rate(), p[0]});
            return QStringLiteral("payment %1 rate changed").arg(p[0].toInt());
        case 1:
            run("UPDATE DFCPayments SET PricePerBag = ?, RatePerUnit = ? WHERE PaymentId = ?",
                {price(), rate(), p[0]});
            return QStringLiteral("payment %1 prices changed").arg(p[0].toInt());
        default:
            run("UPDATE DFCPayments SET CommodityId = ? WHERE PaymentId = ?", {1 + pick(2), p[0]});
            return QStringLiteral("payment %1 commodity changed").arg(p[0].toInt());
        }
    }

    // A head changes centre, or loses or gains one, with whatever vehicles it has.
    QString moveArrivalCentre() {
        const auto a = anyArrival();
        if (a.isEmpty())
            return newArrival();
        run("UPDATE Arrivals SET CenterId = ? WHERE ArrivalId = ?", {centre(), a[0]});
        return QStringLiteral("arrival %1 moved to another centre").arg(a[0].toInt());
    }

    // As the production screen removes a day: its lines, then the day.
    QString removeDay() {
        const auto d = anyDay();
        if (d.isEmpty())
            return newDay();
        Transaction tx(m_c);
        run("DELETE FROM Consumption WHERE ProductionDate = ? AND ProcessId = ?", {d[0], d[1]});
        run("DELETE FROM Production WHERE ProductionDate = ? AND ProcessId = ?", {d[0], d[1]});
        run("DELETE FROM DailyProduction WHERE ProductionDate = ? AND ProcessId = ?", {d[0], d[1]});
        tx.commit();
        return QStringLiteral("production day removed");
    }
};

} // namespace

class TstStock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Quantity moves leave the average cost alone, a new stock row starts at cost 0, and
    // invoices and DFC payments move no quantity.
    void quantitiesOnlyFromArrivalsAndProduction() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshMasterConn();
        const Conn& c = *conn;
        test::writeDocuments(c);
        auto weight = [&] {
            return toDouble(scalar(
                c, QStringLiteral("SELECT TotalWeight FROM CurrentStock WHERE CommodityId = 1")));
        };
        QCOMPARE(weight(), 19890.0 + 9940.0 - 100 * 100);
        QCOMPARE(toDouble(scalar(
                     c, QStringLiteral("SELECT Cost FROM CurrentStock WHERE CommodityId = 1"))),
                 0.0);
        execute(c,
                QStringLiteral("UPDATE CurrentStock SET Cost = 97.123456 WHERE CommodityId = 1"));
        execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = 1"));
        QCOMPARE(weight(), -100.0 * 100);
        QCOMPARE(toDouble(scalar(
                     c, QStringLiteral("SELECT Cost FROM CurrentStock WHERE CommodityId = 1"))),
                 97.123456);
        execute(c, QStringLiteral("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId = 1"));
        execute(c, QStringLiteral("UPDATE DFCPayments SET IsPosted = 0 WHERE PaymentId = 1"));
        execute(c, QStringLiteral("DELETE FROM PurchaseBody"));
        QCOMPARE(weight(), 19890.0 + 9940.0 - 100 * 100);
        QCOMPARE(test::stockFault(c), QString());
    }

    // The sample mill, with whatever sample documents it carries, starts out consistent.
    void sampleMillStartsConsistent() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshSampleConn();
        QCOMPARE(test::stockFault(*conn), QString());
    }

    void invariantHoldsUnderRandomChanges_data() {
        QTest::addColumn<quint32>("seed");
        QTest::newRow("seed 7") << quint32(7);
        QTest::newRow("seed 2026") << quint32(2026);
    }

    void invariantHoldsUnderRandomChanges() {
        GM_REQUIRE_ENGINE();
        QFETCH(quint32, seed);
        auto conn = test::freshMasterConn();
        Mill mill(*conn, seed);
        QStringList recent;
        for (int i = 0; i < 300; ++i) {
            recent << QStringLiteral("%1: %2").arg(i).arg(mill.step());
            if (recent.size() > 8)
                recent.removeFirst();
            QString fault = recent.last().contains(QLatin1String("FAULT"))
                                ? QStringLiteral("the keys let it pass")
                                : test::stockFault(*conn);
            if (fault.isEmpty())
                fault = test::quotaFault(*conn);
            if (fault.isEmpty())
                fault = test::ratesFault(*conn);
            QVERIFY2(fault.isEmpty(), qPrintable(fault + u'\n' + recent.join(u'\n')));
        }
        // A run that leaves nothing in stock has proved little.
        QVERIFY(toInt(scalar(*conn,
                             QStringLiteral(
                                 "SELECT COUNT(*) FROM CurrentStock WHERE TotalWeight <> 0"))) > 0);
        QVERIFY(toInt(scalar(*conn, QStringLiteral("SELECT (SELECT COUNT(*) FROM PRCenterQuota "
                                                   "WHERE LetterWeight <> 0) * (SELECT COUNT(*) "
                                                   "FROM PRCenterQuota WHERE ArrivedWeight <> "
                                                   "0)"))) > 0);
        QVERIFY(toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM PRCenterRates WHERE "
                                                   "RateCount > 0"))) > 0);
    }

    // A database last opened by the program before the quota table: the letters and arrivals
    // it already holds fill the table on the next opening, and the triggers take over from there.
    void quotaFilledWhenOlderDatabaseOpens() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshMasterConn();
        const QString location = test::lastLocation();
        const QStringList back =
            conn->isPostgres()
                ? QStringList{"DROP TABLE PRCenterQuota",
                              "DROP TABLE PRCenterRates",
                              "DROP INDEX IX_AuthorityLetters_CenterPayment",
                              "DROP FUNCTION gm_authorityletters_rates(), gm_dfcpayments_rates() "
                              "CASCADE",
                              "DROP FUNCTION gm_move_letter_rates(integer, integer, integer), "
                              "gm_move_rates(integer, integer, integer, numeric, numeric, "
                              "integer)",
                              "DROP FUNCTION gm_authorityletters_quota(), gm_arrivalsbody_quota(), "
                              "gm_arrivals_quota_move(), gm_arrivals_quota_remove() CASCADE",
                              "DROP FUNCTION gm_count_letter(integer, integer), "
                              "gm_move_arrival_quota(integer, integer, numeric), "
                              "gm_move_quota(integer, numeric, numeric, numeric, numeric)",
                              "DROP INDEX IX_HProductionBody_CommoditySerial"}
                : QStringList{"DROP TRIGGER TrAuthorityLettersQuotaIns",
                              "DROP TRIGGER TrAuthorityLettersQuotaUpd",
                              "DROP TRIGGER TrAuthorityLettersQuotaDel",
                              "DROP TRIGGER TrArrivalsBodyQuotaIns",
                              "DROP TRIGGER TrArrivalsBodyQuotaUpd",
                              "DROP TRIGGER TrArrivalsBodyQuotaDel",
                              "DROP TRIGGER TrArrivalsQuotaMove",
                              "DROP TRIGGER TrArrivalsQuotaDel",
                              "DROP TRIGGER TrAuthorityLettersRatesIns",
                              "DROP TRIGGER TrAuthorityLettersRatesUpd",
                              "DROP TRIGGER TrAuthorityLettersRatesDel",
                              "DROP TRIGGER TrDFCPaymentsRatesUpd",
                              "DROP TRIGGER TrDFCPaymentsRatesDel",
                              "DROP INDEX IX_AuthorityLetters_CenterPayment",
                              "DROP TABLE PRCenterQuota",
                              "DROP TABLE PRCenterRates",
                              "DROP INDEX IX_HProductionBody_CommoditySerial"};
        for (const QString& sql : back) {
            QSqlQuery q(conn->db()); // unprepared: a server prepares no definitions
            QVERIFY2(q.exec(sql), qPrintable(sql));
        }
        execute(*conn, QStringLiteral("DELETE FROM SchemaVersion WHERE Version >= 5"));
        Mill older(*conn, 11);
        for (int i = 0; i < 200; ++i)
            older.step();
        conn.reset();

        QString error;
        auto reopened = Conn::open(location, &error);
        QVERIFY2(reopened, qPrintable(error));
        QCOMPARE(storedSchemaVersion(*reopened), latestSchemaVersion());
        QCOMPARE(test::quotaFault(*reopened), QString());
        QCOMPARE(test::ratesFault(*reopened), QString());
        // Something of each kind was there to fill.
        QVERIFY(toInt(scalar(*reopened,
                             QStringLiteral("SELECT (SELECT COUNT(*) FROM PRCenterQuota WHERE "
                                            "LetterBags <> 0) * (SELECT COUNT(*) FROM "
                                            "PRCenterQuota WHERE ArrivedBags <> 0) * (SELECT "
                                            "COUNT(*) FROM PRCenterRates WHERE RateCount > 0)"))) >
                0);
        Mill newer(*reopened, 12);
        for (int i = 0; i < 100; ++i) {
            const QString did = newer.step();
            QString fault = test::quotaFault(*reopened);
            if (fault.isEmpty())
                fault = test::ratesFault(*reopened);
            QVERIFY2(fault.isEmpty(), qPrintable(fault + u'\n' + did));
        }
    }
};

QTEST_GUILESS_MAIN(TstStock)
#include "tst_stock.moc"
