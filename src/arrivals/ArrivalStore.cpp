#include "arrivals/ArrivalStore.h"

#include "arrivals/ArrivalLines.h"
#include "arrivals/ArrivalValidation.h"
#include "datastore/Conn.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "services/ReferentialGuard.h"

namespace gm {

namespace {

QVariant nullKey(qint64 key) {
    return key != 0 ? QVariant(key) : QVariant(QMetaType(QMetaType::LongLong));
}

QVariant nullText(const QString& text) {
    return nullIfEmpty(text);
}

} // namespace

int ArrivalStore::nextArrivalId() const {
    return int(toInt(scalar(m_conn, QStringLiteral("SELECT COALESCE(MAX(ArrivalId), 0) + 1 FROM "
                                                   "Arrivals"))));
}

bool ArrivalStore::exists(qint64 arrivalId) const {
    return toInt(scalar(m_conn, QStringLiteral("SELECT COUNT(*) FROM Arrivals WHERE ArrivalId = ?"),
                        {arrivalId})) > 0;
}

LookupList ArrivalStore::contracts() const {
    // One contract, one arrival. Each contract asks the arrivals' contract index once, rather
    // than the whole column of arrivals being read for every contract; the party's name is
    // joined, not asked of the server once per contract.
    return loadList(
        m_conn, QStringLiteral("SELECT PContracts.ContractId AS Name, %1 AS ID "
                               "FROM PContracts INNER JOIN ChartOfAccounts "
                               "ON PContracts.PartyId = ChartOfAccounts.AccountNo "
                               "LEFT JOIN Parties ON Parties.PartyId = ChartOfAccounts.AccountNo "
                               "LEFT JOIN Cities ON Cities.CityId = Parties.CityId "
                               "WHERE NOT EXISTS (SELECT 1 FROM Arrivals "
                               "WHERE Arrivals.ContractId = PContracts.ContractId) "
                               "ORDER BY PContracts.ContractId")
                    .arg(partyNameSql("ChartOfAccounts", "Cities")));
}

std::optional<ContractDefaults> ArrivalStore::contractDefaults(qint64 contractId) const {
    Query q(m_conn,
            QStringLiteral("SELECT PContracts.PartyId, FunGetPartyName(PContracts.PartyId), "
                           "PContracts.CommodityId, FunGetCommodity(PContracts.CommodityId) "
                           "FROM PContracts INNER JOIN ChartOfAccounts "
                           "ON PContracts.PartyId = ChartOfAccounts.AccountNo "
                           "INNER JOIN Commodities "
                           "ON PContracts.CommodityId = Commodities.CommodityId "
                           "WHERE PContracts.ContractId = ?"));
    q.bind(contractId).exec();
    if (!q.next())
        return std::nullopt;
    return ContractDefaults{toText(q.value(0)), toText(q.value(1)), toInt(q.value(2)),
                            toText(q.value(3))};
}

std::optional<CommodityDefaults> ArrivalStore::commodityDefaults(qint64 commodityId) const {
    Query q(m_conn, QStringLiteral("SELECT BagsTypes.BagsType, BagsTypes.BagCapacity "
                                   "FROM Commodities INNER JOIN BagsTypes "
                                   "ON Commodities.DefaultBagsTypeID = BagsTypes.BagsTypeId "
                                   "WHERE Commodities.CommodityId = ?"));
    q.bind(commodityId).exec();
    if (!q.next())
        return std::nullopt;
    return CommodityDefaults{toText(q.value(0)), toDouble(q.value(1))};
}

LookupList ArrivalStore::prCentres() const {
    // The database counts each centre's letters; one row per centre, however many letters the
    // years bring.
    return loadList(m_conn, QStringLiteral("SELECT c.CenterId AS ID, c.CenterName AS Name "
                                           "FROM PRCenters c INNER JOIN PRCenterQuota q "
                                           "ON q.CenterId = c.CenterId WHERE q.Letters > 0 "
                                           "ORDER BY c.CenterName, c.CenterId"));
}

LookupList ArrivalStore::permits() const {
    return loadList(m_conn, QStringLiteral("SELECT PermitNo AS Name, 0 AS ID FROM AuthorityLetters "
                                           "ORDER BY PermitNo"));
}

RemainingQuota ArrivalStore::remaining(qint64 centerId) const {
    // The database keeps the centre's totals as its letters and vehicles change; a centre
    // that never had either has no row and nothing authorised or arrived.
    Query q(m_conn, QStringLiteral("SELECT LetterBags, LetterWeight, ArrivedBags, ArrivedWeight "
                                   "FROM PRCenterQuota WHERE CenterId = ?"));
    q.bind(centerId).exec();
    RemainingQuota r;
    if (q.next()) {
        r.bags = toDouble(q.value(0)) - toDouble(q.value(2));
        r.weight = roundHalfEven(toDouble(q.value(1)) - toDouble(q.value(3)), 2);
    }
    return r;
}

std::optional<PermitRates> ArrivalStore::permitRates(qint64 centerId, qint64 commodityId) const {
    // One value per letter: the average is weighted by the number of letters, and the permit
    // itself plays no part in the price. The database keeps the sums and counts per centre and
    // commodity; empty prices are left out of both, as an average leaves them out. A server
    // divides its exact sums as its own average would; SQLite must not divide whole numbers.
    const QString average = m_conn.isPostgres() ? QStringLiteral("%1Sum / %1Count")
                                                : QStringLiteral("CAST(%1Sum AS REAL) / %1Count");
    Query avg(m_conn,
              QStringLiteral("SELECT Letters, CASE WHEN RateCount > 0 THEN %1 END, "
                             "CASE WHEN PriceCount > 0 THEN %2 END FROM PRCenterRates "
                             "WHERE CenterId = ? AND CommodityId = ?")
                  .arg(average.arg(QStringLiteral("Rate")), average.arg(QStringLiteral("Price"))));
    avg.bind({centerId, commodityId}).exec();
    if (!avg.next() || toInt(avg.value(0)) == 0)
        return std::nullopt;
    PermitRates rates;
    rates.ratePerUnit = roundHalfEven(toDouble(avg.value(1)), 4);
    rates.pricePerBag = roundHalfEven(toDouble(avg.value(2)), 4);
    // The centre's letters in payment order, up to the first of this commodity.
    Query unit(m_conn, QStringLiteral("SELECT DFCPayments.RateUnitId "
                                      "FROM AuthorityLetters INNER JOIN DFCPayments "
                                      "ON DFCPayments.PaymentId = AuthorityLetters.PaymentId "
                                      "WHERE AuthorityLetters.CenterId = ? "
                                      "AND DFCPayments.CommodityId = ? "
                                      "ORDER BY AuthorityLetters.PaymentId LIMIT 1"));
    unit.bind({centerId, commodityId}).exec();
    if (unit.next())
        rates.rateUnitId = toInt(unit.value(0));
    return rates;
}

QString ArrivalStore::partyDisplayName(const QString& accountNo) const {
    return toText(scalar(m_conn,
                         QStringLiteral("SELECT FunGetPartyName(AccountNo) FROM ChartOfAccounts "
                                        "WHERE AccountNo = ?"),
                         {accountNo}));
}

std::optional<ArrivalDocument> ArrivalStore::load(int arrivalId) const {
    Query head(m_conn,
               QStringLiteral("SELECT A.ArrivalId, A.ArrivalDate, A.PermitNo, A.CenterId, "
                              "PRCenters.CenterName, A.CommodityId, "
                              "FunGetCommodity(A.CommodityId), A.SellerId, "
                              "FunGetPartyName(Parties.PartyId), A.ContractId "
                              "FROM Arrivals A INNER JOIN Parties "
                              "ON A.SellerId = Parties.PartyId "
                              "LEFT OUTER JOIN PRCenters ON A.CenterId = PRCenters.CenterId "
                              "WHERE A.ArrivalId = ?"));
    head.bind(arrivalId).exec();
    if (!head.next())
        return std::nullopt;
    ArrivalDocument doc;
    doc.arrivalId = int(toInt(head.value(0)));
    doc.arrivalDate = toDate(head.value(1));
    doc.permitNo = toText(head.value(2));
    doc.centerId = toInt(head.value(3));
    doc.centerName = toText(head.value(4));
    doc.commodityId = toInt(head.value(5));
    doc.commodityName = toText(head.value(6));
    doc.sellerId = toText(head.value(7));
    doc.sellerName = toText(head.value(8));
    doc.contractId = toInt(head.value(9));

    Query lines(m_conn,
                QStringLiteral("SELECT ab.VehicleNo, ab.BagsClassId, bc.BagsClass, ab.BagsTypeId, "
                               "bt.BagsType, ab.NoOfBags, ab.BagWeight, ab.BagsDeduction, "
                               "ab.OtherDeduction, ab.DriverName, ab.BiltyNo, ab.RateUnit, "
                               "ab.BagsRate, ab.RateUnitId, u.UnitName, u.WeightInKgs, "
                               "ab.NetWeight "
                               "FROM ArrivalsBody ab "
                               "INNER JOIN BagsClasses bc ON ab.BagsClassId = bc.BagsClassId "
                               "INNER JOIN BagsTypes bt ON ab.BagsTypeId = bt.BagsTypeId "
                               "LEFT OUTER JOIN Units u ON ab.RateUnitId = u.UnitId "
                               "WHERE ab.ArrivalId = ?"));
    lines.bind(arrivalId).exec();
    while (lines.next()) {
        ArrivalLine l;
        l.vehicleNo = toText(lines.value(0));
        l.bagsClassId = toInt(lines.value(1));
        l.bagsClass = toText(lines.value(2));
        l.bagsTypeId = toInt(lines.value(3));
        l.bagsType = toText(lines.value(4));
        l.noOfBags = toDouble(lines.value(5));
        l.bagWeight = toDouble(lines.value(6));
        l.bagsDeduction = toDouble(lines.value(7));
        l.otherDeduction = toDouble(lines.value(8));
        l.driverName = toText(lines.value(9));
        l.biltyNo = toText(lines.value(10));
        l.rateUnit = toDouble(lines.value(11));
        l.bagsRate = toDouble(lines.value(12));
        l.rateUnitId = toInt(lines.value(13));
        l.rateUnitName =
            l.rateUnitId ? unitDisplayName(lines.value(14), lines.value(15)) : QString();
        l.weightInKgs = toDouble(lines.value(15));
        l.netWeight = toDouble(lines.value(16));
        doc.lines.push_back(l);
    }
    // An arrival without vehicles is no arrival to open.
    if (doc.lines.empty())
        return std::nullopt;
    return doc;
}

int ArrivalStore::isInvoiced(int arrivalId) const {
    return int(toInt(scalar(m_conn,
                            QStringLiteral("SELECT MIN(PurchaseId) FROM PurchaseBody "
                                           "WHERE ArrivalId = ?"),
                            {arrivalId})));
}

void ArrivalStore::save(const ArrivalDocument& a, bool isNew) {
    Transaction tx(m_conn, Transaction::Write);
    for (int i = 0; i < int(a.lines.size()); ++i) {
        const ArrivalLine& l = a.lines[size_t(i)];
        if (!(l.bagWeight > 0))
            throw Objected(lineRefusal(i, ColBags));
        // A line that weighs nothing after its deductions would take stock away on arrival.
        if (!(storedNetWeight(l.noOfBags, l.bagWeight, l.bagsDeduction, l.otherDeduction) > 0))
            throw Objected(lineRefusal(i, ColOther));
    }
    // One contract, one arrival: a contract another arrival has taken is no longer on offer.
    if (a.contractId != 0 &&
        scalar(m_conn,
               QStringLiteral("SELECT 1 FROM Arrivals WHERE ContractId = ? AND ArrivalId <> ?"),
               {a.contractId, a.arrivalId})
            .isValid())
        throw Objected(Objection::info(kInvalidContract, QStringLiteral("CboContract")));

    // Held until the save ends, so that no invoice can take the arrival up once it was found
    // free.
    tx.lockRows(QStringLiteral("Arrivals"), QStringLiteral("ArrivalId"), {a.arrivalId});
    if (isInvoiced(a.arrivalId) != 0)
        throw Objected(Objection::warning(kArrivalUpdateRefusal));

    const QVariant date = a.arrivalDate;
    const QVariant permit =
        a.centerId ? nullText(a.permitNo) : QVariant(QMetaType(QMetaType::QString));
    const QVariant center = nullKey(a.centerId);
    const QVariant contract = nullKey(a.contractId);

    bool insertHead = isNew;
    if (isNew) {
        // Another clerk may have saved this key since it was drawn; never write over theirs.
        if (exists(a.arrivalId))
            throw Objected(Objection::warning(kArrivalIdTaken).withNewDocumentId(nextArrivalId()));
    } else {
        // Unpost before anything changes, so the stock lets go of the lines as they were.
        Query unpost(m_conn,
                     QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?"));
        unpost.bind(a.arrivalId).exec();
        if (unpost.numRowsAffected() > 0) {
            Query(m_conn, QStringLiteral("UPDATE Arrivals SET ArrivalDate = ?, PermitNo = ?, "
                                         "CenterId = ?, CommodityId = ?, SellerId = ?, "
                                         "ContractId = ?, IsPosted = 0 WHERE ArrivalId = ?"))
                .bind({date, permit, center, a.commodityId, a.sellerId, contract, a.arrivalId})
                .exec();
        } else {
            insertHead = true; // removed meanwhile: saved afresh under its key
        }
    }
    if (insertHead)
        Query(m_conn, QStringLiteral("INSERT INTO Arrivals (ArrivalId, ArrivalDate, PermitNo, "
                                     "CenterId, CommodityId, SellerId, ContractId, IsPosted) "
                                     "VALUES (?, ?, ?, ?, ?, ?, ?, 0)"))
            .bind({a.arrivalId, date, permit, center, a.commodityId, a.sellerId, contract})
            .exec();

    execute(m_conn, QStringLiteral("DELETE FROM ArrivalsBody WHERE ArrivalId = ?"), {a.arrivalId});
    for (const ArrivalLine& l : a.lines) {
        Query(m_conn,
              QStringLiteral("INSERT INTO ArrivalsBody (ArrivalId, CommodityId, VehicleNo, "
                             "VehicleNoText, BagsClassId, BagsTypeId, NoOfBags, BagWeight, "
                             "BagsDeduction, OtherDeduction, NetWeight, DriverName, BiltyNo, "
                             "RateUnit, BagsRate, Cost, BagsCost, RateUnitId) "
                             "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"))
            .bind({a.arrivalId, a.commodityId, l.vehicleNo, l.vehicleNo, l.bagsClassId,
                   l.bagsTypeId, double(l.noOfBags), double(l.bagWeight), double(l.bagsDeduction),
                   double(l.otherDeduction),
                   storedNetWeight(l.noOfBags, l.bagWeight, l.bagsDeduction, l.otherDeduction),
                   nullText(l.driverName), nullText(l.biltyNo), double(l.rateUnit),
                   double(l.bagsRate), lineCostPerKg(l.rateUnit, l.weightInKgs), double(l.bagsRate),
                   nullKey(l.rateUnitId)})
            .exec();
    }
    execute(m_conn, QStringLiteral("UPDATE Arrivals SET IsPosted = 1 WHERE ArrivalId = ?"),
            {a.arrivalId});
    tx.commit();
}

void ArrivalStore::remove(int arrivalId) {
    Transaction tx(m_conn, Transaction::Write);
    tx.lockRows(QStringLiteral("Arrivals"), QStringLiteral("ArrivalId"), {arrivalId});
    // Invoice lines carry a key of their own to the head, so the guard names PurchaseBody too.
    refuseIfReferenced(m_conn, QStringLiteral("Arrivals"),
                       {{QStringLiteral("ArrivalId"), arrivalId}},
                       {QStringLiteral("ArrivalsBody")});
    execute(m_conn, QStringLiteral("UPDATE Arrivals SET IsPosted = 0 WHERE ArrivalId = ?"),
            {arrivalId});
    execute(m_conn, QStringLiteral("DELETE FROM ArrivalsBody WHERE ArrivalId = ?"), {arrivalId});
    execute(m_conn, QStringLiteral("DELETE FROM Arrivals WHERE ArrivalId = ?"), {arrivalId});
    tx.commit();
}

} // namespace gm
