#include "arrivals/ArrivalValidation.h"

#include "services/Numeric.h"

namespace gm {

namespace {
const QString kAlert = QStringLiteral("Alert");
}

std::optional<ArrivalValidationFailure> ValidateArrival(const ArrivalSaveInput& input,
                                                        const std::function<bool(int)>& idTaken) {
    using Icon = ArrivalValidationFailure::Icon;
    if (input.sellerKey.isEmpty())
        return ArrivalValidationFailure{QStringLiteral("Please select a valid Party and try again"),
                                        kAlert, Icon::Exclamation, QStringLiteral("CboSeller")};
    if (input.commodityKey.isEmpty())
        return ArrivalValidationFailure{
            QStringLiteral("Please select a valid commodity and try again"), kAlert,
            Icon::Exclamation, QStringLiteral("CboCommodity")};

    const QString idText = input.arrivalIdText.trimmed();
    const int id = int(leadingNumber(idText));
    if (idText.isEmpty() || id == 0) {
        ArrivalValidationFailure f{QStringLiteral("Invalid Arrival ID. A new Arrival has been "
                                                  "automatically generated. Please save again"),
                                   QString(), Icon::None, QString()};
        f.drawNewId = true;
        return f;
    }
    // Two clerks can be shown the same next key; the second to save is told and given a new
    // one, and the screen then uses that one key for everything it writes.
    if (!input.isOpened && idTaken && idTaken(id)) {
        ArrivalValidationFailure f{QStringLiteral("The Arrival ID already exists. A new ID has "
                                                  "been generated. Please save your record again"),
                                   kAlert, Icon::Exclamation, QString()};
        f.drawNewId = true;
        return f;
    }
    if (input.rows.empty())
        return ArrivalValidationFailure{
            QStringLiteral(
                "There is no record to save.Please enter atleast one commodity and save again"),
            kAlert, Icon::Exclamation, QStringLiteral("Grid")};

    // A line without a weight per bag has no weight at all; it is refused rather than dropped.
    for (int i = 0; i < int(input.rows.size()); ++i) {
        const ArrivalRow& row = input.rows[size_t(i)];
        const double bagWeight = row.size() > ColBags ? leadingNumber(row.at(ColBags)) : 0.0;
        if (!(bagWeight > 0)) {
            ArrivalValidationFailure f{standardRefusal(ColBags), kAlert, Icon::Information,
                                       QStringLiteral("Grid")};
            f.row = i;
            f.column = ColBags;
            return f;
        }
    }
    return std::nullopt;
}

} // namespace gm
