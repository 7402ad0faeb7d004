#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <deque>
#include <functional>

namespace gm::test {

// Answers the modal windows an action opens, in order, as the clerk would; records every
// message box seen. A box nobody expected is recorded and dismissed, so a test fails on its
// words instead of hanging.
class Modals {
public:
    struct Seen {
        QString text;
        QString title;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QMessageBox::StandardButtons buttons;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    };
    using Step = std::function<bool(QWidget*)>;

    Modals() {
        m_timer.setInterval(10);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { poll(); });
        m_timer.start();
    }
    explicit Modals(const QList<QMessageBox::StandardButton>& answers) : Modals() {
        for (QMessageBox::StandardButton button : answers)
            answer(button);
    }
    explicit Modals(QMessageBox::StandardButton button) : Modals() { answer(button); }

    Modals& answer(QMessageBox::StandardButton button) {
        m_steps.push_back([this, button](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            if (!box)
                return false;
            note(box);
            if (QAbstractButton* b = box->button(button))
                b->click();
            else
                box->reject();
            return true;
        });
        return *this;
    }
    Modals& window(Step step) {
        m_steps.push_back(std::move(step));
        return *this;
    }

    const QList<Seen>& seen() const { return m_seen; }
    int count() const { return int(m_seen.size()); }
    // With no box seen, an empty record, so the test fails on a comparison, not a crash.
    const Seen& last() const {
        static const Seen none;
        return m_seen.isEmpty() ? none : m_seen.back();
    }
    QStringList texts() const {
        QStringList out;
        for (const Seen& s : m_seen)
            out << s.text;
        return out;
    }
    bool done() const { return m_steps.empty(); }

private:
    void note(QMessageBox* box) {
        Seen s;
        s.text = box->text();
        s.title = box->windowTitle();
        s.icon = box->icon();
        s.buttons = box->standardButtons();
        if (QPushButton* def = box->defaultButton())
            s.defaultButton = box->standardButton(def);
        m_seen.append(s);
    }
    void poll() {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || w == m_last || !w->isVisible())
            return;
        if (m_steps.empty()) {
            if (auto* box = qobject_cast<QMessageBox*>(w)) {
                note(box);
                m_last = w;
                box->reject();
            }
            return;
        }
        if (m_steps.front()(w)) {
            m_last = w;
            m_steps.pop_front();
        }
    }

    QTimer m_timer;
    std::deque<Step> m_steps;
    QList<Seen> m_seen;
    QPointer<QWidget> m_last;
};

} // namespace gm::test
