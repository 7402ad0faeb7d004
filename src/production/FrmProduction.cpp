#include "production/FrmProduction.h"

#include "entry/Fields.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace gm {

namespace {

ScreenTraits productionTraits() {
    using S = ButtonState;
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmProduction");
    t.caption = QStringLiteral("Daily Production");
    t.buttons = {Button::Save, Button::Remove, Button::Clear, Button::Close};
    // Columns: Save, Print, Clear, Open, Remove, Close. Clear is touched by mode 1 only.
    t.modes = ModeTable{{
        {S::Off, S::Keep, S::On, S::Keep, S::Off, S::Keep},
        {S::On, S::Keep, S::Keep, S::Keep, S::Off, S::Keep},
        {S::Off, S::Keep, S::Keep, S::Keep, S::On, S::Keep},
    }};
    t.enterTabsOnButtons = false;
    t.enterOnButtonMarksMode2 = true;
    t.mark = ScreenTraits::Mark::EveryTime;
    t.markAfterHandledKeys = false;
    t.ctrlOpens = false;
    t.focusAfterClear = {QStringLiteral("DtpProductionDate"), QStringLiteral("CboProcesses")};
    return t;
}

qint64 keyOf(const LookupList& list, const QString& name) {
    return findKey(list, name).toLongLong();
}

bool within(const QWidget* outer, const QWidget* w) {
    return w && (w == outer || outer->isAncestorOf(w));
}

} // namespace

FrmProduction::FrmProduction(const Context& ctx, QWidget* parent)
    : DocumentScreen(ctx, productionTraits(), parent), m_store(ctx.db()) {
    buildUi();
    wireHandlers();
    guard([this] { SetScreenMode(1); });
    m_dtpProductionDate->setFocus(Qt::OtherFocusReason);
}

FrmProduction::~FrmProduction() {
    // The controls go before the window does; their focus leaving is no clerk's doing.
    disconnect(m_focusWatch);
}

void FrmProduction::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* head = new QGridLayout();
    outer->addLayout(head);

    const auto label = [this](const char* name, const QString& text) {
        auto* l = new QLabel(text, this);
        l->setObjectName(QLatin1String(name));
        return l;
    };
    m_dtpProductionDate = new DateEdit(QStringLiteral("DtpProductionDate"), this);
    m_cboProcesses = new LookupCombo(QStringLiteral("CboProcesses"), this);
    m_txtFactoryRunningTime = new NumberEdit(QStringLiteral("TxtFactoryRunningTime"), this);
    m_txtFactoryRunningTime->setDecimals(2);
    m_chkAddBardana = new QCheckBox(QStringLiteral("Add Bardana Stock"), this);
    m_chkAddBardana->setObjectName(QStringLiteral("ChkAddBardana"));
    head->addWidget(label("Label1", QStringLiteral("Date:")), 0, 0);
    head->addWidget(m_dtpProductionDate, 0, 1);
    head->addWidget(label("Label9", QStringLiteral("Processes:")), 0, 2);
    head->addWidget(m_cboProcesses, 0, 3);
    head->addWidget(label("Label7", QStringLiteral("Factory Running Time")), 0, 4);
    head->addWidget(m_txtFactoryRunningTime, 0, 5);
    head->addWidget(m_chkAddBardana, 0, 6);

    const QStringList& caps = productionColumnCaptions();
    const auto& f = productionLineFields();
    const auto makeGrid = [&](const QString& name, const char* commodity, const char* bagType,
                              const char* bagClass) {
        auto* grid = new LineGrid(name, this);
        grid->setDeleteRemovesLine(true);
        const auto named = [](GridColumn c, const char* editor) {
            return c.named(QLatin1String(editor));
        };
        grid->setColumns<ProductionLine>({
            {named(GridColumn::lookupOf(caps[PrdCommodity], {}, 150), commodity), f[PrdCommodity]},
            {named(GridColumn::lookupOf(caps[PrdBagType], {}, 110), bagType), f[PrdBagType]},
            {named(GridColumn::lookupOf(caps[PrdBagClass], {}, 80), bagClass), f[PrdBagClass]},
            {GridColumn::number(caps[PrdNoOfBags], 80, 4), f[PrdNoOfBags]},
            {GridColumn::number(caps[PrdBagWeight], 80, 6), f[PrdBagWeight]},
            {GridColumn::number(caps[PrdWeight], 90, 4), f[PrdWeight]},
            {GridColumn::number(caps[PrdCost], 90, 10), f[PrdCost]},
        });
        return grid;
    };
    // Every cell takes the cursor in turn, as the grids always have; a product's cost is worked
    // out at save, whatever its cell holds.
    m_grdConsumption = makeGrid(QStringLiteral("GrdConsumption"), "CboCommoditiesCons",
                                "CboBagTypeCons", "CboBagClassCons");
    m_grdProduction = makeGrid(QStringLiteral("GrdProduction"), "CboCommoditiesProd",
                               "CboBagTypeProd", "CboBagsClassProd");

    m_gridCurrentStock = new LineGrid(QStringLiteral("GridCurrentStock"), this);
    m_gridCurrentStock->setColumns({GridColumn::readOnly(QStringLiteral("Description"), 90),
                                    GridColumn::readOnly(QStringLiteral("BagsClass"), 70),
                                    GridColumn::readOnly(QStringLiteral("NetBags"), 70),
                                    GridColumn::readOnly(QStringLiteral("NetWeight"), 90)
                                        .aligned(Qt::AlignRight | Qt::AlignVCenter),
                                    GridColumn::readOnly(QStringLiteral("Unit Name"), 70)});
    m_gridCurrentStock->lines()->setAllowAdding(false);
    m_gridCurrentStock->setFocusPolicy(Qt::NoFocus);

    auto* consumption = new QGroupBox(QStringLiteral("Consumption"), this);
    auto* consumptionRow = new QHBoxLayout(consumption);
    consumptionRow->addWidget(m_grdConsumption->panel(), 3);
    consumptionRow->addWidget(m_gridCurrentStock->panel(), 2);
    outer->addWidget(consumption, 1);
    auto* production = new QGroupBox(QStringLiteral("Production"), this);
    auto* productionRow = new QHBoxLayout(production);
    productionRow->addWidget(m_grdProduction->panel());
    outer->addWidget(production, 1);

    auto* foot = new QGridLayout();
    outer->addLayout(foot);
    m_txtProductionExpense = new NumberEdit(QStringLiteral("TxtProductionExpense"), this);
    m_txtProductionExpense->setDecimals(4);
    m_txtOtherExpense = new NumberEdit(QStringLiteral("TxtOtherExpense"), this);
    m_txtOtherExpense->setDecimals(4);
    // The balance is the screen's own working; nobody types it.
    m_txtResult = new QLineEdit(this);
    m_txtResult->setObjectName(QStringLiteral("TxtResult"));
    m_txtRatio = new QLineEdit(this);
    m_txtRatio->setObjectName(QStringLiteral("TxtRatio"));
    for (QLineEdit* out : {m_txtResult, m_txtRatio}) {
        out->setReadOnly(true);
        out->setFocusPolicy(Qt::ClickFocus);
        out->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    m_lblStatus = new QLabel(kGain, this);
    m_lblStatus->setObjectName(QStringLiteral("lblstatus"));
    m_txtRemarks = new QLineEdit(this);
    m_txtRemarks->setObjectName(QStringLiteral("TxtRemarks"));
    foot->addWidget(label("Label11", QStringLiteral("Production Expense")), 0, 0);
    foot->addWidget(m_txtProductionExpense, 0, 1);
    foot->addWidget(label("Label12", QStringLiteral("Others Expense")), 0, 2);
    foot->addWidget(m_txtOtherExpense, 0, 3);
    foot->addWidget(m_lblStatus, 0, 4);
    foot->addWidget(m_txtResult, 0, 5);
    foot->addWidget(m_txtRatio, 0, 6);
    foot->addWidget(label("Label2", QStringLiteral("Remarks")), 1, 0);
    foot->addWidget(m_txtRemarks, 1, 1, 1, 6);

    outer->addWidget(buttonRow());

    // The key first; leaving the process goes on to what it consumed.
    setTabOrder(m_dtpProductionDate, m_cboProcesses);
    setTabOrder(m_cboProcesses, m_grdConsumption);
    setTabOrder(m_grdConsumption, m_grdProduction);
    setTabOrder(m_grdProduction, m_txtProductionExpense);
    setTabOrder(m_txtProductionExpense, m_txtOtherExpense);
    setTabOrder(m_txtOtherExpense, m_txtRemarks);
    setTabOrder(m_txtRemarks, m_txtFactoryRunningTime);
    setTabOrder(m_txtFactoryRunningTime, m_chkAddBardana);
    resize(980, 640);
}

void FrmProduction::wireHandlers() {
    LineGridModel* consumed = m_grdConsumption->lines();
    consumed->setCellCheck(
        [this](int, int column, const QString& text) { return checkConsumption(column, text); });
    consumed->setRecompute(
        [this](int row, int column) { recompute(m_grdConsumption, row, column); });
    m_grdProduction->lines()->setRecompute(
        [this](int row, int column) { recompute(m_grdProduction, row, column); });
    for (LineGrid* grid : {m_grdConsumption, m_grdProduction})
        connect(grid, &LineGrid::lineRemovedByUser, this,
                [this, grid] { guard([this, grid] { lineRemoved(grid); }); });

    // The process is looked at when the clerk leaves it for another control of this screen;
    // its list or another window taking the focus for a while is no leaving.
    m_focusWatch =
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
            if (within(m_cboProcesses, old) && now && now->window() == this &&
                !within(m_cboProcesses, now))
                guard([this] { processLeft(); });
        });
    // A process picked from its list goes on to the consumption, as leaving it would.
    connect(m_cboProcesses, &QComboBox::activated, this, [this] {
        QTimer::singleShot(0, this, [this] {
            if (within(m_cboProcesses, QApplication::focusWidget()) &&
                m_grdConsumption->isEnabled())
                m_grdConsumption->setFocus(Qt::TabFocusReason);
        });
    });
}

// ---- Modes, clearing, keys ------------------------------------------------------------------

void FrmProduction::modeEntered(int mode) {
    if (mode != 1)
        return;
    ClearScreen();
    m_chkAddBardana->setChecked(false);
    m_dtpProductionDate->setDate(QDate::currentDate());
    m_openedDate = QDate();
    setFieldColour(m_cboProcesses, kEditableColour);
}

void FrmProduction::afterClearWalk() {
    // The status word stays, while the figures beside it go.
    for (LineGrid* grid : {m_grdProduction, m_grdConsumption, m_gridCurrentStock})
        grid->lines()->clearLines();
    m_dtpProductionDate->setEnabled(true);
    LoadProductionCombos();
}

void FrmProduction::clearDocument() {
    SetScreenMode(1);
    focusDate();
}

void FrmProduction::focusDate() {
    if (m_dtpProductionDate->isEnabled())
        m_dtpProductionDate->setFocus(Qt::OtherFocusReason);
    else
        m_cboProcesses->setFocus(Qt::OtherFocusReason);
}

void FrmProduction::LoadProductionCombos() {
    const Conn& conn = context().db();
    m_consumedCommodities = loadCommodities(conn, false, false, true);
    m_producedCommodities = loadCommodities(conn, true, true, false);
    m_bagClasses = loadBagClasses(conn);
    m_bagTypes = loadBagTypes(conn);
    for (LineGrid* grid : {m_grdConsumption, m_grdProduction}) {
        grid->lines()->setLookup(PrdCommodity, grid == m_grdConsumption ? m_consumedCommodities
                                                                        : m_producedCommodities);
        grid->lines()->setLookup(PrdBagType, m_bagTypes);
        grid->lines()->setLookup(PrdBagClass, m_bagClasses);
    }
    m_cboProcesses->setItems(m_store.processes());
}

bool FrmProduction::screenKey(QKeyEvent* event, const QString& activeName) {
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier))
        return false;
    const bool f5 = event->key() == Qt::Key_F5;
    if (!f5 && event->key() != Qt::Key_F6)
        return false;
    QWidget* target = nullptr;
    if (activeName == m_grdConsumption->objectName())
        target = f5 ? static_cast<QWidget*>(m_cboProcesses) : m_grdProduction;
    else if (activeName == m_grdProduction->objectName())
        target = f5 ? static_cast<QWidget*>(m_grdConsumption) : m_txtProductionExpense;
    if (!target)
        return false;
    target->setFocus(f5 ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    return true;
}

// ---- The process and its day ----------------------------------------------------------------

void FrmProduction::processLeft() {
    m_cboProcesses->settleTypedText();
    const QString key = m_cboProcesses->currentKey();
    // No process, nothing to look up.
    if (key.isEmpty())
        return;
    const qint64 processId = key.toLongLong();
    m_consumedCommodities = m_store.consumedCommodities(processId);
    m_producedCommodities = m_store.producedCommodities(processId);
    m_grdConsumption->lines()->setLookup(PrdCommodity, m_consumedCommodities);
    m_grdProduction->lines()->setLookup(PrdCommodity, m_producedCommodities);

    if (m_store.dayExists(m_dtpProductionDate->date(), processId)) {
        setFieldColour(m_cboProcesses, colourFromBgr(65535));
        openDocumentById(processId);
    } else {
        setFieldColour(m_cboProcesses, kEditableColour);
    }
}

bool FrmProduction::loadDocument(qint64 processId) {
    const QDate date = m_dtpProductionDate->date();
    const auto day = m_store.load(date, processId);
    if (!day) {
        SetScreenMode(1);
        return false;
    }
    m_openedDate = date;
    m_txtFactoryRunningTime->setText(day->factoryTime.toText());
    m_txtOtherExpense->setText(day->otherExpense.toText());
    m_txtProductionExpense->setText(day->productionExpense.toText());
    m_txtRemarks->setText(day->remarks);
    m_chkAddBardana->setChecked(day->addBardana);
    m_grdConsumption->setLines(day->consumption);
    m_grdProduction->setLines(day->production);
    return true;
}

void FrmProduction::documentOpened() {
    refreshFooters(m_grdConsumption);
    refreshFooters(m_grdProduction);
    if (m_grdConsumption->lines()->lineCount() > 0 || m_grdProduction->lines()->lineCount() > 0)
        ShowBalance();
}

// ---- Lines ----------------------------------------------------------------------------------

ProductionLists FrmProduction::lists() const {
    ProductionLists l;
    l.consumedCommodities = listNames(m_consumedCommodities);
    l.producedCommodities = listNames(m_producedCommodities);
    l.bagTypes = listNames(m_bagTypes);
    l.bagClasses = listNames(m_bagClasses);
    return l;
}

std::optional<Objection> FrmProduction::checkConsumption(int column, const QString& text) {
    if (auto refusal = checkConsumptionName(column, text, lists()))
        return refusal;
    if (column == PrdCommodity && !m_store.hasStock(keyOf(m_consumedCommodities, text)))
        return Objection::info(kNoStock);
    return std::nullopt;
}

void FrmProduction::recompute(LineGrid* grid, int row, int column) {
    LineGridModel* model = grid->lines();
    if (row < 0 || row >= model->lineCount())
        return;
    const bool consumption = grid == m_grdConsumption;
    bool balance = false;
    switch (column) {
    case PrdCommodity: {
        const QString name = model->cellText(row, PrdCommodity);
        const qint64 id = keyOf(consumption ? m_consumedCommodities : m_producedCommodities, name);
        if (consumption && !name.isEmpty()) {
            // On a saved day the line's weight has already left the stock; its cost stays the
            // one it was saved with.
            RefreshCurrentStock(id, isOpened() ? model->cellValue(row, PrdWeight) : 0.0);
            if (!isOpened()) {
                const double cost = m_store.currentCost(id);
                model->updateLine<ProductionLine>(row, [&](ProductionLine& l) { l.cost = cost; });
            }
        }
        // A commodity without a bag of its own leaves the bag as it is.
        if (const auto bag = m_store.defaultBag(id))
            model->updateLine<ProductionLine>(row, [&](ProductionLine& l) {
                l.bagsType = bag->bagsType;
                l.bagWeight = bag->bagCapacity;
            });
        break;
    }
    case PrdNoOfBags:
    case PrdBagWeight:
        model->updateLine<ProductionLine>(row,
                                          [&](ProductionLine& l) { balance = recalcAfterBags(l); });
        break;
    case PrdWeight:
        model->updateLine<ProductionLine>(
            row, [&](ProductionLine& l) { balance = recalcAfterWeight(l); });
        break;
    default:
        break;
    }
    refreshFooters(grid);
    if (balance)
        ShowBalance();
}

void FrmProduction::refreshFooters(LineGrid* grid) {
    LineGridModel* model = grid->lines();
    for (int column : {int(PrdNoOfBags), int(PrdWeight), int(PrdCost)})
        model->setFooterText(column, model->sumColumn(column).toString());
}

void FrmProduction::lineRemoved(LineGrid* grid) {
    // The figures follow the lines that remain, so the products are costed with the ratio
    // the screen shows.
    refreshFooters(grid);
    ShowBalance();
}

void FrmProduction::ShowBalance() {
    const Balance b = gm::ShowBalance(m_grdConsumption->lines()->sumColumn(PrdWeight),
                                      m_grdProduction->lines()->sumColumn(PrdWeight));
    m_lblStatus->setText(b.status());
    m_txtResult->setText(b.resultText());
    m_txtRatio->setText(b.ratioText());
}

void FrmProduction::RefreshCurrentStock(qint64 commodityId, double addBack) {
    m_gridCurrentStock->lines()->clearLines();
    const auto stock = m_store.currentStock(commodityId, addBack);
    if (!stock)
        return;
    // Only the weight and its unit are known of a commodity's stock.
    m_gridCurrentStock->lines()->setLines(std::vector<QStringList>{
        {QString(), QString(), QString(), formatNumber(stock->netWeight, 4), stock->unitName}});
}

// ---- Save and removal -----------------------------------------------------------------------

ProductionDay FrmProduction::dayOnScreen() const {
    ProductionDay day;
    day.productionDate = m_dtpProductionDate->date();
    day.processId = m_cboProcesses->currentKey().toLongLong();
    day.factoryTime = m_txtFactoryRunningTime->value();
    day.remarks = m_txtRemarks->text();
    day.productionExpense = m_txtProductionExpense->value();
    day.otherExpense = m_txtOtherExpense->value();
    day.addBardana = m_chkAddBardana->isChecked();
    day.ratio = leadingNumber(m_txtRatio->text());
    day.consumption = m_grdConsumption->lines<ProductionLine>();
    day.production = m_grdProduction->lines<ProductionLine>();
    const auto keys = [this](std::vector<ProductionLine>& lines, const LookupList& commodities) {
        for (ProductionLine& l : lines) {
            l.commodityId = keyOf(commodities, l.commodity);
            l.bagsTypeId = keyOf(m_bagTypes, l.bagsType);
            l.bagsClassId = keyOf(m_bagClasses, l.bagsClass);
        }
    };
    keys(day.consumption, m_consumedCommodities);
    keys(day.production, m_producedCommodities);
    return day;
}

void FrmProduction::saveDocument() {
    const ProductionDay day = dayOnScreen();
    if (const auto objection = ValidateProduction(day, lists())) {
        object(*objection);
        return;
    }
    m_store.save(day);
    SetScreenMode(1);
    focusDate();
}

void FrmProduction::removeDocument() {
    if (!msg::askYesNo(this, kRemoveProductionQuestion, msg::kAlert))
        return;
    m_store.remove(m_openedDate, documentId());
    SetScreenMode(1);
    if (m_dtpProductionDate->isEnabled())
        m_dtpProductionDate->setFocus(Qt::OtherFocusReason);
    else
        m_txtFactoryRunningTime->setFocus(Qt::OtherFocusReason);
}

} // namespace gm
