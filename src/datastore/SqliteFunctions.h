#pragma once

struct sqlite3;

namespace gm {

// The server routines that PostgreSQL holds as functions live on each SQLite connection.
void registerSqliteFunctions(sqlite3* handle);

} // namespace gm
