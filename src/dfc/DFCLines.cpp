#include "dfc/DFCLines.h"

#include <cmath>

namespace gm {

const QStringList& authorityColumnCaptions() {
    static const QStringList captions = {
        QStringLiteral("Permit No"),  QStringLiteral("Date"),       QStringLiteral("PR Center"),
        QStringLiteral("No Of Bags"), QStringLiteral("Bag Weight"), QStringLiteral("Total Weight")};
    return captions;
}

namespace {

LineField<AuthorityLine> dateField() {
    const QString format = QString::fromLatin1(kDateFormat);
    return {
        [](const AuthorityLine& l) { return l.date.isValid() ? formatDate(l.date) : QString(); },
        [format](AuthorityLine& l, const QString& text) {
            l.date = QDate::fromString(text, format);
        }};
}

} // namespace

const std::vector<LineField<AuthorityLine>>& authorityLineFields() {
    using L = AuthorityLine;
    static const std::vector<LineField<L>> fields = {field(&L::permitNo),   dateField(),
                                                     field(&L::centerName), field(&L::noOfBags),
                                                     field(&L::bagWeight),  field(&L::totalWeight)};
    return fields;
}

std::optional<double> dfcTotalWeight(double noOfBags, double bagWeight) {
    const double total = roundHalfEven(noOfBags * bagWeight, 0);
    if (total > kMaxTotalWeight)
        return std::nullopt;
    return total;
}

std::optional<double> dfcValue(double totalWeight, double unitWeightKgs, double ratePerUnit) {
    if (!(unitWeightKgs > 0))
        return std::nullopt;
    const double value = roundHalfEven(totalWeight / unitWeightKgs * ratePerUnit, 0);
    if (std::fabs(value) > kMaxValue)
        return std::nullopt;
    return value;
}

double dfcBagsValue(double ratePerBag, double bagsQty) {
    return ratePerBag * bagsQty;
}

double dfcGrossValue(double value, double bagsValue) {
    return roundHalfEven(value + bagsValue, 0);
}

double dfcCost(double totalWeight, double value) {
    return value == 0 ? 0.0 : roundHalfEven(totalWeight / value, 6);
}

double letterTotalWeight(double noOfBags, double bagWeight) {
    return roundHalfEven(noOfBags * bagWeight, 0);
}

QString authorityRefusal(int column) {
    return QStringLiteral("Please provide a valid ") +
           authorityColumnCaptions().value(column).toLower() + QLatin1Char('.');
}

std::optional<Objection> checkAuthorityCell(int row, int column, const QString& text,
                                            const QStringList& centres,
                                            const std::vector<AuthorityLine>& lines) {
    switch (column) {
    case ColCenter: {
        if (!centres.contains(text))
            return Objection::info(authorityRefusal(column));
        for (int i = 0; i < int(lines.size()); ++i)
            if (i != row && lines[size_t(i)].centerName.compare(text, Qt::CaseInsensitive) == 0)
                return Objection::info(kCenterTwice);
        break;
    }
    case ColLetterBags: {
        const double bags = leadingNumber(text);
        if (bags <= 0 || bags >= 1000)
            return Objection::info(kLetterBagsRange);
        break;
    }
    case ColLetterBagWeight: {
        const double weight = leadingNumber(text);
        if (weight <= 0 || weight >= 10000)
            return Objection::info(kLetterWeightRange);
        break;
    }
    default:
        break;
    }
    return std::nullopt;
}

} // namespace gm
