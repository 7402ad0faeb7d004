#pragma once

#include <QDate>
#include <QString>
#include <QtGlobal>

namespace gm {

// The number a clerk's text begins with: leading blanks and one sign are read, reading stops
// at the first character that cannot continue the number ("1,234" reads 1, "abc" reads 0).
double leadingNumber(const QString& text);

// Rounding the screens do locally: ties go to the even neighbour (2.5 -> 2, 3.5 -> 4).
double roundHalfEven(double value, int digits);

// The one rounding that follows the server's rule: nothing above zero gives 0; otherwise the
// value is cut to three decimals (half away from zero) and then rounded half away from zero
// to the digits asked for (2.5 -> 3; 1.2349 with 2 -> 1.235 -> 1.24).
double RoundValue(double value, int digits);

// Fixed-point money of four decimals, as grid sums are kept.
class Currency {
public:
    constexpr Currency() = default;
    static Currency fromDouble(double value); // rounded to 4 decimals, ties to even
    static constexpr Currency fromRaw(qint64 tenThousandths) { return Currency(tenThousandths); }
    constexpr qint64 raw() const { return m_raw; }
    double toDouble() const { return double(m_raw) / 10000.0; }
    Currency& operator+=(Currency other) {
        m_raw += other.m_raw;
        return *this;
    }
    friend Currency operator+(Currency a, Currency b) { return a += b; }
    friend constexpr bool operator==(Currency a, Currency b) = default;
    QString toString() const; // plain text, no trailing zeros

private:
    constexpr explicit Currency(qint64 raw) : m_raw(raw) {}
    qint64 m_raw = 0;
};

// Numbers as the screens show them: the plain text of the value in the C locale, no thousands
// separator and no trailing zeros ("2700", "12.5"). Values are first rounded to `maxDigits`.
QString formatNumber(double value, int maxDigits = 6);
// The "Fixed" format: two decimals.
QString formatFixed(double value);

// A figure of a document line that the clerk may leave blank. Blank counts as 0 in every
// sum and formula, but shows as nothing, so a line shows only what was typed or worked out.
class Figure {
public:
    constexpr Figure() = default;
    constexpr Figure(double value) : m_value(value), m_set(true) {} // NOLINT: reads as a number
    constexpr operator double() const { return m_set ? m_value : 0.0; }
    constexpr bool isBlank() const { return !m_set; }

    // Blank text is a blank figure; any other text is its leading number.
    static Figure fromText(const QString& text);
    QString toText(int maxDigits = 6) const; // formatNumber, or empty when blank

private:
    double m_value = 0;
    bool m_set = false;
};

// Dates as the screens show them.
inline constexpr const char* kDateFormat = "dd/MM/yyyy";
QString formatDate(const QDate& date);

} // namespace gm
