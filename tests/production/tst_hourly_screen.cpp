#include "entry/Forms.h"
#include "entry/LineGrid.h"
#include "production/FrmHourlyProduction.h"
#include "production/HourlyStore.h"
#include "ProductionFixture.h"
#include "ScreenKeys.h"
#include "support/Modals.h"
#include "support/TestDb.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

QString serialShown(QWidget* s) {
    return control<QLineEdit>(s, "TxtProcessId")->text();
}

// Ctrl+S answered Yes; a refusal that follows is answered OK.
QStringList saveByKeys(QWidget* s, bool refused = false, QList<Modals::Seen>* seen = nullptr) {
    QList<QMessageBox::StandardButton> answers = {QMessageBox::Yes};
    if (refused)
        answers << QMessageBox::Ok;
    return answeredTexts(
        answers, [s] { key(s, Qt::Key_S, Qt::ControlModifier); }, seen);
}

qint64 bodyRows(const Conn& conn, qint64 serial) {
    return toInt(scalar(conn,
                        QStringLiteral("SELECT COUNT(*) FROM HProductionBody WHERE "
                                       "SerialNo = ?"),
                        {serial}));
}

} // namespace

class TestHourlyScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void recordTypedSavedReopenedResaved();
    void refusals();
    void aTakenSerialIsNotTakenOver();

private:
    FrmHourlyProduction* showScreen();
    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TestHourlyScreen::init() {
    GM_REQUIRE_ENGINE();
    m_conn = freshSampleConn();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
}

void TestHourlyScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

FrmHourlyProduction* TestHourlyScreen::showScreen() {
    m_forms->HProductionForm();
    auto* s =
        qobject_cast<FrmHourlyProduction*>(m_forms->instance(Forms::Screen::HourlyProduction));
    if (s) {
        QApplication::setActiveWindow(s);
        (void)QTest::qWaitForWindowActive(s);
    }
    return s;
}

void TestHourlyScreen::recordTypedSavedReopenedResaved() {
    GM_REQUIRE_ENGINE();
    FrmHourlyProduction* s = showScreen();
    QVERIFY(s);
    const qint64 serial = HourlyStore(*m_conn).nextSerialNo();
    QCOMPARE(serialShown(s), QString::number(serial));
    QVERIFY(!s->button(Button::Save)->isEnabled());
    QVERIFY(s->button(Button::Clear)->isEnabled());
    QVERIFY(!s->button(Button::Remove)->isEnabled());
    const QDateTime shownTime = control<QDateTimeEdit>(s, "DtpProcessTime")->dateTime();
    QVERIFY(qAbs(shownTime.secsTo(QDateTime::currentDateTime())) < 120);

    LineGrid* g = s->grid();
    typeLine(g, 0, {"fine f", "PP 50 Kg", "New", "24", "50"});
    QCOMPARE(g->cellText(0, HrCommodity), QStringLiteral("Fine Flour"));
    QCOMPARE(g->cellText(0, HrNetWeight), QStringLiteral("1200"));
    typeLine(g, 1, {"Bran", "PP 100 Kg", "Used", "3.5", "100"});
    QCOMPARE(g->footerText(HrNetWeight), QStringLiteral("1550"));
    // A record begun can only be saved or closed.
    QVERIFY(s->button(Button::Save)->isEnabled());
    QVERIFY(!s->button(Button::Clear)->isEnabled());
    // Ctrl+O does nothing here.
    QCOMPARE(answeredTexts({}, [s] { key(s, Qt::Key_O, Qt::ControlModifier); }), QStringList());

    // The cursor rests on the last line's bag weight: its weight is kept all the same.
    QCOMPARE(saveByKeys(s), QStringList({"Are you sure to save this invoice?"}));
    QCOMPARE(toDouble(scalar(*m_conn,
                             QStringLiteral("SELECT SUM(TTLWeight) FROM HProductionBody WHERE "
                                            "SerialNo = ?"),
                             {serial})),
             1550.0);
    QCOMPARE(toDateTime(scalar(*m_conn,
                               QStringLiteral("SELECT ProcessTime FROM HourlyProduction WHERE "
                                              "SerialNo = ?"),
                               {serial})),
             shownTime);
    QCOMPARE(serialShown(s), QString::number(serial + 1));
    QCOMPARE(g->lines()->lineCount(), 0);

    // Reopened through its search; a cancelled search leaves the screen as it was.
    s->setDocumentSearch([](QWidget*) { return 0; });
    QTest::mouseClick(s->button(Button::Open), Qt::LeftButton);
    QCOMPARE(serialShown(s), QString::number(serial + 1));
    s->setDocumentSearch([serial](QWidget*) { return int(serial); });
    QTest::mouseClick(s->button(Button::Open), Qt::LeftButton);
    QCOMPARE(serialShown(s), QString::number(serial));
    QCOMPARE(g->lines()->lineCount(), 2);
    QCOMPARE(g->cellText(1, HrBagClass), QStringLiteral("Used"));
    QCOMPARE(g->cellText(0, HrNetWeight), QStringLiteral("1200"));
    QCOMPARE(g->footerText(HrNetWeight), QStringLiteral("1550"));
    QVERIFY(s->button(Button::Remove)->isEnabled());
    QVERIFY(!s->button(Button::Save)->isEnabled());
    // Remove stays inert: nothing asked, nothing removed.
    QCOMPARE(
        answeredTexts({}, [s] { QTest::mouseClick(s->button(Button::Remove), Qt::LeftButton); }),
        QStringList());
    QCOMPARE(bodyRows(*m_conn, serial), 2);

    // Changed and saved again: its lines are replaced.
    typeCell(g, 1, HrNoOfBags, QStringLiteral("6"));
    QCOMPARE(g->cellText(1, HrNetWeight), QStringLiteral("600"));
    QApplication::setActiveWindow(s);
    g->setFocus();
    g->setCurrentIndex(g->lines()->index(0, HrNoOfBags));
    QTest::keyClick(g, Qt::Key_Delete);
    QCOMPARE(g->footerText(HrNetWeight), QStringLiteral("600"));
    QCOMPARE(saveByKeys(s), QStringList({"Are you sure to save this invoice?"}));
    QCOMPARE(bodyRows(*m_conn, serial), 1);
    QCOMPARE(toDouble(scalar(*m_conn,
                             QStringLiteral("SELECT TTLWeight FROM HProductionBody WHERE "
                                            "SerialNo = ?"),
                             {serial})),
             600.0);
    QCOMPARE(serialShown(s), QString::number(serial + 1));
}

void TestHourlyScreen::refusals() {
    GM_REQUIRE_ENGINE();
    FrmHourlyProduction* s = showScreen();
    QVERIFY(s);
    LineGrid* g = s->grid();
    const QList<std::tuple<int, QString, QString>> typed = {
        {HrCommodity, "Wheat Local", "Please provide a valid commodity and try again"},
        {HrBagType, "Sack", "Please provide a valid bag type and try again"},
        {HrBagClass, "Torn", "Please provide a valid bag class and try again"},
    };
    for (const auto& [column, text, words] : typed) {
        QList<Modals::Seen> seen;
        QCOMPARE(answeredTexts(
                     {QMessageBox::Ok}, [&] { typeCell(g, 0, column, text); }, &seen),
                 QStringList({words}));
        QCOMPARE(seen[0].title, QStringLiteral("Alert"));
        QCOMPARE(seen[0].icon, QMessageBox::Information);
        escapeCell(g);
    }
    QCOMPARE(g->lines()->lineCount(), 0);

    // A key marks the change; an empty grid is not saved.
    QApplication::setActiveWindow(s);
    control(s, "DtpProcessTime")->setFocus();
    key(s, Qt::Key_Home);
    QList<Modals::Seen> seen;
    QCOMPARE(saveByKeys(s, true, &seen),
             QStringList({"Are you sure to save this invoice?", kGridEmpty}));
    QCOMPARE(seen[1].icon, QMessageBox::Warning);

    // A line without its class is refused where the class is missing.
    typeLine(g, 0, {"Flour", "PP 50 Kg", QString(), "10", "50"});
    QCOMPARE(saveByKeys(s, true), QStringList({"Are you sure to save this invoice?",
                                               "Please provide a valid bag class and try again"}));
    QTRY_VERIFY(s->focusWidget() == g);
    QCOMPARE(g->currentIndex().column(), int(HrBagClass));
    QCOMPARE(toInt(scalar(*m_conn,
                          QStringLiteral("SELECT COUNT(*) FROM HourlyProduction "
                                         "WHERE SerialNo = ?"),
                          {serialShown(s).toLongLong()})),
             0);

    // Clear is off while a change is in hand, yet Ctrl+L clears after asking.
    QVERIFY(!s->button(Button::Clear)->isEnabled());
    QCOMPARE(answeredTexts({QMessageBox::Yes}, [s] { key(s, Qt::Key_L, Qt::ControlModifier); }),
             QStringList({"Are you sure to clear the entries?"}));
    QCOMPARE(g->lines()->lineCount(), 0);
    QVERIFY(s->button(Button::Clear)->isEnabled());
}

// Another clerk saved under the serial shown: this record is not written over theirs, the next
// free serial is shown and the lines stay to be saved again.
void TestHourlyScreen::aTakenSerialIsNotTakenOver() {
    GM_REQUIRE_ENGINE();
    FrmHourlyProduction* s = showScreen();
    QVERIFY(s);
    const qint64 serial = serialShown(s).toLongLong();
    LineGrid* g = s->grid();
    typeLine(g, 0, {"Flour", "PP 50 Kg", "New", "10", "50"});

    HourlyEntry theirs;
    theirs.serialNo = qint32(serial);
    theirs.processTime = QDateTime(QDate(2024, 1, 1), QTime(6, 0));
    HourlyLine l;
    l.commodityId = kBran;
    l.bagsTypeId = kPP100;
    l.bagsClassId = kNew;
    l.noOfBags = 4;
    l.bagWeight = 100;
    theirs.lines = {l};
    HourlyStore(*m_conn).save(theirs, true);

    QList<Modals::Seen> seen;
    QCOMPARE(saveByKeys(s, true, &seen),
             QStringList({"Are you sure to save this invoice?", kSerialTaken}));
    QCOMPARE(serialShown(s), QString::number(serial + 1));
    QCOMPARE(g->lines()->lineCount(), 1);
    QCOMPARE(bodyRows(*m_conn, serial), 1);
    QCOMPARE(toInt(scalar(*m_conn,
                          QStringLiteral("SELECT CommodityId FROM HProductionBody "
                                         "WHERE SerialNo = ?"),
                          {serial})),
             qint64(kBran));
    QCOMPARE(saveByKeys(s), QStringList({"Are you sure to save this invoice?"}));
    QCOMPARE(bodyRows(*m_conn, serial + 1), 1);
}

QTEST_MAIN(TestHourlyScreen)
#include "tst_hourly_screen.moc"
