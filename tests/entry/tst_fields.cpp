#include "entry/Fields.h"
#include "widgets/LookupCombo.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QtTest>

using namespace gm;

namespace {

LookupList grains() {
    return {{QStringLiteral("Wheat"), QStringLiteral("11")},
            {QStringLiteral("White Maize"), QStringLiteral("12")},
            {QStringLiteral("Barley"), QStringLiteral("13")},
            {QStringLiteral("Bran"), QStringLiteral("14")}};
}

} // namespace

class TstFields : public QObject {
    Q_OBJECT
private:
    QWidget* m_window = nullptr;
    LookupCombo* m_combo = nullptr;
    QLineEdit* m_next = nullptr;

private Q_SLOTS:
    void init() {
        m_window = new QWidget;
        m_combo = new LookupCombo(QStringLiteral("CboCommodity"), m_window);
        m_next = new QLineEdit(m_window);
        m_next->move(0, 40);
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

    // What a clerk types, then leaves the field with Tab: the text that stays and its key.
    void typingSettlesOnLeaving_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("key");
        const char* rows[][5] = {
            {"full name any case", "", "barley", "Barley", "13"},
            {"unique prefix completes", "", "whe", "Wheat", "11"},
            {"shared prefix reverts to empty", "", "b", "", ""},
            {"no entry reverts to last entry", "Bran", "rye", "Bran", "14"},
            {"emptied stays empty", "Bran", "", "", ""},
        };
        for (const auto& r : rows)
            QTest::newRow(r[0]) << QString(r[1]) << QString(r[2]) << QString(r[3]) << QString(r[4]);
    }
    void typingSettlesOnLeaving() {
        QFETCH(QString, before);
        QFETCH(QString, typed);
        QFETCH(QString, text);
        QFETCH(QString, key);
        m_combo->setText(before);
        m_combo->lineEdit()->selectAll();
        QTest::keyClick(m_combo, Qt::Key_Backspace);
        QTest::keyClicks(m_combo, typed);
        QTest::keyClick(m_combo, Qt::Key_Tab);
        QCOMPARE(m_combo->text(), text);
        QCOMPARE(m_combo->currentKey(), key);
        QVERIFY(m_next->hasFocus());
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
