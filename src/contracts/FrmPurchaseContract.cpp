#include "contracts/FrmPurchaseContract.h"

#include "contracts/ContractReport.h"
#include "contracts/ContractStore.h"
#include "contracts/ContractValidation.h"
#include "entry/Fields.h"
#include "entry/PartyFields.h"
#include "reports/Report.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace gm {

namespace {

ScreenTraits contractTraits() {
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmPurchaseContract");
    t.caption = QStringLiteral("Purchase Contract");
    // Enter moves on from every control, buttons included.
    t.enterTabsOnButtons = true;
    t.mark = ScreenTraits::Mark::OnceWithWord;
    t.markAfterHandledKeys = true;
    t.topMark = ScreenTraits::TopMark::EditControls;
    t.ctrlOpens = true;
    t.partySearchCombos = {QStringLiteral("CboSeller"), QStringLiteral("CboBroker")};
    t.clearQuestion = QStringLiteral("Are you sure to clear this invoice?");
    t.clearTitle = msg::kConfirmation;
    t.clearIcon = QMessageBox::Question;
    t.focusAfterClear = {QStringLiteral("DtpContractDate")};
    t.documentSearch = DocumentKind::PurchaseContract;
    t.idField = QStringLiteral("TxtContractID");
    return t;
}

LookupList fixedList(const QStringList& texts) {
    LookupList list;
    for (const QString& t : texts)
        list.push_back({t, t});
    return list;
}

} // namespace

FrmPurchaseContract::FrmPurchaseContract(const Context& ctx, QWidget* parent)
    : DocumentScreen(ctx, contractTraits(), parent) {
    buildUi();
    guard([this] { SetScreenMode(1); });
}

FrmPurchaseContract::~FrmPurchaseContract() = default;

void FrmPurchaseContract::buildUi() {
    auto* grid = new QGridLayout;
    int row = 0;
    const auto place = [&](const QString& caption, QWidget* field, int column) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        grid->addWidget(label, row, column * 2);
        grid->addWidget(field, row, column * 2 + 1);
    };

    m_contractId = new QLineEdit(this);
    m_contractId->setObjectName(QStringLiteral("TxtContractID"));
    m_contractDate = new DateEdit(QStringLiteral("DtpContractDate"), this);
    place(QStringLiteral("Contract ID"), m_contractId, 0);
    place(QStringLiteral("Contract Date"), m_contractDate, 1);
    ++row;

    m_commodity = new LookupCombo(QStringLiteral("CboCommodity"), this);
    place(QStringLiteral("Commodity"), m_commodity, 0);
    ++row;

    m_brokerType = new LookupCombo(QStringLiteral("CboBrokerType"), this);
    m_broker = new LookupCombo(QStringLiteral("CboBroker"), this);
    place(QStringLiteral("Broker Type"), m_brokerType, 0);
    place(QStringLiteral("Broker"), m_broker, 1);
    ++row;

    m_sellerType = new LookupCombo(QStringLiteral("CboSellerType"), this);
    m_seller = new LookupCombo(QStringLiteral("CboSeller"), this);
    place(QStringLiteral("Seller Type"), m_sellerType, 0);
    place(QStringLiteral("Seller"), m_seller, 1);
    ++row;

    m_brokerage = new NumberEdit(QStringLiteral("TxtBrokerage"), this);
    place(QStringLiteral("Brokerage"), m_brokerage, 0);
    m_brokerageMode = new QGroupBox(QStringLiteral("Brokerage Mode"), this);
    m_brokerageMode->setObjectName(QStringLiteral("Frame1"));
    m_perBag = new QRadioButton(QStringLiteral("Per Bag"), m_brokerageMode);
    m_perBag->setObjectName(QStringLiteral("OptPerBag"));
    m_percentage = new QRadioButton(QStringLiteral("% age"), m_brokerageMode);
    m_percentage->setObjectName(QStringLiteral("OptPercenage"));
    m_percentage->setChecked(true);
    auto* modeLayout = new QHBoxLayout(m_brokerageMode);
    modeLayout->addWidget(m_perBag);
    modeLayout->addWidget(m_percentage);
    grid->addWidget(m_brokerageMode, row, 2, 1, 2);
    ++row;

    m_contractMode = new LookupCombo(QStringLiteral("CboContractMode"), this);
    m_quantity = new NumberEdit(QStringLiteral("TxtQuantity"), this);
    place(QStringLiteral("Contract Mode"), m_contractMode, 0);
    place(QStringLiteral("Quantity"), m_quantity, 1);
    ++row;

    m_unit = new LookupCombo(QStringLiteral("CboUnit"), this);
    m_ratePerUnit = new NumberEdit(QStringLiteral("TxtRatePerUnit"), this);
    place(QStringLiteral("Units"), m_unit, 0);
    place(QStringLiteral("Rate/Unit"), m_ratePerUnit, 1);
    ++row;

    m_perBagDeduction = new NumberEdit(QStringLiteral("TxtPerBagDeduction"), this);
    m_otherDeduction = new NumberEdit(QStringLiteral("TxtOtherDeduction"), this);
    place(QStringLiteral("/Bag Deduction"), m_perBagDeduction, 0);
    place(QStringLiteral("Other Deduct."), m_otherDeduction, 1);
    ++row;

    m_modeOfPayment = new LookupCombo(QStringLiteral("CboModeofPayment"), this);
    place(QStringLiteral("Mode of Payment"), m_modeOfPayment, 0);
    ++row;

    m_deliveryStart = new DateEdit(QStringLiteral("DtpDeliveryStartDate"), this);
    m_deliveryEnd = new DateEdit(QStringLiteral("DtpDeliveryEndDate"), this);
    place(QStringLiteral("Delivery Start Date"), m_deliveryStart, 0);
    place(QStringLiteral("Delivery End Date"), m_deliveryEnd, 1);
    ++row;

    m_otherTerms = new QLineEdit(this);
    m_otherTerms->setObjectName(QStringLiteral("TxtOtherTerms"));
    auto* termsLabel = new QLabel(QStringLiteral("Other Terms"), this);
    termsLabel->setBuddy(m_otherTerms);
    grid->addWidget(termsLabel, row, 0);
    grid->addWidget(m_otherTerms, row, 1, 1, 3);
    ++row;

    const auto check = [this](const char* name, const char* caption) {
        auto* box = new QCheckBox(QString::fromUtf8(caption), this);
        box->setObjectName(QString::fromLatin1(name));
        return box;
    };
    m_withBags = check("ChkWithBags", "With Bags");
    m_deliveryInMill = check("ChkDeliveryinMill", "Delivery in Mill");
    m_paymentOnSite = check("ChkPaymentOnSite", "Payment On Site");
    m_completed = check("ChkContractCompleted", "Contract Completed");
    grid->addWidget(m_withBags, row, 1);
    grid->addWidget(m_deliveryInMill, row, 3);
    ++row;
    grid->addWidget(m_paymentOnSite, row, 1);
    grid->addWidget(m_completed, row, 3);

    auto* outer = new QVBoxLayout(this);
    outer->addLayout(grid);
    outer->addStretch();
    outer->addWidget(buttonRow());

    // Tab order follows the form from top to bottom, left to right.
    const QList<QWidget*> order = {
        m_contractId,     m_contractDate,   m_commodity,     m_brokerType,  m_broker,
        m_sellerType,     m_seller,         m_brokerage,     m_perBag,      m_percentage,
        m_contractMode,   m_quantity,       m_unit,          m_ratePerUnit, m_perBagDeduction,
        m_otherDeduction, m_modeOfPayment,  m_deliveryStart, m_deliveryEnd, m_otherTerms,
        m_withBags,       m_deliveryInMill, m_paymentOnSite, m_completed};
    for (int i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    setTabOrder(order.last(), button(Button::Save));

    connect(m_brokerType, &LookupCombo::entryChosen, this,
            [this] { partyTypeChosen(m_brokerType, m_broker); });
    connect(m_sellerType, &LookupCombo::entryChosen, this,
            [this] { partyTypeChosen(m_sellerType, m_seller); });

    // What the clerk changes by hand makes the contract a changed one; values the screen
    // puts there itself (opening, clearing) do not.
    for (QLineEdit* edit :
         {static_cast<QLineEdit*>(m_otherDeduction), m_otherTerms,
          static_cast<QLineEdit*>(m_perBagDeduction), static_cast<QLineEdit*>(m_quantity),
          static_cast<QLineEdit*>(m_ratePerUnit)})
        connect(edit, &QLineEdit::textEdited, this, [this] { markChanged(); });
    for (LookupCombo* combo :
         {m_broker, m_commodity, m_contractMode, m_modeOfPayment, m_seller, m_unit})
        connect(combo, &QComboBox::activated, this, [this] { markChanged(); });
    for (QAbstractButton* b : std::initializer_list<QAbstractButton*>{
             m_perBag, m_percentage, m_withBags, m_deliveryInMill, m_paymentOnSite, m_completed})
        connect(b, &QAbstractButton::clicked, this, [this] { markChanged(); });
}

void FrmPurchaseContract::LoadContractLists() {
    const Conn& conn = context().db();
    m_commodity->setItems(loadCommodities(conn, false, false, false));
    m_brokerType->setItems(partyTypeList());
    m_sellerType->setItems(partyTypeList());
    m_unit->setItems(loadUnits(conn));
    m_contractMode->setItems(fixedList(contractModes()));
    m_modeOfPayment->setItems(fixedList(paymentModes()));
    m_contractMode->selectKey(contractModes().first());
    m_modeOfPayment->selectKey(paymentModes().first());
    // Both kinds start at "ALL", which fills both party lists with every party.
    m_brokerType->selectKey(partyTypeList().front().key);
    m_sellerType->selectKey(partyTypeList().front().key);
}

void FrmPurchaseContract::partyTypeChosen(LookupCombo* typeCombo, LookupCombo* partyCombo) {
    guard([=, this] { fillPartiesOfType(context().db(), typeCombo, partyCombo); });
}

qint64 FrmPurchaseContract::nextDocumentId() {
    return ContractStore(context().db()).nextContractId();
}

void FrmPurchaseContract::modeEntered(int mode) {
    if (mode == 1) {
        LoadContractLists();
        NextDocumentId();
        const QDate today = QDate::currentDate();
        m_contractDate->setDate(today);
        m_deliveryStart->setDate(today);
        m_deliveryEnd->setDate(today);
        m_percentage->setChecked(true);
        for (QCheckBox* box : {m_withBags, m_deliveryInMill, m_paymentOnSite, m_completed})
            box->setChecked(false);
    } else if (mode == 3) {
        // An opened contract keeps its number; a new number comes only with a new contract.
        m_contractId->setEnabled(false);
    }
}

bool FrmPurchaseContract::loadDocument(qint64 contractId) {
    const auto record = ContractStore(context().db()).load(contractId);
    if (!record)
        return false;
    ClearScreen();
    showRecord(*record);
    return true;
}

void FrmPurchaseContract::showRecord(const ContractRecord& r) {
    const PurchaseContract& c = r.contract;
    m_contractId->setText(QString::number(c.contractId));
    m_contractDate->setDate(c.contractDate);
    if (!m_commodity->selectKey(QString::number(c.commodityId)))
        m_commodity->setText(r.commodityName);
    placeParty(m_brokerType, m_broker, c.brokerId, r.brokerName);
    m_brokerage->setValue(c.brokerage);
    if (c.isBrokeragePerBag)
        m_perBag->setChecked(true);
    else
        m_percentage->setChecked(true);
    placeParty(m_sellerType, m_seller, c.partyId, r.sellerName);
    if (!m_contractMode->selectKey(c.contractMode))
        m_contractMode->setText(c.contractMode);
    m_quantity->setValue(c.quantity);
    m_ratePerUnit->setValue(c.ratePerUnit);
    if (!m_unit->selectKey(QString::number(c.rateUnitId)))
        m_unit->setText(unitDisplayName(r.unitName, r.unitWeightInKgs));
    m_perBagDeduction->setValue(c.bagsDeduction);
    m_otherDeduction->setValue(c.otherDeduction);
    if (!m_modeOfPayment->selectKey(c.modeOfPayment))
        m_modeOfPayment->setText(c.modeOfPayment);
    m_deliveryStart->setDate(c.deliveryStartDate);
    m_deliveryEnd->setDate(c.deliveryEndDate);
    m_withBags->setChecked(c.isWithBags);
    m_paymentOnSite->setChecked(c.isPaymentOnSite);
    m_deliveryInMill->setChecked(c.isDeliveryInMill);
    m_otherTerms->setText(c.otherTerms);
    m_completed->setChecked(c.isCompleted);
}

PurchaseContract FrmPurchaseContract::contractFromScreen() const {
    PurchaseContract c;
    c.contractId = contractNumber(m_contractId->text());
    c.contractDate = m_contractDate->date();
    c.commodityId = m_commodity->currentKey().toLongLong();
    c.brokerId = m_broker->text().trimmed().isEmpty() ? QString() : m_broker->currentKey();
    c.brokerage = m_brokerage->value();
    c.isBrokeragePerBag = m_perBag->isChecked();
    c.partyId = m_seller->currentKey();
    c.rateUnitId = m_unit->currentKey().toLongLong();
    c.contractMode = m_contractMode->text();
    c.quantity = m_quantity->value();
    c.ratePerUnit = m_ratePerUnit->value();
    c.isWithBags = m_withBags->isChecked();
    c.isDeliveryInMill = m_deliveryInMill->isChecked();
    c.deliveryStartDate = m_deliveryStart->date();
    c.deliveryEndDate = m_deliveryEnd->date();
    c.modeOfPayment = m_modeOfPayment->text();
    c.bagsDeduction = m_perBagDeduction->value();
    c.otherDeduction = m_otherDeduction->value();
    c.isPaymentOnSite = m_paymentOnSite->isChecked();
    c.otherTerms = m_otherTerms->text();
    c.isCompleted = m_completed->isChecked();
    return c;
}

void FrmPurchaseContract::saveDocument() {
    ContractStore store(context().db());

    ContractEntry entry;
    entry.contractIdText = m_contractId->text();
    entry.isOpened = isOpened();
    entry.sellerText = m_seller->text();
    entry.sellerKey = m_seller->currentKey();
    entry.brokerText = m_broker->text();
    entry.commodityText = m_commodity->text();
    entry.commodityKey = m_commodity->currentKey();
    entry.contractModeText = m_contractMode->text();
    entry.unitKey = m_unit->currentKey();
    entry.quantityText = m_quantity->text();
    entry.ratePerUnitText = m_ratePerUnit->text();

    if (const auto objection = validateContract(entry, store)) {
        object(*objection);
        return;
    }

    const PurchaseContract contract = contractFromScreen();
    // An opened contract is written over its own row; one removed meanwhile comes back under
    // its number.
    if (!isOpened() || !store.update(contract))
        store.insert(contract);
    documentSaved(contract.contractId);
}

void FrmPurchaseContract::printDocument() {
    const auto record = ContractStore(context().db()).load(OpenedDocumentId);
    Report report;
    if (record) {
        report = CrpPurchaseContract(*record, context().hostSettings());
    } else {
        // Nothing to print under this number: the page comes up blank under its heading.
        report.name = QStringLiteral("CrpPurchaseContract");
        report.title = QStringLiteral("PURCHASE CONTRACT");
        report.setLetterhead(context().hostSettings(), false);
    }
    showReport(this, report);
}

void FrmPurchaseContract::removeDocument() {
    if (!msg::askYesNo(this, QStringLiteral("Are you sure to remove this contract?"), msg::kAlert,
                       QMessageBox::Question))
        return;
    ContractStore(context().db()).remove(documentId());
    clearDocument();
}

} // namespace gm
