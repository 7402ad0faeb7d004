#pragma once

#include "arrivals/ArrivalLines.h"
#include "datastore/Sql.h"
#include "services/DocumentKeys.h"
#include "services/LookupItem.h"

#include <QDate>
#include <QString>

#include <optional>
#include <vector>

namespace gm {

class Conn;

struct ArrivalDocument {
    int arrivalId = 0;
    QDate arrivalDate;
    qint64 centerId = 0; // 0: not through a PR centre
    QString centerName;
    QString permitNo;
    qint64 commodityId = 0;
    QString commodityName;
    QString sellerId;
    QString sellerName;    // "Name-City"
    qint64 contractId = 0; // 0: no contract
    std::vector<ArrivalLine> lines;
};

struct ContractDefaults {
    QString sellerId;
    QString sellerName; // "Name-City", as the party lists show it
    qint64 commodityId = 0;
    QString commodityName;
};

struct CommodityDefaults {
    QString bagType;
    double bagCapacity = 0;
};

// Average DFC prices at a centre for a commodity, and the unit of the first payment found.
struct PermitRates {
    double ratePerUnit = 0;
    double pricePerBag = 0;
    qint64 rateUnitId = 0;
};

struct RemainingQuota {
    double bags = 0;
    double weight = 0;
};

// Everything the arrival screen reads from and writes to the database. Refusals come as
// Objected, after the transaction has rolled back.
class ArrivalStore final : public DocumentKeys {
public:
    explicit ArrivalStore(const Conn& conn) : m_conn(conn) {}

    int nextArrivalId() const;
    bool exists(qint64 arrivalId) const override;
    qint64 nextDocumentId() const override { return nextArrivalId(); }

    // Contracts no arrival uses yet: one contract, one arrival. Name is the contract number,
    // key the seller as the party lists show it.
    LookupList contracts() const;
    std::optional<ContractDefaults> contractDefaults(qint64 contractId) const;
    std::optional<CommodityDefaults> commodityDefaults(qint64 commodityId) const;
    // Centres that have at least one authority letter, and every permit.
    LookupList prCentres() const;
    LookupList permits() const;
    // Bags and weight the centre's letters authorise less what has arrived from it (net).
    RemainingQuota remaining(qint64 centerId) const;
    std::optional<PermitRates> permitRates(qint64 centerId, qint64 commodityId) const;
    // The DFC account as the party lists show it.
    QString partyDisplayName(const QString& accountNo) const;

    std::optional<ArrivalDocument> load(int arrivalId) const;
    // The purchase invoice that uses this arrival, or 0.
    int isInvoiced(int arrivalId) const;

    // One transaction, or part of one the caller holds: the head written unposted, its lines
    // replaced, then posted, so that the stock follows the lines exactly once. A new arrival
    // is only ever inserted.
    void save(const ArrivalDocument& arrival, bool isNew);
    // One transaction; refused when anything still points at the arrival.
    void remove(int arrivalId);

private:
    const Conn& m_conn;
};

inline const QString kArrivalUpdateRefusal =
    QStringLiteral("Cannot updated this invoice because it is used in (PurchaseBody) table");

} // namespace gm
