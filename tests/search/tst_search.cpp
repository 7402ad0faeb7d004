#include "support/Modals.h"
#include "support/TestDb.h"

#include "datastore/Sql.h"
#include "search/Search.h"
#include "search/SearchQueries.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSqlQuery>
#include <QTableView>
#include <QTest>

#include <functional>
#include <memory>

using namespace gm;
using gm::test::Modals;

namespace {

// A step for Modals: `action` on the dialog named `name`, once it is up and active.
Modals::Step on(const QString& name, std::function<void(QWidget*)> action) {
    return [name, action](QWidget* w) {
        if (w->objectName() != name)
            return false;
        w->activateWindow();
        if (!QTest::qWaitForWindowActive(w))
            qWarning("dialog %s did not become active", qPrintable(name));
        action(w);
        return true;
    };
}

template <class T> T* child(QWidget* w, const char* name) {
    T* c = w->findChild<T*>(QLatin1String(name));
    if (!c)
        qFatal("no control %s", name);
    return c;
}

QDate today() {
    return QDate::currentDate();
}

// The list as shown: per row the given columns joined by a space.
template <class Screen> QStringList rowsOf(const Screen& s, std::initializer_list<int> columns) {
    QStringList rows;
    for (int r = 0; r < s.rowCount(); ++r) {
        QStringList cells;
        for (int c : columns)
            cells << s.cellText(r, c);
        rows << cells.join(' ');
    }
    return rows;
}

} // namespace

class TestSearch : public QObject {
    Q_OBJECT

    std::unique_ptr<Conn> m_conn;
    Context m_ctx;

    void exec(const QString& sql, std::initializer_list<QVariant> values) {
        execute(*m_conn, sql, values);
    }

    void party(const QString& id, const QString& name, const QVariant& city) {
        exec("INSERT INTO ChartOfAccounts (AccountNo, AccountName, IsEditable) VALUES (?, ?, 1)",
             {id, name});
        exec("INSERT INTO Parties (PartyId, CityId, IsSeller, IsBroker) VALUES (?, ?, 1, 1)",
             {id, city});
    }

    void arrival(int id, const QDate& date, const QString& seller, int commodity) {
        exec("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId) "
             "VALUES (?, ?, ?, ?)",
             {id, date, commodity, seller});
    }

    void masterData() {
        exec("INSERT INTO Cities (CityId, CityName) VALUES (1, 'Lahore'), (2, 'Multan')", {});
        party("6001", "Ali Traders", 1);
        party("6002", "O'Brien Grain", 2);
        party("6003", "Bashir Broker", 1);
        party("6004", "Cityless Co", QVariant(QMetaType(QMetaType::Int)));
        party("5001", "Outside Ledger", 1);
        exec("INSERT INTO Units (UnitId, UnitName, WeightInKgs) VALUES (1, 'Mound', 40)", {});
        exec("INSERT INTO Commodities (CommodityId, CommodityName, RateUnitId) VALUES "
             "(1, 'Wheat', 1), (2, 'Flour Fine', 1), (3, 'Bran', 1), (4, 'Maize', 1)",
             {});
    }

    // Each test starts from the same four arrivals and no other document.
    void documents() {
        for (const char* table :
             {"HProductionBody", "HourlyProduction", "PurchaseBody", "Purchases", "ArrivalsBody",
              "Arrivals", "PContracts", "DFCPayments"})
            exec(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)), {});
        arrival(10, today().addDays(-3), "6001", 1);
        arrival(12, today().addDays(-2), "6002", 1);
        arrival(14, today(), "6004", 3);
        arrival(8, today().addDays(-400), "6001", 1); // outside the default year
    }

private Q_SLOTS:
    void initTestCase() {
        GM_REQUIRE_ENGINE();
        m_conn = test::freshConn();
        QVERIFY(m_conn);
        m_ctx.conn = m_conn.get();
        HostSettingsValues host;
        host.PeriodStart = today().addDays(-30);
        host.PeriodEnd = today().addDays(30);
        m_ctx.settings = std::make_shared<FixedHostSettings>(host);
        masterData();
    }

    void init() { documents(); }

    void cleanupTestCase() { m_conn.reset(); }

    void arrivalsListNewestFirstWithinTheYear() {
        SchArrivals s(m_ctx);
        QCOMPARE(child<QDateEdit>(&s, "DtpFromDate")->date(), today().addDays(-365));
        QCOMPARE(child<QDateEdit>(&s, "DtpToDate")->date(), today());
        QCOMPARE(s.cellText(0, 1), today().toString("dd/MM/yyyy"));
        // A party without a city has no hyphen.
        QCOMPARE(rowsOf(s, {0, 2, 3}),
                 QStringList({"14 Cityless Co Bran", "12 O'Brien Grain-Multan Wheat",
                              "10 Ali Traders-Lahore Wheat"}));
    }

    void arrivalsFilters_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("fromOffset");
        QTest::addColumn<QStringList>("ids");
        const struct {
            const char *row, *name, *id;
            int fromOffset;
            QStringList ids;
        } rows[] = {
            {"name any case", "ali", "", -365, {"10"}},
            {"name by city", "-multan", "", -365, {"12"}},
            {"quote finds the quoted name", "O'Br", "", -365, {"12"}},
            {"id with trailing letters", "", "12ab", -365, {"12"}},
            {"a fraction matches no key", "", "12.5", -365, {}},
            {"letters alone look for 0", "", "ab", -365, {}},
            {"name and id together", "ali", "12", -365, {}},
            {"both ends of the range count", "", "", -3, {"14", "12", "10"}},
            {"from after to", "", "", 1, {}},
            {"longer range reaches back", "", "", -500, {"14", "12", "10", "8"}},
        };
        for (const auto& r : rows)
            QTest::newRow(r.row) << QString(r.name) << QString(r.id) << r.fromOffset << r.ids;
    }

    void arrivalsFilters() {
        QFETCH(QString, name);
        QFETCH(QString, id);
        QFETCH(int, fromOffset);
        QFETCH(QStringList, ids);
        SchArrivals s(m_ctx);
        s.show();
        // Typed, as a clerk would: the list follows every keystroke.
        QTest::keyClicks(child<QLineEdit>(&s, "TxtFilter"), name);
        QTest::keyClicks(child<QLineEdit>(&s, "TxtFilterId"), id);
        child<QDateEdit>(&s, "DtpFromDate")->setDate(today().addDays(fromOffset));
        QCOMPARE(rowsOf(s, {0}), ids);
    }

    void handingBack_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("expected");
        QTest::newRow("Enter in the list") << "gridEnter" << 12;
        QTest::newRow("Shift+Enter in the list") << "gridShiftEnter" << 0;
        QTest::newRow("Enter in the name filter") << "filterEnter" << 14;
        QTest::newRow("double click") << "doubleClick" << 12;
        QTest::newRow("Select button") << "button" << 12;
        // Both rows that stay open then leave by the Close button.
        QTest::newRow("Enter in the id filter moves on") << "idEnter" << 0;
        QTest::newRow("Esc") << "escape" << 0;
        QTest::newRow("Ctrl+Q") << "ctrlQ" << 0;
        QTest::newRow("empty list stays open") << "emptySelect" << 0;
    }

    void handingBack() {
        QFETCH(QString, how);
        QFETCH(int, expected);
        QWidget owner;
        bool stayedOpen = false;
        Modals dialog;
        dialog.window(on("SchArrivals", [&](QWidget* w) {
            auto* grid = child<QTableView>(w, "GrdSch");
            grid->setCurrentIndex(grid->model()->index(1, 0));
            const QRect cell = grid->visualRect(grid->model()->index(1, 1));
            if (how == "gridEnter") {
                grid->setFocus();
                QTest::keyClick(grid, Qt::Key_Return);
            } else if (how == "gridShiftEnter") {
                QTest::keyClick(grid, Qt::Key_Return, Qt::ShiftModifier);
                stayedOpen = w->isVisible();
                QTest::keyClick(grid, Qt::Key_Escape);
            } else if (how == "filterEnter") {
                auto* filter = child<QLineEdit>(w, "TxtFilter");
                QTest::keyClicks(filter, "co"); // only "Cityless Co" is left, on row 0
                QTest::keyClick(filter, Qt::Key_Return);
            } else if (how == "doubleClick") {
                grid->setCurrentIndex(grid->model()->index(0, 0));
                QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
            } else if (how == "button") {
                child<QPushButton>(w, "BtnSelect")->click();
            } else if (how == "idEnter") {
                auto* id = child<QLineEdit>(w, "TxtFilterId");
                id->setFocus();
                QTest::keyClick(id, Qt::Key_Return);
                stayedOpen = w->isVisible() &&
                             QApplication::focusWidget() == child<QWidget>(w, "DtpFromDate");
                child<QPushButton>(w, "BtnClose")->click();
            } else if (how == "escape") {
                QTest::keyClick(grid, Qt::Key_Escape);
            } else if (how == "ctrlQ") {
                QTest::keyClick(child<QLineEdit>(w, "TxtFilter"), Qt::Key_Q, Qt::ControlModifier);
            } else if (how == "emptySelect") {
                child<QDateEdit>(w, "DtpFromDate")->setDate(today().addDays(5));
                child<QPushButton>(w, "BtnSelect")->click();
                QTest::keyClick(grid, Qt::Key_Return);
                stayedOpen = w->isVisible();
                child<QPushButton>(w, "BtnClose")->click();
            }
        }));
        QCOMPARE(showArrivalSearch(&owner, m_ctx), expected);
        if (how == "gridShiftEnter" || how == "idEnter" || how == "emptySelect")
            QVERIFY(stayedOpen);
    }

    // Longer than a page: the list is read a page at a time, each page after the last key.
    void arrivalsReadPageByPage_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("fromOffset");
        QTest::newRow("whole year") << "" << -365;
        QTest::newRow("name filter and shorter range") << "ali" << -250;
    }

    void arrivalsReadPageByPage() {
        QFETCH(QString, name);
        QFETCH(int, fromOffset);
        {
            Transaction t(*m_conn);
            for (int i = 0; i < 450; ++i)
                arrival(1000 + i, today().addDays(-(i % 300)), i % 2 ? "6002" : "6001", 1);
            t.commit();
        }
        // What the whole list holds, newest first, known from the inserted rows.
        QStringList expected;
        for (int i = 449; i >= 0; --i)
            if ((name.isEmpty() || i % 2 == 0) && -(i % 300) >= fromOffset)
                expected << QString::number(1000 + i);
        expected << QStringList{"14", "12", "10"}.filter(name.isEmpty() ? "" : "10");
        QVERIFY(expected.size() > 200);

        SchArrivals s(m_ctx);
        s.show();
        QTest::keyClicks(child<QLineEdit>(&s, "TxtFilter"), name);
        child<QDateEdit>(&s, "DtpFromDate")->setDate(today().addDays(fromOffset));
        auto* grid = child<QTableView>(&s, "GrdSch");
        QAbstractItemModel* model = grid->model();
        QCOMPARE(s.rowCount(), 200);
        // Scrolled to the end, the grid asks for the next page itself.
        grid->scrollToBottom();
        QTRY_COMPARE(s.rowCount(), std::min(400, int(expected.size())));
        while (model->canFetchMore({})) {
            const int before = s.rowCount();
            model->fetchMore({});
            QCOMPARE(s.rowCount(), std::min(before + 200, int(expected.size())));
        }
        QCOMPARE(rowsOf(s, {0}), expected);

        // A row of a later page hands back its own key.
        grid->setCurrentIndex(model->index(s.rowCount() - 2, 0));
        child<QPushButton>(&s, "BtnSelect")->click();
        QCOMPARE(QString::number(s.SelectedId()), expected[expected.size() - 2]);
    }

    // Invoice keys out of date order: 4 lies between the others but a year earlier, 5 has no
    // lines, and a line of 3 points at an arrival that is gone. The other two lines of 3 are
    // 1 kg at 5 a mound, worth 0.125 each: rounded line by line they add to 0.26, where
    // rounding the sum would give 0.25.
    void purchaseRowsOfTheRange_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QStringList>("rows"); // key, broker and amount, highest key first
        const QString three = QStringLiteral("3 Bashir Broker-Lahore 0.26");
        const QString six = QStringLiteral("6  1000.00");
        const struct {
            const char *row, *name, *id;
            QStringList rows;
        } rows[] = {
            {"the year", "", "", {six, three}},        {"a seller's name", "ALI", "", {three}},
            {"a name nobody has", "zz", "", {}},       {"an invoice of another year", "", "4", {}},
            {"an invoice without lines", "", "5", {}}, {"name and id", "o'b", "6", {six}},
        };
        for (const auto& r : rows)
            QTest::newRow(r.row) << QString(r.name) << QString(r.id) << r.rows;
    }

    void purchaseRowsOfTheRange() {
        QFETCH(QString, name);
        QFETCH(QString, id);
        QFETCH(QStringList, rows);
        exec("INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo) VALUES "
             "(10, 1, 'A-1'), (10, 1, 'A-2'), (12, 1, 'B-1'), (14, 3, 'C-1'), (14, 3, 'C-2')",
             {});
        exec("INSERT INTO Purchases (PurchaseId, PurchaseDate, SellerId, BrokerId) VALUES "
             "(3, ?, '6001', '6003'), (4, ?, '6001', NULL), (5, ?, '6002', NULL), "
             "(6, ?, '6002', NULL)",
             {today(), today().addDays(-400), today().addDays(-1), today().addDays(-1)});
        exec("INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, CommodityId, "
             "TotalWeight, RatePerUnit) VALUES (3, 10, 'A-1', 1, 1, 5), (3, 10, 'A-2', 1, 1, 5), "
             "(3, 12, 'B-1', 1, 40, 10), (4, 14, 'C-1', 3, 40, 10), (6, 14, 'C-2', 3, 400, 100)",
             {});
        {
            // An arrival removed behind the invoice's back, as older data may hold.
            QSqlQuery q(m_conn->db());
            const bool pg = m_conn->isPostgres();
            QVERIFY(q.exec(pg ? "SET session_replication_role = replica"
                              : "PRAGMA foreign_keys = OFF"));
            QVERIFY(q.exec("DELETE FROM Arrivals WHERE ArrivalId = 12"));
            QVERIFY(
                q.exec(pg ? "SET session_replication_role = DEFAULT" : "PRAGMA foreign_keys = ON"));
        }
        SchPurchase s(m_ctx);
        QTest::keyClicks(child<QLineEdit>(&s, "TxtFilter"), name);
        QTest::keyClicks(child<QLineEdit>(&s, "TxtFilterId"), id);
        QCOMPARE(rowsOf(s, {0, 2, 4}), rows);
        if (rows.isEmpty())
            return;

        // Chosen, the first row hands back its invoice and its seller.
        QWidget owner;
        Modals dialog;
        dialog.window(on("SchPurchase", [&](QWidget* w) {
            QTest::keyClicks(child<QLineEdit>(w, "TxtFilter"), name);
            QTest::keyClicks(child<QLineEdit>(w, "TxtFilterId"), id);
            child<QPushButton>(w, "BtnSelect")->click();
        }));
        int seller = -1;
        const int key = showPurchaseSearch(&owner, m_ctx, &seller);
        QCOMPARE(QString::number(key), rows[0].section(' ', 0, 0));
        QCOMPARE(seller, key == 3 ? 6001 : 6002);
    }

    void contractWithoutBroker() {
        exec("INSERT INTO PContracts (ContractId, ContractDate, CommodityId, PartyId, BrokerId, "
             "Quantity, ContractMode) VALUES (1, ?, 1, '6001', '6003', 1250.5, 'Bags'), "
             "(2, ?, 1, '6002', NULL, 3, 'Vehicles')",
             {today(), today()});
        SchPurchaseContract s(m_ctx);
        QCOMPARE(rowsOf(s, {0, 2, 3, 4}), QStringList({"2  O'Brien Grain 3Vehicles",
                                                       "1 Bashir Broker Ali Traders 1250.5Bags"}));

        QWidget owner;
        Modals dialog;
        dialog.window(on("SchPurchaseContract", [](QWidget* w) {
            auto* grid = child<QTableView>(w, "GrdSch");
            QCOMPARE(grid->currentIndex().row(), 0);
            QTest::keyClick(grid, Qt::Key_Return);
        }));
        QCOMPARE(showContractSearch(&owner, m_ctx), 2);
    }

    void dfcPeriodPrefixFilterAndKeyOrder() {
        exec("INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, TotalWeight, "
             "TTLValueWheet, TTLValueBags) VALUES (7, ?, 1, 5000, 1000, 234.5), "
             "(3, ?, 2, 100, 10, 0), (9, ?, 1, 1, 1, 1)",
             {today(), today().addDays(-10), today().addDays(-60)});
        SchDFCPurchase s(m_ctx);
        QCOMPARE(child<QDateEdit>(&s, "DtpFrom")->date(), today().addDays(-30));
        QCOMPARE(child<QDateEdit>(&s, "Dtpto")->date(), today().addDays(30));
        QCOMPARE(rowsOf(s, {0, 3, 4}), QStringList({"3 100 10.00", "7 5000 1234.50"}));
        auto* filter = child<QLineEdit>(&s, "TxtFilter");
        QTest::keyClicks(filter, "fine"); // inside the name, not at its start
        QCOMPARE(s.rowCount(), 0);
        filter->clear();
        QTest::keyClicks(filter, "flo");
        QCOMPARE(rowsOf(s, {0, 2}), QStringList{"3 Flour Fine"});
    }

    // More serials than a page of four: serial s makes Wheat, every third serial also makes
    // Bran (so it stands on two rows), and serial 22 alone makes Flour Fine.
    QStringList hourlyOverPages() {
        Transaction t(*m_conn);
        QStringList rows; // serial and commodity, in the list's order
        for (int serial = 1; serial <= 25; ++serial) {
            exec("INSERT INTO HourlyProduction (SerialNo, ProcessTime) VALUES (?, ?)",
                 {serial, QDateTime(today(), QTime(serial % 24, 0))});
            QStringList names{"Wheat"};
            exec("INSERT INTO HProductionBody (SerialNo, CommodityId) VALUES (?, 1)", {serial});
            if (serial % 3 == 0) {
                exec("INSERT INTO HProductionBody (SerialNo, CommodityId) VALUES (?, 3)", {serial});
                names.prepend("Bran");
            }
            if (serial == 22) {
                exec("INSERT INTO HProductionBody (SerialNo, CommodityId) VALUES (?, 2)", {serial});
                names.insert(names.size() - 1, "Flour Fine");
            }
            for (const QString& n : names)
                rows << QString::number(serial) + ' ' + n;
        }
        t.commit();
        return rows;
    }

    static QStringList shown(const SchHProduction& s) { return rowsOf(s, {0, 2}); }

    void hourlyPagesKeepASerialWhole() {
        const QStringList all = hourlyOverPages();
        // The first page, serials 1 to 4 with serial 3 on two rows, is the find test's empty row.
        SchHProduction s(m_ctx, nullptr, 4);
        QAbstractItemModel* model = child<QTableView>(&s, "GrdSch")->model();
        QStringList pages{shown(s).join(',')};
        while (model->canFetchMore({})) {
            const int before = s.rowCount();
            model->fetchMore({});
            pages << shown(s).mid(before).join(',');
        }
        QCOMPARE(shown(s), all);
        // Each page starts on a serial of its own.
        for (int p = 1; p < pages.size(); ++p) {
            const QString lastBefore = pages[p - 1].section(',', -1).section(' ', 0, 0);
            const QString firstHere = pages[p].section(',', 0, 0).section(' ', 0, 0);
            QVERIFY2(lastBefore != firstHere, qPrintable(pages[p]));
        }
    }

    void hourlyFindAcrossPages_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("row");       // the row found, as serial and commodity
        QTest::addColumn<int>("throughSerial"); // how far the list has been read
        QTest::newRow("empty, the first row") << ""
                                              << "1 Wheat" << 4;
        QTest::newRow("on the first page, any case") << "bran"
                                                     << "3 Bran" << 4;
        QTest::newRow("on a later page, read up to it") << "Flour Fine"
                                                        << "22 Flour Fine" << 22;
    }

    void hourlyFindAcrossPages() {
        QFETCH(QString, text);
        QFETCH(QString, row);
        QFETCH(int, throughSerial);
        const QStringList all = hourlyOverPages();
        int read = 0;
        while (read < all.size() && all[read].section(' ', 0, 0).toInt() <= throughSerial)
            ++read;

        SchHProduction s(m_ctx, nullptr, 4);
        s.show();
        auto* combo = child<QComboBox>(&s, "CboCommodity");
        // Whole names, as picked from the combo's list: typed letter by letter, the texts on
        // the way would match nothing and read the whole list.
        combo->setEditText("Bran"); // away from the first row, within the first page
        QCOMPARE(s.currentRow(), 2);
        combo->setEditText(text);
        QCOMPARE(s.currentRow(), int(all.indexOf(row)));
        QCOMPARE(s.rowCount(), read);
        QCOMPARE(shown(s), all.mid(0, read));
        // Enter leaves the combo for the list; Enter there hands back the row found.
        QTest::keyClick(combo, Qt::Key_Return);
        QTest::keyClick(child<QTableView>(&s, "GrdSch"), Qt::Key_Return);
        QCOMPARE(s.result(), int(QDialog::Accepted));
        QCOMPARE(QString::number(s.SelectedId()), row.section(' ', 0, 0));
    }

    void hourlyFindNothingReadsTheEndFirst_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("a name no record has") << "Maize";
        QTest::newRow("a letter on the way to a name") << "F";
    }

    void hourlyFindNothingReadsTheEndFirst() {
        QFETCH(QString, text);
        QStringList all = hourlyOverPages();
        // The last serial also makes Flour Fine, which serial 22 made first.
        exec("INSERT INTO HProductionBody (SerialNo, CommodityId) VALUES (25, 2)", {});
        all.insert(all.size() - 1, "25 Flour Fine");
        SchHProduction s(m_ctx, nullptr, 4);
        s.show();
        auto* combo = child<QComboBox>(&s, "CboCommodity");
        combo->setEditText(text);
        // The last row at once: the rows in order as far as they were read, then the end; the
        // serials between are not all read yet.
        const QStringList got = shown(s);
        QVERIFY2(got.size() < all.size(), qPrintable(got.join(',')));
        QCOMPARE(got.mid(got.size() - 2), all.mid(all.size() - 2));
        QCOMPARE(got.mid(0, got.size() - 2), all.mid(0, got.size() - 2));
        QCOMPARE(s.currentRow(), s.rowCount() - 1);
        // A name is found at its first record, in the gap, not in the end read ahead.
        combo->setEditText("Flour Fine");
        QCOMPARE(s.currentRow(), int(all.indexOf("22 Flour Fine")));
        QCOMPARE(shown(s).mid(s.currentRow(), 1), QStringList{"22 Flour Fine"});
        // The fill closes the gap: every row once, in order, the row found kept.
        QTRY_COMPARE(shown(s), all);
        QCOMPARE(s.currentRow(), int(all.indexOf("22 Flour Fine")));
        combo->setEditText(text);
        QCOMPARE(s.currentRow(), int(all.size()) - 1);
    }

    void hourlyRowShowsItsHourAndShiftEnterSelects() {
        exec("INSERT INTO HourlyProduction (SerialNo, ProcessTime) VALUES (5, ?)",
             {QDateTime(today(), QTime(14, 30))});
        exec("INSERT INTO HProductionBody (SerialNo, CommodityId) VALUES (5, 1)", {});
        QWidget owner;
        QString when;
        Modals dialog;
        dialog.window(on("SchHProduction", [&](QWidget* w) {
            when = static_cast<SchHProduction*>(w)->cellText(0, 1);
            QTest::keyClick(child<QTableView>(w, "GrdSch"), Qt::Key_Return, Qt::ShiftModifier);
        }));
        QCOMPARE(showHProductionSearch(&owner, m_ctx), 5);
        QCOMPARE(when, today().toString("dd/MM/yyyy") + QStringLiteral(" 02 PM"));
    }

    // Only parties with a city; a name narrows the list, an empty list hands nothing back.
    void partyListFilterAndClose() {
        QWidget owner;
        QStringList all, narrowed;
        bool stayedOpen = false;
        Modals dialog;
        dialog.window(on("SchParty", [&](QWidget* w) {
            const auto& s = *static_cast<SchParty*>(w);
            all = rowsOf(s, {0});
            auto* filter = child<QLineEdit>(w, "TxtFilter");
            QTest::keyClicks(filter, "o'b");
            narrowed = rowsOf(s, {0, 1});
            QTest::keyClicks(filter, "nobody");
            child<QPushButton>(w, "CmdSelect")->click();
            stayedOpen = w->isVisible() && s.rowCount() == 0;
            child<QPushButton>(w, "CmdClose")->click();
        }));
        QVERIFY(showPartySearch(&owner, m_ctx).isEmpty());
        QCOMPARE(all, QStringList({"6001", "6002", "6003"}));
        QCOMPARE(narrowed, QStringList{"6002 O'Brien Grain"});
        QVERIFY(stayedOpen);
    }

    void partyFindAndHandBack_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expectedId");
        QTest::newRow("exact key") << "6002"
                                   << "6002";
        QTest::newRow("part of a key lands on the last row") << "600"
                                                             << "6003";
        QTest::newRow("a quote is harmless") << "60'"
                                             << "6003";
    }

    void partyFindAndHandBack() {
        QFETCH(QString, typed);
        QFETCH(QString, expectedId);
        QWidget owner;
        bool stayedOpen = false;
        Modals dialog;
        dialog.window(on("SchParty", [&](QWidget* w) {
            auto* id = child<QLineEdit>(w, "TxtFilterId");
            QTest::keyClicks(id, typed);
            // Enter and Esc do nothing on this screen.
            QTest::keyClick(id, Qt::Key_Return);
            QTest::keyClick(id, Qt::Key_Escape);
            stayedOpen = w->isVisible();
            id->setFocus();
            QTest::keyClick(id, Qt::Key_Down);
            QVERIFY(child<QTableView>(w, "Grid")->hasFocus());
            child<QPushButton>(w, "CmdSelect")->click();
        }));
        const PartyChoice choice = showPartySearch(&owner, m_ctx);
        QVERIFY(stayedOpen);
        QCOMPARE(choice.SelectedPartyId, expectedId);
        if (expectedId == "6002") {
            QCOMPARE(choice.SelectedPartyName, QStringLiteral("O'Brien Grain"));
            QCOMPARE(choice.SelectedCityName, QStringLiteral("Multan"));
        }
    }

    // A clerk's %, _ and ! are data, and case is ignored for every letter, in each search's
    // name filter. Each name stands beside the names an unescaped or ASCII-only match would
    // also find; its party has arrival 30 + n and contract 40 + n, n its last digit.
    void nameFiltersMatchTheTextAsTyped_data() {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("keys");
        const struct {
            const char *search, *text;
            QStringList keys;
        } rows[] = {
            {"party", "50%", {"6101"}},  {"party", "e_m", {"6102"}},
            {"party", "!", {"6103"}},    {"party", "ünal", {"6104"}},
            {"dfc", "ÜNLÜ", {"53"}},     {"arrival", "50%", {"31"}},
            {"arrival", "e_m", {"32"}},  {"arrival", "ünal", {"34"}},
            {"contract", "!", {"43"}},   {"contract", "ünal", {"44"}},
            {"contract", "50%", {"41"}}, {"dfc", "50%", {"51"}},
            {"dfc", "_0", {}},           {"dfc", "ünlü", {"53"}},
        };
        for (const auto& r : rows)
            QTest::addRow("%s %s", r.search, r.text)
                << QString(r.search) << QString::fromUtf8(r.text) << r.keys;
    }

    void nameFiltersMatchTheTextAsTyped() {
        QFETCH(QString, search);
        QFETCH(QString, text);
        QFETCH(QStringList, keys);
        const QStringList names{"50% Traders", "Rice_Mill", "Wow! Foods", "Ünal's Mills",
                                "500 Traders", "RiceXMill", "Unal Bros"};
        auto removeAll = qScopeGuard([this] {
            for (const char* sql :
                 {"DELETE FROM Arrivals", "DELETE FROM PContracts", "DELETE FROM DFCPayments",
                  "DELETE FROM Parties WHERE PartyId LIKE '61%'",
                  "DELETE FROM ChartOfAccounts WHERE AccountNo LIKE '61%'",
                  "DELETE FROM Commodities WHERE CommodityId > 4"})
                exec(QString::fromLatin1(sql), {});
        });
        for (int n = 1; n <= names.size(); ++n) {
            const QString id = QString::number(6100 + n);
            party(id, names[n - 1], 1);
            arrival(30 + n, today(), id, 1);
            exec("INSERT INTO PContracts (ContractId, ContractDate, CommodityId, PartyId, "
                 "Quantity, ContractMode) VALUES (?, ?, 1, ?, 1, 'Bags')",
                 {40 + n, today(), id});
        }
        const QStringList commodities{"50% Bran", "500 Bran", "Ünlü Wheat", "Unlu Wheat"};
        for (int n = 1; n <= commodities.size(); ++n) {
            exec("INSERT INTO Commodities (CommodityId, CommodityName) VALUES (?, ?)",
                 {4 + n, commodities[n - 1]});
            exec("INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, TotalWeight, "
                 "TTLValueWheet, TTLValueBags) VALUES (?, ?, ?, 1, 1, 1)",
                 {50 + n, today(), 4 + n});
        }

        // The statements alone, without their windows.
        SearchFilters f;
        f.from = today().addDays(-1);
        f.to = today();
        f.name = text;
        QVariantList binds;
        QString sql;
        if (search == "party")
            sql = partiesStatement(*m_conn, text, binds);
        else if (search == "arrival")
            sql = arrivalsStatement(*m_conn, f, binds);
        else if (search == "contract")
            sql = contractsStatement(*m_conn, f, binds);
        else
            sql = dfcPurchasesStatement(*m_conn, f, binds);
        Query q(*m_conn, sql);
        for (const QVariant& b : binds)
            q.bind(b);
        q.exec();
        QStringList found;
        while (q.next())
            found << toText(q.value(0));
        QCOMPARE(found, keys);
    }

    void failedQueryShowsErrorBoxAndEmptiesList() {
        // A statement that fails on the server: its table is gone (so this test runs last).
        QVERIFY(QSqlQuery(m_conn->db()).exec("DROP TABLE HProductionBody"));
        // One box is expected; a second is dismissed too, so that it fails the count, not hangs.
        Modals boxes(QMessageBox::Ok);
        SchHProduction h(m_ctx);
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(h.rowCount(), 0);
        QCOMPARE(boxes.last().icon, QMessageBox::Critical);
        QVERIFY(!boxes.last().text.isEmpty());
        QVERIFY(!boxes.last().title.isEmpty());
    }
};

QTEST_MAIN(TestSearch)
#include "tst_search.moc"
