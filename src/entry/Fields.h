#pragma once

#include <QDateEdit>
#include <QLineEdit>

namespace gm {

// A number field (`Txt*`). The value is the leading number of the text (empty or no digit
// reads 0, "1,234" reads 1) and is shown as its plain text: no thousands separator, no
// trailing zeros ("2700", "12.5"). Typing is limited to a signed decimal.
class NumberEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit NumberEdit(QWidget* parent = nullptr);
    NumberEdit(const QString& objectName, QWidget* parent);

    double value() const;
    // Shows `value` rounded to `maxDigits` decimals in the plain form.
    void setValue(double value, int maxDigits = 6);
    // Shows `value` with two decimals, for fields whose format is "Fixed".
    void setFixedValue(double value);

    // At most this many decimals may be typed (default 6); 0 allows whole numbers only.
    void setDecimals(int decimals);
    int decimals() const { return m_decimals; }
    // Whether a minus sign may be typed (default false: quantities and money are positive).
    void setAllowNegative(bool allow);

private:
    void updateValidator();
    int m_decimals = 6;
    bool m_negative = false;
};

// A date field (`Dtp*`): "dd/MM/yyyy", calendar popup, today when created.
class DateEdit : public QDateEdit {
    Q_OBJECT
public:
    explicit DateEdit(QWidget* parent = nullptr);
    DateEdit(const QString& objectName, QWidget* parent);
};

} // namespace gm
