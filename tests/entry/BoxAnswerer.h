#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <deque>
#include <vector>

namespace gm::test {

// What a message box showed before it was answered.
struct SeenBox {
    QString text;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
};

// Answers the modal message boxes that come up while it lives, in order, with the buttons it
// was given, and keeps what each box showed. Arm it before the action that opens the boxes.
class BoxAnswerer : public QObject {
public:
    explicit BoxAnswerer(std::deque<QMessageBox::StandardButton> answers)
        : m_answers(std::move(answers)) {
        m_timer.setInterval(5);
        connect(&m_timer, &QTimer::timeout, this, &BoxAnswerer::poll);
        m_timer.start();
    }
    explicit BoxAnswerer(QMessageBox::StandardButton answer) : BoxAnswerer(std::deque{answer}) {}

    const std::vector<SeenBox>& seen() const { return m_seen; }
    int count() const { return int(m_seen.size()); }
    const SeenBox& last() const { return m_seen.back(); }

private:
    void poll() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible() || m_answers.empty())
            return;
        SeenBox s;
        s.text = box->text();
        s.title = box->windowTitle();
        s.icon = box->icon();
        s.buttons = box->standardButtons();
        if (auto* def = box->defaultButton())
            s.defaultButton = box->standardButton(def);
        m_seen.push_back(s);
        const QMessageBox::StandardButton answer = m_answers.front();
        m_answers.pop_front();
        if (auto* b = box->button(answer))
            b->click();
        else
            box->reject();
    }

    std::deque<QMessageBox::StandardButton> m_answers;
    std::vector<SeenBox> m_seen;
    QTimer m_timer;
};

} // namespace gm::test
