#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <deque>
#include <functional>

namespace gm::test {

// Answers the modal windows an action opens, one after another, as a clerk would. Each step
// gets the window and returns true once it has dealt with it. A message box that no step
// expects is noted and closed, so a test fails instead of hanging.
class ModalAnswers {
public:
    struct Box {
        QString text;
        QString title;
        QMessageBox::Icon icon;
        QMessageBox::StandardButton defaultButton;
    };
    using Step = std::function<bool(QWidget*)>;

    ModalAnswers() {
        m_timer.setInterval(15);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { poll(); });
        m_timer.start();
    }

    // A message box, answered with `button`.
    ModalAnswers& box(QMessageBox::StandardButton button) {
        m_steps.push_back([this, button](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            if (!box)
                return false;
            record(box);
            if (QAbstractButton* b = box->button(button))
                b->click();
            else
                box->reject();
            return true;
        });
        return *this;
    }
    // Any other modal window, handled by `step`.
    ModalAnswers& window(Step step) {
        m_steps.push_back(std::move(step));
        return *this;
    }

    const QList<Box>& boxes() const { return m_boxes; }
    bool allAnswered() const { return m_steps.empty(); }
    int unexpected() const { return m_unexpected; }

private:
    void record(QMessageBox* box) {
        m_boxes.append({box->text(), box->windowTitle(), box->icon(),
                        box->defaultButton() ? box->standardButton(box->defaultButton())
                                             : QMessageBox::NoButton});
    }
    void poll() {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || w == m_last || !w->isVisible())
            return;
        if (m_steps.empty()) {
            if (auto* box = qobject_cast<QMessageBox*>(w)) {
                record(box);
                ++m_unexpected;
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
    QList<Box> m_boxes;
    QPointer<QWidget> m_last;
    int m_unexpected = 0;
};

} // namespace gm::test
