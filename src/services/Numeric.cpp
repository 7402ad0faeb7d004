#include "services/Numeric.h"

#include <QLocale>

#include <cmath>

namespace gm {

double leadingNumber(const QString& text) {
    int i = 0;
    const int n = int(text.size());
    while (i < n && (text[i] == QLatin1Char(' ') || text[i] == QLatin1Char('\t')))
        ++i;
    QString digits;
    if (i < n && (text[i] == QLatin1Char('-') || text[i] == QLatin1Char('+'))) {
        digits += text[i];
        ++i;
    }
    bool seenDigit = false;
    bool seenPoint = false;
    for (; i < n; ++i) {
        const QChar c = text[i];
        if (c.isDigit() && c.unicode() < 128) {
            digits += c;
            seenDigit = true;
        } else if (c == QLatin1Char('.') && !seenPoint) {
            digits += c;
            seenPoint = true;
        } else {
            break;
        }
    }
    if (!seenDigit)
        return 0.0;
    // An exponent only when it is complete ("1e3"), never a bare "e".
    if (i < n && (text[i] == QLatin1Char('e') || text[i] == QLatin1Char('E'))) {
        int j = i + 1;
        QString exp = QStringLiteral("e");
        if (j < n && (text[j] == QLatin1Char('-') || text[j] == QLatin1Char('+')))
            exp += text[j++];
        const int start = j;
        while (j < n && text[j].isDigit() && text[j].unicode() < 128)
            exp += text[j++];
        if (j > start)
            digits += exp;
    }
    bool ok = false;
    const double v = QLocale::c().toDouble(digits, &ok);
    return ok && std::isfinite(v) ? v : 0.0;
}

namespace {

// Scales exactly enough to avoid binary representation artefacts such as 2.675 * 100 =
// 267.49999: the scaled value is first snapped to 9 significant decimals.
double scaled(double value, int digits) {
    const double s = value * std::pow(10.0, digits);
    const double snapped = std::round(s * 1e6) / 1e6;
    return std::fabs(snapped - s) < 1e-7 ? snapped : s;
}

} // namespace

double roundHalfEven(double value, int digits) {
    if (!std::isfinite(value))
        return 0.0;
    const double s = scaled(value, digits);
    // The default floating-point rounding mode is to nearest, ties to even.
    return std::nearbyint(s) / std::pow(10.0, digits);
}

namespace {
double roundHalfAway(double value, int digits) {
    const double s = scaled(value, digits);
    return std::round(s) / std::pow(10.0, digits);
}
} // namespace

double RoundValue(double value, int digits) {
    if (!(value > 0.0))
        return 0.0;
    return roundHalfAway(roundHalfAway(value, 3), digits);
}

Currency Currency::fromDouble(double value) {
    if (!std::isfinite(value))
        return Currency();
    return Currency(std::llround(roundHalfEven(value, 4) * 10000.0));
}

QString Currency::toString() const {
    return formatNumber(toDouble(), 4);
}

QString formatNumber(double value, int maxDigits) {
    if (!std::isfinite(value))
        return QStringLiteral("0");
    double r = roundHalfEven(value, maxDigits);
    if (r == 0.0)
        r = 0.0; // no "-0"
    QString s = QLocale::c().toString(r, 'f', maxDigits);
    if (s.contains(QLatin1Char('.'))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    if (s == QLatin1String("-0"))
        s = QStringLiteral("0");
    return s;
}

QString formatFixed(double value) {
    double r = roundHalfEven(value, 2);
    if (r == 0.0)
        r = 0.0;
    return QLocale::c().toString(r, 'f', 2);
}

QString formatDate(const QDate& date) {
    return date.isValid() ? date.toString(QLatin1String(kDateFormat)) : QString();
}

Figure Figure::fromText(const QString& text) {
    return text.trimmed().isEmpty() ? Figure() : Figure(leadingNumber(text));
}

QString Figure::toText(int maxDigits) const {
    return m_set ? formatNumber(m_value, maxDigits) : QString();
}

} // namespace gm
