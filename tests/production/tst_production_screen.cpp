#include "entry/Forms.h"
#include "entry/LineGrid.h"
#include "production/FrmProduction.h"
#include "production/ProductionStore.h"
#include "ProductionFixture.h"
#include "ScreenKeys.h"
#include "support/Modals.h"
#include "support/TestDb.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QCheckBox>
#include <QCompleter>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

const QDate kDay(2024, 3, 15);

LineGrid* grid(QWidget* screen, const char* name) {
    return control<LineGrid>(screen, name);
}

QString textOf(QWidget* screen, const char* name) {
    QWidget* w = control(screen, name);
    if (auto* c = qobject_cast<QComboBox*>(w))
        return c->currentText();
    if (auto* l = qobject_cast<QLabel*>(w))
        return l->text();
    return qobject_cast<QLineEdit*>(w)->text();
}

bool enabled(FrmProduction* s, Button b) {
    return s->button(b)->isEnabled();
}

void typeDate(QWidget* screen, const QDate& date) {
    auto* edit = control<QDateEdit>(screen, "DtpProductionDate");
    focusOn(screen, edit);
    edit->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClicks(edit, date.toString(QStringLiteral("ddMMyyyy")));
    QTest::keyClick(edit, Qt::Key_Return);
}

// Date and process, left with Enter: the day comes up if it was saved.
void typeKey(QWidget* screen, const QDate& date, const QString& process) {
    typeDate(screen, date);
    typeInto(screen, "CboProcesses", process);
}

} // namespace

class TestProductionScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void dayTypedSavedBroughtUpRemoved();
    void refusalsWhileTypingAndAtSave();
    void aSavedDayIsNotSavedAgain();
    void figuresFollowEveryChange();
    void aDayTypedByKeysAlone();

private:
    FrmProduction* showScreen();
    // 50 bags of local wheat; flour and bran as given.
    void typeSampleDay(FrmProduction* s, const QString& flourBags, const QString& branBags);
    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TestProductionScreen::init() {
    GM_REQUIRE_ENGINE();
    m_conn = freshSampleConn();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
}

void TestProductionScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

FrmProduction* TestProductionScreen::showScreen() {
    m_forms->ProductionForm();
    auto* s = qobject_cast<FrmProduction*>(m_forms->instance(Forms::Screen::Production));
    if (s) {
        QApplication::setActiveWindow(s);
        (void)QTest::qWaitForWindowActive(s);
    }
    return s;
}

void TestProductionScreen::typeSampleDay(FrmProduction* s, const QString& flourBags,
                                         const QString& branBags) {
    typeKey(s, kDay, QStringLiteral("Milling"));
    typeLine(grid(s, "GrdConsumption"), 0, {"Wheat Local", QString(), "New", "50"});
    typeLine(grid(s, "GrdProduction"), 0, {"Flour", QString(), "New", flourBags});
    typeLine(grid(s, "GrdProduction"), 1, {"Bran", QString(), "New", branBags});
}

void TestProductionScreen::dayTypedSavedBroughtUpRemoved() {
    GM_REQUIRE_ENGINE();
    const double wheat = stockWeightOf(*m_conn, kWheatLocal);
    const double cost = averageCostOf(*m_conn, kWheatLocal);
    FrmProduction* s = showScreen();
    QVERIFY(s);
    QVERIFY(!enabled(s, Button::Save));
    QVERIFY(!enabled(s, Button::Remove));
    QVERIFY(enabled(s, Button::Clear));
    QVERIFY(holds(s, control(s, "DtpProductionDate")));

    // The key, then on to the consumption.
    typeDate(s, kDay);
    QVERIFY(holds(s, control(s, "CboProcesses")));
    typeInto(s, "CboProcesses", QStringLiteral("mill"));
    QCOMPARE(textOf(s, "CboProcesses"), QStringLiteral("Milling"));
    LineGrid* cons = grid(s, "GrdConsumption");
    QVERIFY(holds(s, cons));
    QCOMPARE(fieldColour(control(s, "CboProcesses")), kEditableColour);

    // The commodity brings its bag, its cost and its stock.
    typeCell(cons, 0, PrdCommodity, QStringLiteral("Wheat Local"));
    QCOMPARE(cons->cellText(0, PrdBagType), QStringLiteral("Jute 100 Kg"));
    QCOMPARE(cons->cellText(0, PrdBagWeight), QStringLiteral("100"));
    QCOMPARE(leadingNumber(cons->cellText(0, PrdCost)), roundHalfEven(cost, 10));
    LineGridModel* stock = grid(s, "GridCurrentStock")->lines();
    QCOMPARE(stock->lineCount(), 1);
    QCOMPARE(stock->cellValue(0, 3), wheat);
    QCOMPARE(stock->cellText(0, 4), QStringLiteral("Kg"));
    typeCell(cons, 0, PrdBagClass, QStringLiteral("New"));
    typeCell(cons, 0, PrdNoOfBags, QStringLiteral("50"));
    QCOMPARE(cons->cellText(0, PrdWeight), QStringLiteral("5000"));
    QCOMPARE(cons->footerText(PrdWeight), QStringLiteral("5000"));
    QVERIFY(enabled(s, Button::Save));

    // F6 on to the products.
    key(s, Qt::Key_F6);
    LineGrid* prod = grid(s, "GrdProduction");
    QVERIFY(holds(s, prod));
    typeLine(prod, 0, {"Flour", QString(), "New", "60"});
    QCOMPARE(prod->cellText(0, PrdBagType), QStringLiteral("PP 50 Kg"));
    QCOMPARE(prod->cellText(0, PrdWeight), QStringLiteral("3000"));
    typeLine(prod, 1, {"Bran", QString(), "New", "19"});
    QCOMPARE(prod->footerText(PrdWeight), QStringLiteral("4900"));
    QCOMPARE(textOf(s, "lblstatus"), QStringLiteral("Shortage"));
    QCOMPARE(textOf(s, "TxtResult"), QStringLiteral("100"));
    QCOMPARE(textOf(s, "TxtRatio"), QStringLiteral("-2"));

    key(s, Qt::Key_F6);
    QVERIFY(holds(s, control(s, "TxtProductionExpense")));
    typeInto(s, "TxtProductionExpense", QStringLiteral("25000"));
    QVERIFY(holds(s, control(s, "TxtOtherExpense")));
    typeInto(s, "TxtOtherExpense", QStringLiteral("5000"));
    typeInto(s, "TxtRemarks", QStringLiteral("Night shift"));
    typeInto(s, "TxtFactoryRunningTime", QStringLiteral("22"));

    QCOMPARE(answeredTexts({QMessageBox::Yes}, [s] { key(s, Qt::Key_S, Qt::ControlModifier); }),
             QStringList({"Are you sure to save this invoice?"}));
    QCOMPARE(rowsOfDay(*m_conn, "Production", kDay, kMilling), 2);
    const double a = Currency::fromDouble(cost).toDouble();
    const double expected =
        (Currency::fromDouble(a + 2 * a / 100) + Currency::fromDouble(30000.0 / 5000)).toDouble();
    QCOMPARE(to4(toDouble(scalar(*m_conn,
                                 QStringLiteral("SELECT MAX(Cost) FROM Production WHERE "
                                                "ProductionDate = ? AND CommodityId = ?"),
                                 {kDay, kBran}))),
             expected);
    QCOMPARE(toDouble(scalar(*m_conn, QStringLiteral("SELECT FactoryTime FROM DailyProduction"))),
             22.0);
    QCOMPARE(stockWeightOf(*m_conn, kWheatLocal), wheat - 5000);

    // A new day: today, nothing on the grids; the status word stays.
    QVERIFY(!enabled(s, Button::Save));
    QCOMPARE(control<QDateEdit>(s, "DtpProductionDate")->date(), QDate::currentDate());
    QCOMPARE(cons->lines()->lineCount(), 0);
    QCOMPARE(textOf(s, "TxtRatio"), QString());
    QCOMPARE(textOf(s, "lblstatus"), QStringLiteral("Shortage"));
    QVERIFY(holds(s, control(s, "DtpProductionDate")));

    // Brought up again by its date and process.
    typeKey(s, kDay, QStringLiteral("Milling"));
    QCOMPARE(fieldColour(control(s, "CboProcesses")), colourFromBgr(65535));
    QCOMPARE(cons->lines()->lineCount(), 1);
    QCOMPARE(prod->lines()->lineCount(), 2);
    QCOMPARE(prod->cellText(1, PrdCommodity), QStringLiteral("Bran"));
    QCOMPARE(to4(prod->lines()->cellValue(1, PrdCost)), expected);
    QCOMPARE(textOf(s, "TxtProductionExpense"), QStringLiteral("25000"));
    QCOMPARE(textOf(s, "TxtFactoryRunningTime"), QStringLiteral("22"));
    QCOMPARE(textOf(s, "TxtRatio"), QStringLiteral("-2"));
    QVERIFY(enabled(s, Button::Remove));
    QVERIFY(!enabled(s, Button::Save));

    // The same date for another process is a new day.
    typeInto(s, "CboProcesses", QStringLiteral("Fine Milling"));
    QCOMPARE(fieldColour(control(s, "CboProcesses")), kEditableColour);
    typeInto(s, "CboProcesses", QStringLiteral("Milling"));
    QVERIFY(enabled(s, Button::Remove));

    // Removed: the stock is back and the screen is new.
    QCOMPARE(answeredTexts({QMessageBox::Yes},
                           [s] { QTest::mouseClick(s->button(Button::Remove), Qt::LeftButton); }),
             QStringList({"Are you sure to remove this this production?"}));
    QCOMPARE(rowsOfDay(*m_conn, "DailyProduction", kDay, kMilling), 0);
    QCOMPARE(stockWeightOf(*m_conn, kWheatLocal), wheat);
    QVERIFY(!enabled(s, Button::Remove));
    QCOMPARE(control<QDateEdit>(s, "DtpProductionDate")->date(), QDate::currentDate());
    QCOMPARE(prod->lines()->lineCount(), 0);
}

void TestProductionScreen::refusalsWhileTypingAndAtSave() {
    GM_REQUIRE_ENGINE();
    FrmProduction* s = showScreen();
    QVERIFY(s);
    // Leaving an empty process looks nothing up and says nothing.
    QCOMPARE(answeredTexts({}, [s] { typeInto(s, "CboProcesses", QString()); }), QStringList());
    typeKey(s, kDay, QStringLiteral("Milling"));
    LineGrid* cons = grid(s, "GrdConsumption");
    const QList<std::pair<QString, QString>> typed = {
        {"Maize", "Please provide a valid commodity."},
        {"Flour", "Please provide a valid commodity."}, // a product, not taken in by milling
        {"Wheat Imported", "There is no stock for selected commodity."},
    };
    for (const auto& [name, words] : typed) {
        QList<Modals::Seen> seen;
        QCOMPARE(answeredTexts(
                     {QMessageBox::Ok}, [&] { typeCell(cons, 0, PrdCommodity, name); }, &seen),
                 QStringList({words}));
        QCOMPARE(seen[0].title, QStringLiteral("Alert"));
        QCOMPARE(seen[0].icon, QMessageBox::Information);
        escapeCell(cons);
    }
    QCOMPARE(cons->lines()->lineCount(), 0);
    typeCell(cons, 0, PrdCommodity, QStringLiteral("Wheat Local"));
    QCOMPARE(answeredTexts({QMessageBox::Ok},
                           [&] { typeCell(cons, 0, PrdBagType, QStringLiteral("Sack")); }),
             QStringList({"Please provide a valid bag type."}));
    escapeCell(cons);
    QCOMPARE(cons->cellText(0, PrdBagType), QStringLiteral("Jute 100 Kg"));
    typeLine(cons, 0, {QString(), QString(), "New", "50"});

    // Nothing produced.
    QList<Modals::Seen> seen;
    QCOMPARE(answeredTexts(
                 {QMessageBox::Yes, QMessageBox::Ok},
                 [s] { key(s, Qt::Key_S, Qt::ControlModifier); }, &seen),
             QStringList({"Are you sure to save this invoice?", kLinesMissing}));
    QCOMPARE(seen[1].icon, QMessageBox::Warning);

    // A product's name is taken as typed, and refused at save, where the clerk is sent.
    LineGrid* prod = grid(s, "GrdProduction");
    typeLine(prod, 0, {"Suji", "PP 50 Kg", "New", "40", "50"});
    QCOMPARE(prod->cellText(0, PrdCommodity), QStringLiteral("Suji"));
    QCOMPARE(
        answeredTexts({QMessageBox::Yes, QMessageBox::Ok},
                      [s] { key(s, Qt::Key_S, Qt::ControlModifier); }),
        QStringList({"Are you sure to save this invoice?", "Please provide a valid commodity."}));
    QTRY_VERIFY(holds(s, prod));
    QCOMPARE(prod->currentIndex().row(), 0);
    QCOMPARE(prod->currentIndex().column(), int(PrdCommodity));

    // Bags short: the whole day is refused and the products can still be mended.
    typeCell(prod, 0, PrdCommodity, QStringLiteral("Flour"));
    execute(*m_conn, QStringLiteral("UPDATE BagsCurrentStock SET NoOfBags = 10"));
    execute(*m_conn,
            QStringLiteral("INSERT INTO BagsCurrentStock (BagsTypeId, BagsClassId, NoOfBags, Cost) "
                           "SELECT ?, ?, 10, 0 WHERE NOT EXISTS (SELECT 1 FROM BagsCurrentStock "
                           "WHERE BagsTypeId = ? AND BagsClassId = ?)"),
            {kPP50, kNew, kPP50, kNew});
    typeCell(prod, 0, PrdNoOfBags, QStringLiteral("40"));
    QCOMPARE(answeredTexts(
                 {QMessageBox::Yes, QMessageBox::Ok},
                 [s] { key(s, Qt::Key_S, Qt::ControlModifier); }, &seen),
             QStringList({"Are you sure to save this invoice?",
                          stockAlert(QStringLiteral("Jute 100 Kg"), QStringLiteral("New"))}));
    QCOMPARE(seen[1].title, QStringLiteral("Stock Alert!"));
    QCOMPARE(rowsOfDay(*m_conn, "DailyProduction", kDay, kMilling), 0);
    QVERIFY(enabled(s, Button::Save));
    typeCell(prod, 0, PrdNoOfBags, QStringLiteral("10"));
    QCOMPARE(prod->cellText(0, PrdWeight), QStringLiteral("500"));

    // Bags added in: no bag test.
    focusOn(s, control(s, "ChkAddBardana"));
    QTest::keyClick(control(s, "ChkAddBardana"), Qt::Key_Space);
    QVERIFY(control<QCheckBox>(s, "ChkAddBardana")->isChecked());
    typeCell(prod, 0, PrdNoOfBags, QStringLiteral("40"));
    QCOMPARE(answeredTexts({QMessageBox::Yes}, [s] { key(s, Qt::Key_S, Qt::ControlModifier); }),
             QStringList({"Are you sure to save this invoice?"}));
    QCOMPARE(rowsOfDay(*m_conn, "Production", kDay, kMilling), 1);
}

void TestProductionScreen::aSavedDayIsNotSavedAgain() {
    GM_REQUIRE_ENGINE();
    FrmProduction* s = showScreen();
    QVERIFY(s);
    typeSampleDay(s, "60", "19");
    QCOMPARE(answeredTexts({QMessageBox::Yes}, [s] { key(s, Qt::Key_S, Qt::ControlModifier); }),
             QStringList({"Are you sure to save this invoice?"}));
    typeKey(s, kDay, QStringLiteral("Milling"));
    QVERIFY(enabled(s, Button::Remove));
    // A key on the opened day allows Save, which the rule of one save a day then stops.
    typeInto(s, "TxtRemarks", QStringLiteral("changed"));
    QVERIFY(enabled(s, Button::Save));
    QVERIFY(!enabled(s, Button::Remove));
    QList<Modals::Seen> seen;
    QCOMPARE(answeredTexts(
                 {QMessageBox::Yes, QMessageBox::Ok},
                 [s] { key(s, Qt::Key_S, Qt::ControlModifier); }, &seen),
             QStringList({"Are you sure to save this invoice?", kOnceADay}));
    QCOMPARE(seen[1].title, QStringLiteral("Alert!"));
    QCOMPARE(seen[1].icon, QMessageBox::Warning);
    // The entries stay.
    QCOMPARE(grid(s, "GrdProduction")->lines()->lineCount(), 2);
    QCOMPARE(toText(scalar(*m_conn, QStringLiteral("SELECT Remarks FROM DailyProduction"))),
             QString());

    // Clear asks while a change is in hand.
    QCOMPARE(answeredTexts({QMessageBox::Yes}, [s] { key(s, Qt::Key_L, Qt::ControlModifier); }),
             QStringList({"Are you sure to clear the entries?"}));
    QCOMPARE(grid(s, "GrdProduction")->lines()->lineCount(), 0);
    QCOMPARE(fieldColour(control(s, "CboProcesses")), kEditableColour);
}

void TestProductionScreen::figuresFollowEveryChange() {
    GM_REQUIRE_ENGINE();
    FrmProduction* s = showScreen();
    QVERIFY(s);
    typeSampleDay(s, "60", "19");
    LineGrid* cons = grid(s, "GrdConsumption");
    LineGrid* prod = grid(s, "GrdProduction");

    // A weight typed by hand corrects the bag weight.
    typeCell(cons, 0, PrdWeight, QStringLiteral("5100"));
    QCOMPARE(cons->cellText(0, PrdBagWeight), QStringLiteral("102"));
    QCOMPARE(cons->footerText(PrdWeight), QStringLiteral("5100"));
    QCOMPARE(textOf(s, "TxtResult"), QStringLiteral("200"));

    // A product removed: its weight leaves the footer and the balance follows.
    focusOn(s, prod);
    prod->setCurrentIndex(prod->lines()->index(1, PrdNoOfBags));
    QTest::keyClick(prod, Qt::Key_Delete);
    QCOMPARE(prod->lines()->lineCount(), 1);
    QCOMPARE(prod->footerText(PrdWeight), QStringLiteral("3000"));
    QCOMPARE(prod->footerText(PrdNoOfBags), QStringLiteral("60"));
    QCOMPARE(textOf(s, "TxtResult"), QStringLiteral("2100"));
    QCOMPARE(textOf(s, "TxtRatio"), QStringLiteral("-41.18"));

    // F5 back through the sections.
    key(s, Qt::Key_F5);
    QVERIFY(holds(s, cons));
    key(s, Qt::Key_F5);
    QVERIFY(holds(s, control(s, "CboProcesses")));
}

// Nothing but keys into whatever holds the focus, Enter moving on as Tab does.
void TestProductionScreen::aDayTypedByKeysAlone() {
    GM_REQUIRE_ENGINE();
    FrmProduction* s = showScreen();
    QVERIFY(s);
    const auto type = [s](const QString& keys) {
        QApplication::setActiveWindow(s);
        // Each key to whatever holds the focus then: the first opens a cell's editor.
        for (const QChar c : keys)
            QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    };
    QVERIFY(holds(s, control(s, "DtpProductionDate")));
    control<QDateEdit>(s, "DtpProductionDate")->setSelectedSection(QDateTimeEdit::DaySection);
    type(kDay.toString(QStringLiteral("ddMMyyyy")));
    type(QStringLiteral("Milling"));
    // Commodity, its bag as it comes, class, bags, bag weight, weight and cost as worked out.
    for (const char* cell : {"Wheat Local", "", "New", "50", "", "", ""})
        type(QString::fromUtf8(cell));
    key(s, Qt::Key_F6);
    for (const char* cell : {"Flour", "", "New", "60", "", "", "", "Bran", "", "New", "19"})
        type(QString::fromUtf8(cell));
    key(s, Qt::Key_F6);
    type(QStringLiteral("25000"));
    type(QStringLiteral("5000"));
    LineGrid* cons = grid(s, "GrdConsumption");
    LineGrid* prod = grid(s, "GrdProduction");
    QCOMPARE(cons->lines()->lineCount(), 1);
    QCOMPARE(cons->cellText(0, PrdWeight), QStringLiteral("5000"));
    QCOMPARE(prod->lines()->lineCount(), 2);
    QCOMPARE(prod->cellText(1, PrdWeight), QStringLiteral("1900"));
    QCOMPARE(textOf(s, "TxtRatio"), QStringLiteral("-2"));
    QCOMPARE(textOf(s, "TxtOtherExpense"), QStringLiteral("5000"));
    QCOMPARE(answeredTexts({QMessageBox::Yes}, [s] { key(s, Qt::Key_S, Qt::ControlModifier); }),
             QStringList({"Are you sure to save this invoice?"}));
    QCOMPARE(rowsOfDay(*m_conn, "Production", kDay, kMilling), 2);
    QCOMPARE(toDouble(scalar(*m_conn,
                             QStringLiteral("SELECT OtherExpenses FROM DailyProduction "
                                            "WHERE ProductionDate = ?"),
                             {kDay})),
             5000.0);
}

QTEST_MAIN(TestProductionScreen)
#include "tst_production_screen.moc"
