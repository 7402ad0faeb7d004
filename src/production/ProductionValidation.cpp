#include "production/ProductionValidation.h"

namespace gm {

Objection productionCellRefusal(const QString& grid, int row, int column) {
    return Objection::info(QStringLiteral("Please provide a valid ") +
                           productionColumnCaptions().at(column).toLower() + QLatin1Char('.'))
        .inGrid(grid, row, column);
}

std::optional<Objection> checkConsumptionName(int column, const QString& text,
                                              const ProductionLists& lists) {
    const QStringList* names = nullptr;
    switch (column) {
    case PrdCommodity:
        names = &lists.consumedCommodities;
        break;
    case PrdBagType:
        names = &lists.bagTypes;
        break;
    case PrdBagClass:
        names = &lists.bagClasses;
        break;
    default:
        return std::nullopt;
    }
    if (names->contains(text))
        return std::nullopt;
    return productionCellRefusal(kConsumptionGrid, -1, column);
}

namespace {

// The save's own words name the column after the one tested, as they always have: the clerk
// is sent to that column.
Objection emptyCell(const QString& grid, int row, int namedColumn, const char* words) {
    return Objection::info(productionColumnCaptions().at(namedColumn) + QLatin1String(words))
        .inGrid(grid, row, namedColumn);
}

std::optional<Objection> checkLines(const QString& grid, const std::vector<ProductionLine>& lines,
                                    const QStringList& commodities, const ProductionLists& lists) {
    for (int row = 0; row < int(lines.size()); ++row) {
        const ProductionLine& l = lines[size_t(row)];
        if (l.commodity.isEmpty())
            return emptyCell(grid, row, PrdBagType, " cannot be null");
        if (l.bagsClass.isEmpty())
            return emptyCell(grid, row, PrdNoOfBags, " cannot be null");
        if (l.weight.isBlank())
            return emptyCell(grid, row, PrdWeight, " cannot be 0");
        // Every line is kept by its keys: a name off its list has none.
        if (!commodities.contains(l.commodity))
            return productionCellRefusal(grid, row, PrdCommodity);
        if (!lists.bagTypes.contains(l.bagsType))
            return productionCellRefusal(grid, row, PrdBagType);
        if (!lists.bagClasses.contains(l.bagsClass))
            return productionCellRefusal(grid, row, PrdBagClass);
    }
    return std::nullopt;
}

} // namespace

std::optional<Objection> ValidateProduction(const ProductionDay& day,
                                            const ProductionLists& lists) {
    if (day.consumption.empty() || day.production.empty())
        return Objection::warning(kLinesMissing);
    if (day.processId == 0)
        return Objection::info(kInvalidProcess, QStringLiteral("CboProcesses"));
    if (auto o = checkLines(kConsumptionGrid, day.consumption, lists.consumedCommodities, lists))
        return o;
    return checkLines(kProductionGrid, day.production, lists.producedCommodities, lists);
}

} // namespace gm
