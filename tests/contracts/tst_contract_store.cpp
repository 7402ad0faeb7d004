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
    int i = 0;
    c.contractId = toInt(q.value(i++));
    c.contractDate = toDate(q.value(i++));
    c.commodityId = toInt(q.value(i++));
    c.brokerId = toText(q.value(i++));
    c.brokerage = toDouble(q.value(i++));
    c.isBrokeragePerBag = toInt(q.value(i++));
    c.partyId = toText(q.value(i++));
    c.rateUnitId = toInt(q.value(i++));
    c.contractMode = toText(q.value(i++));
    c.quantity = toDouble(q.value(i++));
    c.ratePerUnit = toDouble(q.value(i++));
    c.isWithBags = toInt(q.value(i++));
    c.isDeliveryInMill = toInt(q.value(i++));
    c.deliveryStartDate = toDate(q.value(i++));
    c.deliveryEndDate = toDate(q.value(i++));
    c.modeOfPayment = toText(q.value(i++));
    c.bagsDeduction = toDouble(q.value(i++));
    c.otherDeduction = toDouble(q.value(i++));
    c.isPaymentOnSite = toInt(q.value(i++));
    c.otherTerms = toText(q.value(i++));
    c.isCompleted = toInt(q.value(i++));
    c.isPosted = toInt(q.value(i++));
    return c;
}

} // namespace

class TstContractStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void writesAndReadsEveryColumn_data();
    void writesAndReadsEveryColumn();
    void takenNumberIsNeverOverwritten();
};

void TstContractStore::writesAndReadsEveryColumn_data() {
    QTest::addColumn<bool>("withBroker");
    QTest::newRow("with broker") << true;
    QTest::newRow("without broker") << false;
}

void TstContractStore::writesAndReadsEveryColumn() {
    GM_REQUIRE_ENGINE();
    QFETCH(bool, withBroker);
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);
    QCOMPARE(store.nextContractId(), qint64(1));

    PurchaseContract c = test::sampleContract(5);
    if (!withBroker)
        c.brokerId.clear();
    QCOMPARE(store.insert(c), ContractStore::InsertResult::Inserted);
    QCOMPARE(readRow(*conn, 5), c); // the quote in the terms is stored as typed
    QCOMPARE(scalar(*conn, QStringLiteral("SELECT BrokerId FROM PContracts")).isNull(),
             !withBroker);
    QCOMPARE(store.nextContractId(), qint64(6));

    const auto loaded = store.load(5);
    QVERIFY(loaded);
    QCOMPARE(loaded->contract, c);
    QVERIFY(loaded->sellerName.startsWith("Ali Traders"));
    QCOMPARE(loaded->brokerName.startsWith("Bashir Brokers"), withBroker);
    QVERIFY(loaded->commodityName.contains("Wheat"));
    QCOMPARE(loaded->unitName, QStringLiteral("Mound"));
    QVERIFY(!store.load(6));

    // A save hands a contract back unposted and touches no other row.
    QCOMPARE(store.insert(test::sampleContract(8)), ContractStore::InsertResult::Inserted);
    execute(*conn, QStringLiteral("UPDATE PContracts SET IsPosted = 1"));
    c.quantity = 25000.5;
    c.otherTerms = QStringLiteral("O'Neil's \"terms\"; --");
    QVERIFY(store.update(c));
    QCOMPARE(readRow(*conn, 5), c);
    QVERIFY(readRow(*conn, 8).isPosted);
    c.contractId = 99;
    QVERIFY(!store.update(c));
}

void TstContractStore::takenNumberIsNeverOverwritten() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);
    const PurchaseContract first = test::sampleContract(3);
    QCOMPARE(store.insert(first), ContractStore::InsertResult::Inserted);

    // Another clerk, on a connection of their own, was shown the same number.
    QString error;
    auto other = Conn::open(test::lastLocation(), &error);
    QVERIFY2(other, qPrintable(error));
    ContractStore otherStore(*other);
    PurchaseContract second = test::sampleContract(3);
    second.partyId = QStringLiteral("6002");
    QCOMPARE(otherStore.insert(second), ContractStore::InsertResult::NumberTaken);
    QCOMPARE(readRow(*conn, 3), first);

    second.contractId = otherStore.nextContractId();
    QCOMPARE(otherStore.insert(second), ContractStore::InsertResult::Inserted);
    QCOMPARE(readRow(*conn, 4), second);
}

QTEST_GUILESS_MAIN(TstContractStore)
#include "tst_contract_store.moc"
