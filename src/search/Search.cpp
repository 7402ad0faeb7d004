#include "search/Search.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "search/SearchQueries.h"
#include "search/SearchRows.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <vector>

namespace gm {

struct SearchDefinition {
    const char* objectName;
    const char* caption;
    const char* fromName; // null when the screen has no date range
    const char* toName;
    bool nameFilter;
    bool idFilter;
    bool periodFromHost;  // default dates from the host's period instead of the last year
    bool shiftEnterPicks; // Shift+Enter in the list picks as Enter does
    std::vector<SearchColumn> columns;
    int keyField;
    bool paged; // newest first, read a page at a time as the list is scrolled
    // The statement for these filters, with its values appended to `binds` in order.
    QString (*statement)(const Conn& conn, const SearchFilters& f, QVariantList& binds);
};

namespace {

using F = CellFormat;

const SearchDefinition kArrivals{
    .objectName = "SchArrivals",
    .caption = "Search Arrivals",
    .fromName = "DtpFromDate",
    .toName = "DtpToDate",
    .nameFilter = true,
    .idFilter = true,
    .periodFromHost = false,
    .shiftEnterPicks = false,
    .columns = {{"ArrivalID", 0, F::Number, 80},
                {"Arrival Date", 1, F::Date, 90},
                {"Party Name", 2, F::Text, 260},
                {"Commodity", 3, F::Text, 160}},
    .keyField = 0,
    .paged = true,
    .statement = arrivalsStatement,
};

const SearchDefinition kPurchase{
    .objectName = "SchPurchase",
    .caption = "Search Purchase",
    .fromName = "DtpFromDate",
    .toName = "DtpToDate",
    .nameFilter = true,
    .idFilter = true,
    .periodFromHost = false,
    .shiftEnterPicks = false,
    .columns = {{"ContractID", 0, F::Number, 80},
                {"Date", 1, F::Date, 90},
                {"Broker", 2, F::Text, 180},
                {"Seller", 3, F::Text, 180},
                {"Amount", 4, F::Fixed, 110}},
    .keyField = 0,
    .paged = true,
    .statement = purchasesStatement,
};

const SearchDefinition kContract{
    .objectName = "SchPurchaseContract",
    .caption = "Search Purchase Contract",
    .fromName = "DtpFromDate",
    .toName = "DtpToDate",
    .nameFilter = true,
    .idFilter = false,
    .periodFromHost = false,
    .shiftEnterPicks = false,
    .columns = {{"ContractID", 0, F::Number, 80},
                {"Date", 1, F::Date, 90},
                {"Broker", 2, F::Text, 180},
                {"Seller", 3, F::Text, 180},
                {"Quantity", 4, F::QuantityWithMode, 100}},
    .keyField = 0,
    .paged = true,
    .statement = contractsStatement,
};

const SearchDefinition kDfc{
    .objectName = "SchDFCPurchase",
    .caption = "Search DFC Purchase",
    .fromName = "DtpFrom",
    .toName = "Dtpto",
    .nameFilter = true,
    .idFilter = false,
    .periodFromHost = true,
    .shiftEnterPicks = false,
    .columns = {{"ContractID", 0, F::Number, 80},
                {"Date", 1, F::Date, 90},
                {"Commodity", 2, F::Text, 180},
                {"Total Weight", 3, F::Number, 110},
                {"Gross Amount", 4, F::Fixed, 120}},
    .keyField = 0,
    .paged = false,
    .statement = dfcPurchasesStatement,
};

// No filters: the list is read oldest first, a page at a time, and the commodity combo finds
// in it, reading further only as far as the row it finds.
const SearchDefinition kHourly{
    .objectName = "SchHProduction",
    .caption = "Search Hourly Production",
    .fromName = nullptr,
    .toName = nullptr,
    .nameFilter = false,
    .idFilter = false,
    .periodFromHost = false,
    .shiftEnterPicks = true,
    .columns = {{"ArrivalID", 0, F::Number, 80},
                {"Process Time", 1, F::DateHour, 150},
                {"Commodity", 2, F::Text, 220}},
    .keyField = 0,
    .paged = true,
    .statement = hourlyStatement,
};

void showError(QWidget* parent, const DbError& e) {
    ShowErrorBox(parent, e.description(), e.source());
}

bool isEnter(const QKeyEvent* key) {
    return key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
}

QTableView* makeGrid(QWidget* parent, SearchRowsModel* rows, const char* name) {
    auto* grid = new QTableView(parent);
    grid->setObjectName(QLatin1String(name));
    grid->setModel(rows);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setTabKeyNavigation(false);
    grid->verticalHeader()->setVisible(false);
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    grid->horizontalHeader()->setStretchLastSection(true);
    for (int c = 0; c < rows->columnCount(); ++c)
        grid->setColumnWidth(c, rows->columnWidth(c));
    return grid;
}

// A double click anywhere in a list picks: the row under the pointer, or else the current
// one. It is taken from the event rather than from the view's signal, which also needs the
// press before it to have landed on the same row.
bool isDoubleClick(QTableView* grid, QEvent* event) {
    if (event->type() != QEvent::MouseButtonDblClick)
        return false;
    const QModelIndex at = grid->indexAt(static_cast<QMouseEvent*>(event)->position().toPoint());
    if (at.isValid())
        grid->setCurrentIndex(at);
    return true;
}

} // namespace

// ---------------------------------------------------------------------------------------------

DocumentSearch::DocumentSearch(const Context& ctx, const SearchDefinition& def, QWidget* owner,
                               int pageRows)
    : QDialog(owner), m_ctx(ctx), m_def(def), m_pageRows(std::max(1, pageRows)) {
    setObjectName(QLatin1String(def.objectName));
    setWindowTitle(QLatin1String(def.caption));
    m_rows = new SearchRowsModel(def.columns, this);
    // A page read while scrolling fails inside the view's painting; the box waits until then.
    connect(
        m_rows, &SearchRowsModel::fetchFailed, this,
        [this](const QString& description, const QString& source) {
            ShowErrorBox(this, description, source);
        },
        Qt::QueuedConnection);
    buildUi();
}

DocumentSearch::~DocumentSearch() = default;

void DocumentSearch::buildUi() {
    auto* layout = new QVBoxLayout(this);
    auto* filters = new QGridLayout;
    layout->addLayout(filters);
    int col = 0;
    auto addField = [&](const QString& label, QWidget* field) {
        filters->addWidget(new QLabel(label, this), 0, col);
        filters->addWidget(field, 1, col);
        ++col;
    };
    if (m_def.nameFilter) {
        m_filter = new QLineEdit(this);
        m_filter->setObjectName(QStringLiteral("TxtFilter"));
        addField(QStringLiteral("Name:"), m_filter);
    }
    if (m_def.idFilter) {
        m_filterId = new QLineEdit(this);
        m_filterId->setObjectName(QStringLiteral("TxtFilterId"));
        addField(QStringLiteral("ID"), m_filterId);
    }
    if (m_def.fromName) {
        QDate from = QDate::currentDate().addDays(-365);
        QDate to = QDate::currentDate();
        if (m_def.periodFromHost) {
            // A host that tells no period leaves the last year, rather than an empty list.
            const HostSettingsValues host = m_ctx.hostSettings();
            if (host.PeriodStart.isValid())
                from = host.PeriodStart;
            if (host.PeriodEnd.isValid())
                to = host.PeriodEnd;
        }
        auto makeDate = [this](const char* name, const QDate& value) {
            auto* edit = new QDateEdit(this);
            edit->setObjectName(QLatin1String(name));
            edit->setDisplayFormat(QLatin1String(kDateFormat));
            edit->setCalendarPopup(true);
            edit->setMinimumDate(QDate(1900, 1, 1));
            edit->setDate(value);
            return edit;
        };
        m_from = makeDate(m_def.fromName, from);
        m_to = makeDate(m_def.toName, to);
        addField(QStringLiteral("From Date"), m_from);
        addField(QStringLiteral("To Date"), m_to);
    }
    m_extra = new QWidget(this);
    m_extra->setLayout(new QHBoxLayout);
    m_extra->layout()->setContentsMargins(0, 0, 0, 0);
    filters->addWidget(m_extra, 0, col, 2, 1);
    filters->setColumnStretch(col + 1, 1);

    m_grid = makeGrid(this, m_rows, "GrdSch");
    layout->addWidget(m_grid, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    m_select = new QPushButton(QStringLiteral("Select"), this);
    m_select->setObjectName(QStringLiteral("BtnSelect"));
    m_close = new QPushButton(QStringLiteral("Close"), this);
    m_close->setObjectName(QStringLiteral("BtnClose"));
    buttons->addWidget(m_select);
    buttons->addWidget(m_close);
    layout->addLayout(buttons);
    resize(720, 480);

    connect(m_select, &QPushButton::clicked, this, &DocumentSearch::Select);
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
    if (m_filter)
        connect(m_filter, &QLineEdit::textChanged, this, &DocumentSearch::RunSearch);
    if (m_filterId)
        connect(m_filterId, &QLineEdit::textChanged, this, &DocumentSearch::RunSearch);
    if (m_from) {
        connect(m_from, &QDateEdit::dateChanged, this, &DocumentSearch::RunSearch);
        connect(m_to, &QDateEdit::dateChanged, this, &DocumentSearch::RunSearch);
    }
    for (QWidget* w : findChildren<QWidget*>())
        w->installEventFilter(this);
}

QWidget* DocumentSearch::topRowExtra() {
    return m_extra;
}

void DocumentSearch::RunSearch() {
    SearchFilters f;
    if (m_from) {
        f.from = m_from->date();
        f.to = m_to->date();
    }
    if (m_filterId && !m_filterId->text().isEmpty()) {
        f.byId = true;
        f.id = typedId(m_filterId->text());
    }
    if (m_filter)
        f.name = m_filter->text();
    f.pageRows = m_pageRows;
    try {
        const Conn& conn = m_ctx.db();
        if (m_def.paged) {
            const auto statement = m_def.statement;
            const Conn* db = &conn;
            m_rows->loadPaged(
                conn,
                [db, statement, f](const QVariant& lastKey, int keys, QVariantList& binds) mutable {
                    f.before = lastKey;
                    f.pageRows = keys;
                    return statement(*db, f, binds);
                },
                m_def.keyField, f.pageRows);
        } else {
            QVariantList binds;
            const QString sql = m_def.statement(conn, f, binds);
            m_rows->load(conn, sql, binds);
        }
    } catch (const DbError& e) {
        m_rows->clear();
        showError(this, e);
    }
    moveToRow(0);
}

void DocumentSearch::fetchAllRows() {
    m_rows->fetchAll();
}

int DocumentSearch::rowCount() const {
    return m_rows->rowCount();
}

int DocumentSearch::currentRow() const {
    const QModelIndex current = m_grid->currentIndex();
    return current.isValid() ? current.row() : -1;
}

QString DocumentSearch::cellText(int row, int column) const {
    return m_rows->data(m_rows->index(row, column)).toString();
}

QVariant DocumentSearch::field(int row, int sqlColumn) const {
    return m_rows->field(row, sqlColumn);
}

void DocumentSearch::moveToRow(int row) {
    if (row < 0 || row >= m_rows->rowCount())
        return;
    const QModelIndex index = m_rows->index(row, 0);
    m_grid->setCurrentIndex(index);
    m_grid->scrollTo(index);
}

void DocumentSearch::Select() {
    if (m_rows->rowCount() == 0)
        return;
    const int row = currentRow() >= 0 ? currentRow() : 0;
    rowChosen(row);
    accept();
}

void DocumentSearch::rowChosen(int row) {
    m_selectedId = int(toInt(field(row, m_def.keyField)));
}

bool DocumentSearch::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_grid->viewport() && isDoubleClick(m_grid, event)) {
        Select();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        // Find which of the screen's controls the key went to (an inner part of a combo or a
        // date field counts as the control itself).
        QObject* o = watched;
        while (o && o->parent() != this && o->parent() != m_extra)
            o = o->parent();
        if (auto* control = qobject_cast<QWidget*>(o))
            if (handleKey(control, static_cast<QKeyEvent*>(event)))
                return true;
    }
    return QDialog::eventFilter(watched, event);
}

bool DocumentSearch::handleKey(QWidget* control, QKeyEvent* key) {
    const bool ctrl = key->modifiers().testFlag(Qt::ControlModifier);
    if (key->key() == Qt::Key_Escape || (ctrl && key->key() == Qt::Key_Q)) {
        if (m_close->isEnabled())
            m_close->click();
        return true;
    }
    if (!isEnter(key))
        return false;
    if (control == m_grid) {
        const bool shift = key->modifiers().testFlag(Qt::ShiftModifier);
        if (!shift || m_def.shiftEnterPicks)
            Select();
        return true;
    }
    if (control == m_filter) {
        Select();
        return true;
    }
    if (control->objectName().startsWith(QLatin1String("Btn")))
        return false; // the button presses itself
    focusNextChild();
    return true;
}

// ---------------------------------------------------------------------------------------------

SchArrivals::SchArrivals(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kArrivals, owner) {
    RunSearch();
}

SchPurchase::SchPurchase(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kPurchase, owner) {
    RunSearch();
}

void SchPurchase::rowChosen(int row) {
    DocumentSearch::rowChosen(row);
    m_selectedSellerId = int(toInt(field(row, 5)));
}

SchPurchaseContract::SchPurchaseContract(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kContract, owner) {
    RunSearch();
}

SchDFCPurchase::SchDFCPurchase(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kDfc, owner) {
    RunSearch();
}

SchHProduction::SchHProduction(const Context& ctx, QWidget* owner, int pageSerials)
    : DocumentSearch(ctx, kHourly, owner, pageSerials) {
    m_rows->setDropRepeats(true);
    auto* label = new QLabel(QStringLiteral("Commodity"), topRowExtra());
    m_commodity = new LookupCombo(QStringLiteral("CboCommodity"), topRowExtra());
    m_commodity->setMinimumWidth(220);
    topRowExtra()->layout()->addWidget(label);
    topRowExtra()->layout()->addWidget(m_commodity);
    setTabOrder(m_commodity, m_grid);
    m_commodity->installEventFilter(this);
    if (m_commodity->lineEdit())
        m_commodity->lineEdit()->installEventFilter(this);

    try {
        // Every commodity is offered, whatever its marks.
        m_commodity->setItems(loadCommodities(ctx.db(), true, true, true));
    } catch (const DbError& e) {
        showError(this, e);
    }
    RunSearch();
    connect(m_commodity, &QComboBox::editTextChanged, this, &SchHProduction::FindCommodity);
    m_commodity->setFocus();

    // A name that no record has, and every letter typed on the way to a name, lands on the
    // last row of the whole list. The screen opens on its first page; while the clerk reads
    // it, the rest is read in short steps between events, so the find rarely has to wait for
    // the list.
    m_fill = new QTimer(this);
    m_fill->setInterval(0);
    connect(m_fill, &QTimer::timeout, this, &SchHProduction::fillStep);
    QTimer::singleShot(kFillDelayMs, m_fill, qOverload<>(&QTimer::start));
}

void SchHProduction::fillStep() {
    if (!m_rows->canFetchMore({})) {
        m_fill->stop();
        return;
    }
    try {
        m_rows->fetchKeys(kFillSerials);
    } catch (const DbError&) {
        // Left to the find, which reads the rest itself and tells the clerk what failed.
        m_fill->stop();
    }
}

void SchHProduction::FindCommodity(const QString& text) {
    if (text.trimmed().isEmpty()) {
        moveToRow(0);
        return;
    }
    try {
        const int row = findRow(text);
        if (row >= 0) {
            moveToRow(row);
            return;
        }
        // Not on the list: the last row of all of it. Until the list has been read to its end,
        // the last serial's rows are read ahead of those between, which the fill goes on to
        // read.
        if (m_rows->canFetchMore({})) {
            const QVariant beforeLast = hourly::serialBeforeLast(m_ctx.db());
            if (beforeLast.isNull())
                m_rows->fetchAll();
            else
                m_rows->readEnd(beforeLast);
        }
    } catch (const DbError& e) {
        showError(this, e);
    }
    moveToRow(m_rows->rowCount() - 1);
}

int SchHProduction::findRow(const QString& text) {
    // The rows name commodities from their table, which the combo already lists whole, so the
    // name's keys there tell whether any row can have it; most texts typed on the way to a
    // name match none and cost nothing more.
    const Conn& conn = m_ctx.db();
    QVariantList ids;
    for (const LookupItem& item : m_commodity->items())
        if (item.name.compare(text, Qt::CaseInsensitive) == 0)
            ids << item.key.toLongLong();
    // A commodity no record has goes to the last row at once, without a look through every
    // row read.
    if (!hourly::anyLineOf(conn, ids))
        return -1;

    auto firstAt = [&](int from) {
        // Only rows read in order: a row of the end read ahead may have an earlier twin in
        // the gap before it.
        for (int r = from, rows = m_rows->contiguousRows(); r < rows; ++r)
            if (toText(field(r, 2)).compare(text, Qt::CaseInsensitive) == 0)
                return r;
        return -1;
    };
    if (const int row = firstAt(0); row >= 0 || !m_rows->canFetchMore({}))
        return row;

    // The first serial after those read that has one of these commodities; then the rows up
    // to it in one statement.
    const QVariant after = m_rows->lastKey();
    const QVariant serial = hourly::firstSerialWith(conn, after, ids);
    if (serial.isNull())
        return -1;
    const int serials = hourly::serialsBetween(conn, after, serial);
    const int from = m_rows->contiguousRows();
    m_rows->fetchKeys(std::max(1, serials));
    return firstAt(from);
}

// ---------------------------------------------------------------------------------------------

namespace {
const std::vector<SearchColumn> kPartyColumns{
    {"Party ID", 0, F::Text, 90}, {"Name", 1, F::Text, 260}, {"City", 2, F::Text, 160}};
} // namespace

SchParty::SchParty(const Context& ctx, QWidget* owner) : QDialog(owner), m_ctx(ctx) {
    setObjectName(QStringLiteral("SchParty"));
    setWindowTitle(QStringLiteral("Search Parties"));
    m_rows = new SearchRowsModel(kPartyColumns, this);
    buildUi();
    RunSearch();
    m_choice = {};
}

SchParty::~SchParty() = default;

void SchParty::buildUi() {
    auto* layout = new QVBoxLayout(this);
    auto* filters = new QGridLayout;
    layout->addLayout(filters);
    auto* idLabel = new QLabel(QStringLiteral("Party Id"), this);
    idLabel->setObjectName(QStringLiteral("Label2"));
    auto* nameLabel = new QLabel(QStringLiteral("Name"), this);
    nameLabel->setObjectName(QStringLiteral("Label9"));
    m_filterId = new QLineEdit(this);
    m_filterId->setObjectName(QStringLiteral("TxtFilterId"));
    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("TxtFilter"));
    filters->addWidget(idLabel, 0, 0);
    filters->addWidget(m_filterId, 1, 0);
    filters->addWidget(nameLabel, 0, 1);
    filters->addWidget(m_filter, 1, 1);
    filters->setColumnStretch(1, 1);

    m_grid = makeGrid(this, m_rows, "Grid");
    layout->addWidget(m_grid, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    m_select = new QPushButton(QStringLiteral("Select"), this);
    m_select->setObjectName(QStringLiteral("CmdSelect"));
    m_close = new QPushButton(QStringLiteral("Close"), this);
    m_close->setObjectName(QStringLiteral("CmdClose"));
    // No keyboard way to pick or close: Enter on a button does not press it.
    for (QPushButton* b : {m_select, m_close}) {
        b->setAutoDefault(false);
        b->setDefault(false);
        buttons->addWidget(b);
    }
    layout->addLayout(buttons);
    resize(600, 460);

    connect(m_select, &QPushButton::clicked, this, &SchParty::Select);
    connect(m_close, &QPushButton::clicked, this, &SchParty::CloseWithoutChoice);
    connect(m_filter, &QLineEdit::textChanged, this, &SchParty::RunSearch);
    connect(m_filterId, &QLineEdit::textChanged, this, &SchParty::FindPartyId);
    m_filter->installEventFilter(this);
    m_filterId->installEventFilter(this);
    m_grid->installEventFilter(this);
    m_grid->viewport()->installEventFilter(this);
}

void SchParty::RunSearch() {
    try {
        const Conn& conn = m_ctx.db();
        QVariantList binds;
        const QString sql = partiesStatement(conn, m_filter->text(), binds);
        m_rows->load(conn, sql, binds);
    } catch (const DbError& e) {
        m_rows->clear();
        showError(this, e);
    }
    moveToRow(0);
}

void SchParty::FindPartyId(const QString& text) {
    if (text.trimmed().isEmpty()) {
        moveToRow(0);
        return;
    }
    const int rows = m_rows->rowCount();
    for (int r = 0; r < rows; ++r) {
        if (toText(m_rows->field(r, 0)) == text) {
            moveToRow(r);
            return;
        }
    }
    moveToRow(rows - 1);
}

void SchParty::moveToRow(int row) {
    if (row < 0 || row >= m_rows->rowCount())
        return;
    const QModelIndex index = m_rows->index(row, 0);
    m_grid->setCurrentIndex(index);
    m_grid->scrollTo(index);
}

void SchParty::Select() {
    if (m_rows->rowCount() == 0)
        return;
    const QModelIndex current = m_grid->currentIndex();
    const int row = current.isValid() ? current.row() : 0;
    m_choice.SelectedPartyId = toText(m_rows->field(row, 0));
    m_choice.SelectedPartyName = toText(m_rows->field(row, 1));
    m_choice.SelectedCityName = toText(m_rows->field(row, 2));
    accept();
}

void SchParty::CloseWithoutChoice() {
    m_choice = {};
    reject();
}

int SchParty::rowCount() const {
    return m_rows->rowCount();
}

int SchParty::currentRow() const {
    const QModelIndex current = m_grid->currentIndex();
    return current.isValid() ? current.row() : -1;
}

QString SchParty::cellText(int row, int column) const {
    return m_rows->data(m_rows->index(row, column)).toString();
}

bool SchParty::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_grid->viewport() && isDoubleClick(m_grid, event)) {
        Select();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if ((watched == m_filter || watched == m_filterId) && key->key() == Qt::Key_Down) {
            m_grid->setFocus();
            return true;
        }
        // Enter and Esc do nothing anywhere on this screen.
        if (isEnter(key) || key->key() == Qt::Key_Escape)
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void SchParty::keyPressEvent(QKeyEvent* event) {
    if (isEnter(event) || event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

// ---------------------------------------------------------------------------------------------

PartyChoice showPartySearch(QWidget* owner, const Context& ctx) {
    SchParty screen(ctx, owner);
    screen.exec();
    return screen.choice();
}

namespace {
template <typename Screen> int showSearch(QWidget* owner, const Context& ctx) {
    Screen screen(ctx, owner);
    screen.exec();
    return screen.SelectedId();
}
} // namespace

int showContractSearch(QWidget* owner, const Context& ctx) {
    return showSearch<SchPurchaseContract>(owner, ctx);
}

int showPurchaseSearch(QWidget* owner, const Context& ctx, int* selectedSellerId) {
    SchPurchase screen(ctx, owner);
    screen.exec();
    if (selectedSellerId)
        *selectedSellerId = screen.SelectedId() ? screen.SelectedSellerId() : 0;
    return screen.SelectedId();
}

int showArrivalSearch(QWidget* owner, const Context& ctx) {
    return showSearch<SchArrivals>(owner, ctx);
}

int showDFCPurchaseSearch(QWidget* owner, const Context& ctx) {
    return showSearch<SchDFCPurchase>(owner, ctx);
}

int showHProductionSearch(QWidget* owner, const Context& ctx) {
    return showSearch<SchHProduction>(owner, ctx);
}

namespace {
class DialogSearches final : public Searches {
public:
    PartyChoice party(QWidget* owner, const Context& ctx) override {
        return showPartySearch(owner, ctx);
    }
    int document(DocumentKind kind, QWidget* owner, const Context& ctx, int* sellerId) override {
        if (sellerId)
            *sellerId = 0;
        switch (kind) {
        case DocumentKind::PurchaseContract:
            return showContractSearch(owner, ctx);
        case DocumentKind::Purchase:
            return showPurchaseSearch(owner, ctx, sellerId);
        case DocumentKind::Arrival:
            return showArrivalSearch(owner, ctx);
        case DocumentKind::DFCPurchase:
            return showDFCPurchaseSearch(owner, ctx);
        case DocumentKind::HourlyProduction:
            return showHProductionSearch(owner, ctx);
        }
        return 0;
    }
};
} // namespace

std::shared_ptr<Searches> dialogSearches() {
    return std::make_shared<DialogSearches>();
}

} // namespace gm
