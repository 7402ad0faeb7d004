#include "contracts/ContractStore.h"

#include "contracts/ContractValidation.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "services/ReferentialGuard.h"

namespace gm {

namespace {

// The columns in the order the insert binds them; the update binds the same order with the
// number last.
const char* const kInsertSql =
    "INSERT INTO PContracts (ContractDate, CommodityId, BrokerId, Brokerage, IsBrokeragePerBag, "
    "PartyId, RateUnitId, ContractMode, Quantity, RatePerUnit, IsWithBags, IsDeliveryInMill, "
    "DeliveryStartDate, DeliveryEndDate, ModeOfPayment, BagsDeduction, OtherDeduction, "
    "IsPaymentOnSite, OtherTerms, IsCompleted, IsPosted, ContractId) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

const char* const kUpdateSql =
    "UPDATE PContracts SET ContractDate = ?, CommodityId = ?, BrokerId = ?, Brokerage = ?, "
    "IsBrokeragePerBag = ?, PartyId = ?, RateUnitId = ?, ContractMode = ?, Quantity = ?, "
    "RatePerUnit = ?, IsWithBags = ?, IsDeliveryInMill = ?, DeliveryStartDate = ?, "
    "DeliveryEndDate = ?, ModeOfPayment = ?, BagsDeduction = ?, OtherDeduction = ?, "
    "IsPaymentOnSite = ?, OtherTerms = ?, IsCompleted = ?, IsPosted = ? WHERE ContractId = ?";

QVariant flag(bool on) {
    return QVariant(on ? 1 : 0);
}

QVariant dateOrNull(const QDate& d) {
    return d.isValid() ? QVariant(d) : QVariant(QMetaType(QMetaType::QDate));
}

void bindColumns(Query& q, const PurchaseContract& c) {
    q.bind({dateOrNull(c.contractDate), c.commodityId, nullIfEmpty(c.brokerId), c.brokerage,
            flag(c.isBrokeragePerBag), c.partyId,
            c.rateUnitId != 0 ? QVariant(c.rateUnitId) : QVariant(QMetaType(QMetaType::LongLong)),
            c.contractMode, c.quantity, c.ratePerUnit, flag(c.isWithBags), flag(c.isDeliveryInMill),
            dateOrNull(c.deliveryStartDate), dateOrNull(c.deliveryEndDate), c.modeOfPayment,
            c.bagsDeduction, c.otherDeduction, flag(c.isPaymentOnSite), c.otherTerms,
            flag(c.isCompleted),
            // A saved contract is never posted by the client: the server takes it from 0.
            flag(false), c.contractId});
}

} // namespace

qint64 ContractStore::nextContractId() const {
    return toInt(scalar(m_conn, QStringLiteral("SELECT COALESCE(MAX(ContractId), 0) + 1 "
                                               "FROM PContracts")));
}

bool ContractStore::exists(qint64 contractId) const {
    return toInt(scalar(m_conn,
                        QStringLiteral("SELECT COUNT(*) FROM PContracts WHERE ContractId = ?"),
                        {contractId})) > 0;
}

std::optional<ContractRecord> ContractStore::load(qint64 contractId) const {
    Query q(m_conn,
            QStringLiteral("SELECT c.ContractId, c.ContractDate, c.CommodityId, "
                           "FunGetCommodity(c.CommodityId) AS CommodityName, c.BrokerId, "
                           "FunGetPartyName(c.BrokerId) AS BrokerName, c.PartyId AS SellerId, "
                           "FunGetPartyName(c.PartyId) AS SellerName, c.Brokerage, "
                           "c.IsBrokeragePerBag, c.RateUnitId, c.ContractMode, c.Quantity, "
                           "c.RatePerUnit, c.IsWithBags, c.IsDeliveryInMill, c.DeliveryStartDate, "
                           "c.DeliveryEndDate, c.ModeOfPayment, c.IsPaymentOnSite, c.OtherTerms, "
                           "c.BagsDeduction, c.OtherDeduction, c.IsCompleted, c.IsPosted, "
                           "u.UnitName, u.WeightInKgs "
                           "FROM PContracts c "
                           "INNER JOIN Commodities m ON c.CommodityId = m.CommodityId "
                           "INNER JOIN Units u ON c.RateUnitId = u.UnitId "
                           "INNER JOIN ChartOfAccounts s ON c.PartyId = s.AccountNo "
                           "LEFT OUTER JOIN ChartOfAccounts b ON c.BrokerId = b.AccountNo "
                           "WHERE c.ContractId = ?"));
    q.bind(contractId).exec();
    if (!q.next())
        return std::nullopt;
    ContractRecord r;
    PurchaseContract& c = r.contract;
    c.contractId = toInt(q.value(0));
    c.contractDate = toDate(q.value(1));
    c.commodityId = toInt(q.value(2));
    r.commodityName = toText(q.value(3));
    c.brokerId = toText(q.value(4)).trimmed();
    r.brokerName = c.brokerId.isEmpty() ? QString() : toText(q.value(5));
    c.partyId = toText(q.value(6)).trimmed();
    r.sellerName = toText(q.value(7));
    c.brokerage = toDouble(q.value(8));
    c.isBrokeragePerBag = toInt(q.value(9)) != 0;
    c.rateUnitId = toInt(q.value(10));
    c.contractMode = toText(q.value(11));
    c.quantity = toDouble(q.value(12));
    c.ratePerUnit = toDouble(q.value(13));
    c.isWithBags = toInt(q.value(14)) != 0;
    c.isDeliveryInMill = toInt(q.value(15)) != 0;
    c.deliveryStartDate = toDate(q.value(16));
    c.deliveryEndDate = toDate(q.value(17));
    c.modeOfPayment = toText(q.value(18));
    c.isPaymentOnSite = toInt(q.value(19)) != 0;
    c.otherTerms = toText(q.value(20));
    c.bagsDeduction = toDouble(q.value(21));
    c.otherDeduction = toDouble(q.value(22));
    c.isCompleted = toInt(q.value(23)) != 0;
    c.isPosted = toInt(q.value(24)) != 0;
    r.unitName = toText(q.value(25));
    r.unitWeightInKgs = toDouble(q.value(26));
    return r;
}

void ContractStore::insert(const PurchaseContract& contract) {
    const auto taken = [&] {
        return Objected(Objection::warning(kContractIdTaken).withNewDocumentId(nextContractId()));
    };
    try {
        Transaction tx(m_conn, Transaction::Write);
        // Tested inside the write so that a number shown on two screens is written once.
        if (exists(contract.contractId))
            throw taken();
        Query q(m_conn, QString::fromLatin1(kInsertSql));
        bindColumns(q, contract);
        q.exec();
        tx.commit();
    } catch (const DbError&) {
        // Another connection may have written the same number between the test and the
        // insert, and the key refused ours. Anything else is a real failure.
        if (exists(contract.contractId))
            throw taken();
        throw;
    }
}

bool ContractStore::update(const PurchaseContract& contract) {
    Transaction tx(m_conn, Transaction::Write);
    Query q(m_conn, QString::fromLatin1(kUpdateSql));
    bindColumns(q, contract);
    q.exec();
    const bool found = q.numRowsAffected() > 0;
    tx.commit();
    return found;
}

void ContractStore::remove(qint64 contractId) {
    Transaction tx(m_conn, Transaction::Write);
    tx.lockRows(QStringLiteral("PContracts"), QStringLiteral("ContractId"), {contractId});
    // Asked inside the removal so that no arrival or invoice can take the contract up
    // between the question and the delete.
    refuseIfReferenced(m_conn, QStringLiteral("PContracts"),
                       {{QStringLiteral("ContractId"), contractId}});
    // The server posts a contract's effects while IsPosted is 1; clearing it first lets
    // the server take them back before the row goes.
    execute(m_conn, QStringLiteral("UPDATE PContracts SET IsPosted = 0 WHERE ContractId = ?"),
            {contractId});
    execute(m_conn, QStringLiteral("DELETE FROM PContracts WHERE ContractId = ?"), {contractId});
    tx.commit();
}

} // namespace gm
