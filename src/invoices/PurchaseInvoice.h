#pragma once

#include "invoices/InvoiceLines.h"

#include <QDate>
#include <QString>

#include <vector>

namespace gm {

// A purchase invoice as the screen holds it and the store keeps it.
struct InvoiceDocument {
    int purchaseId = 0;
    QDate purchaseDate;
    qint64 contractId = 0; // 0: none
    QString sellerId;
    QString sellerName; // "Name-City"; filled when loaded, not needed to save
    QString brokerId;   // empty: none
    QString brokerName;
    Figure brokerageRate; // per cent of the gross, or an amount per bag
    bool isBrokeragePerBag = false;
    ChargePair freight;
    ChargePair unloading;
    ChargePair expense;
    Figure commPerMound;
    double commValue = 0; // as worked out (ComputeTotals)
    Figure whTaxRatio;
    double whTaxValue = 0;
    Figure specialDiscount;
    double previousCredit = 0; // as "Previous Bal" shows it: positive is owed to the seller
    Figure paidAmount;
    // Every grid line. A save keeps those with a rate; a loaded invoice has only those.
    std::vector<InvoiceLine> lines;
};

// What the screen shows below the grid, all worked out from the invoice.
struct InvoiceFigures {
    InvoiceFooters footers;
    double grossValue = 0; // "Gross Total": the Value footer
    double brokerage = 0;
    InvoiceTotals totals;
};

// The footers, the gross, ComputeBrokerage and ComputeTotals over the invoice as it stands, the
// charges at their totals. What the screen shows after any change, so nothing goes stale.
InvoiceFigures computeInvoice(const InvoiceDocument& invoice);

} // namespace gm
