#pragma once

#include "arrivals/ArrivalLines.h"
#include "services/DocumentKeys.h"
#include "services/Objection.h"

#include <QString>

#include <optional>
#include <vector>

namespace gm {

inline const QString kArrivalIdTaken = QStringLiteral(
    "The Arrival ID already exists. A new ID has been generated. Please save your record again");

inline const QString kInvalidContract = QStringLiteral("Please provide a valid Contract Id.");

// What the arrival screen holds at the moment of saving, as far as the checks need it.
struct ArrivalSaveInput {
    QString sellerKey;    // empty when no listed party is chosen
    QString commodityKey; // empty when no listed commodity is chosen
    QString arrivalIdText;
    bool isOpened = false;
    std::vector<ArrivalLine> lines;
    // What each line's fields are checked against, as when they were typed. The bag lists a
    // line's class and type must come from are not checked when empty.
    ArrivalCellContext cells;
};

// The first reason the arrival cannot be saved, or nothing. Every line's fields pass the checks
// they pass when typed, whoever wrote them, and a line must weigh something after deductions.
// `keys` is asked whether a number is taken only for an arrival that was not opened; an unusable
// number comes back with a fresh one.
std::optional<Objection> ValidateArrival(const ArrivalSaveInput& input, const DocumentKeys& keys);

} // namespace gm
