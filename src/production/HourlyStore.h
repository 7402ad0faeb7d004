#pragma once

#include "production/HourlyLines.h"
#include "services/DocumentKeys.h"

#include <QString>

#include <optional>

namespace gm {

class Conn;

inline const QString kSerialTaken =
    QStringLiteral("The Process ID already exists. A new ID has been generated. Please save your "
                   "record again");

// Everything the hourly production screen reads from and writes to the database. Refusals come
// as Objected, after the transaction has rolled back. An hourly record moves no stock.
class HourlyStore final : public DocumentKeys {
public:
    explicit HourlyStore(const Conn& conn) : m_conn(conn) {}

    qint32 nextSerialNo() const;
    bool exists(qint64 serialNo) const override;
    qint64 nextDocumentId() const override { return nextSerialNo(); }

    // The record with its lines, each line's net weight worked out again from its bags;
    // nothing when it has no lines.
    std::optional<HourlyEntry> load(qint32 serialNo) const;

    // One transaction, or part of one the caller holds. A new record is only ever inserted:
    // when another clerk took its serial meanwhile, it is refused with the next free one. A
    // saved record gets its time, and its lines are replaced. Every line keeps bags times bag
    // weight as its weight.
    void save(const HourlyEntry& entry, bool isNew);

private:
    const Conn& m_conn;
};

} // namespace gm
