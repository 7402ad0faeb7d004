#include "entry/DocumentScreen.h"

#include "entry/Fields.h"
#include "entry/LineGrid.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextEdit>

namespace gm {

namespace {

const QString kChangeMode = QStringLiteral("ChangeMode");
const QString kOpenMode = QStringLiteral("OpenMode");

constexpr int buttonIndex(Button b) {
    return int(b);
}

QString buttonName(Button b) {
    switch (b) {
    case Button::Save:
        return QStringLiteral("Save");
    case Button::Print:
        return QStringLiteral("Print");
    case Button::Clear:
        return QStringLiteral("Clear");
    case Button::Open:
        return QStringLiteral("Open");
    case Button::Remove:
        return QStringLiteral("Remove");
    case Button::Close:
        return QStringLiteral("Close");
    }
    return {};
}

bool isEnterKey(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

ModeTable ScreenTraits::standardModes() {
    using S = ButtonState;
    // Columns: Save, Print, Clear, Open, Remove, Close.
    return ModeTable{{
        {S::Off, S::Off, S::On, S::On, S::Off, S::Keep},
        {S::On, S::Off, S::On, S::Off, S::Off, S::Keep},
        {S::Off, S::On, S::On, S::On, S::On, S::Keep},
    }};
}

DocumentScreen::DocumentScreen(const Context& ctx, ScreenTraits traits, QWidget* parent)
    : QWidget(parent, Qt::Window), m_ctx(ctx), m_traits(std::move(traits)) {
    setObjectName(m_traits.objectName);
    setWindowTitle(m_traits.caption);

    m_buttonRow = new QWidget(this);
    m_buttonRow->setObjectName(QStringLiteral("qt_buttonRow"));
    auto* row = new QHBoxLayout(m_buttonRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch(1);
    for (Button b : m_traits.buttons) {
        auto* button = new QPushButton(buttonName(b), m_buttonRow);
        button->setObjectName(QStringLiteral("Btn") + buttonName(b));
        // Enter on a focused button presses it where the screen does not turn Enter into Tab.
        button->setAutoDefault(true);
        row->addWidget(button);
        m_buttons[b] = button;
        switch (b) {
        case Button::Save:
            connect(button, &QPushButton::clicked, this, &DocumentScreen::clickSave);
            break;
        case Button::Print:
            connect(button, &QPushButton::clicked, this, &DocumentScreen::clickPrint);
            break;
        case Button::Clear:
            connect(button, &QPushButton::clicked, this, &DocumentScreen::clickClear);
            break;
        case Button::Open:
            connect(button, &QPushButton::clicked, this, &DocumentScreen::clickOpen);
            break;
        case Button::Remove:
            connect(button, &QPushButton::clicked, this, &DocumentScreen::clickRemove);
            break;
        case Button::Close:
            connect(button, &QPushButton::clicked, this, &DocumentScreen::clickClose);
            break;
        }
    }

    m_partySearch = [this](QWidget* owner) { return context().findParty(owner); };
    if (m_traits.documentSearch)
        m_documentSearch = [this, kind = *m_traits.documentSearch](QWidget* owner) {
            return context().findDocument(kind, owner);
        };
    m_contractSearch = [this](QWidget* owner) {
        return context().findDocument(DocumentKind::PurchaseContract, owner);
    };

    // Keys reach the screen before its controls; the filter looks only at this window.
    qApp->installEventFilter(this);
}

DocumentScreen::~DocumentScreen() {
    qApp->removeEventFilter(this);
}

QPushButton* DocumentScreen::button(Button which) const {
    auto it = m_buttons.find(which);
    return it == m_buttons.end() ? nullptr : it->second;
}

bool DocumentScreen::isButtonEnabled(Button which) const {
    QPushButton* b = button(which);
    return b && b->isEnabled();
}

void DocumentScreen::SetScreenMode(int mode) {
    if (mode < 1 || mode > 3)
        return;
    m_mode = mode;
    if (mode == int(Mode::New))
        m_opened = false;
    const auto& states = m_traits.modes[size_t(mode - 1)];
    for (auto& [which, b] : m_buttons) {
        switch (states[size_t(buttonIndex(which))]) {
        case ButtonState::On:
            b->setEnabled(true);
            break;
        case ButtonState::Off:
            b->setEnabled(false);
            break;
        case ButtonState::Keep:
            break;
        }
    }
    guard([&] { modeEntered(mode); });
}

void DocumentScreen::ClearScreen() {
    const QList<QWidget*> children = findChildren<QWidget*>();
    for (QWidget* w : children) {
        const QString name = w->objectName();
        const QString prefix = name.left(3).toUpper();
        if ((prefix != QLatin1String("TXT") && prefix != QLatin1String("CBO")) ||
            m_traits.keepOnClear.contains(name))
            continue;
        // In-cell editors of a grid belong to the grid's lines, which the screen resets.
        bool inGrid = false;
        for (QWidget* p = w->parentWidget(); p && p != this; p = p->parentWidget()) {
            if (qobject_cast<QAbstractItemView*>(p)) {
                inGrid = true;
                break;
            }
        }
        if (inGrid)
            continue;
        if (auto* combo = qobject_cast<LookupCombo*>(w))
            combo->setText(QString());
        else if (auto* plain = qobject_cast<QComboBox*>(w))
            plain->isEditable() ? plain->clearEditText() : plain->setCurrentIndex(-1);
        else if (auto* line = qobject_cast<QLineEdit*>(w))
            line->clear();
        else if (auto* text = qobject_cast<QTextEdit*>(w))
            text->clear();
        else if (auto* plainText = qobject_cast<QPlainTextEdit*>(w))
            plainText->clear();
    }
    // Whatever was on the screen has gone: no document is opened or changed any more.
    ModeWord.clear();
    m_opened = false;
    afterClearWalk();
}

void DocumentScreen::showDocumentId(qint64 id) {
    OpenedDocumentId = static_cast<qint32>(id);
    if (m_traits.idField.isEmpty())
        return;
    if (auto* field = findChild<QLineEdit*>(m_traits.idField))
        field->setText(QString::number(id));
}

void DocumentScreen::NextDocumentId() {
    showDocumentId(nextDocumentId());
}

void DocumentScreen::openDocument() {
    const int id = m_documentSearch ? m_documentSearch(this) : 0;
    if (id != 0)
        openDocumentById(id);
}

bool DocumentScreen::openDocumentById(qint64 id) {
    if (!loadDocument(id))
        return false;
    OpenedDocumentId = static_cast<qint32>(id);
    m_opened = true;
    ModeWord = kOpenMode;
    SetScreenMode(int(Mode::Opened));
    documentOpened();
    return true;
}

void DocumentScreen::documentSaved(qint64 id) {
    OpenedDocumentId = static_cast<qint32>(id);
    m_opened = false;
    if (msg::askPrint(this))
        guard([this] { printDocument(); });
    clearDocument();
}

void DocumentScreen::object(const Objection& objection) {
    if (objection.newDocumentId)
        showDocumentId(*objection.newDocumentId);
    msg::showObjection(this, objection);
    if (objection.focus.isEmpty())
        return;
    auto* target = findChild<QWidget*>(objection.focus);
    if (!target || !target->isEnabled())
        return;
    if (auto* view = qobject_cast<QAbstractItemView*>(target); view && objection.row >= 0) {
        const int column =
            objection.column >= 0 ? objection.column : qMax(0, view->currentIndex().column());
        view->setCurrentIndex(view->model()->index(objection.row, column));
    }
    target->setFocus(Qt::OtherFocusReason);
}

QWidget* DocumentScreen::activeControl() const {
    QWidget* focus = QApplication::focusWidget();
    if (!focus || focus->window() != this)
        return nullptr;
    // A grid answers for its in-cell editors, whatever they are called.
    for (QWidget* p = focus; p && p != this; p = p->parentWidget()) {
        if (qobject_cast<QAbstractItemView*>(p) && !p->objectName().isEmpty())
            return p;
    }
    for (QWidget* p = focus; p && p != this; p = p->parentWidget()) {
        const QString name = p->objectName();
        if (!name.isEmpty() && !name.startsWith(QLatin1String("qt_")))
            return p;
    }
    return focus;
}

QString DocumentScreen::activeControlName() const {
    QWidget* w = activeControl();
    return w ? w->objectName() : QString();
}

void DocumentScreen::markChanged() {
    applyMark();
}

void DocumentScreen::applyMark() {
    if (m_traits.mark == ScreenTraits::Mark::EveryTime) {
        SetScreenMode(2);
        return;
    }
    if (ModeWord != kChangeMode) {
        ModeWord = kChangeMode;
        SetScreenMode(2);
    }
}

bool DocumentScreen::guard(const std::function<void()>& work) {
    std::optional<Objection> raised;
    const bool ran = guarded(this, [&] {
        try {
            work();
        } catch (const Objected& o) {
            raised = o.objection();
        }
    });
    if (raised) {
        object(*raised);
        return false;
    }
    return ran;
}

void DocumentScreen::ShowErrorBox(const QString& description, const QString& source) {
    gm::ShowErrorBox(this, description, source);
}

void DocumentScreen::clickSave() {
    // A date still being typed into an impossible one has not been left, so its field has not
    // refused it yet: the save does, rather than save the date the field held before.
    for (DateEdit* date : findChildren<DateEdit*>()) {
        // A grid's date cell refuses through the grid when committed, not here.
        if (date->isEnabled() && !date->refusal().isEmpty() && !date->hasDateText()) {
            object(Objection::info(date->refusal(), date->objectName()));
            return;
        }
    }
    guard([this] { saveDocument(); });
}
void DocumentScreen::clickPrint() {
    guard([this] { printDocument(); });
}
void DocumentScreen::clickOpen() {
    guard([this] { openDocument(); });
}
void DocumentScreen::clickRemove() {
    guard([this] { removeDocument(); });
}
void DocumentScreen::clickClose() {
    close();
}

void DocumentScreen::clickClear() {
    guard([this] {
        if (isButtonEnabled(Button::Save) &&
            !msg::askYesNo(this, m_traits.clearQuestion, m_traits.clearTitle, m_traits.clearIcon))
            return;
        clearDocument();
    });
}

void DocumentScreen::clearDocument() {
    ClearScreen();
    SetScreenMode(1);
    focusFirst(m_traits.focusAfterClear);
}

void DocumentScreen::focusFirst(const QStringList& names) {
    for (const QString& name : names) {
        auto* w = findChild<QWidget*>(name);
        if (w && w->isEnabled()) {
            w->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

bool DocumentScreen::screenKey(QKeyEvent*, const QString&) {
    return false;
}
void DocumentScreen::afterKey(QKeyEvent*, const QString&) {}

QString DocumentScreen::partySearchText(const PartyChoice& choice) const {
    return choice.SelectedPartyName + QLatin1Char('-') + choice.SelectedCityName;
}

bool DocumentScreen::runPartySearch(LookupCombo* combo) {
    if (!combo || !m_partySearch)
        return false;
    const PartyChoice choice = m_partySearch(this);
    if (choice.SelectedPartyName.isEmpty())
        return false;
    combo->setText(partySearchText(choice));
    // The list may spell the party otherwise; its key still finds the row.
    if (combo->currentKey().isEmpty())
        combo->selectKey(choice.SelectedPartyId);
    return true;
}

bool DocumentScreen::runContractSearch(LookupCombo* combo) {
    if (!combo || !m_contractSearch)
        return false;
    const int id = m_contractSearch(this);
    if (id == 0)
        return false;
    // The search lists every contract; the combo offers only those still open. A choice it
    // does not offer stands as if typed, so leaving the field refuses it in the field's words.
    const QString number = QString::number(id);
    if (combo->findName(number) >= 0)
        combo->setText(number);
    else
        combo->setTextAsTyped(number);
    return true;
}

void DocumentScreen::tabForward() {
    QWidget* focus = QApplication::focusWidget();
    // A combo settles what was typed (closing its completion list) before focus leaves it.
    for (QWidget* p = focus; p && p != this; p = p->parentWidget()) {
        if (auto* combo = qobject_cast<LookupCombo*>(p)) {
            combo->settleTypedText();
            break;
        }
    }
    bool inGrid = false;
    for (QWidget* p = focus; p && p != this; p = p->parentWidget()) {
        if (qobject_cast<QAbstractItemView*>(p)) {
            inGrid = true;
            break;
        }
    }
    if (focus && inGrid) {
        // A grid moves to its next cell on Tab; hand it the Tab itself.
        m_synthesizing = true;
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QCoreApplication::sendEvent(focus, &tab);
        m_synthesizing = false;
        return;
    }
    focusNextPrevChild(true);
}

bool DocumentScreen::isMarkingKey(const QKeyEvent* event) const {
    const int key = event->key();
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return false;
    switch (key) {
    case Qt::Key_End:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return false;
    default:
        return true;
    }
}

bool DocumentScreen::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyRelease) {
        m_seenKey = nullptr;
        return false;
    }
    if (event->type() != QEvent::KeyPress || m_synthesizing)
        return false;
    auto* w = qobject_cast<QWidget*>(watched);
    if (!w || w->window() != this)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    // An ignored key travels on to the parents of its receiver; it is handled once.
    if (event == m_seenKey && key->key() == m_seenCode && key->modifiers() == m_seenModifiers &&
        m_seenReceiver && m_seenReceiver != w && w->isAncestorOf(m_seenReceiver))
        return false;
    m_seenKey = event;
    m_seenCode = key->key();
    m_seenModifiers = key->modifiers();
    m_seenReceiver = w;
    bool swallow = false;
    guard([&] { swallow = handleKey(w, key); });
    return swallow;
}

bool DocumentScreen::handleKey(QObject*, QKeyEvent* event) {
    const QString active = activeControlName();
    const QString prefix = active.left(3).toUpper();
    const int key = event->key();
    const Qt::KeyboardModifiers mods =
        event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);

    // Enter where it belongs to the control (a grid's own key) skips the whole handler.
    if (isEnterKey(key) && mods == Qt::NoModifier && m_traits.enterPassesIn.contains(active))
        return false;

    switch (m_traits.topMark) {
    case ScreenTraits::TopMark::None:
        break;
    case ScreenTraits::TopMark::EditControls:
        if (prefix == QLatin1String("CBO") || prefix == QLatin1String("CHK") ||
            prefix == QLatin1String("TXT") || prefix == QLatin1String("DTP"))
            applyMark();
        break;
    case ScreenTraits::TopMark::EveryKey:
        SetScreenMode(2);
        break;
    }

    bool swallow = false;  // the control never sees the key
    bool consumed = false; // the key was used up, which on some screens still marks a change
    bool command = false;  // a Ctrl command ran; its own outcome stands, no marking after it

    if (isEnterKey(key) && mods == Qt::NoModifier) {
        if (m_traits.enterPassesIn.contains(active))
            return false; // left to the control, and nothing else happens
        if (prefix == QLatin1String("BTN") && !m_traits.enterTabsOnButtons) {
            if (m_traits.enterOnButtonMarksMode2)
                SetScreenMode(2);
        } else {
            tabForward();
            swallow = consumed = true;
        }
    } else if (mods == Qt::ControlModifier && key == Qt::Key_L) {
        swallow = command = true;
        if (m_traits.ctrlClears)
            clickClear();
    } else if (mods == Qt::ControlModifier && key == Qt::Key_S) {
        swallow = command = true;
        if (isButtonEnabled(Button::Save) && msg::askSave(this))
            clickSave();
    } else if (mods == Qt::ControlModifier && key == Qt::Key_Q) {
        swallow = command = true;
        if (isButtonEnabled(Button::Close)) {
            clickClose();
            return true; // the screen may be gone
        }
    } else if (mods == Qt::ControlModifier && key == Qt::Key_O && m_traits.ctrlOpens) {
        swallow = command = true;
        if (isButtonEnabled(Button::Open))
            clickOpen();
    } else if (mods == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_Delete &&
               m_traits.ctrlShiftDeleteRemoves) {
        swallow = command = true;
        if (isButtonEnabled(Button::Remove))
            clickRemove();
    } else if (key == Qt::Key_F1 && mods == Qt::NoModifier &&
               m_traits.partySearchCombos.contains(active)) {
        swallow = true;
        consumed = runPartySearch(findChild<LookupCombo*>(active));
    } else if (key == Qt::Key_F1 && mods == Qt::NoModifier && !active.isEmpty() &&
               active == m_traits.contractSearchCombo) {
        swallow = true;
        runContractSearch(findChild<LookupCombo*>(active));
    } else if (screenKey(event, active)) {
        swallow = true;
    } else {
        if (!m_traits.markAfterHandledKeys && isMarkingKey(event))
            applyMark();
    }

    if (m_traits.markAfterHandledKeys && !command && (consumed || isMarkingKey(event)))
        applyMark();
    afterKey(event, active);
    return swallow;
}

void DocumentScreen::closeEvent(QCloseEvent* event) {
    if (m_traits.askOnClose && isButtonEnabled(Button::Save) && !msg::askCloseWithoutSave(this)) {
        event->ignore();
        return;
    }
    guard([this] { unloading(); });
    event->accept();
}

} // namespace gm
