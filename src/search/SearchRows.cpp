#include "search/SearchRows.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "services/Numeric.h"

#include <QSqlError>
#include <QSqlRecord>

namespace gm {

SearchRowsModel::SearchRowsModel(std::vector<SearchColumn> columns, QObject* parent)
    : QAbstractTableModel(parent), m_columns(std::move(columns)) {}

void SearchRowsModel::load(const Conn& conn, const QString& sql, const QVariantList& binds) {
    if (m_connection != conn.connectionName()) {
        m_statements.clear();
        m_connection = conn.connectionName();
    }
    auto it = m_statements.find(sql);
    if (it == m_statements.end()) {
        QSqlQuery query(conn.db());
        query.setForwardOnly(true);
        if (!query.prepare(sql))
            throw DbError(query.lastError().text(), QStringLiteral("Database"));
        it = m_statements.emplace(sql, std::move(query)).first;
    }
    QSqlQuery& query = it->second;
    for (int i = 0; i < binds.size(); ++i)
        query.bindValue(i, binds[i]);
    if (!query.exec()) {
        const QString why = query.lastError().text();
        m_statements.erase(it);
        throw DbError(why, QStringLiteral("Database"));
    }

    std::vector<QVariantList> fields;
    std::vector<QStringList> texts;
    const int width = query.record().count();
    while (query.next()) {
        QVariantList row;
        row.reserve(width);
        for (int f = 0; f < width; ++f)
            row << query.value(f);
        QStringList shown;
        shown.reserve(int(m_columns.size()));
        for (const SearchColumn& c : m_columns) {
            const QVariant next = c.field + 1 < width ? row[c.field + 1] : QVariant();
            shown << formatCell(c.format, row[c.field], next);
        }
        fields.push_back(std::move(row));
        texts.push_back(std::move(shown));
    }
    query.finish();

    beginResetModel();
    m_fields = std::move(fields);
    m_texts = std::move(texts);
    endResetModel();
}

void SearchRowsModel::clear() {
    beginResetModel();
    m_fields.clear();
    m_texts.clear();
    endResetModel();
}

QVariant SearchRowsModel::field(int row, int field) const {
    if (row < 0 || row >= int(m_fields.size()) || field < 0 ||
        field >= m_fields[size_t(row)].size())
        return {};
    return m_fields[size_t(row)][field];
}

int SearchRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_texts.size());
}

int SearchRowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant SearchRowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= int(m_texts.size()))
        return {};
    if (role == Qt::DisplayRole)
        return m_texts[size_t(index.row())].value(index.column());
    if (role == Qt::TextAlignmentRole) {
        const CellFormat f = m_columns[size_t(index.column())].format;
        const bool numeric = f == CellFormat::Number || f == CellFormat::Fixed;
        return QVariant::fromValue(Qt::AlignVCenter | (numeric ? Qt::AlignRight : Qt::AlignLeft));
    }
    return {};
}

QVariant SearchRowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < int(m_columns.size()))
        return QString::fromLatin1(m_columns[size_t(section)].caption);
    return QAbstractTableModel::headerData(section, orientation, role);
}

QString SearchRowsModel::formatCell(CellFormat format, const QVariant& value,
                                    const QVariant& next) {
    if (value.isNull() && format != CellFormat::QuantityWithMode)
        return {};
    switch (format) {
    case CellFormat::Text:
        return value.toString();
    case CellFormat::Number:
        return formatNumber(value.toDouble());
    case CellFormat::Fixed:
        return formatFixed(value.toDouble());
    case CellFormat::Date:
        return formatDate(toDate(value));
    case CellFormat::DateHour:
        return toDateTime(value).toString(QStringLiteral("dd/MM/yyyy hh AP"));
    case CellFormat::QuantityWithMode:
        // Lists have room for six characters of the quantity; the mode says what it counts.
        return (value.isNull() ? QString() : formatNumber(value.toDouble()).left(6)) + toText(next);
    }
    return {};
}

} // namespace gm
