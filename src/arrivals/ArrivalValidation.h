#pragma once

#include "arrivals/ArrivalLines.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace gm {

// What the arrival screen holds at the moment of saving, as far as the checks need it.
struct ArrivalSaveInput {
    QString sellerKey;    // empty when no listed party is chosen
    QString commodityKey; // empty when no listed commodity is chosen
    QString arrivalIdText;
    bool isOpened = false;
    std::vector<ArrivalRow> rows;
    // The bag lists a line's class and type must come from; not checked when empty.
    QStringList bagClasses;
    QStringList bagTypes;
};

struct ArrivalValidationFailure {
    enum class Icon { None, Information, Exclamation };
    QString message;
    QString title; // empty: the box has no title of its own
    Icon icon = Icon::Exclamation;
    QString focus; // objectName of the control that gets the focus
    int row = -1;  // for a line refused in the grid
    int column = -1;
    bool drawNewId = false; // the key was unusable: a fresh one must be drawn and shown
};

// The first reason the arrival cannot be saved, or nothing. `idTaken` answers whether a key is
// already used by a saved arrival; it is asked only for an arrival that was not opened.
std::optional<ArrivalValidationFailure> ValidateArrival(const ArrivalSaveInput& input,
                                                        const std::function<bool(int)>& idTaken);

} // namespace gm
