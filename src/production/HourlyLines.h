#pragma once

#include "entry/LineRows.h"
#include "services/Numeric.h"
#include "services/Objection.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace gm {

// The columns of the hourly grid, in the order they stand.
enum HourlyColumn : int {
    HrCommodity = 0,
    HrBagType = 1,
    HrBagClass = 2,
    HrNoOfBags = 3,
    HrBagWeight = 4,
    HrNetWeight = 5,
    HourlyColumnCount = 6
};

// "Commodity", "Bag Type", "Bag Class", "No of Bags", "Bag Weight", "Net Weight".
const QStringList& hourlyColumnCaptions();
// The column a caption names, whatever its case ("No Of Bags" is "No of Bags"); -1 when none.
int hourlyColumnNamed(const QString& caption);

inline const QString kHourlyGrid = QStringLiteral("GrdProduction");
inline const QString kGridEmpty = QStringLiteral("Grid is empty.");

// One line of bagged output in an hourly record. Names stand as the lists show them; their keys
// are looked up when the record is saved and come back filled when it is loaded.
struct HourlyLine {
    QString commodity;
    QString bagsType;
    QString bagsClass;
    Figure noOfBags;
    Figure bagWeight;
    Figure netWeight; // bags x bag weight, as the screen works it out

    qint64 commodityId = 0;
    qint64 bagsTypeId = 0;
    qint64 bagsClassId = 0;

    bool isEmpty() const {
        return commodity.isEmpty() && bagsType.isEmpty() && bagsClass.isEmpty() &&
               noOfBags.isBlank() && bagWeight.isBlank();
    }
};

const std::vector<LineField<HourlyLine>>& hourlyLineFields();

// The weight a line holds and is saved with: bags times bag weight, unrounded.
double lineWeight(const HourlyLine& line);

// The names a line may hold, as the screen's lists offer them.
struct HourlyLists {
    QStringList commodities;
    QStringList bagTypes;
    QStringList bagClasses;
};

// The words that refuse a name off its list in a column; empty for the other columns.
QString hourlyRefusal(int column);
// A name typed into a cell that is not on its list, or nothing; an empty cell passes while
// typing.
std::optional<Objection> checkHourlyCell(int column, const QString& text, const HourlyLists& lists);
// The first reason the grid's lines cannot be saved, or nothing: no line to keep, or a line
// whose commodity, bag type or class, empty or not, is off its list. Wholly empty lines are
// skipped.
std::optional<Objection> ValidateHourly(const std::vector<HourlyLine>& lines,
                                        const HourlyLists& lists);
// The lines a save keeps: all but the wholly empty ones.
std::vector<HourlyLine> linesToKeep(const std::vector<HourlyLine>& lines);

// An hourly record: at a time, these lines of bagged output, under a serial of its own.
struct HourlyEntry {
    qint32 serialNo = 0;
    QDateTime processTime;
    std::vector<HourlyLine> lines;
};

} // namespace gm
