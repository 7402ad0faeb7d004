#include "entry/Fields.h"

#include "services/Numeric.h"

#include <QRegularExpressionValidator>

namespace gm {

NumberEdit::NumberEdit(QWidget* parent) : QLineEdit(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    updateValidator();
}

NumberEdit::NumberEdit(const QString& objectName, QWidget* parent) : NumberEdit(parent) {
    setObjectName(objectName);
}

double NumberEdit::value() const {
    return leadingNumber(text());
}

void NumberEdit::setValue(double value, int maxDigits) {
    setText(formatNumber(value, maxDigits));
}

void NumberEdit::setFixedValue(double value) {
    setText(formatFixed(value));
}

void NumberEdit::setDecimals(int decimals) {
    m_decimals = qMax(0, decimals);
    updateValidator();
}

void NumberEdit::setAllowNegative(bool allow) {
    m_negative = allow;
    updateValidator();
}

void NumberEdit::updateValidator() {
    // The validator only guards typing; code may still set any text (a stored value is shown
    // as it is), and reading always goes through the leading number.
    QString pattern = m_negative ? QStringLiteral("-?\\d*") : QStringLiteral("\\d*");
    if (m_decimals > 0)
        pattern += QStringLiteral("(\\.\\d{0,%1})?").arg(m_decimals);
    setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), this));
}

DateEdit::DateEdit(QWidget* parent) : QDateEdit(QDate::currentDate(), parent) {
    setDisplayFormat(QString::fromLatin1(kDateFormat));
    setCalendarPopup(true);
}

DateEdit::DateEdit(const QString& objectName, QWidget* parent) : DateEdit(parent) {
    setObjectName(objectName);
}

} // namespace gm
