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

    const auto refuseCell = [](int row, int column) {
        ArrivalValidationFailure f{standardRefusal(column), kAlert, Icon::Information,
                                   QStringLiteral("Grid")};
        f.row = row;
        f.column = column;
        return f;
    };
    for (int i = 0; i < int(input.rows.size()); ++i) {
        const ArrivalRow& row = input.rows[size_t(i)];
        const auto text = [&](int column) {
            return row.size() > column ? row.at(column) : QString();
        };
        // A line without a weight per bag has no weight at all; it is refused rather than
        // dropped, and so is a line whose bags the stock could not be kept under.
        if (!(leadingNumber(text(ColBags)) > 0))
            return refuseCell(i, ColBags);
        if (!input.bagClasses.isEmpty() && !input.bagClasses.contains(text(ColClass)))
            return refuseCell(i, ColClass);
        if (!input.bagTypes.isEmpty() && !input.bagTypes.contains(text(ColType)))
            return refuseCell(i, ColType);
    }
    return std::nullopt;
}

} // namespace gm
