#pragma once

#include "entry/Fields.h"
#include "entry/LineGrid.h"
#include "support/Modals.h"
#include "widgets/LookupCombo.h"

#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QtTest>

#include <functional>

namespace gm::test {

// Driving a screen as a clerk does, by its controls' names and real key presses.

template <class W = QWidget> W* control(QWidget* screen, const QString& name) {
    auto* w = screen->findChild<W*>(name);
    if (!w)
        qFatal("no control %s", qPrintable(name));
    return w;
}

// What a text field or a combo shows.
inline QString textOf(QWidget* screen, const QString& name) {
    QWidget* w = control(screen, name);
    if (auto* c = qobject_cast<QComboBox*>(w))
        return c->currentText();
    return qobject_cast<QLineEdit*>(w)->text();
}

// The control that holds the keyboard, or one of its parts.
inline bool holds(QWidget* screen, QWidget* w) {
    QWidget* f = screen->focusWidget();
    return f && (f == w || w->isAncestorOf(f));
}

// The window takes the keyboard back after a message box, as it does for a clerk.
inline void focusOn(QWidget* screen, QWidget* w) {
    QApplication::setActiveWindow(screen);
    w->setFocus(Qt::MouseFocusReason);
}

// Into a field as a click would, replace its text by typing, leave with Enter (a Tab here).
inline void typeInto(QWidget* screen, const QString& name, const QString& keys) {
    QWidget* w = control(screen, name);
    focusOn(screen, w);
    auto* combo = qobject_cast<QComboBox*>(w);
    if (combo)
        combo->lineEdit()->selectAll();
    else
        qobject_cast<QLineEdit*>(w)->selectAll();
    QTest::keyClick(w, Qt::Key_Backspace);
    QTest::keyClicks(w, keys);
    if (combo && combo->completer() && combo->completer()->popup())
        combo->completer()->popup()->hide();
    QTest::keyClick(w, Qt::Key_Return);
}

// A cell typed as the clerk does: F2 opens the editor, the text is typed over, Enter commits.
inline void typeCell(LineGrid* grid, int row, int column, const QString& keys) {
    // A box that was answered may have left the screen without an active window.
    QApplication::setActiveWindow(grid->window());
    grid->setFocus(Qt::MouseFocusReason);
    grid->setCurrentIndex(grid->lines()->index(row, column));
    QTest::keyClick(grid, Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    if (auto* inner = qobject_cast<QLineEdit*>(editor);
        inner && qobject_cast<DateEdit*>(inner->parentWidget()))
        editor = inner->parentWidget();
    if (auto* day = qobject_cast<DateEdit*>(editor))
        day->findChild<QLineEdit*>()->setCursorPosition(0); // digits type over the date
    else if (auto* line = qobject_cast<QLineEdit*>(editor))
        line->selectAll();
    else if (auto* combo = qobject_cast<QComboBox*>(editor))
        combo->lineEdit()->selectAll();
    QTest::keyClicks(editor, keys);
    QTest::keyClick(editor, Qt::Key_Return);
}

// Leaves a refused cell with Escape in its editor, which the refusal kept open.
inline void escapeCell(LineGrid* g) {
    QApplication::setActiveWindow(g->window());
    for (QWidget* w : g->findChildren<QWidget*>())
        if (w->property("gmColumn").isValid() && w->isVisible()) {
            QTest::keyClick(w, Qt::Key_Escape);
            return;
        }
    QTest::keyClick(g, Qt::Key_Escape);
}

// A key to whatever holds the keyboard on the screen.
inline void key(QWidget* screen, Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QApplication::setActiveWindow(screen);
    QWidget* target = QApplication::focusWidget();
    if (!target || target->window() != screen)
        target = screen;
    QTest::keyClick(target, k, mods);
}

// A Ctrl command on whatever holds the focus in the screen.
inline void ctrl(QWidget* screen, Qt::Key k) {
    key(screen, k, Qt::ControlModifier);
}

// Runs the action, answering the boxes it opens in turn; what they showed.
inline QList<Modals::Seen> answering(const QList<QMessageBox::StandardButton>& answers,
                                     const std::function<void()>& action) {
    Modals m(answers);
    action();
    (void)QTest::qWaitFor([&m] { return m.done(); });
    return m.seen();
}

inline QStringList textsOf(const QList<Modals::Seen>& seen) {
    QStringList out;
    for (const Modals::Seen& s : seen)
        out << s.text;
    return out;
}

// The same, giving the words the boxes showed (and, when asked, all they showed).
inline QStringList answeredTexts(const QList<QMessageBox::StandardButton>& answers,
                                 const std::function<void()>& action,
                                 QList<Modals::Seen>* seen = nullptr) {
    const QList<Modals::Seen> all = answering(answers, action);
    if (seen)
        *seen = all;
    return textsOf(all);
}

} // namespace gm::test
