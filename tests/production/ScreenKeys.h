#pragma once

#include "entry/LineGrid.h"
#include "support/Modals.h"
#include "widgets/LookupCombo.h"

#include <QApplication>
#include <QCompleter>
#include <QLineEdit>
#include <QtTest>

#include <functional>

// A clerk's keys on the production screens.
namespace gm::test {

template <class W = QWidget> W* control(QWidget* screen, const char* name) {
    auto* w = screen->findChild<W*>(QString::fromLatin1(name));
    if (!w)
        qFatal("no control %s", name);
    return w;
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

// Replaces what a field holds by typing and leaves it with Enter, which moves on like Tab.
inline void typeInto(QWidget* screen, const char* name, const QString& keys) {
    QWidget* w = control(screen, name);
    focusOn(screen, w);
    auto* lookup = qobject_cast<LookupCombo*>(w);
    if (lookup)
        lookup->lineEdit()->selectAll();
    else
        qobject_cast<QLineEdit*>(w)->selectAll();
    QTest::keyClick(w, Qt::Key_Backspace);
    QTest::keyClicks(w, keys);
    if (lookup && lookup->completer() && lookup->completer()->popup())
        lookup->completer()->popup()->hide();
    QTest::keyClick(w, Qt::Key_Return);
}

// A cell typed as the clerk does: F2 opens the editor, Enter commits and moves on.
inline void typeCell(LineGrid* g, int row, int column, const QString& keys) {
    QApplication::setActiveWindow(g->window());
    g->setFocus(Qt::MouseFocusReason);
    g->setCurrentIndex(g->lines()->index(row, column));
    QTest::keyClick(g, Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    if (auto* line = qobject_cast<QLineEdit*>(editor))
        line->selectAll();
    else if (auto* combo = qobject_cast<QComboBox*>(editor))
        combo->lineEdit()->selectAll();
    QTest::keyClicks(editor, keys);
    QTest::keyClick(editor, Qt::Key_Return);
}

// Cells of one line from column 0 on; a null text leaves its cell alone.
inline void typeLine(LineGrid* g, int row, const QStringList& cells) {
    for (int column = 0; column < cells.size(); ++column)
        if (!cells[column].isNull())
            typeCell(g, row, column, cells[column]);
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

// Runs the action, answering the boxes it opens in turn; the words they showed.
inline QStringList answering(const QList<QMessageBox::StandardButton>& answers,
                             const std::function<void()>& action,
                             QList<Modals::Seen>* seen = nullptr) {
    Modals m(answers);
    action();
    (void)QTest::qWaitFor([&m] { return m.done(); });
    if (seen)
        *seen = m.seen();
    return m.texts();
}

} // namespace gm::test
