#include "../datastore/DocumentFixture.h"
#include "Actions.h"
#include "Generator.h"
#include "Runner.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "support/Modals.h"
#include "support/TestDb.h"

#include <QtTest>

using namespace gm;
using namespace gm::bench;

namespace {

const QDate kToday(2026, 3, 15);

// A fingerprint of what was generated: per table its rows and the sum of a value column, so
// that two runs differing in a single row or amount tell apart.
QStringList fingerprint(const Conn& conn) {
    const char* const sums[][2] = {
        {"PContracts", "RatePerUnit + Quantity + ContractId"},
        {"DFCPayments", "TTLValueWheet + PaymentId"},
        {"AuthorityLetters", "TotalWeight + CenterId"},
        {"Arrivals", "ArrivalId + CommodityId + COALESCE(CenterId, 0) + COALESCE(ContractId, 0)"},
        {"ArrivalsBody", "NetWeight + LENGTH(VehicleNo)"},
        {"PurchaseBody", "TTLValue + PurchaseId"},
        {"LedgerEntries", "Debit - Credit"},
        {"Consumption", "NoOfBags * BagWeight"},
        {"Production", "NoOfBags * BagWeight"},
        {"HProductionBody", "TTLWeight + SerialNo"},
    };
    QStringList out;
    for (const auto& s : sums)
        out << QStringLiteral("%1 %2 %3")
                   .arg(QLatin1String(s[0]))
                   .arg(toInt(
                       scalar(conn, QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(s[0]))))
                   .arg(toDouble(scalar(conn, QStringLiteral("SELECT SUM(%1) FROM %2")
                                                  .arg(QLatin1String(s[1]), QLatin1String(s[0])))),
                        0, 'f', 2);
    return out;
}

// Every average cost of wheat and of bags, to eight decimals: a save and its removal may leave
// a crumb of binary arithmetic, never a moved cost.
QStringList stockCosts(const Conn& conn) {
    QStringList out;
    for (const char* sql : {"SELECT CommodityId, Cost FROM CurrentStock ORDER BY CommodityId",
                            "SELECT BagsTypeId * 100 + BagsClassId, Cost FROM BagsCurrentStock "
                            "ORDER BY BagsTypeId, BagsClassId"}) {
        Query q(conn, QLatin1String(sql));
        q.exec();
        while (q.next())
            out << QStringLiteral("%1 %2")
                       .arg(toInt(q.value(0)))
                       .arg(toDouble(q.value(1)), 0, 'f', 8);
    }
    return out;
}

QStringList documentCounts(const Conn& conn) {
    QStringList out;
    for (const char* table : {"Purchases", "PurchaseBody", "Arrivals", "ArrivalsBody"})
        out << QStringLiteral("%1 %2")
                   .arg(QLatin1String(table))
                   .arg(toInt(scalar(conn, QStringLiteral("SELECT COUNT(*) FROM ") +
                                               QLatin1String(table))));
    return out;
}

GenerateOptions small(std::uint64_t seed) {
    GenerateOptions o;
    o.years = 0.05; // about eighteen days: every kind of document, in seconds
    o.seed = seed;
    o.today = kToday;
    o.quiet = true;
    return o;
}

} // namespace

class TestBenchGenerator : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sameSeedSameMill() {
        GM_REQUIRE_ENGINE();
        auto a = test::freshConn();
        auto b = test::freshConn();
        auto c = test::freshConn();
        generateMill(*a, small(7));
        generateMill(*b, small(7));
        generateMill(*c, small(8));
        const QStringList first = fingerprint(*a);
        QCOMPARE(fingerprint(*b), first);
        QVERIFY(fingerprint(*c) != first);

        // The history ends on the day asked for, and the shape is that of a working mill.
        QCOMPARE(toDate(scalar(*a, QStringLiteral("SELECT MAX(ArrivalDate) FROM Arrivals"))),
                 kToday);
        // Invoices follow arrivals by up to ten days, so only older vehicles are all settled.
        auto settled = [&](const char* lines) {
            return toDouble(scalar(*a,
                                   QStringLiteral("SELECT COUNT(*) FROM %1 l INNER JOIN Arrivals a "
                                                  "ON a.ArrivalId = l.ArrivalId WHERE "
                                                  "a.ArrivalDate < ?")
                                       .arg(QLatin1String(lines)),
                                   {kToday.addDays(-10)}));
        };
        const double vehicles = settled("ArrivalsBody"), invoiced = settled("PurchaseBody");
        QVERIFY2(
            invoiced / vehicles > 0.75 && invoiced / vehicles < 0.95,
            qPrintable(QStringLiteral("%1 of %2 vehicles invoiced").arg(invoiced).arg(vehicles)));
        QCOMPARE(
            toInt(scalar(*a, QStringLiteral("SELECT COUNT(*) FROM Arrivals WHERE ContractId IS "
                                            "NOT NULL GROUP BY ContractId HAVING COUNT(*) > 1"))),
            0);
    }

    // The generated stock follows the documents; every timed question, ours and the old way,
    // answers on a small mill of either engine, the saves and removals it times leave the stock
    // as they found it, and a second generation refuses the filled database.
    void everyActionAnswers() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshConn();
        GenerateOptions o = small(5);
        o.years = 0.15; // long enough for documents a month old, which the actions open
        generateMill(*conn, o);
        QCOMPARE(test::stockFault(*conn), QString());
        // A history that moves hardly any stock has proved little.
        QVERIFY(toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM CurrentStock WHERE "
                                                   "TotalWeight <> 0"))) > 10);
        QVERIFY(toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM BagsCurrentStock"))) > 3);
        const Subjects subjects = pickSubjects(*conn);
        QVERIFY(subjects.arrivalToOpen > 0 && subjects.centre > 0 && !subjects.seller.isEmpty());
        const Context ctx = benchContext(*conn, subjects);
        // A screen tells a failed statement in a box; it is closed and counted, never waited on.
        test::Modals boxes;
        QWidget owner;
        ActionSet set(ctx, subjects, &owner);
        const QStringList costsBefore = stockCosts(*conn);
        const QStringList documentsBefore = documentCounts(*conn);
        RunOptions once;
        once.repeat = 1;
        QStringList failed;
        QHash<QString, int> rows;
        for (const Action& a : set.actions()) {
            const Result r = runAction(*conn, a, once);
            if (!r.ours.ran)
                failed << a.name + QStringLiteral(": ") + r.ours.error;
            if (a.oldWay && !r.oldWay.ran)
                failed << a.name + QStringLiteral(" (old way): ") + r.oldWay.error;
            rows.insert(a.name, r.ours.rows);
            // The invoice of fifty lines is built from vehicles of its own: one missed by the
            // seller's open vehicles, or not saved, would time a smaller question.
            if (a.name.contains(QLatin1String("(50 lines)")) && r.ours.rows != 50)
                failed << QStringLiteral("%1: %2 lines").arg(a.name).arg(r.ours.rows);
        }
        for (const test::Modals::Seen& box : boxes.seen())
            failed << QStringLiteral("box: ") + box.text;
        QVERIFY2(failed.isEmpty(), qPrintable(failed.join(QLatin1Char('\n'))));
        QCOMPARE(test::stockFault(*conn), QString());
        // Saving, opening and removing invoices leaves every average cost where it was, and
        // no document behind.
        QCOMPARE(stockCosts(*conn), costsBefore);
        QCOMPARE(documentCounts(*conn), documentsBefore);
        // The screen fills its grid with every vehicle the store offers.
        QVERIFY(rows.value(QStringLiteral("invoice: open vehicles of a seller")) > 0);
        QCOMPARE(rows.value(QStringLiteral("invoice screen: a seller's open vehicles")),
                 rows.value(QStringLiteral("invoice: open vehicles of a seller")));
        QCOMPARE(rows.value(QStringLiteral("invoice screen: a contract's open vehicles")),
                 rows.value(QStringLiteral("invoice: open vehicles of a contract")));

        const QString arrivals = QStringLiteral("SELECT COUNT(*) FROM Arrivals");
        const qint64 before = toInt(scalar(*conn, arrivals));
        QVERIFY_THROWS_EXCEPTION(DbError, generateMill(*conn, o));
        QCOMPARE(toInt(scalar(*conn, arrivals)), before);
    }

    void diceStaysInItsBounds() {
        Dice dice(42);
        bool sawLow = false, sawHigh = false;
        for (int i = 0; i < 2000; ++i) {
            const qint64 v = dice.between(1, 5);
            QVERIFY(v >= 1 && v <= 5);
            sawLow |= v == 1;
            sawHigh |= v == 5;
            const double u = dice.unit();
            QVERIFY(u >= 0 && u < 1);
        }
        QVERIFY(sawLow && sawHigh);
    }
};

QTEST_MAIN(TestBenchGenerator)
#include "tst_bench_generator.moc"
