#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "MasterDataEditor.h"
#include "MasterDataStore.h"
#include "support/Modals.h"
#include "support/TestDb.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTableView>
#include <QtTest>

using namespace gm;
using namespace gm::host;

namespace {

const TableDef& def(const char* id) {
    const TableDef* s = findMasterTable(QString::fromLatin1(id));
    Q_ASSERT(s);
    return *s;
}

// The row a clerk would type: texts for text and number fields, typed values for the rest,
// given by column so the test reads like the form.
std::vector<QVariant> input(const TableDef& s, const QVariantMap& byColumn) {
    std::vector<QVariant> in(s.fields.size());
    for (size_t i = 0; i < s.fields.size(); ++i) {
        const FieldDef& f = s.fields[i];
        QVariant v = byColumn.value(f.column);
        if (!v.isValid() && (f.type == FieldType::Text || f.type == FieldType::Integer ||
                             f.type == FieldType::Decimal))
            v = QString();
        in[i] = v;
    }
    return in;
}

RowValues row(const TableDef& s, const QVariantMap& byColumn) {
    RowValues r;
    const auto problem = MasterDataStore::parse(s, input(s, byColumn), &r);
    if (problem)
        qFatal("fixture row does not parse: %s", qPrintable(problem->message));
    return r;
}

void insert(const Conn& c, const char* id, const QVariantMap& values) {
    MasterDataStore(c, def(id)).insert(row(def(id), values));
}

// A commodity that would be accepted, with the given fields changed.
QVariantMap commodity(const char* id, const char* name, const QVariantMap& changes = {}) {
    QVariantMap m{
        {"CommodityId", id}, {"CommodityName", name}, {"RateUnitId", 2}, {"StockUnitId", 1}};
    for (auto it = changes.begin(); it != changes.end(); ++it)
        m[it.key()] = it.value();
    return m;
}

// A small mill of our own, so the tests do not hang on the sample mill's contents.
void seed(const Conn& c) {
    insert(c, "cities", {{"CityId", "1"}, {"CityName", "Multan"}});
    insert(c, "cities", {{"CityId", "2"}, {"CityName", "Okara"}});
    insert(c, "units", {{"UnitId", "1"}, {"UnitName", "Kg"}, {"WeightInKgs", "1"}});
    insert(c, "units", {{"UnitId", "2"}, {"UnitName", "Mound"}, {"WeightInKgs", "40"}});
    insert(c, "commodities", commodity("1", "Wheat"));
    insert(c, "commodities", commodity("2", "Bran"));
    insert(c, "accounts", {{"AccountNo", "6"}, {"AccountName", "Creditors"}});
    insert(c, "parties",
           {{"AccountNo", "6001"},
            {"AccountName", "Haji Trader"},
            {"ParentAccountNo", "6"},
            {"IsEditable", true},
            {"CityId", 1},
            {"IsSeller", true}});
}

qint64 count(const Conn& c, const QString& sql, std::initializer_list<QVariant> values = {}) {
    return toInt(scalar(c, sql, values));
}

} // namespace

class TstMasterData : public QObject {
    Q_OBJECT
    std::unique_ptr<Conn> m_conn; // a fresh database with the small mill, for each test and row

private Q_SLOTS:
    void init() {
        GM_REQUIRE_ENGINE();
        m_conn = test::freshConn();
        seed(*m_conn);
    }
    void cleanup() { m_conn.reset(); }
    void validationRefuses_data();
    void validationRefuses();
    void partyIsTwoRowsKeptTogether();
    void usedRowCannotBeDeleted_data();
    void usedRowCannotBeDeleted();
    void ledgerEntriesAreNumberedByTheDatabase();
    void editorByKeyboard();
    void processComponents();
};

void TstMasterData::validationRefuses_data() {
    QTest::addColumn<QString>("list");
    QTest::addColumn<QVariantMap>("values");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("message");
    const auto bagOf = [](const char* weight) {
        return QVariantMap{{"UnitId", "9"}, {"UnitName", "Bag"}, {"WeightInKgs", weight}};
    };

    QTest::newRow("required name")
        << "cities" << QVariantMap{{"CityId", "9"}, {"CityName", "  "}} << "CityName"
        << "City must be filled in.";
    QTest::newRow("required lookup")
        << "commodities" << commodity("9", "Maize", {{"RateUnitId", QVariant()}}) << "RateUnitId"
        << "Rate unit must be filled in.";
    QTest::newRow("number with letters") << "units" << bagOf("40kg") << "WeightInKgs"
                                         << "Weight in kg must be a number.";
    QTest::newRow("comma is not a decimal point") << "units" << bagOf("1,5") << "WeightInKgs"
                                                  << "Weight in kg must be a number.";
    QTest::newRow("key not whole")
        << "cities" << QVariantMap{{"CityId", "2.5"}, {"CityName", "Sahiwal"}} << "CityId"
        << "City no. must be a whole number.";
    QTest::newRow("negative rate")
        << "commodities" << commodity("9", "Maize", {{"SaleRate", "-1"}}) << "SaleRate"
        << "Sale rate cannot be below zero.";
    QTest::newRow("name taken, other case")
        << "cities" << QVariantMap{{"CityId", "9"}, {"CityName", "MULTAN"}} << "CityName"
        << "City \"MULTAN\" already exists.";
    QTest::newRow("key taken") << "commodities" << commodity("1", "Maize") << "CommodityId"
                               << "Commodity no. 1 is already used by another commodity.";
    QTest::newRow("party account taken")
        << "parties"
        << QVariantMap{{"AccountNo", "6001"}, {"AccountName", "Someone"}, {"CityId", 2}}
        << "AccountNo"
        << "Account no. 6001 is already used by another party.";
    QTest::newRow("quote is data, not a clash")
        << "cities" << QVariantMap{{"CityId", "9"}, {"CityName", "O'Hara"}} << QString()
        << QString();
}

void TstMasterData::validationRefuses() {
    QFETCH(QString, list);
    QFETCH(QVariantMap, values);
    QFETCH(QString, column);
    QFETCH(QString, message);
    const TableDef& s = *findMasterTable(list);
    MasterDataStore store(*m_conn, s);
    RowValues r;
    auto problem = MasterDataStore::parse(s, input(s, values), &r);
    const bool parsed = !problem;
    if (parsed)
        problem = store.validate(r, nullptr);
    if (message.isEmpty()) {
        QVERIFY2(!problem, qPrintable(problem ? problem->message : QString()));
        store.insert(r);
        QCOMPARE(count(*m_conn, QStringLiteral("SELECT COUNT(*) FROM Cities WHERE CityName = ?"),
                       {QStringLiteral("O'Hara")}),
                 1);
        return;
    }
    QVERIFY(problem);
    QCOMPARE(problem->message, message);
    QCOMPARE(s.fields[size_t(problem->field)].column, column);
    // The store refuses the same row even when a caller skips the check.
    if (parsed)
        QVERIFY_THROWS_EXCEPTION(DbError, store.insert(r));
}

void TstMasterData::partyIsTwoRowsKeptTogether() {
    const TableDef& s = def("parties");
    MasterDataStore store(*m_conn, s);
    const QString partyRows = QStringLiteral(
        "SELECT COUNT(*) FROM ChartOfAccounts a JOIN Parties p ON p.PartyId = a.AccountNo "
        "WHERE a.AccountName = ? AND p.CityId = ? AND p.IsBroker = ? AND p.IsSeller = ?");
    const QString accounts =
        QStringLiteral("SELECT COUNT(*) FROM ChartOfAccounts WHERE AccountNo = ?");

    // A party whose Parties row fails (an unknown city) leaves no account behind.
    const RowValues bad = row(s, {{"AccountNo", "6002"}, {"AccountName", "Ghost"}, {"CityId", 99}});
    QVERIFY_THROWS_EXCEPTION(DbError, store.insert(bad));
    QCOMPARE(count(*m_conn, accounts, {QStringLiteral("6002")}), 0);

    // Changing a party writes both halves; the key stays.
    const auto rows = store.load();
    QCOMPARE(rows.size(), size_t(1));
    RowValues changed = rows.front();
    changed[size_t(s.fieldIndex("AccountName"))] = QStringLiteral("Haji Trader & Sons");
    changed[size_t(s.fieldIndex("CityId"))] = qint64(2);
    changed[size_t(s.fieldIndex("IsBroker"))] = true;
    store.update(rows.front(), changed);
    QCOMPARE(count(*m_conn, partyRows, {QStringLiteral("Haji Trader & Sons"), 2, 1, 1}), 1);
    QCOMPARE(store.displayText(s.fieldIndex("CityId"), changed[size_t(s.fieldIndex("CityId"))]),
             QStringLiteral("Okara"));

    // Removing an unused party removes both rows.
    store.remove(changed);
    QCOMPARE(count(*m_conn, QStringLiteral("SELECT COUNT(*) FROM Parties")), 0);
    QCOMPARE(count(*m_conn, accounts, {QStringLiteral("6001")}), 0);
}

void TstMasterData::usedRowCannotBeDeleted_data() {
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("withContract");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const char* list, const char* key, bool contract,
                        const char* noun, const char* user) {
        QTest::newRow(name) << QString::fromLatin1(list) << QString::fromLatin1(key) << contract
                            << QStringLiteral("This %1 cannot be deleted: it is used in (%2).")
                                   .arg(QLatin1String(noun), QLatin1String(user));
    };
    row("commodity", "commodities", "1", true, "commodity", "PContracts");
    row("party", "parties", "6001", true, "party", "PContracts");
    // A city or a unit in use goes through the commodity's look-up; the editor below shows a
    // used city's refusal.
    row("account of a party", "accounts", "6001", false, "account", "Parties");
    row("account with accounts under it", "accounts", "6", false, "account", "ChartOfAccounts");
}

void TstMasterData::usedRowCannotBeDeleted() {
    QFETCH(QString, list);
    QFETCH(QString, key);
    QFETCH(bool, withContract);
    QFETCH(QString, message);
    if (withContract)
        execute(*m_conn,
                QStringLiteral("INSERT INTO PContracts (ContractId, ContractDate, CommodityId, "
                               "PartyId, Quantity) VALUES (?, ?, ?, ?, ?)"),
                {1, QDate(2026, 7, 1), 1, QStringLiteral("6001"), 100.0});
    const TableDef& s = *findMasterTable(list);
    MasterDataStore store(*m_conn, s);
    const auto rows = store.load();
    const size_t keyField = size_t(s.keyFields().front());
    auto used = std::find_if(rows.begin(), rows.end(),
                             [&](const RowValues& r) { return r[keyField].toString() == key; });
    QVERIFY(used != rows.end());
    try {
        store.remove(*used);
        QFAIL("a used row was removed");
    } catch (const DbError& e) {
        QCOMPARE(e.description(), message);
    }
    QCOMPARE(store.load().size(), rows.size());
}

void TstMasterData::ledgerEntriesAreNumberedByTheDatabase() {
    const TableDef& s = def("ledger");
    MasterDataStore store(*m_conn, s);
    for (const char* debit : {"1500.25", "0"})
        store.insert(row(s, {{"AccountNo", "6001"},
                             {"EntryDate", QDate(2026, 7, 1)},
                             {"Debit", debit},
                             {"Credit", "0"}}));
    const auto rows = store.load();
    QCOMPARE(rows.size(), size_t(2));
    const int id = s.fieldIndex("EntryId");
    QVERIFY(!rows[0][size_t(id)].isNull());
    QVERIFY(rows[0][size_t(id)] != rows[1][size_t(id)]);
    QCOMPARE(rows[0][size_t(s.fieldIndex("Debit"))].toDouble(), 1500.25);
}

void TstMasterData::editorByKeyboard() {
    MasterDataEditor editor(*m_conn, def("cities"));
    editor.resize(900, 500);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QCOMPARE(editor.visibleRowCount(), 2);

    // Insert starts a row with the next number and the cursor in the name.
    editor.view()->setFocus();
    QTest::keyClick(editor.view(), Qt::Key_Insert);
    auto* name = editor.findChild<QLineEdit*>(QStringLiteral("TxtCityName"));
    QCOMPARE(editor.findChild<QLineEdit*>(QStringLiteral("TxtCityId"))->text(),
             QStringLiteral("3"));
    QCOMPARE(QApplication::focusWidget(), name);
    QTest::keyClicks(name, QStringLiteral("Sahiwal"));
    QTest::keyClick(name, Qt::Key_Return);
    QCOMPARE(editor.visibleRowCount(), 3);
    QVERIFY(!editor.isDirty());

    // A duplicate name is refused with a message and nothing is added.
    QTest::keyClick(editor.view(), Qt::Key_Insert);
    QTest::keyClicks(name, QStringLiteral("okara"));
    {
        test::Modals box(QMessageBox::Ok);
        QTest::keyClick(name, Qt::Key_Return);
        QTRY_COMPARE(box.count(), 1);
        QCOMPARE(box.last().text, QStringLiteral("City \"okara\" already exists."));
    }
    QCOMPARE(editor.visibleRowCount(), 3);
    QTest::keyClick(name, Qt::Key_Escape);

    // Typing in the list filters it.
    editor.view()->setFocus();
    QTest::keyClicks(editor.view(), QStringLiteral("mul"));
    QCOMPARE(editor.visibleRowCount(), 1);
    auto* filter = editor.findChild<QLineEdit*>(QStringLiteral("TxtFilter"));
    QCOMPARE(filter->text(), QStringLiteral("mul"));
    filter->clear();

    // Delete asks, and No keeps the row; Yes removes the unused city.
    QTest::keyClicks(editor.view(), QStringLiteral("sahi"));
    QTest::keyClick(filter, Qt::Key_Down);
    {
        test::Modals box({QMessageBox::No, QMessageBox::Yes});
        QTest::keyClick(editor.view(), Qt::Key_Delete);
        QTRY_COMPARE(box.count(), 1);
        QCOMPARE(box.last().text, QStringLiteral("Delete the city \"Sahiwal\"?"));
        QCOMPARE(editor.visibleRowCount(), 1);
        QTest::keyClick(editor.view(), Qt::Key_Delete);
        QTRY_COMPARE(box.count(), 2);
    }
    QCOMPARE(editor.visibleRowCount(), 0);
    QCOMPARE(count(*m_conn, QStringLiteral("SELECT COUNT(*) FROM Cities")), 2);

    // A city a party lives in is refused after the question, with the reason, and stays.
    filter->clear();
    QTest::keyClicks(editor.view(), QStringLiteral("mul"));
    QTest::keyClick(filter, Qt::Key_Down);
    test::Modals used({QMessageBox::Yes, QMessageBox::Ok});
    QTest::keyClick(editor.view(), Qt::Key_Delete);
    QTRY_COMPARE(used.count(), 2);
    QCOMPARE(used.seen()[0].text, QStringLiteral("Delete the city \"Multan\"?"));
    QCOMPARE(used.seen()[1].text,
             QStringLiteral("This city cannot be deleted: it is used in (Parties)."));
    QCOMPARE(count(*m_conn, QStringLiteral("SELECT COUNT(*) FROM Cities")), 2);
}

void TstMasterData::processComponents() {
    insert(*m_conn, "processes", {{"ProcessId", "1"}, {"ProcessName", "Milling"}});
    MasterDataEditor editor(*m_conn, def("processes"));
    editor.resize(900, 700);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    MasterDataEditor* parts = editor.detail();
    QVERIFY(parts);

    // Insert in the components adds a component of the current process, not a process.
    parts->view()->setFocus();
    QTest::keyClick(parts->view(), Qt::Key_Insert);
    auto* commodity = parts->findChild<QComboBox*>(QStringLiteral("CboCommodityId"));
    QCOMPARE(QApplication::focusWidget(), commodity);
    QVERIFY(!editor.isDirty());
    commodity->setCurrentIndex(commodity->findText(QStringLiteral("Bran")));
    QTest::keyClick(commodity, Qt::Key_Return);
    QCOMPARE(parts->visibleRowCount(), 1);

    const TableDef& s = def("processcomponents");
    MasterDataStore components(*m_conn, s);
    components.insert(row(s, {{"ProcessId", qint64(1)}, {"CommodityId", 1}, {"IsForInput", true}}));
    QCOMPARE(components.load(qint64(1)).size(), size_t(2));
    QCOMPARE(components.load(qint64(2)).size(), size_t(0));
    // The same commodity twice in one process is refused with the clerk's words.
    const auto problem = components.validate(
        row(s, {{"ProcessId", qint64(1)}, {"CommodityId", 2}, {"IsForOutPut", true}}), nullptr);
    QVERIFY(problem);
    QCOMPARE(problem->message,
             QStringLiteral("This commodity of the process is already in the list."));

    // A new, unsaved process has no components to edit yet.
    QTest::keyClick(editor.view(), Qt::Key_Insert);
    QVERIFY(!parts->isEnabled());

    // Removing the process takes its components along.
    MasterDataStore processes(*m_conn, def("processes"));
    processes.remove(processes.load().front());
    QCOMPARE(count(*m_conn, QStringLiteral("SELECT COUNT(*) FROM ProcessComponents")), 0);
    QCOMPARE(count(*m_conn, QStringLiteral("SELECT COUNT(*) FROM Processes")), 0);
}

QTEST_MAIN(TstMasterData)
#include "tst_master_data.moc"
