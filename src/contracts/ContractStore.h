#pragma once

#include "contracts/PurchaseContract.h"
#include "services/DocumentKeys.h"

#include <optional>

namespace gm {

class Conn;

// Reads and writes PContracts. Every write is one transaction of its own; refusals come as
// Objected, after it rolled back.
class ContractStore final : public DocumentKeys {
public:
    explicit ContractStore(const Conn& conn) : m_conn(conn) {}

    qint64 nextContractId() const;
    qint64 nextDocumentId() const override { return nextContractId(); }
    bool exists(qint64 contractId) const override;

    // The contract with the names of its commodity, seller, broker and unit; nothing when no
    // row matches or when its seller, commodity or unit is missing. A contract without a
    // broker loads with an empty broker name.
    std::optional<ContractRecord> load(qint64 contractId) const;

    // Adds a new contract. A number that another clerk took meanwhile is refused with the
    // next free one, never written over. Joins a transaction the caller holds; a taken number
    // then spoils it.
    void insert(const PurchaseContract& contract);
    // Writes an existing contract by its number; false when the row is gone.
    bool update(const PurchaseContract& contract);

    // Removes a contract that nothing refers to; refused otherwise.
    void remove(qint64 contractId);

private:
    const Conn& m_conn;
};

} // namespace gm
