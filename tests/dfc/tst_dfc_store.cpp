#include "../reports/PdfText.h"
#include "dfc/DFCReport.h"
#include "DFCFixture.h"
#include "services/ReferentialGuard.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

// The words of the refusal the call met, or nothing when it went through.
template <class F> QString refusalOf(F&& call, Objection* seen = nullptr) {
    try {
        call();
    } catch (const Objected& r) {
        if (seen)
            *seen = r.objection();
        return r.objection().text;
    }
    return {};
}

QString headOf(const Conn& conn, qint32 id) {
    return toText(scalar(conn,
                         "SELECT ChallanNo || ' ' || CAST(CommodityId AS VARCHAR(10)) FROM "
                         "DFCPayments WHERE PaymentId = ?",
                         {id}));
}

} // namespace

class TestDFCStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void saveReopenEditRemove();
    void lettersArrivalsUseAreKept();
    void opensAndPrintsWithoutItsLists();
};

void TestDFCStore::saveReopenEditRemove() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    DFCStore store(*conn);
    QCOMPARE(store.nextPaymentId(), 1);
    DFCPayment p = payment(1, {letter("0042", 1, 600, 50.125), letter("P-9", 3, 300, 50)});
    p.userNo = 40000; // past a small integer
    store.save(p, true);

    QCOMPARE(store.nextPaymentId(), 2);
    QVERIFY(store.exists(1));
    QCOMPARE(countOf(*conn, "SELECT IsPosted FROM DFCPayments WHERE PaymentId = 1"), 1);
    QCOMPARE(countOf(*conn, "SELECT UserNo FROM DFCPayments WHERE PaymentId = 1"), 40000);
    // Weight over value: kilograms per unit of money.
    QCOMPARE(toDouble(scalar(*conn, "SELECT Cost FROM DFCPayments WHERE PaymentId = 1")), 0.4);
    QCOMPARE(toDouble(scalar(*conn, "SELECT BagsCost FROM DFCPayments WHERE PaymentId = 1")), 25.5);
    QCOMPARE(toDouble(scalar(*conn, "SELECT TTLValueWheet + TTLValueBags FROM DFCPayments")),
             12755.0);
    // A permit is text; a bag weight keeps its decimals; a date is a date.
    QCOMPARE(lettersOf(*conn, 1), QStringList({"0042:1:600:50.125:30075", "P-9:3:300:50:15000"}));
    QCOMPARE(toDate(scalar(*conn, "SELECT Date FROM AuthorityLetters WHERE PermitNo = '0042'")),
             QDate(2025, 3, 15));
    QCOMPARE(store.permitHolder(QStringLiteral("0042")), 1);
    QCOMPARE(store.permitHolder(QStringLiteral("42")), 0);
    // The arrival screen's quotas follow at once.
    QCOMPARE(remainingAt(*conn, 1), QStringLiteral("600/30075"));
    QCOMPARE(remainingAt(*conn, 3), QStringLiteral("300/15000"));
    QCOMPARE(ArrivalStore(*conn).prCentres().size(), size_t(2));

    auto opened = store.load(1);
    QVERIFY(opened);
    QCOMPARE(opened->paymentDate, QDate(2025, 3, 14));
    QCOMPARE(opened->bankName, QStringLiteral("Habib Bank Okara Road"));
    QCOMPARE(opened->unitName, QStringLiteral("Mound (40)"));
    QCOMPARE(opened->unitWeightInKgs, 40.0);
    QCOMPARE(opened->bagsType, QStringLiteral("PP 100 Kg"));
    QCOMPARE(opened->bagsClass, QStringLiteral("New"));
    QCOMPARE(opened->grossValue(), 12755.0);
    QCOMPARE(opened->userNo, 40000);
    QCOMPARE(opened->letters.size(), size_t(2));
    QCOMPARE(opened->letters[0].permitNo, QStringLiteral("0042"));
    QCOMPARE(opened->letters[0].centerName, QStringLiteral("PR Centre Okara"));
    QCOMPARE(double(opened->letters[0].bagWeight), 50.125);
    QCOMPARE(opened->letters[0].date, QDate(2025, 3, 15));

    // Edited: a letter changed in place, one taken out, one added; the number stays.
    DFCPayment edited = *opened;
    edited.challanNo = QStringLiteral("CH-78");
    edited.letters[0].noOfBags = 500;
    edited.letters[0].totalWeight = letterTotalWeight(500, 50.125);
    edited.letters[1] = letter("P-10", 2, 200, 50);
    store.save(edited, false);
    QCOMPARE(store.nextPaymentId(), 2);
    QCOMPARE(headOf(*conn, 1), QStringLiteral("CH-78 2"));
    QCOMPARE(lettersOf(*conn, 1), QStringList({"0042:1:500:50.125:25062", "P-10:2:200:50:10000"}));
    QCOMPARE(remainingAt(*conn, 1), QStringLiteral("500/25062"));
    QCOMPARE(remainingAt(*conn, 2), QStringLiteral("200/10000"));
    QCOMPARE(remainingAt(*conn, 3), QStringLiteral("0/0"));
    // A letter nothing has arrived under may go to another centre.
    edited.letters[0].centerId = 4;
    store.save(edited, false);
    QCOMPARE(remainingAt(*conn, 1), QStringLiteral("0/0"));
    QCOMPARE(remainingAt(*conn, 4), QStringLiteral("500/25062"));

    // A payment another clerk removed while it stood open comes back under its number.
    DFCPayment second = payment(2, {letter("S-1", 1, 10, 50)});
    store.save(second, true);
    store.remove(2);
    QVERIFY(!store.exists(2));
    store.save(second, false);
    QCOMPARE(lettersOf(*conn, 2), QStringList({"S-1:1:10:50:500"}));

    store.remove(1);
    store.remove(2);
    QVERIFY(!store.exists(1));
    QCOMPARE(countOf(*conn, "SELECT COUNT(*) FROM AuthorityLetters"), 0);
    for (int centre = 1; centre <= 4; ++centre)
        QCOMPARE(remainingAt(*conn, centre), QStringLiteral("0/0"));
    QCOMPARE(ArrivalStore(*conn).prCentres().size(), size_t(0));
}

void TestDFCStore::lettersArrivalsUseAreKept() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    DFCStore store(*conn);
    store.save(payment(1, {letter("A-1", 1, 100, 50), letter("A-2", 2, 100, 50)}), true);
    arriveUnder(*conn, QStringLiteral("A-1"), 1, 40);
    QCOMPARE(remainingAt(*conn, 1), QStringLiteral("60/3000"));
    const QStringList before = lettersOf(*conn, 1);

    const DFCPayment opened = *store.load(1);
    const QString inUse = letterInUseRefusal(QStringLiteral("A-1"), QStringLiteral("Arrivals"));
    const auto refusedAndUntouched = [&](const std::function<void(DFCPayment&)>& change,
                                         const QString& words, int row) {
        DFCPayment p = opened;
        p.challanNo = QStringLiteral("CHANGED");
        change(p);
        Objection seen;
        QCOMPARE(refusalOf([&] { store.save(p, false); }, &seen), words);
        QCOMPARE(seen.row, row);
        QCOMPARE(headOf(*conn, 1), QStringLiteral("CH-77 2"));
        QCOMPARE(lettersOf(*conn, 1), before);
        QCOMPARE(remainingAt(*conn, 1), QStringLiteral("60/3000"));
        QCOMPARE(remainingAt(*conn, 2), QStringLiteral("100/5000"));
    };
    // Taken out, renumbered, moved: each refused with the permit named, and nothing written.
    refusedAndUntouched([](DFCPayment& p) { p.letters.erase(p.letters.begin()); }, inUse, -1);
    refusedAndUntouched([](DFCPayment& p) { p.letters[0].permitNo = QStringLiteral("A-1b"); },
                        inUse, -1);
    refusedAndUntouched([](DFCPayment& p) { p.letters[0].centerId = 3; }, inUse, 0);
    // The store asks again what the checks asked: a permit held elsewhere, a letter without a
    // centre, a number another clerk took.
    refusedAndUntouched([](DFCPayment& p) { p.letters[1].centerId = 0; }, kCenterRule, 1);
    Objection taken;
    QCOMPARE(refusalOf([&] { store.save(payment(1, {letter("N-1", 3, 1, 1)}), true); }, &taken),
             kPaymentIdTaken);
    QCOMPARE(taken.newDocumentId.value_or(0), 2);
    QCOMPARE(refusalOf([&] { store.save(payment(2, {letter("A-2", 3, 1, 1)}), true); }),
             permitTakenRefusal(QStringLiteral("A-2")));
    QVERIFY(!store.exists(2));
    QCOMPARE(remainingAt(*conn, 3), QStringLiteral("0/0"));

    // The letter's figures may change under its arrivals; the quota follows.
    DFCPayment more = opened;
    more.letters[0].noOfBags = 150;
    more.letters[0].totalWeight = 7500;
    more.letters.pop_back(); // nothing came under A-2
    store.save(more, false);
    QCOMPARE(lettersOf(*conn, 1), QStringList({"A-1:1:150:50:7500"}));
    QCOMPARE(remainingAt(*conn, 1), QStringLiteral("110/5500"));
    QCOMPARE(remainingAt(*conn, 2), QStringLiteral("0/0"));

    // Removal is refused while the arrival stands, and goes through once it has gone.
    QCOMPARE(refusalOf([&] { store.remove(1); }),
             QStringLiteral("Cannot remove this invoice because it is used in (Arrivals) table"));
    QVERIFY(store.exists(1));
    QCOMPARE(lettersOf(*conn, 1), QStringList({"A-1:1:150:50:7500"}));
    ArrivalStore(*conn).remove(1);
    store.remove(1);
    QVERIFY(!store.exists(1));
    QCOMPARE(remainingAt(*conn, 1), QStringLiteral("0/0"));
}

void TestDFCStore::opensAndPrintsWithoutItsLists() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    DFCStore store(*conn);
    DFCPayment bare = payment(1, {letter("B-2", 2, 200, 50), letter("B-1", 1, 100, 50.5)});
    bare.bankAccountNo.clear();
    bare.bagsTypeId = 0;
    bare.bagsClassId = 0;
    bare.bagsQty = 0;
    bare.pricePerBag = 0;
    bare.bagsValue = 0;
    store.save(bare, true);
    QVERIFY(scalar(*conn, "SELECT BagsTypeId FROM DFCPayments").isNull());
    QVERIFY(scalar(*conn, "SELECT BankAccountNo FROM DFCPayments").isNull());
    const auto loaded = store.load(1);
    QVERIFY(loaded);
    QCOMPARE(loaded->bagsType, QString());
    QCOMPARE(loaded->bankName, QString());
    QCOMPARE(loaded->letters.size(), size_t(2));

    HostSettingsValues v;
    v.HeaderLine1 = QStringLiteral("Okara Flour Mills");
    v.HeaderLine2 = QStringLiteral("Depalpur Road");
    v.HeaderLine3Main = QStringLiteral("Phone 044-1234");
    v.HeaderEmail = QStringLiteral("office@mill.example");
    const Report r = CrpDFCPurchase(&*loaded, v);
    QCOMPARE(r.name, QStringLiteral("CrpDFCPurchase"));
    QCOMPARE(r.letterhead, QStringList({"Okara Flour Mills", "Depalpur Road", "Phone 044-1234",
                                        "Email: office@mill.example"}));
    QCOMPARE(r.field(QStringLiteral("ChallanNo"))->value, QStringLiteral("CH-77"));
    QCOMPARE(r.field(QStringLiteral("GrossValue"))->value, QStringLiteral("12500.00"));
    QCOMPARE(r.tables.size(), 1);
    QCOMPARE(r.tables[0].rows.size(), 2);
    QCOMPARE(r.tables[0].rows[0],
             QStringList({"B-1", "15/03/2025", "PR Centre Okara", "100", "50.5", "5050"}));
    QCOMPARE(r.tables[0].totals.value(3), QStringLiteral("300"));
    QCOMPARE(r.tables[0].totals.value(5), QStringLiteral("15050"));

    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("dfc.pdf"));
    QVERIFY(writeReportPdf(r, pdf));
    const QString text = pdfPages(pdf).join(QLatin1Char('\n'));
    if (!text.isEmpty()) { // a machine without a PDF reader checks the report model only
        for (const char* expected : {"DFC PURCHASE", "Okara Flour Mills", "CH-77", "B-1",
                                     "PR Centre Renala Khurd", "15050"})
            QVERIFY2(text.contains(QLatin1String(expected)), expected);
    }

    // A payment that some earlier program left without letters still opens, and nothing at all
    // prints only the letterhead.
    execute(*conn, "INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, IsPosted) "
                   "VALUES (5, '2025-01-02', 2, 1)");
    const auto lone = store.load(5);
    QVERIFY(lone);
    QVERIFY(lone->letters.empty());
    QVERIFY(!store.load(6));
    const Report none = CrpDFCPurchase(nullptr, v);
    QVERIFY(none.isEmpty());
    QCOMPARE(none.letterhead.size(), 4);
}

QTEST_MAIN(TestDFCStore)
#include "tst_dfc_store.moc"
