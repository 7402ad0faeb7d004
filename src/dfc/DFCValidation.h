#pragma once

#include "dfc/DFCLines.h"
#include "services/DocumentKeys.h"
#include "services/Objection.h"

#include <QString>

#include <optional>
#include <vector>

namespace gm {

inline const QString kChallanRule =
    QStringLiteral("Challan no must not be empty and less then 15 charactors. ");
inline const QString kWeightRule = QStringLiteral("No of bags and weight must be greator then 0. ");
inline const QString kValueRule = QStringLiteral("Unit and rate per bag must be greator then 0. ");
inline const QString kGrossRule = QStringLiteral("Gross value must be greator then 0. ");
inline const QString kCommodityRule =
    QStringLiteral("Please select a valid Commodity and try again");
inline const QString kInvalidPaymentId = QStringLiteral(
    "Invalid Invoice ID. A new Issue has been automatically generated. Please save again");
inline const QString kNoLetters =
    QStringLiteral("There is no record to save. Please enter a valid entry and save again");
inline const QString kCenterRule = QStringLiteral("Please select PR Center and try again.");
inline const QString kPaymentIdTaken = QStringLiteral(
    "The Invoice ID already exists. A new ID has been generated. Please save your record again");

// "The Permit No (<permit>) already exists. Please change it and save your record again"
QString permitTakenRefusal(const QString& permitNo);

// The longest challan number a payment takes.
inline constexpr int kMaxChallanLength = 15;

// Which payment holds a permit number, so that a number is given out once.
class PermitRegister {
public:
    virtual ~PermitRegister() = default;
    // The payment whose letter carries this permit number (exactly), or 0.
    virtual qint64 permitHolder(const QString& permitNo) const = 0;
};

// What the DFC screen holds at the moment of saving, as far as the checks need it.
struct DFCSaveInput {
    QString challanNo;
    double totalWeight = 0;
    double value = 0;
    double grossValue = 0;
    QString commodityKey; // empty when no listed commodity is chosen
    QString paymentIdText;
    bool isOpened = false;
    // The letters with their centres' keys looked up (0 when the name is no listed centre).
    std::vector<AuthorityLine> lines;
};

// The first reason the payment cannot be saved, or nothing. The permit checks apply to every
// save: a permit number another payment holds, one given twice, one left empty, or a letter
// without a listed centre. Whether the number is free is asked only for a payment that was
// not opened; an unusable number comes back with a fresh one.
std::optional<Objection> ValidateDFCPayment(const DFCSaveInput& input, const DocumentKeys& keys,
                                            const PermitRegister& permits);

} // namespace gm
