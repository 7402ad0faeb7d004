#pragma once

#include <QtGlobal>

namespace gm {

// What a document's checks need to know about the numbers already given out. A store answers
// from the database; checks can be exercised against any other answer.
class DocumentKeys {
public:
    virtual ~DocumentKeys() = default;
    // The number a new document would take now: one above the highest in use.
    virtual qint64 nextDocumentId() const = 0;
    virtual bool exists(qint64 documentId) const = 0;
};

} // namespace gm
