#pragma once

#include "widgets/LeavingRefusal.h"

#include <QDateEdit>
#include <QLineEdit>

#include <functional>

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

// What a date field (or a grid's date cell) says when left with no possible date in it.
inline const QString kInvalidDate = QStringLiteral("Please provide a valid date.");

// A date field (`Dtp*`): "dd/MM/yyyy", calendar popup, today when created.
//
// The text is edited as a whole date: a digit overwrites the one under the cursor, the cursor
// steps over the separators, and a typed "/" after a single digit makes it "0d". So "ddMMyyyy"
// or "dd/MM/yyyy" typed over any date shown gives exactly that date; no part of it is checked
// against the parts still shown. date() follows the text whenever the text is a possible date;
// while it is not, date() is the date the field held before the clerk typed it. Leaving the
// field with no possible date in it is refused with a box, the text kept.
// A click only places the cursor (or, on the arrow, opens the calendar); the date changes only
// by typing, Up/Down on the section under the cursor, or the calendar. The mouse wheel and Tab
// do not walk through the sections: the wheel is left to the screen and Tab leaves the field.
class DateEdit : public QDateEdit {
    Q_OBJECT
public:
    explicit DateEdit(QWidget* parent = nullptr);
    DateEdit(const QString& objectName, QWidget* parent);

    // The words of the box when the field is left with no possible date in it.
    void setRefusal(const QString& words) { m_refusal->setWords(words); }
    QString refusal() const;
    // Whether the text is a whole, possible date, which date() then gives.
    bool hasDateText() const;

protected:
    QValidator::State validate(QString& input, int& pos) const override;
    void fixup(QString& input) const override;
    QDateTime dateTimeFromText(const QString& text) const override;
    StepEnabled stepEnabled() const override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void takeText();
    void typeSeparator();
    LeavingRefusal* m_refusal;
    QDate m_before;       // what date() gives while the text is no possible date
    bool m_quiet = false; // the text is being put back by the field itself
};

} // namespace gm
