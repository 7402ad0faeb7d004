#include "datastore/Schema.h"
#include "DocumentFixture.h"
#include "support/TestDb.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace gm;

namespace {

// Text that SQL built by hand would break or misread, and a long one that starts with it and
// has letters outside ASCII, so that neither width nor encoding is lost on the way.
QString awkwardText() {
    return QStringLiteral("O'Brien's 50% \"lot\" _x\\y;--");
}
QString longText() {
    QString s = awkwardText();
    s.reserve(10000);
    for (int i = 0; s.size() < 10000; ++i)
        s += QStringLiteral("Line %1 گندم 'q' %; ").arg(i);
    return s.left(10000);
}

// Statements here are constants of the test. They run unprepared, because PostgreSQL cannot
// even free a prepared statement inside a transaction that a refusal has aborted.
bool runs(const Conn& c, const QString& sql, QString* why = nullptr) {
    QSqlQuery q(c.db());
    if (q.exec(sql))
        return true;
    if (why)
        *why = q.lastError().text();
    return false;
}

} // namespace

class TstSchema : public QObject {
    Q_OBJECT

    std::unique_ptr<Conn> m_docs;

    // A database with every kind of document, shared by the row-by-row tests below; each row
    // works inside a transaction that is rolled back.
    const Conn& docs() {
        if (!m_docs) {
            m_docs = test::freshMasterConn();
            test::writeDocuments(*m_docs);
        }
        return *m_docs;
    }

private Q_SLOTS:
    void documentsAreAccepted() {
        GM_REQUIRE_ENGINE();
        const Conn& c = docs();
        // Lines of production and hourly records get their own keys when none is given.
        QVERIFY(!scalar(c, QStringLiteral("SELECT ConsumptionId FROM Consumption")).isNull());
        QVERIFY(
            !scalar(c, QStringLiteral("SELECT HProductionLineId FROM HProductionBody")).isNull());
        // Dates and times come back as written.
        QCOMPARE(toDate(scalar(c, QStringLiteral("SELECT ArrivalDate FROM Arrivals WHERE "
                                                 "ArrivalId = 1"))),
                 QDate(2026, 11, 2));
        QCOMPARE(toDateTime(scalar(c, QStringLiteral("SELECT ProcessTime FROM HourlyProduction"))),
                 QDateTime(QDate(2026, 11, 2), QTime(9, 30)));
        // Names are matched whatever case the statement spells them in.
        QCOMPARE(toInt(scalar(c, QStringLiteral("select count(*) from arrivalsbody where "
                                                "ARRIVALID = 1"))),
                 qint64(2));
    }

    void refusesOrphansAndDuplicates_data() {
        QTest::addColumn<QStringList>("setup");
        QTest::addColumn<QString>("refused");
        auto row = [](const char* name, QStringList setup, const char* sql) {
            QTest::newRow(name) << setup << QString::fromUtf8(sql);
        };
        row("vehicle without its arrival", {},
            "INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo) VALUES (99, 1, 'X-1')");
        row("arrival against an unknown contract", {},
            "INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId, ContractId) "
            "VALUES (3, '2026-11-02', 1, '6100001', 99)");
        row("arrival against an unknown permit", {},
            "INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId, PermitNo) "
            "VALUES (3, '2026-11-02', 1, '6100001', 'P-999')");
        row("invoice line for a vehicle that never arrived", {},
            "INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, CommodityId) "
            "VALUES (1, 1, 'NEVER-1', 1)");
        row("second invoice line for the same vehicle",
            {"INSERT INTO Purchases (PurchaseId, PurchaseDate, SellerId) VALUES (2, '2026-11-03', "
             "'6100001')"},
            "INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, CommodityId) "
            "VALUES (2, 1, 'LHR-1234', 1)");
        row("same vehicle twice in one arrival", {},
            "INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo) VALUES (1, 1, 'LES-77')");
        row("permit under a second payment",
            {"INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId) VALUES (2, "
             "'2026-11-03', 2)"},
            "INSERT INTO AuthorityLetters (PaymentId, PermitNo) VALUES (2, 'P-100')");
        row("consumption of a day never saved", {},
            "INSERT INTO Consumption (ProductionDate, ProcessId, CommodityId) VALUES "
            "('2026-11-03', 1, 1)");
        row("second save of a day and process", {},
            "INSERT INTO DailyProduction (ProductionDate, ProcessId) VALUES ('2026-11-02', 1)");
        row("hourly line without its record", {},
            "INSERT INTO HProductionBody (SerialNo, CommodityId) VALUES (9, 4)");
        row("line of an unknown commodity", {},
            "INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo) VALUES (1, 99, 'X-2')");
        row("party without an account", {},
            "INSERT INTO Parties (PartyId, IsSeller) VALUES ('6999999', 1)");
        row("removing an arrival that still has vehicles", {},
            "DELETE FROM Arrivals WHERE ArrivalId = 2");
        row("removing an invoiced vehicle", {},
            "DELETE FROM ArrivalsBody WHERE ArrivalId = 1 AND VehicleNo = 'LHR-1234'");
        row("removing a contract that arrivals use", {},
            "DELETE FROM PContracts WHERE ContractId = 1");
        row("removing a letter that an arrival came against", {},
            "DELETE FROM AuthorityLetters WHERE PermitNo = 'P-100'");
        row("removing a day that still has lines", {},
            "DELETE FROM DailyProduction WHERE ProcessId = 1");
    }

    void refusesOrphansAndDuplicates() {
        GM_REQUIRE_ENGINE();
        QFETCH(QStringList, setup);
        QFETCH(QString, refused);
        const Conn& c = docs();
        Transaction tx(c); // never committed: each row starts from the same documents
        for (const QString& sql : setup) {
            QString why;
            QVERIFY2(runs(c, sql, &why), qPrintable(why));
        }
        QVERIFY2(!runs(c, refused), "the database accepted it");
    }

    void textSurvivesRoundTrip_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("value");
        struct Col {
            const char* table;
            const char* column;
            const char* where;
            bool isKey; // keys carry short values only
        };
        const Col cols[] = {
            {"PContracts", "ContractMode", "ContractId = 1", false},
            {"PContracts", "ModeOfPayment", "ContractId = 1", false},
            {"PContracts", "OtherTerms", "ContractId = 1", false},
            {"ArrivalsBody", "VehicleNo", "ArrivalId = 2", true},
            {"ArrivalsBody", "VehicleNoText", "ArrivalId = 2", false},
            {"ArrivalsBody", "DriverName", "ArrivalId = 2", false},
            {"ArrivalsBody", "BiltyNo", "ArrivalId = 2", false},
            {"DFCPayments", "ChallanNo", "PaymentId = 1", false},
            {"AuthorityLetters", "PermitNo", "CenterId = 3", true},
            {"DailyProduction", "Remarks", "ProcessId = 1", false},
        };
        for (const Col& col : cols) {
            const QString name = QStringLiteral("%1.%2").arg(col.table, col.column);
            QTest::addRow("%s", qPrintable(name))
                << col.table << col.column << col.where << (col.isKey ? awkwardText() : longText());
        }
    }

    void textSurvivesRoundTrip() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, table);
        QFETCH(QString, column);
        QFETCH(QString, where);
        QFETCH(QString, value);
        const Conn& c = docs();
        Transaction tx(c);
        // Table and column names come from the constant list above, never from data.
        Query(c, QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3").arg(table, column, where))
            .bind(value)
            .exec();
        QCOMPARE(toText(scalar(
                     c, QStringLiteral("SELECT %2 FROM %1 WHERE %3").arg(table, column, where))),
                 value);
    }

    void reopeningIsNoOp() {
        GM_REQUIRE_ENGINE();
        auto first = test::freshMasterConn();
        const QString location = test::lastLocation();
        const qint64 steps =
            toInt(scalar(*first, QStringLiteral("SELECT COUNT(*) FROM SchemaVersion")));
        QCOMPARE(storedSchemaVersion(*first), latestSchemaVersion());
        first.reset();

        QString error;
        auto again = Conn::open(location, &error);
        QVERIFY2(again, qPrintable(error));
        QCOMPARE(toInt(scalar(*again, QStringLiteral("SELECT COUNT(*) FROM SchemaVersion"))),
                 steps);
        // The routines belong to every connection, not only to the one that made the schema.
        QCOMPARE(toText(scalar(*again, QStringLiteral("SELECT FunGetPartyName('6100002')"))),
                 QStringLiteral("Chaudhry Grain Traders-Sahiwal"));
    }

    void sampleMillLoadsOnlyIntoEmptyDatabase() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshSampleConn();
        const qint64 parties = toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM Parties")));
        QVERIFY(parties >= 12);
        QVERIFY_THROWS_EXCEPTION(DbError, loadSampleMill(*conn));
        QCOMPARE(toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM Parties"))), parties);
    }

    void newerSchemaIsRefused() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshConn();
        const QString location = test::lastLocation();
        execute(*conn, QStringLiteral("INSERT INTO SchemaVersion (Version) VALUES (?)"),
                {latestSchemaVersion() + 1});
        QString error;
        auto refused = Conn::open(location, &error);
        QVERIFY(!refused);
        QVERIFY2(error.contains(QStringLiteral("newer grainmill")), qPrintable(error));
        QVERIFY(error.contains(QString::number(latestSchemaVersion() + 1)));
        // Nothing was stepped back or forward.
        QCOMPARE(storedSchemaVersion(*conn), latestSchemaVersion() + 1);
    }

    void badLocationsGiveOneClearError_data() {
        QTest::addColumn<QString>("location");
        QTest::addColumn<QString>("says");
        static QTemporaryDir dir;
        QFile junk(dir.filePath(QStringLiteral("notes.sqlite")));
        if (junk.open(QIODevice::WriteOnly))
            junk.write(QByteArray(4096, 'x'));
        junk.close();
        QTest::newRow("empty") << QString() << QStringLiteral("No database location");
        QTest::newRow("folder") << dir.path() << QStringLiteral("folder");
        QTest::newRow("not a database") << junk.fileName() << QStringLiteral("Cannot open");
        QTest::newRow("folder cannot be made")
            << QStringLiteral("/proc/no/such/place/mill.sqlite") << QStringLiteral("Cannot open");
        QTest::newRow("server url without host")
            << QStringLiteral("postgresql:///mill") << QStringLiteral("postgresql://");
        QTest::newRow("nobody listening") << QStringLiteral("postgresql://mill@127.0.0.1:1/mill")
                                          << QStringLiteral("Cannot open");
        const QString pg = qEnvironmentVariable("GRAINMILL_TEST_PG_URL");
        if (!pg.isEmpty()) {
            QUrl url(pg);
            url.setUserName(QStringLiteral("gm_no_such_login"));
            url.setPassword(QStringLiteral("wrong"));
            QTest::newRow("refused login") << url.toString() << QStringLiteral("Cannot open");
        }
    }

    void badLocationsGiveOneClearError() {
        QFETCH(QString, location);
        QFETCH(QString, says);
        QString error;
        auto conn = Conn::open(location, &error);
        QVERIFY(!conn);
        QVERIFY2(error.contains(says), qPrintable(error));
        QVERIFY2(!error.contains(QStringLiteral("wrong")), "the password is shown");
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
