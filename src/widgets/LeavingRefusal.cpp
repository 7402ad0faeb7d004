#include "widgets/LeavingRefusal.h"

#include "widgets/Messages.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>

namespace gm {

LeavingRefusal::LeavingRefusal(QWidget* field, std::function<bool()> stands)
    : QObject(field), m_field(field), m_stands(std::move(stands)) {}

bool LeavingRefusal::left(Qt::FocusReason reason) {
    // A popup of the field's own or another window coming up is no leaving of the field.
    if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason)
        return false;
    if (m_pending)
        return true;
    if (m_words.isEmpty() || m_stands())
        return false;
    m_pending = true;
    if (reason == Qt::MouseFocusReason && !m_eatingClicks) {
        // The press that moved the focus is still on its way to the widget under the mouse.
        m_eatingClicks = true;
        qApp->installEventFilter(this);
    }
    // The focus change under way finishes first; the box then takes the focus from wherever
    // it went, and gives it back to the field.
    QTimer::singleShot(0, this, &LeavingRefusal::refuse);
    return true;
}

void LeavingRefusal::refuse() {
    m_pending = false;
    stopEatingClicks();
    // Cleared, refilled or closed meanwhile: nothing is left to refuse.
    if (m_stands() || !m_field->isVisible() || !m_field->isEnabled())
        return;
    msg::inform(m_field->window(), m_words);
    m_field->activateWindow();
    m_field->setFocus(Qt::OtherFocusReason);
}

void LeavingRefusal::stopEatingClicks() {
    if (!m_eatingClicks)
        return;
    m_eatingClicks = false;
    qApp->removeEventFilter(this);
}

bool LeavingRefusal::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease: {
        auto* w = qobject_cast<QWidget*>(watched);
        if (!w || w->window() != m_field->window())
            return false;
        if (event->type() == QEvent::MouseButtonRelease)
            stopEatingClicks();
        return true;
    }
    default:
        return false;
    }
}

} // namespace gm
