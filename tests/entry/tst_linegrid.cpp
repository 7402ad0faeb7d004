#include "entry/LineGrid.h"
#include "support/Modals.h"

#include <QtTest>

using namespace gm;
using gm::test::Modals;

namespace {

enum Col { Vehicle, Qty, Bags, Gross, PerBag, Driver };

// A grid laid out like the arrival lines: a text with a check, two numbers whose product is
// recomputed, a ranged number, a read-only result, and footers summing the weights.
struct ArrivalLike {
    QWidget window;
    LineGrid* grid;
    LineGridModel* model;
    int recomputes = 0;

    ArrivalLike() {
        grid = new LineGrid(QStringLiteral("Grid"), &window);
        grid->setColumns({GridColumn::text(QStringLiteral("Vehicle No")),
                          GridColumn::number(QStringLiteral("Qty"), 60, 0),
                          GridColumn::number(QStringLiteral("Bags")),
                          GridColumn::readOnly(QStringLiteral("Gross")),
                          GridColumn::number(QStringLiteral("Per Bag"), 60, 2, 0, 99999),
                          GridColumn::text(QStringLiteral("Driver Name"))});
        grid->setGroups({{Qty, Gross, QStringLiteral("Weight")}});
        model = grid->lines();
        model->setCellCheck(
            [this](int, int column, const QString& text) -> std::optional<Objection> {
                if (column == Vehicle && text.size() > 15)
                    return Objection::info(
                        QStringLiteral("Vehicle no must be less then 15 charactors."));
                if (column == Driver && text.size() > 25)
                    return model->standardRefusal(column);
                return std::nullopt;
            });
        model->setRecompute([this](int row, int) {
            ++recomputes;
            const double qty = model->cellValue(row, Qty);
            const double bags = model->cellValue(row, Bags);
            model->setCell(row, Gross, qty > 0 && bags > 0 ? formatNumber(qty * bags) : QString());
            model->setFooterText(Gross, model->sumColumn(Gross).toString());
        });
        window.resize(700, 300);
        grid->panel()->resize(700, 300);
    }

    // Shown with the grid focused on the given cell, ready for keys.
    bool showAt(int row, int column) {
        window.show();
        if (!QTest::qWaitForWindowActive(&window))
            return false;
        grid->setFocus();
        grid->setCurrentIndex(model->index(row, column));
        return true;
    }
};

// A line of every kind of field a screen binds: text, figures of two precisions, a list name.
struct Load {
    QString vehicle;
    Figure qty;
    Figure rate;
    QString bagType;
    Figure net;
};

} // namespace

class TstLineGrid : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The same entries through setData: refused ones leave the cell and say why.
    void checksThroughTheModel_data() {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("refusal");
        const QString perBag = QStringLiteral("Please provide a valid per bag.");
        QTest::newRow("screen's check") << int(Vehicle) << QString(16, QLatin1Char('V'))
                                        << "Vehicle no must be less then 15 charactors.";
        QTest::newRow("standard refusal") << int(Driver) << QString(26, QLatin1Char('d'))
                                          << "Please provide a valid driver name.";
        QTest::newRow("per bag at the top") << int(PerBag) << "99999" << QString();
        QTest::newRow("per bag above") << int(PerBag) << "99999.5" << perBag;
        QTest::newRow("per bag below") << int(PerBag) << "-1" << perBag;
    }
    void checksThroughTheModel() {
        QFETCH(int, column);
        QFETCH(QString, text);
        QFETCH(QString, refusal);
        ArrivalLike g;
        g.model->setLines({QStringList{QStringLiteral("old")}});
        g.model->setCell(0, column, QStringLiteral("1"));
        const bool ok = g.model->setData(g.model->index(0, column), text);
        QCOMPARE(ok, refusal.isEmpty());
        QCOMPARE(g.model->cellText(0, column), ok ? text : QStringLiteral("1"));
        if (!ok) {
            QCOMPARE(g.model->lastRefusal()->text, refusal);
            QCOMPARE(g.model->lastRefusal()->title, QStringLiteral("Alert"));
        }
    }

    void recomputationAndFooters() {
        ArrivalLike g;
        QCOMPARE(g.model->rowCount(), 1); // only the new-line row
        QVERIFY(g.model->setData(g.model->index(0, Qty), QStringLiteral("10")));
        QCOMPARE(g.model->lineCount(), 1);
        QVERIFY(g.model->setData(g.model->index(0, Bags), QStringLiteral("50.5")));
        QCOMPARE(g.grid->cellText(0, Gross), QStringLiteral("505"));
        QVERIFY(g.model->setData(g.model->index(1, Qty), QStringLiteral("2")));
        QVERIFY(g.model->setData(g.model->index(1, Bags), QStringLiteral("0.25")));
        QCOMPARE(g.grid->footerText(Gross), QStringLiteral("505.5"));
        QCOMPARE(g.recomputes, 4);
        // Code writes and refused entries do not recompute; the read-only column takes nothing.
        g.model->setCell(0, Qty, QStringLiteral("1"));
        QVERIFY(!g.model->setData(g.model->index(0, Gross), QStringLiteral("9")));
        QCOMPARE(g.recomputes, 4);
        // An empty entry in the new-line row adds no line.
        QVERIFY(g.model->setData(g.model->index(2, Vehicle), QString()));
        QCOMPARE(g.model->lineCount(), 2);
        g.model->clearLines();
        QCOMPARE(g.model->rowCount(), 1);
        QCOMPARE(g.grid->footerText(Gross), QString());
    }

    void keyboardEditingMovesAndRecomputes() {
        ArrivalLike g;
        QVERIFY(g.showAt(0, Qty));
        QTest::keyClick(g.grid, '4');
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(g.grid->currentIndex(), g.model->index(0, Bags));
        QTest::keyClick(g.grid, '5');
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(g.grid->cellText(0, Gross), QStringLiteral("20"));
        // The read-only column is stepped over.
        QCOMPARE(g.grid->currentIndex(), g.model->index(0, PerBag));
        // Enter at the end of a line goes on to the next (new) line.
        g.grid->setCurrentIndex(g.model->index(0, Driver));
        QTest::keyClick(g.grid, Qt::Key_Return);
        QCOMPARE(g.grid->currentIndex(), g.model->index(1, Vehicle));
    }

    void refusalThroughTheViewKeepsTheEditor() {
        ArrivalLike g;
        QVERIFY(g.showAt(0, PerBag));
        QTest::keyClick(g.grid, '1');
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("00000"));
        QWidget* editor = QApplication::focusWidget();
        {
            Modals boxes(QMessageBox::Ok);
            QTest::keyClick(editor, Qt::Key_Return);
            QCOMPARE(boxes.count(), 1);
            QCOMPARE(boxes.last().text, QStringLiteral("Please provide a valid per bag."));
            QCOMPARE(boxes.last().icon, QMessageBox::Information);
        }
        QCOMPARE(g.model->lineCount(), 0);
        QVERIFY(g.grid->isEditing());
        QTRY_COMPARE(g.window.focusWidget(), editor);
        // Mended in place (the refused text stands selected), the entry goes in.
        QTest::keyClick(editor, Qt::Key_End);
        QTest::keyClick(editor, Qt::Key_Backspace);
        QTest::keyClick(editor, Qt::Key_Backspace);
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(g.grid->cellText(0, PerBag), QStringLiteral("1000"));
        QVERIFY(!g.grid->isEditing());
    }

    // Bound columns show a line's fields and write typed texts back into them; a blank figure
    // shows nothing and counts nothing, and the lines come back as they were set.
    void typedLinesRoundTrip() {
        LineGrid grid;
        grid.setColumns<Load>({
            {GridColumn::text(QStringLiteral("Vehicle No")), field(&Load::vehicle)},
            {GridColumn::number(QStringLiteral("Qty"), 60, 0), field(&Load::qty)},
            {GridColumn::number(QStringLiteral("Rate"), 60, 4), field(&Load::rate, 2)},
            {GridColumn::lookupOf(QStringLiteral("Type"), {{QStringLiteral("PP 100kg"), "1"}}),
             field(&Load::bagType)},
            {GridColumn::readOnly(QStringLiteral("Net")), field(&Load::net)},
        });
        LineGridModel* m = grid.lines();
        grid.setLines(std::vector<Load>{{"LHR-1", 10, 3.14159, "PP 100kg", {}}});
        QCOMPARE(m->cellText(0, 0), QStringLiteral("LHR-1"));
        QCOMPARE(m->cellText(0, 1), QStringLiteral("10"));
        QCOMPARE(m->cellText(0, 2), QStringLiteral("3.14"));
        QCOMPARE(m->cellText(0, 3), QStringLiteral("PP 100kg"));
        QCOMPARE(m->cellText(0, 4), QString());

        // Typed into the new-line row: a new line with only that field set.
        QVERIFY(m->editCell(1, 1, QStringLiteral("25.5")));
        QVERIFY(m->editCell(1, 2, QStringLiteral("-2")));
        m->updateLine<Load>(1, [](Load& l) { l.net = l.qty * 4; });
        const std::vector<Load>& lines = grid.lines<Load>();
        QCOMPARE(int(lines.size()), 2);
        QCOMPARE(double(lines[1].qty), 25.5);
        QCOMPARE(double(lines[1].rate), -2.0);
        QVERIFY(lines[1].vehicle.isEmpty() && lines[1].bagType.isEmpty());
        QCOMPARE(m->cellText(1, 4), QStringLiteral("102"));
        QCOMPARE(m->sumColumn(1).toString(), QStringLiteral("35.5"));
        // Emptying a figure makes it blank again, not 0.
        QVERIFY(m->editCell(1, 1, QString()));
        QVERIFY(grid.lines<Load>()[1].qty.isBlank());
        QCOMPARE(m->cellText(1, 1), QString());

        // The grid is bound to Load, and reading it as anything else is a mistake, not data.
        QVERIFY_THROWS_EXCEPTION(std::logic_error, grid.lines<QString>());
    }

    void deleteRemovesLineOnlyWhenAllowed() {
        ArrivalLike g;
        g.model->setLines({QStringList{QStringLiteral("A")}, QStringList{QStringLiteral("B")}});
        QVERIFY(g.showAt(0, Vehicle));
        QTest::keyClick(g.grid, Qt::Key_Delete);
        QCOMPARE(g.model->lineCount(), 2);
        g.grid->setDeleteRemovesLine(true);
        QTest::keyClick(g.grid, Qt::Key_Delete);
        QCOMPARE(g.model->lineCount(), 1);
        QCOMPARE(g.grid->cellText(0, Vehicle), QStringLiteral("B"));
        // The new-line row is no line to remove.
        g.grid->setCurrentIndex(g.model->index(1, Vehicle));
        QVERIFY(!g.grid->removeCurrentLine());
    }
};

QTEST_MAIN(TstLineGrid)
#include "tst_linegrid.moc"
