#pragma once

#include <QAbstractTableModel>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <map>
#include <vector>

namespace gm {

class Conn;

// How a search column shows its field.
enum class CellFormat {
    Text,
    Number,           // plain number, no trailing zeros
    Date,             // dd/MM/yyyy
    DateHour,         // dd/MM/yyyy and the hour with AM/PM
    Fixed,            // two decimals
    QuantityWithMode, // at most six characters of the number, then the next field's text
};

struct SearchColumn {
    const char* caption;
    int field; // position in the statement's result
    CellFormat format;
    int width;
};

// The rows of one search: every field as read, kept in one flat block. A cell's text is made
// only when the grid asks for it, so a long list costs the reading and nothing more.
// On SQLite statements are prepared once per text and reused, since a search runs again on
// each keystroke. A list in key order can be read a page at a time: the view asks for the next
// page as the user scrolls, and each page is a statement of its own that starts after the
// last key read, so no cursor stays open while other statements use the connection. A page
// holds a number of keys; a key may stand on several rows, and a page never splits them.
class SearchRowsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    SearchRowsModel(std::vector<SearchColumn> columns, QObject* parent);

    // Replaces the rows with the result of `sql` run with `binds`; throws DbError.
    void load(const Conn& conn, const QString& sql, const QVariantList& binds);
    // The statement for the rows after `lastKey` (null for the first page), its values
    // appended to `binds`; it reads the rows of at most `keys` keys, all the rest for 0.
    using PageStatement =
        std::function<QString(const QVariant& lastKey, int keys, QVariantList& binds)>;
    // Replaces the rows with the first page; a full page means there may be more. `conn`
    // must outlive the model's paging. Throws DbError.
    void loadPaged(const Conn& conn, PageStatement page, int keyField, int pageSize);
    // Reads the rows of the next `keys` keys, or of all the rest for 0, in one statement.
    // Throws DbError and then leaves the rows read before as they were.
    void fetchKeys(int keys);
    // Reads every page not read yet, in one statement; a failure is told as fetchMore's is.
    void fetchAll();
    // For a statement that cannot group its rows cheaply: a row equal in every field to the
    // one before it is left out. Its order must bring equal rows together.
    void setDropRepeats(bool drop) { m_dropRepeats = drop; }
    // For a list in rising key order: reads the rows of the keys after `afterKey`, the end
    // of the list, ahead of the rows between, which paging goes on to read into the gap, so a
    // caller that must show the last row need not wait for the whole list. The rows read in
    // order so far come first, the end after them. Throws DbError.
    void readEnd(const QVariant& afterKey);
    // The rows read in order from the start: all rows, unless readEnd left a gap.
    int contiguousRows() const { return m_rows; }
    // The key of the last row read in order from the start; null when there is none.
    QVariant lastKey() const;
    void clear();
    QVariant field(int row, int field) const;
    int columnWidth(int column) const { return m_columns[size_t(column)].width; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    // The view calls this while painting, so a failure does not throw: paging stops and
    // fetchFailed says why.
    void fetchMore(const QModelIndex& parent) override;

    static QString formatCell(CellFormat format, const QVariant& value, const QVariant& next);

Q_SIGNALS:
    void fetchFailed(const QString& description, const QString& source);

private:
    // Appends the rows read to `fields` and returns how many keys they hold.
    int read(const Conn& conn, const QString& sql, const QVariantList& binds,
             std::vector<QVariant>& fields, int* rows);
    // The rows of the end read ahead; the gap closes when paging reaches their first key.
    void closeGapIfReached(size_t shown, int& rows);
    void dropEnd();

    std::vector<SearchColumn> m_columns;
    std::vector<QVariant> m_fields; // row after row, m_width fields each
    int m_width = 0;
    int m_rows = 0;
    std::map<QString, QSqlQuery> m_statements;
    QString m_connection;
    const Conn* m_pagingConn = nullptr;
    PageStatement m_page; // empty when the list was read whole
    int m_keyField = 0;
    int m_pageSize = 0;
    bool m_more = false;
    std::vector<QVariant> m_end; // rows read ahead by readEnd, m_width fields each
    int m_endRows = 0;
    bool m_dropRepeats = false;
};

} // namespace gm
