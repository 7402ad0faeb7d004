#include "arrivals/ArrivalLines.h"

namespace gm {

const QStringList& arrivalColumnCaptions() {
    static const QStringList captions = {
        QStringLiteral("Vehicle No"),  QStringLiteral("Class"),      QStringLiteral("Type"),
        QStringLiteral("Qty"),         QStringLiteral("Bags"),       QStringLiteral("Gross"),
        QStringLiteral("Per Bag"),     QStringLiteral("Other"),      QStringLiteral("Net Weight"),
        QStringLiteral("Driver Name"), QStringLiteral("Bilty No"),   QStringLiteral("RateUnit"),
        QStringLiteral("BagRate"),     QStringLiteral("RateUnitId"), QStringLiteral("WeighInKgs")};
    return captions;
}

const std::vector<ColumnGroup>& arrivalColumnGroups() {
    static const std::vector<ColumnGroup> groups = {
        {QString(), ColVehicleNo, ColType},
        {QStringLiteral("Bags"), ColQty, ColBags},
        {QStringLiteral("Weight"), ColGross, ColGross},
        {QStringLiteral("Deduction"), ColPerBag, ColOther},
        {QString(), ColNetWeight, ColWeighInKgs},
    };
    return groups;
}

ArrivalRow emptyArrivalRow() {
    ArrivalRow row;
    for (int i = 0; i < ArrivalColumnCount; ++i)
        row.append(QString());
    return row;
}

namespace {

double cell(const ArrivalRow& row, int column) {
    return column < row.size() ? leadingNumber(row.at(column)) : 0.0;
}

void put(ArrivalRow& row, int column, double value) {
    while (row.size() < ArrivalColumnCount)
        row.append(QString());
    row[column] = formatNumber(value);
}

void ensureWidth(ArrivalRow& row) {
    while (row.size() < ArrivalColumnCount)
        row.append(QString());
}

// The provisional net of the per-column pass: it multiplies Other by the bags as well. It never
// survives, since RecalcLineNet follows at once, but a line whose gross stays at zero keeps it.
double provisionalNet(const ArrivalRow& row) {
    return roundHalfEven(
        cell(row, ColGross) - (cell(row, ColPerBag) + cell(row, ColOther)) * cell(row, ColQty), 2);
}

} // namespace

void recalcAfterQtyOrBags(ArrivalRow& row, const std::optional<RateUnitInfo>& commodityUnit) {
    ensureWidth(row);
    const double bags = cell(row, ColBags);
    const double qty = cell(row, ColQty);
    if (bags > 0 && qty > 0) {
        put(row, ColGross, roundHalfEven(bags * qty, 2));
        put(row, ColNetWeight, provisionalNet(row));
        row[ColRateUnitId] = commodityUnit ? commodityUnit->name : QString();
        if (commodityUnit && !commodityUnit->name.isEmpty())
            put(row, ColWeighInKgs, commodityUnit->weightInKgs);
    }
    RecalcLineNet(row);
}

void recalcAfterGross(ArrivalRow& row) {
    ensureWidth(row);
    const double gross = cell(row, ColGross);
    const double qty = cell(row, ColQty);
    if (gross > 0) {
        if (qty != 0)
            put(row, ColBags, roundHalfEven(gross / qty, 4));
        put(row, ColNetWeight, provisionalNet(row));
    }
    RecalcLineNet(row);
}

void applyRateUnit(ArrivalRow& row, const std::optional<RateUnitInfo>& unit) {
    ensureWidth(row);
    if (row.at(ColRateUnitId).isEmpty() || !unit)
        return;
    put(row, ColWeighInKgs, unit->weightInKgs);
}

void RecalcLineNet(ArrivalRow& row) {
    ensureWidth(row);
    const double gross = cell(row, ColGross);
    if (gross > 0)
        put(row, ColNetWeight,
            gross - (cell(row, ColOther) + cell(row, ColPerBag) * cell(row, ColQty)));
}

double storedNetWeight(double noOfBags, double bagWeight, double bagsDeduction,
                       double otherDeduction) {
    return noOfBags * bagWeight - noOfBags * bagsDeduction - otherDeduction;
}

double lineCostPerKg(double rateUnit, double weightInKgs) {
    return rateUnit > 0 && weightInKgs > 0 ? rateUnit / weightInKgs : 0.0;
}

QString standardRefusal(int column) {
    return QStringLiteral("Please provide a valid ") +
           arrivalColumnCaptions().at(column).toLower() + QLatin1Char('.');
}

namespace {

ArrivalCellVerdict refuse(const QString& message) {
    return {ArrivalCellVerdict::Refuse, message};
}

// The number editors of Qty, Bags and Gross accept nothing outside these bounds.
bool outside(double value, double high) {
    return value < 0 || value > high;
}

} // namespace

ArrivalCellVerdict checkArrivalCell(int column, const QString& text,
                                    const ArrivalCellContext& context) {
    const double entry = leadingNumber(text);
    switch (column) {
    case ColVehicleNo:
        if (text.size() > 15)
            return refuse(QStringLiteral("Vehicle no must be less then 15 charactors."));
        break;
    case ColClass:
        if (!context.bagClasses.contains(text))
            return refuse(standardRefusal(column));
        break;
    case ColType:
        if (!context.bagTypes.contains(text))
            return refuse(standardRefusal(column));
        break;
    case ColQty:
        if (outside(entry, 99999))
            return refuse(standardRefusal(column));
        // A warning the clerk may pass: the quota is the centre's, not a physical limit.
        if (context.hasCenter && (entry <= 0 || leadingNumber(context.remainingBags) < entry))
            return {ArrivalCellVerdict::AskQuota, kQuotaQuestion};
        break;
    case ColBags:
        if (outside(entry, 99999.99))
            return refuse(standardRefusal(column));
        if (context.hasCenter && (entry <= 0 || leadingNumber(context.remainingWeight) < entry))
            return refuse(
                QStringLiteral("Weight must be greator then 0 and less then remaining Weight."));
        break;
    case ColGross:
        if (outside(entry, 99999))
            return refuse(standardRefusal(column));
        break;
    case ColPerBag:
    case ColOther:
        if (outside(entry, 99999))
            return refuse(standardRefusal(column));
        break;
    case ColDriverName:
        if (text.size() > 25)
            return refuse(standardRefusal(column));
        break;
    case ColBiltyNo:
        if (text.size() > 15)
            return refuse(standardRefusal(column));
        break;
    default:
        break;
    }
    return {};
}

} // namespace gm
