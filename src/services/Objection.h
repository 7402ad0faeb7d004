#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <exception>
#include <optional>

namespace gm {

// Why the clerk's entry or command is not taken, in the clerk's words, and where to mend it.
// Validators return one; stores throw one (wrapped in Objected) from inside a save or a
// removal; the screen frame shows the box and moves the focus. One shape for every refusal,
// so each message text is written once, beside the rule that gives it.
struct Objection {
    enum class Icon { None, Information, Warning };

    QString text; // empty: refused quietly, the clerk has already been asked
    QString title = QStringLiteral("Alert");
    Icon icon = Icon::Information;
    QString focus;   // objectName of the control to mend: a field, or a grid
    int row = -1;    // with a grid: the line and column to stand on
    int column = -1; // -1 keeps the grid's current column
    // The typed document number could not be used and this fresh one was drawn: the screen
    // shows it in place of the old one, so the next save uses it everywhere.
    std::optional<qint64> newDocumentId;

    static Objection info(QString text, QString focus = {}) {
        Objection o;
        o.text = std::move(text);
        o.focus = std::move(focus);
        return o;
    }
    static Objection warning(QString text, QString focus = {}) {
        Objection o = info(std::move(text), std::move(focus));
        o.icon = Icon::Warning;
        return o;
    }
    // A refusal the clerk has already answered (a question answered No): no further box.
    static Objection quiet() { return info(QString()); }

    Objection& inGrid(QString grid, int atRow, int atColumn = -1) {
        focus = std::move(grid);
        row = atRow;
        column = atColumn;
        return *this;
    }
    Objection& withNewDocumentId(qint64 id) {
        newDocumentId = id;
        return *this;
    }
    Objection& titled(QString boxTitle, Icon boxIcon) {
        title = std::move(boxTitle);
        icon = boxIcon;
        return *this;
    }
    bool isQuiet() const { return text.isEmpty(); }
};

// An objection raised from deep inside a save or removal (a store, after its transaction
// rolled back). The frame catches it ahead of real failures and shows it as an objection,
// not as an error box.
class Objected : public std::exception {
public:
    explicit Objected(Objection objection)
        : m_objection(std::move(objection)), m_what(m_objection.text.toUtf8()) {}
    const Objection& objection() const { return m_objection; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Objection m_objection;
    QByteArray m_what;
};

} // namespace gm
