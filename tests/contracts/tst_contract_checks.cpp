#include "contracts/ContractStore.h"
#include "contracts/ContractValidation.h"

#include <QtTest>

#include <set>

using namespace gm;

namespace {

// Numbers in use, as a database would report them.
class TakenNumbers final : public ContractKeys {
public:
    explicit TakenNumbers(std::set<qint64> taken) : m_taken(std::move(taken)) {}
    qint64 nextContractId() const override { return m_taken.empty() ? 1 : *m_taken.rbegin() + 1; }
    bool exists(qint64 id) const override { return m_taken.count(id) > 0; }

private:
    std::set<qint64> m_taken;
};

ContractEntry completeEntry() {
    ContractEntry e;
    e.contractIdText = QStringLiteral("7");
    e.sellerText = QStringLiteral("Ali Traders-Okara");
    e.sellerKey = QStringLiteral("6001");
    e.brokerText = QStringLiteral("Bashir Brokers-Okara");
    e.commodityText = QStringLiteral("Wheat");
    e.commodityKey = QStringLiteral("1");
    e.contractModeText = QStringLiteral("Bags");
    e.unitKey = QStringLiteral("1");
    e.quantityText = QStringLiteral("100");
    e.ratePerUnitText = QStringLiteral("3500");
    return e;
}

} // namespace

class TstContractChecks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void refusals_data();
    void refusals();
    void numberChecks_data();
    void numberChecks();
};

// Each row breaks an otherwise complete entry; the first objection in the clerk's order wins,
// so a row may break several fields to show which comes first.
void TstContractChecks::refusals_data() {
    QTest::addColumn<QStringList>("changes"); // field=value pairs applied to a complete entry
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");

    QTest::newRow("seller and broker empty, before everything else")
        << QStringList{"seller=", "sellerKey=", "broker=", "commodity=", "commodityKey=", "id=0"}
        << "Please select a broker and try again"
        << "CboBroker";
    QTest::newRow("no seller though a broker")
        << QStringList{"seller=", "sellerKey="} << "Please select a seller and try again"
        << "CboSeller";
    QTest::newRow("seller text that is no entry")
        << QStringList{"sellerKey="} << "Please select a seller and try again"
        << "CboSeller";
    QTest::newRow("commodity before mode") << QStringList{"commodity=", "commodityKey=", "mode="}
                                           << "Please select a Commodity and try again"
                                           << "CboCommodity";
    QTest::newRow("mode") << QStringList{"mode="}
                          << "Please select a valid Contract Mode and try again"
                          << "CboContractMode";
    QTest::newRow("unit is judged by its key")
        << QStringList{"unitKey="} << "Please select a valid Unit and try again"
        << "CboUnit";
    QTest::newRow("quantity 0") << QStringList{"quantity=0"} << "Quantity must be greater than 0."
                                << "TxtQuantity";
    QTest::newRow("quantity negative")
        << QStringList{"quantity=-3", "rate=0"} << "Quantity must be greater than 0."
        << "TxtQuantity";
    QTest::newRow("quantity without digits")
        << QStringList{"quantity=abc"} << "Quantity must be greater than 0."
        << "TxtQuantity";
    QTest::newRow("rate 0") << QStringList{"rate=0"} << "Rate must be greater than 0"
                            << "TxtRatePerUnit";
    QTest::newRow("rate negative") << QStringList{"rate=-0.5"} << "Rate must be greater than 0"
                                   << "TxtRatePerUnit";
}

void TstContractChecks::refusals() {
    QFETCH(QStringList, changes);
    QFETCH(QString, message);
    QFETCH(QString, focus);

    ContractEntry e = completeEntry();
    for (const QString& change : changes) {
        const QString field = change.section('=', 0, 0);
        const QString value = change.section('=', 1);
        if (field == "seller")
            e.sellerText = value;
        else if (field == "sellerKey")
            e.sellerKey = value;
        else if (field == "broker")
            e.brokerText = value;
        else if (field == "commodity")
            e.commodityText = value;
        else if (field == "commodityKey")
            e.commodityKey = value;
        else if (field == "mode")
            e.contractModeText = value;
        else if (field == "unitKey")
            e.unitKey = value;
        else if (field == "quantity")
            e.quantityText = value;
        else if (field == "rate")
            e.ratePerUnitText = value;
        else if (field == "id")
            e.contractIdText = value;
        else
            QFAIL(qPrintable("unknown field " + field));
    }
    const ContractCheck check = validateContract(e, TakenNumbers({1, 2}));
    QVERIFY(!check.ok);
    QCOMPARE(check.message, message);
    QCOMPARE(check.title, QStringLiteral("Alert"));
    QCOMPARE(check.icon, ContractCheck::Icon::Exclamation);
    QCOMPARE(check.focusControl, focus);
    QVERIFY(!check.newContractId);
}

void TstContractChecks::numberChecks_data() {
    QTest::addColumn<QString>("idText");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("title");
    QTest::addColumn<qint64>("newId"); // 0: no new number drawn

    const QString invalid = "Invalid purchase Id. A new Purchase has been automatically "
                            "generated. Please save again";
    const QString taken = "The Contract ID already exists. A new ID has been generated. Please "
                          "save your record again";
    QTest::newRow("free number") << "7" << false << true << ""
                                 << "" << qint64(0);
    QTest::newRow("zero, before the seller is looked at")
        << "0" << false << false << invalid << "" << qint64(3);
    QTest::newRow("blank") << "  " << false << false << invalid << "" << qint64(3);
    QTest::newRow("letters read as 0") << "abc" << false << false << invalid << "" << qint64(3);
    QTest::newRow("negative") << "-4" << false << false << invalid << "" << qint64(3);
    QTest::newRow("taken by another clerk")
        << "2" << false << false << taken << "Alert" << qint64(3);
    QTest::newRow("taken, with trailing letters")
        << "2x" << false << false << taken << "Alert" << qint64(3);
    QTest::newRow("an opened contract keeps its own number") << "2" << true << true << ""
                                                             << "" << qint64(0);
    QTest::newRow("opened, yet zero") << "0" << true << false << invalid << "" << qint64(3);
}

void TstContractChecks::numberChecks() {
    QFETCH(QString, idText);
    QFETCH(bool, opened);
    QFETCH(bool, ok);
    QFETCH(QString, message);
    QFETCH(QString, title);
    QFETCH(qint64, newId);

    ContractEntry e = completeEntry();
    e.contractIdText = idText;
    e.isOpened = opened;
    if (idText == "0")
        e.sellerKey.clear(); // the number is judged before the seller
    const ContractCheck check = validateContract(e, TakenNumbers({1, 2}));
    QCOMPARE(check.ok, ok);
    QCOMPARE(check.message, message);
    QCOMPARE(check.title, title);
    QCOMPARE(check.focusControl, QString());
    QCOMPARE(check.newContractId.value_or(0), newId);
    if (!ok)
        QCOMPARE(check.icon,
                 title.isEmpty() ? ContractCheck::Icon::None : ContractCheck::Icon::Exclamation);
}

QTEST_GUILESS_MAIN(TstContractChecks)
#include "tst_contract_checks.moc"
