#include "services/ReferentialGuard.h"

#include "services/Objection.h"

#include "datastore/Conn.h"
#include "datastore/Schema.h"
#include "datastore/Sql.h"

#include <QHash>

#include <algorithm>

namespace gm {

namespace {

const QString kSource = QStringLiteral("Referential check");

// Identifiers cannot be bound. Every one placed in a statement here comes from the
// database's own catalog, and is quoted so that it names exactly what the catalog named.
QString quoteIdentifier(const QString& name) {
    QString doubled = name;
    doubled.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

// A referencing table as the catalog reports it, with the schema it lives in on PostgreSQL.
struct CatalogKey {
    QString schema;
    ForeignKeyRef ref;
};

// A table's columns in their order, or only those of its primary key in key order.
QStringList sqliteColumns(const Conn& conn, const QString& table, bool keyOnly = false) {
    Query q(conn, keyOnly ? QStringLiteral("SELECT name FROM pragma_table_info(?) WHERE pk > 0 "
                                           "ORDER BY pk")
                          : QStringLiteral("SELECT name FROM pragma_table_info(?) ORDER BY cid"));
    q.bind(table).exec();
    QStringList columns;
    while (q.next())
        columns << toText(q.value(0));
    return columns;
}

QString sqliteTableName(const Conn& conn, const QString& table) {
    Query q(conn, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                 "AND lower(name) = lower(?)"));
    q.bind(table).exec();
    return q.next() ? toText(q.value(0)) : QString();
}

std::vector<CatalogKey> sqliteKeys(const Conn& conn, const QString& table) {
    const QString parent = sqliteTableName(conn, table);
    if (parent.isEmpty())
        throw DbError(QStringLiteral("There is no table %1 to check for references.").arg(table),
                      kSource);
    // One row per column of each foreign key; "to" is null where the key names no columns
    // and so points at the primary key.
    Query q(conn, QStringLiteral("SELECT m.name, f.id, f.seq, f.\"from\", f.\"to\" "
                                 "FROM sqlite_master m, pragma_foreign_key_list(m.name) f "
                                 "WHERE m.type = 'table' AND lower(f.\"table\") = lower(?) "
                                 "ORDER BY lower(m.name), m.name, f.id, f.seq"));
    q.bind(parent).exec();
    std::vector<CatalogKey> keys;
    QString lastTable;
    qint64 lastId = -1;
    QStringList parentKey;
    bool parentKeyRead = false;
    while (q.next()) {
        const QString child = toText(q.value(0));
        const qint64 id = toInt(q.value(1));
        const int seq = int(toInt(q.value(2)));
        if (keys.empty() || child != lastTable || id != lastId) {
            keys.push_back({QString(), {child, {}}});
            lastTable = child;
            lastId = id;
        }
        QString to = toText(q.value(4));
        if (to.isEmpty()) {
            if (!parentKeyRead) {
                parentKey = sqliteColumns(conn, parent, true);
                parentKeyRead = true;
            }
            if (seq >= parentKey.size())
                throw DbError(QStringLiteral("The foreign key of %1 does not match the key of %2.")
                                  .arg(child, parent),
                              kSource);
            to = parentKey[seq];
        }
        keys.back().ref.columns.emplace_back(to, toText(q.value(3)));
    }
    return keys;
}

QStringList postgresColumns(const Conn& conn, const QString& schema, const QString& table) {
    Query q(conn, QStringLiteral("SELECT a.attname FROM pg_attribute a "
                                 "JOIN pg_class c ON c.oid = a.attrelid "
                                 "JOIN pg_namespace n ON n.oid = c.relnamespace "
                                 "WHERE n.nspname = ? AND c.relname = ? "
                                 "AND a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attnum"));
    q.bind({schema, table}).exec();
    QStringList columns;
    while (q.next())
        columns << toText(q.value(0));
    return columns;
}

std::vector<CatalogKey> postgresKeys(const Conn& conn, const QString& table) {
    // to_regclass reads the name as SQL would, folding it to lower case and looking along the
    // search path, so it finds the table an unquoted name in a statement would find; a table
    // created under a quoted mixed-case name is found by its exact spelling.
    const QVariant oid =
        scalar(conn,
               QStringLiteral("SELECT CAST(COALESCE(to_regclass(?), to_regclass(quote_ident(?))) "
                              "AS bigint)"),
               {table, table});
    if (oid.isNull())
        throw DbError(QStringLiteral("There is no table %1 to check for references.").arg(table),
                      kSource);
    Query q(conn,
            QStringLiteral(
                "SELECT n.nspname, c.relname, con.oid, fk.attname, pk.attname "
                "FROM pg_constraint con "
                "JOIN pg_class c ON c.oid = con.conrelid "
                "JOIN pg_namespace n ON n.oid = c.relnamespace "
                "CROSS JOIN LATERAL unnest(con.conkey, con.confkey) WITH ORDINALITY "
                "AS k(fkcol, pkcol, ord) "
                "JOIN pg_attribute fk ON fk.attrelid = con.conrelid AND fk.attnum = k.fkcol "
                "JOIN pg_attribute pk ON pk.attrelid = con.confrelid AND pk.attnum = k.pkcol "
                "WHERE con.contype = 'f' AND con.confrelid = CAST(? AS oid) "
                "ORDER BY lower(c.relname), c.relname, n.nspname, con.conname, con.oid, k.ord"));
    q.bind(toInt(oid)).exec();
    std::vector<CatalogKey> keys;
    QString lastOid;
    while (q.next()) {
        const QString oid = toText(q.value(2));
        if (keys.empty() || oid != lastOid) {
            keys.push_back({toText(q.value(0)), {toText(q.value(1)), {}}});
            lastOid = oid;
        }
        keys.back().ref.columns.emplace_back(toText(q.value(4)), toText(q.value(3)));
    }
    return keys;
}

std::vector<CatalogKey> catalogKeys(const Conn& conn, const QString& table) {
    try {
        return conn.isPostgres() ? postgresKeys(conn, table) : sqliteKeys(conn, table);
    } catch (const DbError& e) {
        if (e.source() == kSource)
            throw;
        throw DbError(QStringLiteral("The references of %1 could not be read: %2")
                          .arg(table, e.description()),
                      kSource);
    }
}

} // namespace

std::vector<ForeignKeyRef> referencingForeignKeys(const Conn& conn, const QString& table) {
    std::vector<ForeignKeyRef> refs;
    for (CatalogKey& k : catalogKeys(conn, table)) {
        k.ref.table = canonicalTableName(k.ref.table);
        refs.push_back(std::move(k.ref));
    }
    return refs;
}

QString FindReferencingTable(const Conn& conn, const QString& table, const DocumentKey& keys,
                             const QStringList& exclusions) {
    if (keys.empty())
        throw DbError(QStringLiteral("No key was given to check the references of %1.").arg(table),
                      kSource);
    const std::vector<CatalogKey> found = catalogKeys(conn, table);

    // Columns of referencing tables, read once per table when a key column is not part of a
    // foreign key and must be found in the table under its own name.
    QHash<QString, QStringList> columnsOf;
    auto columnsFor = [&](const CatalogKey& k) -> const QStringList& {
        const QString id = k.schema + QLatin1Char('.') + k.ref.table;
        auto it = columnsOf.find(id);
        if (it == columnsOf.end())
            it = columnsOf.insert(id, conn.isPostgres()
                                          ? postgresColumns(conn, k.schema, k.ref.table)
                                          : sqliteColumns(conn, k.ref.table));
        return *it;
    };

    for (const CatalogKey& k : found) {
        const bool excluded =
            std::any_of(exclusions.begin(), exclusions.end(), [&](const QString& x) {
                return x.trimmed().compare(k.ref.table, Qt::CaseInsensitive) == 0;
            });
        if (excluded)
            continue;

        QStringList conditions;
        for (const KeyValue& key : keys) {
            QString column;
            // The referencing table may call the key column differently; its foreign key
            // says what.
            for (const auto& [pkColumn, fkColumn] : k.ref.columns)
                if (pkColumn.compare(key.column, Qt::CaseInsensitive) == 0) {
                    column = fkColumn;
                    break;
                }
            if (column.isEmpty()) {
                for (const QString& c : columnsFor(k))
                    if (c.compare(key.column, Qt::CaseInsensitive) == 0) {
                        column = c;
                        break;
                    }
            }
            if (column.isEmpty())
                throw DbError(QStringLiteral("The table %1 refers to %2 but has no column %3.")
                                  .arg(canonicalTableName(k.ref.table), table, key.column),
                              kSource);
            conditions << quoteIdentifier(column) + QStringLiteral(" = ?");
        }

        QString target = quoteIdentifier(k.ref.table);
        if (conn.isPostgres())
            target.prepend(quoteIdentifier(k.schema) + QLatin1Char('.'));
        Query q(conn, QStringLiteral("SELECT 1 FROM %1 WHERE %2 LIMIT 1")
                          .arg(target, conditions.join(QStringLiteral(" AND "))));
        for (const KeyValue& key : keys)
            q.bind(key.value);
        q.exec();
        if (q.next())
            return canonicalTableName(k.ref.table);
    }
    return QString();
}

QString referencedRefusal(const QString& table) {
    return QStringLiteral("Cannot remove this invoice because it is used in (") + table +
           QStringLiteral(") table");
}

void refuseIfReferenced(const Conn& conn, const QString& table, const DocumentKey& keys,
                        const QStringList& exclusions) {
    const QString usedIn = FindReferencingTable(conn, table, keys, exclusions);
    if (!usedIn.isEmpty())
        throw Objected(Objection::warning(referencedRefusal(usedIn)));
}

} // namespace gm
