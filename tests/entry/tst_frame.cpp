#include "datastore/Sql.h"
#include "entry/DocumentScreen.h"
#include "entry/Fields.h"
#include "entry/LineGrid.h"
#include "support/Modals.h"
#include "widgets/LookupCombo.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace gm;
using gm::test::Modals;

namespace {

// A small document screen on the frame: a few fields of each kind and a grid.
class TestScreen : public DocumentScreen {
public:
    TestScreen(const Context& ctx, ScreenTraits traits) : DocumentScreen(ctx, std::move(traits)) {
        auto* layout = new QGridLayout(this);
        date = new DateEdit(QStringLiteral("DtpDate"), this);
        text = new QLineEdit(this);
        text->setObjectName(QStringLiteral("TxtName"));
        seller = new LookupCombo(QStringLiteral("CboSeller"), this);
        seller->setItems({{QStringLiteral("Akbar Traders-Okara"), QStringLiteral("A1")},
                          {QStringLiteral("Bashir Sons-Multan"), QStringLiteral("B2")}});
        number = new NumberEdit(QStringLiteral("TxtAmount"), this);
        documentNo = new QLineEdit(this);
        documentNo->setObjectName(QStringLiteral("TxtDocumentNo"));
        check = new QCheckBox(QStringLiteral("Done"), this);
        check->setObjectName(QStringLiteral("ChkDone"));
        grid = new LineGrid(QStringLiteral("Grid"), this);
        grid->setColumns({GridColumn::text(QStringLiteral("Vehicle No")),
                          GridColumn::number(QStringLiteral("Qty"))});
        layout->addWidget(date, 0, 0);
        layout->addWidget(text, 1, 0);
        layout->addWidget(seller, 2, 0);
        layout->addWidget(number, 3, 0);
        layout->addWidget(check, 4, 0);
        layout->addWidget(grid->panel(), 5, 0);
        layout->addWidget(documentNo, 6, 0);
        layout->addWidget(buttonRow(), 7, 0);
        setPartySearch([this](QWidget*) {
            ++searches;
            return party;
        });
        setDocumentSearch([this](QWidget*) {
            ++opens;
            return pick;
        });
        SetScreenMode(1);
    }

    DateEdit* date;
    QLineEdit* text;
    LookupCombo* seller;
    NumberEdit* number;
    QLineEdit* documentNo;
    QCheckBox* check;
    LineGrid* grid;
    PartyChoice party;
    int saves = 0;
    int opens = 0; // searches Open ran
    int pick = 0;  // what the document search hands back
    std::vector<qint64> loaded;
    std::optional<Objection> saveObjects; // raised from inside the save, as a store does
    int searches = 0;
    std::vector<int> modes;
    bool failSave = false;

protected:
    void modeEntered(int mode) override { modes.push_back(mode); }
    void saveDocument() override {
        ++saves;
        if (failSave)
            throw DbError(QStringLiteral("The row could not be written."),
                          QStringLiteral("Microsoft OLE DB"));
        if (saveObjects)
            throw Objected(*saveObjects);
    }
    bool loadDocument(qint64 id) override {
        loaded.push_back(id);
        return id != 404; // 404 was removed meanwhile
    }
};

ScreenTraits contractLike() {
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmTest");
    t.caption = QStringLiteral("Test");
    t.partySearchCombos = {QStringLiteral("CboSeller")};
    t.focusAfterClear = {QStringLiteral("DtpDate")};
    t.idField = QStringLiteral("TxtDocumentNo");
    return t;
}

} // namespace

class TstFrame : public QObject {
    Q_OBJECT
private:
    Context m_ctx;
    std::unique_ptr<TestScreen> m_screen;

    TestScreen* open(ScreenTraits traits = contractLike()) {
        m_screen = std::make_unique<TestScreen>(m_ctx, std::move(traits));
        m_screen->show();
        if (!QTest::qWaitForWindowActive(m_screen.get()))
            qFatal("the test screen did not become active");
        // Most tests type into the name field first.
        m_screen->text->setFocus(Qt::OtherFocusReason);
        if (!QTest::qWaitFor([this] { return m_screen->text->hasFocus(); }))
            qFatal("the name field took no focus");
        return m_screen.get();
    }
    static void focus(QWidget* w) {
        w->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(w->hasFocus());
    }

private Q_SLOTS:
    void cleanup() {
        if (m_screen) {
            m_screen->SetScreenMode(1); // nothing pending, so closing asks nothing
            m_screen.reset();
        }
    }

    void buttonsFollowTheModeTable() {
        TestScreen* s = open();
        // Open, Clear, Save, Print, Remove: 1 where the button is enabled.
        const auto buttons = [s] {
            QString on;
            for (const char* name : {"BtnOpen", "BtnClear", "BtnSave", "BtnPrint", "BtnRemove"})
                on += s->findChild<QPushButton*>(QLatin1String(name))->isEnabled() ? '1' : '0';
            return on;
        };
        QCOMPARE(buttons(), QStringLiteral("11000"));
        s->SetScreenMode(2);
        QCOMPARE(buttons(), QStringLiteral("01100"));
        s->SetScreenMode(3);
        QCOMPARE(buttons(), QStringLiteral("11011"));
        QCOMPARE(s->modes, (std::vector<int>{1, 2, 3}));
    }

    void nothingPendingMeansNoQuestion() {
        TestScreen* s = open();
        s->text->setText(QStringLiteral("kept?"));
        s->seller->setText(QStringLiteral("Akbar Traders-Okara"));
        focus(s->number);
        Modals boxes(QMessageBox::No);
        QTest::keyClick(s->number, Qt::Key_S, Qt::ControlModifier);
        QTest::keyClick(s->number, Qt::Key_L, Qt::ControlModifier);
        QTest::qWait(50);
        QCOMPARE(boxes.count(), 0);
        QCOMPARE(s->saves, 0);
        QCOMPARE(s->text->text(), QString());
        QCOMPARE(s->seller->text(), QString());
        QCOMPARE(s->seller->count(), 2); // lists stay
        QVERIFY(s->date->hasFocus());
    }

    // With a change pending, each command asks first: No leaves everything, Yes goes ahead.
    void pendingChangeAsksFirst_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("icon");
        const int q = int(QMessageBox::Question);
        const struct {
            const char *row, *question, *title;
            int key, icon;
        } rows[] = {
            {"save", "Are you sure to save this invoice?", "Alert", Qt::Key_S, q},
            {"clear", "Are you sure to clear the entries?", "Alert", Qt::Key_L, q},
            // A screen's own words for clearing.
            {"clear invoice", "Are U Sure To Clear This Invoice ?", "Confirmation", Qt::Key_L,
             int(QMessageBox::Warning)},
            {"close", "Are you sure to close without save?", "Alert", Qt::Key_Q, q},
        };
        for (const auto& r : rows)
            QTest::newRow(r.row) << r.key << QString(r.question) << QString(r.title) << r.icon;
    }
    void pendingChangeAsksFirst() {
        QFETCH(int, key);
        QFETCH(QString, question);
        QFETCH(QString, title);
        QFETCH(int, icon);
        ScreenTraits t = contractLike();
        if (QTest::currentDataTag() == QByteArray("clear invoice")) {
            t.clearQuestion = question;
            t.clearTitle = title;
            t.clearIcon = QMessageBox::Icon(icon);
        }
        TestScreen* s = open(t);
        QTest::keyClicks(s->text, QStringLiteral("ab"));
        {
            Modals boxes(QMessageBox::No);
            QTest::keyClick(s->text, Qt::Key(key), Qt::ControlModifier);
            QCOMPARE(boxes.count(), 1);
            QCOMPARE(boxes.last().text, question);
            QCOMPARE(boxes.last().title, title);
            QCOMPARE(int(boxes.last().icon), icon);
            QCOMPARE(boxes.last().buttons, QMessageBox::Yes | QMessageBox::No);
            QCOMPARE(s->text->text(), QStringLiteral("ab"));
            QCOMPARE(s->saves, 0);
            QVERIFY(s->isVisible());
        }
        Modals boxes(QMessageBox::Yes);
        QTest::keyClick(s->text, Qt::Key(key), Qt::ControlModifier);
        QCOMPARE(boxes.count(), 1);
        if (key == Qt::Key_S)
            QCOMPARE(s->saves, 1);
        else if (key == Qt::Key_L)
            QVERIFY(s->text->text().isEmpty() && s->screenMode() == 1);
        else
            QVERIFY(!s->isVisible());
    }

    void enterMovesFocusAsTab() {
        TestScreen* s = open();
        QTest::keyClick(s->text, Qt::Key_Return);
        QTRY_VERIFY(s->seller->hasFocus());
        // A combo takes the entry its typed prefix names before focus moves on.
        QTest::keyClicks(s->seller, QStringLiteral("bash"));
        QTest::keyClick(s->seller, Qt::Key_Return);
        // The window's own focus: the platform may not hand activation back after a box.
        QCOMPARE(s->focusWidget(), s->number);
        QCOMPARE(s->seller->currentKey(), QStringLiteral("B2"));
        // Enter is a consumed key here, so it marks the change.
        QCOMPARE(s->ModeWord, QStringLiteral("ChangeMode"));
    }

    // The screen's Enter moves the focus on, but a field's refusal wins: the box comes once,
    // the focus stays, and so does the text. A click on Save with an impossible date in hand
    // is refused the same way and saves nothing.
    void refusalsWinOverEnter() {
        TestScreen* s = open();
        const QString noSeller = QStringLiteral("Please provide a valid Seller.");
        s->seller->setRefusal(noSeller);
        const auto enterIn = [](QWidget* field, const QString& keys) {
            Modals boxes(QMessageBox::Ok);
            focus(field);
            QTest::keyClicks(field, keys);
            QTest::keyClick(field, Qt::Key_Return);
            (void)QTest::qWaitFor([&boxes] { return boxes.done(); });
            QTest::qWait(20);
            return boxes.texts();
        };
        QCOMPARE(enterIn(s->seller, QStringLiteral("Nobody")), QStringList{noSeller});
        QTRY_VERIFY(s->seller->hasFocus());
        QCOMPARE(s->seller->text(), QStringLiteral("Nobody"));

        s->seller->setText(QString());
        s->date->setDate(QDate(2026, 11, 15));
        QCOMPARE(enterIn(s->date, QStringLiteral("31022026")),
                 QStringList{QStringLiteral("Please provide a valid date.")});
        QTRY_VERIFY(s->date->hasFocus());
        QCOMPARE(s->date->text(), QStringLiteral("31/02/2026"));

        s->SetScreenMode(2);
        Modals boxes(QMessageBox::Ok);
        QTest::mouseClick(s->button(Button::Save), Qt::LeftButton);
        QTRY_VERIFY(boxes.done());
        QCOMPARE(boxes.texts(), QStringList{QStringLiteral("Please provide a valid date.")});
        QTRY_VERIFY(s->date->hasFocus());
        QCOMPARE(s->saves, 0);
        QCOMPARE(s->date->date(), QDate(2026, 11, 15));
    }

    // The grid keeps its own Enter, whether or not the screen passes Enter in to it; only a
    // screen that moves focus on Enter marks the typing in the grid as a change.
    void enterInAGridMovesItsCell_data() {
        QTest::addColumn<bool>("passedIn");
        QTest::newRow("screen moves focus") << false;
        QTest::newRow("passed in to the grid") << true;
    }
    void enterInAGridMovesItsCell() {
        QFETCH(bool, passedIn);
        ScreenTraits t = contractLike();
        if (passedIn) {
            t.enterPassesIn = {QStringLiteral("Grid")};
            t.topMark = ScreenTraits::TopMark::None;
        }
        TestScreen* s = open(t);
        focus(s->grid);
        s->grid->setCurrentIndex(s->grid->model()->index(0, 0));
        QTest::keyClick(s->grid, 'L');
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("HR-1"));
        s->SetScreenMode(1);
        s->ModeWord.clear();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(s->grid->cellText(0, 0), QStringLiteral("LHR-1"));
        QCOMPARE(s->grid->currentIndex(), s->grid->model()->index(0, 1));
        QVERIFY(s->grid->hasFocus());
        QCOMPARE(s->ModeWord.isEmpty(), passedIn);
        QCOMPARE(s->screenMode() == 1, passedIn);
    }

    // Which keys mark the change on a screen that marks once with the word.
    void keysThatMark_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("marks");
        QTest::newRow("letter") << int(Qt::Key_A) << 0 << true;
        QTest::newRow("home") << int(Qt::Key_Home) << 0 << true;
        QTest::newRow("delete") << int(Qt::Key_Delete) << 0 << true;
        QTest::newRow("end") << int(Qt::Key_End) << 0 << false;
        QTest::newRow("down") << int(Qt::Key_Down) << 0 << false;
        QTest::newRow("f5") << int(Qt::Key_F5) << 0 << false;
        QTest::newRow("ctrl") << int(Qt::Key_Control) << int(Qt::ControlModifier) << false;
        QTest::newRow("ctrl+O opens") << int(Qt::Key_O) << int(Qt::ControlModifier) << false;
    }
    void keysThatMark() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(bool, marks);
        TestScreen* s = open();
        QTest::keyClick(s->text, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(s->ModeWord == QStringLiteral("ChangeMode"), marks);
        QCOMPARE(s->button(Button::Save)->isEnabled(), marks);
        QCOMPARE(s->button(Button::Open)->isEnabled(), !marks);
        QCOMPARE(s->opens, key == Qt::Key_O ? 1 : 0);
    }

    void markingRules() {
        // Once with the word: a second key does not run the mode again.
        TestScreen* s = open();
        QTest::keyClicks(s->text, QStringLiteral("abc"));
        QCOMPARE(std::count(s->modes.begin(), s->modes.end(), 2), 1);

        // Every time, without the word.
        ScreenTraits t = contractLike();
        t.mark = ScreenTraits::Mark::EveryTime;
        t.markAfterHandledKeys = false;
        s = open(t);
        QTest::keyClicks(s->text, QStringLiteral("abc"));
        QCOMPARE(std::count(s->modes.begin(), s->modes.end(), 2), 3);
        QCOMPARE(s->ModeWord, QString());
        // There Enter has a function, so it marks nothing.
        s->SetScreenMode(1);
        QTest::keyClick(s->text, Qt::Key_Return);
        QCOMPARE(s->screenMode(), 1);

        // Every key, the Ctrl key alone included, arms Save.
        t = contractLike();
        t.topMark = ScreenTraits::TopMark::EveryKey;
        s = open(t);
        QTest::keyClick(s->text, Qt::Key_Control, Qt::ControlModifier);
        QVERIFY(s->button(Button::Save)->isEnabled());
        QCOMPARE(s->ModeWord, QString());

        // Edit controls mark before anything, even on a key that would not.
        t = contractLike();
        t.topMark = ScreenTraits::TopMark::EditControls;
        s = open(t);
        focus(s->check);
        QTest::keyClick(s->check, Qt::Key_F5);
        QCOMPARE(s->ModeWord, QStringLiteral("ChangeMode"));

        // Ctrl+O opens only where the screen has it.
        t = contractLike();
        t.ctrlOpens = false;
        s = open(t);
        QTest::keyClick(s->text, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(s->opens, 0);
    }

    void f1PartySearchFillsTheCombo() {
        TestScreen* s = open();
        focus(s->seller);
        QTest::keyClick(s->seller, Qt::Key_F1);
        QCOMPARE(s->searches, 1);
        QCOMPARE(s->seller->text(), QString());
        QCOMPARE(s->screenMode(), 1); // nothing chosen, nothing changed

        s->party = {QStringLiteral("B2"), QStringLiteral("Bashir Sons"), QStringLiteral("Multan")};
        QTest::keyClick(s->seller, Qt::Key_F1);
        QCOMPARE(s->seller->text(), QStringLiteral("Bashir Sons-Multan"));
        QCOMPARE(s->seller->currentKey(), QStringLiteral("B2"));
        QCOMPARE(s->ModeWord, QStringLiteral("ChangeMode"));

        focus(s->text);
        QTest::keyClick(s->text, Qt::Key_F1);
        QCOMPARE(s->searches, 2);
    }

    // Open runs the search; nothing chosen, or a document gone meanwhile, changes nothing.
    void openThroughTheSearch() {
        TestScreen* s = open();
        QTest::keyClick(s->text, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(s->text, Qt::Key_O, Qt::ControlModifier);
        s->pick = 404;
        QTest::keyClick(s->text, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(s->opens, 3);
        QCOMPARE(s->loaded, std::vector<qint64>{404});
        QCOMPARE(s->mode(), Mode::New);
        QVERIFY(!s->isOpened());
        QVERIFY(!s->button(Button::Print)->isEnabled());

        s->pick = 42;
        QTest::keyClick(s->text, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(s->mode(), Mode::Opened);
        QVERIFY(s->isOpened());
        QCOMPARE(s->documentId(), 42);
        QCOMPARE(s->ModeWord, QStringLiteral("OpenMode"));
        // A later cancelled search leaves the opened document as it stands.
        s->pick = 0;
        QTest::keyClick(s->text, Qt::Key_O, Qt::ControlModifier);
        QVERIFY(s->isOpened());
        QCOMPARE(s->documentId(), 42);
        // Clearing lets go of it.
        s->clickClear();
        QVERIFY(!s->isOpened());
        QCOMPARE(s->ModeWord, QString());
    }

    // An objection says why in its own box, shows a fresh number when one was drawn, and
    // puts the clerk on the field or the grid cell to mend; raised from a save it is the
    // same box, never the error box.
    void objectionsShowAndFocus() {
        TestScreen* s = open();
        s->grid->lines()->setLines({{"A", "1"}, {"B", "2"}});
        {
            Modals boxes(QMessageBox::Ok);
            s->object(Objection::warning(QStringLiteral("Quantity must be greater than 0."),
                                         QStringLiteral("TxtAmount")));
            QCOMPARE(boxes.last().text, QStringLiteral("Quantity must be greater than 0."));
            QCOMPARE(boxes.last().title, QStringLiteral("Alert"));
            QCOMPARE(boxes.last().icon, QMessageBox::Warning);
        }
        // The window's own focus: the platform may not hand activation back after a box.
        QCOMPARE(s->focusWidget(), s->number);
        {
            Modals boxes(QMessageBox::Ok);
            s->object(Objection::info(QStringLiteral("Please provide a valid qty."))
                          .inGrid(QStringLiteral("Grid"), 1, 1));
            QCOMPARE(boxes.last().icon, QMessageBox::Information);
        }
        QCOMPARE(s->focusWidget(), s->grid);
        QCOMPARE(s->grid->currentIndex(), s->grid->lines()->index(1, 1));

        s->saveObjects = Objection::info(QStringLiteral("taken"))
                             .titled(QString(), Objection::Icon::None)
                             .withNewDocumentId(77);
        s->SetScreenMode(2);
        {
            Modals boxes(QMessageBox::Ok);
            s->button(Button::Save)->click();
            QCOMPARE(boxes.count(), 1);
            QCOMPARE(boxes.last().text, QStringLiteral("taken"));
            QCOMPARE(boxes.last().icon, QMessageBox::NoIcon);
        }
        QCOMPARE(s->documentNo->text(), QStringLiteral("77"));
        QCOMPARE(s->documentId(), 77);
        QVERIFY(s->button(Button::Save)->isEnabled()); // the entries stay for another try
    }

    // Ctrl+S does not leave the date being typed, so the save refuses an impossible one.
    void ctrlSaveRefusesADateHalfTyped() {
        TestScreen* s = open();
        s->date->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(s->date->hasFocus());
        QTest::keyClicks(s->date, QStringLiteral("31022026"));
        Modals boxes({QMessageBox::Yes, QMessageBox::Ok});
        QTest::keyClick(s->date, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(boxes.texts(), QStringList({QStringLiteral("Are you sure to save this invoice?"),
                                             QStringLiteral("Please provide a valid date.")}));
        QCOMPARE(s->saves, 0);
        QWidget* focused = s->focusWidget();
        QVERIFY(focused == s->date || s->date->isAncestorOf(focused));
    }

    void errorsEndInTheErrorBox() {
        TestScreen* s = open();
        s->failSave = true;
        s->SetScreenMode(2);
        Modals boxes(QMessageBox::Ok);
        s->button(Button::Save)->click();
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(boxes.last().text, QStringLiteral("The row could not be written."));
        QCOMPARE(boxes.last().title, QStringLiteral("Microsoft OLE DB"));
        QCOMPARE(boxes.last().icon, QMessageBox::Critical);
        QCOMPARE(boxes.last().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }
};

QTEST_MAIN(TstFrame)
#include "tst_frame.moc"
