#pragma once

#include "contracts/PurchaseContract.h"

#include <optional>

namespace gm {

class Conn;

// What the contract checks need to know about numbers already given out. The store answers
// from the database; checks can be exercised against any other answer.
class ContractKeys {
public:
    virtual ~ContractKeys() = default;
    // The number a new contract would take now: one above the highest in use.
    virtual qint64 nextContractId() const = 0;
    virtual bool exists(qint64 contractId) const = 0;
};

// Reads and writes PContracts. Every write is one transaction of its own.
class ContractStore final : public ContractKeys {
public:
    explicit ContractStore(const Conn& conn) : m_conn(conn) {}

    qint64 nextContractId() const override;
    bool exists(qint64 contractId) const override;

    // The contract with the names of its commodity, seller, broker and unit; nothing when no
    // row matches or when its seller, commodity or unit is missing. A contract without a
    // broker loads with an empty broker name.
    std::optional<ContractRecord> load(qint64 contractId) const;

    enum class InsertResult { Inserted, NumberTaken };
    // Adds a new contract. A number that another clerk took meanwhile is reported, never
    // written over. Joins a transaction the caller holds; a taken number then spoils it.
    InsertResult insert(const PurchaseContract& contract);
    // Writes an existing contract by its number; false when the row is gone.
    bool update(const PurchaseContract& contract);

    struct RemoveResult {
        bool removed = false;
        QString usedIn; // the table that still refers to the contract, when refused
    };
    // Removes a contract that nothing refers to.
    RemoveResult remove(qint64 contractId);

private:
    const Conn& m_conn;
};

} // namespace gm
