#include "contracts/ContractStore.h"
#include "contracts/ContractValidation.h"

#include <QtTest>

using namespace gm;

namespace {

// Numbers 1 and 2 are in use.
class TakenNumbers final : public DocumentKeys {
public:
    qint64 nextDocumentId() const override { return 3; }
    bool exists(qint64 id) const override { return id == 1 || id == 2; }
};

// A "?" after the seller means no list entry behind its text.
struct Entry {
    QString id;
    bool opened;
    QString seller, broker, unitKey, quantity, rate, message, focus;
};

} // namespace

Q_DECLARE_METATYPE(Entry)

class TstContractChecks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void firstObjectionWins_data();
    void firstObjectionWins();
};

// Each row is an entry as Save finds it; only the first objection in the clerk's order is
// told, so rows break several fields at once to pin that order down.
void TstContractChecks::firstObjectionWins_data() {
    QTest::addColumn<Entry>("c");
    const QString invalid = "Invalid purchase Id. A new Purchase has been automatically "
                            "generated. Please save again";
    const QString taken = "The Contract ID already exists. A new ID has been generated. Please "
                          "save your record again";
    // clang-format off
    QTest::newRow("complete") << Entry{"7", false, "Ali", "Bashir", "1", "100", "3500", "", ""};
    QTest::newRow("no seller or broker comes before a 0 number") << Entry{"0", false, "", "", "", "0", "0", "Please select a broker and try again", "CboBroker"};
    QTest::newRow("0 number before the seller") << Entry{"0", false, "", "Bashir", "", "0", "0", invalid, ""};
    QTest::newRow("letters read as 0") << Entry{"abc", false, "Ali", "", "1", "1", "1", invalid, ""};
    QTest::newRow("negative number") << Entry{"-4", false, "Ali", "", "1", "1", "1", invalid, ""};
    QTest::newRow("number taken meanwhile") << Entry{"2x", false, "Ali", "", "", "1", "1", taken, ""};
    QTest::newRow("an opened contract keeps its number") << Entry{"2", true, "Ali", "", "1", "1", "1", "", ""};
    QTest::newRow("broker but no seller") << Entry{"7", false, "", "Bashir", "", "0", "0", "Please select a seller and try again", "CboSeller"};
    QTest::newRow("seller text no entry") << Entry{"7", false, "Ali?", "", "1", "1", "1", "Please select a seller and try again", "CboSeller"};
    QTest::newRow("unit judged by its key") << Entry{"7", false, "Ali", "", "", "0", "0", "Please select a valid Unit and try again", "CboUnit"};
    QTest::newRow("quantity 0 before rate") << Entry{"7", false, "Ali", "", "1", "0", "0", "Quantity must be greater than 0.", "TxtQuantity"};
    QTest::newRow("quantity negative") << Entry{"7", false, "Ali", "", "1", "-3", "5", "Quantity must be greater than 0.", "TxtQuantity"};
    QTest::newRow("rate 0") << Entry{"7", false, "Ali", "", "1", "5", "0", "Rate must be greater than 0", "TxtRatePerUnit"};
    QTest::newRow("rate negative") << Entry{"7", false, "Ali", "", "1", "5", "-0.5", "Rate must be greater than 0", "TxtRatePerUnit"};
    // clang-format on
}

void TstContractChecks::firstObjectionWins() {
    QFETCH(Entry, c);
    ContractEntry e;
    e.contractIdText = c.id;
    e.isOpened = c.opened;
    e.sellerText = c.seller;
    e.sellerKey = c.seller.isEmpty() || c.seller.endsWith('?') ? QString() : QStringLiteral("6001");
    e.brokerText = c.broker;
    e.commodityText = QStringLiteral("Wheat");
    e.commodityKey = QStringLiteral("1");
    e.contractModeText = QStringLiteral("Bags");
    e.unitKey = c.unitKey;
    e.quantityText = c.quantity;
    e.ratePerUnitText = c.rate;

    const auto check = validateContract(e, TakenNumbers());
    QCOMPARE(!check, c.message.isEmpty());
    QCOMPARE(check ? check->text : QString(), c.message);
    QCOMPARE(check ? check->focus : QString(), c.focus);
    // Both number objections hand out the next free number, which the keys say is 3.
    const bool renumbered = c.message.startsWith("Invalid purchase Id.") ||
                            c.message.startsWith("The Contract ID already exists.");
    QCOMPARE(check ? check->newDocumentId.value_or(0) : 0, renumbered ? 3 : 0);
    // The invalid-number box alone has neither title nor icon.
    const bool bare = c.message.startsWith("Invalid purchase Id.");
    if (check) {
        QCOMPARE(check->title, bare ? QString() : QStringLiteral("Alert"));
        QCOMPARE(check->icon, bare ? Objection::Icon::None : Objection::Icon::Warning);
    }
}

QTEST_GUILESS_MAIN(TstContractChecks)
#include "tst_contract_checks.moc"
