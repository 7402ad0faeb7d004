#pragma once

#include <QStringList>

#include <vector>

namespace gm {

class Conn;

// One forward step of the schema. Each engine has its own statements; both must leave the
// same tables, columns, keys and server routines behind.
struct Migration {
    int version;
    QStringList sqlite;
    QStringList postgres;
};

// Every step this program knows, in ascending version order.
const std::vector<Migration>& schemaMigrations();
int latestSchemaVersion();

// Brings the database up to latestSchemaVersion(), each step in its own transaction, and
// records each step in SchemaVersion. Throws DbError for a database newer than this program.
void migrateSchema(const Conn& conn);
int storedSchemaVersion(const Conn& conn);

} // namespace gm

namespace gm {
// The tables of the schema in their own spelling ("Arrivals", "PContracts"): catalogs may
// report names folded to lower case, and messages must show them as the schema writes them.
const QStringList& schemaTableNames();
QString canonicalTableName(const QString& anyCase);
} // namespace gm
