#include "seed/SampleInvoices.h"

#include "invoices/InvoiceStore.h"

#include <QDate>

namespace gm {

namespace {

constexpr qint16 kSampleUser = 1;

// The charges and figures every sample invoice carries, worked out as the screen would.
void finish(const InvoiceStore& store, InvoiceDocument& d) {
    d.previousCredit =
        previousCreditShown(previousBalance(store.currentDebit(d.sellerId, d.purchaseDate)));
    InvoiceFigures f = computeInvoice(d);
    const double bags = f.footers.bags.toDouble();
    chargePerBagTyped(d.freight, bags);
    chargeTotalTyped(d.unloading, Charge::Unloading, bags, bags);
    f = computeInvoice(d);
    d.commValue = f.totals.commValue;
    d.whTaxValue = f.totals.whTaxValue;
}

} // namespace

void loadSampleInvoices(const Conn& conn) {
    InvoiceStore store(conn, kSampleUser);
    const QDate today = QDate::currentDate();

    // The newest contract with vehicles still to invoice: all but its last vehicle.
    for (const LookupItem& contract : store.contracts()) {
        auto offer = store.linesOfContract(contract.name.toLongLong());
        if (!offer || offer->lines.size() < 2)
            continue;
        InvoiceDocument d;
        d.purchaseId = store.nextPurchaseId();
        d.purchaseDate = today.addDays(-3);
        d.contractId = offer->contract.contractId;
        d.sellerId = offer->contract.sellerId;
        d.brokerId = offer->contract.brokerId;
        d.brokerageRate = offer->contract.brokerageRate;
        d.isBrokeragePerBag = offer->contract.isBrokeragePerBag;
        d.lines = offer->lines;
        d.lines.back().rate = 0.0;
        applyRateRule(d.lines.back());
        d.freight.perBag = 5.0;
        d.unloading.total = 1500.0;
        d.commPerMound = 2.0;
        d.whTaxRatio = 10.0;
        finish(store, d);
        store.save(d, true);
        break;
    }

    // A free arrival's first vehicle, with its bags bought at a price of their own.
    const QString seller = QStringLiteral("6100002");
    std::vector<InvoiceLine> lines = store.linesOfSeller(seller);
    if (!lines.empty()) {
        InvoiceDocument d;
        d.purchaseId = store.nextPurchaseId();
        d.purchaseDate = today.addDays(-1);
        d.sellerId = seller;
        d.lines = lines;
        d.lines.front().rate = 3850.0;
        d.lines.front().bagRate = 120.0;
        applyRateRule(d.lines.front());
        d.specialDiscount = 500.0;
        d.paidAmount = 100000.0;
        finish(store, d);
        store.save(d, true);
    }
}

} // namespace gm
