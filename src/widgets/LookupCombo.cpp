#include "widgets/LookupCombo.h"

#include "widgets/LeavingRefusal.h"

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
    m_refusal = new LeavingRefusal(
        this, [this] { return !m_limit || !m_typed || entryFor(currentText()) != -2; });
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_typed = true; });
    // Ahead of the completer's own filter, which holds a leaving key or focus change back
    // while its list is open.
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index < 0)
            return;
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
    m_typed = false;
}

void LookupCombo::setTextAsTyped(const QString& text) {
    setCurrentIndex(-1);
    setEditText(text);
    m_typed = true;
}

void LookupCombo::setRefusal(const QString& words) {
    m_refusal->setWords(words);
}

QString LookupCombo::refusal() const {
    return m_refusal->words();
}

int LookupCombo::entryFor(const QString& typed) const {
    if (typed.isEmpty())
        return -1;
    int found = findName(typed);
    if (found >= 0)
        return found;
    // A prefix that only one entry begins with is taken as that entry.
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (m_items[i].name.startsWith(typed, Qt::CaseInsensitive)) {
            if (found >= 0)
                return -2;
            found = int(i);
        }
    }
    return found >= 0 ? found : -2;
}

void LookupCombo::showUnlisted(const QString& text) {
    if (currentIndex() >= 0) {
        // Leaving the row empties the text for a moment; nobody is to take that for the
        // clerk emptying the field.
        const QSignalBlocker quiet(this);
        setCurrentIndex(-1);
        setEditText(text);
    } else if (currentText() != text) {
        setEditText(text);
    }
}

bool LookupCombo::settleTypedText() {
    if (completer() && completer()->popup() && completer()->popup()->isVisible())
        completer()->popup()->hide();
    if (!m_typed)
        return currentText().isEmpty() || findName(currentText()) >= 0;
    const QString typed = currentText();
    const int found = entryFor(typed);
    if (found == -1) {
        m_typed = false;
        if (currentIndex() >= 0)
            setCurrentIndex(-1);
        return true;
    }
    if (found >= 0) {
        m_typed = false;
        const QString name = m_items[size_t(found)].name;
        if (currentIndex() == found)
            setEditText(name);
        else
            setCurrentIndex(found);
        return true;
    }
    showUnlisted(typed);
    // A text the field refuses stays unsettled, so that every leaving refuses it again.
    if (!m_limit || m_refusal->words().isEmpty())
        m_typed = false;
    return false;
}

void LookupCombo::leaving(Qt::FocusReason reason) {
    // A drop-down or completion list taking the keyboard is no leaving of the field.
    if (reason == Qt::PopupFocusReason)
        return;
    if (!settleTypedText())
        m_refusal->left(reason);
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
        else if (event->type() == QEvent::FocusOut)
            leaving(static_cast<QFocusEvent*>(event)->reason());
    }
    return QComboBox::eventFilter(watched, event);
}

void LookupCombo::focusOutEvent(QFocusEvent* event) {
    leaving(event->reason());
    QComboBox::focusOutEvent(event);
}

void LookupCombo::keyPressEvent(QKeyEvent* event) {
    QComboBox::keyPressEvent(event);
}

} // namespace gm
