#pragma once

#include "services/LookupItem.h"

#include <QComboBox>

namespace gm {

// The combo of every choice on the screens: an editable list of names, each with a hidden key.
//
// Typing completes case-insensitively from the list and drops the matching entries down.
// Only entries are accepted from the keyboard: when a clerk leaves the field after editing
//  - a text equal to an entry's name in any case selects that entry (its own spelling shown),
//  - else a prefix that only one entry starts with selects that entry,
//  - else the text reverts to the last accepted text (an entry, or what code set, or empty).
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

    // Whether an unknown typed text reverts (default true). A grid's editor turns it off so
    // that the grid's check sees the text and refuses it with its own words.
    void setLimitToList(bool limit) { m_limit = limit; }

    // The text a clerk typed is settled now (as on leaving the field). Returns true when the
    // text is accepted as it stands or was completed; false when it reverted.
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
    LookupList m_items;
    QString m_accepted; // the last text accepted by code or by choice
    bool m_typed = false;
    bool m_limit = true;
};

} // namespace gm
