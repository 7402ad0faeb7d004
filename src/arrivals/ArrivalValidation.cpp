#include "arrivals/ArrivalValidation.h"

#include "services/Numeric.h"

namespace gm {

std::optional<Objection> ValidateArrival(const ArrivalSaveInput& input, const DocumentKeys& keys) {
    if (input.sellerKey.isEmpty())
        return Objection::warning(QStringLiteral("Please select a valid Party and try again"),
                                  QStringLiteral("CboSeller"));
    if (input.commodityKey.isEmpty())
        return Objection::warning(QStringLiteral("Please select a valid commodity and try again"),
                                  QStringLiteral("CboCommodity"));

    const QString idText = input.arrivalIdText.trimmed();
    const int id = int(leadingNumber(idText));
    if (idText.isEmpty() || id == 0)
        return Objection::info(QStringLiteral("Invalid Arrival ID. A new Arrival has been "
                                              "automatically generated. Please save again"))
            .titled(QString(), Objection::Icon::None)
            .withNewDocumentId(keys.nextDocumentId());
    // Two clerks can be shown the same next key; the second to save is told and given a new
    // one, and the screen then uses that one key for everything it writes.
    if (!input.isOpened && keys.exists(id))
        return Objection::warning(kArrivalIdTaken).withNewDocumentId(keys.nextDocumentId());
    if (input.lines.empty())
        return Objection::warning(
            QStringLiteral(
                "There is no record to save.Please enter atleast one commodity and save again"),
            QStringLiteral("Grid"));

    const ArrivalCellContext& cells = input.cells;
    for (int i = 0; i < int(input.lines.size()); ++i) {
        const ArrivalLine& line = input.lines[size_t(i)];
        // A line without a weight per bag has no weight at all; it is refused rather than
        // dropped, and so is a line whose bags the stock could not be kept under.
        if (!(line.bagWeight > 0))
            return lineRefusal(i, ColBags);
        if (!cells.bagClasses.isEmpty() && !cells.bagClasses.contains(line.bagsClass))
            return lineRefusal(i, ColClass);
        if (!cells.bagTypes.isEmpty() && !cells.bagTypes.contains(line.bagsType))
            return lineRefusal(i, ColType);
        // A commodity's default bag or a permit's figures went in without the typed checks.
        // Gross is not among them: qty times bag weight may pass what a typed gross may not.
        for (int column :
             {ColVehicleNo, ColQty, ColBags, ColPerBag, ColOther, ColDriverName, ColBiltyNo})
            if (auto refusal = checkArrivalField(line, column, cells))
                return refusal->inGrid(QStringLiteral("Grid"), i, column);
        // The screen may show a negative net; the stock must never take one.
        if (!(storedNetWeight(line.noOfBags, line.bagWeight, line.bagsDeduction,
                              line.otherDeduction) > 0))
            return lineRefusal(i, ColOther);
    }
    return std::nullopt;
}

} // namespace gm
