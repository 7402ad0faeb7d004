#pragma once

#include "services/Context.h"
#include "services/Objection.h"

#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <array>
#include <functional>
#include <map>
#include <optional>

class QPushButton;
class QKeyEvent;

namespace gm {

class LookupCombo;
struct PartyChoice;

// The buttons a document screen may have, in the order they stand on the button row.
enum class Button { Save, Print, Clear, Open, Remove, Close };

// The life of the document on a screen: a new one being typed, one changed since it was new
// or opened, and a saved one opened and shown as it stands.
enum class Mode { New = 1, Changed = 2, Opened = 3 };

// What one button does when the screen enters a mode.
enum class ButtonState { Keep, On, Off };

// Buttons for modes 1 (new), 2 (changed) and 3 (opened), in Button order.
using ModeTable = std::array<std::array<ButtonState, 6>, 3>;

// Everything in which the document screens' shared behaviour differs, as data.
struct ScreenTraits {
    QString objectName; // "FrmPurchaseContract"
    QString caption;    // window title, "Purchase Contract"
    std::vector<Button> buttons{Button::Save, Button::Print,  Button::Clear,
                                Button::Open, Button::Remove, Button::Close};
    ModeTable modes = standardModes();

    // Enter acts as Tab, except:
    QStringList enterPassesIn;            // on these controls Enter is left to the control ("Grid")
    bool enterTabsOnButtons = true;       // false: Enter on a Btn control presses it
    bool enterOnButtonMarksMode2 = false; // and before that calls SetScreenMode(2)

    // Marking a change (ModeWord "ChangeMode" and SetScreenMode(2)).
    enum class Mark {
        OnceWithWord, // only when ModeWord is not yet "ChangeMode"
        EveryTime,    // SetScreenMode(2) on each marking key, ModeWord untouched
    };
    Mark mark = Mark::OnceWithWord;
    // True: marking runs after the key's handling, also for keys the frame consumed (Enter as
    // Tab, a completed party search). False: only keys without a function of their own mark.
    bool markAfterHandledKeys = true;
    enum class TopMark {
        None,
        EditControls, // before anything: a Cbo/Chk/Txt/Dtp control marks (with the word test)
        EveryKey,     // before anything: every key, modifiers included, calls SetScreenMode(2)
    };
    TopMark topMark = TopMark::None;

    // The search Open runs (SchArrivals for DocumentKind::Arrival); none: Open finds nothing.
    std::optional<DocumentKind> documentSearch;
    // The field that shows the document's number ("TxtArrivalID"); Objections that draw a new
    // number write it there.
    QString idField;

    bool ctrlOpens = true;               // Ctrl+O opens when BtnOpen is enabled
    bool ctrlClears = true;              // false: Ctrl+L is swallowed and does nothing
    bool ctrlShiftDeleteRemoves = false; // Ctrl+Shift+Delete removes when BtnRemove is enabled
    QStringList partySearchCombos;       // F1 here runs the party search ("CboSeller", "CboBroker")
    QString contractSearchCombo;         // F1 here runs the contract search ("CboContract")

    // The Clear question.
    QString clearQuestion = QStringLiteral("Are you sure to clear the entries?");
    QString clearTitle = QStringLiteral("Alert");
    QMessageBox::Icon clearIcon = QMessageBox::Question;
    // Whether closing with Save enabled asks "Are you sure to close without save?".
    bool askOnClose = true;

    // Controls named Txt*/Cbo* that ClearScreen leaves alone (plain text boxes of some screens).
    QStringList keepOnClear;
    // The control that takes focus after Clear (first enabled of these).
    QStringList focusAfterClear;

    // Open, Print, Remove, Save, Clear as most screens set them.
    static ModeTable standardModes();
};

// Holds back a screen's field handlers while code, not the clerk, fills the fields: each
// handler returns at once while the counter is above 0.
class QuietScope {
public:
    explicit QuietScope(int& counter) : m_counter(counter) { ++m_counter; }
    ~QuietScope() { --m_counter; }
    QuietScope(const QuietScope&) = delete;
    QuietScope& operator=(const QuietScope&) = delete;

private:
    int& m_counter;
};

// The frame of every document screen: a top-level window holding the screen's controls and
// the button row, with the keyboard, the button modes, clearing, closing and the message boxes
// done once. A screen derives, hands its traits to the constructor, builds its controls
// (naming each by objectName), and overrides the hooks it needs.
class DocumentScreen : public QWidget {
    Q_OBJECT
public:
    DocumentScreen(const Context& ctx, ScreenTraits traits, QWidget* parent = nullptr);
    ~DocumentScreen() override;

    const ScreenTraits& traits() const { return m_traits; }
    const Context& context() const { return m_ctx; }

    QString ModeWord;
    // The number of the document on the screen: drawn for a new one, the saved one's when
    // opened.
    qint32 OpenedDocumentId = 0;
    int screenMode() const { return m_mode; }
    Mode mode() const { return Mode(m_mode); }
    qint64 documentId() const { return OpenedDocumentId; }
    // A saved document is on the screen: its number is its own, not a new one's.
    bool isOpened() const { return m_opened; }

    // Sets the buttons from the mode table, then runs modeEntered(mode).
    void SetScreenMode(int mode);
    void setMode(Mode mode) { SetScreenMode(int(mode)); }
    // Shows `id` as the document's number (OpenedDocumentId and the idField).
    void showDocumentId(qint64 id);
    // Draws the number a new document takes now and shows it.
    void NextDocumentId();
    // Empties every Txt*/Cbo* field (lists stay), then runs afterClearWalk().
    virtual void ClearScreen();

    QPushButton* button(Button which) const;
    bool isButtonEnabled(Button which) const; // false when the screen has no such button
    // The row of buttons the screen places in its layout.
    QWidget* buttonRow() const { return m_buttonRow; }

    // The control a key is meant for: the named control holding the focus (a grid for its
    // in-cell editor, a combo for its line edit).
    QWidget* activeControl() const;
    QString activeControlName() const;

    // Marks a change by the screen's rule; screens call it from fields' own change handlers.
    void markChanged();

    // The clerk's commands; each runs guarded so no error escapes.
    void clickSave();
    void clickPrint();
    void clickClear();
    void clickOpen();
    void clickRemove();
    void clickClose();

    // Guarded run of a handler: an Objected ends in object(), errors in ShowErrorBox with this
    // screen as parent.
    bool guard(const std::function<void()>& work);
    void ShowErrorBox(const QString& description, const QString& source);
    // Tells the clerk why: a fresh number shown first when one was drawn, then the box, then
    // the focus on the field to mend (or the grid on its line and column).
    void object(const Objection& objection);

    // Opens the saved document with this number, as Open does after its search.
    bool openDocumentById(qint64 id);
    // The search Open uses: a number, 0 when the clerk chose nothing. Screens set their own;
    // tests may replace it.
    using DocumentSearch = std::function<int(QWidget* owner)>;
    void setDocumentSearch(DocumentSearch search) { m_documentSearch = std::move(search); }

    // Searches F1 uses; default the real search screens. Tests and hosts may replace them.
    using PartySearch = std::function<PartyChoice(QWidget* owner)>;
    using ContractSearch = std::function<int(QWidget* owner)>;
    void setPartySearch(PartySearch search) { m_partySearch = std::move(search); }
    void setContractSearch(ContractSearch search) { m_contractSearch = std::move(search); }
    // The party search on a combo: "Name-City" and that entry selected; false on no choice.
    bool runPartySearch(LookupCombo* combo);
    bool runContractSearch(LookupCombo* combo);

protected:
    // Hooks. The defaults do nothing unless told.
    virtual void modeEntered(int mode) { Q_UNUSED(mode); }
    virtual void afterClearWalk() {}
    virtual void saveDocument() {} // BtnSave's work (after Ctrl+S's question)
    virtual void printDocument() {}
    virtual void removeDocument() {}
    // The number a new document would take now (one above the highest in use).
    virtual qint64 nextDocumentId() { return 0; }
    // Open: the search, and on a choice the document loaded and the screen in mode 3. A
    // cancelled search changes nothing.
    virtual void openDocument();
    // Shows the saved document; false when there is no such document (the screen is left
    // as it was).
    virtual bool loadDocument(qint64 id) {
        Q_UNUSED(id);
        return false;
    }
    // After a document was opened and the screen is in mode 3 (warnings about it).
    virtual void documentOpened() {}
    // After a successful save of `id`: the print question, then a fresh new document.
    void documentSaved(qint64 id);
    // Clear's work after the question: default ClearScreen, SetScreenMode(1), focus.
    virtual void clearDocument();
    // A key the frame has no rule for (F9, Ctrl+Delete in a grid, ...), before marking;
    // return true when the screen consumed it.
    virtual bool screenKey(QKeyEvent* event, const QString& activeName);
    // Runs after the frame has handled a key (and marked the change), for screens whose
    // fields react to every key.
    virtual void afterKey(QKeyEvent* event, const QString& activeName);
    // The combo text after a party search: "Name-City".
    virtual QString partySearchText(const PartyChoice& choice) const;
    // The screen is closing for good (after the question).
    virtual void unloading() {}

    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    // Enter as Tab: focus moves on exactly as Tab would (into a grid: to its next cell).
    void tabForward();

private:
    bool handleKey(QObject* receiver, QKeyEvent* event);
    bool isMarkingKey(const QKeyEvent* event) const;
    void applyMark();
    void focusFirst(const QStringList& names);

    const Context& m_ctx;
    ScreenTraits m_traits;
    int m_mode = 0;
    bool m_opened = false;
    DocumentSearch m_documentSearch;
    QWidget* m_buttonRow = nullptr;
    std::map<Button, QPushButton*> m_buttons;
    PartySearch m_partySearch;
    ContractSearch m_contractSearch;
    // The press last handled, to know it again when it travels on to the receiver's parents.
    const QEvent* m_seenKey = nullptr;
    int m_seenCode = 0;
    Qt::KeyboardModifiers m_seenModifiers;
    QPointer<QWidget> m_seenReceiver;
    bool m_synthesizing = false;
};

} // namespace gm
