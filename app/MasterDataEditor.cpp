#include "MasterDataEditor.h"

#include "datastore/Sql.h"
#include "HostLog.h"
#include "services/Numeric.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace gm::host {

namespace {

QString editorName(const FieldDef& f) {
    switch (f.type) {
    case FieldType::Flag:
        return QStringLiteral("Chk") + f.column;
    case FieldType::Date:
        return QStringLiteral("Dtp") + f.column;
    case FieldType::Lookup:
        return QStringLiteral("Cbo") + f.column;
    default:
        return QStringLiteral("Txt") + f.column;
    }
}

bool isNumeric(FieldType t) {
    return t == FieldType::Integer || t == FieldType::Decimal;
}

QString valueText(const FieldDef& f, const QVariant& v) {
    if (v.isNull())
        return QString();
    if (f.type == FieldType::Decimal)
        return formatNumber(v.toDouble(), 6);
    return v.toString();
}

} // namespace

// ---------------------------------------------------------------------------------------------

MasterRowsModel::MasterRowsModel(const MasterDataStore& store, QObject* parent)
    : QAbstractTableModel(parent), m_store(store) {
    const auto& fields = store.def().fields;
    for (size_t i = 0; i < fields.size(); ++i)
        if (!fields[i].hidden)
            m_columns.push_back(int(i));
}

void MasterRowsModel::setRows(std::vector<RowValues> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int MasterRowsModel::findRow(const RowValues& keyOf) const {
    const auto keys = m_store.def().keyFields();
    for (size_t r = 0; r < m_rows.size(); ++r) {
        bool same = true;
        for (int k : keys)
            same = same && m_rows[r][size_t(k)].toString() == keyOf[size_t(k)].toString();
        if (same)
            return int(r);
    }
    return -1;
}

int MasterRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

int MasterRowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant MasterRowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const int field = m_columns[size_t(index.column())];
    const FieldDef& f = m_store.def().fields[size_t(field)];
    const QVariant& v = m_rows[size_t(index.row())][size_t(field)];
    switch (role) {
    case Qt::DisplayRole:
        return m_store.displayText(field, v);
    case Qt::EditRole: // the sort key: numbers as numbers
        if (isNumeric(f.type) || (f.type == FieldType::Lookup && f.lookupIntKey && false))
            return v.isNull() ? QVariant(0.0) : QVariant(v.toDouble());
        if (f.type == FieldType::Date)
            return v.toDate();
        return m_store.displayText(field, v);
    case Qt::TextAlignmentRole:
        if (isNumeric(f.type))
            return int(Qt::AlignRight | Qt::AlignVCenter);
        if (f.type == FieldType::Flag)
            return int(Qt::AlignCenter);
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant MasterRowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_store.def().fields[size_t(m_columns[size_t(section)])].caption;
    return QAbstractTableModel::headerData(section, orientation, role);
}

// ---------------------------------------------------------------------------------------------

MasterDataEditor::MasterDataEditor(const Conn& conn, const TableDef& def, QWidget* parent)
    : QWidget(parent), m_store(conn, def) {
    setObjectName(QStringLiteral("MasterData_") + def.id);
    buildUi();
    if (const TableDef* detailDef = detailOf(def)) {
        m_detail = new MasterDataEditor(conn, *detailDef, this);
        layout()->addWidget(m_detail);
        m_detail->setParentKey(QVariant());
    }
    if (def.parentColumn.isEmpty())
        reload();
}

MasterDataEditor::~MasterDataEditor() = default;

void MasterDataEditor::buildUi() {
    const TableDef& def = m_store.def();
    const bool isDetail = !def.parentColumn.isEmpty();
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(isDetail ? 0 : 12, isDetail ? 6 : 12, isDetail ? 0 : 12,
                              isDetail ? 0 : 12);

    auto* top = new QHBoxLayout;
    auto* title = new QLabel(def.title, this);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * (isDetail ? 1.1 : 1.35));
    big.setBold(true);
    title->setFont(big);
    top->addWidget(title);
    top->addStretch();
    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("TxtFilter"));
    m_filter->setPlaceholderText(QStringLiteral("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setMinimumWidth(220);
    m_filter->setMaximumWidth(320);
    m_filter->installEventFilter(this);
    top->addWidget(new QLabel(QStringLiteral("&Find:"), this));
    qobject_cast<QLabel*>(top->itemAt(top->count() - 1)->widget())->setBuddy(m_filter);
    top->addWidget(m_filter);
    outer->addLayout(top);

    auto* body = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    m_model = new MasterRowsModel(m_store, this);
    m_proxy = new QSortFilterProxyModel(this);
    m_proxy->setSourceModel(m_model);
    m_proxy->setFilterKeyColumn(-1);
    m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_proxy->setSortRole(Qt::EditRole);
    m_view = new QTableView(this);
    m_view->setObjectName(QStringLiteral("GrdRows"));
    m_view->setModel(m_proxy);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAlternatingRowColors(true);
    m_view->setSortingEnabled(true);
    m_view->sortByColumn(-1, Qt::AscendingOrder);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 8);
    m_view->horizontalHeader()->setStretchLastSection(false);
    m_view->setWordWrap(false);
    m_view->installEventFilter(this);
    left->addWidget(m_view);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("LblCount"));
    m_count->setStyleSheet(QStringLiteral("color: palette(mid);"));
    left->addWidget(m_count);
    body->addLayout(left, 3);

    auto* box = new QGroupBox(this);
    m_form = box;
    auto* boxLayout = new QVBoxLayout(box);
    m_formTitle = new QLabel(box);
    m_formTitle->setObjectName(QStringLiteral("LblFormTitle"));
    QFont bold = m_formTitle->font();
    bold.setBold(true);
    m_formTitle->setFont(bold);
    boxLayout->addWidget(m_formTitle);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_editors.assign(def.fields.size(), nullptr);
    for (size_t i = 0; i < def.fields.size(); ++i) {
        const FieldDef& f = def.fields[i];
        if (f.hidden)
            continue;
        QWidget* editor = nullptr;
        switch (f.type) {
        case FieldType::Flag: {
            auto* check = new QCheckBox(box);
            connect(check, &QCheckBox::toggled, this, [this] { setDirty(true); });
            editor = check;
            break;
        }
        case FieldType::Date: {
            auto* date = new QDateEdit(box);
            date->setCalendarPopup(true);
            date->setDisplayFormat(QString::fromLatin1(kDateFormat));
            connect(date, &QDateEdit::dateChanged, this, [this] { setDirty(true); });
            editor = date;
            break;
        }
        case FieldType::Lookup: {
            auto* combo = new QComboBox(box);
            combo->setMinimumContentsLength(16);
            combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
            combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
            connect(combo, &QComboBox::currentIndexChanged, this, [this] { setDirty(true); });
            editor = combo;
            break;
        }
        default: {
            auto* line = new QLineEdit(box);
            if (f.maxLength > 0)
                line->setMaxLength(f.maxLength);
            if (isNumeric(f.type))
                line->setAlignment(Qt::AlignRight);
            connect(line, &QLineEdit::textEdited, this, [this] { setDirty(true); });
            editor = line;
            break;
        }
        }
        editor->setObjectName(editorName(f));
        editor->installEventFilter(this);
        QString caption = f.caption + QLatin1Char(':');
        if (f.required)
            caption = QStringLiteral("<b>%1</b>").arg(caption.toHtmlEscaped());
        form->addRow(caption, editor);
        m_editors[i] = editor;
    }
    boxLayout->addLayout(form);
    boxLayout->addStretch();

    auto* buttons = new QHBoxLayout;
    const auto button = [&](const char* name, const QString& text, const QString& tip) {
        auto* b = new QPushButton(text, box);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        buttons->addWidget(b);
        return b;
    };
    m_new = button("BtnNew", QStringLiteral("&New"), QStringLiteral("Add a row (Insert)"));
    m_save = button("BtnSave", QStringLiteral("&Save"), QStringLiteral("Save the row (Enter)"));
    m_revert =
        button("BtnRevert", QStringLiteral("&Undo"), QStringLiteral("Drop the changes (Esc)"));
    m_delete =
        button("BtnDelete", QStringLiteral("&Delete"), QStringLiteral("Delete the row (Delete)"));
    boxLayout->addLayout(buttons);
    box->setMinimumWidth(340);
    box->setMaximumWidth(460);
    body->addWidget(box, 2);
    outer->addLayout(body, 1);

    connect(m_new, &QPushButton::clicked, this, [this] { newRow(); });
    connect(m_save, &QPushButton::clicked, this, [this] { save(); });
    connect(m_revert, &QPushButton::clicked, this, [this] { revert(); });
    connect(m_delete, &QPushButton::clicked, this, [this] { removeCurrent(); });
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_proxy->setFilterFixedString(text);
        updateCount();
        if (m_proxy->rowCount() > 0 && !m_view->currentIndex().isValid())
            m_view->setCurrentIndex(m_proxy->index(0, 0));
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &MasterDataEditor::onCurrentChanged);

    fillLookups();
    setDirty(false);
}

void MasterDataEditor::fillLookups() {
    const TableDef& def = m_store.def();
    const bool wasLoading = m_loading;
    m_loading = true;
    for (size_t i = 0; i < def.fields.size(); ++i) {
        auto* combo = qobject_cast<QComboBox*>(m_editors[i]);
        if (!combo)
            continue;
        const QVariant keep = combo->currentData();
        combo->clear();
        if (!def.fields[i].required)
            combo->addItem(QString(), QVariant());
        try {
            for (const LookupItem& item : m_store.lookupList(int(i)))
                combo->addItem(item.name, item.key);
        } catch (const DbError& e) {
            logError(e.source(), e.description());
        }
        combo->setCurrentIndex(std::max(0, combo->findData(keep)));
    }
    m_loading = wasLoading;
}

void MasterDataEditor::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Another list may have added a city or a unit since this one was last on screen.
    if (!m_dirty) {
        m_store.clearLookups();
        fillLookups();
        if (m_original)
            showRow(&*m_original);
    }
}

void MasterDataEditor::reload() {
    std::optional<RowValues> keep = m_original;
    std::vector<RowValues> rows;
    try {
        if (m_store.def().parentColumn.isEmpty() || !m_parentKey.isNull())
            rows = m_store.load(m_parentKey);
    } catch (const DbError& e) {
        showError(this, e.source(), e.description());
    }
    m_loading = true;
    m_model->setRows(std::move(rows));
    fitColumns();
    m_loading = false;
    updateCount();
    if (keep && m_model->findRow(*keep) >= 0)
        selectRow(*keep);
    else if (m_proxy->rowCount() > 0)
        m_view->setCurrentIndex(m_proxy->index(0, 0));
    else
        showRow(nullptr);
}

void MasterDataEditor::setParentKey(const QVariant& key) {
    m_parentKey = key;
    m_original.reset();
    setEnabled(!key.isNull());
    reload();
}

int MasterDataEditor::visibleRowCount() const {
    return m_proxy->rowCount();
}

void MasterDataEditor::updateCount() {
    const int all = m_model->rowCount(), shown = m_proxy->rowCount();
    m_count->setText(all == shown ? QStringLiteral("%1 rows").arg(all)
                                  : QStringLiteral("%1 of %2 rows").arg(shown).arg(all));
}

int MasterDataEditor::currentSourceRow() const {
    const QModelIndex idx = m_view->currentIndex();
    return idx.isValid() ? m_proxy->mapToSource(idx).row() : -1;
}

void MasterDataEditor::selectRow(const RowValues& row) {
    const int r = m_model->findRow(row);
    if (r < 0)
        return;
    const QModelIndex idx = m_proxy->mapFromSource(m_model->index(r, 0));
    if (idx.isValid()) {
        m_view->setCurrentIndex(idx);
        m_view->scrollTo(idx);
    }
}

void MasterDataEditor::onCurrentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (m_loading)
        return;
    if (m_dirty && !settleChanges()) {
        m_loading = true;
        m_view->setCurrentIndex(previous);
        m_loading = false;
        return;
    }
    if (!current.isValid()) {
        showRow(nullptr);
        return;
    }
    const RowValues row = m_model->row(m_proxy->mapToSource(current).row());
    showRow(&row);
}

void MasterDataEditor::showRow(const RowValues* row) {
    const TableDef& def = m_store.def();
    m_loading = true;
    if (row)
        m_original = *row;
    else
        m_original.reset();
    for (size_t i = 0; i < def.fields.size(); ++i) {
        QWidget* w = m_editors[i];
        if (!w)
            continue;
        const FieldDef& f = def.fields[i];
        const QVariant v = row ? (*row)[i] : QVariant();
        if (auto* line = qobject_cast<QLineEdit*>(w)) {
            line->setText(valueText(f, v));
            // A saved row keeps its key: documents point at it.
            line->setEnabled(!(f.key && row));
        } else if (auto* check = qobject_cast<QCheckBox*>(w)) {
            check->setChecked(v.toBool());
        } else if (auto* date = qobject_cast<QDateEdit*>(w)) {
            date->setDate(v.toDate().isValid() ? v.toDate() : QDate::currentDate());
        } else if (auto* combo = qobject_cast<QComboBox*>(w)) {
            combo->setCurrentIndex(v.isNull() ? (f.required ? -1 : 0)
                                              : combo->findData(v.toString()));
            combo->setEnabled(!(f.key && row));
        }
    }
    m_loading = false;
    m_formTitle->setText(row ? QStringLiteral("Change %1").arg(def.noun)
                             : QStringLiteral("New %1").arg(def.noun));
    m_delete->setEnabled(row != nullptr);
    setDirty(false);
    if (m_detail) {
        const int key = def.keyFields().front();
        m_detail->setParentKey(row ? (*row)[size_t(key)] : QVariant());
    }
}

void MasterDataEditor::setDirty(bool dirty) {
    if (m_loading)
        return;
    m_dirty = dirty;
    m_save->setEnabled(dirty || !m_original);
    m_revert->setEnabled(dirty);
}

std::vector<QVariant> MasterDataEditor::readInput() const {
    const TableDef& def = m_store.def();
    std::vector<QVariant> input(def.fields.size());
    for (size_t i = 0; i < def.fields.size(); ++i) {
        QWidget* w = m_editors[i];
        if (!w) {
            if (def.fields[i].column == def.parentColumn)
                input[i] = m_parentKey;
            continue;
        }
        if (auto* line = qobject_cast<QLineEdit*>(w))
            input[i] = line->text();
        else if (auto* check = qobject_cast<QCheckBox*>(w))
            input[i] = check->isChecked();
        else if (auto* date = qobject_cast<QDateEdit*>(w))
            input[i] = date->date();
        else if (auto* combo = qobject_cast<QComboBox*>(w))
            input[i] = combo->currentIndex() < 0 ? QVariant() : combo->currentData();
    }
    return input;
}

void MasterDataEditor::focusField(int field) {
    if (field < 0 || size_t(field) >= m_editors.size() || !m_editors[size_t(field)])
        return;
    QWidget* w = m_editors[size_t(field)];
    w->setFocus(Qt::OtherFocusReason);
    if (auto* line = qobject_cast<QLineEdit*>(w))
        line->selectAll();
}

void MasterDataEditor::newRow() {
    if (!isEnabled() || (m_dirty && !settleChanges()))
        return;
    m_loading = true;
    m_view->clearSelection();
    m_view->setCurrentIndex(QModelIndex());
    m_loading = false;
    showRow(nullptr);
    const TableDef& def = m_store.def();
    int first = -1;
    for (size_t i = 0; i < def.fields.size(); ++i) {
        const FieldDef& f = def.fields[i];
        if (f.autoKey && m_editors[i]) {
            try {
                qobject_cast<QLineEdit*>(m_editors[i])
                    ->setText(QString::number(m_store.nextKey(int(i))));
            } catch (const DbError& e) {
                showError(this, e.source(), e.description());
            }
            continue; // the proposed number is usually kept: start in the next field
        }
        if (first < 0 && m_editors[i])
            first = int(i);
    }
    setDirty(true);
    focusField(first);
}

bool MasterDataEditor::save() {
    if (!isEnabled())
        return false;
    const TableDef& def = m_store.def();
    RowValues row;
    auto problem = MasterDataStore::parse(def, readInput(), &row);
    try {
        if (!problem)
            problem = m_store.validate(row, m_original ? &*m_original : nullptr);
        if (problem) {
            QMessageBox::warning(this, def.title, problem->message);
            focusField(problem->field);
            return false;
        }
        if (m_original)
            m_store.update(*m_original, row);
        else
            m_store.insert(row);
    } catch (const DbError& e) {
        showError(this, e.source(), e.description());
        return false;
    }
    m_original = row;
    m_dirty = false;
    reload();
    selectRow(row);
    m_view->setFocus();
    Q_EMIT rowsChanged();
    return true;
}

bool MasterDataEditor::removeCurrent(bool ask) {
    if (!isEnabled() || !m_original)
        return false;
    const TableDef& def = m_store.def();
    const RowValues row = *m_original;
    QString label;
    for (size_t i = 0; i < def.fields.size() && label.isEmpty(); ++i)
        if (!def.fields[i].key && def.fields[i].type != FieldType::Flag)
            label = m_store.displayText(int(i), row[i]);
    if (ask && QMessageBox::question(
                   this, def.title, QStringLiteral("Delete the %1 \"%2\"?").arg(def.noun, label),
                   QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
        return false;
    try {
        m_store.remove(row);
    } catch (const DbError& e) {
        const bool inUse = e.description().contains(QLatin1String("cannot be deleted"));
        if (inUse) {
            logError(e.source(), e.description());
            QMessageBox::warning(this, def.title, e.description());
        } else {
            showError(this, e.source(), e.description());
        }
        return false;
    }
    const int at = m_view->currentIndex().row();
    m_original.reset();
    m_dirty = false;
    reload();
    if (m_proxy->rowCount() > 0)
        m_view->setCurrentIndex(m_proxy->index(std::min(at, m_proxy->rowCount() - 1), 0));
    m_view->setFocus();
    Q_EMIT rowsChanged();
    return true;
}

void MasterDataEditor::revert() {
    if (m_original) {
        const RowValues row = *m_original;
        showRow(&row);
    } else if (m_proxy->rowCount() > 0) {
        m_dirty = false;
        m_view->setCurrentIndex(m_proxy->index(0, 0));
        if (!m_original) // the same index was current already
            onCurrentChanged(m_view->currentIndex(), {});
    } else {
        showRow(nullptr);
    }
    m_view->setFocus();
}

bool MasterDataEditor::settleChanges() {
    if (m_detail && !m_detail->settleChanges())
        return false;
    if (!m_dirty)
        return true;
    const auto answer = QMessageBox::question(
        this, m_store.def().title,
        QStringLiteral("Save the changes to this %1?").arg(m_store.def().noun),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Cancel)
        return false;
    if (answer == QMessageBox::Save)
        return save();
    m_dirty = false;
    return true;
}

void MasterDataEditor::fitColumns() {
    m_view->resizeColumnsToContents();
    // The first name column takes the spare width, so that flags stay narrow.
    int stretch = -1, used = 0;
    for (int c = 0; c < m_model->columnCount(); ++c) {
        const FieldDef& f = def().fields[size_t(m_model->fieldOfColumn(c))];
        if (stretch < 0 && !f.key && (f.type == FieldType::Text || f.type == FieldType::Lookup))
            stretch = c;
        used += m_view->columnWidth(c);
    }
    const int spare = m_view->viewport()->width() - used;
    if (stretch >= 0 && spare > 0)
        m_view->setColumnWidth(stretch, m_view->columnWidth(stretch) + spare);
}

bool MasterDataEditor::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view && event->type() == QEvent::Resize)
        QTimer::singleShot(0, this, [this] { fitColumns(); });
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    // Handled here rather than by shortcuts: a detail list sits inside its parent's list, and
    // the key belongs to the list that has the focus.
    if (key->key() == Qt::Key_Insert && key->modifiers() == Qt::NoModifier) {
        newRow();
        return true;
    }
    if (key->matches(QKeySequence::Save)) {
        save();
        return true;
    }
    if (key->matches(QKeySequence::Find)) {
        m_filter->setFocus();
        m_filter->selectAll();
        return true;
    }
    if (watched == m_view) {
        if (key->key() == Qt::Key_Delete) {
            removeCurrent();
            return true;
        }
        if (enter) {
            // Enter on a row opens it for change.
            for (size_t i = 0; i < m_editors.size(); ++i) {
                if (m_editors[i] && m_editors[i]->isEnabled()) {
                    focusField(int(i));
                    break;
                }
            }
            return true;
        }
        const QString text = key->text();
        if (!text.isEmpty() && text.at(0).isPrint() && !(key->modifiers() & Qt::ControlModifier)) {
            // Typing in the list searches it.
            m_filter->setFocus();
            m_filter->setText(m_filter->text() + text);
            return true;
        }
        return false;
    }
    if (watched == m_filter) {
        if (key->key() == Qt::Key_Down || enter) {
            m_view->setFocus();
            if (!m_view->currentIndex().isValid() && m_proxy->rowCount() > 0)
                m_view->setCurrentIndex(m_proxy->index(0, 0));
            return true;
        }
        if (key->key() == Qt::Key_Escape && !m_filter->text().isEmpty()) {
            m_filter->clear();
            return true;
        }
        return false;
    }
    // A field of the form.
    if (enter) {
        if (auto* combo = qobject_cast<QComboBox*>(watched); combo && combo->view()->isVisible())
            return false;
        save();
        return true;
    }
    if (key->key() == Qt::Key_Escape) {
        revert();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace gm::host
