#pragma once

#include "MasterDataStore.h"

#include <QAbstractTableModel>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace gm::host {

// The rows of one master list as the table view shows them.
class MasterRowsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    MasterRowsModel(const MasterDataStore& store, QObject* parent);
    void setRows(std::vector<RowValues> rows);
    const RowValues& row(int r) const { return m_rows[size_t(r)]; }
    int findRow(const RowValues& keyOf) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    int fieldOfColumn(int column) const { return m_columns[size_t(column)]; }

private:
    const MasterDataStore& m_store;
    std::vector<int> m_columns; // field index of each shown column
    std::vector<RowValues> m_rows;
};

// One master list: a filterable table of the rows and, beside it, the fields of the current
// row. Insert starts a new row, Enter in a field saves, Delete in the list removes after a
// question, Escape drops unsaved changes, and typing in the list filters it.
class MasterDataEditor : public QWidget {
    Q_OBJECT
public:
    MasterDataEditor(const Conn& conn, const TableDef& def, QWidget* parent = nullptr);
    ~MasterDataEditor() override;

    const TableDef& def() const { return m_store.def(); }
    const MasterDataStore& store() const { return m_store; }
    QTableView* view() const { return m_view; }
    // The list of rows that belong to the current row (components of a process), or null.
    MasterDataEditor* detail() const { return m_detail; }

    int visibleRowCount() const;
    // Starts a new row with its key proposed and the cursor in the first field.
    void newRow();
    // Saves the fields; on a problem shows it, puts the cursor on the field and returns false.
    bool save();
    // Removes the current row after the question (when `ask`); false when nothing was removed.
    bool removeCurrent(bool ask = true);
    // Drops unsaved changes.
    void revert();
    bool isDirty() const { return m_dirty; }
    // Reads the rows again, keeping the current row where it still exists.
    void reload();
    // Detail lists: the parent row whose rows are shown (null: none, the list is disabled).
    void setParentKey(const QVariant& key);
    // Whether the unsaved changes may be left: asks the clerk; false to stay.
    bool settleChanges();

Q_SIGNALS:
    void rowsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildUi();
    void fillLookups();
    void showRow(const RowValues* row);
    std::vector<QVariant> readInput() const;
    void focusField(int field);
    void onCurrentChanged(const QModelIndex& current, const QModelIndex& previous);
    void selectRow(const RowValues& row);
    void setDirty(bool dirty);
    int currentSourceRow() const;
    void updateCount();
    void fitColumns();

    MasterDataStore m_store;
    MasterRowsModel* m_model = nullptr;
    QSortFilterProxyModel* m_proxy = nullptr;
    QTableView* m_view = nullptr;
    QLineEdit* m_filter = nullptr;
    QLabel* m_count = nullptr;
    QLabel* m_formTitle = nullptr;
    QWidget* m_form = nullptr;
    QPushButton* m_new = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_delete = nullptr;
    QPushButton* m_revert = nullptr;
    std::vector<QWidget*> m_editors; // one per field, null for hidden fields
    MasterDataEditor* m_detail = nullptr;

    std::optional<RowValues> m_original; // the saved row in the form; empty for a new row
    QVariant m_parentKey;
    bool m_dirty = false;
    bool m_loading = false;
};

} // namespace gm::host
