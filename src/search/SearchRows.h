#pragma once

#include <QAbstractTableModel>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

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
// Statements are prepared once per text and reused, since a search runs again on each
// keystroke.
class SearchRowsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    SearchRowsModel(std::vector<SearchColumn> columns, QObject* parent);

    // Replaces the rows with the result of `sql` run with `binds`; throws DbError.
    void load(const Conn& conn, const QString& sql, const QVariantList& binds);
    void clear();
    QVariant field(int row, int field) const;
    int columnWidth(int column) const { return m_columns[size_t(column)].width; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    static QString formatCell(CellFormat format, const QVariant& value, const QVariant& next);

private:
    std::vector<SearchColumn> m_columns;
    std::vector<QVariant> m_fields; // row after row, m_width fields each
    int m_width = 0;
    int m_rows = 0;
    std::map<QString, QSqlQuery> m_statements;
    QString m_connection;
};

} // namespace gm
