#include "entry/LineGrid.h"

#include "entry/Fields.h"
#include "services/Lookups.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace gm {

// ---- columns -------------------------------------------------------------------------------

GridColumn GridColumn::text(const QString& caption, int width, int maxLength) {
    GridColumn c;
    c.caption = caption;
    c.width = width;
    c.maxLength = maxLength;
    return c;
}

GridColumn GridColumn::number(const QString& caption, int width, int decimals, double minimum,
                              double maximum) {
    GridColumn c;
    c.caption = caption;
    c.width = width;
    c.kind = Kind::Number;
    c.decimals = decimals;
    c.minimum = minimum;
    c.maximum = maximum;
    c.alignment = Qt::AlignRight | Qt::AlignVCenter;
    return c;
}

GridColumn GridColumn::lookupOf(const QString& caption, LookupList items, int width) {
    GridColumn c;
    c.caption = caption;
    c.width = width;
    c.kind = Kind::Lookup;
    c.lookup = std::move(items);
    return c;
}

GridColumn GridColumn::date(const QString& caption, int width) {
    GridColumn c;
    c.caption = caption;
    c.width = width;
    c.kind = Kind::Date;
    return c;
}

GridColumn GridColumn::readOnly(const QString& caption, int width) {
    GridColumn c;
    c.caption = caption;
    c.width = width;
    c.kind = Kind::ReadOnly;
    return c;
}

// ---- model ---------------------------------------------------------------------------------

LineGridModel::LineGridModel(QObject* parent)
    : QAbstractTableModel(parent), m_rows(std::make_unique<TextRows>(0)) {}

void LineGridModel::setColumns(std::vector<GridColumn> columns) {
    const int n = int(columns.size());
    resetStore(std::move(columns), std::make_unique<TextRows>(n));
}

void LineGridModel::resetStore(std::vector<GridColumn> columns, std::unique_ptr<LineRows> rows) {
    beginResetModel();
    m_columns = std::move(columns);
    m_rows = std::move(rows);
    m_footers = QStringList();
    for (size_t i = 0; i < m_columns.size(); ++i)
        m_footers.append(QString());
    endResetModel();
    Q_EMIT footersChanged();
}

int LineGridModel::columnOf(const QString& caption) const {
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].caption == caption)
            return int(i);
    }
    return -1;
}

void LineGridModel::setLookup(int column, LookupList items) {
    if (column >= 0 && size_t(column) < m_columns.size())
        m_columns[size_t(column)].lookup = std::move(items);
}

void LineGridModel::setGroups(std::vector<GridGroup> groups) {
    m_groups = std::move(groups);
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, qMax(0, columnCount() - 1));
}

void LineGridModel::setAllowAdding(bool allow) {
    if (allow == m_allowAdding)
        return;
    beginResetModel();
    m_allowAdding = allow;
    endResetModel();
}

void LineGridModel::setLines(const std::vector<QStringList>& lines) {
    beginResetModel();
    m_rows->clear();
    const int n = int(m_columns.size());
    for (const QStringList& line : lines) {
        m_rows->appendEmpty();
        for (int c = 0; c < n && c < line.size(); ++c)
            m_rows->setText(lineCount() - 1, c, line.at(c));
    }
    endResetModel();
}

void LineGridModel::clearLines() {
    beginResetModel();
    m_rows->clear();
    endResetModel();
    clearFooters();
}

int LineGridModel::addLine() {
    const int row = lineCount();
    // The empty new-line row turns into this line and a fresh one follows it, so a cursor
    // standing in the new-line row stays on the line being typed.
    const int inserted = m_allowAdding ? row + 1 : row;
    beginInsertRows({}, inserted, inserted);
    m_rows->appendEmpty();
    endInsertRows();
    if (m_allowAdding)
        Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    Q_EMIT lineAdded(row);
    return row;
}

void LineGridModel::removeLine(int row) {
    if (row < 0 || row >= lineCount())
        return;
    beginRemoveRows({}, row, row);
    m_rows->erase(row);
    endRemoveRows();
    Q_EMIT lineRemoved(row);
}

QString LineGridModel::cellText(int row, int column) const {
    if (row < 0 || row >= lineCount() || column < 0 || column >= int(m_columns.size()))
        return {};
    return m_rows->text(row, column);
}

void LineGridModel::setCell(int row, int column, const QString& text) {
    if (row < 0 || row >= lineCount() || column < 0 || column >= int(m_columns.size()))
        return;
    if (m_rows->text(row, column) == text)
        return;
    m_rows->setText(row, column, text);
    const QModelIndex i = index(row, column);
    Q_EMIT dataChanged(i, i);
}

double LineGridModel::cellValue(int row, int column) const {
    return leadingNumber(cellText(row, column));
}

Currency LineGridModel::sumColumn(int column) const {
    return SumGridColumn(*this, column);
}

QString LineGridModel::footerText(int column) const {
    return column >= 0 && column < m_footers.size() ? m_footers.at(column) : QString();
}

void LineGridModel::setFooterText(int column, const QString& text) {
    if (column < 0 || column >= m_footers.size() || m_footers.at(column) == text)
        return;
    m_footers[column] = text;
    Q_EMIT footersChanged();
}

void LineGridModel::clearFooters() {
    for (QString& f : m_footers)
        f.clear();
    Q_EMIT footersChanged();
}

Objection LineGridModel::standardRefusal(int column) const {
    const QString caption = column >= 0 && size_t(column) < m_columns.size()
                                ? m_columns[size_t(column)].caption
                                : QString();
    return Objection::info(QStringLiteral("Please provide a valid ") + caption.toLower() +
                           QStringLiteral("."));
}

bool LineGridModel::isEditable(int column) const {
    if (column < 0 || size_t(column) >= m_columns.size())
        return false;
    const GridColumn& c = m_columns[size_t(column)];
    return c.kind != GridColumn::Kind::ReadOnly && !c.hidden;
}

bool LineGridModel::editCell(int row, int column, const QString& text) {
    m_lastRefusal.reset();
    if (row < 0 || row >= rowCount() || !isEditable(column)) {
        m_lastRefusal = Objection::quiet();
        return false;
    }
    const bool trailing = row >= lineCount();
    // Leaving the new-line row empty adds nothing.
    if (trailing && text.isEmpty())
        return true;

    const GridColumn& c = m_columns[size_t(column)];
    std::optional<Objection> refusal;
    if (c.kind == GridColumn::Kind::Number && c.minimum < c.maximum && !text.isEmpty()) {
        const double v = leadingNumber(text);
        if (v < c.minimum || v > c.maximum)
            refusal = standardRefusal(column);
    }
    if (c.kind == GridColumn::Kind::Date && !text.isEmpty() &&
        !QDate::fromString(text, QString::fromLatin1(kDateFormat)).isValid())
        refusal = Objection::info(kInvalidDate);
    if (!refusal && m_check)
        refusal = m_check(row, column, text);
    if (refusal) {
        m_lastRefusal = refusal;
        Q_EMIT refused(row, column, *refusal);
        return false;
    }
    if (trailing)
        row = addLine();
    setCell(row, column, text);
    if (m_recompute)
        m_recompute(row, column);
    Q_EMIT cellEdited(row, column);
    return true;
}

int LineGridModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid())
        return 0;
    return lineCount() + (m_allowAdding ? 1 : 0);
}

int LineGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant LineGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return cellText(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(column(index.column()).alignment);
    default:
        return {};
    }
}

bool LineGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    return editCell(index.row(), index.column(), value.toString());
}

QVariant LineGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        size_t(section) < m_columns.size())
        return m_columns[size_t(section)].caption;
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags LineGridModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (isEditable(index.column()))
        f |= Qt::ItemIsEditable;
    return f;
}

// ---- bands over and under the lines ------------------------------------------------------

class GridBand : public QWidget {
public:
    enum class Kind { Groups, Footers };
    GridBand(LineGrid* grid, Kind kind, QWidget* parent)
        : QWidget(parent), m_grid(grid), m_kind(kind) {
        setFixedHeight(fontMetrics().height() + 8);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), palette().button());
        const QHeaderView* header = m_grid->horizontalHeader();
        const int offset = m_grid->viewport()->mapTo(parentWidget(), QPoint(0, 0)).x() - x();
        p.setClipRect(QRect(offset, 0, m_grid->viewport()->width(), height()));
        const LineGridModel* model = m_grid->lines();
        auto cellRect = [&](int first, int last) {
            const int left = header->sectionViewportPosition(first);
            const int right = header->sectionViewportPosition(last) + header->sectionSize(last);
            return QRect(offset + left, 0, right - left, height() - 1);
        };
        if (m_kind == Kind::Groups) {
            for (const GridGroup& g : model->groups()) {
                const QRect r = cellRect(g.first, g.last);
                p.drawRect(r.adjusted(0, 0, -1, 0));
                p.drawText(r, Qt::AlignCenter, g.caption);
            }
            return;
        }
        for (int c = 0; c < model->columnCount(); ++c) {
            if (header->isSectionHidden(c))
                continue;
            const QRect r = cellRect(c, c);
            p.drawRect(r.adjusted(0, 0, -1, 0));
            p.drawText(r.adjusted(3, 0, -3, 0), int(model->column(c).alignment),
                       model->footerText(c));
        }
    }

private:
    LineGrid* m_grid;
    Kind m_kind;
};

// ---- editors ---------------------------------------------------------------------------------

class GridDelegate : public QStyledItemDelegate {
public:
    explicit GridDelegate(LineGrid* grid) : QStyledItemDelegate(grid), m_grid(grid) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        const GridColumn& c = m_grid->lines()->column(index.column());
        QWidget* editor = nullptr;
        switch (c.kind) {
        case GridColumn::Kind::ReadOnly:
            return nullptr;
        case GridColumn::Kind::Text: {
            auto* e = new QLineEdit(parent);
            if (c.maxLength > 0)
                e->setMaxLength(c.maxLength);
            editor = e;
            break;
        }
        case GridColumn::Kind::Number: {
            auto* e = new NumberEdit(parent);
            e->setDecimals(c.decimals);
            // A sign typed by the clerk stands, for the column's check to refuse in words.
            e->setAllowNegative(true);
            if (c.maxLength > 0)
                e->setMaxLength(c.maxLength);
            editor = e;
            break;
        }
        case GridColumn::Kind::Lookup: {
            auto* e = new LookupCombo(parent);
            e->setLimitToList(false);
            e->setItems(c.lookup);
            editor = e;
            break;
        }
        case GridColumn::Kind::Date: {
            auto* e = new DateEdit(parent);
            // The grid refuses an impossible date when the cell is committed, in the same
            // words; the field itself stays quiet, or the clerk would be told twice.
            e->setRefusal(QString());
            editor = e;
            break;
        }
        }
        if (!c.editorName.isEmpty())
            editor->setObjectName(c.editorName);
        editor->setProperty("gmRow", index.row());
        editor->setProperty("gmColumn", index.column());
        m_grid->watchEditor(editor);
        return editor;
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        const QString text = index.data(Qt::EditRole).toString();
        if (auto* day = qobject_cast<DateEdit*>(editor)) {
            // An empty cell starts from today, as a new date field does.
            const QDate shown = QDate::fromString(text, QString::fromLatin1(kDateFormat));
            day->setDate(shown.isValid() ? shown : QDate::currentDate());
        } else if (auto* combo = qobject_cast<LookupCombo*>(editor))
            combo->setText(text);
        else if (auto* line = qobject_cast<QLineEdit*>(editor))
            line->setText(text);
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        QString text;
        if (auto* day = qobject_cast<DateEdit*>(editor)) {
            text = day->text();
        } else if (auto* combo = qobject_cast<LookupCombo*>(editor)) {
            combo->settleTypedText();
            text = combo->text();
        } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
            text = line->text();
        }
        model->setData(index, text, Qt::EditRole);
    }

protected:
    // Runs ahead of the view's own handling, so that Enter and Tab commit through the grid's
    // refusal-aware path and move to the next editable cell.
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::KeyPress &&
            m_grid->editorKey(qobject_cast<QWidget*>(object), static_cast<QKeyEvent*>(event)))
            return true;
        return QStyledItemDelegate::eventFilter(object, event);
    }

private:
    LineGrid* m_grid;
};

// ---- view ------------------------------------------------------------------------------------

LineGrid::LineGrid(QWidget* parent) : QTableView(nullptr) {
    m_panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(m_panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_groupBand = new GridBand(this, GridBand::Kind::Groups, m_panel);
    m_footerBand = new GridBand(this, GridBand::Kind::Footers, m_panel);
    layout->addWidget(m_groupBand);
    layout->addWidget(this, 1);
    layout->addWidget(m_footerBand);
    m_groupBand->hide();

    m_model = new LineGridModel(this);
    setModel(m_model);
    setItemDelegate(new GridDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::DoubleClicked |
                    QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setTabKeyNavigation(true);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);

    auto repaintBands = [this] {
        m_groupBand->update();
        m_footerBand->update();
    };
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, repaintBands);
    connect(horizontalHeader(), &QHeaderView::geometriesChanged, this, repaintBands);
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, repaintBands);
    connect(m_model, &LineGridModel::footersChanged, m_footerBand, qOverload<>(&QWidget::update));
    connect(m_model, &QAbstractItemModel::headerDataChanged, this, [this] {
        m_groupBand->setVisible(!m_model->groups().empty());
        m_groupBand->update();
    });
}

LineGrid::LineGrid(const QString& objectName, QWidget* parent) : LineGrid(parent) {
    setObjectName(objectName);
}

LineGrid::~LineGrid() = default;

void LineGrid::setColumns(std::vector<GridColumn> columns) {
    m_model->setColumns(std::move(columns));
    applyColumns();
}

void LineGrid::setGroups(std::vector<GridGroup> groups) {
    m_model->setGroups(std::move(groups));
}

void LineGrid::applyColumns() {
    for (int c = 0; c < m_model->columnCount(); ++c) {
        const GridColumn& col = m_model->column(c);
        setColumnHidden(c, col.hidden);
        setColumnWidth(c, col.width);
    }
    m_footerBand->update();
}

bool LineGrid::removeCurrentLine() {
    const int row = currentIndex().row();
    if (row < 0 || row >= m_model->lineCount())
        return false;
    m_model->removeLine(row);
    Q_EMIT lineRemovedByUser(row);
    return true;
}

QModelIndex LineGrid::nextEditable(const QModelIndex& from) const {
    const int rows = m_model->rowCount();
    const int cols = m_model->columnCount();
    int row = from.isValid() ? from.row() : 0;
    int col = from.isValid() ? from.column() + 1 : 0;
    for (; row < rows; ++row, col = 0) {
        for (; col < cols; ++col) {
            if (m_model->isEditable(col) && !isColumnHidden(col))
                return m_model->index(row, col);
        }
    }
    return {};
}

QModelIndex LineGrid::previousEditable(const QModelIndex& from) const {
    const int cols = m_model->columnCount();
    int row = from.isValid() ? from.row() : 0;
    int col = from.isValid() ? from.column() - 1 : -1;
    for (; row >= 0; --row, col = cols - 1) {
        for (; col >= 0; --col) {
            if (m_model->isEditable(col) && !isColumnHidden(col))
                return m_model->index(row, col);
        }
    }
    return {};
}

bool LineGrid::moveToNextCell() {
    const QModelIndex next = nextEditable(currentIndex());
    if (!next.isValid())
        return false;
    setCurrentIndex(next);
    return true;
}

QModelIndex LineGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    // Tab walks the cells a clerk can type in; past the last one it leaves the grid.
    if (action == MoveNext)
        return nextEditable(currentIndex());
    if (action == MovePrevious)
        return previousEditable(currentIndex());
    return QTableView::moveCursor(action, modifiers);
}

void LineGrid::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (state() != EditingState) {
            moveToNextCell();
            event->accept();
            return;
        }
        break;
    case Qt::Key_Delete:
        if (m_deleteRemoves && state() != EditingState && event->modifiers() == Qt::NoModifier) {
            removeCurrentLine();
            event->accept();
            return;
        }
        break;
    default:
        break;
    }
    QTableView::keyPressEvent(event);
}

void LineGrid::watchEditor(QWidget* editor) {
    if (auto* combo = qobject_cast<QComboBox*>(editor); combo && combo->lineEdit())
        combo->lineEdit()->installEventFilter(this);
}

bool LineGrid::editorKey(QWidget* editor, QKeyEvent* event) {
    const int key = event->key();
    const bool commitKey = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab;
    if (!commitKey || event->modifiers() != Qt::NoModifier || !editor ||
        !editor->property("gmColumn").isValid())
        return false;
    if (commitEditor(editor)) {
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
        if (!moveToNextCell() && key == Qt::Key_Tab)
            focusNextChild();
        else
            setFocus();
    }
    return true;
}

bool LineGrid::eventFilter(QObject* watched, QEvent* event) {
    // A combo's line edit types for its combo, which is the editor.
    if (event->type() == QEvent::KeyPress) {
        auto* line = qobject_cast<QLineEdit*>(watched);
        if (line && editorKey(line->parentWidget(), static_cast<QKeyEvent*>(event)))
            return true;
    }
    return QTableView::eventFilter(watched, event);
}

bool LineGrid::commitEditor(QWidget* editor) {
    if (m_committing)
        return false;
    const QModelIndex index =
        m_model->index(editor->property("gmRow").toInt(), editor->property("gmColumn").toInt());
    m_committing = true;
    itemDelegateForIndex(index)->setModelData(editor, m_model, index);
    bool accepted = true;
    if (const auto& refusal = m_model->lastRefusal()) {
        accepted = false;
        if (!refusal->isQuiet())
            msg::showObjection(this, *refusal);
        // The entry stays in the cell for the clerk to mend.
        window()->activateWindow();
        editor->setFocus();
        if (auto* line = qobject_cast<QLineEdit*>(editor))
            line->selectAll();
        else if (auto* combo = qobject_cast<QComboBox*>(editor); combo && combo->lineEdit())
            combo->lineEdit()->selectAll();
    }
    m_committing = false;
    return accepted;
}

void LineGrid::commitData(QWidget* editor) {
    // Qt's own paths (focus leaving the cell) come here; a refusal keeps the editor open.
    if (m_committing)
        return;
    m_keepEditor = !commitEditor(editor);
}

void LineGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    if (m_committing || m_keepEditor) {
        m_keepEditor = false;
        return;
    }
    QTableView::closeEditor(editor, hint);
}

} // namespace gm
