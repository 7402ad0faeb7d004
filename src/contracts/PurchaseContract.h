#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace gm {

// One agreement to buy a commodity from a seller: every column of PContracts.
struct PurchaseContract {
    qint64 contractId = 0;
    QDate contractDate;
    qint64 commodityId = 0;
    QString brokerId; // empty: no broker, stored as null
    double brokerage = 0;
    bool isBrokeragePerBag = false; // false: brokerage is a percentage of value
    QString partyId;                // the seller's account
    qint64 rateUnitId = 0;          // 0: no unit, stored as null
    QString contractMode;           // "Vehicles", "Bags" or "Weight": what quantity counts
    double quantity = 0;
    double ratePerUnit = 0;
    bool isWithBags = false;
    bool isDeliveryInMill = false;
    QDate deliveryStartDate;
    QDate deliveryEndDate;
    QString modeOfPayment;     // "DD", "Cash" or "To Pay"
    double bagsDeduction = 0;  // kilograms per bag
    double otherDeduction = 0; // kilograms per vehicle
    bool isPaymentOnSite = false;
    QString otherTerms;
    bool isCompleted = false;
    bool isPosted = false; // always written as 0: the server posts it

    friend bool operator==(const PurchaseContract&, const PurchaseContract&) = default;
};

// A stored contract as the screen and the printed contract show it: the document and the
// display names of what its keys point at.
struct ContractRecord {
    PurchaseContract contract;
    QString commodityName;
    QString brokerName; // empty for a contract without a broker
    QString sellerName;
    QString unitName;
    double unitWeightInKgs = 0;
};

// The two fixed lists of the contract screen, in the order the clerk sees them; the stored
// value is the row's text.
inline const QStringList& contractModes() {
    static const QStringList modes = {QStringLiteral("Vehicles"), QStringLiteral("Bags"),
                                      QStringLiteral("Weight")};
    return modes;
}
inline const QStringList& paymentModes() {
    static const QStringList modes = {QStringLiteral("DD"), QStringLiteral("Cash"),
                                      QStringLiteral("To Pay")};
    return modes;
}

} // namespace gm
