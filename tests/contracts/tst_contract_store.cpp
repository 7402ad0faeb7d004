#include "ContractFixture.h"

#include "contracts/ContractStore.h"
#include "support/TestDb.h"

#include <QtTest>

using namespace gm;

namespace {

// The row as the table holds it, read without the store's own query.
PurchaseContract readRow(const Conn& conn, qint64 id) {
    Query q(conn,
            QStringLiteral("SELECT ContractId, ContractDate, CommodityId, BrokerId, Brokerage, "
                           "IsBrokeragePerBag, PartyId, RateUnitId, ContractMode, Quantity, "
                           "RatePerUnit, IsWithBags, IsDeliveryInMill, DeliveryStartDate, "
                           "DeliveryEndDate, ModeOfPayment, BagsDeduction, OtherDeduction, "
                           "IsPaymentOnSite, OtherTerms, IsCompleted, IsPosted "
                           "FROM PContracts WHERE ContractId = ?"));
    q.bind(id).exec();
    PurchaseContract c;
    if (!q.next())
        return c;
    c.contractId = toInt(q.value(0));
    c.contractDate = toDate(q.value(1));
    c.commodityId = toInt(q.value(2));
    c.brokerId = toText(q.value(3));
    c.brokerage = toDouble(q.value(4));
    c.isBrokeragePerBag = toInt(q.value(5));
    c.partyId = toText(q.value(6));
    c.rateUnitId = toInt(q.value(7));
    c.contractMode = toText(q.value(8));
    c.quantity = toDouble(q.value(9));
    c.ratePerUnit = toDouble(q.value(10));
    c.isWithBags = toInt(q.value(11));
    c.isDeliveryInMill = toInt(q.value(12));
    c.deliveryStartDate = toDate(q.value(13));
    c.deliveryEndDate = toDate(q.value(14));
    c.modeOfPayment = toText(q.value(15));
    c.bagsDeduction = toDouble(q.value(16));
    c.otherDeduction = toDouble(q.value(17));
    c.isPaymentOnSite = toInt(q.value(18));
    c.otherTerms = toText(q.value(19));
    c.isCompleted = toInt(q.value(20));
    c.isPosted = toInt(q.value(21));
    return c;
}

bool brokerIsNull(const Conn& conn, qint64 id) {
    return scalar(conn, QStringLiteral("SELECT BrokerId FROM PContracts WHERE ContractId = ?"),
                  {id})
        .isNull();
}

void addArrival(const Conn& conn, int arrivalId, qint64 contractId) {
    execute(conn,
            QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, CommodityId, SellerId, "
                           "ContractId, IsPosted) VALUES (?, ?, ?, ?, ?, 0)"),
            {arrivalId, QDate(2026, 3, 21), 1, QStringLiteral("6001"), contractId});
}

} // namespace

class TstContractStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void writesAndReadsEveryColumn();
    void contractWithoutBroker();
    void takenNumberIsNeverOverwritten();
    void updateKeepsTheRow();
    void removal();
};

void TstContractStore::writesAndReadsEveryColumn() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);
    QCOMPARE(store.nextContractId(), qint64(1));

    const PurchaseContract c = test::sampleContract(5);
    QCOMPARE(store.insert(c), ContractStore::InsertResult::Inserted);
    QCOMPARE(readRow(*conn, 5), c); // the quote in the terms is stored as typed
    QCOMPARE(store.nextContractId(), qint64(6));
    QVERIFY(store.exists(5));
    QVERIFY(!store.exists(6));

    const auto loaded = store.load(5);
    QVERIFY(loaded);
    QCOMPARE(loaded->contract, c);
    QVERIFY2(loaded->sellerName.startsWith("Ali Traders"), qPrintable(loaded->sellerName));
    QVERIFY2(loaded->brokerName.startsWith("Bashir Brokers"), qPrintable(loaded->brokerName));
    QVERIFY2(loaded->commodityName.contains("Wheat"), qPrintable(loaded->commodityName));
    QCOMPARE(loaded->unitName, QStringLiteral("Mound"));
    QCOMPARE(loaded->unitWeightInKgs, 40.0);

    QVERIFY(!store.load(6));
}

void TstContractStore::contractWithoutBroker() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);

    PurchaseContract c = test::sampleContract(1);
    c.brokerId.clear();
    c.isBrokeragePerBag = false;
    QCOMPARE(store.insert(c), ContractStore::InsertResult::Inserted);
    QVERIFY(brokerIsNull(*conn, 1));

    const auto loaded = store.load(1);
    QVERIFY(loaded);
    QCOMPARE(loaded->contract, c);
    QCOMPARE(loaded->brokerName, QString());
    QVERIFY(loaded->sellerName.startsWith("Ali Traders"));
}

void TstContractStore::takenNumberIsNeverOverwritten() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);

    const PurchaseContract first = test::sampleContract(3);
    QCOMPARE(store.insert(first), ContractStore::InsertResult::Inserted);

    // Another clerk's screen showed the same number.
    PurchaseContract second = test::sampleContract(3);
    second.partyId = QStringLiteral("6002");
    second.quantity = 7;
    QCOMPARE(store.insert(second), ContractStore::InsertResult::NumberTaken);
    QCOMPARE(readRow(*conn, 3), first);

    // The same through a second connection to the same database.
    QString error;
    auto other = Conn::open(test::lastLocation(), &error);
    QVERIFY2(other, qPrintable(error));
    ContractStore otherStore(*other);
    QCOMPARE(otherStore.insert(second), ContractStore::InsertResult::NumberTaken);
    QCOMPARE(readRow(*conn, 3), first);
    second.contractId = otherStore.nextContractId();
    QCOMPARE(second.contractId, qint64(4));
    QCOMPARE(otherStore.insert(second), ContractStore::InsertResult::Inserted);
    QCOMPARE(readRow(*conn, 4), second);
}

void TstContractStore::updateKeepsTheRow() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);
    QCOMPARE(store.insert(test::sampleContract(2)), ContractStore::InsertResult::Inserted);
    QCOMPARE(store.insert(test::sampleContract(8)), ContractStore::InsertResult::Inserted);
    // The server marks a contract posted; a save hands it back unposted.
    execute(*conn, QStringLiteral("UPDATE PContracts SET IsPosted = 1"));

    PurchaseContract edited = test::sampleContract(2);
    edited.brokerId.clear();
    edited.rateUnitId = 2;
    edited.contractMode = QStringLiteral("Weight");
    edited.quantity = 25000.5;
    edited.isWithBags = false;
    edited.otherTerms = QStringLiteral("O'Neil's \"terms\"; --");
    QVERIFY(store.update(edited));
    QCOMPARE(readRow(*conn, 2), edited);
    QVERIFY(brokerIsNull(*conn, 2));
    QCOMPARE(toInt(scalar(*conn, QStringLiteral("SELECT COUNT(*) FROM PContracts"))), qint64(2));
    PurchaseContract untouched = test::sampleContract(8);
    untouched.isPosted = true;
    QCOMPARE(readRow(*conn, 8), untouched);

    edited.contractId = 99;
    QVERIFY(!store.update(edited));
    QVERIFY(!store.exists(99));
}

void TstContractStore::removal() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);
    QCOMPARE(store.insert(test::sampleContract(1)), ContractStore::InsertResult::Inserted);
    QCOMPARE(store.insert(test::sampleContract(2)), ContractStore::InsertResult::Inserted);
    addArrival(*conn, 10, 2);

    const auto refused = store.remove(2);
    QVERIFY(!refused.removed);
    QCOMPARE(refused.usedIn, QStringLiteral("Arrivals"));
    QCOMPARE(readRow(*conn, 2), test::sampleContract(2));

    const auto done = store.remove(1);
    QVERIFY(done.removed);
    QCOMPARE(done.usedIn, QString());
    QVERIFY(!store.exists(1));
    QVERIFY(store.exists(2));
}

QTEST_GUILESS_MAIN(TstContractStore)
#include "tst_contract_store.moc"
