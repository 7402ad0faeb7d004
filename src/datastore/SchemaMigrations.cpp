#include "datastore/Schema.h"

namespace gm {

const std::vector<Migration>& schemaMigrations() {
    static const std::vector<Migration> all = {};
    return all;
}

} // namespace gm
