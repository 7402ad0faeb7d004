#include "FixtureDb.h"
#include "services/ReferentialGuard.h"

#include <QtTest>

using namespace gm;

namespace {

const QDate kDayWithLines(2026, 11, 20);
const QDate kDayWithout(2026, 11, 21);

// Contract 5 is used by an arrival and an invoice, 6 by nothing, 7 only by a table the
// program does not know, which names the key column its own way. Arrival 1 is invoiced.
// That table has two keys to contracts, one naming its column and one pointing at the primary
// key; its mixed-case quoted name must be used exactly as the catalog reports it.
std::unique_ptr<Conn> fixture() {
    return test::fixtureConn({
        "CREATE TABLE \"GuardNotes\" (NoteId integer PRIMARY KEY, "
        "ContractRef integer REFERENCES PContracts (ContractId), "
        "LaterContract integer REFERENCES PContracts)",
        "INSERT INTO Cities (CityId, CityName) VALUES (1, 'Multan')",
        "INSERT INTO ChartOfAccounts (AccountNo, AccountName, IsEditable) VALUES "
        "('6001', 'Zahid Traders', 1), ('6''01', 'O''Brien', 1), ('6002', 'Unused', 1)",
        "INSERT INTO Parties (PartyId, CityId, IsSeller) VALUES ('6001', 1, 1), ('6''01', 1, 1)",
        "INSERT INTO Commodities (CommodityId, CommodityName) VALUES (1, 'Wheat')",
        "INSERT INTO Processes (ProcessId, ProcessName) VALUES (1, 'Grinding')",
        "INSERT INTO PContracts (ContractId, ContractDate, CommodityId, PartyId) VALUES "
        "(5, '2026-11-01', 1, '6001'), (6, '2026-11-01', 1, '6001'), "
        "(7, '2026-11-01', 1, '6001')",
        "INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId, ContractId) "
        "VALUES (1, '2026-11-02', 1, '6001', 5), (2, '2026-11-02', 1, '6001', NULL)",
        "INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo) VALUES (1, 1, 'LHR-1')",
        "INSERT INTO Purchases (PurchaseId, PurchaseDate, ContractId, SellerId) VALUES "
        "(1, '2026-11-03', 5, '6001')",
        "INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, CommodityId) VALUES "
        "(1, 1, 'LHR-1', 1)",
        "INSERT INTO DailyProduction (ProductionDate, ProcessId) VALUES "
        "('2026-11-20', 1), ('2026-11-21', 1)",
        "INSERT INTO Consumption (ProductionDate, ProcessId, CommodityId) VALUES "
        "('2026-11-20', 1, 1)",
        "INSERT INTO \"GuardNotes\" (NoteId, ContractRef, LaterContract) VALUES (1, NULL, 7)",
    });
}

} // namespace

class TestReferentialGuard : public QObject {
    Q_OBJECT

    std::unique_ptr<Conn> m_conn;

private Q_SLOTS:
    void initTestCase() { m_conn = fixture(); }

    void findsReferences_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<DocumentKey>("key");
        QTest::addColumn<QStringList>("exclusions");
        QTest::addColumn<QString>("expected");

        const auto day = [](QDate date, int process) {
            return DocumentKey{{"ProductionDate", date}, {"ProcessId", process}};
        };
        // Named as the schema spells it, past an excluded user named in another case.
        QTest::newRow("table and exclusions in any case")
            << "pcontracts" << DocumentKey{{"ContractId", 5}} << QStringList{"ARRIVALS"}
            << "Purchases";
        QTest::newRow("exclusions covering every user")
            << "PContracts" << DocumentKey{{"ContractId", 5}}
            << QStringList{"Arrivals", " purchases", "GuardNotes"} << "";
        QTest::newRow("key column under another name")
            << "PContracts" << DocumentKey{{"ContractId", 7}} << QStringList{} << "GuardNotes";
        QTest::newRow("key column spelt in another case")
            << "PContracts" << DocumentKey{{"contractID", 7}} << QStringList{} << "GuardNotes";
        QTest::newRow("table known only by a quoted mixed-case name")
            << "GuardNotes" << DocumentKey{{"NoteId", 1}} << QStringList{} << "";
        QTest::newRow("invoiced arrival") << "Arrivals" << DocumentKey{{"ArrivalId", 1}}
                                          << QStringList{"ArrivalsBody"} << "PurchaseBody";
        QTest::newRow("arrival not invoiced")
            << "Arrivals" << DocumentKey{{"ArrivalId", 2}} << QStringList{"ArrivalsBody"} << "";
        QTest::newRow("quote in a text key is data")
            << "ChartOfAccounts" << DocumentKey{{"AccountNo", "6'01"}} << QStringList{}
            << "Parties";
        QTest::newRow("production day with lines")
            << "DailyProduction" << day(kDayWithLines, 1) << QStringList{} << "Consumption";
        QTest::newRow("production day without lines")
            << "DailyProduction" << day(kDayWithout, 1) << QStringList{} << "";
        QTest::newRow("same day, other process")
            << "DailyProduction" << day(kDayWithLines, 2) << QStringList{} << "";
    }

    void findsReferences() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, table);
        QFETCH(DocumentKey, key);
        QFETCH(QStringList, exclusions);
        QFETCH(QString, expected);
        QCOMPARE(FindReferencingTable(*m_conn, table, key, exclusions), expected);
    }

    void seesTheOpenTransaction() {
        GM_REQUIRE_ENGINE();
        const DocumentKey contract6{{"ContractId", 6}};
        {
            Transaction tx(*m_conn);
            execute(*m_conn, "UPDATE Arrivals SET ContractId = ? WHERE ArrivalId = ?", {6, 2});
            QCOMPARE(FindReferencingTable(*m_conn, "PContracts", contract6),
                     QStringLiteral("Arrivals"));
        }
        QCOMPARE(FindReferencingTable(*m_conn, "PContracts", contract6), QString());
    }

    void failsClosed_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<DocumentKey>("key");
        // A guard that cannot look must not let a removal through as if nothing were there.
        QTest::newRow("unknown table") << "NoSuchTable" << DocumentKey{{"Id", 1}};
        QTest::newRow("key column the users lack")
            << "PContracts" << DocumentKey{{"NoSuchColumn", 5}};
        QTest::newRow("no key at all") << "PContracts" << DocumentKey{};
        QTest::newRow("name that is not a name")
            << "PContracts\"; DROP TABLE Arrivals; --" << DocumentKey{{"ContractId", 5}};
    }

    void failsClosed() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, table);
        QFETCH(DocumentKey, key);
        QVERIFY_THROWS_EXCEPTION(DbError, FindReferencingTable(*m_conn, table, key));
        QCOMPARE(toInt(scalar(*m_conn, "SELECT COUNT(*) FROM Arrivals")), qint64(2));
    }
};

QTEST_GUILESS_MAIN(TestReferentialGuard)
#include "tst_referentialguard.moc"
