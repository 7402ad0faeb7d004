#pragma once

#include "entry/LineRows.h"
#include "services/LookupItem.h"
#include "services/Numeric.h"
#include "services/Objection.h"

#include <QAbstractTableModel>
#include <QMessageBox>
#include <QStringList>
#include <QTableView>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace gm {

// One column of a line grid.
struct GridColumn {
    enum class Kind {
        Text,     // free text
        Number,   // signed or unsigned decimal; see decimals and the range
        Lookup,   // chosen from `lookup` through a LookupCombo editor
        Date,     // a day, shown and typed "dd/MM/yyyy" through a DateEdit editor
        ReadOnly, // filled by code only
    };

    QString caption;
    int width = 80;
    Kind kind = Kind::Text;
    // The in-cell editor takes at most this many characters; 0 = no cap. Leave it 0 where a
    // check must see (and refuse with its own words) a text that is too long.
    int maxLength = 0;
    // Number: digits after the point the editor lets through, and the range an entry must lie
    // in (checked only when minimum < maximum; outside it the standard refusal comes).
    int decimals = 2;
    double minimum = 0;
    double maximum = 0;
    LookupList lookup; // Lookup
    bool hidden = false;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    QString editorName; // objectName of the in-cell editor, when the screen names it

    static GridColumn text(const QString& caption, int width = 80, int maxLength = 0);
    static GridColumn number(const QString& caption, int width = 70, int decimals = 2,
                             double minimum = 0, double maximum = 0);
    static GridColumn lookupOf(const QString& caption, LookupList items, int width = 90);
    // A text that is no possible date is refused with "Please provide a valid date.".
    static GridColumn date(const QString& caption, int width = 90);
    static GridColumn readOnly(const QString& caption, int width = 80);
    // The in-cell editor's objectName, for screens whose editors are named.
    GridColumn& named(const QString& name) {
        editorName = name;
        return *this;
    }
    GridColumn& aligned(Qt::Alignment a) {
        alignment = a;
        return *this;
    }
};

// A column bound to a field of the screen's line type.
template <class Line> struct BoundColumn {
    GridColumn column;
    LineField<Line> field;
};

// A heading over the captions of columns first..last ("Bags", "Weight", "Deduction").
struct GridGroup {
    int first = 0;
    int last = 0;
    QString caption;
};

// The lines of a document. The view asks cells as text; behind them the model keeps either
// rows of text or, once a screen binds its line type, real lines that the screen reads and
// writes whole (lines<Line>(), setLines, updateLine) with no round trip through text.
// A trailing empty row is offered for a new line; it becomes a real line when one of its
// cells is given a text. Every edit - from the view or from setData - passes the same
// before-update check, and an accepted one runs the after-update recomputation.
class LineGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // Returns an objection to keep the old value. May ask the clerk itself (Yes/No) first and
    // then object quietly.
    using CellCheck =
        std::function<std::optional<Objection>(int row, int column, const QString& text)>;
    // Runs after an accepted edit; writes through setCell() and setFooterText().
    using Recompute = std::function<void(int row, int column)>;

    explicit LineGridModel(QObject* parent = nullptr);

    // Columns over rows of text.
    void setColumns(std::vector<GridColumn> columns);
    // Columns over lines of one type; the lines start empty.
    template <class Line> void setColumns(std::vector<BoundColumn<Line>> bound) {
        std::vector<GridColumn> columns;
        std::vector<LineField<Line>> fields;
        for (BoundColumn<Line>& b : bound) {
            columns.push_back(std::move(b.column));
            fields.push_back(std::move(b.field));
        }
        resetStore(std::move(columns), std::make_unique<TypedRows<Line>>(std::move(fields)));
    }
    const std::vector<GridColumn>& columns() const { return m_columns; }
    const GridColumn& column(int index) const { return m_columns.at(size_t(index)); }
    // Index of the column with this caption (exact), -1 when none.
    int columnOf(const QString& caption) const;
    void setLookup(int column, LookupList items);

    void setGroups(std::vector<GridGroup> groups);
    const std::vector<GridGroup>& groups() const { return m_groups; }

    void setCellCheck(CellCheck check) { m_check = std::move(check); }
    void setRecompute(Recompute recompute) { m_recompute = std::move(recompute); }
    // Whether the trailing empty row is offered (default true).
    void setAllowAdding(bool allow);
    bool allowAdding() const { return m_allowAdding; }

    int lineCount() const { return m_rows->count(); }
    // Replaces all lines, cell by cell as if written by code; footers are left alone.
    void setLines(const std::vector<QStringList>& lines);

    // The lines of a grid whose columns are bound to `Line` (a logic error for another type).
    template <class Line> const std::vector<Line>& lines() const { return typed<Line>().lines(); }
    template <class Line> void setLines(std::vector<Line> lines) {
        beginResetModel();
        typed<Line>().lines() = std::move(lines);
        endResetModel();
    }
    // Changes one line in place (no check: values written by code are checked at save) and
    // tells the view.
    template <class Line, class Change> void updateLine(int row, Change&& change) {
        if (row < 0 || row >= lineCount())
            return;
        change(typed<Line>().lines()[size_t(row)]);
        Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    }
    // No lines, empty footers.
    void clearLines();
    // Appends an empty line and returns its index.
    int addLine();
    void removeLine(int row);

    // Cell text; empty outside the lines.
    QString cellText(int row, int column) const;
    // Writes a cell without check or recomputation (for code and for the recomputation).
    void setCell(int row, int column, const QString& text);
    // Leading-number value of a cell (0 for empty or no number).
    double cellValue(int row, int column) const;
    // SumGridColumn of a column over the lines (four-decimal fixed point).
    Currency sumColumn(int column) const;

    QString footerText(int column) const;
    void setFooterText(int column, const QString& text);
    void clearFooters();

    // The edit path: checks, stores (adding the line when the trailing row is edited) and
    // recomputes. False when refused; lastRefusal() then tells why.
    bool editCell(int row, int column, const QString& text);
    const std::optional<Objection>& lastRefusal() const { return m_lastRefusal; }
    // The standard refusal: "Please provide a valid <caption in lower case>."
    Objection standardRefusal(int column) const;

    bool isEditable(int column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    void footersChanged();
    void lineAdded(int row);
    void lineRemoved(int row);
    // An accepted edit, after recomputation.
    void cellEdited(int row, int column);
    void refused(int row, int column, const gm::Objection& refusal);

private:
    void resetStore(std::vector<GridColumn> columns, std::unique_ptr<LineRows> rows);
    template <class Line> TypedRows<Line>& typed() const {
        auto* rows = dynamic_cast<TypedRows<Line>*>(m_rows.get());
        if (!rows)
            throw std::logic_error("grid lines read as a type they are not bound to");
        return *rows;
    }

    std::vector<GridColumn> m_columns;
    std::vector<GridGroup> m_groups;
    std::unique_ptr<LineRows> m_rows;
    QStringList m_footers;
    CellCheck m_check;
    Recompute m_recompute;
    std::optional<Objection> m_lastRefusal;
    bool m_allowAdding = true;
};

class GridBand;

// The grid control of the document screens, keyboard first: typing starts editing, Enter and
// Tab commit and move to the next editable cell (on to the next line at a row's end), a
// refused entry shows its box and keeps the editor in the cell, Delete removes the current
// line when allowed. Group headings sit over the captions and a footer row under the lines:
// the three live in panel(), which is what a screen puts in its layout.
class LineGrid : public QTableView {
    Q_OBJECT
public:
    // The grid lives in panel(), a child of `parent`; without a parent the caller owns panel().
    explicit LineGrid(QWidget* parent = nullptr);
    LineGrid(const QString& objectName, QWidget* parent);
    ~LineGrid() override;

    // The grid with its group headings and footer row; place this in the screen's layout.
    QWidget* panel() const { return m_panel; }
    LineGridModel* lines() const { return m_model; }
    void setColumns(std::vector<GridColumn> columns);
    template <class Line> void setColumns(std::vector<BoundColumn<Line>> columns) {
        m_model->setColumns(std::move(columns));
        applyColumns();
    }
    // The typed lines (see LineGridModel).
    template <class Line> const std::vector<Line>& lines() const { return m_model->lines<Line>(); }
    template <class Line> void setLines(std::vector<Line> lines) {
        m_model->setLines(std::move(lines));
    }
    void setGroups(std::vector<GridGroup> groups);

    // Whether the Delete key removes the current line (default false).
    void setDeleteRemovesLine(bool allow) { m_deleteRemoves = allow; }
    // Removes the current line (not the trailing empty row); false when there is none.
    bool removeCurrentLine();

    QString cellText(int row, int column) const { return m_model->cellText(row, column); }
    QString footerText(int column) const { return m_model->footerText(column); }
    // An in-cell editor is open.
    bool isEditing() const { return state() == EditingState; }

    // Moves to the next editable cell after the current one (Tab's and Enter's move); false
    // when the current cell is the last one.
    bool moveToNextCell();

Q_SIGNALS:
    void lineRemovedByUser(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void commitData(QWidget* editor) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    void applyColumns();
    QModelIndex nextEditable(const QModelIndex& from) const;
    QModelIndex previousEditable(const QModelIndex& from) const;
    bool commitEditor(QWidget* editor);
    // Enter or Tab in an in-cell editor: commit and move on; true when the key was used.
    bool editorKey(QWidget* editor, QKeyEvent* event);
    friend class GridDelegate;
    void watchEditor(QWidget* editor);

    QWidget* m_panel = nullptr;
    LineGridModel* m_model = nullptr;
    GridBand* m_groupBand = nullptr;
    GridBand* m_footerBand = nullptr;
    bool m_deleteRemoves = false;
    bool m_committing = false;
    bool m_keepEditor = false;
};

} // namespace gm
