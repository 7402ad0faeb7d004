#include "ContractFixture.h"
#include "ModalAnswers.h"

#include "contracts/ContractStore.h"
#include "contracts/FrmPurchaseContract.h"
#include "datastore/SampleData.h"
#include "entry/Forms.h"
#include "entry/LookupCombo.h"
#include "reports/Report.h"
#include "support/TestDb.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCompleter>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QtTest>

using namespace gm;
using test::ModalAnswers;

namespace {

const QString kSaveQuestion = QStringLiteral("Are you sure to save this invoice?");
const QString kPrintQuestion = QStringLiteral("Do you want to print?");

QWidget* control(QWidget* screen, const char* name) {
    auto* w = screen->findChild<QWidget*>(QString::fromLatin1(name));
    if (!w)
        qFatal("no control %s", name);
    return w;
}
LookupCombo* combo(QWidget* screen, const char* name) {
    return qobject_cast<LookupCombo*>(control(screen, name));
}
QString text(QWidget* screen, const char* name) {
    QWidget* w = control(screen, name);
    if (auto* c = qobject_cast<QComboBox*>(w))
        return c->currentText();
    return qobject_cast<QLineEdit*>(w)->text();
}
bool enabled(QWidget* screen, const char* name) {
    return control(screen, name)->isEnabled();
}

// Focus into a control as a click would, replace what it holds by typing, and leave it with
// Enter, which moves on like Tab.
// The window takes the keyboard back after a message box, as it does for a clerk.
void focusOn(QWidget* screen, QWidget* w) {
    QApplication::setActiveWindow(screen);
    QVERIFY(QTest::qWaitForWindowActive(screen));
    w->setFocus(Qt::MouseFocusReason);
    QTRY_VERIFY(w->hasFocus());
}

void typeInto(QWidget* screen, const char* name, const QString& keys) {
    QWidget* w = control(screen, name);
    focusOn(screen, w);
    auto* combo = qobject_cast<LookupCombo*>(w);
    if (combo)
        combo->lineEdit()->selectAll();
    else
        qobject_cast<QLineEdit*>(w)->selectAll();
    QTest::keyClick(w, Qt::Key_Backspace);
    QTest::keyClicks(w, keys);
    // With the completion list open, a real Enter reaches the list first, which closes
    // and hands the key on to the field; a key sent to the field alone skips that step.
    if (combo && combo->completer() && combo->completer()->popup())
        combo->completer()->popup()->hide();
    QTest::keyClick(w, Qt::Key_Return);
}

// Days, months and years are typed section after section.
void typeDate(QWidget* screen, const char* name, const QDate& date) {
    auto* edit = qobject_cast<QDateEdit*>(control(screen, name));
    focusOn(screen, edit);
    edit->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClicks(QApplication::focusWidget(), date.toString(QStringLiteral("ddMMyyyy")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
}

void pressSpace(QWidget* screen, const char* name) {
    QWidget* w = control(screen, name);
    focusOn(screen, w);
    QTest::keyClick(w, Qt::Key_Space);
}

void ctrl(QWidget* screen, Qt::Key key) {
    QWidget* target = QApplication::focusWidget();
    QTest::keyClick(target ? target : screen, key, Qt::ControlModifier);
}

HostSettingsValues letterhead() {
    HostSettingsValues v;
    v.HeaderLine1 = QStringLiteral("Pak Flour Mills");
    v.HeaderLine2 = QStringLiteral("Okara Road, Renala Khurd");
    v.HeaderLine3Main = QStringLiteral("Ph 044-2620011");
    return v;
}

qint64 contractCount(const Conn& conn) {
    return toInt(scalar(conn, QStringLiteral("SELECT COUNT(*) FROM PContracts")));
}

} // namespace

class TstContractScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void newContractTypedAndSaved();
    void checksStopTheSave();
    void numberTakenByAnotherScreen();
    void failedWriteKeepsTheEntries();
    void openEditAndSave();
    void removal();
    void printFromScreen();

private:
    QWidget* showScreen();

    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TstContractScreen::init() {
    m_conn = test::freshSampleConn();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
    m_forms->setHostSettings(std::make_shared<FixedHostSettings>(letterhead()));
}

void TstContractScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

QWidget* TstContractScreen::showScreen() {
    m_forms->PurchaseContractForm();
    QWidget* screen = m_forms->instance(Forms::Screen::PurchaseContract);
    if (!screen)
        return nullptr;
    QApplication::setActiveWindow(screen);
    if (!QTest::qWaitForWindowActive(screen))
        return nullptr;
    return screen;
}

void TstContractScreen::newContractTypedAndSaved() {
    GM_REQUIRE_ENGINE();
    QWidget* s = showScreen();
    QVERIFY(s);
    QCOMPARE(s->windowTitle(), QStringLiteral("Purchase Contract"));
    ContractStore store(*m_conn);
    const qint64 id = store.nextContractId();
    QCOMPARE(text(s, "TxtContractID"), QString::number(id));
    QVERIFY(!enabled(s, "BtnSave"));
    QVERIFY(!enabled(s, "BtnPrint"));
    QVERIFY(enabled(s, "BtnOpen"));
    QCOMPARE(text(s, "CboContractMode"), QStringLiteral("Vehicles"));
    QCOMPARE(text(s, "CboModeofPayment"), QStringLiteral("DD"));
    QCOMPARE(text(s, "CboBrokerType"), QStringLiteral("ALL"));

    typeDate(s, "DtpContractDate", QDate(2026, 3, 14));
    typeInto(s, "CboCommodity", "wheat imp");
    typeInto(s, "CboBroker", "Mian");
    typeInto(s, "CboSeller", "Haji");
    typeInto(s, "TxtBrokerage", "2.5");
    pressSpace(s, "OptPerBag");
    typeInto(s, "CboContractMode", "Bags");
    typeInto(s, "TxtQuantity", "1200");
    typeInto(s, "CboUnit", "Mound");
    typeInto(s, "TxtRatePerUnit", "3850.75");
    typeInto(s, "TxtPerBagDeduction", "0.75");
    typeInto(s, "TxtOtherDeduction", "12");
    typeInto(s, "CboModeofPayment", "To Pay");
    typeDate(s, "DtpDeliveryStartDate", QDate(2026, 3, 20));
    typeDate(s, "DtpDeliveryEndDate", QDate(2026, 4, 30));
    typeInto(s, "TxtOtherTerms", "Seller's bags; moisture < 10%");
    pressSpace(s, "ChkWithBags");
    pressSpace(s, "ChkDeliveryinMill");
    pressSpace(s, "ChkPaymentOnSite");
    pressSpace(s, "ChkContractCompleted");
    QVERIFY(enabled(s, "BtnSave"));
    QVERIFY(!enabled(s, "BtnOpen"));

    ModalAnswers answers;
    answers.box(QMessageBox::Yes).box(QMessageBox::No);
    ctrl(s, Qt::Key_S);
    QVERIFY(answers.allAnswered());
    QCOMPARE(answers.unexpected(), 0);
    QCOMPARE(answers.boxes()[0].text, kSaveQuestion);
    QCOMPARE(answers.boxes()[0].title, QStringLiteral("Alert"));
    QCOMPARE(answers.boxes()[1].text, kPrintQuestion);
    QCOMPARE(answers.boxes()[1].title, QStringLiteral("Confirmation"));
    QCOMPARE(answers.boxes()[1].icon, QMessageBox::Question);
    QCOMPARE(answers.boxes()[1].defaultButton, QMessageBox::No);

    PurchaseContract expected;
    expected.contractId = id;
    expected.contractDate = QDate(2026, 3, 14);
    expected.commodityId = 3;
    expected.brokerId = QStringLiteral("6300001");
    expected.brokerage = 2.5;
    expected.isBrokeragePerBag = true;
    expected.partyId = QStringLiteral("6100001");
    expected.rateUnitId = 2;
    expected.contractMode = QStringLiteral("Bags");
    expected.quantity = 1200;
    expected.ratePerUnit = 3850.75;
    expected.isWithBags = true;
    expected.isDeliveryInMill = true;
    expected.deliveryStartDate = QDate(2026, 3, 20);
    expected.deliveryEndDate = QDate(2026, 4, 30);
    expected.modeOfPayment = QStringLiteral("To Pay");
    expected.bagsDeduction = 0.75;
    expected.otherDeduction = 12;
    expected.isPaymentOnSite = true;
    expected.otherTerms = QStringLiteral("Seller's bags; moisture < 10%");
    expected.isCompleted = true;
    const auto saved = store.load(id);
    QVERIFY(saved);
    QCOMPARE(saved->contract, expected);

    // Back to a new contract under the next number.
    QCOMPARE(text(s, "TxtContractID"), QString::number(id + 1));
    QCOMPARE(text(s, "CboSeller"), QString());
    QVERIFY(!enabled(s, "BtnSave"));
    QVERIFY(qobject_cast<QRadioButton*>(control(s, "OptPercenage"))->isChecked());
    QVERIFY(!qobject_cast<QCheckBox*>(control(s, "ChkWithBags"))->isChecked());
}

void TstContractScreen::checksStopTheSave() {
    GM_REQUIRE_ENGINE();
    QWidget* s = showScreen();
    QVERIFY(s);
    const qint64 before = contractCount(*m_conn);
    const QString id = text(s, "TxtContractID");

    // Nothing chosen: the broker is asked for first, and focus goes there.
    typeInto(s, "TxtQuantity", "0");
    QVERIFY(enabled(s, "BtnSave"));
    {
        ModalAnswers answers;
        answers.box(QMessageBox::Ok);
        QTest::mouseClick(qobject_cast<QPushButton*>(control(s, "BtnSave")), Qt::LeftButton);
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.boxes()[0].text, QStringLiteral("Please select a broker and try again"));
        QCOMPARE(answers.boxes()[0].title, QStringLiteral("Alert"));
        QCOMPARE(answers.boxes()[0].icon, QMessageBox::Warning);
        QCOMPARE(s->focusWidget()->objectName(), QStringLiteral("CboBroker"));
    }

    // A seller, then a number of 0: a new number is drawn before the quantity is judged.
    typeInto(s, "CboSeller", "Chaudhry");
    typeInto(s, "TxtContractID", "0");
    {
        ModalAnswers answers;
        answers.box(QMessageBox::Ok);
        QTest::mouseClick(qobject_cast<QPushButton*>(control(s, "BtnSave")), Qt::LeftButton);
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.boxes()[0].text,
                 QStringLiteral("Invalid purchase Id. A new Purchase has been automatically "
                                "generated. Please save again"));
        QCOMPARE(answers.boxes()[0].title, QString());
        QCOMPARE(answers.boxes()[0].icon, QMessageBox::NoIcon);
        QCOMPARE(text(s, "TxtContractID"), id);
    }

    // Then the quantity of 0, and the entries and the mode stay for correcting.
    typeInto(s, "CboCommodity", "Wheat Local");
    typeInto(s, "CboUnit", "Mound");
    {
        ModalAnswers answers;
        answers.box(QMessageBox::Ok);
        QTest::mouseClick(qobject_cast<QPushButton*>(control(s, "BtnSave")), Qt::LeftButton);
        QCOMPARE(answers.boxes().value(0).text, QStringLiteral("Quantity must be greater than 0."));
        QCOMPARE(s->focusWidget()->objectName(), QStringLiteral("TxtQuantity"));
    }
    QVERIFY(text(s, "CboSeller").startsWith("Chaudhry Grain Traders"));
    QVERIFY(enabled(s, "BtnSave"));
    QCOMPARE(contractCount(*m_conn), before);
}

void TstContractScreen::numberTakenByAnotherScreen() {
    GM_REQUIRE_ENGINE();
    // Two clerks with the contract screen up see the same proposed number.
    FrmPurchaseContract first(m_forms->context());
    FrmPurchaseContract second(m_forms->context());
    first.show();
    second.show();
    const qint64 id = ContractStore(*m_conn).nextContractId();
    QCOMPARE(text(&first, "TxtContractID"), QString::number(id));
    QCOMPARE(text(&second, "TxtContractID"), QString::number(id));

    for (FrmPurchaseContract* s : {&first, &second}) {
        QApplication::setActiveWindow(s);
        QVERIFY(QTest::qWaitForWindowActive(s));
        typeInto(s, "CboCommodity", "Wheat Local");
        typeInto(s, "CboSeller", s == &first ? "Haji" : "Rana");
        typeInto(s, "TxtQuantity", "10");
        typeInto(s, "CboUnit", "Mound");
        typeInto(s, "TxtRatePerUnit", "3900");
    }

    QApplication::setActiveWindow(&first);
    {
        ModalAnswers answers;
        answers.box(QMessageBox::No);
        QTest::mouseClick(qobject_cast<QPushButton*>(control(&first, "BtnSave")), Qt::LeftButton);
        QCOMPARE(answers.boxes().value(0).text, kPrintQuestion);
    }
    QApplication::setActiveWindow(&second);
    {
        ModalAnswers answers;
        answers.box(QMessageBox::Ok);
        QTest::mouseClick(qobject_cast<QPushButton*>(control(&second, "BtnSave")), Qt::LeftButton);
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.unexpected(), 0);
        QCOMPARE(answers.boxes()[0].text,
                 QStringLiteral("The Contract ID already exists. A new ID has been generated. "
                                "Please save your record again"));
    }
    QCOMPARE(text(&second, "TxtContractID"), QString::number(id + 1));
    QCOMPARE(ContractStore(*m_conn).load(id)->contract.partyId, QStringLiteral("6100001"));
    QVERIFY(text(&second, "CboSeller").startsWith("Rana"));

    {
        ModalAnswers answers;
        answers.box(QMessageBox::No);
        QTest::mouseClick(qobject_cast<QPushButton*>(control(&second, "BtnSave")), Qt::LeftButton);
        QCOMPARE(answers.boxes().value(0).text, kPrintQuestion);
    }
    QCOMPARE(ContractStore(*m_conn).load(id)->contract.partyId, QStringLiteral("6100001"));
    QCOMPARE(ContractStore(*m_conn).load(id + 1)->contract.partyId, QStringLiteral("6100003"));
}

void TstContractScreen::failedWriteKeepsTheEntries() {
    GM_REQUIRE_ENGINE();
    // A seller whose account goes away after it was chosen: the database refuses the row.
    execute(*m_conn,
            QStringLiteral("INSERT INTO ChartOfAccounts (AccountNo, AccountName, "
                           "ParentAccountNo, IsEditable) VALUES ('6999999', 'Gone Traders', '6', "
                           "1)"));
    execute(*m_conn, QStringLiteral("INSERT INTO Parties (PartyId, CityId, IsSeller, IsBuyer, "
                                    "IsBroker) VALUES ('6999999', 1, 1, 0, 0)"));
    QWidget* s = showScreen();
    QVERIFY(s);
    const qint64 before = contractCount(*m_conn);
    const QString id = text(s, "TxtContractID");
    typeInto(s, "CboCommodity", "Wheat Local");
    typeInto(s, "CboSeller", "Gone");
    typeInto(s, "TxtQuantity", "10");
    typeInto(s, "CboUnit", "Mound");
    typeInto(s, "TxtRatePerUnit", "3900");
    execute(*m_conn, QStringLiteral("DELETE FROM Parties WHERE PartyId = '6999999'"));
    execute(*m_conn, QStringLiteral("DELETE FROM ChartOfAccounts WHERE AccountNo = '6999999'"));

    ModalAnswers answers;
    answers.box(QMessageBox::Ok);
    QTest::mouseClick(qobject_cast<QPushButton*>(control(s, "BtnSave")), Qt::LeftButton);
    QVERIFY(answers.allAnswered());
    QCOMPARE(answers.unexpected(), 0);
    QCOMPARE(answers.boxes()[0].icon, QMessageBox::Critical);
    QCOMPARE(contractCount(*m_conn), before);
    QCOMPARE(text(s, "TxtContractID"), id);
    QVERIFY(text(s, "CboSeller").startsWith("Gone Traders"));
    QCOMPARE(text(s, "TxtQuantity"), QStringLiteral("10"));
    QVERIFY(enabled(s, "BtnSave"));
}

void TstContractScreen::openEditAndSave() {
    GM_REQUIRE_ENGINE();
    ContractStore store(*m_conn);
    PurchaseContract noBroker = store.load(3)->contract;
    QVERIFY(noBroker.brokerId.isEmpty());
    const qint64 count = contractCount(*m_conn);

    QWidget* s = showScreen();
    QVERIFY(s);
    // The seller and broker lists offer only suppliers and brokers; the contract's parties
    // are placed by their accounts all the same.
    combo(s, "CboSellerType")->selectKey(QStringLiteral("3"));
    {
        ModalAnswers answers;
        answers.window([](QWidget* w) {
            if (w->objectName() != QLatin1String("SchPurchaseContract") &&
                w->windowTitle() != QLatin1String("Search Purchase Contract"))
                return false;
            auto* filter = w->findChild<QLineEdit*>(QStringLiteral("TxtFilter"));
            filter->setFocus();
            QTest::keyClicks(filter, QStringLiteral("Chaudhry"));
            QTest::keyClick(filter, Qt::Key_Return);
            return true;
        });
        ctrl(s, Qt::Key_O);
        QVERIFY(answers.allAnswered());
    }
    QCOMPARE(text(s, "TxtContractID"), QStringLiteral("2"));
    QCOMPARE(combo(s, "CboSeller")->currentKey(), QStringLiteral("6100002"));
    QCOMPARE(combo(s, "CboBroker")->currentKey(), QStringLiteral("6300002"));
    QCOMPARE(combo(s, "CboCommodity")->currentKey(), QStringLiteral("1"));
    QCOMPARE(combo(s, "CboUnit")->currentKey(), QStringLiteral("2"));
    QCOMPARE(text(s, "CboContractMode"), QStringLiteral("Bags"));
    QVERIFY(enabled(s, "BtnPrint"));
    QVERIFY(enabled(s, "BtnRemove"));
    QVERIFY(!enabled(s, "BtnSave"));
    QVERIFY(!enabled(s, "TxtContractID"));

    // A key in the unit combo that changes nothing still makes it a changed contract.
    focusOn(s, control(s, "CboUnit"));
    QTest::keyClick(control(s, "CboUnit"), Qt::Key_Home);
    QVERIFY(enabled(s, "BtnSave"));
    QVERIFY(!enabled(s, "BtnPrint"));

    PurchaseContract edited = store.load(2)->contract;
    typeInto(s, "TxtQuantity", "2500");
    typeInto(s, "CboSeller", "Sheikh");
    pressSpace(s, "ChkContractCompleted");
    {
        ModalAnswers save;
        save.box(QMessageBox::Yes).box(QMessageBox::No);
        ctrl(s, Qt::Key_S);
        QVERIFY(save.allAnswered());
        QCOMPARE(save.unexpected(), 0);
    }
    edited.quantity = 2500;
    edited.partyId = QStringLiteral("6100005");
    edited.isCompleted = !edited.isCompleted;
    QCOMPARE(store.load(2)->contract, edited);
    QCOMPARE(contractCount(*m_conn), count);
    QVERIFY(!enabled(s, "BtnSave"));

    // A contract without a broker opens with an empty broker and its brokerage mode.
    auto* frm = qobject_cast<FrmPurchaseContract*>(s);
    qobject_cast<QLineEdit*>(control(s, "TxtContractID"))->setText(QStringLiteral("3"));
    frm->OpenContract(false);
    QCOMPARE(text(s, "CboBroker"), QString());
    QCOMPARE(combo(s, "CboSeller")->currentKey(), noBroker.partyId);
    QCOMPARE(qobject_cast<QRadioButton*>(control(s, "OptPerBag"))->isChecked(),
             noBroker.isBrokeragePerBag);
    QVERIFY(frm->IsOpened);
    QCOMPARE(frm->ModeWord, QStringLiteral("OpenMode"));
}

void TstContractScreen::removal() {
    GM_REQUIRE_ENGINE();
    ContractStore store(*m_conn);
    // Contract 1 is taken up by an arrival; a new one nothing refers to.
    const qint64 arrivalId =
        toInt(scalar(*m_conn, QStringLiteral("SELECT COALESCE(MAX(ArrivalId), 0) + 1 FROM "
                                             "Arrivals")));
    execute(*m_conn,
            QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId, "
                           "ContractId, IsPosted) VALUES (?, ?, ?, ?, ?, 0)"),
            {arrivalId, QDate::currentDate(), 1, QStringLiteral("6100001"), 1});
    PurchaseContract unused = store.load(1)->contract;
    unused.contractId = store.nextContractId();
    QCOMPARE(store.insert(unused), ContractStore::InsertResult::Inserted);

    QWidget* s = showScreen();
    QVERIFY(s);
    auto* frm = qobject_cast<FrmPurchaseContract*>(s);
    const auto removeButton = qobject_cast<QPushButton*>(control(s, "BtnRemove"));

    qobject_cast<QLineEdit*>(control(s, "TxtContractID"))->setText(QStringLiteral("1"));
    frm->OpenContract(false);
    {
        ModalAnswers answers;
        answers.box(QMessageBox::Yes).box(QMessageBox::Ok);
        QTest::mouseClick(removeButton, Qt::LeftButton);
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.boxes()[0].text, QStringLiteral("Are you sure to remove this contract?"));
        QCOMPARE(answers.boxes()[0].title, QStringLiteral("Alert"));
        QCOMPARE(answers.boxes()[1].text,
                 QStringLiteral("Cannot remove this invoice because it is used in (Arrivals) "
                                "table"));
        QCOMPARE(answers.boxes()[1].icon, QMessageBox::Warning);
    }
    QVERIFY(store.exists(1));
    QVERIFY(enabled(s, "BtnRemove"));
    QCOMPARE(text(s, "TxtContractID"), QStringLiteral("1"));

    // Answering No leaves the contract; Yes on one nothing uses removes it.
    qobject_cast<QLineEdit*>(control(s, "TxtContractID"))
        ->setText(QString::number(unused.contractId));
    frm->OpenContract(false);
    {
        ModalAnswers answers;
        answers.box(QMessageBox::No);
        QTest::mouseClick(removeButton, Qt::LeftButton);
        QVERIFY(answers.allAnswered());
    }
    QVERIFY(store.exists(unused.contractId));
    {
        ModalAnswers answers;
        answers.box(QMessageBox::Yes);
        QTest::mouseClick(removeButton, Qt::LeftButton);
        QVERIFY(answers.allAnswered());
        QCOMPARE(answers.unexpected(), 0);
    }
    QVERIFY(!store.exists(unused.contractId));
    QVERIFY(!enabled(s, "BtnRemove"));
    QCOMPARE(text(s, "TxtContractID"), QString::number(store.nextContractId()));
}

void TstContractScreen::printFromScreen() {
    GM_REQUIRE_ENGINE();
    QWidget* s = showScreen();
    QVERIFY(s);
    auto* frm = qobject_cast<FrmPurchaseContract*>(s);
    qobject_cast<QLineEdit*>(control(s, "TxtContractID"))->setText(QStringLiteral("3"));
    frm->OpenContract(false);

    ModalAnswers answers;
    answers.window([](QWidget* w) {
        auto* viewer = qobject_cast<RptReportViewer*>(w);
        if (!viewer)
            return false;
        viewer->reject();
        return true;
    });
    QTest::mouseClick(qobject_cast<QPushButton*>(control(s, "BtnPrint")), Qt::LeftButton);
    QVERIFY(answers.allAnswered());
    const Report& shown = lastShownReport();
    QCOMPARE(shown.title, QStringLiteral("PURCHASE CONTRACT"));
    QCOMPARE(shown.letterhead,
             QStringList({"Pak Flour Mills", "Okara Road, Renala Khurd", "Ph 044-2620011"}));
    QVERIFY(shown.field(QStringLiteral("SellerName"))->value.startsWith("Sheikh's Grain"));
    QCOMPARE(shown.field(QStringLiteral("BrokerName"))->value, QString());
}

QTEST_MAIN(TstContractScreen)
#include "tst_contract_screen.moc"
