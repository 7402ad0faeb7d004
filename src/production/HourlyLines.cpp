#include "production/HourlyLines.h"

namespace gm {

const QStringList& hourlyColumnCaptions() {
    static const QStringList captions = {
        QStringLiteral("Commodity"),  QStringLiteral("Bag Type"),   QStringLiteral("Bag Class"),
        QStringLiteral("No of Bags"), QStringLiteral("Bag Weight"), QStringLiteral("Net Weight")};
    return captions;
}

int hourlyColumnNamed(const QString& caption) {
    const QStringList& captions = hourlyColumnCaptions();
    for (int i = 0; i < captions.size(); ++i)
        if (captions[i].compare(caption, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const std::vector<LineField<HourlyLine>>& hourlyLineFields() {
    using L = HourlyLine;
    static const std::vector<LineField<L>> fields = {field(&L::commodity), field(&L::bagsType),
                                                     field(&L::bagsClass), field(&L::noOfBags),
                                                     field(&L::bagWeight), field(&L::netWeight)};
    return fields;
}

double lineWeight(const HourlyLine& l) {
    return double(l.noOfBags) * double(l.bagWeight);
}

QString hourlyRefusal(int column) {
    switch (column) {
    case HrCommodity:
        return QStringLiteral("Please provide a valid commodity and try again");
    case HrBagType:
        return QStringLiteral("Please provide a valid bag type and try again");
    case HrBagClass:
        return QStringLiteral("Please provide a valid bag class and try again");
    default:
        return QString();
    }
}

namespace {

const QStringList* listOf(int column, const HourlyLists& lists) {
    switch (column) {
    case HrCommodity:
        return &lists.commodities;
    case HrBagType:
        return &lists.bagTypes;
    case HrBagClass:
        return &lists.bagClasses;
    default:
        return nullptr;
    }
}

} // namespace

std::optional<Objection> checkHourlyCell(int column, const QString& text,
                                         const HourlyLists& lists) {
    const QStringList* names = listOf(column, lists);
    if (!names || text.isEmpty() || names->contains(text))
        return std::nullopt;
    return Objection::info(hourlyRefusal(column));
}

std::optional<Objection> ValidateHourly(const std::vector<HourlyLine>& lines,
                                        const HourlyLists& lists) {
    bool any = false;
    for (int row = 0; row < int(lines.size()); ++row) {
        const HourlyLine& l = lines[size_t(row)];
        if (l.isEmpty())
            continue;
        any = true;
        // A line is kept by its keys: a name off its list, or none, has no key.
        const QString* texts[] = {&l.commodity, &l.bagsType, &l.bagsClass};
        for (int column : {int(HrCommodity), int(HrBagType), int(HrBagClass)})
            if (!listOf(column, lists)->contains(*texts[column]))
                return Objection::info(hourlyRefusal(column)).inGrid(kHourlyGrid, row, column);
    }
    if (!any)
        return Objection::warning(kGridEmpty);
    return std::nullopt;
}

std::vector<HourlyLine> linesToKeep(const std::vector<HourlyLine>& lines) {
    std::vector<HourlyLine> kept;
    for (const HourlyLine& l : lines)
        if (!l.isEmpty())
            kept.push_back(l);
    return kept;
}

} // namespace gm
