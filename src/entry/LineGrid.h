#pragma once

#include "services/LookupItem.h"
#include "services/Numeric.h"

#include <QAbstractTableModel>
#include <QMessageBox>
#include <QStringList>
#include <QTableView>

#include <functional>
#include <optional>
#include <vector>

namespace gm {

// One column of a line grid.
struct GridColumn {
    enum class Kind {
        Text,     // free text
        Number,   // signed or unsigned decimal; see decimals and the range
        Lookup,   // chosen from `lookup` through a LookupCombo editor
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
    bool allowNegative = false;
    LookupList lookup; // Lookup
    bool hidden = false;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    QString editorName; // objectName of the in-cell editor, when the screen names it

    static GridColumn text(const QString& caption, int width = 80, int maxLength = 0);
    static GridColumn number(const QString& caption, int width = 70, int decimals = 2,
                             double minimum = 0, double maximum = 0);
    static GridColumn lookupOf(const QString& caption, LookupList items, int width = 90);
    static GridColumn readOnly(const QString& caption, int width = 80);
};

// A heading over the captions of columns first..last ("Bags", "Weight", "Deduction").
struct GridGroup {
    int first = 0;
    int last = 0;
    QString caption;
};

// Why an entry was not taken. An empty message refuses without a further box (the check has
// already spoken to the clerk, e.g. a question answered No).
struct Refusal {
    QString message;
    QString title = QStringLiteral("Alert");
    QMessageBox::Icon icon = QMessageBox::Information;
};

// The lines of a document as rows of text cells, like the row stores the screens keep.
// A trailing empty row is offered for a new line; it becomes a real line when one of its
// cells is given a text. Every edit - from the view or from setData - passes the same
// before-update check, and an accepted one runs the after-update recomputation.
class LineGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // Returns a refusal to keep the old text. May ask the clerk itself (Yes/No) first.
    using CellCheck =
        std::function<std::optional<Refusal>(int row, int column, const QString& text)>;
    // Runs after an accepted edit; writes through setCell() and setFooterText().
    using Recompute = std::function<void(int row, int column)>;

    explicit LineGridModel(QObject* parent = nullptr);

    void setColumns(std::vector<GridColumn> columns);
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

    // The real lines, without the trailing empty row.
    const std::vector<QStringList>& rows() const { return m_rows; }
    int lineCount() const { return int(m_rows.size()); }
    // Replaces all lines (each padded or cut to the column count); footers are left alone.
    void setLines(std::vector<QStringList> lines);
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
    // Sum of a column over the lines in four-decimal fixed point; cells without a number count 0.
    Currency sumColumn(int column) const;

    QString footerText(int column) const;
    void setFooterText(int column, const QString& text);
    void clearFooters();

    // The edit path: checks, stores (adding the line when the trailing row is edited) and
    // recomputes. False when refused; lastRefusal() then tells why.
    bool editCell(int row, int column, const QString& text);
    const std::optional<Refusal>& lastRefusal() const { return m_lastRefusal; }
    // The standard refusal: "Please provide a valid <caption in lower case>."
    Refusal standardRefusal(int column) const;

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
    void refused(int row, int column, const gm::Refusal& refusal);

private:
    std::vector<GridColumn> m_columns;
    std::vector<GridGroup> m_groups;
    std::vector<QStringList> m_rows;
    QStringList m_footers;
    CellCheck m_check;
    Recompute m_recompute;
    std::optional<Refusal> m_lastRefusal;
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
