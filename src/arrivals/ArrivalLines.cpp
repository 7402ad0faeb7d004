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

namespace {

// The provisional net of the per-column pass: it multiplies Other by the bags as well. It never
// survives, since RecalcLineNet follows at once, but a line whose gross stays at zero keeps it.
double provisionalNet(const ArrivalLine& l) {
    return roundHalfEven(l.gross - (l.bagsDeduction + l.otherDeduction) * l.noOfBags, 2);
}

} // namespace

void recalcAfterQtyOrBags(ArrivalLine& l, const std::optional<RateUnitInfo>& commodityUnit) {
    if (l.bagWeight > 0 && l.noOfBags > 0) {
        l.gross = roundHalfEven(l.bagWeight * l.noOfBags, 2);
        l.netWeight = provisionalNet(l);
        l.rateUnitName = commodityUnit ? commodityUnit->name : QString();
        if (commodityUnit && !commodityUnit->name.isEmpty())
            l.weightInKgs = commodityUnit->weightInKgs;
    }
    RecalcLineNet(l);
}

void recalcAfterGross(ArrivalLine& l) {
    if (l.gross > 0) {
        if (l.noOfBags != 0)
            l.bagWeight = roundHalfEven(l.gross / l.noOfBags, 4);
        l.netWeight = provisionalNet(l);
    }
    RecalcLineNet(l);
}

void applyRateUnit(ArrivalLine& l, const std::optional<RateUnitInfo>& unit) {
    if (l.rateUnitName.isEmpty() || !unit)
        return;
    l.weightInKgs = unit->weightInKgs;
}

void RecalcLineNet(ArrivalLine& l) {
    if (l.gross > 0)
        l.netWeight = l.gross - (l.otherDeduction + l.bagsDeduction * l.noOfBags);
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

Objection lineRefusal(int row, int column) {
    return Objection::info(standardRefusal(column)).inGrid(QStringLiteral("Grid"), row, column);
}

namespace {

Objection refuse(const QString& message) {
    return Objection::info(message);
}

// The number editors of Qty, Bags and Gross accept nothing outside these bounds.
bool outside(double value, double high) {
    return value < 0 || value > high;
}

} // namespace

const std::vector<LineField<ArrivalLine>>& arrivalLineFields() {
    using L = ArrivalLine;
    static const std::vector<LineField<L>> fields = {
        field(&L::vehicleNo),     field(&L::bagsClass),      field(&L::bagsType),
        field(&L::noOfBags),      field(&L::bagWeight),      field(&L::gross),
        field(&L::bagsDeduction), field(&L::otherDeduction), field(&L::netWeight),
        field(&L::driverName),    field(&L::biltyNo),        field(&L::rateUnit),
        field(&L::bagsRate),      field(&L::rateUnitName),   field(&L::weightInKgs)};
    return fields;
}

std::optional<Objection> checkArrivalField(const ArrivalLine& l, int column,
                                           const ArrivalCellContext& context) {
    switch (column) {
    case ColVehicleNo:
        if (l.vehicleNo.size() > 15)
            return refuse(QStringLiteral("Vehicle no must be less then 15 charactors."));
        break;
    case ColClass:
        if (!context.bagClasses.contains(l.bagsClass))
            return refuse(standardRefusal(column));
        break;
    case ColType:
        if (!context.bagTypes.contains(l.bagsType))
            return refuse(standardRefusal(column));
        break;
    case ColQty:
        if (outside(l.noOfBags, 99999))
            return refuse(standardRefusal(column));
        break;
    case ColBags:
        if (outside(l.bagWeight, 99999.99))
            return refuse(standardRefusal(column));
        if (context.hasCenter &&
            (l.bagWeight <= 0 || leadingNumber(context.remainingWeight) < l.bagWeight))
            return refuse(
                QStringLiteral("Weight must be greator then 0 and less then remaining Weight."));
        break;
    case ColGross:
        if (outside(l.gross, 99999))
            return refuse(standardRefusal(column));
        break;
    case ColPerBag:
        if (outside(l.bagsDeduction, 99999))
            return refuse(standardRefusal(column));
        break;
    case ColOther:
        if (outside(l.otherDeduction, 99999))
            return refuse(standardRefusal(column));
        break;
    case ColDriverName:
        if (l.driverName.size() > 25)
            return refuse(standardRefusal(column));
        break;
    case ColBiltyNo:
        if (l.biltyNo.size() > 15)
            return refuse(standardRefusal(column));
        break;
    default:
        break;
    }
    return std::nullopt;
}

std::optional<Objection> checkArrivalCell(int column, const QString& text,
                                          const ArrivalCellContext& context) {
    if (column < 0 || column >= ArrivalColumnCount)
        return std::nullopt;
    ArrivalLine typed;
    arrivalLineFields()[size_t(column)].take(typed, text);
    return checkArrivalField(typed, column, context);
}

bool exceedsQuota(int column, const QString& text, const ArrivalCellContext& context) {
    const double entry = leadingNumber(text);
    return column == ColQty && context.hasCenter &&
           (entry <= 0 || leadingNumber(context.remainingBags) < entry);
}

} // namespace gm
