#include "datastore/SqliteFunctions.h"

#include <sqlite3.h>

namespace gm {

void registerSqliteFunctions(sqlite3* handle) { (void)handle; }

} // namespace gm
