#include "entry/Fields.h"

#include "services/Numeric.h"
#include "widgets/Messages.h"

#include <QApplication>
#include <QKeyEvent>
#include <QRegularExpressionValidator>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTimer>

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

namespace {

const QString kDateText = QString::fromLatin1(kDateFormat);

QDate dateOfText(const QString& text) {
    // Exactly "dd/MM/yyyy": no part may be missing or filled in from elsewhere.
    if (text.size() != kDateText.size())
        return {};
    return QDate::fromString(text, kDateText);
}

bool isSeparatorKey(const QString& text) {
    return text == QLatin1String("/") || text == QLatin1String("-") || text == QLatin1String(".");
}

} // namespace

DateEdit::DateEdit(QWidget* parent) : QDateEdit(QDate::currentDate(), parent) {
    setDisplayFormat(kDateText);
    setCalendarPopup(true);
    m_refusal = new LeavingRefusal(this, [this] { return hasDateText(); });
    m_refusal->setWords(kInvalidDate);
    m_before = date();

    // The spin box reads its text section by section as the cursor moves, clamping a day
    // against the month still shown and putting the last date back over a part typed. Its
    // text is taken here instead, and handed on only when it is a whole, possible date.
    QLineEdit* edit = lineEdit();
    disconnect(edit, SIGNAL(textChanged(QString)), this, SLOT(_q_editorTextChanged(QString)));
    disconnect(edit, SIGNAL(cursorPositionChanged(int, int)), this,
               SLOT(_q_editorCursorPositionChanged(int, int)));
    edit->setInputMask(QStringLiteral("99/99/9999;_"));
    connect(edit, &QLineEdit::textChanged, this, [this] { takeText(); });
    connect(edit, &QLineEdit::cursorPositionChanged, this, [this](int from, int to) {
        // Which section Up and Down step follows the cursor, over a date only.
        if (!m_quiet && hasDateText())
            QMetaObject::invokeMethod(this, "_q_editorCursorPositionChanged", Qt::DirectConnection,
                                      Q_ARG(int, from), Q_ARG(int, to));
    });
    connect(this, &QDateEdit::dateChanged, this, [this](QDate shown) {
        if (!m_quiet)
            m_before = shown;
    });
}

DateEdit::DateEdit(const QString& objectName, QWidget* parent) : DateEdit(parent) {
    setObjectName(objectName);
}

QString DateEdit::refusal() const {
    return m_refusal->words();
}

bool DateEdit::hasDateText() const {
    return dateOfText(lineEdit()->displayText()).isValid();
}

QValidator::State DateEdit::validate(QString& input, int&) const {
    return dateOfText(input).isValid() ? QValidator::Acceptable : QValidator::Intermediate;
}

void DateEdit::fixup(QString&) const {
    // Nothing is mended behind the clerk's back: an impossible date is refused on leaving.
}

QDateTime DateEdit::dateTimeFromText(const QString& text) const {
    return dateOfText(text).startOfDay();
}

QAbstractSpinBox::StepEnabled DateEdit::stepEnabled() const {
    // Stepping a half-typed date would step the old one and throw the typing away.
    return hasDateText() ? QDateEdit::stepEnabled() : StepNone;
}

bool DateEdit::focusNextPrevChild(bool next) {
    return QWidget::focusNextPrevChild(next);
}

void DateEdit::takeText() {
    if (m_quiet)
        return;
    QLineEdit* edit = lineEdit();
    const QString shown = edit->displayText();
    if (hasDateText()) {
        // A date on the way is no choice of the clerk's yet: m_before stays.
        m_quiet = true;
        QMetaObject::invokeMethod(this, "_q_editorTextChanged", Qt::DirectConnection,
                                  Q_ARG(QString, shown));
        m_quiet = false;
    } else if (date() != m_before) {
        // A date passed through while typing (31/01 on the way to 31/02) is no choice of the
        // clerk's: date() goes back to what the field held, the text stays as typed.
        const int cursor = edit->cursorPosition();
        m_quiet = true;
        setDate(m_before);
        edit->setText(shown);
        edit->setCursorPosition(cursor);
        m_quiet = false;
    }
}

void DateEdit::typeSeparator() {
    QLineEdit* edit = lineEdit();
    const int at = edit->hasSelectedText() ? edit->selectionStart() : edit->cursorPosition();
    QString text = edit->displayText();
    // Day and month sit at 0-1 and 3-4, each followed by its separator.
    if (at == 1 || at == 4) {
        if (!text.at(at - 1).isDigit())
            return;
        text[at] = text.at(at - 1);
        text[at - 1] = u'0';
        edit->setText(text);
        edit->setCursorPosition(at + 2);
    } else if (at == 2 || at == 5) {
        edit->deselect();
        edit->setCursorPosition(at + 1);
    }
    // Anywhere else the separator was stepped over already, or there is none to type.
}

void DateEdit::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const QString typed = event->text();
    if (plain && isSeparatorKey(typed)) {
        typeSeparator();
        event->accept();
        return;
    }
    if ((plain && !typed.isEmpty() && typed.at(0).isPrint()) || event->key() == Qt::Key_Backspace ||
        event->key() == Qt::Key_Delete) {
        // Straight to the text, past the spin box's jumps from section to section.
        static_cast<QObject*>(lineEdit())->event(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (!hasDateText()) {
            event->accept();
            return;
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!hasDateText()) {
            // The spin box would put the last date back.
            event->ignore();
            return;
        }
        break;
    default:
        break;
    }
    QDateEdit::keyPressEvent(event);
}

void DateEdit::mousePressEvent(QMouseEvent* event) {
    // With the calendar popup on, the spin box takes a click in the text for its down arrow
    // and steps the date back: only the arrow that opens the calendar is left to it.
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = true;
    option.subControls = QStyle::SC_All;
    const QPoint at = event->position().toPoint();
    if (style()->hitTestComplexControl(QStyle::CC_ComboBox, &option, at, this) ==
        QStyle::SC_ComboBoxArrow) {
        QDateEdit::mousePressEvent(event);
        return;
    }
    QLineEdit* edit = lineEdit();
    edit->setCursorPosition(edit->cursorPositionAt(edit->mapFrom(this, at)));
    event->accept();
}

void DateEdit::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void DateEdit::focusInEvent(QFocusEvent* event) {
    if (hasDateText()) {
        m_before = date();
        QDateEdit::focusInEvent(event);
        return;
    }
    // Back after a refusal: the spin box would show its last date over the clerk's text.
    static_cast<QObject*>(lineEdit())->event(event);
    QWidget::focusInEvent(event);
}

void DateEdit::focusOutEvent(QFocusEvent* event) {
    if (hasDateText()) {
        m_before = date();
        QDateEdit::focusOutEvent(event);
        return;
    }
    static_cast<QObject*>(lineEdit())->event(event);
    QWidget::focusOutEvent(event);
    m_refusal->left(event->reason());
}

} // namespace gm
