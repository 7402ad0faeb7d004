#pragma once

struct sqlite3;

namespace gm {

// The server routines that PostgreSQL holds as functions live on each SQLite connection, with
// CaseFold(text), which folds the case of every letter for a LIKE that ignores case.
void registerSqliteFunctions(sqlite3* handle);

} // namespace gm
