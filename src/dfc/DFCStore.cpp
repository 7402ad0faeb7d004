#include "dfc/DFCStore.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "services/Lookups.h"
#include "services/ReferentialGuard.h"

#include <cmath>
#include <map>

namespace gm {

namespace {

const QString kGrid = QStringLiteral("GridBagsSale");
const QString kLetters = QStringLiteral("AuthorityLetters");

QVariant nullKey(qint64 key) {
    return key != 0 ? QVariant(key) : QVariant(QMetaType(QMetaType::LongLong));
}

QVariant nullDate(const QDate& date) {
    return date.isValid() ? QVariant(date) : QVariant(QMetaType(QMetaType::QDate));
}

// A letter as it stands in the table before the save.
struct StoredLetter {
    QDate date;
    qint64 centerId = 0;
    double noOfBags = 0;
    double bagWeight = 0;
    double totalWeight = 0;
};

// Figures are kept to four decimals: a line shown and read back is the same figure.
bool sameFigure(double a, double b) {
    return std::fabs(a - b) < 0.00005;
}

bool unchanged(const StoredLetter& s, const AuthorityLine& l) {
    return s.date == l.date && s.centerId == l.centerId && sameFigure(s.noOfBags, l.noOfBags) &&
           sameFigure(s.bagWeight, l.bagWeight) && sameFigure(s.totalWeight, l.totalWeight);
}

// What refers to the letter with this permit: an arrival under it, or any table of the host
// that declares a key to it. Empty when nothing does.
QString letterUsedIn(const Conn& conn, const QString& permitNo) {
    return FindReferencingTable(conn, kLetters, {{QStringLiteral("PermitNo"), permitNo}});
}

} // namespace

QString letterInUseRefusal(const QString& permitNo, const QString& usedIn) {
    return QStringLiteral("The Permit No (") + permitNo + QStringLiteral(") is used in (") +
           usedIn +
           QStringLiteral(") table. It cannot be taken out, renumbered or moved to another PR "
                          "Center.");
}

qint32 DFCStore::nextPaymentId() const {
    return qint32(toInt(
        scalar(m_conn, QStringLiteral("SELECT COALESCE(MAX(PaymentId), 0) + 1 FROM DFCPayments"))));
}

bool DFCStore::exists(qint64 paymentId) const {
    return scalar(m_conn, QStringLiteral("SELECT 1 FROM DFCPayments WHERE PaymentId = ?"),
                  {paymentId})
        .isValid();
}

qint64 DFCStore::permitHolder(const QString& permitNo) const {
    return toInt(scalar(m_conn,
                        QStringLiteral("SELECT PaymentId FROM AuthorityLetters WHERE PermitNo = ?"),
                        {permitNo}));
}

std::optional<DFCPayment> DFCStore::load(qint32 paymentId) const {
    // Outer joins throughout: a payment opens whatever of its lists is missing.
    Query head(m_conn, QStringLiteral(
                           "SELECT d.PaymentId, d.PaymentDate, d.CommodityId, "
                           "FunGetCommodity(d.CommodityId), d.BankAccountNo, ca.AccountName, "
                           "d.ChallanNo, d.NoOfBags, d.BagWeight, d.TotalWeight, d.RateUnitId, "
                           "u.UnitName, u.WeightInKgs, d.RatePerUnit, d.TTLValueWheet, "
                           "d.BagsTypeId, bt.BagsType, d.BagsClassId, bc.BagsClass, d.BagsQty, "
                           "d.PricePerBag, d.TTLValueBags, d.UserNo "
                           "FROM DFCPayments d "
                           "LEFT OUTER JOIN ChartOfAccounts ca ON ca.AccountNo = d.BankAccountNo "
                           "LEFT OUTER JOIN Units u ON u.UnitId = d.RateUnitId "
                           "LEFT OUTER JOIN BagsTypes bt ON bt.BagsTypeId = d.BagsTypeId "
                           "LEFT OUTER JOIN BagsClasses bc ON bc.BagsClassId = d.BagsClassId "
                           "WHERE d.PaymentId = ?"));
    head.bind(paymentId).exec();
    if (!head.next())
        return std::nullopt;
    DFCPayment p;
    p.paymentId = qint32(toInt(head.value(0)));
    p.paymentDate = toDate(head.value(1));
    p.commodityId = toInt(head.value(2));
    p.commodityName = toText(head.value(3));
    p.bankAccountNo = toText(head.value(4));
    p.bankName = toText(head.value(5));
    p.challanNo = toText(head.value(6));
    p.noOfBags = toDouble(head.value(7));
    p.bagWeight = toDouble(head.value(8));
    p.totalWeight = toDouble(head.value(9));
    p.rateUnitId = toInt(head.value(10));
    p.unitName = unitDisplayName(head.value(11), head.value(12));
    p.unitWeightInKgs = toDouble(head.value(12));
    p.ratePerUnit = toDouble(head.value(13));
    p.value = toDouble(head.value(14));
    p.bagsTypeId = toInt(head.value(15));
    p.bagsType = toText(head.value(16));
    p.bagsClassId = toInt(head.value(17));
    p.bagsClass = toText(head.value(18));
    p.bagsQty = toDouble(head.value(19));
    p.pricePerBag = toDouble(head.value(20));
    p.bagsValue = toDouble(head.value(21));
    p.userNo = qint32(toInt(head.value(22)));

    Query letters(m_conn, QStringLiteral("SELECT l.PermitNo, l.Date, l.CenterId, c.CenterName, "
                                         "l.NoOfBags, l.BagWeight, l.TotalWeight "
                                         "FROM AuthorityLetters l "
                                         "LEFT OUTER JOIN PRCenters c ON c.CenterId = l.CenterId "
                                         "WHERE l.PaymentId = ? ORDER BY l.PermitNo"));
    letters.bind(paymentId).exec();
    while (letters.next()) {
        AuthorityLine l;
        l.permitNo = toText(letters.value(0));
        l.date = toDate(letters.value(1));
        l.centerId = toInt(letters.value(2));
        l.centerName = toText(letters.value(3));
        l.noOfBags = toDouble(letters.value(4));
        l.bagWeight = toDouble(letters.value(5));
        l.totalWeight = toDouble(letters.value(6));
        p.letters.push_back(l);
    }
    return p;
}

void DFCStore::save(const DFCPayment& payment, bool isNew) {
    DFCPayment p = payment;
    for (AuthorityLine& l : p.letters)
        l.permitNo = l.permitNo.trimmed();

    Transaction tx(m_conn, Transaction::Write);
    // Held to the end, so that no other save or removal of this payment runs between the
    // checks and the writing.
    tx.lockRows(QStringLiteral("DFCPayments"), QStringLiteral("PaymentId"), {p.paymentId});
    // Another clerk may have saved this number since it was drawn; never write over theirs.
    if (isNew && exists(p.paymentId))
        throw Objected(Objection::warning(kPaymentIdTaken).withNewDocumentId(nextPaymentId()));

    std::map<QString, int> rowOf; // permit -> its line
    for (int i = 0; i < int(p.letters.size()); ++i) {
        const AuthorityLine& l = p.letters[size_t(i)];
        if (l.permitNo.isEmpty())
            throw Objected(
                Objection::warning(authorityRefusal(ColPermitNo)).inGrid(kGrid, i, ColPermitNo));
        // Asked again here: another payment may have taken the permit since the checks ran.
        const qint64 holder = permitHolder(l.permitNo);
        if (rowOf.count(l.permitNo) || (holder != 0 && holder != p.paymentId))
            throw Objected(
                Objection::warning(permitTakenRefusal(l.permitNo)).inGrid(kGrid, i, ColPermitNo));
        if (l.centerId == 0)
            throw Objected(Objection::warning(kCenterRule).inGrid(kGrid, i, ColCenter));
        rowOf[l.permitNo] = i;
    }

    std::map<QString, StoredLetter> before;
    Query stored(m_conn, QStringLiteral("SELECT PermitNo, Date, CenterId, NoOfBags, BagWeight, "
                                        "TotalWeight FROM AuthorityLetters WHERE PaymentId = ?"));
    stored.bind(p.paymentId).exec();
    while (stored.next())
        before[toText(stored.value(0))] = {toDate(stored.value(1)), toInt(stored.value(2)),
                                           toDouble(stored.value(3)), toDouble(stored.value(4)),
                                           toDouble(stored.value(5))};
    // The arrivals under a letter came from its centre against its number: neither may change
    // under them, nor may the letter go.
    for (const auto& [permit, letter] : before) {
        const auto kept = rowOf.find(permit);
        if (kept != rowOf.end() && p.letters[size_t(kept->second)].centerId == letter.centerId)
            continue;
        const QString usedIn = letterUsedIn(m_conn, permit);
        if (usedIn.isEmpty())
            continue;
        Objection refusal = Objection::warning(letterInUseRefusal(permit, usedIn));
        if (kept != rowOf.end())
            refusal.inGrid(kGrid, kept->second, ColCenter);
        else
            refusal.focus = kGrid;
        throw Objected(refusal);
    }

    const QVariantList head = {p.paymentDate,
                               p.commodityId,
                               nullIfEmpty(p.bankAccountNo),
                               p.challanNo.trimmed(),
                               p.noOfBags,
                               p.bagWeight,
                               p.totalWeight,
                               nullKey(p.rateUnitId),
                               p.ratePerUnit,
                               p.value,
                               nullKey(p.bagsTypeId),
                               nullKey(p.bagsClassId),
                               p.bagsQty,
                               p.pricePerBag,
                               p.bagsValue,
                               dfcCost(p.totalWeight, p.value),
                               p.pricePerBag,
                               p.userNo};
    bool insertHead = isNew;
    if (!isNew) {
        Query unpost(m_conn,
                     QStringLiteral("UPDATE DFCPayments SET IsPosted = 0 WHERE PaymentId = ?"));
        unpost.bind(p.paymentId).exec();
        if (unpost.numRowsAffected() > 0) {
            Query update(m_conn,
                         QStringLiteral("UPDATE DFCPayments SET PaymentDate = ?, CommodityId = ?, "
                                        "BankAccountNo = ?, ChallanNo = ?, NoOfBags = ?, "
                                        "BagWeight = ?, TotalWeight = ?, RateUnitId = ?, "
                                        "RatePerUnit = ?, TTLValueWheet = ?, BagsTypeId = ?, "
                                        "BagsClassId = ?, BagsQty = ?, PricePerBag = ?, "
                                        "TTLValueBags = ?, Cost = ?, BagsCost = ?, UserNo = ? "
                                        "WHERE PaymentId = ?"));
            for (const QVariant& v : head)
                update.bind(v);
            update.bind(p.paymentId).exec();
        } else {
            insertHead = true; // removed meanwhile: saved afresh under its number
        }
    }
    if (insertHead) {
        Query insert(m_conn,
                     QStringLiteral("INSERT INTO DFCPayments (PaymentDate, CommodityId, "
                                    "BankAccountNo, ChallanNo, NoOfBags, BagWeight, TotalWeight, "
                                    "RateUnitId, RatePerUnit, TTLValueWheet, BagsTypeId, "
                                    "BagsClassId, BagsQty, PricePerBag, TTLValueBags, Cost, "
                                    "BagsCost, UserNo, PaymentId, IsPosted) "
                                    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                                    "?, 0)"));
        for (const QVariant& v : head)
            insert.bind(v);
        insert.bind(p.paymentId).exec();
    }

    // The letters taken out go first, so that the quotas never count a letter twice.
    for (const auto& [permit, letter] : before)
        if (!rowOf.count(permit))
            execute(
                m_conn,
                QStringLiteral("DELETE FROM AuthorityLetters WHERE PaymentId = ? AND PermitNo = ?"),
                {p.paymentId, permit});
    for (const AuthorityLine& l : p.letters) {
        const auto was = before.find(l.permitNo);
        if (was == before.end()) {
            execute(m_conn,
                    QStringLiteral("INSERT INTO AuthorityLetters (PaymentId, PermitNo, Date, "
                                   "CenterId, NoOfBags, BagWeight, TotalWeight, IsWithBags) "
                                   "VALUES (?, ?, ?, ?, ?, ?, ?, 0)"),
                    {p.paymentId, l.permitNo, nullDate(l.date), l.centerId, double(l.noOfBags),
                     double(l.bagWeight), double(l.totalWeight)});
        } else if (!unchanged(was->second, l)) {
            execute(m_conn,
                    QStringLiteral("UPDATE AuthorityLetters SET Date = ?, CenterId = ?, "
                                   "NoOfBags = ?, BagWeight = ?, TotalWeight = ? "
                                   "WHERE PaymentId = ? AND PermitNo = ?"),
                    {nullDate(l.date), l.centerId, double(l.noOfBags), double(l.bagWeight),
                     double(l.totalWeight), p.paymentId, l.permitNo});
        }
    }
    execute(m_conn, QStringLiteral("UPDATE DFCPayments SET IsPosted = 1 WHERE PaymentId = ?"),
            {p.paymentId});
    tx.commit();
}

void DFCStore::remove(qint32 paymentId) {
    Transaction tx(m_conn, Transaction::Write);
    tx.lockRows(QStringLiteral("DFCPayments"), QStringLiteral("PaymentId"), {paymentId});
    refuseIfReferenced(m_conn, QStringLiteral("DFCPayments"),
                       {{QStringLiteral("PaymentId"), paymentId}}, {kLetters});
    // The letters go with their payment unless something came under their permits.
    QStringList permits;
    Query q(m_conn, QStringLiteral("SELECT PermitNo FROM AuthorityLetters WHERE PaymentId = ? "
                                   "ORDER BY PermitNo"));
    q.bind(paymentId).exec();
    while (q.next())
        permits << toText(q.value(0));
    for (const QString& permit : permits)
        refuseIfReferenced(m_conn, kLetters, {{QStringLiteral("PermitNo"), permit}});

    execute(m_conn, QStringLiteral("UPDATE DFCPayments SET IsPosted = 0 WHERE PaymentId = ?"),
            {paymentId});
    execute(m_conn, QStringLiteral("DELETE FROM AuthorityLetters WHERE PaymentId = ?"),
            {paymentId});
    execute(m_conn, QStringLiteral("DELETE FROM DFCPayments WHERE PaymentId = ?"), {paymentId});
    tx.commit();
}

} // namespace gm
