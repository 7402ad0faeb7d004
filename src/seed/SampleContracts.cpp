#include "seed/SampleContracts.h"

#include "contracts/ContractStore.h"
#include "datastore/Sql.h"

#include <QDate>

namespace gm {

void loadSampleContracts(const Conn& conn) {
    ContractStore store(conn);
    const QDate today = QDate::currentDate();
    const auto contract = [&](int daysAgo, int commodity, const char* seller, const char* broker,
                              const char* mode, double quantity, double rate) {
        PurchaseContract c;
        c.contractId = store.nextContractId();
        c.contractDate = today.addDays(-daysAgo);
        c.commodityId = commodity;
        c.partyId = QString::fromLatin1(seller);
        c.brokerId = QString::fromLatin1(broker);
        c.rateUnitId = 2; // rates are quoted per mound
        c.contractMode = QString::fromLatin1(mode);
        c.quantity = quantity;
        c.ratePerUnit = rate;
        c.deliveryStartDate = c.contractDate.addDays(2);
        c.deliveryEndDate = c.contractDate.addDays(30);
        c.modeOfPayment = QStringLiteral("Cash");
        return c;
    };
    // The sample's numbers are drawn inside the caller's write transaction, so none is taken;
    // a taken one would refuse the whole sample.
    const auto insert = [&](const PurchaseContract& c) { store.insert(c); };

    PurchaseContract a = contract(20, 1, "6100001", "6300001", "Vehicles", 10, 3850);
    a.brokerage = 5;
    a.isBrokeragePerBag = true;
    a.bagsDeduction = 0.5;
    a.isDeliveryInMill = true;
    a.otherTerms = QStringLiteral("Moisture not above 10%");
    insert(a);

    PurchaseContract b = contract(12, 1, "6100002", "6300002", "Bags", 2000, 3900);
    b.brokerage = 0.5;
    b.isWithBags = true;
    b.bagsDeduction = 0.75;
    b.otherDeduction = 10;
    b.modeOfPayment = QStringLiteral("DD");
    insert(b);

    // Bought straight from the grower, with no broker between.
    PurchaseContract c = contract(5, 3, "6100005", "", "Weight", 50000, 4100);
    c.isPaymentOnSite = true;
    c.modeOfPayment = QStringLiteral("To Pay");
    c.otherTerms = QStringLiteral("Seller's own transport; foreign matter under 2%");
    insert(c);
}

} // namespace gm
