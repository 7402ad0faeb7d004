#include "FixtureDb.h"
#include "services/Lookups.h"

#include <QStandardItemModel>
#include <QtTest>

using namespace gm;

namespace {

QStringList texts(const LookupList& list, QString LookupItem::*field = &LookupItem::key) {
    QStringList out;
    for (const LookupItem& item : list)
        out << item.*field;
    return out;
}

// A small mill: enough parties, commodities and units that every filter and order shows.
std::unique_ptr<Conn> fixture() {
    return test::fixtureConn({
        "INSERT INTO Cities (CityId, CityName) VALUES (1, 'Multan'), (2, 'Okara')",
        "INSERT INTO ChartOfAccounts (AccountNo, AccountName, ParentAccountNo, IsEditable) VALUES "
        "('6001', 'Zahid Traders', '6', 1), ('6002', 'akbar & Sons', '6', 1), "
        "('6003', 'Bashir', '6', 1), ('6004', 'Chaudhry Mills', '6', 0), "
        "('6005', 'O''Brien 100%', '6', 1), ('6999', 'Not a party', '6', 1), "
        "('111', 'Cash in hand', '11', 1), ('112002', 'MCB', '112', 1), "
        "('112001', 'HBL', '112', 1), ('113001', 'Petty cash', '113', 1)",
        // 6003 has no city; 6004's account is closed to new documents.
        "INSERT INTO Parties (PartyId, CityId, IsSeller, IsBuyer, IsBroker) VALUES "
        "('6001', 1, 1, 1, 0), ('6002', 2, 1, 0, 1), ('6003', NULL, 1, 0, 0), "
        "('6004', 1, 0, 1, 0), ('6005', 2, 0, 0, 1)",
        "INSERT INTO Units (UnitId, UnitName, WeightInKgs) VALUES (1, 'Kg', 1), "
        "(2, 'Mound', 40), (3, 'Bori', 37.5), (4, 'Maund', 36.5), (5, 'Gram', 0.001)",
        "INSERT INTO BagsTypes (BagsTypeId, BagsType, BagCapacity) VALUES "
        "(1, 'Jute', 100), (2, 'Bardana', 95), (3, 'PP', 50)",
        "INSERT INTO BagsClasses (BagsClassId, BagsClass) VALUES (2, 'Old'), (1, 'New')",
        "INSERT INTO Commodities (CommodityId, CommodityName, RateUnitId, IsPurchaseable, "
        "IsSaleable, IsWheatCommodity) VALUES (1, 'Wheat', 2, 1, 0, 1), (2, 'Flour', 1, 0, 1, 0), "
        "(3, 'Bran', 3, 1, 1, 0), (4, 'Seed wheat', 2, 1, 1, 1), (5, 'Sacks', NULL, 0, 0, 0)",
        "INSERT INTO Processes (ProcessId, ProcessName) VALUES (2, 'Grinding'), (1, 'Cleaning')",
        "INSERT INTO PRCenters (CenterId, CenterName) VALUES (1, 'Sahiwal'), (2, 'arifwala'), "
        "(3, 'Burewala')",
    });
}

} // namespace

class TestLookups : public QObject {
    Q_OBJECT

    std::unique_ptr<Conn> m_conn;

private Q_SLOTS:
    void initTestCase() { m_conn = fixture(); }

    void partyLists_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QStringList>("keys");
        // Name order ignores case; a closed account shows only under ALL; an account without a
        // party row never shows.
        QTest::newRow("ALL") << "ALL" << QStringList{"6002", "6003", "6004", "6005", "6001"};
        QTest::newRow("Suppliers") << "Suppliers" << QStringList{"6002", "6003", "6001"};
        QTest::newRow("Buyers") << "Buyers" << QStringList{"6001"};
        QTest::newRow("Brokers") << "Brokers" << QStringList{"6002", "6005"};
    }

    void partyLists() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, type);
        QFETCH(QStringList, keys);
        const LookupList types = partyTypeList();
        QCOMPARE(texts(types, &LookupItem::name),
                 (QStringList{"ALL", "Suppliers", "Buyers", "Brokers"}));
        // The screen goes from the text in the type combo to its key and from there to the list.
        const auto kind = partyTypeFromKey(findKey(types, type));
        QVERIFY(kind.has_value());
        const LookupList list = loadParties(*m_conn, *kind);
        QCOMPARE(texts(list), keys);
        // Names read as the database's own routine reads them, a party without a city too.
        for (const LookupItem& item : list)
            QCOMPARE(item.name, toText(scalar(*m_conn, "SELECT FunGetPartyName(?)", {item.key})));
    }

    void commodityFlags_data() {
        QTest::addColumn<bool>("purchaseable");
        QTest::addColumn<bool>("saleable");
        QTest::addColumn<bool>("wheat");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("no flag") << false << false << false << QStringList{"1", "2", "3", "4", "5"};
        QTest::newRow("all three: every commodity")
            << true << true << true << QStringList{"1", "2", "3", "4", "5"};
        QTest::newRow("purchaseable and saleable")
            << true << true << false << QStringList{"3", "4"};
        QTest::newRow("saleable") << false << true << false << QStringList{"2", "3", "4"};
        QTest::newRow("wheat") << false << false << true << QStringList{"1", "4"};
    }

    void commodityFlags() {
        GM_REQUIRE_ENGINE();
        QFETCH(bool, purchaseable);
        QFETCH(bool, saleable);
        QFETCH(bool, wheat);
        QFETCH(QStringList, keys);
        const LookupList list = loadCommodities(*m_conn, purchaseable, saleable, wheat);
        QCOMPARE(texts(list), keys);
        for (const LookupItem& item : list)
            QCOMPARE(item.name,
                     toText(scalar(*m_conn, "SELECT FunGetCommodity(?)", {item.key.toInt()})));
    }

    void referenceLists() {
        GM_REQUIRE_ENGINE();
        QCOMPARE(loadBanks(*m_conn),
                 (LookupList{{"HBL", "112001"}, {"MCB", "112002"}, {"Cash in hand", "111"}}));
        QCOMPARE(loadPRCenters(*m_conn),
                 (LookupList{{"arifwala", "2"}, {"Burewala", "3"}, {"Sahiwal", "1"}}));
        QCOMPARE(loadBagTypes(*m_conn), (LookupList{{"Bardana", "2"}, {"Jute", "1"}, {"PP", "3"}}));
        QCOMPARE(loadBagClasses(*m_conn), (LookupList{{"New", "1"}, {"Old", "2"}}));
        QCOMPARE(loadProcesses(*m_conn), (LookupList{{"Cleaning", "1"}, {"Grinding", "2"}}));
        QCOMPARE(texts(loadUnits(*m_conn), &LookupItem::name),
                 (QStringList{"Kg (1)", "Mound (40)", "Bori (38)", "Maund (37)", "Gram (0)"}));
    }

    // Whole kilograms round half away from zero, unlike the screens' own rounding; ties (37.5,
    // 36.5) are checked through the unit list itself.
    void unitTexts() {
        QCOMPARE(unitDisplayName("Odd", 36.4999), QStringLiteral("Odd (36)"));
        // A server may hand the weight over as decimal text.
        QCOMPARE(unitDisplayName("Bag", "49.5000"), QStringLiteral("Bag (50)"));
        QCOMPARE(unitDisplayName("Bag", QVariant()), QString());
        QCOMPARE(unitDisplayName(QVariant(), 40.0), QString());
    }

    void screenQueries() {
        GM_REQUIRE_ENGINE();
        QCOMPARE(GetRateUnitName(*m_conn, 1), QStringLiteral("Mound (40)"));
        QCOMPARE(GetRateUnitName(*m_conn, 5), QString());  // no rate unit
        QCOMPARE(GetRateUnitName(*m_conn, 99), QString()); // no commodity

        const QHash<QString, double> weights = unitWeights(*m_conn);
        QCOMPARE(weights.size(), 5);
        QCOMPARE(weights.value("3"), 37.5);

        // A screen's own query: the fields are found whatever case the engine gives them, a
        // bound value is data, and a null reads as the empty text.
        QCOMPARE(loadList(*m_conn,
                          "SELECT AccountNo AS id, AccountName AS name FROM ChartOfAccounts "
                          "WHERE AccountName = ?",
                          {"O'Brien 100%"}),
                 (LookupList{{"O'Brien 100%", "6005"}}));
        QCOMPARE(loadList(*m_conn,
                          "SELECT PartyId AS ID, CAST(NULL AS text) AS Name FROM Parties "
                          "WHERE PartyId = ?",
                          {"6001"}),
                 (LookupList{{"", "6001"}}));
        QVERIFY_THROWS_EXCEPTION(DbError, loadList(*m_conn, "SELECT CityId, CityName FROM Cities"));
        QVERIFY_THROWS_EXCEPTION(DbError, loadList(*m_conn, "SELECT Name, ID FROM NoSuchTable"));
    }

    void likePatternsTreatTextAsData_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("case ignored") << likeStartsWith("ZAHID") << QStringList{"6001"};
        QTest::newRow("percent is a percent") << likeContains("100%") << QStringList{"6005"};
        QTest::newRow("underscore is an underscore") << likeContains("_") << QStringList{};
        QTest::newRow("quote") << likeStartsWith("o'b") << QStringList{"6005"};
        QTest::newRow("escape character itself") << likeContains("!") << QStringList{};
        QTest::newRow("empty matches all parties")
            << likeContains("") << QStringList{"6001", "6002", "6003", "6004", "6005", "6999"};
    }

    void likePatternsTreatTextAsData() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, pattern);
        QFETCH(QStringList, keys);
        const LookupList found =
            loadList(*m_conn,
                     "SELECT AccountNo AS ID, AccountName AS Name FROM ChartOfAccounts WHERE " +
                         likeCondition(*m_conn, "AccountName") +
                         " AND AccountNo LIKE ? "
                         "ORDER BY AccountNo",
                     {pattern, "6%"});
        QCOMPARE(texts(found), keys);
    }

    // Case is ignored for every letter, not only A to Z, and without relying on the server's
    // locale: the text here is read under the C collation, which folds A to Z alone.
    void likeIgnoresCaseForEveryLetter_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<bool>("matches");
        QTest::newRow("lower finds upper") << "Ünal's" << likeContains("ünal") << true;
        QTest::newRow("upper finds lower") << "Çiftçi" << likeStartsWith("ÇIFTÇ") << true;
        QTest::newRow("a letter is not its plain twin")
            << "Ünal's" << likeContains("unal") << false;
    }

    void likeIgnoresCaseForEveryLetter() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, text);
        QFETCH(QString, pattern);
        QFETCH(bool, matches);
        const QString value =
            m_conn->isPostgres() ? "(CAST(? AS TEXT) COLLATE \"C\")" : "CAST(? AS TEXT)";
        const QVariant found = scalar(
            *m_conn, "SELECT CASE WHEN " + likeCondition(*m_conn, value) + " THEN 1 ELSE 0 END",
            {text, pattern});
        QCOMPARE(toInt(found) == 1, matches);
    }

    void findingByName() {
        const LookupList list{{"Wheat", "1"}, {"Flour", "2"}, {"Wheat", "7"}, {"", "9"}};
        QCOMPARE(findKey(list, "Wheat"), QStringLiteral("1")); // the first of equal names
        QCOMPARE(findKey(list, "wheat"), QStringLiteral("0"));
        QCOMPARE(findKey(list, "Whea"), QStringLiteral("0"));
        QCOMPARE(indexOfName(list, "Flour"), 1);
        QCOMPARE(indexOfName(list, ""), 3);
        QCOMPARE(indexOfName(list, "Bran"), -1);
    }

    void gridSums_data() {
        QTest::addColumn<QList<QVariantList>>("rows");
        QTest::addColumn<int>("column");
        QTest::addColumn<qint64>("raw");
        QTest::newRow("no rows") << QList<QVariantList>{} << 1 << qint64(0);
        QTest::newRow("leading numbers") << QList<QVariantList>{{"a", "12kg"},
                                                                {"b", " -2.5"},
                                                                {"c", "1,234"},
                                                                {"d", "abc"},
                                                                {"e", ""}}
                                         << 1 << qint64(105000);
        // Grids hold numbers as well as texts; a number reads through its text.
        QTest::newRow("numbers") << QList<QVariantList>{{2.5}, {"7 bags"}, {1e-5}} << 0
                                 << qint64(95000);
        // Each cell becomes four-decimal money first: 0.00005 ties to 0, 0.00015 to 0.0002.
        QTest::newRow("cells rounded to even")
            << QList<QVariantList>{{"0.00005"}, {"0.00015"}, {"0.00025"}} << 0 << qint64(4);
        QTest::newRow("no drift over many rows")
            << QList<QVariantList>(1000, QVariantList{"0.1"}) << 0 << qint64(1000000);
        QTest::newRow("short rows count nothing")
            << QList<QVariantList>{{"5", "7"}, {"5"}} << 1 << qint64(70000);
        QTest::newRow("column beyond every row") << QList<QVariantList>{{"5"}} << 4 << qint64(0);
    }

    // A column summed through the model that shows it, as every grid footer is.
    void gridSums() {
        QFETCH(QList<QVariantList>, rows);
        QFETCH(int, column);
        QFETCH(qint64, raw);
        QStandardItemModel model;
        for (const QVariantList& row : rows) {
            QList<QStandardItem*> items;
            for (const QVariant& cell : row) {
                items << new QStandardItem;
                items.last()->setData(cell, Qt::DisplayRole);
            }
            model.appendRow(items);
        }
        QCOMPARE(SumGridColumn(model, column).raw(), raw);
    }
};

QTEST_GUILESS_MAIN(TestLookups)
#include "tst_lookups.moc"
