#pragma once

#include "invoices/InvoiceStore.h"
#include "reports/Report.h"
#include "services/Host.h"

namespace gm {

// The invoice's figures as the screen shows them when it prints: the report's values 5 to 14,
// after the four letterhead lines.
struct InvoicePrintFigures {
    double unloading = 0; // totals of the charge pairs
    double freight = 0;
    double expense = 0;
    double specialDiscount = 0;
    double brokerage = 0; // the amount, not the rate
    double commPerMound = 0;
    double commValue = 0;
    double whTaxRatio = 0;
    double whTaxValue = 0;
    double netAmount = 0;
};

// Those figures of an invoice as worked out by computeInvoice().
InvoicePrintFigures printFigures(const InvoiceDocument& invoice, const InvoiceFigures& figures);

// The printed invoice: the letterhead, the saved invoice's head and lines with what each vehicle
// weighed, and the charges and totals the screen shows. With `hidePreviousBalance` the balance
// counts as 0 and its caption and figure ("PreviousCredit1") are suppressed. Without a saved
// invoice (null) the page carries the letterhead and nothing else.
Report CrpPurchase(const InvoicePrint* saved, const InvoicePrintFigures& shown,
                   bool hidePreviousBalance, const HostSettingsValues& settings);

} // namespace gm
