#include "invoices/FrmPurchaseInvoice.h"

#include "entry/Fields.h"
#include "entry/LineGrid.h"
#include "entry/PartyFields.h"
#include "invoices/InvoiceReport.h"
#include "invoices/InvoiceValidation.h"
#include "reports/Report.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QCheckBox>
#include <QDate>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace gm {

namespace {

ScreenTraits invoiceTraits() {
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmPurchaseInvoice");
    t.caption = QStringLiteral("Purchase Invoice");
    t.enterPassesIn = {QStringLiteral("Grid")};
    t.topMark = ScreenTraits::TopMark::EveryKey;
    t.markAfterHandledKeys = true;
    t.ctrlClears = false;
    t.partySearchCombos = {QStringLiteral("CboSeller"), QStringLiteral("CboBroker")};
    t.clearQuestion = QStringLiteral("Are U Sure To Clear This Invoice ?");
    t.clearTitle = msg::kConfirmation;
    t.clearIcon = QMessageBox::Warning;
    t.idField = QStringLiteral("TxtPurchaseID");
    t.documentSearch = DocumentKind::Purchase;
    return t;
}

const QString kRemoveQuestion = QStringLiteral("Are you sure to remove this purhcase?");

// The kind each party combo starts on after a clear, until the lists are loaded again.
const QString kSuppliers = QStringLiteral("Suppliers");
const QString kBrokers = QStringLiteral("Brokers");

} // namespace

FrmPurchaseInvoice::FrmPurchaseInvoice(const Context& ctx, QWidget* parent)
    : DocumentScreen(ctx, invoiceTraits(), parent) {
    buildUi();
    wireHandlers();
    guard([this] { SetScreenMode(1); });
}

FrmPurchaseInvoice::~FrmPurchaseInvoice() = default;

InvoiceStore FrmPurchaseInvoice::store() const {
    return InvoiceStore(context().db(), context().userNo());
}

// ---- Controls ---------------------------------------------------------------------------------

void FrmPurchaseInvoice::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* head = new QGridLayout();
    outer->addLayout(head);
    const auto place = [this](QGridLayout* layout, const QString& caption, QWidget* field, int row,
                              int column) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        layout->addWidget(label, row, column * 2);
        layout->addWidget(field, row, column * 2 + 1);
    };
    const auto number = [this](const char* name) {
        return new NumberEdit(QString::fromLatin1(name), this);
    };

    m_txtPurchaseId = new QLineEdit(this);
    m_txtPurchaseId->setObjectName(QStringLiteral("TxtPurchaseID"));
    m_dtpPurchaseDate = new DateEdit(QStringLiteral("DTPPurchaseDate"), this);
    m_cboContract = new LookupCombo(QStringLiteral("CboContract"), this);
    m_cboSellerType = new LookupCombo(QStringLiteral("CboSellerType"), this);
    m_cboSeller = new LookupCombo(QStringLiteral("CboSeller"), this);
    m_cboBrokerType = new LookupCombo(QStringLiteral("CboBrokerType"), this);
    m_cboBroker = new LookupCombo(QStringLiteral("CboBroker"), this);
    m_txtBrokerageRate = number("TxtBrokerageRate");
    m_chkPerBag = new QCheckBox(QStringLiteral("Is Per Bag"), this);
    m_chkPerBag->setObjectName(QStringLiteral("ChkIsBrokeragePerBag"));
    m_txtBrokerage = number("TxtBrokerage");
    m_txtBrokerage->setAllowNegative(true);

    place(head, QStringLiteral("Purchase ID"), m_txtPurchaseId, 0, 0);
    place(head, QStringLiteral("Purchase Date"), m_dtpPurchaseDate, 0, 1);
    place(head, QStringLiteral("Contract ID"), m_cboContract, 0, 2);
    place(head, QStringLiteral("Seller Type"), m_cboSellerType, 1, 0);
    place(head, QStringLiteral("Seller"), m_cboSeller, 1, 1);
    place(head, QStringLiteral("Broker Type"), m_cboBrokerType, 2, 0);
    place(head, QStringLiteral("Broker"), m_cboBroker, 2, 1);
    place(head, QStringLiteral("Brokerage Rate"), m_txtBrokerageRate, 3, 0);
    head->addWidget(m_chkPerBag, 3, 2);
    place(head, QStringLiteral("Brokerage"), m_txtBrokerage, 3, 2);

    m_grid = new LineGrid(QStringLiteral("Grid"), this);
    m_grid->setDeleteRemovesLine(true);
    const QStringList& caps = invoiceColumnCaptions();
    const auto& f = invoiceLineFields();
    const auto shown = [&](int c, int width) {
        return BoundColumn<InvoiceLine>{GridColumn::readOnly(caps[c], width), f[size_t(c)]};
    };
    const auto figure = [&](int c, int width) {
        return BoundColumn<InvoiceLine>{
            GridColumn::readOnly(caps[c], width).aligned(Qt::AlignRight | Qt::AlignVCenter),
            f[size_t(c)]};
    };
    const auto hidden = [&](int c) {
        BoundColumn<InvoiceLine> b = shown(c, 60);
        b.column.hidden = true;
        return b;
    };
    m_grid->setColumns<InvoiceLine>({
        shown(InvSN, 40),
        figure(InvArrivalId, 60),
        shown(InvArrivalDate, 80),
        shown(InvVehicleNo, 90),
        shown(InvCommodity, 110),
        shown(InvBagType, 90),
        figure(InvBags, 60),
        figure(InvNetWeight, 80),
        {GridColumn::number(caps[InvRate], 70, 4, 0, 99999999), f[InvRate]},
        {GridColumn::number(caps[InvBagRate], 70, 4, 0, 99999999), f[InvBagRate]},
        {GridColumn::lookupOf(caps[InvUnit], {}, 100), f[InvUnit]},
        figure(InvValue, 90),
        hidden(InvWeightInKgs),
        hidden(InvCommodityId),
        hidden(InvBagWeight),
        hidden(InvSavingBags),
        hidden(InvSWeight),
    });
    m_grid->lines()->setAllowAdding(false);
    outer->addWidget(m_grid->panel(), 1);

    // The unit list behind the grid's "Unit" column.
    m_cboRateUnit = new LookupCombo(QStringLiteral("CboRateUnit"), this);
    m_cboRateUnit->hide();

    auto* foot = new QGridLayout();
    outer->addLayout(foot);
    m_frame1 = new QGroupBox(this);
    m_frame1->setObjectName(QStringLiteral("Frame1"));
    auto* charges = new QGridLayout(m_frame1);
    charges->addWidget(new QLabel(QStringLiteral("Per Bag"), m_frame1), 0, 1);
    charges->addWidget(new QLabel(QStringLiteral("Total"), m_frame1), 0, 2);
    int row = 1;
    for (auto [fields, caption, perBag, total] :
         {std::tuple{&m_freight, "Freight", "TxtFreightPerBag", "TxtFreight"},
          std::tuple{&m_unloading, "Unloading", "TxtUnloadingPerBag", "TxtUnloading"},
          std::tuple{&m_expense, "Expense", "TxtExpensePerBag", "TxtExpense"}}) {
        fields->perBag = new NumberEdit(QString::fromLatin1(perBag), m_frame1);
        fields->total = new NumberEdit(QString::fromLatin1(total), m_frame1);
        charges->addWidget(new QLabel(QString::fromLatin1(caption), m_frame1), row, 0);
        charges->addWidget(fields->perBag, row, 1);
        charges->addWidget(fields->total, row, 2);
        ++row;
    }
    foot->addWidget(m_frame1, 0, 0, 4, 2);

    m_txtGrossValue = number("TxtGrossValue");
    m_txtComm = number("TxtComm");
    m_txtCommValue = number("TxtCommValue");
    m_txtWHTaxRatio = number("TxtWHTaxRatio");
    m_txtWHTaxValue = number("TxtWHTaxValue");
    m_txtSpecialDiscount = number("TxtSpecialDiscount");
    m_txtNetAmount = number("TxtNetAmount");
    m_txtPreviousCredit = number("TxtPreviousCredit");
    m_txtTotalPayable = number("TxtTotalPayable");
    m_txtPaidAmount = number("TxtPaidAmount");
    m_chkHidePrevBal = new QCheckBox(QStringLiteral("Hide Prev.Balance in Print"), this);
    m_chkHidePrevBal->setObjectName(QStringLiteral("ChkHidePrevBal"));
    for (NumberEdit* computed : {m_txtGrossValue, m_txtCommValue, m_txtWHTaxValue, m_txtNetAmount,
                                 m_txtTotalPayable, m_txtPreviousCredit}) {
        computed->setAllowNegative(true);
        computed->setReadOnly(true);
    }
    place(foot, QStringLiteral("Gross Total"), m_txtGrossValue, 0, 1);
    place(foot, QStringLiteral("Commission /Mound"), m_txtComm, 1, 1);
    foot->addWidget(m_txtCommValue, 1, 4);
    place(foot, QStringLiteral("WHTax %"), m_txtWHTaxRatio, 2, 1);
    foot->addWidget(m_txtWHTaxValue, 2, 4);
    place(foot, QStringLiteral("Special Discount"), m_txtSpecialDiscount, 3, 1);
    place(foot, QStringLiteral("Net Value"), m_txtNetAmount, 0, 3);
    place(foot, QStringLiteral("Previous Bal"), m_txtPreviousCredit, 1, 3);
    place(foot, QStringLiteral("Total Payable"), m_txtTotalPayable, 2, 3);
    place(foot, QStringLiteral("Paid Amount"), m_txtPaidAmount, 3, 3);
    foot->addWidget(m_chkHidePrevBal, 4, 6, 1, 2);

    outer->addWidget(buttonRow());

    const QList<QWidget*> order = {m_txtPurchaseId,
                                   m_dtpPurchaseDate,
                                   m_cboContract,
                                   m_cboSellerType,
                                   m_cboSeller,
                                   m_cboBrokerType,
                                   m_cboBroker,
                                   m_txtBrokerageRate,
                                   m_chkPerBag,
                                   m_txtBrokerage,
                                   m_grid,
                                   m_freight.perBag,
                                   m_freight.total,
                                   m_unloading.perBag,
                                   m_unloading.total,
                                   m_expense.perBag,
                                   m_expense.total,
                                   m_txtComm,
                                   m_txtWHTaxRatio,
                                   m_txtSpecialDiscount,
                                   m_txtPaidAmount,
                                   m_chkHidePrevBal};
    for (int i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    resize(1150, 640);
}

void FrmPurchaseInvoice::wireHandlers() {
    LineGridModel* model = m_grid->lines();
    model->setCellCheck(
        [this](int row, int column, const QString& text) { return checkCell(row, column, text); });
    model->setRecompute([this](int row, int column) { recompute(row, column); });
    connect(m_grid, &LineGrid::lineRemovedByUser, this,
            [this] { guard([this] { refreshFigures(); }); });

    const auto whenClerk = [this](auto handler) {
        return [this, handler]() {
            if (m_quiet == 0)
                guard([this, handler] { (this->*handler)(); });
        };
    };
    connect(m_cboContract, &LookupCombo::entryChosen, this,
            whenClerk(&FrmPurchaseInvoice::LoadFromContract));
    connect(m_cboSeller, &LookupCombo::entryChosen, this,
            whenClerk(&FrmPurchaseInvoice::LoadFromSeller));
    connect(m_cboContract, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (m_quiet == 0 && text.isEmpty())
            guard([this] { contractEmptied(); });
    });
    connect(m_cboBroker, &QComboBox::editTextChanged, this,
            [this] { guard([this] { RefreshBrokerFields(); }); });
    connect(m_cboSellerType, &LookupCombo::entryChosen, this, [this] {
        guard([this] { fillPartiesOfType(context().db(), m_cboSellerType, m_cboSeller); });
    });
    connect(m_cboBrokerType, &LookupCombo::entryChosen, this, [this] {
        guard([this] { fillPartiesOfType(context().db(), m_cboBrokerType, m_cboBroker); });
    });

    // Whatever the clerk changes below the grid works through to every figure shown.
    for (NumberEdit* edit : {m_txtBrokerageRate, m_txtComm, m_txtWHTaxRatio, m_txtSpecialDiscount})
        connect(edit, &QLineEdit::textEdited, this,
                [this] { guard([this] { refreshFigures(); }); });
    connect(m_chkPerBag, &QCheckBox::clicked, this,
            [this] { guard([this] { refreshFigures(); }); });
    for (ChargeFields* fields : {&m_freight, &m_unloading, &m_expense}) {
        connect(fields->total, &QLineEdit::textEdited, this,
                [this, fields] { guard([this, fields] { chargeTyped(*fields, true); }); });
        connect(fields->perBag, &QLineEdit::textEdited, this,
                [this, fields] { guard([this, fields] { chargeTyped(*fields, false); }); });
    }
}

// ---- Lists, modes, clearing -------------------------------------------------------------------

void FrmPurchaseInvoice::LoadPurchaseLists() {
    QuietScope quiet(m_quiet);
    const Conn& conn = context().db();
    m_cboBrokerType->setItems(partyTypeList());
    m_cboSellerType->setItems(partyTypeList());
    m_cboBrokerType->selectKey(partyTypeList().front().key);
    m_cboSellerType->selectKey(partyTypeList().front().key);
    const LookupList parties = loadParties(conn, PartyType::All);
    m_cboBroker->setItems(parties);
    m_cboSeller->setItems(parties);
    m_units = loadUnits(conn);
    m_unitWeights = unitWeights(conn);
    m_cboRateUnit->setItems(m_units);
    m_grid->lines()->setLookup(InvUnit, m_units);
    m_cboContract->setItems(store().contracts());
}

qint64 FrmPurchaseInvoice::nextDocumentId() {
    return store().nextPurchaseId();
}

void FrmPurchaseInvoice::modeEntered(int mode) {
    if (mode == 1) {
        LoadPurchaseLists();
        NextDocumentId();
        m_dtpPurchaseDate->setDate(QDate::currentDate());
        m_txtPurchaseId->setEnabled(true);
        setFieldColour(m_txtPurchaseId, kEditableColour);
        RefreshBrokerFields();
    } else if (mode == 3) {
        m_cboContract->setEnabled(false);
        m_txtPurchaseId->setEnabled(false);
        for (QWidget* w :
             std::initializer_list<QWidget*>{m_cboSellerType, m_cboBrokerType, m_cboBroker,
                                             m_cboSeller, m_txtBrokerageRate, m_chkPerBag})
            w->setEnabled(true);
    }
}

void FrmPurchaseInvoice::afterClearWalk() {
    QuietScope quiet(m_quiet);
    for (LookupCombo* combo : findChildren<LookupCombo*>())
        combo->setEnabled(true);
    m_grid->lines()->clearLines();
    m_cboSellerType->setText(kSuppliers);
    m_cboBrokerType->setText(kBrokers);
    for (ChargeFields* fields : {&m_freight, &m_unloading, &m_expense}) {
        fields->pair = ChargePair();
        showCharge(*fields);
    }
    m_arrivalRowsLoaded = false;
    refreshFigures();
}

void FrmPurchaseInvoice::RefreshBrokerFields() {
    const bool broker = !m_cboBroker->text().isEmpty();
    m_txtBrokerageRate->setEnabled(broker);
    m_chkPerBag->setEnabled(broker);
    m_txtBrokerage->setReadOnly(!broker);
    setFieldColour(m_txtBrokerageRate, broker ? kEditableColour : kLockedColour);
}

bool FrmPurchaseInvoice::screenKey(QKeyEvent* event, const QString& activeName) {
    if (event->key() == Qt::Key_F9 && event->modifiers() == Qt::NoModifier &&
        activeName == QLatin1String("Grid")) {
        m_txtSpecialDiscount->setFocus(Qt::OtherFocusReason);
        return true;
    }
    return false;
}

// ---- Lines from a contract or a seller ----------------------------------------------------------

void FrmPurchaseInvoice::enableOfferFields(bool enabled) {
    for (QWidget* w :
         std::initializer_list<QWidget*>{m_cboSeller, m_cboBroker, m_txtBrokerageRate, m_chkPerBag,
                                         m_cboBrokerType, m_cboSellerType})
        w->setEnabled(enabled);
}

void FrmPurchaseInvoice::showPreviousBalance() {
    const QString seller = m_cboSeller->currentKey();
    if (isOpened() || seller.isEmpty())
        return;
    const double balance = previousBalance(store().currentDebit(seller, QDate::currentDate()));
    m_txtPreviousCredit->setValue(previousCreditShown(balance));
}

void FrmPurchaseInvoice::setLines(std::vector<InvoiceLine> lines) {
    int serial = 0;
    for (InvoiceLine& l : lines)
        l.serialNo = ++serial;
    m_grid->setLines(std::move(lines));
    refreshFigures();
}

void FrmPurchaseInvoice::LoadFromContract() {
    const qint64 id = qint64(leadingNumber(m_cboContract->text()));
    if (id == 0)
        return;
    m_arrivalRowsLoaded = false;
    const auto offer = store().linesOfContract(id);
    if (!offer) {
        enableOfferFields(true);
        object(noContractFound());
        return;
    }
    {
        QuietScope quiet(m_quiet);
        const InvoiceContract& c = offer->contract;
        placeParty(m_cboBrokerType, m_cboBroker, c.brokerId, c.brokerName);
        if (c.brokerId.isEmpty())
            m_cboBroker->setText(QString());
        m_txtBrokerageRate->setValue(c.brokerageRate);
        m_chkPerBag->setChecked(c.isBrokeragePerBag);
        placeParty(m_cboSellerType, m_cboSeller, c.sellerId, c.sellerName);
    }
    RefreshBrokerFields();
    showPreviousBalance();
    setLines(offer->lines);
    enableOfferFields(false);
    m_grid->setFocus(Qt::OtherFocusReason);
    m_grid->setCurrentIndex(m_grid->lines()->index(0, InvRate));
    m_arrivalRowsLoaded = true;
    markChanged();
}

void FrmPurchaseInvoice::LoadFromSeller() {
    if (isOpened() || m_cboSeller->text().isEmpty())
        return;
    showPreviousBalance();
    // A contract's vehicles stand; only the balance was renewed.
    if (m_arrivalRowsLoaded)
        return;
    const QString seller = m_cboSeller->currentKey();
    std::vector<InvoiceLine> lines = store().linesOfSeller(seller);
    if (lines.empty()) {
        m_grid->lines()->clearLines();
        refreshFigures();
        {
            QuietScope quiet(m_quiet);
            m_cboSeller->setText(QString());
        }
        object(noArrivalForSeller(seller));
        return;
    }
    setLines(std::move(lines));
    m_grid->setFocus(Qt::OtherFocusReason);
    m_grid->setCurrentIndex(m_grid->lines()->index(0, InvRate));
    markChanged();
}

void FrmPurchaseInvoice::contractEmptied() {
    m_grid->lines()->clearLines();
    enableOfferFields(true);
    m_arrivalRowsLoaded = false;
    refreshFigures();
}

// ---- Arithmetic -------------------------------------------------------------------------------

std::optional<Objection> FrmPurchaseInvoice::checkCell(int, int column, const QString& text) const {
    if (column == InvUnit && indexOfName(m_units, text) < 0)
        return m_grid->lines()->standardRefusal(column);
    return std::nullopt;
}

void FrmPurchaseInvoice::recompute(int row, int column) {
    const auto change = [&](InvoiceLine& l) {
        if (column == InvUnit) {
            const QString key = findKey(m_units, l.unit);
            l.rateUnitId = key.toLongLong();
            applyUnitRule(l, m_unitWeights.value(key, 0.0));
        } else {
            applyCellRule(l, column);
        }
    };
    m_grid->lines()->updateLine<InvoiceLine>(row, change);
    refreshFigures();
}

void FrmPurchaseInvoice::chargeTyped(ChargeFields& fields, bool totalSide) {
    const InvoiceFooters footers = invoiceFooters(m_grid->lines<InvoiceLine>());
    const double bags = footers.bags.toDouble();
    if (totalSide) {
        fields.pair.total = Figure::fromText(fields.total->text());
        const int row = m_grid->currentIndex().row();
        const auto& lines = m_grid->lines<InvoiceLine>();
        const double lineBags =
            row >= 0 && row < int(lines.size()) ? double(lines[size_t(row)].bags) : 0.0;
        chargeTotalTyped(fields.pair, fields.charge, bags, lineBags);
    } else {
        fields.pair.perBag = Figure::fromText(fields.perBag->text());
        chargePerBagTyped(fields.pair, bags);
    }
    // The side typed into keeps the clerk's text; only its partner is written.
    QuietScope quiet(m_quiet);
    NumberEdit* partner = totalSide ? fields.perBag : fields.total;
    const Figure value = totalSide ? fields.pair.perBag : fields.pair.total;
    partner->setText(value.toText());
    partner->setEnabled(!(totalSide ? fields.pair.perBagLocked : fields.pair.totalLocked));
    refreshFigures();
}

void FrmPurchaseInvoice::showCharge(const ChargeFields& fields) {
    fields.perBag->setText(fields.pair.perBag.toText());
    fields.total->setText(fields.pair.total.toText());
    fields.perBag->setEnabled(!fields.pair.perBagLocked);
    fields.total->setEnabled(!fields.pair.totalLocked);
}

InvoiceDocument FrmPurchaseInvoice::documentOnScreen() const {
    InvoiceDocument d = enteredOnScreen();
    const InvoiceFigures figures = computeInvoice(d);
    d.commValue = figures.totals.commValue;
    d.whTaxValue = figures.totals.whTaxValue;
    return d;
}

InvoiceDocument FrmPurchaseInvoice::enteredOnScreen() const {
    InvoiceDocument d;
    d.purchaseId = int(leadingNumber(m_txtPurchaseId->text()));
    d.purchaseDate = m_dtpPurchaseDate->date();
    d.contractId = qint64(leadingNumber(m_cboContract->text()));
    d.sellerId = m_cboSeller->currentKey();
    d.sellerName = m_cboSeller->text();
    d.brokerId = m_cboBroker->text().isEmpty() ? QString() : m_cboBroker->currentKey();
    d.brokerName = m_cboBroker->text();
    d.brokerageRate = Figure::fromText(m_txtBrokerageRate->text());
    d.isBrokeragePerBag = m_chkPerBag->isChecked();
    d.freight = m_freight.pair;
    d.unloading = m_unloading.pair;
    d.expense = m_expense.pair;
    d.commPerMound = Figure::fromText(m_txtComm->text());
    d.whTaxRatio = Figure::fromText(m_txtWHTaxRatio->text());
    d.specialDiscount = Figure::fromText(m_txtSpecialDiscount->text());
    d.previousCredit = m_txtPreviousCredit->value();
    d.paidAmount = Figure::fromText(m_txtPaidAmount->text());
    d.lines = m_grid->lines<InvoiceLine>();
    return d;
}

void FrmPurchaseInvoice::refreshFigures() {
    const InvoiceFigures f = computeInvoice(enteredOnScreen());
    LineGridModel* model = m_grid->lines();
    const bool any = model->lineCount() > 0;
    const auto footer = [&](int column, Currency sum) {
        model->setFooterText(column, any ? sum.toString() : QString());
    };
    footer(InvValue, f.footers.value);
    footer(InvBags, f.footers.bags);
    footer(InvNetWeight, f.footers.netWeight);
    QuietScope quiet(m_quiet);
    m_txtGrossValue->setValue(f.grossValue);
    m_txtBrokerage->setValue(f.brokerage);
    m_txtCommValue->setValue(f.totals.commValue);
    m_txtWHTaxValue->setValue(f.totals.whTaxValue);
    m_txtNetAmount->setValue(f.totals.netAmount);
    m_txtTotalPayable->setValue(f.totals.totalPayable);
}

// ---- Open, save, remove, print ----------------------------------------------------------------

bool FrmPurchaseInvoice::loadDocument(qint64 purchaseId) {
    const auto doc = store().load(int(purchaseId));
    if (!doc)
        return false;
    ClearScreen();
    {
        QuietScope quiet(m_quiet);
        m_txtPurchaseId->setText(QString::number(doc->purchaseId));
        m_dtpPurchaseDate->setDate(doc->purchaseDate);
        m_cboContract->setText(doc->contractId ? QString::number(doc->contractId) : QString());
        placeParty(m_cboSellerType, m_cboSeller, doc->sellerId, doc->sellerName);
        if (doc->brokerId.isEmpty())
            m_cboBroker->setText(QString());
        else
            placeParty(m_cboBrokerType, m_cboBroker, doc->brokerId, doc->brokerName);
        m_txtBrokerageRate->setText(double(doc->brokerageRate) == 0 ? QString()
                                                                    : doc->brokerageRate.toText());
        // Restored as saved, so the brokerage is worked out the way it was.
        m_chkPerBag->setChecked(doc->isBrokeragePerBag);
        m_freight.pair = doc->freight;
        m_unloading.pair = doc->unloading;
        m_expense.pair = doc->expense;
        for (ChargeFields* fields : {&m_freight, &m_unloading, &m_expense})
            showCharge(*fields);
        m_txtComm->setText(doc->commPerMound.toText());
        m_txtWHTaxRatio->setText(doc->whTaxRatio.toText());
        m_txtPaidAmount->setText(doc->paidAmount.toText());
        m_txtSpecialDiscount->setText(doc->specialDiscount.toText());
        m_txtPreviousCredit->setValue(doc->previousCredit);
    }
    setLines(doc->lines);
    m_dtpPurchaseDate->setFocus(Qt::OtherFocusReason);
    if (!m_cboBroker->text().isEmpty())
        RefreshBrokerFields();
    return true;
}

void FrmPurchaseInvoice::saveDocument() {
    InvoiceStore keys = store();
    PurchaseSaveInput in;
    in.sellerKey = m_cboSeller->text().isEmpty() ? QString() : m_cboSeller->currentKey();
    in.purchaseIdText = m_txtPurchaseId->text();
    in.isOpened = isOpened();
    in.lines = m_grid->lines<InvoiceLine>();
    if (const auto objection = ValidatePurchase(in, keys)) {
        object(*objection);
        return;
    }
    const InvoiceDocument doc = documentOnScreen();
    keys.save(doc, !isOpened());
    documentSaved(doc.purchaseId);
    m_cboContract->setFocus(Qt::OtherFocusReason);
}

void FrmPurchaseInvoice::printDocument() {
    const InvoiceDocument shown = enteredOnScreen();
    const auto saved = store().printData(int(leadingNumber(m_txtPurchaseId->text())));
    showReport(this,
               CrpPurchase(saved ? &*saved : nullptr, printFigures(shown, computeInvoice(shown)),
                           m_chkHidePrevBal->isChecked(), context().hostSettings()));
}

void FrmPurchaseInvoice::removeDocument() {
    if (!msg::askYesNo(this, kRemoveQuestion, msg::kAlert, QMessageBox::Question))
        return;
    store().remove(int(documentId()));
    clearDocument();
    m_dtpPurchaseDate->setFocus(Qt::OtherFocusReason);
}

} // namespace gm
