#include "datastore/Schema.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"

#include <QSqlError>
#include <QSqlQuery>

namespace gm {

int latestSchemaVersion() {
    const auto& all = schemaMigrations();
    return all.empty() ? 0 : all.back().version;
}

int storedSchemaVersion(const Conn& conn) {
    QSqlQuery q(conn.db());
    if (!q.exec(QStringLiteral("SELECT COALESCE(MAX(Version), 0) FROM SchemaVersion")) || !q.next())
        return 0;
    return q.value(0).toInt();
}

void migrateSchema(const Conn& conn) {
    {
        QSqlQuery q(conn.db());
        const QString ddl =
            conn.isPostgres()
                ? QStringLiteral("CREATE TABLE IF NOT EXISTS SchemaVersion ("
                                 "Version integer PRIMARY KEY, "
                                 "AppliedAt timestamp NOT NULL DEFAULT now())")
                : QStringLiteral("CREATE TABLE IF NOT EXISTS SchemaVersion ("
                                 "Version integer PRIMARY KEY, "
                                 "AppliedAt text NOT NULL DEFAULT CURRENT_TIMESTAMP)");
        if (!q.exec(ddl))
            throw DbError(q.lastError().text(), QStringLiteral("Database"));
    }
    const int stored = storedSchemaVersion(conn);
    const int latest = latestSchemaVersion();
    if (stored > latest)
        throw DbError(QStringLiteral("This database was written by a newer grainmill (schema %1); "
                                     "this program knows schema %2 at most. Please install the "
                                     "newer grainmill to work with it.")
                          .arg(stored)
                          .arg(latest),
                      QStringLiteral("Database"));
    for (const Migration& m : schemaMigrations()) {
        if (m.version <= stored)
            continue;
        Transaction tx(conn, Transaction::Write);
        // Two programs may open a new database at once: the second waits for the first's step
        // and then finds it applied.
        if (conn.isPostgres()) {
            QSqlQuery lock(conn.db()); // a LOCK cannot be prepared
            if (!lock.exec(QStringLiteral("LOCK TABLE SchemaVersion IN EXCLUSIVE MODE")))
                throw DbError(lock.lastError().text(), QStringLiteral("Database"));
        }
        if (storedSchemaVersion(conn) >= m.version)
            continue;
        const QStringList& steps = conn.isPostgres() ? m.postgres : m.sqlite;
        for (const QString& sql : steps) {
            QSqlQuery q(conn.db());
            if (!q.exec(sql))
                throw DbError(QStringLiteral("Schema step %1 failed: %2\n%3")
                                  .arg(m.version)
                                  .arg(q.lastError().text(), sql.left(200)),
                              QStringLiteral("Database"));
        }
        execute(conn, QStringLiteral("INSERT INTO SchemaVersion (Version) VALUES (?)"),
                {m.version});
        tx.commit();
    }
}

} // namespace gm
