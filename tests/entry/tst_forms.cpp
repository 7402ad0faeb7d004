#include "datastore/Sql.h"
#include "entry/Forms.h"
#include "support/Modals.h"
#include "support/TestDb.h"

#include <QtTest>

using namespace gm;
using gm::test::Modals;

namespace {

using Show = void (Forms::*)();

struct Entry {
    const char* name;
    Forms::Screen screen;
    Show show;
};

const Entry kScreens[] = {
    {"arrivals", Forms::Screen::Arrivals, &Forms::ArrivalForm},
    {"dfc", Forms::Screen::PurchaseFromDFC, &Forms::PurchaseFromDFCForm},
    {"contract", Forms::Screen::PurchaseContract, &Forms::PurchaseContractForm},
    {"invoice", Forms::Screen::PurchaseInvoice, &Forms::PurchaseInvoiceForm},
    {"production", Forms::Screen::Production, &Forms::ProductionForm},
    {"hourly", Forms::Screen::HourlyProduction, &Forms::HProductionForm},
};

int topLevelsNamed(const QString& name) {
    int n = 0;
    for (QWidget* w : QApplication::topLevelWidgets())
        n += w->objectName() == name && w->isVisible() ? 1 : 0;
    return n;
}

} // namespace

class TstForms : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noScreenBeforeTheConnection() {
        Forms forms;
        QVERIFY_THROWS_EXCEPTION(DbError, forms.context().db());
        Modals boxes(QMessageBox::Ok);
        forms.PurchaseContractForm();
        QCOMPARE(boxes.count(), 1);
        QCOMPARE(boxes.last().title, QStringLiteral("grainmill"));
        QVERIFY(boxes.last().text.contains(QStringLiteral("no database connection")));
        QVERIFY(!forms.instance(Forms::Screen::PurchaseContract));
    }

    void oneInstancePerScreen_data() {
        QTest::addColumn<int>("entry");
        for (int i = 0; i < int(std::size(kScreens)); ++i) {
            if (Forms::isAvailable(kScreens[i].screen))
                QTest::newRow(kScreens[i].name) << i;
        }
    }
    void oneInstancePerScreen() {
        GM_REQUIRE_ENGINE();
        QFETCH(int, entry);
        const Entry& e = kScreens[entry];
        auto conn = gm::test::freshSampleConn();
        Forms forms;
        forms.InitializeClass(*conn);
        Modals unexpected(QMessageBox::Ok);

        (forms.*e.show)();
        QPointer<QWidget> first = forms.instance(e.screen);
        QVERIFY(first);
        QVERIFY(first->isVisible());
        QVERIFY(first->isWindow());
        QVERIFY(!first->parentWidget());
        (forms.*e.show)();
        QCOMPARE(forms.instance(e.screen), first.data());
        QCOMPARE(topLevelsNamed(first->objectName()), 1);

        // Closed, it is built anew on the next call.
        QVERIFY(first->close());
        QTRY_VERIFY(!first);
        QVERIFY(!forms.instance(e.screen));
        (forms.*e.show)();
        QVERIFY(forms.instance(e.screen));
        QVERIFY(forms.instance(e.screen)->isVisible());
        // Another screen opens beside it on the same connection.
        for (const Entry& other : kScreens) {
            if (other.screen == e.screen || !Forms::isAvailable(other.screen))
                continue;
            (forms.*other.show)();
            QVERIFY(forms.instance(other.screen)->isVisible());
            QVERIFY(forms.instance(e.screen)->isVisible());
            break;
        }
        QVERIFY(forms.closeAll());
        QCOMPARE(unexpected.count(), 0);
    }
};

QTEST_MAIN(TstForms)
#include "tst_forms.moc"
