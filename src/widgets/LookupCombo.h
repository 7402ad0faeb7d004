#pragma once

#include "services/LookupItem.h"

#include <QComboBox>

namespace gm {

class LeavingRefusal;

// The combo of every choice on the screens: an editable list of names, each with a hidden key.
//
// Typing completes case-insensitively from the list and drops the matching entries down.
// When a clerk leaves the field after editing
//  - a text equal to an entry's name in any case selects that entry (its own spelling shown),
//  - else a prefix that only one entry starts with selects that entry,
//  - else the text stays as typed, with no entry behind it (currentKey() empty); a combo given
//    its field's refusal words shows them and keeps the focus until the text is mended.
// What the clerk typed is never replaced by another entry's text or an earlier one.
// Text set by code (setText) is kept as it stands even when it is no entry, as the screens
// show stored names that the list may no longer offer.
class LookupCombo : public QComboBox {
    Q_OBJECT
public:
    explicit LookupCombo(QWidget* parent = nullptr);
    LookupCombo(const QString& objectName, QWidget* parent);

    // Replaces the list; nothing of the earlier list is left and the text is emptied.
    void setItems(const LookupList& items);
    const LookupList& items() const { return m_items; }
    // Empties the list and the text.
    void clearItems();

    // Key of the entry whose name the text is; empty when the text is no entry.
    QString currentKey() const;

    // Makes the entry named `text` (exact, then any case) current and returns its key, or "0"
    // when no entry has that name; the current row is then left unchanged.
    QString FindComboItem(const QString& text);
    // Selects the entry with that key; false (and nothing changed) when no entry has it.
    bool selectKey(const QString& key);
    // Index of the entry with that name (exact, then any case), -1 when none.
    int findName(const QString& name) const;

    QString text() const { return currentText(); }
    // Sets the text; an entry of that name becomes current, otherwise no row is current.
    void setText(const QString& text);

    // Puts a text in as if the clerk had typed it (a search's choice): settled, and refused
    // when it is no entry, on leaving like typed text.
    void setTextAsTyped(const QString& text);

    // The words of the box ("Alert", information) that refuses leaving the field with a typed
    // text that is no entry, e.g. "Please provide a valid Commodity."; empty (the default)
    // lets such a text stay for the screen's save to refuse.
    void setRefusal(const QString& words);
    QString refusal() const;

    // Whether leaving with an unknown typed text is refused (default true, given refusal
    // words). A grid's editor turns it off: the grid's check refuses the text in its own words.
    void setLimitToList(bool limit) { m_limit = limit; }

    // The text a clerk typed is settled now (as on leaving the field): an entry's name in any
    // case or a unique prefix becomes that entry. Returns false when the text stays as no
    // entry; true when it is empty or an entry.
    bool settleTypedText();

Q_SIGNALS:
    // An entry was chosen by the clerk or by code (also through setText/selectKey).
    void entryChosen(int row);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool isLeavingKey(QEvent* event) const;
    int entryFor(const QString& typed) const;
    void showUnlisted(const QString& text);
    void leaving(Qt::FocusReason reason);
    LookupList m_items;
    LeavingRefusal* m_refusal;
    bool m_typed = false; // the clerk has edited the text and it is not settled yet
    bool m_limit = true;
};

} // namespace gm
