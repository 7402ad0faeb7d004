#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include <functional>

namespace gm {

// Holds a field that the clerk left with a text it cannot keep. The box comes up once the focus
// has gone, however it went (Tab, the screen's Enter, a click elsewhere), and the focus then
// returns to the field with the text as typed. The click that took the focus away does nothing
// else, so that a button under it never acts on what the field held before.
class LeavingRefusal : public QObject {
    Q_OBJECT
public:
    // `stands` tells whether the field's text may be left as it is now.
    LeavingRefusal(QWidget* field, std::function<bool()> stands);

    void setWords(const QString& words) { m_words = words; }
    const QString& words() const { return m_words; }

    // The field lost the focus for `reason`: a refusal is on its way when the field was left
    // (not merely covered by a popup or another window) with words to say and a text that
    // cannot stand. Returns whether one is.
    bool left(Qt::FocusReason reason);
    bool pending() const { return m_pending; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refuse();
    void stopEatingClicks();
    QWidget* m_field;
    std::function<bool()> m_stands;
    QString m_words;
    bool m_pending = false;
    bool m_eatingClicks = false;
};

} // namespace gm
