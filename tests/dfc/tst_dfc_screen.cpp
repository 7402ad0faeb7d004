#include "../reports/PdfText.h"
#include "arrivals/FrmArrivalsRate.h"
#include "dfc/FrmPurchaseFromDFC.h"
#include "DFCFixture.h"
#include "entry/Fields.h"
#include "entry/Forms.h"
#include "entry/LineGrid.h"
#include "reports/Report.h"
#include "support/Modals.h"
#include "support/ScreenKeys.h"
#include "widgets/LookupCombo.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

// The name a list shows for a key, so that the test does not depend on how names are made.
QString nameOfKey(QWidget* screen, const QString& combo, int key) {
    for (const LookupItem& item : control<LookupCombo>(screen, combo)->items())
        if (item.key == QString::number(key))
            return item.name;
    return {};
}

const QString kSaveQuestion = QStringLiteral("Are you sure to save this invoice?");
const QString kPrintQuestion = QStringLiteral("Do you want to print?");

// Saves with Ctrl+S, answering the save question Yes and the print question No.
bool saveByKeys(QWidget* screen) {
    return textsOf(answering({QMessageBox::Yes, QMessageBox::No}, [screen] {
               ctrl(screen, Qt::Key_S);
           })) == QStringList({kSaveQuestion, kPrintQuestion});
}

bool holds(QWidget* screen, const QString& name) {
    QWidget* w = control(screen, name);
    QWidget* f = screen->focusWidget();
    return f && (f == w || w->isAncestorOf(f));
}

} // namespace

class TestDFCScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void paymentTypedWithTwoLettersSavedAndPrinted();
    void fullAuthorityAndTheRowMenu();
    void openedPaymentEditedAndRemovedBehindItsArrivals();

private:
    FrmPurchaseFromDFC* showScreen();
    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TestDFCScreen::init() {
    GM_REQUIRE_ENGINE();
    m_conn = bareMill();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
    HostSettingsValues settings;
    settings.DFCAccountNo = QString::fromLatin1(kDfcAccount);
    settings.HeaderLine1 = QStringLiteral("Okara Flour Mills");
    settings.HeaderEmail = QStringLiteral("office@mill.example");
    m_forms->setHostSettings(std::make_shared<FixedHostSettings>(settings));
    m_forms->setHostSession(std::make_shared<FixedHostSession>(7));
}

void TestDFCScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

FrmPurchaseFromDFC* TestDFCScreen::showScreen() {
    m_forms->PurchaseFromDFCForm();
    auto* screen =
        qobject_cast<FrmPurchaseFromDFC*>(m_forms->instance(Forms::Screen::PurchaseFromDFC));
    if (screen) {
        QApplication::setActiveWindow(screen);
        (void)QTest::qWaitForWindowActive(screen);
    }
    return screen;
}

void TestDFCScreen::paymentTypedWithTwoLettersSavedAndPrinted() {
    GM_REQUIRE_ENGINE();
    FrmPurchaseFromDFC* s = showScreen();
    QVERIFY(s);
    QCOMPARE(s->windowTitle(), QStringLiteral("DFC Purchase Invoice"));
    QCOMPARE(textOf(s, "TxtPaymentId"), QStringLiteral("1"));
    QVERIFY(!control(s, "TxtPaymentId")->isEnabled());
    QCOMPARE(control<DateEdit>(s, "DTPPaymentDate")->date(), QDate::currentDate());
    QVERIFY(!s->button(Button::Save)->isEnabled());

    typeInto(s, "CboCommodities", nameOfKey(s, "CboCommodities", kWheatGovernment));
    QVERIFY(s->button(Button::Save)->isEnabled());
    typeInto(s, "CboBank", QStringLiteral("Habib Bank Okara Road"));
    typeInto(s, "CboUnit", QStringLiteral("Mound (40)"));
    typeInto(s, "TxtChallanNo", QStringLiteral("CH-501"));
    typeInto(s, "TxtNoOfBags", QStringLiteral("100"));
    typeInto(s, "TxtBagWeight", QStringLiteral("50"));
    QCOMPARE(textOf(s, "TxtTotalWeight"), QStringLiteral("5000"));
    typeInto(s, "TxtRatePerUnit", QStringLiteral("100"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("12500"));
    // The value follows the weight, not only the rate.
    typeInto(s, "TxtNoOfBags", QStringLiteral("200"));
    QCOMPARE(textOf(s, "TxtTotalWeight"), QStringLiteral("10000"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("25000"));
    // Past the ceiling both entries go, and the total with them.
    typeInto(s, "TxtNoOfBags", QStringLiteral("5000"));
    typeInto(s, "TxtBagWeight", QStringLiteral("5000"));
    QCOMPARE(textOf(s, "TxtNoOfBags"), QString());
    QCOMPARE(textOf(s, "TxtBagWeight"), QString());
    QCOMPARE(textOf(s, "TxtTotalWeight"), QStringLiteral("0"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("0"));
    // The fields take nothing past their limits.
    typeInto(s, "TxtNoOfBags", QStringLiteral("100001"));
    QCOMPARE(textOf(s, "TxtNoOfBags"), QStringLiteral("10000"));
    typeInto(s, "TxtNoOfBags", QStringLiteral("200"));
    typeInto(s, "TxtBagWeight", QStringLiteral("50"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("25000"));
    typeInto(s, "CboBagType", QStringLiteral("PP 100 Kg"));
    typeInto(s, "CboBagClass", QStringLiteral("New"));
    typeInto(s, "TxtBagsQty", QStringLiteral("10"));
    typeInto(s, "TxtRatePerBag", QStringLiteral("25.5"));
    QCOMPARE(textOf(s, "TxtBagsValue"), QStringLiteral("255"));
    QCOMPARE(textOf(s, "TxtGrossValue"), QStringLiteral("25255"));
    // Another unit, another value; a unit the list does not have leaves it empty.
    typeInto(s, "CboUnit", QStringLiteral("Kg (1)"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("1000000"));
    QCOMPARE(textOf(s, "TxtGrossValue"), QStringLiteral("1000255"));
    typeInto(s, "CboUnit", QStringLiteral("Mound (40)"));
    QCOMPARE(textOf(s, "TxtGrossValue"), QStringLiteral("25255"));

    auto* grid = control<LineGrid>(s, "GridBagsSale");
    LineGridModel* lines = grid->lines();
    QCOMPARE(lines->columnCount(), 6);
    typeCell(grid, 0, ColPermitNo, QStringLiteral("0042"));
    typeCell(grid, 0, ColLetterDate, QStringLiteral("15032025"));
    QCOMPARE(lines->cellText(0, ColLetterDate), QStringLiteral("15/03/2025"));
    typeCell(grid, 0, ColCenter, QStringLiteral("PR Centre Okara"));
    const auto refused = [&](int column, const QString& keys) {
        const auto seen = answering({QMessageBox::Ok}, [&] { typeCell(grid, 0, column, keys); });
        escapeCell(grid);
        return seen;
    };
    const auto bags = refused(ColLetterBags, QStringLiteral("1000"));
    QCOMPARE(textsOf(bags), QStringList{kLetterBagsRange});
    QCOMPARE(bags.value(0).title, QStringLiteral("Alert"));
    QCOMPARE(bags.value(0).icon, QMessageBox::Information);
    typeCell(grid, 0, ColLetterBags, QStringLiteral("999"));
    QCOMPARE(textsOf(refused(ColLetterBagWeight, QStringLiteral("10000"))),
             QStringList{kLetterWeightRange});
    typeCell(grid, 0, ColLetterBagWeight, QStringLiteral("10.25"));
    QCOMPARE(lines->cellText(0, ColLetterWeight), QStringLiteral("10240")); // 10239.75
    QCOMPARE(textsOf(refused(ColLetterDate, QStringLiteral("31022025"))),
             QStringList{kInvalidDate});
    QCOMPARE(lines->cellText(0, ColLetterDate), QStringLiteral("15/03/2025"));

    typeCell(grid, 1, ColPermitNo, QStringLiteral("P-2"));
    QCOMPARE(
        textsOf(answering({QMessageBox::Ok},
                          [&] { typeCell(grid, 1, ColCenter, QStringLiteral("pr centre ok")); })),
        QStringList{kCenterTwice});
    escapeCell(grid);
    typeCell(grid, 1, ColCenter, QStringLiteral("pr centre dep"));
    QCOMPARE(lines->cellText(1, ColCenter), QStringLiteral("PR Centre Depalpur"));
    typeCell(grid, 1, ColLetterBags, QStringLiteral("1"));
    typeCell(grid, 1, ColLetterBagWeight, QStringLiteral("5.5"));
    QCOMPARE(lines->lineCount(), 2);
    QCOMPARE(lines->footerText(ColLetterBags), QStringLiteral("1000"));
    QCOMPARE(lines->footerText(ColLetterBagWeight), QStringLiteral("15.75"));
    QCOMPARE(lines->footerText(ColLetterWeight), QStringLiteral("10246"));

    // Yes to the print question shows the payment, which goes to a PDF from the preview.
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("payment.pdf"));
    {
        Modals m;
        m.answer(QMessageBox::Yes).answer(QMessageBox::Yes).window([&pdf](QWidget* w) {
            auto* viewer = qobject_cast<RptReportViewer*>(w);
            if (!viewer)
                return false;
            viewer->exportPdf(pdf);
            viewer->reject();
            return true;
        });
        ctrl(s, Qt::Key_S);
        QTRY_VERIFY(m.done());
        QCOMPARE(m.texts(), QStringList({kSaveQuestion, kPrintQuestion}));
        QCOMPARE(m.seen().value(1).title, QStringLiteral("Confirmation"));
        QCOMPARE(m.seen().value(1).defaultButton, QMessageBox::No);
    }
    QCOMPARE(lastShownReport().name, QStringLiteral("CrpDFCPurchase"));
    const QString printed = pdfPages(pdf).join(QLatin1Char('\n'));
    if (!printed.isEmpty())
        for (const char* expected : {"Okara Flour Mills", "CH-501", "0042", "PR Centre Depalpur"})
            QVERIFY2(printed.contains(QLatin1String(expected)), expected);

    const Conn& c = *m_conn;
    QCOMPARE(toText(scalar(c, "SELECT ChallanNo || ' ' || CAST(CAST(TotalWeight AS INTEGER) AS "
                              "VARCHAR(20)) || ' ' || CAST(CAST(TTLValueWheet AS INTEGER) AS "
                              "VARCHAR(20)) FROM DFCPayments WHERE PaymentId = 1")),
             QStringLiteral("CH-501 10000 25000"));
    QCOMPARE(countOf(c, "SELECT UserNo FROM DFCPayments WHERE PaymentId = 1"), 7);
    QCOMPARE(toText(scalar(c, "SELECT BankAccountNo FROM DFCPayments")), QStringLiteral("112001"));
    QCOMPARE(toDouble(scalar(c, "SELECT Cost FROM DFCPayments")), 0.4);
    QCOMPARE(lettersOf(c, 1), QStringList({"0042:1:999:10.25:10240", "P-2:3:1:5.5:6"}));
    QCOMPARE(toDate(scalar(c, "SELECT Date FROM AuthorityLetters WHERE PermitNo = '0042'")),
             QDate(2025, 3, 15));
    QCOMPARE(remainingAt(c, 1), QStringLiteral("999/10240"));

    // Back to a new payment.
    QCOMPARE(textOf(s, "TxtPaymentId"), QStringLiteral("2"));
    QCOMPARE(lines->lineCount(), 0);
    QCOMPARE(lines->footerText(ColLetterBags), QString());
    QCOMPARE(textOf(s, "TxtValue"), QString());
    QVERIFY(!s->button(Button::Save)->isEnabled());
    QTRY_VERIFY(holds(s, "DTPPaymentDate"));

    // The same permit on a new payment is refused, and the entries stay for mending.
    typeInto(s, "CboCommodities", nameOfKey(s, "CboCommodities", kWheatGovernment));
    typeInto(s, "CboUnit", QStringLiteral("Mound (40)"));
    typeInto(s, "TxtChallanNo", QStringLiteral("CH-502"));
    typeInto(s, "TxtNoOfBags", QStringLiteral("10"));
    typeInto(s, "TxtBagWeight", QStringLiteral("50"));
    typeInto(s, "TxtRatePerUnit", QStringLiteral("100"));
    typeCell(grid, 0, ColPermitNo, QStringLiteral("0042"));
    typeCell(grid, 0, ColCenter, QStringLiteral("PR Centre Sahiwal"));
    const auto again = answering({QMessageBox::Yes, QMessageBox::Ok}, [s] { ctrl(s, Qt::Key_S); });
    QCOMPARE(textsOf(again).value(1), permitTakenRefusal(QStringLiteral("0042")));
    QCOMPARE(again.value(1).icon, QMessageBox::Warning);
    QVERIFY(holds(s, "GridBagsSale"));
    QCOMPARE(grid->currentIndex(), lines->index(0, ColPermitNo));
    QVERIFY(!DFCStore(c).exists(2));
    QCOMPARE(lines->lineCount(), 1);
    QVERIFY(s->button(Button::Save)->isEnabled());
}

void TestDFCScreen::fullAuthorityAndTheRowMenu() {
    GM_REQUIRE_ENGINE();
    FrmPurchaseFromDFC* s = showScreen();
    QVERIFY(s);
    auto* authority = control<QPushButton>(s, "CmdAuthority");
    QCOMPARE(authority->text(), QStringLiteral("Full Authority"));
    const auto none =
        answering({QMessageBox::Ok}, [authority] { QTest::mouseClick(authority, Qt::LeftButton); });
    QCOMPARE(textsOf(none), QStringList{"Please provide correct informations"});
    QCOMPARE(none.value(0).title, QStringLiteral("Alert!"));
    QCOMPARE(none.value(0).icon, QMessageBox::Information);
    QTRY_VERIFY(holds(s, "TxtNoOfBags"));

    typeInto(s, "TxtNoOfBags", QStringLiteral("100"));
    typeInto(s, "TxtBagWeight", QStringLiteral("50"));
    // Enter on the shortcut moves on like Tab; Space presses it.
    authority->setFocus(Qt::TabFocusReason);
    QTest::keyClick(authority, Qt::Key_Return);
    auto* grid = control<LineGrid>(s, "GridBagsSale");
    LineGridModel* lines = grid->lines();
    QCOMPARE(lines->lineCount(), 0);
    authority->setFocus(Qt::TabFocusReason);
    QTest::keyClick(authority, Qt::Key_Space);
    QCOMPARE(lines->lineCount(), 1);
    const AuthorityLine whole = grid->lines<AuthorityLine>().front();
    QCOMPARE(whole.permitNo, QString());
    QCOMPARE(whole.centerName, QString());
    QCOMPARE(whole.date, QDate::currentDate());
    QCOMPARE(lines->cellText(0, ColLetterBags), QStringLiteral("100"));
    QCOMPARE(lines->cellText(0, ColLetterWeight), QStringLiteral("5000"));
    QVERIFY(holds(s, "GridBagsSale"));
    QCOMPARE(grid->currentIndex(), lines->index(0, ColPermitNo));
    QVERIFY(s->button(Button::Save)->isEnabled());

    typeCell(grid, 0, ColPermitNo, QStringLiteral("FA-1"));
    typeCell(grid, 0, ColCenter, QStringLiteral("PR Centre Sahiwal"));
    typeCell(grid, 1, ColPermitNo, QStringLiteral("FA-2"));
    typeCell(grid, 1, ColCenter, QStringLiteral("PR Centre Depalpur"));
    typeCell(grid, 1, ColLetterBags, QStringLiteral("5"));
    typeCell(grid, 1, ColLetterBagWeight, QStringLiteral("10"));
    QCOMPARE(lines->footerText(ColLetterWeight), QStringLiteral("5050"));

    // The right button over a letter brings its menu; the letter goes after the question.
    QMenu* menu = s->rowMenu();
    QCOMPARE(menu->objectName(), QStringLiteral("mnuDelete"));
    QTest::mouseClick(grid->viewport(), Qt::RightButton, {},
                      grid->visualRect(lines->index(1, ColCenter)).center());
    QTRY_VERIFY(menu->isVisible());
    auto* item = menu->findChild<QAction*>(QStringLiteral("mniRemoveRow"));
    QVERIFY(item && item->isVisible());
    QCOMPARE(item->text(), QStringLiteral("Remove this Row"));
    QVERIFY(!menu->findChild<QAction*>(QStringLiteral("mniRemoveRowBatch"))->isVisible());
    const auto asked = answering({QMessageBox::Yes}, [menu, item] {
        menu->setActiveAction(item);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QCOMPARE(textsOf(asked), QStringList{"Are you sure to remove this product?"});
    QCOMPARE(asked.value(0).title, QStringLiteral("Alert"));
    QCOMPARE(asked.value(0).icon, QMessageBox::Question);
    QCOMPARE(lines->lineCount(), 1);
    QCOMPARE(lines->cellText(0, ColPermitNo), QStringLiteral("FA-1"));
    QCOMPARE(lines->footerText(ColLetterWeight), QStringLiteral("5000"));
    QVERIFY(s->rowsRemoved());

    // Ctrl+Delete in the grid asks the same; No keeps the letter.
    grid->setFocus(Qt::MouseFocusReason);
    grid->setCurrentIndex(lines->index(0, ColLetterBags));
    QCOMPARE(textsOf(answering({QMessageBox::No}, [s] { ctrl(s, Qt::Key_Delete); })),
             QStringList{"Are you sure to remove this product?"});
    QCOMPARE(lines->lineCount(), 1);
    (void)answering({QMessageBox::Yes}, [s] { ctrl(s, Qt::Key_Delete); });
    QCOMPARE(lines->lineCount(), 0);

    // Full Authority again puts the whole purchase back under one letter; the save takes it.
    QApplication::setActiveWindow(s);
    QTest::mouseClick(authority, Qt::LeftButton);
    typeCell(grid, 0, ColPermitNo, QStringLiteral("FA-9"));
    typeCell(grid, 0, ColCenter, QStringLiteral("PR Centre Sahiwal"));
    typeInto(s, "CboCommodities", nameOfKey(s, "CboCommodities", kWheatGovernment));
    typeInto(s, "CboUnit", QStringLiteral("Quintal (100)"));
    typeInto(s, "TxtChallanNo", QStringLiteral("CH-9"));
    typeInto(s, "TxtRatePerUnit", QStringLiteral("9000"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("450000"));
    QVERIFY(saveByKeys(s));
    QCOMPARE(lettersOf(*m_conn, 1), QStringList({"FA-9:4:100:50:5000"}));
    QVERIFY(scalar(*m_conn, "SELECT BagsTypeId FROM DFCPayments").isNull());
}

void TestDFCScreen::openedPaymentEditedAndRemovedBehindItsArrivals() {
    GM_REQUIRE_ENGINE();
    DFCStore store(*m_conn);
    store.save(payment(1, {letter("0042", 1, 600, 50.125), letter("P-9", 3, 300, 50)}), true);
    FrmPurchaseFromDFC* s = showScreen();
    QVERIFY(s);
    QCOMPARE(textOf(s, "TxtPaymentId"), QStringLiteral("2"));

    s->setDocumentSearch([](QWidget*) { return 1; });
    ctrl(s, Qt::Key_O);
    auto* grid = control<LineGrid>(s, "GridBagsSale");
    LineGridModel* lines = grid->lines();
    QCOMPARE(textOf(s, "TxtPaymentId"), QStringLiteral("1"));
    QCOMPARE(textOf(s, "TxtChallanNo"), QStringLiteral("CH-77"));
    QCOMPARE(textOf(s, "CboUnit"), QStringLiteral("Mound (40)"));
    QCOMPARE(textOf(s, "CboBank"), QStringLiteral("Habib Bank Okara Road"));
    QCOMPARE(textOf(s, "TxtValue"), QStringLiteral("12500"));
    QCOMPARE(textOf(s, "TxtGrossValue"), QStringLiteral("12755"));
    QCOMPARE(lines->lineCount(), 2);
    QCOMPARE(lines->cellText(0, ColLetterBagWeight), QStringLiteral("50.125"));
    QCOMPARE(lines->footerText(ColLetterBags), QStringLiteral("900"));
    // On the new-letter line, with Print and Remove on and Save off.
    QVERIFY(holds(s, "GridBagsSale"));
    QCOMPARE(grid->currentIndex().row(), 2);
    QVERIFY(s->button(Button::Print)->isEnabled());
    QVERIFY(s->button(Button::Remove)->isEnabled());
    QVERIFY(!s->button(Button::Save)->isEnabled());
    QCOMPARE(s->ModeWord, QStringLiteral("OpenMode"));
    // Open with nothing chosen leaves the screen as it was.
    s->setDocumentSearch([](QWidget*) { return 0; });
    ctrl(s, Qt::Key_O);
    QCOMPARE(textOf(s, "TxtChallanNo"), QStringLiteral("CH-77"));
    QCOMPARE(lines->lineCount(), 2);
    s->setDocumentSearch([](QWidget*) { return 1; });

    // An arrival comes under permit 0042: the arrival screen offers the centre and its quota.
    m_forms->ArrivalForm();
    auto* arrivals = qobject_cast<FrmArrivalsRate*>(m_forms->instance(Forms::Screen::Arrivals));
    QVERIFY(arrivals);
    QVERIFY(control<LookupCombo>(arrivals, "CboPermitNo")->findName(QStringLiteral("0042")) >= 0);
    typeInto(arrivals, "CboPRCenter", QStringLiteral("PR Centre Okara"));
    QCOMPARE(textOf(arrivals, "TxtRemainingBags"), QStringLiteral("600"));
    (void)answering({QMessageBox::Yes}, [arrivals] { arrivals->close(); });
    arriveUnder(*m_conn, QStringLiteral("0042"), 1, 100);

    // A change of bags is taken, the quota follows; the used letter cannot go.
    QApplication::setActiveWindow(s);
    typeCell(grid, 0, ColLetterBags, QStringLiteral("700"));
    QCOMPARE(lines->cellText(0, ColLetterWeight), QStringLiteral("35088")); // 35087.5
    QVERIFY(s->button(Button::Save)->isEnabled());
    QCOMPARE(s->ModeWord, QStringLiteral("ChangeMode"));
    QVERIFY(saveByKeys(s));
    QCOMPARE(lettersOf(*m_conn, 1), QStringList({"0042:1:700:50.125:35088", "P-9:3:300:50:15000"}));
    QCOMPARE(remainingAt(*m_conn, 1), QStringLiteral("600/30088"));

    ctrl(s, Qt::Key_O);
    grid->setFocus(Qt::MouseFocusReason);
    grid->setCurrentIndex(lines->index(0, ColPermitNo));
    (void)answering({QMessageBox::Yes}, [s] { ctrl(s, Qt::Key_Delete); });
    QCOMPARE(lines->lineCount(), 1);
    const auto kept = answering({QMessageBox::Yes, QMessageBox::Ok}, [s] { ctrl(s, Qt::Key_S); });
    QCOMPARE(textsOf(kept).value(1),
             letterInUseRefusal(QStringLiteral("0042"), QStringLiteral("Arrivals")));
    QCOMPARE(lines->lineCount(), 1); // the entries stay
    QVERIFY(s->button(Button::Save)->isEnabled());
    QCOMPARE(lettersOf(*m_conn, 1).size(), 2);

    // Removal is refused while the arrival stands.
    (void)answering({QMessageBox::Yes}, [s] { ctrl(s, Qt::Key_L); });
    ctrl(s, Qt::Key_O);
    const auto refusedRemoval = answering({QMessageBox::Yes, QMessageBox::Ok}, [s] {
        key(s, Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    });
    QCOMPARE(textsOf(refusedRemoval),
             QStringList({"Are you sure to remove this Invoice?",
                          "Cannot remove this invoice because it is used in (Arrivals) table"}));
    QCOMPARE(refusedRemoval.value(1).icon, QMessageBox::Warning);
    QVERIFY(store.exists(1));

    // Printed from the opened payment.
    {
        Modals viewer;
        viewer.window([](QWidget* w) {
            auto* v = qobject_cast<RptReportViewer*>(w);
            if (!v)
                return false;
            v->reject();
            return true;
        });
        QTest::mouseClick(s->button(Button::Print), Qt::LeftButton);
        QTRY_VERIFY(viewer.done());
    }
    QCOMPARE(lastShownReport().tables.value(0).rows.size(), 2);

    // Once the arrival has gone, the payment goes too, and its quotas with it.
    ArrivalStore(*m_conn).remove(1);
    QCOMPARE(textsOf(answering(
                 {QMessageBox::Yes},
                 [s] { key(s, Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier); })),
             QStringList({"Are you sure to remove this Invoice?"}));
    QVERIFY(!store.exists(1));
    QCOMPARE(remainingAt(*m_conn, 1), QStringLiteral("0/0"));
    QCOMPARE(textOf(s, "TxtPaymentId"), QStringLiteral("1"));
    QCOMPARE(lines->lineCount(), 0);
    QVERIFY(!s->button(Button::Remove)->isEnabled());
    QTRY_VERIFY(holds(s, "DTPPaymentDate"));
}

QTEST_MAIN(TestDFCScreen)
#include "tst_dfc_screen.moc"
