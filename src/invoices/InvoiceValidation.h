#pragma once

#include "invoices/InvoiceLines.h"
#include "services/DocumentKeys.h"
#include "services/Objection.h"

#include <QString>

#include <optional>
#include <vector>

namespace gm {

inline const QString kPurchaseIdTaken = QStringLiteral(
    "The Purchase ID already exists. A new ID has been generated. Please save your record again");

// What the invoice screen holds at the moment of saving, as far as the checks need it.
struct PurchaseSaveInput {
    QString sellerKey; // empty when no listed seller is chosen
    QString purchaseIdText;
    bool isOpened = false;
    std::vector<InvoiceLine> lines; // every grid line, priced or not
};

// The first reason the invoice cannot be saved, or nothing: a seller, a usable number (a new
// invoice's must be free; an unusable one comes back with a fresh one), at least one line with
// a rate, and every such line weighing something and standing once.
std::optional<Objection> ValidatePurchase(const PurchaseSaveInput& input, const DocumentKeys& keys);

// The checks of the lines alone, which the store repeats whoever calls it: at least one line
// with a rate, and every such line weighing something and standing once.
std::optional<Objection> checkPricedLines(const std::vector<InvoiceLine>& lines);

// The refusal of a save whose vehicle another invoice took meanwhile.
Objection vehicleTaken(const QString& vehicleNo, qint64 arrivalId, qint64 purchaseId);

// The removal's refusal while `table` still refers to the invoice.
QString purchaseInUse(const QString& table);

// The seller route found nothing to invoice; the words end with the seller's account.
Objection noArrivalForSeller(const QString& sellerKey);
// The contract route found nothing to invoice.
Objection noContractFound();

} // namespace gm
