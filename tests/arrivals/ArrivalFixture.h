#pragma once

#include "arrivals/ArrivalStore.h"
#include "datastore/Conn.h"
#include "datastore/Sql.h"

#include <QDate>
#include <QString>

#include <vector>

// Documents of other subsystems that an arrival stands on, written straight into the tables
// of a sample mill: a contract, a DFC payment with its letters, an invoice line.
namespace gm::test {

inline constexpr const char* kDfcAccount = "6000001"; // District Food Controller
inline constexpr const char* kSeller = "6100001";     // Haji Muhammad Aslam & Sons, Okara
inline constexpr int kWheatLocal = 1;                 // rate unit Mound (40), bag Jute 100 Kg
inline constexpr int kWheatGovernment = 2;

inline void insertContract(const Conn& conn, int contractId, const QString& party, int commodity) {
    execute(conn,
            QStringLiteral("INSERT INTO PContracts (ContractId, ContractDate, CommodityId, "
                           "PartyId, RateUnitId, ContractMode, Quantity, RatePerUnit, IsPosted) "
                           "VALUES (?, ?, ?, ?, 2, 'Bags', 500, 3900, 0)"),
            {contractId, QDate::currentDate(), commodity, party});
}

struct Letter {
    QString permitNo;
    int centerId;
    double bags;
    double weight;
};

inline void insertDfcPayment(const Conn& conn, int paymentId, int commodity, double ratePerUnit,
                             double pricePerBag, int rateUnitId,
                             const std::vector<Letter>& letters) {
    execute(conn,
            QStringLiteral("INSERT INTO DFCPayments (PaymentId, PaymentDate, CommodityId, "
                           "RateUnitId, RatePerUnit, PricePerBag, IsPosted) "
                           "VALUES (?, ?, ?, ?, ?, ?, 1)"),
            {paymentId, QDate::currentDate(), commodity, rateUnitId, ratePerUnit, pricePerBag});
    for (const Letter& l : letters)
        execute(conn,
                QStringLiteral("INSERT INTO AuthorityLetters (PaymentId, PermitNo, Date, "
                               "CenterId, NoOfBags, BagWeight, TotalWeight, IsWithBags) "
                               "VALUES (?, ?, ?, ?, ?, 100, ?, 0)"),
                {paymentId, l.permitNo, QDate::currentDate(), l.centerId, l.bags, l.weight});
}

// An invoice that takes one vehicle of the arrival.
inline void invoiceVehicle(const Conn& conn, int purchaseId, int arrivalId, const QString& vehicle,
                           int commodity) {
    execute(conn,
            QStringLiteral("INSERT INTO Purchases (PurchaseId, PurchaseDate, SellerId, IsPosted) "
                           "VALUES (?, ?, ?, 0)"),
            {purchaseId, QDate::currentDate(), QString::fromLatin1(kSeller)});
    execute(conn,
            QStringLiteral("INSERT INTO PurchaseBody (PurchaseId, ArrivalId, VehicleNo, "
                           "CommodityId) VALUES (?, ?, ?, ?)"),
            {purchaseId, arrivalId, vehicle, commodity});
}

inline double stockWeight(const Conn& conn, int commodity) {
    return toDouble(
        scalar(conn, QStringLiteral("SELECT TotalWeight FROM CurrentStock WHERE CommodityId = ?"),
               {commodity}));
}

inline double stockBags(const Conn& conn, int bagsType, int bagsClass) {
    return toDouble(scalar(conn,
                           QStringLiteral("SELECT NoOfBags FROM BagsCurrentStock "
                                          "WHERE BagsTypeId = ? AND BagsClassId = ?"),
                           {bagsType, bagsClass}));
}

inline ArrivalLine vehicle(const QString& no, double bags, double bagWeight, double perBag = 0,
                           double other = 0, int type = 2, int cls = 1) {
    ArrivalLine l;
    l.vehicleNo = no;
    l.bagsTypeId = type;
    l.bagsClassId = cls;
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    l.bagsDeduction = perBag;
    l.otherDeduction = other;
    return l;
}

inline ArrivalDocument freeArrival(int id, std::vector<ArrivalLine> lines) {
    ArrivalDocument a;
    a.arrivalId = id;
    a.arrivalDate = QDate::currentDate();
    a.commodityId = kWheatLocal;
    a.sellerId = QString::fromLatin1(kSeller);
    a.lines = std::move(lines);
    return a;
}

} // namespace gm::test
