#include "search/SearchRows.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "services/Numeric.h"

#include <QSqlError>
#include <QSqlRecord>

namespace gm {

SearchRowsModel::SearchRowsModel(std::vector<SearchColumn> columns, QObject* parent)
    : QAbstractTableModel(parent), m_columns(std::move(columns)) {}

int SearchRowsModel::read(const Conn& conn, const QString& sql, const QVariantList& binds,
                          std::vector<QVariant>& fields, int* rows) {
    if (m_connection != conn.connectionName()) {
        m_statements.clear();
        m_connection = conn.connectionName();
    }
    // A server plans a statement kept for reuse, after a few runs, once for any values; such a
    // plan may sort a whole year where the values at hand let it stop after a page. There each
    // run is planned for its own values instead.
    const bool reuse = !conn.isPostgres();
    auto it = m_statements.find(sql);
    QSqlQuery fresh;
    if (!reuse || it == m_statements.end()) {
        QSqlQuery prepared(conn.db());
        prepared.setForwardOnly(true);
        if (!prepared.prepare(sql))
            throw DbError(prepared.lastError().text(), QStringLiteral("Database"));
        if (reuse)
            it = m_statements.emplace(sql, std::move(prepared)).first;
        else
            fresh = std::move(prepared);
    }
    QSqlQuery& query = reuse ? it->second : fresh;
    for (int i = 0; i < binds.size(); ++i)
        query.bindValue(i, binds[i]);
    if (!query.exec()) {
        const QString why = query.lastError().text();
        if (reuse)
            m_statements.erase(it);
        throw DbError(why, QStringLiteral("Database"));
    }

    const int width = query.record().count();
    m_width = width;
    const size_t start = fields.size();
    int count = 0;
    int keys = 0;
    while (query.next()) {
        const size_t row = fields.size();
        for (int f = 0; f < width; ++f)
            fields.push_back(query.value(f));
        auto same = [&](int f) {
            return fields[row + size_t(f)] == fields[row - size_t(width) + size_t(f)];
        };
        // Rows come in key order, so only a row of the same key as the one before can repeat.
        if (row == start || !same(m_keyField)) {
            ++keys;
        } else if (m_dropRepeats) {
            bool repeat = true;
            for (int f = 0; f < width && repeat; ++f)
                repeat = f == m_keyField || same(f);
            if (repeat) {
                fields.resize(row);
                continue;
            }
        }
        ++count;
    }
    query.finish();
    if (rows)
        *rows = count;
    return keys;
}

void SearchRowsModel::load(const Conn& conn, const QString& sql, const QVariantList& binds) {
    clear();
    std::vector<QVariant> fields;
    int rows = 0;
    read(conn, sql, binds, fields, &rows);
    beginResetModel();
    m_fields = std::move(fields);
    m_rows = rows;
    endResetModel();
}

void SearchRowsModel::loadPaged(const Conn& conn, PageStatement page, int keyField, int pageSize) {
    clear();
    m_keyField = keyField;
    QVariantList binds;
    const QString sql = page(QVariant(), pageSize, binds);
    std::vector<QVariant> fields;
    int rows = 0;
    const int keys = read(conn, sql, binds, fields, &rows);
    beginResetModel();
    m_fields = std::move(fields);
    m_rows = rows;
    m_pagingConn = &conn;
    m_page = std::move(page);
    m_pageSize = pageSize;
    m_more = keys >= pageSize;
    endResetModel();
}

bool SearchRowsModel::canFetchMore(const QModelIndex& parent) const {
    return !parent.isValid() && m_more;
}

void SearchRowsModel::fetchKeys(int keys) {
    if (!m_more)
        return;
    QVariantList binds;
    const QString sql = m_page(lastKey(), keys, binds);
    // Read straight behind the rows shown: a long list is not copied a second time. The view
    // sees the new rows only once they are counted.
    const size_t shown = m_fields.size();
    int rows = 0;
    int read = 0;
    try {
        read = this->read(*m_pagingConn, sql, binds, m_fields, &rows);
    } catch (...) {
        m_fields.resize(shown);
        dropEnd();
        throw;
    }
    m_more = keys > 0 && read >= keys;
    closeGapIfReached(shown, rows);
    if (rows > 0) {
        // Ahead of the end read before, if any: its rows move down and stay as they are.
        beginInsertRows({}, m_rows, m_rows + rows - 1);
        m_rows += rows;
        endInsertRows();
    }
    if (m_endRows > 0 && !m_more) {
        // The gap is closed: the end read ahead follows on from the rows read in order.
        m_fields.insert(m_fields.end(), m_end.begin(), m_end.end());
        m_rows += m_endRows;
        m_end.clear();
        m_endRows = 0;
    }
}

void SearchRowsModel::closeGapIfReached(size_t shown, int& rows) {
    if (m_endRows == 0)
        return;
    const qint64 endFirstKey = m_end[size_t(m_keyField)].toLongLong();
    for (int r = 0; r < rows; ++r) {
        const size_t at = shown + size_t(r) * size_t(m_width);
        if (m_fields[at + size_t(m_keyField)].toLongLong() >= endFirstKey) {
            m_fields.resize(at);
            rows = r;
            m_more = false;
            return;
        }
    }
}

void SearchRowsModel::readEnd(const QVariant& afterKey) {
    if (!m_more || m_endRows > 0)
        return;
    QVariantList binds;
    const QString sql = m_page(afterKey, 0, binds);
    std::vector<QVariant> fields;
    int rows = 0;
    read(*m_pagingConn, sql, binds, fields, &rows);
    if (rows == 0)
        return;
    const qint64 first = fields[size_t(m_keyField)].toLongLong();
    // Rows read in order have already reached the end: nothing lies between.
    if (m_rows > 0 && lastKey().toLongLong() >= first)
        return;
    beginInsertRows({}, m_rows, m_rows + rows - 1);
    m_end = std::move(fields);
    m_endRows = rows;
    endInsertRows();
}

void SearchRowsModel::dropEnd() {
    if (m_endRows == 0)
        return;
    // Paging has failed: better a list that stops short than one with rows missing inside.
    beginRemoveRows({}, m_rows, m_rows + m_endRows - 1);
    m_end.clear();
    m_endRows = 0;
    endRemoveRows();
}

void SearchRowsModel::fetchMore(const QModelIndex& parent) {
    if (!canFetchMore(parent))
        return;
    try {
        fetchKeys(m_pageSize);
    } catch (const DbError& e) {
        m_more = false;
        emit fetchFailed(e.description(), e.source());
    }
}

void SearchRowsModel::fetchAll() {
    try {
        fetchKeys(0);
    } catch (const DbError& e) {
        m_more = false;
        emit fetchFailed(e.description(), e.source());
    }
}

QVariant SearchRowsModel::lastKey() const {
    return field(m_rows - 1, m_keyField);
}

void SearchRowsModel::clear() {
    beginResetModel();
    m_fields.clear();
    m_rows = 0;
    m_end.clear();
    m_endRows = 0;
    m_page = {};
    m_pagingConn = nullptr;
    m_more = false;
    endResetModel();
}

QVariant SearchRowsModel::field(int row, int field) const {
    if (row < 0 || row >= m_rows + m_endRows || field < 0 || field >= m_width)
        return {};
    if (row >= m_rows)
        return m_end[size_t(row - m_rows) * size_t(m_width) + size_t(field)];
    return m_fields[size_t(row) * size_t(m_width) + size_t(field)];
}

int SearchRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows + m_endRows;
}

int SearchRowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant SearchRowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    if (role == Qt::DisplayRole) {
        const SearchColumn& c = m_columns[size_t(index.column())];
        return formatCell(c.format, field(index.row(), c.field), field(index.row(), c.field + 1));
    }
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
