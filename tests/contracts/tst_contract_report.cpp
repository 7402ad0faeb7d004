#include "ContractFixture.h"

#include "contracts/ContractReport.h"
#include "contracts/ContractStore.h"
#include "support/TestDb.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace gm;

namespace {

HostSettingsValues letterhead(const QString& extra) {
    HostSettingsValues v;
    v.HeaderLine1 = QStringLiteral("Pak Flour Mills");
    v.HeaderLine2 = QStringLiteral("Okara Road, Renala Khurd");
    v.HeaderLine3Main = QStringLiteral("Ph 044-2620011");
    v.HeaderLine3Extra = extra;
    v.HeaderEmail = QStringLiteral("office@mill.example");
    return v;
}

// The text of the printed page, with runs of blanks folded so layout does not matter.
QString printedText(const Report& report) {
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("contract.pdf"));
    QString error;
    if (!writeReportPdf(report, pdf, &error))
        qFatal("no PDF: %s", qPrintable(error));
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    if (!p.waitForFinished(20000))
        qFatal("pdftotext did not finish");
    return QString::fromUtf8(p.readAllStandardOutput()).simplified();
}

} // namespace

class TstContractReport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void printedContract_data();
    void printedContract();
};

void TstContractReport::initTestCase() {
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        QSKIP("pdftotext is not installed");
}

void TstContractReport::printedContract_data() {
    QTest::addColumn<bool>("withBroker");
    QTest::addColumn<QString>("extraLine");
    QTest::newRow("with broker, two-part third line") << true << "Fax 044-2620012";
    QTest::newRow("without broker, plain third line") << false << "";
}

void TstContractReport::printedContract() {
    GM_REQUIRE_ENGINE();
    QFETCH(bool, withBroker);
    QFETCH(QString, extraLine);

    auto conn = test::freshConn();
    test::seedContractMasters(*conn);
    ContractStore store(*conn);
    PurchaseContract c = test::sampleContract(12);
    if (!withBroker)
        c.brokerId.clear();
    QCOMPARE(store.insert(c), ContractStore::InsertResult::Inserted);
    const auto record = store.load(12);
    QVERIFY(record);

    const Report report = CrpPurchaseContract(*record, letterhead(extraLine));
    QCOMPARE(report.letterhead.size(), 3); // no email line on a contract
    const QString text = printedText(report);
    const QStringList expected = {"PURCHASE CONTRACT",
                                  "Pak Flour Mills",
                                  "Okara Road, Renala Khurd",
                                  extraLine.isEmpty() ? "Ph 044-2620011"
                                                      : "Ph 044-2620011,Fax 044-2620012",
                                  "14/03/2026",
                                  "Ali Traders",
                                  "Wheat",
                                  "1200",
                                  "3850.75",
                                  "Mound (40)",
                                  "20/03/2026",
                                  "30/04/2026",
                                  "To Pay",
                                  "0.75",
                                  "Moisture under 10%; seller's own bags"};
    for (const QString& s : expected)
        QVERIFY2(text.contains(s), qPrintable("missing \"" + s + "\" in: " + text));
    QCOMPARE(text.contains("Bashir Brokers"), withBroker);
    QVERIFY(!text.contains("office@mill.example"));
}

QTEST_MAIN(TstContractReport)
#include "tst_contract_report.moc"
