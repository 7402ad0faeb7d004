#include "ArrivalFixture.h"
#include "arrivals/FrmArrivalsRate.h"
#include "entry/Forms.h"
#include "entry/LineGrid.h"
#include "reports/Report.h"
#include "search/Search.h"
#include "services/Lookups.h"
#include "support/Modals.h"
#include "support/ScreenKeys.h"
#include "support/TestDb.h"
#include "widgets/LookupCombo.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

// The commodity by its key, so that the test does not depend on how the sample names it.
void typeCommodity(QWidget* screen, int key) {
    for (const LookupItem& item : control<LookupCombo>(screen, "CboCommodity")->items())
        if (item.key == QString::number(key))
            typeInto(screen, "CboCommodity", item.name);
}

void typeLine(LineGrid* grid, int row, const QStringList& cells) {
    // Vehicle, class, type, qty, bag weight, per bag, other.
    const int columns[] = {ColVehicleNo, ColClass, ColType, ColQty, ColBags, ColPerBag, ColOther};
    for (int i = 0; i < cells.size(); ++i)
        if (!cells[i].isNull())
            typeCell(grid, row, columns[i], cells[i]);
}

// Saves with Ctrl+S, answering the save question Yes and the print question No.
bool saveByKeys(QWidget* screen) {
    return textsOf(answering({QMessageBox::Yes, QMessageBox::No}, [screen] {
               ctrl(screen, Qt::Key_S);
           })) == QStringList({"Are you sure to save this invoice?", "Do you want to print?"});
}

// A seller and a commodity of a free arrival, and one vehicle of ten bags.
void fillFreeArrival(QWidget* screen, const QString& vehicleNo) {
    QApplication::setActiveWindow(screen);
    typeInto(screen, "CboSeller", QStringLiteral("Haji Muhammad Aslam & Sons-Okara"));
    typeCommodity(screen, kWheatLocal);
    typeLine(control<LineGrid>(screen, "Grid"), 0,
             {vehicleNo, "New", "Jute 100 Kg", "10", "100", QString(), QString()});
}

QString valueOf(const Conn& conn, const char* sql, qint64 id) {
    return toText(scalar(conn, QString::fromLatin1(sql), {id}));
}

} // namespace

class TestArrivalScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void freeArrivalOfThreeVehicles();
    void arrivalAgainstAContract();
    void arrivalThroughAPRCentre();
    void namesNotInTheListsAreRefused();
    void openEditRemoveAndRefuseInvoiced();
    void sameKeyOnTwoScreens();
    void linesAreCheckedWhateverWroteThem();

private:
    FrmArrivalsRate* showScreen();
    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TestArrivalScreen::init() {
    GM_REQUIRE_ENGINE();
    m_conn = freshSampleConn();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
    HostSettingsValues settings;
    settings.DFCAccountNo = QString::fromLatin1(kDfcAccount);
    m_forms->setHostSettings(std::make_shared<FixedHostSettings>(settings));
}

void TestArrivalScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

FrmArrivalsRate* TestArrivalScreen::showScreen() {
    m_forms->ArrivalForm();
    auto* screen = qobject_cast<FrmArrivalsRate*>(m_forms->instance(Forms::Screen::Arrivals));
    if (screen) {
        QApplication::setActiveWindow(screen);
        (void)QTest::qWaitForWindowActive(screen);
    }
    return screen;
}

void TestArrivalScreen::freeArrivalOfThreeVehicles() {
    GM_REQUIRE_ENGINE();
    const double wheatBefore = stockWeight(*m_conn, kWheatLocal);
    const double bagsBefore = stockBags(*m_conn, 2, 1);
    FrmArrivalsRate* s = showScreen();
    QVERIFY(s);
    const qint64 firstId = textOf(s, "TxtArrivalID").toLongLong();
    QVERIFY(!s->button(Button::Save)->isEnabled());
    typeInto(s, "CboSeller", QStringLiteral("Haji Muhammad Aslam & Sons-Okara"));
    typeCommodity(s, kWheatLocal);
    QVERIFY(s->button(Button::Save)->isEnabled());

    LineGrid* grid = control<LineGrid>(s, "Grid");
    LineGridModel* lines = grid->lines();
    // The commodity's bag went into a first line.
    QCOMPARE(lines->lineCount(), 1);
    QCOMPARE(lines->cellText(0, ColType), QStringLiteral("Jute 100 Kg"));
    QCOMPARE(lines->cellText(0, ColBags), QStringLiteral("100"));

    typeLine(grid, 0, {"LHR-1'22", "New", "Jute 100 Kg", "100", "100.5", "0.5", "20"});
    typeLine(grid, 1, {"OKR-7", "New", "Jute 100 Kg", "50", "100", QString(), QString()});
    typeLine(grid, 2, {"SWL-3", "Used", "Jute 50 Kg", "20", "50", QString(), "5"});
    QCOMPARE(lines->lineCount(), 3);
    QCOMPARE(lines->cellText(0, ColRateUnitId), QStringLiteral("Mound (40)"));
    QCOMPARE(lines->footerText(ColQty), QStringLiteral("170"));
    QCOMPARE(lines->footerText(ColNetWeight), QStringLiteral("15975"));

    Modals m;
    m.answer(QMessageBox::Yes).answer(QMessageBox::Yes).window([](QWidget* w) {
        auto* viewer = qobject_cast<RptReportViewer*>(w);
        if (!viewer)
            return false;
        viewer->reject();
        return true;
    });
    ctrl(s, Qt::Key_S);
    QTRY_VERIFY(m.done());
    QCOMPARE(m.texts(),
             QStringList({"Are you sure to save this invoice?", "Do you want to print?"}));
    QCOMPARE(stockWeight(*m_conn, kWheatLocal), wheatBefore + 15975.0);
    QCOMPARE(stockBags(*m_conn, 2, 1), bagsBefore + 150.0);
    // Yes to the print question shows the arrival's page.
    QCOMPARE(lastShownReport().name, QStringLiteral("CrpArrival"));
    // Back to a new arrival.
    QCOMPARE(textOf(s, "TxtArrivalID"), QString::number(firstId + 1));
    QCOMPARE(lines->lineCount(), 0);
    QVERIFY(!s->button(Button::Save)->isEnabled());
}

void TestArrivalScreen::arrivalAgainstAContract() {
    GM_REQUIRE_ENGINE();
    insertContract(*m_conn, 901, QString::fromLatin1(kSeller), kWheatGovernment);
    FrmArrivalsRate* s = showScreen();
    QVERIFY(s);
    const qint64 id = textOf(s, "TxtArrivalID").toLongLong();
    typeInto(s, "CboContract", QStringLiteral("901"));
    QCOMPARE(control<LookupCombo>(s, "CboSeller")->currentKey(), QString::fromLatin1(kSeller));
    QCOMPARE(control<LookupCombo>(s, "CboCommodity")->currentKey(),
             QString::number(kWheatGovernment));
    QVERIFY(!control(s, "CboSeller")->isEnabled());
    QVERIFY(!control(s, "CboCommodity")->isEnabled());
    QVERIFY(!control(s, "CboPRCenter")->isEnabled());

    typeLine(control<LineGrid>(s, "Grid"), 0,
             {"CTR-1", "New", "PP 100 Kg", "40", "100", QString(), QString()});
    QVERIFY(saveByKeys(s));
    QCOMPARE(valueOf(*m_conn, "SELECT ContractId FROM Arrivals WHERE ArrivalId = ?", id),
             QStringLiteral("901"));
    // One contract, one arrival: it has left the list, and Clear freed the other fields.
    QCOMPARE(control<LookupCombo>(s, "CboContract")->findName(QStringLiteral("901")), -1);
    QVERIFY(control(s, "CboPRCenter")->isEnabled());
    QVERIFY(control(s, "CboSeller")->isEnabled());

    // Picked again through F1, the used contract is refused when the field is left.
    s->setContractSearch([](QWidget*) { return 901; });
    auto* used = control<LookupCombo>(s, "CboContract");
    QApplication::setActiveWindow(s);
    used->setFocus(Qt::MouseFocusReason);
    QTest::keyClick(used->lineEdit(), Qt::Key_F1);
    QCOMPARE(used->text(), QStringLiteral("901"));
    QCOMPARE(textsOf(answering({QMessageBox::Ok},
                               [used] { QTest::keyClick(used->lineEdit(), Qt::Key_Return); })),
             QStringList({"Please provide a valid Contract Id."}));
    QTRY_VERIFY(s->focusWidget() == used || used->isAncestorOf(s->focusWidget()));
    QVERIFY(control<LookupCombo>(s, "CboSeller")->text().isEmpty());
    used->lineEdit()->selectAll();
    QTest::keyClick(used->lineEdit(), Qt::Key_Delete);

    // Emptying the contract frees the fields at once but leaves the clerk where they type;
    // leaving the empty field forward goes to the commodity it now asks for.
    insertContract(*m_conn, 902, QString::fromLatin1(kSeller), kWheatGovernment);
    control<LookupCombo>(s, "CboContract")->setItems(ArrivalStore(*m_conn).contracts());
    QApplication::setActiveWindow(s);
    typeInto(s, "CboContract", QStringLiteral("902"));
    QVERIFY(!control(s, "CboCommodity")->isEnabled());
    auto* contract = control<LookupCombo>(s, "CboContract");
    const auto holds = [s](QWidget* w) {
        QWidget* f = s->focusWidget();
        return f && (f == w || w->isAncestorOf(f));
    };
    contract->setFocus(Qt::MouseFocusReason);
    contract->lineEdit()->selectAll();
    QTest::keyClick(contract->lineEdit(), Qt::Key_Delete);
    QVERIFY(control(s, "CboCommodity")->isEnabled());
    QVERIFY(holds(contract));
    QTest::keyClick(contract->lineEdit(), Qt::Key_Return);
    QVERIFY(holds(control(s, "CboCommodity")));
}

void TestArrivalScreen::arrivalThroughAPRCentre() {
    GM_REQUIRE_ENGINE();
    // A centre of its own, so that the quota is exactly what its letters say.
    execute(*m_conn, "INSERT INTO PRCenters (CenterId, CenterName) VALUES (90, 'PR Centre Test')");
    insertDfcPayment(*m_conn, 901, kWheatGovernment, 4000, 85, 2,
                     {{"P-900", 90, 300, 30000}, {"P-901", 90, 200, 20000}});
    FrmArrivalsRate* s = showScreen();
    QVERIFY(s);
    const qint64 id = textOf(s, "TxtArrivalID").toLongLong();
    typeCommodity(s, kWheatGovernment);
    typeInto(s, "CboPRCenter", QStringLiteral("PR Centre Test"));
    QCOMPARE(textOf(s, "CboSeller"), QStringLiteral("District Food Controller-Okara"));
    QVERIFY(!control(s, "CboSeller")->isEnabled());
    QVERIFY(!control(s, "CboContract")->isEnabled());
    QCOMPARE(textOf(s, "TxtRemainingBags"), QStringLiteral("500"));
    QCOMPARE(textOf(s, "TxtRemainingWeight"), QStringLiteral("50000"));

    typeInto(s, "CboPermitNo", QStringLiteral("P-900"));
    LineGrid* grid = control<LineGrid>(s, "Grid");
    LineGridModel* lines = grid->lines();
    // The payment's prices, as the store averages them over the centre's letters.
    QCOMPARE(lines->cellText(0, ColRateUnit), QStringLiteral("4000"));
    QCOMPARE(lines->cellText(0, ColBagRate), QStringLiteral("85"));
    QCOMPARE(lines->cellText(0, ColRateUnitId), QStringLiteral("Mound (40)"));

    typeCell(grid, 0, ColVehicleNo, QStringLiteral("DFC-1"));
    typeCell(grid, 0, ColClass, QStringLiteral("New"));
    // Over the quota the clerk is told, then asked: No empties the cell, Yes keeps it.
    for (const auto keep : {QMessageBox::No, QMessageBox::Yes}) {
        const auto seen = answering({QMessageBox::Ok, keep},
                                    [grid] { typeCell(grid, 0, ColQty, QStringLiteral("501")); });
        QCOMPARE(textsOf(seen), QStringList({kQuotaNotice, kQuotaQuestion}));
        QCOMPARE(seen.at(1).icon, QMessageBox::Information);
        QCOMPARE(lines->cellText(0, ColQty), keep == QMessageBox::Yes ? "501" : QString());
        if (keep == QMessageBox::No)
            escapeCell(grid);
    }
    QCOMPARE(textsOf(answering({QMessageBox::Ok},
                               [grid] { typeCell(grid, 0, ColBags, QStringLiteral("50001")); })),
             QStringList({"Weight must be greator then 0 and less then remaining Weight."}));
    QCOMPARE(lines->cellText(0, ColBags), QStringLiteral("100"));
    escapeCell(grid);
    QVERIFY(saveByKeys(s));
    QCOMPARE(valueOf(*m_conn,
                     "SELECT SellerId || ' ' || PermitNo || ' ' || CAST(CenterId AS VARCHAR(10)) "
                     "FROM Arrivals WHERE ArrivalId = ?",
                     id),
             QString::fromLatin1(kDfcAccount) + QStringLiteral(" P-900 90"));
    // 4000 a mound of 40 kg is 100 a kilogram: the unit came with its weight.
    QCOMPARE(toDouble(scalar(*m_conn, "SELECT Cost FROM ArrivalsBody WHERE ArrivalId = ?", {id})),
             100.0);
}

// Leaving a combo with a name that is no entry of its list brings its refusal; the focus and
// the typed text stay, whether the field is left by Tab or by the screen's Enter.
void TestArrivalScreen::namesNotInTheListsAreRefused() {
    GM_REQUIRE_ENGINE();
    FrmArrivalsRate* s = showScreen();
    QVERIFY(s);
    auto* commodity = control<LookupCombo>(s, "CboCommodity");
    auto* contract = control<LookupCombo>(s, "CboContract");
    const auto leaving = [](LookupCombo* combo, const QString& keys, Qt::Key key) {
        QApplication::setActiveWindow(combo->window());
        combo->setFocus(Qt::MouseFocusReason);
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo, keys);
        // A click outside the completion list would only close it.
        combo->completer()->popup()->hide();
        Modals m(QMessageBox::Ok);
        QTest::keyClick(combo, key);
        (void)QTest::qWaitFor([&m] { return m.done(); }, 1000);
        QTest::qWait(20);
        return m.seen();
    };
    // Rice is no commodity the mill buys.
    const auto seen = leaving(commodity, QStringLiteral("Rice"), Qt::Key_Tab);
    QCOMPARE(textsOf(seen), QStringList{"Please provide a valid Commodity."});
    QCOMPARE(seen[0].title, QStringLiteral("Alert"));
    QCOMPARE(seen[0].icon, QMessageBox::Information);
    QTRY_VERIFY(commodity->hasFocus());
    QCOMPARE(commodity->text(), QStringLiteral("Rice"));
    QCOMPARE(commodity->currentKey(), QString());

    QCOMPARE(textsOf(leaving(commodity, QStringLiteral("wheat l"), Qt::Key_Tab)), QStringList());
    QCOMPARE(commodity->currentKey(), QString::number(kWheatLocal));
    QTRY_VERIFY(contract->hasFocus());

    QCOMPARE(textsOf(leaving(contract, QStringLiteral("999"), Qt::Key_Return)),
             QStringList{"Please provide a valid Contract Id."});
    QTRY_VERIFY(contract->hasFocus());
    QCOMPARE(contract->text(), QStringLiteral("999"));
    QVERIFY(commodity->isEnabled());
    contract->setText(QString());

    // The PR centre's fields refuse in their own words.
    for (const auto& [name, words] : {std::pair{"CboPRCenter", "Please provide a PRCenter."},
                                      std::pair{"CboPermitNo", "Please provide a Permit No."}}) {
        auto* combo = control<LookupCombo>(s, name);
        QCOMPARE(textsOf(leaving(combo, QStringLiteral("Nowhere"), Qt::Key_Tab)),
                 QStringList{words});
        QTRY_VERIFY(combo->hasFocus());
        combo->setText(QString());
    }
}

void TestArrivalScreen::openEditRemoveAndRefuseInvoiced() {
    GM_REQUIRE_ENGINE();
    ArrivalStore store(*m_conn);
    const int id = store.nextArrivalId();
    const double before = stockWeight(*m_conn, kWheatLocal);
    store.save(freeArrival(id, {vehicle("E-1", 100, 100), vehicle("E-2", 10, 100)}), true);
    FrmArrivalsRate* s = showScreen();
    QVERIFY(s);
    s->setDocumentSearch([id](QWidget*) { return id; });
    ctrl(s, Qt::Key_O);
    LineGrid* grid = control<LineGrid>(s, "Grid");
    QCOMPARE(grid->lines()->lineCount(), 2);
    QCOMPARE(textOf(s, "TxtArrivalID"), QString::number(id));
    QVERIFY(!control(s, "TxtArrivalID")->isEnabled());
    QVERIFY(s->button(Button::Remove)->isEnabled());

    // A key arms Save; the saved arrival's lines are replaced and the stock follows.
    typeCell(grid, 1, ColQty, QStringLiteral("30"));
    QVERIFY(s->button(Button::Save)->isEnabled());
    QVERIFY(saveByKeys(s));
    QCOMPARE(stockWeight(*m_conn, kWheatLocal), before + 13000.0);

    // Opened again through the arrival search itself: the newest arrival heads its list.
    s->setDocumentSearch([s](QWidget* owner) { return showArrivalSearch(owner, s->context()); });
    {
        Modals m;
        m.window([](QWidget* w) {
            auto* search = qobject_cast<SchArrivals*>(w);
            if (!search)
                return false;
            search->Select();
            return true;
        });
        ctrl(s, Qt::Key_O);
        QTRY_VERIFY(m.done());
    }
    QCOMPARE(textOf(s, "TxtArrivalID"), QString::number(id));
    QCOMPARE(
        textsOf(answering({QMessageBox::Yes},
                          [s] { QTest::mouseClick(s->button(Button::Remove), Qt::LeftButton); })),
        QStringList({"Are you sure to remove this arrival?"}));
    QVERIFY(!store.exists(id));
    QCOMPARE(stockWeight(*m_conn, kWheatLocal), before);
    QVERIFY(!s->button(Button::Remove)->isEnabled());
    QVERIFY(!s->button(Button::Print)->isEnabled());

    // Once an invoice has taken a vehicle the arrival opens with a warning and cannot change.
    store.save(freeArrival(id, {vehicle("I-1", 100, 100)}), true);
    const int purchase =
        1 + toInt(scalar(*m_conn, "SELECT COALESCE(MAX(PurchaseId), 0) FROM Purchases"));
    invoiceVehicle(*m_conn, purchase, id, QStringLiteral("I-1"), kWheatLocal);
    s->setDocumentSearch([id](QWidget*) { return id; });
    const auto warning = answering({QMessageBox::Ok}, [s] { ctrl(s, Qt::Key_O); });
    QCOMPARE(textsOf(warning), QStringList({QStringLiteral("This arrival is not editable because "
                                                           "it has been used in Purchase Invoice "
                                                           "No.(") +
                                            QString::number(purchase) + QLatin1Char(')')}));
    QCOMPARE(warning.value(0).icon, QMessageBox::Warning);
    QVERIFY(!s->button(Button::Remove)->isEnabled());
    typeCell(grid, 0, ColQty, QStringLiteral("5"));
    QCOMPARE(textsOf(answering({QMessageBox::Yes, QMessageBox::Ok}, [s] { ctrl(s, Qt::Key_S); }))
                 .value(1),
             kArrivalUpdateRefusal);
    QCOMPARE(
        valueOf(*m_conn, "SELECT NoOfBags FROM ArrivalsBody WHERE ArrivalId = ?", id).toDouble(),
        100.0);
    QVERIFY(s->button(Button::Save)->isEnabled()); // the entries stay for another try
}

void TestArrivalScreen::sameKeyOnTwoScreens() {
    GM_REQUIRE_ENGINE();
    FrmArrivalsRate* first = showScreen();
    QVERIFY(first);
    FrmArrivalsRate second(m_forms->context());
    second.show();
    const int key = textOf(first, "TxtArrivalID").toInt();
    QCOMPARE(textOf(&second, "TxtArrivalID").toInt(), key);
    fillFreeArrival(first, QStringLiteral("FIRST"));
    fillFreeArrival(&second, QStringLiteral("SECOND"));
    QVERIFY(saveByKeys(first));
    QCOMPARE(textsOf(answering({QMessageBox::Yes, QMessageBox::Ok},
                               [&second] { ctrl(&second, Qt::Key_S); }))
                 .value(1),
             QStringLiteral("The Arrival ID already exists. A new ID has been generated. Please "
                            "save your record again"));
    QCOMPARE(textOf(&second, "TxtArrivalID").toInt(), key + 1);
    QCOMPARE(second.OpenedDocumentId, key + 1);
    QVERIFY(saveByKeys(&second));
    const char* vehicleOf = "SELECT VehicleNo FROM ArrivalsBody WHERE ArrivalId = ?";
    QCOMPARE(valueOf(*m_conn, vehicleOf, key), QStringLiteral("FIRST"));
    QCOMPARE(valueOf(*m_conn, vehicleOf, key + 1), QStringLiteral("SECOND"));
}

// A figure the screen wrote itself is checked at save as if typed, retyping a cell's own text
// is checked again, a typed sign is kept for its check to refuse, and a line that would weigh
// less than nothing is shown but never saved.
void TestArrivalScreen::linesAreCheckedWhateverWroteThem() {
    GM_REQUIRE_ENGINE();
    execute(*m_conn, "INSERT INTO PRCenters (CenterId, CenterName) VALUES (91, 'PR Centre Small')");
    insertDfcPayment(*m_conn, 902, kWheatGovernment, 4000, 85, 2, {{"P-950", 91, 10, 50}});
    FrmArrivalsRate* s = showScreen();
    QVERIFY(s);
    const int id = textOf(s, "TxtArrivalID").toInt();
    LineGrid* grid = control<LineGrid>(s, "Grid");
    LineGridModel* lines = grid->lines();
    typeCommodity(s, kWheatGovernment); // its 100 kg bag goes into the line unchecked
    typeInto(s, "CboPRCenter", QStringLiteral("PR Centre Small"));
    QCOMPARE(textOf(s, "TxtRemainingWeight"), QStringLiteral("50"));
    typeCell(grid, 0, ColVehicleNo, QStringLiteral("SML-1"));
    typeCell(grid, 0, ColClass, QStringLiteral("New"));
    typeCell(grid, 0, ColQty, QStringLiteral("1"));
    QCOMPARE(lines->cellText(0, ColBags), QStringLiteral("100"));

    const QString weight =
        QStringLiteral("Weight must be greator then 0 and less then remaining Weight.");
    const auto refusedSave = [&](const QString& words, int column) {
        grid->setCurrentIndex(lines->index(0, ColVehicleNo));
        const auto seen =
            answering({QMessageBox::Yes, QMessageBox::Ok}, [s] { ctrl(s, Qt::Key_S); });
        QCOMPARE(textsOf(seen).value(1), words);
        QCOMPARE(grid->currentIndex(), lines->index(0, column));
        QVERIFY(!ArrivalStore(*m_conn).exists(id));
    };
    refusedSave(weight, ColBags);
    QCOMPARE(textsOf(answering({QMessageBox::Ok},
                               [grid] { typeCell(grid, 0, ColBags, QStringLiteral("100")); })),
             QStringList({weight}));
    escapeCell(grid);
    typeCell(grid, 0, ColBags, QStringLiteral("40"));

    QCOMPARE(textsOf(answering({QMessageBox::Ok},
                               [grid] { typeCell(grid, 0, ColPerBag, QStringLiteral("-1")); })),
             QStringList({"Please provide a valid per bag."}));
    QCOMPARE(lines->cellText(0, ColPerBag), QString());
    escapeCell(grid);

    typeCell(grid, 0, ColOther, QStringLiteral("5000"));
    QCOMPARE(lines->cellText(0, ColNetWeight), QStringLiteral("-4960"));
    refusedSave(QStringLiteral("Please provide a valid other."), ColOther);
}

QTEST_MAIN(TestArrivalScreen)
#include "tst_arrival_screen.moc"
