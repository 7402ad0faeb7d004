#include "../reports/PdfText.h"

#include "contracts/ContractReport.h"
#include "contracts/ContractStore.h"
#include "contracts/ContractValidation.h"
#include "contracts/PurchaseContract.h"
#include "datastore/Sql.h"
#include "support/TestDb.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace gm;

namespace {

// A value in every column, none of them a default, pointing at the sample mill's masters.
PurchaseContract sampleContract(qint64 id) {
    // clang-format off
    return {id, QDate(2026, 3, 14), 1, "6300002", 2.5, true, "6100001", 2, "Bags", 1200, 3850.75,
            true, true, QDate(2026, 3, 20), QDate(2026, 4, 30), "To Pay", 0.75, 12, true,
            "Moisture under 10%; seller's own bags", true, false};
    // clang-format on
}

// Other screens read these straight from the table, so a pair swapped both ways in the store
// would still load back equal.
QList<double> storedAmounts(const Conn& conn, qint64 id) {
    Query q(conn, QStringLiteral("SELECT Quantity, RatePerUnit, Brokerage, BagsDeduction, "
                                 "OtherDeduction FROM PContracts WHERE ContractId = ?"));
    q.bind(id).exec();
    QList<double> out;
    if (q.next())
        for (int i = 0; i < 5; ++i)
            out << toDouble(q.value(i));
    return out;
}
QList<double> amounts(const PurchaseContract& c) {
    return {c.quantity, c.ratePerUnit, c.brokerage, c.bagsDeduction, c.otherDeduction};
}

} // namespace

class TstContractStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void savedLoadedAndPrinted_data();
    void savedLoadedAndPrinted();
    void takenNumberIsNeverOverwritten();
};

void TstContractStore::savedLoadedAndPrinted_data() {
    QTest::addColumn<bool>("withBroker");
    QTest::newRow("with broker") << true;
    QTest::newRow("without broker") << false;
}

void TstContractStore::savedLoadedAndPrinted() {
    GM_REQUIRE_ENGINE();
    QFETCH(bool, withBroker);
    auto conn = test::freshSampleConn();
    ContractStore store(*conn);
    // A number beyond the next one: the next is counted from the highest, not the count.
    const qint64 id = store.nextContractId() + 4;
    PurchaseContract c = sampleContract(id);
    if (!withBroker)
        c.brokerId.clear();
    store.insert(c);
    QCOMPARE(
        scalar(*conn, QStringLiteral("SELECT BrokerId FROM PContracts WHERE ContractId = ?"), {id})
            .isNull(),
        !withBroker);
    QCOMPARE(storedAmounts(*conn, id), amounts(c));
    QCOMPARE(store.nextContractId(), id + 1);

    const auto loaded = store.load(id);
    QVERIFY(loaded);
    QCOMPARE(loaded->contract, c); // the quote in the terms is stored as typed
    QVERIFY(loaded->sellerName.startsWith("Haji Muhammad Aslam"));
    QCOMPARE(loaded->brokerName.startsWith("Iqbal & Co Brokers"), withBroker);
    QVERIFY(loaded->commodityName.contains("Wheat"));
    QCOMPARE(loaded->unitName, QStringLiteral("Mound"));
    QVERIFY(!store.load(id + 1));

    // A save hands a contract back unposted and touches no other row.
    store.insert(sampleContract(id + 3));
    execute(*conn, QStringLiteral("UPDATE PContracts SET IsPosted = 1"));
    PurchaseContract edited = c;
    edited.quantity = 25000.5;
    edited.otherTerms = QStringLiteral("O'Neil's \"terms\"; --");
    QVERIFY(store.update(edited));
    QCOMPARE(store.load(id)->contract, edited);
    QCOMPARE(storedAmounts(*conn, id), amounts(edited));
    QVERIFY(store.load(id + 3)->contract.isPosted);
    edited.contractId = 99;
    QVERIFY(!store.update(edited));

    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        QSKIP("pdftotext is not installed");
    HostSettingsValues v;
    v.HeaderLine1 = QStringLiteral("Pak Flour Mills");
    v.HeaderLine2 = QStringLiteral("Okara Road, Renala Khurd");
    v.HeaderLine3Main = QStringLiteral("Ph 044-2620011");
    v.HeaderLine3Extra = QStringLiteral("Fax 044-2620012");
    v.HeaderEmail = QStringLiteral("office@mill.example");
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("contract.pdf"));
    QVERIFY(writeReportPdf(CrpPurchaseContract(*loaded, v), pdf));
    const QString text = test::pdfPages(pdf).join(' ').simplified();
    // clang-format off
    const QStringList expected = {"PURCHASE CONTRACT", "Pak Flour Mills", "Okara Road, Renala Khurd",
        "Ph 044-2620011,Fax 044-2620012", "14/03/2026",
        "Haji Muhammad Aslam", "Wheat Local", "1200", "3850.75", "Mound (40)", "20/03/2026",
        "30/04/2026", "To Pay", "0.75", "Moisture under 10%; seller's own bags"};
    // clang-format on
    for (const QString& s : expected)
        QVERIFY2(text.contains(s), qPrintable("missing \"" + s + "\" in: " + text));
    QCOMPARE(text.contains("Iqbal & Co Brokers"), withBroker);
    QVERIFY(!text.contains("office@mill.example")); // no email line on a contract
}

void TstContractStore::takenNumberIsNeverOverwritten() {
    GM_REQUIRE_ENGINE();
    auto conn = test::freshSampleConn();
    ContractStore store(*conn);
    const PurchaseContract first = sampleContract(store.nextContractId());
    store.insert(first);

    // Another clerk, on a connection of their own, was shown the same number.
    QString error;
    auto other = Conn::open(test::lastLocation(), &error);
    QVERIFY2(other, qPrintable(error));
    ContractStore otherStore(*other);
    PurchaseContract second = sampleContract(first.contractId);
    second.partyId = QStringLiteral("6100002");
    try {
        otherStore.insert(second);
        QFAIL("a taken number was written over");
    } catch (const Objected& taken) {
        QCOMPARE(taken.objection().text, kContractIdTaken);
        QCOMPARE(taken.objection().newDocumentId.value_or(0), first.contractId + 1);
    }
    QCOMPARE(store.load(first.contractId)->contract, first);

    second.contractId = otherStore.nextContractId();
    otherStore.insert(second);
    QCOMPARE(store.load(first.contractId + 1)->contract, second);
}

QTEST_MAIN(TstContractStore)
#include "tst_contract_store.moc"
