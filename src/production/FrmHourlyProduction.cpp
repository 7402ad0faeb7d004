#include "production/FrmHourlyProduction.h"

#include "services/Lookups.h"
#include "services/Numeric.h"

#include <QDateTimeEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace gm {

namespace {

ScreenTraits hourlyTraits() {
    using S = ButtonState;
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmHourlyProduction");
    t.caption = QStringLiteral("Hourly Production");
    t.buttons = {Button::Save, Button::Clear, Button::Open, Button::Remove, Button::Close};
    // Columns: Save, Print, Clear, Open, Remove, Close. An entry begun can only be saved or
    // closed; Ctrl+L still clears it.
    t.modes = ModeTable{{
        {S::Off, S::Keep, S::On, S::Keep, S::Off, S::Keep},
        {S::On, S::Keep, S::Off, S::Keep, S::Off, S::Keep},
        {S::Off, S::Keep, S::On, S::Keep, S::On, S::Keep},
    }};
    t.enterTabsOnButtons = false;
    t.enterOnButtonMarksMode2 = true;
    t.mark = ScreenTraits::Mark::EveryTime;
    t.markAfterHandledKeys = false;
    t.ctrlOpens = false;
    t.documentSearch = DocumentKind::HourlyProduction;
    t.idField = QStringLiteral("TxtProcessId");
    t.focusAfterClear = {QStringLiteral("DtpProcessTime")};
    return t;
}

// The present time to the minute, as the field shows it.
QDateTime thisMinute() {
    const QDateTime now = QDateTime::currentDateTime();
    return QDateTime(now.date(), QTime(now.time().hour(), now.time().minute()));
}

} // namespace

FrmHourlyProduction::FrmHourlyProduction(const Context& ctx, QWidget* parent)
    : DocumentScreen(ctx, hourlyTraits(), parent), m_store(ctx.db()) {
    buildUi();
    guard([this] {
        LoadHourlyCombos();
        SetScreenMode(1);
    });
    m_dtpProcessTime->setFocus(Qt::OtherFocusReason);
}

FrmHourlyProduction::~FrmHourlyProduction() = default;

void FrmHourlyProduction::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* head = new QGridLayout();
    outer->addLayout(head);
    auto* label1 = new QLabel(QStringLiteral("Process ID"), this);
    label1->setObjectName(QStringLiteral("Label1"));
    auto* label2 = new QLabel(QStringLiteral("Process Time"), this);
    label2->setObjectName(QStringLiteral("Label2"));
    // The serial is drawn, never typed.
    m_txtProcessId = new QLineEdit(this);
    m_txtProcessId->setObjectName(QStringLiteral("TxtProcessId"));
    m_txtProcessId->setReadOnly(true);
    m_txtProcessId->setFocusPolicy(Qt::ClickFocus);
    m_dtpProcessTime = new QDateTimeEdit(this);
    m_dtpProcessTime->setObjectName(QStringLiteral("DtpProcessTime"));
    m_dtpProcessTime->setDisplayFormat(QStringLiteral("dd/MM/yyyy hh:mm AP"));
    m_dtpProcessTime->setCalendarPopup(true);
    head->addWidget(label1, 0, 0);
    head->addWidget(m_txtProcessId, 0, 1);
    head->addWidget(label2, 0, 2);
    head->addWidget(m_dtpProcessTime, 0, 3);
    head->setColumnStretch(4, 1);

    m_grdProduction = new LineGrid(kHourlyGrid, this);
    m_grdProduction->setDeleteRemovesLine(true);
    const QStringList& caps = hourlyColumnCaptions();
    const auto& f = hourlyLineFields();
    // Every cell takes the cursor in turn, as the grid always has; the net weight follows the
    // bags and the bag weight, and is saved as their product whatever its cell holds.
    m_grdProduction->setColumns<HourlyLine>({
        {GridColumn::lookupOf(caps[HrCommodity], {}, 160).named(QStringLiteral("CboCommodity")),
         f[HrCommodity]},
        {GridColumn::lookupOf(caps[HrBagType], {}, 110).named(QStringLiteral("CboBagType")),
         f[HrBagType]},
        {GridColumn::lookupOf(caps[HrBagClass], {}, 80).named(QStringLiteral("CboBagClass")),
         f[HrBagClass]},
        {GridColumn::number(caps[HrNoOfBags], 80, 4), f[HrNoOfBags]},
        {GridColumn::number(caps[HrBagWeight], 80, 4), f[HrBagWeight]},
        {GridColumn::number(caps[HrNetWeight], 100, 4), f[HrNetWeight]},
    });
    outer->addWidget(m_grdProduction->panel(), 1);
    outer->addWidget(buttonRow());

    LineGridModel* model = m_grdProduction->lines();
    model->setCellCheck([this](int, int column, const QString& text) {
        return checkHourlyCell(column, text, lists());
    });
    model->setRecompute([this](int row, int column) { recompute(row, column); });
    connect(m_grdProduction, &LineGrid::lineRemovedByUser, this,
            [this] { guard([this] { refreshFooter(); }); });

    setTabOrder(m_dtpProcessTime, m_grdProduction);
    resize(720, 460);
}

void FrmHourlyProduction::LoadHourlyCombos() {
    const Conn& conn = context().db();
    m_commodities = loadCommodities(conn, false, true, false);
    m_bagClasses = loadBagClasses(conn);
    m_bagTypes = loadBagTypes(conn);
    LineGridModel* model = m_grdProduction->lines();
    model->setLookup(HrCommodity, m_commodities);
    model->setLookup(HrBagType, m_bagTypes);
    model->setLookup(HrBagClass, m_bagClasses);
}

HourlyLists FrmHourlyProduction::lists() const {
    return HourlyLists{listNames(m_commodities), listNames(m_bagTypes), listNames(m_bagClasses)};
}

// ---- Modes and clearing ---------------------------------------------------------------------

void FrmHourlyProduction::modeEntered(int mode) {
    if (mode != 1)
        return;
    ClearScreen();
    m_grdProduction->lines()->clearLines();
    NextDocumentId();
    m_dtpProcessTime->setDateTime(thisMinute());
}

void FrmHourlyProduction::afterClearWalk() {
    m_dtpProcessTime->setEnabled(true);
}

qint64 FrmHourlyProduction::nextDocumentId() {
    return m_store.nextSerialNo();
}

void FrmHourlyProduction::clearDocument() {
    if (m_dtpProcessTime->isEnabled())
        m_dtpProcessTime->setFocus(Qt::OtherFocusReason);
    SetScreenMode(1);
}

// ---- Lines ----------------------------------------------------------------------------------

void FrmHourlyProduction::recompute(int row, int column) {
    if (column == HrNoOfBags || column == HrBagWeight)
        m_grdProduction->lines()->updateLine<HourlyLine>(
            row, [](HourlyLine& l) { l.netWeight = lineWeight(l); });
    refreshFooter();
}

void FrmHourlyProduction::refreshFooter() {
    LineGridModel* model = m_grdProduction->lines();
    model->setFooterText(HrNetWeight, model->sumColumn(HrNetWeight).toString());
}

// ---- Open and save --------------------------------------------------------------------------

bool FrmHourlyProduction::loadDocument(qint64 serialNo) {
    ClearScreen();
    m_grdProduction->lines()->clearLines();
    const auto entry = m_store.load(qint32(serialNo));
    // A record without lines cannot be shown; the screen is left cleared, with a serial for
    // whatever is entered next.
    if (!entry) {
        NextDocumentId();
        return false;
    }
    m_txtProcessId->setText(QString::number(entry->serialNo));
    m_dtpProcessTime->setDateTime(entry->processTime);
    m_grdProduction->setLines(entry->lines);
    refreshFooter();
    m_grdProduction->setFocus(Qt::OtherFocusReason);
    return true;
}

void FrmHourlyProduction::saveDocument() {
    std::vector<HourlyLine> lines = m_grdProduction->lines<HourlyLine>();
    if (const auto objection = ValidateHourly(lines, lists())) {
        object(*objection);
        return;
    }
    HourlyEntry entry;
    entry.serialNo =
        isOpened() ? qint32(documentId()) : qint32(leadingNumber(m_txtProcessId->text()));
    entry.processTime = m_dtpProcessTime->dateTime();
    entry.lines = linesToKeep(lines);
    for (HourlyLine& l : entry.lines) {
        l.commodityId = findKey(m_commodities, l.commodity).toLongLong();
        l.bagsTypeId = findKey(m_bagTypes, l.bagsType).toLongLong();
        l.bagsClassId = findKey(m_bagClasses, l.bagsClass).toLongLong();
    }
    m_store.save(entry, !isOpened());
    SetScreenMode(1);
    if (m_dtpProcessTime->isEnabled())
        m_dtpProcessTime->setFocus(Qt::OtherFocusReason);
}

} // namespace gm
