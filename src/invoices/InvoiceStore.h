#pragma once

#include "invoices/PurchaseInvoice.h"
#include "services/DocumentKeys.h"
#include "services/LookupItem.h"

#include <QDate>
#include <QString>

#include <optional>
#include <vector>

namespace gm {

class Conn;

// What choosing a contract brings besides its vehicles.
struct InvoiceContract {
    qint64 contractId = 0;
    QString sellerId;
    QString sellerName; // "Name-City", as the party lists show it
    QString brokerId;   // empty: none
    QString brokerName;
    double brokerageRate = 0;
    bool isBrokeragePerBag = false;
};

struct ContractOffer {
    InvoiceContract contract;
    // The contract's vehicles not yet invoiced, at the contract's rate, valued as the grid
    // shows them once loaded.
    std::vector<InvoiceLine> lines;
};

// A saved invoice line beside what its arrival weighed, for the printed invoice.
struct InvoicePrintLine {
    InvoiceLine line;
    double grossWeight = 0;   // bags x weight per bag
    double bagsDeduction = 0; // bags x deduction per bag
    double otherDeduction = 0;
    double tareWeight = 0;
};

struct InvoicePrint {
    InvoiceDocument invoice; // as loaded; its lines are those below
    std::vector<InvoicePrintLine> lines;
};

// One move of an average cost, as the ledger keeps it.
struct CostLedgerEntry {
    qint64 entryId = 0;
    QString documentKind;
    qint64 documentId = 0;
    qint64 arrivalId = 0;
    QString vehicleNo;
    qint64 commodityId = 0; // a wheat row; else a bag row:
    qint64 bagsTypeId = 0;
    qint64 bagsClassId = 0;
    double lotQuantity = 0;
    double lotCost = 0;
    double stockQuantity = 0;
    double costBefore = 0;
    double costAfter = 0;
    QString movement; // "Save", "Reversal" or "Opening"
    QString note;
};

// Everything the invoice screen reads from and writes to the database. Refusals come as
// Objected, after the transaction has rolled back.
//
// The average cost of wheat (CurrentStock) and of bags (BagsCurrentStock) moves with every
// saved and removed line, and every move leaves a row in the stock cost ledger. The stock
// quantities are the arrivals' doing, through the database's triggers: an invoice never
// changes them.
class InvoiceStore final : public DocumentKeys {
public:
    // `userNo` is the clerk the ledger names.
    explicit InvoiceStore(const Conn& conn, qint16 userNo = 0) : m_conn(conn), m_user(userNo) {}

    int nextPurchaseId() const;
    bool exists(qint64 purchaseId) const override;
    qint64 nextDocumentId() const override { return nextPurchaseId(); }

    // Contracts with at least one arrival, newest first: name the number, key the seller and
    // city as "Name | City".
    LookupList contracts() const;
    // The contract's terms and its vehicles not yet invoiced (a vehicle of an arrival on the
    // contract counts as invoiced only when that very vehicle of that very arrival is on an
    // invoice). Nothing when the contract has no such vehicle.
    std::optional<ContractOffer> linesOfContract(qint64 contractId) const;
    // Every vehicle of the seller's arrivals not yet invoiced, unpriced, net weights to 2
    // decimals. Lines of both routes come in arrival and vehicle order.
    std::vector<InvoiceLine> linesOfSeller(const QString& sellerId) const;
    // The seller's debit balance on the day, as the ledger of the host gives it.
    double currentDebit(const QString& sellerId, const QDate& day) const;

    // The invoice as saved, its lines valued as saved; nothing when it has no lines.
    std::optional<InvoiceDocument> load(int purchaseId) const;
    std::optional<InvoicePrint> printData(int purchaseId) const;

    // One transaction, or part of one the caller holds. Keeps the lines with a rate and folds
    // each into the average costs. A saved invoice (isNew false) first has its old lines
    // taken out of the averages as a removal would, so an edit ends where a removal and a
    // fresh save would. Refused, with nothing written, when a vehicle is already on another
    // invoice, when a new invoice's number was taken meanwhile (with a fresh one), or when a
    // stock row to cost is missing.
    void save(const InvoiceDocument& invoice, bool isNew);
    // One transaction; refused when anything still points at the invoice. Takes every line
    // out of the average costs, then the invoice.
    void remove(int purchaseId);

    // The ledger of one wheat or bag stock row, oldest first.
    std::vector<CostLedgerEntry> costLedger(qint64 commodityId) const;
    std::vector<CostLedgerEntry> bagCostLedger(qint64 bagsTypeId, qint64 bagsClassId) const;

private:
    const Conn& m_conn;
    qint16 m_user;
};

} // namespace gm
