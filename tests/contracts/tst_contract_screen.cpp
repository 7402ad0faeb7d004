#include "contracts/ContractStore.h"
#include "contracts/FrmPurchaseContract.h"
#include "datastore/Sql.h"
#include "entry/Forms.h"
#include "reports/Report.h"
#include "support/Modals.h"
#include "support/TestDb.h"
#include "widgets/LookupCombo.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCompleter>
#include <QDateEdit>
#include <QLineEdit>
#include <QRadioButton>
#include <QtTest>

using namespace gm;
using test::Modals;
using Box = QMessageBox;

namespace {

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
void click(QWidget* screen, const char* button) {
    QTest::mouseClick(control(screen, button), Qt::LeftButton);
}

// The window takes the keyboard back after a message box, as it does for a clerk.
void focusOn(QWidget* screen, QWidget* w) {
    QApplication::setActiveWindow(screen);
    QVERIFY(QTest::qWaitForWindowActive(screen));
    w->setFocus(Qt::MouseFocusReason);
    QTRY_VERIFY(w->hasFocus());
}

// Replaces what a field holds by typing and leaves it with Enter, which moves on like Tab.
void typeInto(QWidget* screen, const char* name, const QString& keys) {
    QWidget* w = control(screen, name);
    focusOn(screen, w);
    auto* lookup = qobject_cast<LookupCombo*>(w);
    if (lookup)
        lookup->lineEdit()->selectAll();
    else
        qobject_cast<QLineEdit*>(w)->selectAll();
    QTest::keyClick(w, Qt::Key_Backspace);
    QTest::keyClicks(w, keys);
    // With the completion list open, a real Enter reaches the list first, which closes and
    // hands the key on to the field; a key sent to the field alone skips that step.
    if (lookup && lookup->completer() && lookup->completer()->popup())
        lookup->completer()->popup()->hide();
    QTest::keyClick(w, Qt::Key_Return);
}

void typeAll(QWidget* screen, std::initializer_list<std::pair<const char*, QString>> fields) {
    for (const auto& [name, keys] : fields)
        typeInto(screen, name, keys);
}

void typeDate(QWidget* screen, const char* name, const QDate& date) {
    auto* edit = qobject_cast<QDateEdit*>(control(screen, name));
    focusOn(screen, edit);
    edit->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClicks(edit, date.toString(QStringLiteral("ddMMyyyy")));
    QTest::keyClick(edit, Qt::Key_Return);
}

void pressSpace(QWidget* screen, const char* name) {
    focusOn(screen, control(screen, name));
    QTest::keyClick(control(screen, name), Qt::Key_Space);
}

void ctrl(QWidget* screen, Qt::Key key) {
    QWidget* target = QApplication::focusWidget();
    QTest::keyClick(target ? target : screen, key, Qt::ControlModifier);
}

void openContract(QWidget* screen, qint64 id) {
    qobject_cast<FrmPurchaseContract*>(screen)->openDocumentById(id);
}

qint64 contractCount(const Conn& conn) {
    return toInt(scalar(conn, QStringLiteral("SELECT COUNT(*) FROM PContracts")));
}

// Only what Save insists on, under the given seller.
void typeShortContract(QWidget* s, const QString& seller) {
    // clang-format off
    typeAll(s, {{"CboCommodity", "Wheat Local"}, {"CboSeller", seller}, {"TxtQuantity", "10"},
                {"CboUnit", "Mound"}, {"TxtRatePerUnit", "3900"}});
    // clang-format on
}

} // namespace

class TstContractScreen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void typedSavedAndRemoved();
    void refusedSavesKeepTheEntries();
    void openEditAndSave();

private:
    QWidget* showScreen();
    std::unique_ptr<Conn> m_conn;
    std::unique_ptr<Forms> m_forms;
};

void TstContractScreen::init() {
    GM_REQUIRE_ENGINE();
    m_conn = test::freshSampleConn();
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
    HostSettingsValues v;
    v.HeaderLine1 = QStringLiteral("Pak Flour Mills");
    m_forms->setHostSettings(std::make_shared<FixedHostSettings>(v));
}

void TstContractScreen::cleanup() {
    m_forms.reset();
    m_conn.reset();
}

QWidget* TstContractScreen::showScreen() {
    m_forms->PurchaseContractForm();
    QWidget* screen = m_forms->instance(Forms::Screen::PurchaseContract);
    QApplication::setActiveWindow(screen);
    return screen && QTest::qWaitForWindowActive(screen) ? screen : nullptr;
}

void TstContractScreen::typedSavedAndRemoved() {
    GM_REQUIRE_ENGINE();
    QWidget* s = showScreen();
    QVERIFY(s);
    ContractStore store(*m_conn);
    const qint64 id = store.nextContractId();
    QCOMPARE(text(s, "TxtContractID"), QString::number(id));
    QVERIFY(!enabled(s, "BtnSave") && !enabled(s, "BtnPrint") && enabled(s, "BtnOpen"));

    typeDate(s, "DtpContractDate", QDate(2026, 3, 14));
    // clang-format off
    typeAll(s, {{"CboCommodity", "wheat imp"}, {"CboBroker", "Mian"}, {"CboSeller", "Haji"},
                {"TxtBrokerage", "2.5"}});
    pressSpace(s, "OptPerBag");
    typeAll(s, {{"CboContractMode", "Bags"}, {"TxtQuantity", "1200"}, {"CboUnit", "Mound"},
                {"TxtRatePerUnit", "3850.75"}, {"TxtPerBagDeduction", "0.75"},
                {"TxtOtherDeduction", "12"}, {"CboModeofPayment", "To Pay"}});
    // clang-format on
    typeDate(s, "DtpDeliveryStartDate", QDate(2026, 3, 20));
    typeDate(s, "DtpDeliveryEndDate", QDate(2026, 4, 30));
    typeInto(s, "TxtOtherTerms", "Seller's bags; moisture < 10%");
    for (const char* box :
         {"ChkWithBags", "ChkDeliveryinMill", "ChkPaymentOnSite", "ChkContractCompleted"})
        pressSpace(s, box);
    QVERIFY(enabled(s, "BtnSave") && !enabled(s, "BtnOpen"));

    {
        Modals answers({Box::Yes, Box::No});
        ctrl(s, Qt::Key_S);
        QCOMPARE(answers.count(), 2);
        QCOMPARE(answers.seen()[0].text, QStringLiteral("Are you sure to save this invoice?"));
        QCOMPARE(answers.seen()[1].text, QStringLiteral("Do you want to print?"));
        QCOMPARE(answers.seen()[1].title, QStringLiteral("Confirmation"));
        QCOMPARE(answers.seen()[1].defaultButton, Box::No);
    }

    // clang-format off
    const PurchaseContract expected{id, QDate(2026, 3, 14), 3, "6300001", 2.5, true, "6100001", 2,
        "Bags", 1200, 3850.75, true, true, QDate(2026, 3, 20), QDate(2026, 4, 30), "To Pay", 0.75,
        12, true, "Seller's bags; moisture < 10%", true, false};
    // clang-format on
    QCOMPARE(store.load(id)->contract, expected);

    // Back to a new contract under the next number.
    QCOMPARE(text(s, "TxtContractID"), QString::number(id + 1));
    QCOMPARE(text(s, "CboSeller"), QString());
    QVERIFY(!enabled(s, "BtnSave"));
    QVERIFY(qobject_cast<QRadioButton*>(control(s, "OptPercenage"))->isChecked());
    QVERIFY(!qobject_cast<QCheckBox*>(control(s, "ChkWithBags"))->isChecked());

    // Contract 1 is taken up by an arrival; the one just saved by nothing.
    execute(*m_conn,
            QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId, "
                           "ContractId, IsPosted) SELECT COALESCE(MAX(ArrivalId), 0) + 1, ?, 1, "
                           "'6100001', 1, 0 FROM Arrivals"),
            {QDate::currentDate()});
    openContract(s, 1);
    {
        Modals answers({Box::Yes, Box::Ok});
        click(s, "BtnRemove");
        QCOMPARE(answers.count(), 2);
        QCOMPARE(answers.seen()[0].text, QStringLiteral("Are you sure to remove this contract?"));
        QCOMPARE(answers.seen()[1].text,
                 QStringLiteral("Cannot remove this invoice because it is used in (Arrivals) "
                                "table"));
    }
    QVERIFY(store.exists(1));
    QVERIFY(enabled(s, "BtnRemove"));

    openContract(s, id);
    {
        Modals answers(Box::No);
        click(s, "BtnRemove");
    }
    QVERIFY(store.exists(id));
    {
        Modals answers(Box::Yes);
        click(s, "BtnRemove");
        QCOMPARE(answers.count(), 1);
    }
    QVERIFY(!store.exists(id));
    QVERIFY(!enabled(s, "BtnRemove"));
    QCOMPARE(text(s, "TxtContractID"), QString::number(store.nextContractId()));
}

void TstContractScreen::refusedSavesKeepTheEntries() {
    GM_REQUIRE_ENGINE();
    // A seller whose account goes away after it was chosen: the database refuses the row.
    execute(*m_conn, QStringLiteral("INSERT INTO ChartOfAccounts (AccountNo, AccountName, "
                                    "IsEditable) VALUES ('6999999', 'Gone Traders', 1)"));
    execute(*m_conn, QStringLiteral("INSERT INTO Parties (PartyId, CityId, IsSeller, IsBuyer, "
                                    "IsBroker) VALUES ('6999999', 1, 1, 0, 0)"));
    QWidget* s = showScreen();
    QVERIFY(s);
    ContractStore store(*m_conn);
    const qint64 before = contractCount(*m_conn);
    const qint64 id = store.nextContractId();

    typeInto(s, "TxtQuantity", "0");
    {
        Modals answers(Box::Ok);
        click(s, "BtnSave");
        QCOMPARE(answers.last().text, QStringLiteral("Please select a broker and try again"));
        QCOMPARE(answers.last().icon, Box::Warning);
        QCOMPARE(s->focusWidget()->objectName(), QStringLiteral("CboBroker"));
    }
    typeShortContract(s, "Rana");
    typeInto(s, "TxtContractID", "0");
    {
        Modals answers(Box::Ok);
        click(s, "BtnSave");
        QVERIFY(answers.last().text.startsWith("Invalid purchase Id."));
        QCOMPARE(answers.last().title, QString());
        QCOMPARE(answers.last().icon, Box::NoIcon);
        QCOMPARE(text(s, "TxtContractID"), QString::number(id));
    }
    QVERIFY(text(s, "CboSeller").startsWith("Rana"));
    QVERIFY(enabled(s, "BtnSave"));

    // Another clerk saves under the number this screen shows.
    PurchaseContract other = store.load(1)->contract;
    other.contractId = id;
    store.insert(other);
    {
        Modals answers(Box::Ok);
        click(s, "BtnSave");
        QCOMPARE(answers.count(), 1);
        QVERIFY(answers.last().text.startsWith("The Contract ID already exists."));
    }
    QCOMPARE(text(s, "TxtContractID"), QString::number(id + 1));
    {
        Modals answers(Box::No);
        click(s, "BtnSave");
        QCOMPARE(answers.last().text, QStringLiteral("Do you want to print?"));
    }
    QCOMPARE(store.load(id)->contract, other);
    QCOMPARE(store.load(id + 1)->contract.partyId, QStringLiteral("6100003"));

    typeShortContract(s, "Gone");
    execute(*m_conn, QStringLiteral("DELETE FROM Parties WHERE PartyId = '6999999'"));
    execute(*m_conn, QStringLiteral("DELETE FROM ChartOfAccounts WHERE AccountNo = '6999999'"));
    {
        Modals answers(Box::Ok);
        click(s, "BtnSave");
        QCOMPARE(answers.count(), 1);
        QCOMPARE(answers.last().icon, Box::Critical);
    }
    QVERIFY(text(s, "CboSeller").startsWith("Gone Traders"));
    QCOMPARE(text(s, "TxtQuantity"), QStringLiteral("10"));
    QVERIFY(enabled(s, "BtnSave"));
    // The other clerk's contract and the one saved under the next number; nothing refused.
    QCOMPARE(contractCount(*m_conn), before + 2);
}

void TstContractScreen::openEditAndSave() {
    GM_REQUIRE_ENGINE();
    ContractStore store(*m_conn);
    const qint64 count = contractCount(*m_conn);
    QWidget* s = showScreen();
    QVERIFY(s);
    // The seller list offers only brokers; the contract's seller is placed by key all the same.
    combo(s, "CboSellerType")->selectKey(QStringLiteral("3"));
    {
        Modals search;
        search.window([](QWidget* w) {
            auto* filter = w->findChild<QLineEdit*>(QStringLiteral("TxtFilter"));
            if (!filter)
                return false;
            filter->setFocus();
            QTest::keyClicks(filter, QStringLiteral("Chaudhry"));
            QTest::keyClick(filter, Qt::Key_Return);
            return true;
        });
        ctrl(s, Qt::Key_O);
        QVERIFY(search.done());
    }
    QCOMPARE(text(s, "TxtContractID"), QStringLiteral("2"));
    QCOMPARE(combo(s, "CboSeller")->currentKey(), QStringLiteral("6100002"));
    QCOMPARE(combo(s, "CboBroker")->currentKey(), QStringLiteral("6300002"));
    QCOMPARE(combo(s, "CboCommodity")->currentKey(), QStringLiteral("1"));
    QCOMPARE(combo(s, "CboUnit")->currentKey(), QStringLiteral("2"));
    QVERIFY(enabled(s, "BtnPrint") && enabled(s, "BtnRemove") && !enabled(s, "BtnSave"));
    QVERIFY(!enabled(s, "TxtContractID"));

    // A key in the unit combo that changes nothing still makes it a changed contract.
    focusOn(s, control(s, "CboUnit"));
    QTest::keyClick(control(s, "CboUnit"), Qt::Key_Home);
    QVERIFY(enabled(s, "BtnSave") && !enabled(s, "BtnPrint"));

    PurchaseContract edited = store.load(2)->contract;
    typeInto(s, "TxtQuantity", "2500");
    typeInto(s, "CboSeller", "Sheikh");
    {
        Modals answers({Box::Yes, Box::No});
        ctrl(s, Qt::Key_S);
        QCOMPARE(answers.count(), 2);
    }
    edited.quantity = 2500;
    edited.partyId = QStringLiteral("6100005");
    QCOMPARE(store.load(2)->contract, edited);
    QCOMPARE(contractCount(*m_conn), count);

    // A contract without a broker opens with an empty broker and its brokerage mode.
    const PurchaseContract noBroker = store.load(3)->contract;
    openContract(s, 3);
    QCOMPARE(text(s, "CboBroker"), QString());
    QCOMPARE(combo(s, "CboSeller")->currentKey(), noBroker.partyId);
    QCOMPARE(qobject_cast<QRadioButton*>(control(s, "OptPerBag"))->isChecked(),
             noBroker.isBrokeragePerBag);

    Modals preview;
    preview.window([](QWidget* w) {
        auto* viewer = qobject_cast<RptReportViewer*>(w);
        if (viewer)
            viewer->reject();
        return viewer != nullptr;
    });
    click(s, "BtnPrint");
    QVERIFY(preview.done());
    const Report& shown = lastShownReport();
    QCOMPARE(shown.letterhead.value(0), QStringLiteral("Pak Flour Mills"));
    QVERIFY(shown.field(QStringLiteral("SellerName"))->value.startsWith("Sheikh's Grain"));
    QCOMPARE(shown.field(QStringLiteral("BrokerName"))->value, QString());
}

QTEST_MAIN(TstContractScreen)
#include "tst_contract_screen.moc"
