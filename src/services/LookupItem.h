#pragma once

#include <QString>

#include <vector>

namespace gm {

// One row of a combo's list: the text a clerk sees and types, and the hidden key beside it.
// A null name or key from the database reads as the empty text.
struct LookupItem {
    QString name;
    QString key;
    friend bool operator==(const LookupItem&, const LookupItem&) = default;
};

using LookupList = std::vector<LookupItem>;

} // namespace gm
