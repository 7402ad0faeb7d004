#include "arrivals/ArrivalFixture.h"
#include "arrivals/ArrivalStore.h"
#include "entry/Forms.h"
#include "entry/LineGrid.h"
#include "invoices/FrmPurchaseInvoice.h"
#include "invoices/InvoiceStore.h"
#include "reports/PdfText.h"
#include "reports/Report.h"
#include "support/Modals.h"
#include "support/ScreenKeys.h"
#include "support/TestDb.h"
#include "widgets/LookupCombo.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

constexpr const char* kRana = "6100003"; // a seller with no arrivals in the sample mill

void typeParty(QWidget* screen, const QString& combo, const char* key) {
    QApplication::setActiveWindow(screen);
    for (const LookupItem& item : control<LookupCombo>(screen, combo)->items())
        if (item.key == QLatin1String(key))
            return typeInto(screen, combo, item.name);
    qFatal("no party %s", key);
}

double wheatCost(const Conn& c) {
    return toDouble(
        scalar(c, "SELECT Cost FROM CurrentStock WHERE CommodityId = ?", {kWheatLocal}));
}

int rowOfVehicle(LineGrid* grid, const QString& vehicle) {
    for (int r = 0; r < grid->lines()->lineCount(); ++r)
        if (grid->cellText(r, InvVehicleNo) == vehicle)
            return r;
    return -1;
}

} // namespace

class TestInvoiceScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void sellerRouteSavedReopenedAndRemoved();
    void contractRouteBringsItsTerms();

private:
    FrmPurchaseInvoice* showScreen();
    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TestInvoiceScreen::init() {
    GM_REQUIRE_ENGINE();
    m_conn = freshSampleConn();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
}

void TestInvoiceScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

FrmPurchaseInvoice* TestInvoiceScreen::showScreen() {
    m_forms->PurchaseInvoiceForm();
    auto* screen =
        qobject_cast<FrmPurchaseInvoice*>(m_forms->instance(Forms::Screen::PurchaseInvoice));
    if (screen) {
        QApplication::setActiveWindow(screen);
        (void)QTest::qWaitForWindowActive(screen);
    }
    return screen;
}

// The seller's open vehicles come in unpriced; a rate and a bag rate price one, the charges,
// commission and tax follow, and the save moves the wheat's average cost. Reopened, the
// invoice shows what it was saved with; removed, the cost is back where it was.
void TestInvoiceScreen::sellerRouteSavedReopenedAndRemoved() {
    GM_REQUIRE_ENGINE();
    ArrivalStore arrivals(*m_conn);
    const int arrival = arrivals.nextArrivalId();
    ArrivalDocument a = freeArrival(arrival, {vehicle("INV-1", 20, 50), vehicle("INV-2", 10, 50)});
    a.sellerId = QString::fromLatin1(kRana);
    arrivals.save(a, true);
    const double costBefore = wheatCost(*m_conn);

    FrmPurchaseInvoice* s = showScreen();
    QVERIFY(s);
    const int id = textOf(s, "TxtPurchaseID").toInt();
    QCOMPARE(id, InvoiceStore(*m_conn).nextPurchaseId());
    typeParty(s, "CboSeller", kRana);
    LineGrid* grid = control<LineGrid>(s, "Grid");
    QCOMPARE(grid->lines()->lineCount(), 2);
    const int row = rowOfVehicle(grid, QStringLiteral("INV-1"));
    QVERIFY(row >= 0);
    QCOMPARE(grid->cellText(row, InvNetWeight), QStringLiteral("1000"));
    QCOMPARE(grid->cellText(row, InvUnit), QStringLiteral("Mound (40)"));
    QCOMPARE(grid->cellText(row, InvValue), QString());

    // 100 a mound on 1,000 kg and 20 bags at 10: 2,500 + 200.
    typeCell(grid, row, InvRate, QStringLiteral("100"));
    typeCell(grid, row, InvBagRate, QStringLiteral("10"));
    QCOMPARE(grid->cellText(row, InvValue), QStringLiteral("2700"));
    QCOMPARE(grid->footerText(InvBags), QStringLiteral("20")); // priced bags only
    QCOMPARE(textOf(s, "TxtGrossValue"), QStringLiteral("2700"));

    // A total freight spreads over the priced bags and locks the per-bag figure; commission
    // of 10 a mound on 1,000 kg is 250, its tax at 10 % is 25: the net is 2700+200+250-25.
    QApplication::setActiveWindow(s);
    typeInto(s, "TxtFreight", QStringLiteral("200"));
    QCOMPARE(textOf(s, "TxtFreightPerBag"), QStringLiteral("10"));
    QVERIFY(!control(s, "TxtFreightPerBag")->isEnabled());
    QApplication::setActiveWindow(s);
    typeInto(s, "TxtComm", QStringLiteral("10"));
    QApplication::setActiveWindow(s);
    typeInto(s, "TxtWHTaxRatio", QStringLiteral("10"));
    QCOMPARE(textOf(s, "TxtCommValue"), QStringLiteral("250"));
    QCOMPARE(textOf(s, "TxtWHTaxValue"), QStringLiteral("25"));
    QCOMPARE(textOf(s, "TxtNetAmount"), QStringLiteral("3125"));
    QVERIFY(s->button(Button::Save)->isEnabled());

    QCOMPARE(answeredTexts({QMessageBox::Yes, QMessageBox::No}, [s] { ctrl(s, Qt::Key_S); }),
             QStringList({"Are you sure to save this invoice?", "Do you want to print?"}));
    QVERIFY(InvoiceStore(*m_conn).exists(id));
    QCOMPARE(textOf(s, "TxtPurchaseID").toInt(), id + 1);
    QCOMPARE(grid->lines()->lineCount(), 0);
    const double costSaved = wheatCost(*m_conn);
    QVERIFY(costSaved != costBefore);

    // Opened through its search: the priced line, the charges and the totals as saved. (Every
    // key here, Ctrl too, marks a change first, so Ctrl+O finds Open off: the button opens.)
    s->setDocumentSearch([id](QWidget*) { return id; });
    ctrl(s, Qt::Key_O);
    QCOMPARE(s->mode(), Mode::Changed);
    QCOMPARE(answeredTexts({QMessageBox::Yes},
                           [s] { QTest::mouseClick(s->button(Button::Clear), Qt::LeftButton); }),
             QStringList({"Are U Sure To Clear This Invoice ?"}));
    QCOMPARE(s->mode(), Mode::New);
    QTest::mouseClick(s->button(Button::Open), Qt::LeftButton);
    QCOMPARE(s->mode(), Mode::Opened);
    QCOMPARE(grid->lines()->lineCount(), 1);
    QCOMPARE(grid->cellText(0, InvValue), QStringLiteral("2700"));
    QCOMPARE(textOf(s, "TxtFreight"), QStringLiteral("200"));
    QCOMPARE(textOf(s, "TxtNetAmount"), QStringLiteral("3125"));
    QVERIFY(!control(s, "CboContract")->isEnabled());

    // Printed: the saved line and the screen's figures.
    {
        Modals viewer;
        viewer.window([](QWidget* w) {
            auto* preview = qobject_cast<RptReportViewer*>(w);
            if (preview)
                preview->reject();
            return preview != nullptr;
        });
        s->button(Button::Print)->click();
        QTRY_VERIFY(viewer.done());
    }
    QCOMPARE(lastShownReport().name, QStringLiteral("CrpPurchase"));
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("invoice.pdf"));
    QVERIFY(writeReportPdf(lastShownReport(), pdf));
    const QString text = pdfPages(pdf).join(QLatin1Char('\n'));
    QVERIFY2(text.contains(QStringLiteral("INV-1")) && text.contains(QStringLiteral("3125")),
             qPrintable(text));

    QCOMPARE(answeredTexts({QMessageBox::Yes},
                           [s] { QTest::mouseClick(s->button(Button::Remove), Qt::LeftButton); }),
             QStringList({"Are you sure to remove this purhcase?"}));
    QVERIFY(!InvoiceStore(*m_conn).exists(id));
    QVERIFY(std::abs(wheatCost(*m_conn) - costBefore) < 1e-6);
    QCOMPARE(s->mode(), Mode::New);
}

// A contract brings its seller, broker and brokerage with its vehicles already valued at the
// contract's rate, and locks the fields it decided; emptying it frees them again.
void TestInvoiceScreen::contractRouteBringsItsTerms() {
    GM_REQUIRE_ENGINE();
    insertContract(*m_conn, 951, QString::fromLatin1(kRana), kWheatLocal);
    ArrivalStore arrivals(*m_conn);
    ArrivalDocument a = freeArrival(arrivals.nextArrivalId(), {vehicle("CON-1", 20, 50)});
    a.sellerId = QString::fromLatin1(kRana);
    a.contractId = 951;
    arrivals.save(a, true);

    FrmPurchaseInvoice* s = showScreen();
    QVERIFY(s);
    QApplication::setActiveWindow(s);
    typeInto(s, "CboContract", QStringLiteral("951"));
    LineGrid* grid = control<LineGrid>(s, "Grid");
    const int row = rowOfVehicle(grid, QStringLiteral("CON-1"));
    QVERIFY(row >= 0);
    QCOMPARE(control<LookupCombo>(s, "CboSeller")->currentKey(), QString::fromLatin1(kRana));
    QVERIFY(!control(s, "CboSeller")->isEnabled());
    QVERIFY(!grid->cellText(row, InvValue).isEmpty());
    QVERIFY(textOf(s, "TxtGrossValue").toDouble() > 0);

    auto* contract = control<LookupCombo>(s, "CboContract");
    contract->setFocus(Qt::MouseFocusReason);
    contract->lineEdit()->selectAll();
    QTest::keyClick(contract->lineEdit(), Qt::Key_Delete);
    QCOMPARE(grid->lines()->lineCount(), 0);
    QVERIFY(control(s, "CboSeller")->isEnabled());
    QCOMPARE(textOf(s, "TxtGrossValue"), QStringLiteral("0"));
}

QTEST_MAIN(TestInvoiceScreen)
#include "tst_invoice_screen.moc"
