#include "datastore/Schema.h"
#include "DocumentFixture.h"
#include "support/TestDb.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

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
        QTest::addColumn<QStringList>("columns");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("value");
        auto row = [](const char* table, QStringList columns, const char* where, QString value) {
            QTest::addRow("%s %s", table, qPrintable(columns.join(u',')))
                << table << columns << where << value;
        };
        row("PContracts", {"ContractMode", "ModeOfPayment", "OtherTerms"}, "ContractId = 1",
            longText());
        row("ArrivalsBody", {"VehicleNoText", "DriverName", "BiltyNo"}, "ArrivalId = 2",
            longText());
        row("DFCPayments", {"ChallanNo"}, "PaymentId = 1", longText());
        row("DailyProduction", {"Remarks"}, "ProcessId = 1", longText());
        // Keys carry short values only.
        row("ArrivalsBody", {"VehicleNo"}, "ArrivalId = 2", awkwardText());
        row("AuthorityLetters", {"PermitNo"}, "CenterId = 3", awkwardText());
    }

    void textSurvivesRoundTrip() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, table);
        QFETCH(QStringList, columns);
        QFETCH(QString, where);
        QFETCH(QString, value);
        const Conn& c = docs();
        Transaction tx(c);
        // Table and column names come from the constant list above, never from data.
        for (const QString& column : columns) {
            Query(c, QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3").arg(table, column, where))
                .bind(value)
                .exec();
            QCOMPARE(
                toText(scalar(
                    c, QStringLiteral("SELECT %2 FROM %1 WHERE %3").arg(table, column, where))),
                value);
        }
    }

    // Reopening runs no step twice and the routines belong to every connection; a database
    // that a newer program has stepped further is refused, not stepped back.
    void reopening() {
        GM_REQUIRE_ENGINE();
        auto first = test::freshMasterConn();
        const QString location = test::lastLocation();
        const QString steps = QStringLiteral("SELECT COUNT(*) FROM SchemaVersion");
        const qint64 stepsRun = toInt(scalar(*first, steps));
        QCOMPARE(storedSchemaVersion(*first), latestSchemaVersion());
        first.reset();

        QString error;
        auto again = Conn::open(location, &error);
        QVERIFY2(again, qPrintable(error));
        QCOMPARE(toInt(scalar(*again, steps)), stepsRun);
        QCOMPARE(toText(scalar(*again, QStringLiteral("SELECT FunGetPartyName('6100002')"))),
                 QStringLiteral("Chaudhry Grain Traders-Sahiwal"));

        const int newer = latestSchemaVersion() + 1;
        execute(*again, QStringLiteral("INSERT INTO SchemaVersion (Version) VALUES (?)"), {newer});
        QVERIFY(!Conn::open(location, &error));
        QVERIFY2(error.contains(QStringLiteral("newer grainmill")), qPrintable(error));
        QVERIFY(error.contains(QString::number(newer)));
        QCOMPARE(storedSchemaVersion(*again), newer);
    }

    // The sample mill, with whatever sample documents it carries, starts out consistent and
    // never loads twice.
    void sampleMillLoadsOnlyIntoEmptyDatabase() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshSampleConn();
        QCOMPARE(test::stockFault(*conn), QString());
        const QString count = QStringLiteral("SELECT COUNT(*) FROM Parties");
        const qint64 parties = toInt(scalar(*conn, count));
        QVERIFY(parties >= 12);
        QVERIFY_THROWS_EXCEPTION(DbError, loadSampleMill(*conn));
        QCOMPARE(toInt(scalar(*conn, count)), parties);
    }

    // A folder, a file in the way and an unreachable server are refused at the start of the
    // program as well; these are the rest.
    void badLocationsGiveOneClearError_data() {
        QTest::addColumn<QString>("location");
        QTest::addColumn<QString>("says");
        static QTemporaryDir dir;
        QFile junk(dir.filePath(QStringLiteral("notes.sqlite")));
        if (junk.open(QIODevice::WriteOnly))
            junk.write(QByteArray(4096, 'x'));
        junk.close();
        QTest::newRow("empty") << QString() << QStringLiteral("No database location");
        QTest::newRow("not a database") << junk.fileName() << QStringLiteral("Cannot open");
    }

    void badLocationsGiveOneClearError() {
        QFETCH(QString, location);
        QFETCH(QString, says);
        QString error;
        QVERIFY(!Conn::open(location, &error));
        QVERIFY2(error.contains(says), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
