#pragma once

#include "production/ProductionLines.h"
#include "services/Objection.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace gm {

inline const QString kConsumptionGrid = QStringLiteral("GrdConsumption");
inline const QString kProductionGrid = QStringLiteral("GrdProduction");

inline const QString kLinesMissing = QStringLiteral("The Production or Consumption is missing.");
inline const QString kNoStock = QStringLiteral("There is no stock for selected commodity.");
inline const QString kInvalidProcess = QStringLiteral("Please provide a valid process.");

// The names a line may hold, as the screen's lists offer them.
struct ProductionLists {
    QStringList consumedCommodities;
    QStringList producedCommodities;
    QStringList bagTypes;
    QStringList bagClasses;
};

// "Please provide a valid " + the column's caption in lower case + ".", on that cell.
Objection productionCellRefusal(const QString& grid, int row, int column);

// A name typed into a consumption cell that is not on its list, or nothing. Only the name
// columns are checked while typing.
std::optional<Objection> checkConsumptionName(int column, const QString& text,
                                              const ProductionLists& lists);

// The first reason the day cannot be saved, or nothing: a grid without lines; no process; then
// the lines of both grids in turn, each with the checks of the save (an empty commodity is
// reported under the bag type's caption, an empty bag class under the bags', an empty weight
// as "cannot be 0") followed by its names, which must be on their lists.
std::optional<Objection> ValidateProduction(const ProductionDay& day, const ProductionLists& lists);

} // namespace gm
