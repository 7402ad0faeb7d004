#include "datastore/Schema.h"

namespace gm {

const std::vector<Migration>& schemaMigrations() {
    static const std::vector<Migration> all = {};
    return all;
}

} // namespace gm

namespace gm {

const QStringList& schemaTableNames() {
    static const QStringList names = {};
    return names;
}

QString canonicalTableName(const QString& anyCase) {
    for (const QString& n : schemaTableNames())
        if (n.compare(anyCase, Qt::CaseInsensitive) == 0)
            return n;
    return anyCase;
}

} // namespace gm
