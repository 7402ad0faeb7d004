#include "datastore/SchemaParts.h"

namespace gm::schema {

QStringList sqliteRoutineStatements() {
    return {};
}
QStringList postgresRoutineStatements() {
    return {};
}

} // namespace gm::schema
