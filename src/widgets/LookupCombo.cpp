#include "widgets/LookupCombo.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace gm {

LookupCombo::LookupCombo(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setMaxVisibleItems(12);
    QCompleter* c = completer();
    c->setCaseSensitivity(Qt::CaseInsensitive);
    c->setFilterMode(Qt::MatchStartsWith);
    c->setCompletionMode(QCompleter::PopupCompletion);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_typed = true; });
    // Ahead of the completer's own filter, which holds a leaving key or focus change back
    // while its list is open.
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index < 0)
            return;
        m_accepted = itemText(index);
        m_typed = false;
        Q_EMIT entryChosen(index);
    });
}

LookupCombo::LookupCombo(const QString& objectName, QWidget* parent) : LookupCombo(parent) {
    setObjectName(objectName);
}

void LookupCombo::setItems(const LookupList& items) {
    m_items = items;
    QSignalBlocker block(this);
    QComboBox::clear();
    for (const LookupItem& item : m_items)
        addItem(item.name, item.key);
    setCurrentIndex(-1);
    clearEditText();
    m_accepted.clear();
    m_typed = false;
}

void LookupCombo::clearItems() {
    setItems({});
}

int LookupCombo::findName(const QString& name) const {
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (m_items[i].name == name)
            return int(i);
    }
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (m_items[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    return -1;
}

QString LookupCombo::currentKey() const {
    const QString t = currentText();
    const int current = currentIndex();
    // Duplicate names are possible (two parties of one name); the row in hand wins.
    if (current >= 0 && size_t(current) < m_items.size() && m_items[size_t(current)].name == t)
        return m_items[size_t(current)].key;
    const int found = findName(t);
    return found >= 0 && !t.isEmpty() ? m_items[size_t(found)].key : QString();
}

QString LookupCombo::FindComboItem(const QString& text) {
    const int found = findName(text);
    if (found < 0)
        return QStringLiteral("0");
    setCurrentIndex(found);
    return m_items[size_t(found)].key;
}

bool LookupCombo::selectKey(const QString& key) {
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (m_items[i].key == key) {
            setCurrentIndex(int(i));
            return true;
        }
    }
    return false;
}

void LookupCombo::setText(const QString& text) {
    const int found = text.isEmpty() ? -1 : findName(text);
    if (found >= 0 && m_items[size_t(found)].name == text) {
        setCurrentIndex(found);
        setEditText(text); // same row again emits nothing; the text must still show
    } else {
        setCurrentIndex(-1);
        setEditText(text);
    }
    m_accepted = text;
    m_typed = false;
}

bool LookupCombo::settleTypedText() {
    if (completer() && completer()->popup() && completer()->popup()->isVisible())
        completer()->popup()->hide();
    if (!m_typed)
        return true;
    m_typed = false;
    const QString typed = currentText();
    if (typed.isEmpty()) {
        setCurrentIndex(-1);
        m_accepted.clear();
        return true;
    }
    int found = findName(typed);
    if (found < 0) {
        // A prefix that only one entry begins with is taken as that entry.
        for (size_t i = 0; i < m_items.size(); ++i) {
            if (m_items[i].name.startsWith(typed, Qt::CaseInsensitive)) {
                if (found >= 0) {
                    found = -2;
                    break;
                }
                found = int(i);
            }
        }
    }
    if (found >= 0) {
        const QString name = m_items[size_t(found)].name;
        if (currentIndex() == found)
            setEditText(name);
        else
            setCurrentIndex(found);
        m_accepted = name;
        return true;
    }
    if (!m_limit) {
        setCurrentIndex(-1);
        setEditText(typed);
        return true;
    }
    const QString back = m_accepted;
    const int backRow = back.isEmpty() ? -1 : findName(back);
    setCurrentIndex(backRow >= 0 && m_items[size_t(backRow)].name == back ? backRow : -1);
    setEditText(back);
    m_accepted = back;
    return false;
}

bool LookupCombo::isLeavingKey(QEvent* event) const {
    if (event->type() != QEvent::KeyPress)
        return false;
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default:
        return false;
    }
}

bool LookupCombo::event(QEvent* event) {
    if (isLeavingKey(event))
        settleTypedText();
    return QComboBox::event(event);
}

bool LookupCombo::eventFilter(QObject* watched, QEvent* event) {
    if (watched == lineEdit()) {
        if (isLeavingKey(event))
            settleTypedText();
        else if (event->type() == QEvent::FocusOut &&
                 static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason)
            settleTypedText();
    }
    return QComboBox::eventFilter(watched, event);
}

void LookupCombo::focusOutEvent(QFocusEvent* event) {
    // A drop-down or completion list taking the keyboard is no leaving of the field.
    if (event->reason() != Qt::PopupFocusReason)
        settleTypedText();
    QComboBox::focusOutEvent(event);
}

void LookupCombo::keyPressEvent(QKeyEvent* event) {
    QComboBox::keyPressEvent(event);
}

} // namespace gm
