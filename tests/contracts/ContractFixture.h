#pragma once

#include "contracts/PurchaseContract.h"
#include "datastore/Conn.h"
#include "datastore/Sql.h"

namespace gm::test {

// A handful of master rows that contracts point at, independent of the sample mill so that
// the expected names are known here.
inline void seedContractMasters(const Conn& conn) {
    Transaction tx(conn);
    execute(conn, QStringLiteral("INSERT INTO Cities (CityId, CityName) VALUES (?, ?)"),
            {1, QStringLiteral("Okara")});
    const auto account = [&](const char* no, const char* name, int seller, int broker) {
        execute(conn,
                QStringLiteral("INSERT INTO ChartOfAccounts (AccountNo, AccountName, "
                               "ParentAccountNo, IsEditable) VALUES (?, ?, ?, ?)"),
                {QString::fromLatin1(no), QString::fromLatin1(name), QStringLiteral("6"), 1});
        execute(conn,
                QStringLiteral("INSERT INTO Parties (PartyId, CityId, IsSeller, IsBuyer, "
                               "IsBroker) VALUES (?, ?, ?, ?, ?)"),
                {QString::fromLatin1(no), 1, seller, 0, broker});
    };
    account("6001", "Ali Traders", 1, 0);
    account("6002", "Bashir Brokers", 0, 1);
    execute(conn,
            QStringLiteral("INSERT INTO Units (UnitId, UnitName, WeightInKgs) VALUES (?, ?, ?)"),
            {1, QStringLiteral("Mound"), 40});
    execute(conn,
            QStringLiteral("INSERT INTO Units (UnitId, UnitName, WeightInKgs) VALUES (?, ?, ?)"),
            {2, QStringLiteral("Kg"), 1});
    execute(conn,
            QStringLiteral("INSERT INTO Commodities (CommodityId, CommodityName, RateUnitId, "
                           "IsPurchaseable, IsSaleable, IsWheatCommodity) "
                           "VALUES (?, ?, ?, ?, ?, ?)"),
            {1, QStringLiteral("Wheat"), 1, 1, 0, 1});
    tx.commit();
}

// A contract with a value in every column, none of them a default.
inline PurchaseContract sampleContract(qint64 id) {
    PurchaseContract c;
    c.contractId = id;
    c.contractDate = QDate(2026, 3, 14);
    c.commodityId = 1;
    c.brokerId = QStringLiteral("6002");
    c.brokerage = 2.5;
    c.isBrokeragePerBag = true;
    c.partyId = QStringLiteral("6001");
    c.rateUnitId = 1;
    c.contractMode = QStringLiteral("Bags");
    c.quantity = 1200;
    c.ratePerUnit = 3850.75;
    c.isWithBags = true;
    c.isDeliveryInMill = true;
    c.deliveryStartDate = QDate(2026, 3, 20);
    c.deliveryEndDate = QDate(2026, 4, 30);
    c.modeOfPayment = QStringLiteral("To Pay");
    c.bagsDeduction = 0.75;
    c.otherDeduction = 12;
    c.isPaymentOnSite = true;
    c.otherTerms = QStringLiteral("Moisture under 10%; seller's own bags");
    c.isCompleted = true;
    return c;
}

} // namespace gm::test
