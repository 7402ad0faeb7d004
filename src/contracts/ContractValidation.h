#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace gm {

class ContractKeys;

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

// The first objection to saving, with the box that tells it.
struct ContractCheck {
    enum class Icon { None, Exclamation };

    bool ok = true;
    QString message;
    QString title;
    Icon icon = Icon::None;
    QString focusControl;                // objectName of the field to correct, or empty
    std::optional<qint64> newContractId; // a fresh number to show in place of the typed one

    static ContractCheck passed() { return {}; }
};

// Checks an entry in the order the clerk is told of problems, stopping at the first.
// Only the number checks consult `keys`.
ContractCheck validateContract(const ContractEntry& entry, const ContractKeys& keys);

// The number a clerk typed as the contract's number: its leading whole number.
qint64 contractNumber(const QString& text);

} // namespace gm
