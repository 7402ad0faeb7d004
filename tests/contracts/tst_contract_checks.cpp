#include "contracts/ContractStore.h"
#include "contracts/ContractValidation.h"

#include <QtTest>

using namespace gm;

namespace {

// Numbers 1 and 2 are in use.
class TakenNumbers final : public ContractKeys {
public:
    qint64 nextContractId() const override { return 3; }
    bool exists(qint64 id) const override { return id == 1 || id == 2; }
};

} // namespace

class TstContractChecks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void firstObjectionWins_data();
    void firstObjectionWins();
};

// Each row is an entry as Save finds it; only the first objection in the clerk's order is
// told, so rows break several fields at once to pin that order down.
void TstContractChecks::firstObjectionWins_data() {
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QString>("seller"); // the text; a "?" suffix means no list entry behind it
    QTest::addColumn<QString>("broker");
    QTest::addColumn<QString>("unitKey");
    QTest::addColumn<QString>("quantity");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");

    const QString invalid = "Invalid purchase Id. A new Purchase has been automatically "
                            "generated. Please save again";
    const QString taken = "The Contract ID already exists. A new ID has been generated. Please "
                          "save your record again";
    // clang-format off
    QTest::newRow("complete") << "7" << false << "Ali" << "Bashir" << "1" << "100" << "3500" << "" << "";
    QTest::newRow("no seller or broker comes before a 0 number") << "0" << false << "" << "" << "" << "0" << "0" << "Please select a broker and try again" << "CboBroker";
    QTest::newRow("0 number before the seller") << "0" << false << "" << "Bashir" << "" << "0" << "0" << invalid << "";
    QTest::newRow("letters read as 0") << "abc" << false << "Ali" << "" << "1" << "1" << "1" << invalid << "";
    QTest::newRow("negative number") << "-4" << false << "Ali" << "" << "1" << "1" << "1" << invalid << "";
    QTest::newRow("number taken meanwhile") << "2x" << false << "Ali" << "" << "" << "1" << "1" << taken << "";
    QTest::newRow("an opened contract keeps its number") << "2" << true << "Ali" << "" << "1" << "1" << "1" << "" << "";
    QTest::newRow("broker but no seller") << "7" << false << "" << "Bashir" << "" << "0" << "0" << "Please select a seller and try again" << "CboSeller";
    QTest::newRow("seller text no entry") << "7" << false << "Ali?" << "" << "1" << "1" << "1" << "Please select a seller and try again" << "CboSeller";
    QTest::newRow("unit judged by its key") << "7" << false << "Ali" << "" << "" << "0" << "0" << "Please select a valid Unit and try again" << "CboUnit";
    QTest::newRow("quantity 0 before rate") << "7" << false << "Ali" << "" << "1" << "0" << "0" << "Quantity must be greater than 0." << "TxtQuantity";
    QTest::newRow("quantity negative") << "7" << false << "Ali" << "" << "1" << "-3" << "5" << "Quantity must be greater than 0." << "TxtQuantity";
    QTest::newRow("rate 0") << "7" << false << "Ali" << "" << "1" << "5" << "0" << "Rate must be greater than 0" << "TxtRatePerUnit";
    QTest::newRow("rate negative") << "7" << false << "Ali" << "" << "1" << "5" << "-0.5" << "Rate must be greater than 0" << "TxtRatePerUnit";
    // clang-format on
}

void TstContractChecks::firstObjectionWins() {
    QFETCH(QString, id);
    QFETCH(bool, opened);
    QFETCH(QString, seller);
    QFETCH(QString, broker);
    QFETCH(QString, unitKey);
    QFETCH(QString, quantity);
    QFETCH(QString, rate);
    QFETCH(QString, message);
    QFETCH(QString, focus);

    ContractEntry e;
    e.contractIdText = id;
    e.isOpened = opened;
    e.sellerText = seller;
    e.sellerKey = seller.isEmpty() || seller.endsWith('?') ? QString() : QStringLiteral("6001");
    e.brokerText = broker;
    e.commodityText = QStringLiteral("Wheat");
    e.commodityKey = QStringLiteral("1");
    e.contractModeText = QStringLiteral("Bags");
    e.unitKey = unitKey;
    e.quantityText = quantity;
    e.ratePerUnitText = rate;

    const ContractCheck check = validateContract(e, TakenNumbers());
    QCOMPARE(check.ok, message.isEmpty());
    QCOMPARE(check.message, message);
    QCOMPARE(check.focusControl, focus);
    // Both number objections hand out the next free number, which the keys say is 3.
    const bool renumbered = message.startsWith("Invalid purchase Id.") ||
                            message.startsWith("The Contract ID already exists.");
    QCOMPARE(check.newContractId.value_or(0), renumbered ? 3 : 0);
    // The invalid-number box alone has neither title nor icon.
    const bool bare = message.startsWith("Invalid purchase Id.");
    if (!check.ok) {
        QCOMPARE(check.title, bare ? QString() : QStringLiteral("Alert"));
        QCOMPARE(check.icon, bare ? ContractCheck::Icon::None : ContractCheck::Icon::Exclamation);
    }
}

QTEST_GUILESS_MAIN(TstContractChecks)
#include "tst_contract_checks.moc"
