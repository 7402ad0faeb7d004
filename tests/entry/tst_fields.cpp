#include "entry/Fields.h"
#include "support/Modals.h"
#include "widgets/LookupCombo.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QCompleter>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace gm;
using gm::test::Modals;

namespace {

LookupList grains() {
    return {{QStringLiteral("Wheat"), QStringLiteral("11")},
            {QStringLiteral("White Maize"), QStringLiteral("12")},
            {QStringLiteral("Barley"), QStringLiteral("13")},
            {QStringLiteral("Bran"), QStringLiteral("14")}};
}

const QString kNoCommodity = QStringLiteral("Please provide a valid Commodity.");
const QString kNoDate = QStringLiteral("Please provide a valid date.");

// Runs the action (a leaving of a field), answering OK to the refusal when one is expected;
// the boxes that came, once a refusal queued on leaving would have come.
QList<Modals::Seen> boxesOn(bool expected, const std::function<void()>& action) {
    Modals boxes;
    if (expected)
        boxes.answer(QMessageBox::Ok);
    action();
    (void)QTest::qWaitFor([&boxes] { return boxes.done(); });
    QTest::qWait(20);
    return boxes.seen();
}

QStringList textsOf(const QList<Modals::Seen>& seen) {
    QStringList out;
    for (const Modals::Seen& s : seen)
        out << s.text;
    return out;
}

// Where a click in a date field puts the cursor before the n-th character of its text, in the
// field's own coordinates.
QPoint cursorPoint(DateEdit* date, int n) {
    auto* edit = date->findChild<QLineEdit*>();
    for (int x = 0; x < edit->width(); ++x) {
        const QPoint p(x, edit->height() / 2);
        if (edit->cursorPositionAt(p) == n)
            return edit->mapTo(date, p);
    }
    qFatal("no place for the cursor at %d", n);
}

} // namespace

class TstFields : public QObject {
    Q_OBJECT
private:
    QWidget* m_window = nullptr;
    LookupCombo* m_combo = nullptr;
    QLineEdit* m_next = nullptr;
    DateEdit* m_date = nullptr;
    QPushButton* m_button = nullptr;
    int m_clicks = 0;

private Q_SLOTS:
    void init() {
        m_window = new QWidget;
        m_combo = new LookupCombo(QStringLiteral("CboCommodity"), m_window);
        m_next = new QLineEdit(m_window);
        m_next->move(0, 40);
        m_date = new DateEdit(QStringLiteral("DtpContractDate"), m_window);
        m_date->move(0, 80);
        m_date->setDate(QDate(2026, 11, 15));
        m_button = new QPushButton(QStringLiteral("Save"), m_window);
        m_button->move(0, 120);
        m_clicks = 0;
        connect(m_button, &QPushButton::clicked, m_window, [this] { ++m_clicks; });
        m_combo->setItems(grains());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        m_combo->setFocus();
        QTRY_VERIFY(m_combo->hasFocus());
    }
    void cleanup() { delete m_window; }

    void refillLeavesNothingOfEarlierList() {
        m_combo->setText(QStringLiteral("Wheat"));
        m_combo->setItems({{QStringLiteral("Rice"), QStringLiteral("7")}});
        QCOMPARE(m_combo->count(), 1);
        QCOMPARE(m_combo->text(), QString());
        QCOMPARE(m_combo->currentKey(), QString());
        QCOMPARE(m_combo->FindComboItem(QStringLiteral("Wheat")), QStringLiteral("0"));
    }

    // What a clerk types, then leaves the field with Tab: the text that stays, its key, and
    // the refusal when the field has words for one (the focus then stays).
    void typingSettlesOnLeaving_data() {
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("limit");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("refused");
        const QString none;
        const struct {
            const char* row;
            QString words;
            bool limit;
            const char *before, *typed, *text, *key;
            bool refused;
        } rows[] = {
            {"full name any case", none, true, "", "barley", "Barley", "13", false},
            {"unique prefix completes", kNoCommodity, true, "", "whe", "Wheat", "11", false},
            {"shared prefix stays as typed", none, true, "", "b", "b", "", false},
            // Never the entry the field held before.
            {"no entry stays as typed", none, true, "Bran", "rye", "rye", "", false},
            {"no entry refused", kNoCommodity, true, "Bran", "rye", "rye", "", true},
            {"emptied stays empty", kNoCommodity, true, "Bran", "", "", "", false},
            // A grid's editor leaves the refusal to the grid's check.
            {"grid editor", kNoCommodity, false, "", "rye", "rye", "", false},
        };
        for (const auto& r : rows)
            QTest::newRow(r.row) << r.words << r.limit << QString(r.before) << QString(r.typed)
                                 << QString(r.text) << QString(r.key) << r.refused;
    }
    void typingSettlesOnLeaving() {
        QFETCH(QString, words);
        QFETCH(bool, limit);
        QFETCH(QString, before);
        QFETCH(QString, typed);
        QFETCH(QString, text);
        QFETCH(QString, key);
        QFETCH(bool, refused);
        m_combo->setRefusal(words);
        m_combo->setLimitToList(limit);
        m_combo->setText(before);
        m_combo->lineEdit()->selectAll();
        QTest::keyClick(m_combo, Qt::Key_Backspace);
        QTest::keyClicks(m_combo, typed);
        const auto seen = boxesOn(refused, [this] { QTest::keyClick(m_combo, Qt::Key_Tab); });
        QCOMPARE(textsOf(seen), refused ? QStringList{words} : QStringList{});
        if (refused) {
            QCOMPARE(seen[0].title, QStringLiteral("Alert"));
            QCOMPARE(seen[0].icon, QMessageBox::Information);
            QCOMPARE(seen[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        }
        QCOMPARE(m_combo->text(), text);
        QCOMPARE(m_combo->currentKey(), key);
        QTRY_COMPARE(m_combo->hasFocus(), refused);
        QCOMPARE(m_next->hasFocus(), !refused);
    }

    // However the field is left, the refusal comes once per leaving and wins: the focus comes
    // back and a click that left the field presses nothing. Mended, the field may be left.
    void refusalWinsEveryLeaving() {
        m_combo->setRefusal(kNoCommodity);
        QTest::keyClicks(m_combo, QStringLiteral("Rice"));
        for (QWidget* elsewhere : std::initializer_list<QWidget*>{m_next, m_date, m_button}) {
            QCOMPARE(textsOf(boxesOn(true, [=] { QTest::mouseClick(elsewhere, Qt::LeftButton); })),
                     QStringList{kNoCommodity});
            QTRY_VERIFY(m_combo->hasFocus());
            QCOMPARE(m_combo->text(), QStringLiteral("Rice"));
        }
        QCOMPARE(m_clicks, 0);
        QCOMPARE(m_date->date(), QDate(2026, 11, 15));

        // Code may still show any name, which is then no typing to refuse.
        m_combo->setText(QStringLiteral("Maund (40)"));
        QCOMPARE(boxesOn(false, [this] { QTest::keyClick(m_combo, Qt::Key_Tab); }).size(), 0);
        QVERIFY(m_next->hasFocus());

        m_combo->setFocus(Qt::MouseFocusReason);
        QTRY_VERIFY(m_combo->hasFocus());
        m_combo->lineEdit()->selectAll();
        QTest::keyClicks(m_combo, QStringLiteral("white"));
        // A click outside the completion list only closes it.
        m_combo->completer()->popup()->hide();
        QCOMPARE(boxesOn(false, [this] { QTest::mouseClick(m_button, Qt::LeftButton); }).size(), 0);
        QCOMPARE(m_combo->currentKey(), QStringLiteral("12"));
        QCOMPARE(m_clicks, 1);
    }

    void typingDropsMatchingEntriesDown() {
        QTest::keyClicks(m_combo, QStringLiteral("w"));
        QAbstractItemView* popup = m_combo->completer()->popup();
        QTRY_VERIFY(popup->isVisible());
        QCOMPARE(popup->model()->rowCount(), 2); // Wheat, White Maize
    }

    void findComboItemMovesTheRow() {
        QCOMPARE(m_combo->FindComboItem(QStringLiteral("Barley")), QStringLiteral("13"));
        QCOMPARE(m_combo->currentIndex(), 2);
        QCOMPARE(m_combo->FindComboItem(QStringLiteral("Oats")), QStringLiteral("0"));
        QCOMPARE(m_combo->currentIndex(), 2);
        QVERIFY(m_combo->selectKey(QStringLiteral("11")));
        QCOMPARE(m_combo->text(), QStringLiteral("Wheat"));
        QVERIFY(!m_combo->selectKey(QStringLiteral("99")));
        QCOMPARE(m_combo->text(), QStringLiteral("Wheat"));
    }

    void textFromCodeStaysEvenWhenNoEntry() {
        // A stored name the list no longer offers is still shown, with no key behind it.
        m_combo->setText(QStringLiteral("Maund (40)"));
        QCOMPARE(m_combo->text(), QStringLiteral("Maund (40)"));
        QCOMPARE(m_combo->currentKey(), QString());
        QTest::keyClick(m_combo, Qt::Key_Tab);
        QCOMPARE(m_combo->text(), QStringLiteral("Maund (40)"));
    }

    // A click places the cursor and nothing else (three in the day section were three days
    // back); the wheel is no way to change a date either. Up and Down step the section under
    // the cursor, and the arrow opens the calendar, whose pick is taken.
    void onlyTypingArrowsOrCalendarChangeTheDate() {
        for (int i = 0; i < 3; ++i)
            QTest::mouseClick(m_date, Qt::LeftButton, {}, cursorPoint(m_date, 0));
        QTRY_VERIFY(m_date->hasFocus());
        auto* edit = m_date->findChild<QLineEdit*>();
        for (int i = 0; i < 3; ++i)
            QTest::mouseClick(edit, Qt::LeftButton, {},
                              edit->mapFrom(m_date, cursorPoint(m_date, 1)));
        const QPoint middle = cursorPoint(m_date, 4);
        QWheelEvent wheel(middle, m_date->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_date, &wheel);
        QCOMPARE(m_date->date(), QDate(2026, 11, 15));
        QCOMPARE(m_date->text(), QStringLiteral("15/11/2026"));

        QTest::keyClick(m_date, Qt::Key_Up);
        QCOMPARE(m_date->date(), QDate(2026, 11, 16));
        QTest::mouseClick(m_date, Qt::LeftButton, {}, cursorPoint(m_date, 8));
        QTest::keyClick(m_date, Qt::Key_Down);
        QCOMPARE(m_date->date(), QDate(2025, 11, 16));

        QTest::mouseClick(m_date, Qt::LeftButton, {}, {m_date->width() - 4, m_date->height() / 2});
        QCalendarWidget* calendar = m_date->calendarWidget();
        QTRY_VERIFY(calendar->isVisible());
        calendar->setSelectedDate(QDate(2025, 12, 3));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(!calendar->isVisible());
        QCOMPARE(m_date->date(), QDate(2025, 12, 3));
    }

    // A whole date typed over the November one shown, then Tab: exactly that date; no part of
    // it is checked against the month shown. An impossible or unfinished one is refused, the
    // text kept and the date as it was.
    void typingAWholeDate_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDate>("date");
        const struct {
            const char *row, *keys, *text;
            QDate date;
        } rows[] = {
            {"ddMMyyyy", "31122026", "31/12/2026", QDate(2026, 12, 31)},
            {"dd/MM/yyyy", "31/12/2026", "31/12/2026", QDate(2026, 12, 31)},
            {"single digits", "1/2/2027", "01/02/2027", QDate(2027, 2, 1)},
            {"impossible day", "31022026", "31/02/2026", QDate()},
            {"impossible month", "15132026", "15/13/2026", QDate()},
        };
        for (const auto& r : rows)
            QTest::newRow(r.row) << QString(r.keys) << QString(r.text) << r.date;
    }
    void typingAWholeDate() {
        QFETCH(QString, keys);
        QFETCH(QString, text);
        QFETCH(QDate, date);
        const bool refused = !date.isValid();
        m_next->setFocus();
        QTest::keyClick(m_next, Qt::Key_Tab);
        QTRY_VERIFY(m_date->hasFocus());
        QTest::keyClicks(m_date, keys);
        const auto seen = boxesOn(refused, [this] { QTest::keyClick(m_date, Qt::Key_Tab); });
        QCOMPARE(textsOf(seen), refused ? QStringList{kNoDate} : QStringList{});
        if (refused) {
            QCOMPARE(seen[0].title, QStringLiteral("Alert"));
            QCOMPARE(seen[0].icon, QMessageBox::Information);
        }
        QCOMPARE(m_date->text(), text);
        QCOMPARE(m_date->date(), refused ? QDate(2026, 11, 15) : date);
        QTRY_COMPARE(m_date->hasFocus(), refused);
    }

    // A refused date stays for the clerk to mend: the arrows step nothing, a click on a
    // button is refused again and presses nothing; the day mended, the field may be left.
    void refusedDateIsMendedInPlace() {
        m_date->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(m_date->hasFocus());
        QTest::keyClicks(m_date, QStringLiteral("31022026"));
        QTest::keyClick(m_date, Qt::Key_Up);
        QCOMPARE(m_date->text(), QStringLiteral("31/02/2026"));
        QCOMPARE(textsOf(boxesOn(true, [this] { QTest::mouseClick(m_button, Qt::LeftButton); })),
                 QStringList{kNoDate});
        QTRY_VERIFY(m_date->hasFocus());
        QCOMPARE(m_clicks, 0);
        QCOMPARE(m_date->text(), QStringLiteral("31/02/2026"));

        QTest::keyClick(m_date, Qt::Key_Home);
        QTest::keyClicks(m_date, QStringLiteral("28"));
        QCOMPARE(m_date->date(), QDate(2026, 2, 28));
        QCOMPARE(boxesOn(false, [this] { QTest::keyClick(m_date, Qt::Key_Tab); }).size(), 0);
        QVERIFY(!m_date->hasFocus());

        // A date set by code (a screen's new document) replaces a half-typed one, even the
        // date the field already holds.
        m_date->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(m_date, QStringLiteral("00"));
        QCOMPARE(m_date->text(), QStringLiteral("00/02/2026"));
        m_date->setDate(QDate(2026, 2, 28));
        QCOMPARE(m_date->text(), QStringLiteral("28/02/2026"));
        QCOMPARE(boxesOn(false, [this] { QTest::keyClick(m_date, Qt::Key_Tab); }).size(), 0);
    }

    void numberAndDateFieldsShowPlainText() {
        NumberEdit n(QStringLiteral("TxtQuantity"), m_window);
        n.setText(QStringLiteral("1,234"));
        QCOMPARE(n.value(), 1.0);
        n.setText(QString());
        QCOMPARE(n.value(), 0.0);
        n.setValue(2700.0);
        QCOMPARE(n.text(), QStringLiteral("2700"));
        n.setValue(12.5);
        QCOMPARE(n.text(), QStringLiteral("12.5"));
        n.setFixedValue(3);
        QCOMPARE(n.text(), QStringLiteral("3.00"));

        n.clear();
        n.setDecimals(2);
        n.setFocus();
        QTest::keyClicks(&n, QStringLiteral("-12.345x"));
        QCOMPARE(n.text(), QStringLiteral("12.34"));

        DateEdit d(QStringLiteral("DtpContractDate"), m_window);
        d.setDate(QDate(2024, 3, 7));
        QCOMPARE(d.text(), QStringLiteral("07/03/2024"));
    }
};

QTEST_MAIN(TstFields)
#include "tst_fields.moc"
