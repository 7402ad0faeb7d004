#include "arrivals/FrmArrivalsRate.h"

#include "arrivals/ArrivalReport.h"
#include "arrivals/ArrivalValidation.h"
#include "entry/Fields.h"
#include "reports/Report.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QDate>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace gm {

namespace {

ScreenTraits arrivalTraits() {
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmArrivalsRate");
    t.caption = QStringLiteral("Arrivals");
    t.enterPassesIn = {QStringLiteral("Grid")};
    t.enterTabsOnButtons = false;
    t.enterOnButtonMarksMode2 = true;
    t.partySearchCombos = {QStringLiteral("CboSeller")};
    t.contractSearchCombo = QStringLiteral("CboContract");
    t.focusAfterClear = {QStringLiteral("DtpArrivalDate"), QStringLiteral("CboSeller")};
    t.keepOnClear = {QStringLiteral("TxtPermitNo")};
    t.documentSearch = DocumentKind::Arrival;
    t.idField = QStringLiteral("TxtArrivalID");
    return t;
}

} // namespace

FrmArrivalsRate::FrmArrivalsRate(const Context& ctx, QWidget* parent)
    : DocumentScreen(ctx, arrivalTraits(), parent), m_store(ctx.db()) {
    buildUi();
    wireHandlers();
    guard([this] { SetScreenMode(1); });
}

FrmArrivalsRate::~FrmArrivalsRate() = default;

LineGridModel* FrmArrivalsRate::lines() const {
    return m_grid->lines();
}

void FrmArrivalsRate::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* head = new QGridLayout();
    outer->addLayout(head);

    const auto label = [this](const QString& text) { return new QLabel(text, this); };
    m_txtArrivalId = new QLineEdit(this);
    m_txtArrivalId->setObjectName(QStringLiteral("TxtArrivalID"));
    m_dtpArrivalDate = new DateEdit(QStringLiteral("DtpArrivalDate"), this);
    m_cboSellerType = new LookupCombo(QStringLiteral("CboSellerType"), this);
    m_cboSeller = new LookupCombo(QStringLiteral("CboSeller"), this);
    m_cboCommodity = new LookupCombo(QStringLiteral("CboCommodity"), this);
    m_cboContract = new LookupCombo(QStringLiteral("CboContract"), this);
    m_cboCommodity->setRefusal(QStringLiteral("Please provide a valid Commodity."));
    m_cboContract->setRefusal(kInvalidContract);

    head->addWidget(label(QStringLiteral("Arrival Id")), 0, 0);
    head->addWidget(m_txtArrivalId, 0, 1);
    head->addWidget(label(QStringLiteral("Arrival Date")), 0, 2);
    head->addWidget(m_dtpArrivalDate, 0, 3);
    head->addWidget(label(QStringLiteral("Seller Type")), 1, 0);
    head->addWidget(m_cboSellerType, 1, 1);
    head->addWidget(label(QStringLiteral("Seller")), 1, 2);
    head->addWidget(m_cboSeller, 1, 3);
    head->addWidget(label(QStringLiteral("Commodity")), 2, 0);
    head->addWidget(m_cboCommodity, 2, 1);
    head->addWidget(label(QStringLiteral("Contract")), 2, 2);
    head->addWidget(m_cboContract, 2, 3);

    m_frame1 = new QGroupBox(this);
    m_frame1->setObjectName(QStringLiteral("Frame1"));
    auto* frame = new QGridLayout(m_frame1);
    m_cboPRCenter = new LookupCombo(QStringLiteral("CboPRCenter"), m_frame1);
    m_cboPermitNo = new LookupCombo(QStringLiteral("CboPermitNo"), m_frame1);
    m_cboPRCenter->setRefusal(QStringLiteral("Please provide a PRCenter."));
    m_cboPermitNo->setRefusal(QStringLiteral("Please provide a Permit No."));
    m_txtPermitNo = new QLineEdit(m_frame1);
    m_txtPermitNo->setObjectName(QStringLiteral("TxtPermitNo"));
    m_txtPermitNo->hide();
    m_txtRemainingBags = new QLineEdit(m_frame1);
    m_txtRemainingBags->setObjectName(QStringLiteral("TxtRemainingBags"));
    m_txtRemainingBags->setReadOnly(true);
    m_txtRemainingWeight = new QLineEdit(m_frame1);
    m_txtRemainingWeight->setObjectName(QStringLiteral("TxtRemainingWeight"));
    m_txtRemainingWeight->setReadOnly(true);
    frame->addWidget(new QLabel(QStringLiteral("PR Center"), m_frame1), 0, 0);
    frame->addWidget(m_cboPRCenter, 0, 1);
    frame->addWidget(new QLabel(QStringLiteral("Permit No"), m_frame1), 0, 2);
    frame->addWidget(m_cboPermitNo, 0, 3);
    frame->addWidget(new QLabel(QStringLiteral("Remaining Bags"), m_frame1), 1, 0);
    frame->addWidget(m_txtRemainingBags, 1, 1);
    frame->addWidget(new QLabel(QStringLiteral("Remaining Weight"), m_frame1), 1, 2);
    frame->addWidget(m_txtRemainingWeight, 1, 3);
    head->addWidget(m_frame1, 3, 0, 1, 4);

    m_grid = new LineGrid(QStringLiteral("Grid"), this);
    m_grid->setDeleteRemovesLine(true);
    const QStringList& caps = arrivalColumnCaptions();
    const auto number = [](const QString& caption, int width, int decimals) {
        return GridColumn::number(caption, width, decimals);
    };
    const auto shown = [](const QString& caption, int width) {
        return GridColumn::readOnly(caption, width).aligned(Qt::AlignRight | Qt::AlignVCenter);
    };
    const auto& f = arrivalLineFields();
    m_grid->setColumns<ArrivalLine>({
        {GridColumn::text(caps[ColVehicleNo], 100).named(QStringLiteral("TxtVehicleNo")),
         f[ColVehicleNo]},
        {GridColumn::lookupOf(caps[ColClass], {}, 80).named(QStringLiteral("CboBagClass")),
         f[ColClass]},
        {GridColumn::lookupOf(caps[ColType], {}, 100).named(QStringLiteral("CboBagType")),
         f[ColType]},
        {number(caps[ColQty], 60, 0).named(QStringLiteral("TxtQty")), f[ColQty]},
        {number(caps[ColBags], 70, 2).named(QStringLiteral("TxtBags")), f[ColBags]},
        {number(caps[ColGross], 80, 2).named(QStringLiteral("TxtGross")), f[ColGross]},
        {number(caps[ColPerBag], 60, 2), f[ColPerBag]},
        {number(caps[ColOther], 60, 2), f[ColOther]},
        {shown(caps[ColNetWeight], 90), f[ColNetWeight]},
        {GridColumn::text(caps[ColDriverName], 120), f[ColDriverName]},
        {GridColumn::text(caps[ColBiltyNo], 90), f[ColBiltyNo]},
        {shown(caps[ColRateUnit], 70), f[ColRateUnit]},
        {shown(caps[ColBagRate], 70), f[ColBagRate]},
        {GridColumn::readOnly(caps[ColRateUnitId], 90), f[ColRateUnitId]},
        {shown(caps[ColWeighInKgs], 70), f[ColWeighInKgs]},
    });
    std::vector<GridGroup> groups;
    for (const ColumnGroup& g : arrivalColumnGroups())
        groups.push_back(GridGroup{g.first, g.last, g.heading});
    m_grid->setGroups(std::move(groups));
    outer->addWidget(m_grid->panel(), 1);

    // The unit list behind the rate unit column; it is never typed in.
    m_cboRateUnit = new LookupCombo(QStringLiteral("CboRateUnit"), this);
    m_cboRateUnit->hide();

    outer->addWidget(buttonRow());

    setTabOrder(m_dtpArrivalDate, m_txtArrivalId);
    setTabOrder(m_txtArrivalId, m_cboSellerType);
    setTabOrder(m_cboSellerType, m_cboSeller);
    setTabOrder(m_cboSeller, m_cboCommodity);
    setTabOrder(m_cboCommodity, m_cboContract);
    setTabOrder(m_cboContract, m_cboPRCenter);
    setTabOrder(m_cboPRCenter, m_cboPermitNo);
    setTabOrder(m_cboPermitNo, m_grid);
    resize(1100, 560);
}

void FrmArrivalsRate::wireHandlers() {
    LineGridModel* model = lines();
    model->setCellCheck(
        [this](int row, int column, const QString& text) { return checkCell(row, column, text); });
    model->setRecompute([this](int row, int column) { recompute(row, column); });

    const auto whenClerk = [this](auto handler) {
        return [this, handler]() {
            if (m_quiet == 0)
                guard([this, handler] { (this->*handler)(); });
        };
    };
    connect(m_cboContract, &LookupCombo::entryChosen, this,
            whenClerk(&FrmArrivalsRate::contractChosen));
    connect(m_cboCommodity, &LookupCombo::entryChosen, this,
            whenClerk(&FrmArrivalsRate::commodityChosen));
    connect(m_cboPRCenter, &LookupCombo::entryChosen, this,
            whenClerk(&FrmArrivalsRate::centreChosen));
    connect(m_cboPermitNo, &LookupCombo::entryChosen, this,
            whenClerk(&FrmArrivalsRate::permitChosen));
    connect(m_cboSellerType, &LookupCombo::entryChosen, this,
            whenClerk(&FrmArrivalsRate::sellerTypeChosen));
    connect(m_cboContract, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (m_quiet == 0 && text.isEmpty())
            guard([this] { contractEmptied(); });
    });
    connect(m_cboPRCenter, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (m_quiet == 0 && text.isEmpty())
            guard([this] { centreEmptied(); });
    });
}

// ---- Modes, clearing, keys ------------------------------------------------------------------

void FrmArrivalsRate::modeEntered(int mode) {
    if (mode == 1) {
        ClearScreen();
        NextDocumentId();
        m_dtpArrivalDate->setDate(QDate::currentDate());
        m_txtArrivalId->setEnabled(true);
        setFieldColour(m_txtArrivalId, kEditableColour);
        LoadArrivalLookups();
    } else if (mode == 3) {
        m_txtArrivalId->setEnabled(false);
    }
}

void FrmArrivalsRate::afterClearWalk() {
    QuietScope quiet(m_quiet);
    lines()->clearLines();
    lines()->clearFooters();
    m_txtRemainingBags->clear();
    m_txtRemainingWeight->clear();
    // A new arrival may come from anywhere: contract, centre or a free party.
    for (QWidget* w : std::initializer_list<QWidget*>{m_dtpArrivalDate, m_cboSeller,
                                                      m_cboSellerType, m_cboCommodity,
                                                      m_cboContract, m_cboPRCenter, m_cboPermitNo})
        w->setEnabled(true);
    m_commodityUnit.reset();
}

qint64 FrmArrivalsRate::nextDocumentId() {
    return m_store.nextArrivalId();
}

void FrmArrivalsRate::LoadArrivalLookups() {
    QuietScope quiet(m_quiet);
    const Conn& conn = context().db();
    m_units = loadUnits(conn);
    m_unitWeights = unitWeights(conn);
    m_cboRateUnit->setItems(m_units);
    // Refilled on every new arrival, so a contract used a moment ago has left the list.
    m_cboContract->setItems(m_store.contracts());
    m_cboSellerType->setItems(partyTypeList());
    m_cboSellerType->setCurrentIndex(0);
    m_cboSeller->setItems(loadParties(conn, PartyType::All));
    m_cboCommodity->setItems(loadCommodities(conn, true, false, true));
    m_cboPRCenter->setItems(m_store.prCentres());
    m_cboPermitNo->setItems(m_store.permits());
    m_bagTypes = loadBagTypes(conn);
    m_bagClasses = loadBagClasses(conn);
    lines()->setLookup(ColType, m_bagTypes);
    lines()->setLookup(ColClass, m_bagClasses);
}

// ---- Header handlers ------------------------------------------------------------------------

void FrmArrivalsRate::placeSeller(const QString& displayName) {
    if (m_cboSeller->findName(displayName) < 0) {
        // The party may be of a kind the chosen seller type hides: list every party then.
        m_cboSellerType->setCurrentIndex(0);
        m_cboSeller->setItems(loadParties(context().db(), PartyType::All));
    }
    m_cboSeller->setText(displayName);
}

void FrmArrivalsRate::enableSellerFields(bool enabled) {
    m_cboSeller->setEnabled(enabled);
    m_cboSellerType->setEnabled(enabled);
}

void FrmArrivalsRate::contractChosen() {
    const QString text = m_cboContract->text();
    if (text.isEmpty())
        return;
    const auto defaults = m_store.contractDefaults(qint64(leadingNumber(text)));
    if (!defaults) {
        msg::inform(this, kInvalidContract);
        m_cboContract->setFocus();
        return;
    }
    QuietScope quiet(m_quiet);
    // A contract and a PR centre exclude each other.
    m_cboPRCenter->setText(QString());
    m_cboPermitNo->setText(QString());
    m_txtRemainingBags->clear();
    m_txtRemainingWeight->clear();
    m_cboPRCenter->setEnabled(false);
    m_cboPermitNo->setEnabled(false);
    placeSeller(defaults->sellerName);
    enableSellerFields(false);
    m_cboCommodity->setText(defaults->commodityName);
    m_cboCommodity->setEnabled(false);
    commodityChosenQuietly();
}

void FrmArrivalsRate::contractEmptied() {
    m_cboCommodity->setEnabled(true);
    enableSellerFields(true);
    m_cboPRCenter->setEnabled(true);
    m_cboPermitNo->setEnabled(true);
    // The clerk is still typing here; the commodity is asked for once the field is left.
    m_contractCleared = m_cboContract->hasFocus();
}

bool FrmArrivalsRate::focusNextPrevChild(bool next) {
    // A contract emptied by the clerk leaves a commodity to choose: the field left forward
    // goes there rather than on down the form.
    if (next && m_contractCleared && m_cboContract->hasFocus() && m_cboContract->text().isEmpty() &&
        m_cboCommodity->isEnabled()) {
        m_contractCleared = false;
        m_cboCommodity->setFocus(Qt::TabFocusReason);
        return true;
    }
    m_contractCleared = false;
    return DocumentScreen::focusNextPrevChild(next);
}

void FrmArrivalsRate::commodityChosenQuietly() {
    const qint64 id = m_cboCommodity->currentKey().toLongLong();
    m_commodityUnit.reset();
    if (id == 0)
        return;
    const QString unitName = GetRateUnitName(context().db(), id);
    if (!unitName.isEmpty())
        m_commodityUnit = unitNamed(unitName);
}

void FrmArrivalsRate::commodityChosen() {
    commodityChosenQuietly();
    const qint64 id = m_cboCommodity->currentKey().toLongLong();
    const auto defaults = m_store.commodityDefaults(id);
    if (!defaults)
        return;
    const int row = currentLineForDefaults();
    lines()->updateLine<ArrivalLine>(row, [&](ArrivalLine& l) {
        l.bagsType = defaults->bagType;
        l.bagWeight = defaults->bagCapacity;
    });
    recompute(row, ColBags);
}

int FrmArrivalsRate::currentLineForDefaults() {
    LineGridModel* model = lines();
    if (model->lineCount() == 0)
        return model->addLine();
    const int row = m_grid->currentIndex().row();
    return row >= 0 && row < model->lineCount() ? row : 0;
}

void FrmArrivalsRate::centreChosen() {
    if (m_cboPRCenter->text().isEmpty())
        return;
    QuietScope quiet(m_quiet);
    m_cboContract->setText(QString());
    m_cboContract->setEnabled(false);
    placeSeller(m_store.partyDisplayName(context().hostSettings().DFCAccountNo));
    enableSellerFields(false);
    RefreshRemaining();
}

void FrmArrivalsRate::centreEmptied() {
    m_txtRemainingBags->clear();
    m_txtRemainingWeight->clear();
    QuietScope quiet(m_quiet);
    if (m_cboContract->text().isEmpty()) {
        enableSellerFields(true);
        m_cboSeller->setText(QString());
    }
    m_cboContract->setEnabled(true);
}

void FrmArrivalsRate::RefreshRemaining() {
    const qint64 centre = m_cboPRCenter->currentKey().toLongLong();
    if (centre == 0)
        return;
    const RemainingQuota r = m_store.remaining(centre);
    m_txtRemainingBags->setText(formatNumber(r.bags));
    m_txtRemainingWeight->setText(formatNumber(r.weight, 2));
}

void FrmArrivalsRate::permitChosen() {
    if (m_cboPermitNo->text().isEmpty())
        return;
    const qint64 centre = m_cboPRCenter->currentKey().toLongLong();
    if (centre == 0) {
        msg::inform(this, QStringLiteral("Please provide a PRCenter."));
        m_cboPRCenter->setFocus();
        return;
    }
    const qint64 commodity = m_cboCommodity->currentKey().toLongLong();
    const auto rates = m_store.permitRates(centre, commodity);
    if (!rates)
        return;
    const int row = currentLineForDefaults();
    const QString key = QString::number(rates->rateUnitId);
    QString unitName;
    for (const LookupItem& u : m_units)
        if (u.key == key)
            unitName = u.name;
    m_cboRateUnit->setText(unitName);
    lines()->updateLine<ArrivalLine>(row, [&](ArrivalLine& l) {
        // Four decimals, as the rates are kept.
        l.rateUnit = roundHalfEven(rates->ratePerUnit, 4);
        l.bagsRate = roundHalfEven(rates->pricePerBag, 4);
        l.rateUnitName = unitName;
        if (const auto unit = unitNamed(unitName))
            l.weightInKgs = unit->weightInKgs;
    });
    recompute(row, ColQty);
}

void FrmArrivalsRate::sellerTypeChosen() {
    const auto type = partyTypeFromKey(m_cboSellerType->currentKey());
    if (!type)
        return;
    QuietScope quiet(m_quiet);
    m_cboSeller->setItems(loadParties(context().db(), *type));
}

// ---- Line editing ---------------------------------------------------------------------------

std::optional<RateUnitInfo> FrmArrivalsRate::unitNamed(const QString& name) const {
    if (name.isEmpty())
        return std::nullopt;
    const QString key = findKey(m_units, name);
    if (key == QLatin1String("0"))
        return std::nullopt;
    return RateUnitInfo{name, m_unitWeights.value(key, 0.0)};
}

ArrivalCellContext FrmArrivalsRate::cellContext() const {
    ArrivalCellContext c;
    c.hasCenter = !m_cboPRCenter->text().isEmpty();
    c.remainingBags = m_txtRemainingBags->text();
    c.remainingWeight = m_txtRemainingWeight->text();
    c.bagClasses = listNames(m_bagClasses);
    c.bagTypes = listNames(m_bagTypes);
    return c;
}

std::optional<Objection> FrmArrivalsRate::checkCell(int, int column, const QString& text) {
    const ArrivalCellContext c = cellContext();
    if (auto refusal = checkArrivalCell(column, text, c))
        return refusal;
    if (!exceedsQuota(column, text, c))
        return std::nullopt;
    msg::inform(this, kQuotaNotice);
    if (msg::askYesNo(this, kQuotaQuestion, msg::kAlert, QMessageBox::Information))
        return std::nullopt;
    return Objection::quiet(); // the clerk has answered; no further box
}

void FrmArrivalsRate::recompute(int row, int column) {
    if (row < 0 || row >= lines()->lineCount())
        return;
    const auto change = [&](ArrivalLine& l) {
        switch (column) {
        case ColQty:
        case ColBags:
            recalcAfterQtyOrBags(l, m_commodityUnit);
            break;
        case ColGross:
            recalcAfterGross(l);
            break;
        case ColPerBag:
        case ColOther:
            RecalcLineNet(l);
            break;
        case ColRateUnitId:
            applyRateUnit(l, unitNamed(l.rateUnitName));
            break;
        default:
            break;
        }
    };
    lines()->updateLine<ArrivalLine>(row, change);
    RefreshArrivalFooters();
}

void FrmArrivalsRate::RefreshArrivalFooters() {
    for (int column : kArrivalFooterColumns)
        lines()->setFooterText(column, lines()->sumColumn(column).toString());
}

// ---- Open -----------------------------------------------------------------------------------

int FrmArrivalsRate::arrivalIdOnScreen() const {
    return int(leadingNumber(m_txtArrivalId->text()));
}

bool FrmArrivalsRate::loadDocument(qint64 arrivalId) {
    const auto doc = m_store.load(int(arrivalId));
    if (!doc)
        return false;
    QuietScope quiet(m_quiet);
    m_txtArrivalId->setText(QString::number(doc->arrivalId));
    m_dtpArrivalDate->setDate(doc->arrivalDate);
    m_cboPRCenter->setText(doc->centerName);
    m_cboPermitNo->setText(doc->permitNo);
    const bool viaCentre = !doc->centerName.isEmpty();
    const bool viaContract = doc->contractId != 0;
    if (viaCentre)
        RefreshRemaining();
    placeSeller(doc->sellerName);
    m_cboCommodity->setText(doc->commodityName);
    commodityChosenQuietly();
    // The contract has left the list, since this arrival uses it: its number stands as text.
    m_cboContract->setText(viaContract ? QString::number(doc->contractId) : QString());
    enableSellerFields(!viaCentre && !viaContract);
    m_cboCommodity->setEnabled(!viaContract);
    m_cboContract->setEnabled(!viaCentre);
    m_cboPRCenter->setEnabled(!viaContract);
    m_cboPermitNo->setEnabled(!viaContract);

    std::vector<ArrivalLine> loaded = doc->lines;
    for (ArrivalLine& l : loaded) {
        // Gross and net are the screen's own working, as when they were typed.
        l.gross = l.noOfBags * l.bagWeight;
        l.netWeight = Figure();
        if (!l.rateUnitId)
            l.weightInKgs = Figure();
    }
    m_grid->setLines(std::move(loaded));
    for (int i = 0; i < lines()->lineCount(); ++i)
        recompute(i, ColQty);
    RefreshArrivalFooters();
    return true;
}

void FrmArrivalsRate::documentOpened() {
    const int purchase = m_store.isInvoiced(int(documentId()));
    if (purchase == 0)
        return;
    msg::show(this,
              QStringLiteral("This arrival is not editable because it has been used in "
                             "Purchase Invoice No.(") +
                  QString::number(purchase) + QLatin1Char(')'),
              msg::kAlert, QMessageBox::Warning, QMessageBox::Ok);
    if (QPushButton* remove = button(Button::Remove))
        remove->setEnabled(false);
}

// ---- Save, remove, print --------------------------------------------------------------------

ArrivalDocument FrmArrivalsRate::documentOnScreen() const {
    ArrivalDocument a;
    a.arrivalId = arrivalIdOnScreen();
    a.arrivalDate = m_dtpArrivalDate->date();
    if (!m_cboPRCenter->text().isEmpty()) {
        a.centerId = m_cboPRCenter->currentKey().toLongLong();
        a.permitNo = m_cboPermitNo->text();
        a.sellerId = context().hostSettings().DFCAccountNo;
    } else {
        a.sellerId = m_cboSeller->currentKey();
    }
    a.commodityId = m_cboCommodity->currentKey().toLongLong();
    if (!m_cboContract->text().isEmpty())
        a.contractId = qint64(leadingNumber(m_cboContract->text()));
    a.lines = m_grid->lines<ArrivalLine>();
    for (ArrivalLine& l : a.lines) {
        l.bagsClassId = findKey(m_bagClasses, l.bagsClass).toLongLong();
        l.bagsTypeId = findKey(m_bagTypes, l.bagsType).toLongLong();
        l.rateUnitId = findKey(m_units, l.rateUnitName).toLongLong();
    }
    return a;
}

void FrmArrivalsRate::saveDocument() {
    const ArrivalDocument doc = documentOnScreen();
    ArrivalSaveInput in;
    in.sellerKey = doc.sellerId;
    in.commodityKey = m_cboCommodity->currentKey();
    in.arrivalIdText = m_txtArrivalId->text();
    in.isOpened = isOpened();
    in.lines = doc.lines;
    in.cells = cellContext();
    if (const auto objection = ValidateArrival(in, m_store)) {
        object(*objection);
        return;
    }
    m_store.save(doc, !isOpened());
    documentSaved(doc.arrivalId);
}

void FrmArrivalsRate::printDocument() {
    const auto doc = m_store.load(arrivalIdOnScreen());
    showReport(this, CrpArrival(doc ? &*doc : nullptr, context().hostSettings()));
}

void FrmArrivalsRate::removeDocument() {
    if (!msg::askYesNo(this, QStringLiteral("Are you sure to remove this arrival?"), msg::kAlert))
        return;
    m_store.remove(int(documentId()));
    clearDocument();
}

} // namespace gm
