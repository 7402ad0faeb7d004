#pragma once

#include "services/DocumentKeys.h"
#include "services/Objection.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace gm {

inline const QString kContractIdTaken = QStringLiteral(
    "The Contract ID already exists. A new ID has been generated. Please save your record again");

// What the contract screen holds at the moment Save is pressed, as the clerk left it.
struct ContractEntry {
    QString contractIdText;
    bool isOpened = false; // a saved contract is on the screen: its number is its own
    QString sellerText;
    QString sellerKey;
    QString brokerText;
    QString commodityText;
    QString commodityKey;
    QString contractModeText;
    QString unitKey;
    QString quantityText;
    QString ratePerUnitText;
};

// Checks an entry in the order the clerk is told of problems, stopping at the first.
// Only the number checks consult `keys`; an unusable number comes back with a fresh one.
std::optional<Objection> validateContract(const ContractEntry& entry, const DocumentKeys& keys);

// The number a clerk typed as the contract's number: its leading whole number.
qint64 contractNumber(const QString& text);

} // namespace gm
