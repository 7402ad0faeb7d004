#include "MasterDataStore.h"

#include "datastore/Conn.h"
#include "datastore/Schema.h"
#include "datastore/Sql.h"
#include "services/Numeric.h"
#include "services/ReferentialGuard.h"

#include <QLocale>

#include <algorithm>

namespace gm::host {

namespace {

// Table and column names below come only from the compiled-in table descriptions, never from the
// clerk, so they may stand in the statement text; every value is bound.

QVariant typedNull(FieldType type, bool intKey) {
    switch (type) {
    case FieldType::Integer:
        return QVariant(QMetaType(QMetaType::LongLong));
    case FieldType::Decimal:
        return QVariant(QMetaType(QMetaType::Double));
    case FieldType::Date:
        return QVariant(QMetaType(QMetaType::QDate));
    case FieldType::Lookup:
        return intKey ? QVariant(QMetaType(QMetaType::LongLong))
                      : QVariant(QMetaType(QMetaType::QString));
    case FieldType::Flag:
        return QVariant(0);
    case FieldType::Text:
        break;
    }
    return QVariant(QMetaType(QMetaType::QString));
}

bool isEmptyValue(const QVariant& v) {
    return v.isNull() || (v.typeId() == QMetaType::QString && v.toString().trimmed().isEmpty());
}

QVariant fromDb(const FieldDef& f, const QVariant& v) {
    if (f.type == FieldType::Flag)
        return QVariant(!v.isNull() && v.toInt() != 0);
    if (v.isNull())
        return f.type == FieldType::Text ? QVariant(QString()) : QVariant();
    switch (f.type) {
    case FieldType::Integer:
        return QVariant(v.toLongLong());
    case FieldType::Decimal:
        return QVariant(v.toDouble());
    case FieldType::Date:
        return QVariant(toDate(v));
    case FieldType::Lookup:
        return f.lookupIntKey ? QVariant(v.toLongLong()) : QVariant(v.toString());
    default:
        return QVariant(v.toString());
    }
}

bool sameValue(const QVariant& a, const QVariant& b) {
    if (a.isNull() || b.isNull())
        return a.isNull() == b.isNull();
    if (a.typeId() == QMetaType::QString || b.typeId() == QMetaType::QString)
        return a.toString() == b.toString();
    return a == b;
}

} // namespace

MasterDataStore::MasterDataStore(const Conn& conn, const TableDef& def)
    : m_conn(conn), m_def(def), m_lookups(def.fields.size()) {}

std::vector<int> MasterDataStore::fieldsOf(bool secondary) const {
    std::vector<int> out;
    for (size_t i = 0; i < m_def.fields.size(); ++i)
        if (m_def.fields[i].secondary == secondary)
            out.push_back(int(i));
    return out;
}

std::vector<int> MasterDataStore::insertedFields(bool secondary) const {
    std::vector<int> out;
    for (int i : fieldsOf(secondary))
        if (!m_def.fields[size_t(i)].generated)
            out.push_back(i);
    return out;
}

QString MasterDataStore::columnList(bool secondary) const {
    QStringList cols;
    for (int i : fieldsOf(secondary))
        cols << m_def.fields[i].column;
    return cols.join(QStringLiteral(", "));
}

std::vector<RowValues> MasterDataStore::load(const QVariant& parent) const {
    QStringList cols;
    for (const FieldDef& f : m_def.fields)
        cols << (f.secondary ? QStringLiteral("s.") : QStringLiteral("t.")) + f.column;
    QString sql =
        QStringLiteral("SELECT %1 FROM %2 t").arg(cols.join(QStringLiteral(", ")), m_def.table);
    if (!m_def.secondaryTable.isEmpty()) {
        const auto keys = m_def.keyFields();
        sql += QStringLiteral(" JOIN %1 s ON s.%2 = t.%3")
                   .arg(m_def.secondaryTable, m_def.secondaryKeyColumn,
                        m_def.fields[keys.front()].column);
    }
    const bool filtered = !m_def.parentColumn.isEmpty();
    if (filtered)
        sql += QStringLiteral(" WHERE t.%1 = ?").arg(m_def.parentColumn);
    if (!m_def.orderBy.isEmpty()) {
        const int order = m_def.fieldIndex(m_def.orderBy);
        const bool secondary = order >= 0 && m_def.fields[order].secondary;
        sql += QStringLiteral(" ORDER BY %1%2")
                   .arg(secondary ? QStringLiteral("s.") : QStringLiteral("t."), m_def.orderBy);
    }
    Query q(m_conn, sql);
    if (filtered)
        q.bind(parent.isNull() ? QVariant(QMetaType(QMetaType::LongLong)) : parent);
    q.exec();
    std::vector<RowValues> rows;
    while (q.next()) {
        RowValues row(m_def.fields.size());
        for (size_t i = 0; i < m_def.fields.size(); ++i)
            row[i] = fromDb(m_def.fields[i], q.value(int(i)));
        rows.push_back(std::move(row));
    }
    return rows;
}

LookupList MasterDataStore::lookupList(int field) const {
    auto& cached = m_lookups[size_t(field)];
    if (!cached) {
        LookupList list;
        Query q(m_conn, m_def.fields[size_t(field)].lookupSql);
        q.exec();
        while (q.next())
            list.push_back({toText(q.value(1)), toText(q.value(0))});
        cached = std::move(list);
    }
    return *cached;
}

void MasterDataStore::clearLookups() const {
    for (auto& l : m_lookups)
        l.reset();
}

qint64 MasterDataStore::nextKey(int field) const {
    const QString sql = QStringLiteral("SELECT COALESCE(MAX(%1), 0) + 1 FROM %2")
                            .arg(m_def.fields[size_t(field)].column, m_def.table);
    return toInt(scalar(m_conn, sql));
}

std::optional<Problem> MasterDataStore::parse(const TableDef& def,
                                              const std::vector<QVariant>& input, RowValues* row) {
    const QLocale c = QLocale::c();
    RowValues out(def.fields.size());
    for (size_t i = 0; i < def.fields.size(); ++i) {
        const FieldDef& f = def.fields[i];
        const QVariant in = i < input.size() ? input[i] : QVariant();
        const auto problem = [&](const QString& why) {
            return Problem{int(i), why.arg(f.caption)};
        };
        switch (f.type) {
        case FieldType::Text:
            out[i] = QVariant(in.toString().trimmed());
            break;
        case FieldType::Integer:
        case FieldType::Decimal: {
            if (in.typeId() != QMetaType::QString) {
                out[i] = in.isNull() ? QVariant() : in;
                break;
            }
            const QString t = in.toString().trimmed();
            if (t.isEmpty()) {
                out[i] = QVariant();
                break;
            }
            bool ok = false;
            if (f.type == FieldType::Integer) {
                const qint64 n = c.toLongLong(t, &ok);
                if (!ok)
                    return problem(QStringLiteral("%1 must be a whole number."));
                out[i] = QVariant(n);
            } else {
                const double d = c.toDouble(t, &ok);
                if (!ok)
                    return problem(QStringLiteral("%1 must be a number."));
                out[i] = QVariant(d);
            }
            break;
        }
        case FieldType::Flag:
            out[i] = QVariant(in.toBool());
            break;
        case FieldType::Date:
            out[i] = in.toDate().isValid() ? QVariant(in.toDate()) : QVariant();
            break;
        case FieldType::Lookup:
            if (isEmptyValue(in))
                out[i] = QVariant();
            else
                out[i] = f.lookupIntKey ? QVariant(in.toLongLong()) : QVariant(in.toString());
            break;
        }
    }
    *row = std::move(out);
    return std::nullopt;
}

std::optional<Problem> MasterDataStore::validate(const RowValues& row,
                                                 const RowValues* original) const {
    for (size_t i = 0; i < m_def.fields.size(); ++i) {
        const FieldDef& f = m_def.fields[i];
        const QVariant& v = row[i];
        if (f.generated)
            continue;
        if (f.required && isEmptyValue(v))
            return Problem{int(i), QStringLiteral("%1 must be filled in.").arg(f.caption)};
        if (f.type == FieldType::Text && f.maxLength > 0 && v.toString().size() > f.maxLength)
            return Problem{int(i), QStringLiteral("%1 may be at most %2 characters long.")
                                       .arg(f.caption)
                                       .arg(f.maxLength)};
        if (f.nonNegative && !v.isNull() &&
            (f.type == FieldType::Integer || f.type == FieldType::Decimal) && v.toDouble() < 0)
            return Problem{int(i), QStringLiteral("%1 cannot be below zero.").arg(f.caption)};
        if (f.key && f.autoKey && !v.isNull() && v.toLongLong() <= 0)
            return Problem{int(i), QStringLiteral("%1 must be 1 or more.").arg(f.caption)};
    }

    // The key: a new row may not take one that exists; a saved row's key does not change.
    const auto keys = m_def.keyFields();
    const bool generatedKey = std::any_of(keys.begin(), keys.end(),
                                          [&](int k) { return m_def.fields[size_t(k)].generated; });
    if (!original && !generatedKey) {
        QStringList cond;
        for (int k : keys)
            cond << m_def.fields[size_t(k)].column + QStringLiteral(" = ?");
        Query q(m_conn, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2")
                            .arg(m_def.table, cond.join(QStringLiteral(" AND "))));
        for (int k : keys)
            q.bind(bindable(k, row[size_t(k)]));
        q.exec();
        if (q.next() && toInt(q.value(0)) > 0) {
            const int shown = keys.size() == 1 ? keys.front() : keys.back();
            const FieldDef& f = m_def.fields[size_t(shown)];
            QString message =
                keys.size() == 1
                    ? QStringLiteral("%1 %2 is already used by another %3.")
                          .arg(f.caption, displayText(shown, row[size_t(shown)]), m_def.noun)
                    : QStringLiteral("This %1 is already in the list.").arg(m_def.noun);
            return Problem{shown, message};
        }
    }

    for (size_t i = 0; i < m_def.fields.size(); ++i) {
        const FieldDef& f = m_def.fields[i];
        if (!f.unique || isEmptyValue(row[i]))
            continue;
        if (original && sameValue((*original)[i], row[i]))
            continue;
        const QString table = f.secondary ? m_def.secondaryTable : m_def.table;
        // Names are unique without regard to case, as the lists are searched that way.
        QString sql = QStringLiteral("SELECT COUNT(*) FROM %1 WHERE LOWER(%2) = LOWER(?)")
                          .arg(table, f.column);
        if (f.type != FieldType::Text)
            sql = QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ?").arg(table, f.column);
        if (original) {
            for (int k : keys)
                sql += QStringLiteral(" AND NOT (%1 = ?)").arg(m_def.fields[size_t(k)].column);
        }
        Query q(m_conn, sql);
        q.bind(bindable(int(i), row[i]));
        if (original)
            for (int k : keys)
                q.bind(bindable(k, (*original)[size_t(k)]));
        q.exec();
        if (q.next() && toInt(q.value(0)) > 0)
            return Problem{int(i), QStringLiteral("%1 \"%2\" already exists.")
                                       .arg(f.caption, displayText(int(i), row[i]))};
    }
    return std::nullopt;
}

QVariant MasterDataStore::bindable(int field, const QVariant& value) const {
    const FieldDef& f = m_def.fields[size_t(field)];
    if (isEmptyValue(value) && f.type != FieldType::Text && f.type != FieldType::Flag)
        return typedNull(f.type, f.lookupIntKey);
    switch (f.type) {
    case FieldType::Flag:
        return QVariant(value.toBool() ? 1 : 0);
    case FieldType::Integer:
        return QVariant(value.toLongLong());
    case FieldType::Decimal:
        return QVariant(value.toDouble());
    case FieldType::Date:
        return QVariant(value.toDate());
    case FieldType::Lookup:
        return f.lookupIntKey ? QVariant(value.toLongLong()) : QVariant(value.toString());
    case FieldType::Text:
        break;
    }
    return nullIfEmpty(value.toString());
}

QString MasterDataStore::keyCondition(bool secondary) const {
    if (secondary)
        return m_def.secondaryKeyColumn + QStringLiteral(" = ?");
    QStringList cond;
    for (int k : m_def.keyFields())
        cond << m_def.fields[size_t(k)].column + QStringLiteral(" = ?");
    return cond.join(QStringLiteral(" AND "));
}

void MasterDataStore::bindKey(Query& q, const RowValues& row) const {
    for (int k : m_def.keyFields())
        q.bind(bindable(k, row[size_t(k)]));
}

void MasterDataStore::insert(const RowValues& row) const {
    if (auto p = validate(row, nullptr))
        throw DbError(p->message, m_def.title);
    Transaction tx(m_conn, Transaction::Write);
    for (bool secondary : {false, true}) {
        if (secondary && m_def.secondaryTable.isEmpty())
            break;
        const auto fields = insertedFields(secondary);
        QStringList cols, marks;
        if (secondary) {
            cols << m_def.secondaryKeyColumn;
            marks << QStringLiteral("?");
        }
        for (int i : fields) {
            cols << m_def.fields[size_t(i)].column;
            marks << QStringLiteral("?");
        }
        Query q(m_conn,
                QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                    .arg(secondary ? m_def.secondaryTable : m_def.table,
                         cols.join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))));
        if (secondary)
            bindKey(q, row);
        for (int i : fields)
            q.bind(bindable(i, row[size_t(i)]));
        q.exec();
    }
    tx.commit();
}

void MasterDataStore::update(const RowValues& original, const RowValues& row) const {
    if (auto p = validate(row, &original))
        throw DbError(p->message, m_def.title);
    Transaction tx(m_conn, Transaction::Write);
    for (bool secondary : {false, true}) {
        if (secondary && m_def.secondaryTable.isEmpty())
            break;
        QStringList sets;
        std::vector<int> changed;
        for (int i : fieldsOf(secondary)) {
            if (m_def.fields[size_t(i)].key)
                continue;
            sets << m_def.fields[size_t(i)].column + QStringLiteral(" = ?");
            changed.push_back(i);
        }
        if (sets.isEmpty())
            continue;
        Query q(m_conn, QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                            .arg(secondary ? m_def.secondaryTable : m_def.table,
                                 sets.join(QStringLiteral(", ")), keyCondition(secondary)));
        for (int i : changed)
            q.bind(bindable(i, row[size_t(i)]));
        bindKey(q, original);
        q.exec();
        if (q.numRowsAffected() == 0)
            throw DbError(QStringLiteral("This %1 was removed by someone else in the meantime.")
                              .arg(m_def.noun),
                          m_def.title);
    }
    tx.commit();
}

QString MasterDataStore::referencedBy(const RowValues& row) const {
    DocumentKey key;
    for (int k : m_def.keyFields())
        key.push_back({m_def.fields[size_t(k)].column, bindable(k, row[size_t(k)])});
    if (!m_def.secondaryTable.isEmpty()) {
        const DocumentKey partyKey{{m_def.secondaryKeyColumn, key.front().value}};
        const QString hit = FindReferencingTable(m_conn, m_def.secondaryTable, partyKey);
        if (!hit.isEmpty())
            return hit;
    }
    if (!m_def.childColumn.isEmpty()) {
        const auto keys = m_def.keyFields();
        const QString sql = QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ?")
                                .arg(m_def.table, m_def.childColumn);
        if (toInt(scalar(m_conn, sql, {key.front().value})) > 0)
            return m_def.table;
    }
    QStringList exclusions = m_def.ownedBy;
    if (!m_def.secondaryTable.isEmpty())
        exclusions << m_def.secondaryTable;
    return FindReferencingTable(m_conn, m_def.table, key, exclusions);
}

QString MasterDataStore::inUseMessage(const QString& table) const {
    return QStringLiteral("This %1 cannot be deleted: it is used in (%2).")
        .arg(m_def.noun, canonicalTableName(table));
}

void MasterDataStore::remove(const RowValues& row) const {
    Transaction tx(m_conn, Transaction::Write);
    // Asked inside the removal's transaction so no document can slip in between.
    const QString hit = referencedBy(row);
    if (!hit.isEmpty())
        throw DbError(inUseMessage(hit), m_def.title);
    auto run = [&](const QString& sql, bool secondary) {
        Query q(m_conn, sql);
        if (secondary)
            q.bind(bindable(m_def.keyFields().front(), row[size_t(m_def.keyFields().front())]));
        else
            bindKey(q, row);
        try {
            q.exec();
        } catch (const DbError& e) {
            // The database's own keys are the last word when the guard missed a dependant.
            throw DbError(QStringLiteral("This %1 cannot be deleted: other records still use "
                                         "it.\n\n%2")
                              .arg(m_def.noun, e.description()),
                          m_def.title);
        }
    };
    for (const QString& owned : m_def.ownedBy) {
        // Rows that belong to this one (a process's components) go with it.
        const int parentKey = m_def.keyFields().front();
        Query q(m_conn, QStringLiteral("DELETE FROM %1 WHERE %2 = ?")
                            .arg(owned, m_def.fields[size_t(parentKey)].column));
        q.bind(bindable(parentKey, row[size_t(parentKey)]));
        q.exec();
    }
    if (!m_def.secondaryTable.isEmpty())
        run(QStringLiteral("DELETE FROM %1 WHERE %2").arg(m_def.secondaryTable, keyCondition(true)),
            true);
    run(QStringLiteral("DELETE FROM %1 WHERE %2").arg(m_def.table, keyCondition(false)), false);
    tx.commit();
}

QString MasterDataStore::displayText(int field, const QVariant& value) const {
    const FieldDef& f = m_def.fields[size_t(field)];
    if (value.isNull())
        return QString();
    switch (f.type) {
    case FieldType::Flag:
        return value.toBool() ? QStringLiteral("\u2713") : QString();
    case FieldType::Decimal:
        return formatNumber(value.toDouble(), 4);
    case FieldType::Date:
        return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    case FieldType::Lookup: {
        const QString key = value.toString();
        for (const LookupItem& item : lookupList(field))
            if (item.key == key)
                return item.name;
        return key;
    }
    default:
        return value.toString();
    }
}

} // namespace gm::host
