#pragma once

#include "entry/LineRows.h"
#include "services/Numeric.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace gm {

// The columns of the invoice grid, in the order they stand. 12 to 16 are working columns the
// clerk never sees: the sums and the save read them.
enum InvoiceColumn : int {
    InvSN = 0,
    InvArrivalId = 1,
    InvArrivalDate = 2,
    InvVehicleNo = 3,
    InvCommodity = 4,
    InvBagType = 5,
    InvBags = 6,
    InvNetWeight = 7,
    InvRate = 8,
    InvBagRate = 9,
    InvUnit = 10,
    InvValue = 11,
    InvWeightInKgs = 12,
    InvCommodityId = 13,
    InvBagWeight = 14,
    InvSavingBags = 15, // the bags of a priced line, else 0
    InvSWeight = 16,    // the net weight of a priced line, else blank
    InvoiceColumnCount = 17
};

const QStringList& invoiceColumnCaptions();

// One vehicle of one arrival on the invoice: what the grid shows, what the sums read and what
// the store keeps.
struct InvoiceLine {
    int serialNo = 0; // "S.N", from 1
    qint64 arrivalId = 0;
    QDate arrivalDate;
    QString vehicleNo;
    QString commodity;
    QString bagsType;
    Figure bags;
    Figure netWeight;
    Figure rate;    // per rate unit
    Figure bagRate; // per bag
    QString unit;   // the rate unit as the unit list shows it, "Mound (40)"
    Figure value;
    Figure weightInKgs; // of the rate unit
    qint64 commodityId = 0;
    Figure bagWeight;
    Figure savingBags;
    Figure sWeight;

    // Not in the grid: the rate unit's key and the vehicle's bags as the arrival has them.
    qint64 rateUnitId = 0;
    qint64 bagsTypeId = 0;
    qint64 bagsClassId = 0;
};

// How each column reads and writes a line, in column order.
const std::vector<LineField<InvoiceLine>>& invoiceLineFields();

// ---- A line's value -------------------------------------------------------------------------

// A rate alone prices a line, and only with a unit that weighs something; a bag rate alone
// does not.
bool isPriced(const InvoiceLine& line);
// The rule after Rate or Bag Rate changed. A priced line is worth its weight in rate units at
// the rate plus its bags at the bag rate, rounded to a whole number, and counts in the bag and
// weight sums; any other line is worth nothing and counts in neither.
void applyRateRule(InvoiceLine& line);
// The rule after the unit changed, given the new unit's kilograms. Unlike the rate rule only
// the weight part is rounded, to 2 decimals, and the line's place in the sums is left as it
// was. False (and the line unchanged) when the unit weighs nothing.
bool applyUnitRule(InvoiceLine& line, double weightInKgs);
// Whichever of the two the column calls for; other columns change nothing.
bool applyCellRule(InvoiceLine& line, int column, double unitWeightInKgs = 0);

// ---- Sums ------------------------------------------------------------------------------------

// The footers of "Value", "Bags" and "Net Weight". Bags and weight add the working columns, so
// only priced lines count: the per-bag charges are spread over priced bags.
struct InvoiceFooters {
    Currency value;
    Currency bags;
    Currency netWeight;
};
InvoiceFooters invoiceFooters(const std::vector<InvoiceLine>& lines);

// ---- Charges ---------------------------------------------------------------------------------

inline constexpr double kMoundKgs = 40; // commission is quoted per mound, whatever the lines' unit

enum class Charge { Freight, Unloading, Expense };

// A charge given per bag or in total: the side the clerk types drives the other and locks it.
struct ChargePair {
    Figure perBag;
    Figure total;
    bool perBagLocked = false; // the total drives it
    bool totalLocked = false;  // the per-bag figure drives it
};

// The clerk typed into the total. Typing 0 frees the per-bag figure and empties it. Otherwise,
// with bags to spread over, the per-bag figure becomes total / bags to 2 decimals and is locked.
// Freight and expense test for bags on the grid's current line (`currentLineBags`), unloading
// on the footer; the division is always by the footer.
void chargeTotalTyped(ChargePair& pair, Charge charge, double footerBags, double currentLineBags);
// The clerk typed into the per-bag figure: the mirror, total = per bag x bags, whole.
void chargePerBagTyped(ChargePair& pair, double footerBags);
// A saved invoice's total from its per-bag figure, as a reopened invoice without a stored total
// derives it.
double chargeTotalOf(double perBag, double footerBags);

// ---- Brokerage and totals --------------------------------------------------------------------

// The broker's figure, printed and not charged. A percentage of the gross rounds as the
// server does (half away from zero, nothing below zero); per bag it counts every line with a
// net weight, priced or not, and rounds half to even.
double ComputeBrokerage(const std::vector<InvoiceLine>& lines, double grossValue, double rate,
                        bool perBag);

struct TotalsInput {
    double netWeightFooter = 0;
    double grossValue = 0;
    double commPerMound = 0;
    double whTaxRatio = 0;
    double freight = 0; // totals of the charge pairs
    double unloading = 0;
    double expense = 0;
    double specialDiscount = 0;
    double previousCredit = 0; // as the box shows it: positive is owed to the seller
};

struct InvoiceTotals {
    double commValue = 0;
    double whTaxValue = 0;
    double netAmount = 0;
    double totalPayable = 0;
};

// Commission per mound of priced weight, the withholding tax taken on the commission, the net
// value (freight and expense add, unloading and the discount come off, commission less its tax
// adds) and the total payable with the previous balance, each step from the one before.
InvoiceTotals ComputeTotals(const TotalsInput& input);

// ---- The seller's balance --------------------------------------------------------------------

// The balance the invoice keeps: the seller's debit rounded to a whole number, half to even.
double previousBalance(double debit);
// The balance as "Previous Bal" shows it, sign turned: positive means owed to the seller.
// A debit of 500 shows -500, a credit of 300 shows 300.
double previousCreditShown(double balance);

// ---- Average cost ----------------------------------------------------------------------------
// Stock quantities are figures of four decimals: each formula first takes them to four, so
// that a quantity that should be exactly nothing is not a remainder of binary arithmetic.

// The unit cost of a stock row once a lot is folded in. `stockQty` is the stock with the lot
// already in it (the arrival put it there), `lotQty` and `lotCost` the lot's quantity and its
// unit cost: the lot at its cost is averaged with the stock before it at the old cost. Where
// that earlier stock was below zero, or no stock remains, the lot's own cost stands.
double costAfterReceipt(double stockQty, double stockCost, double lotQty, double lotCost);

// Taking a lot out again, the exact inverse of costAfterReceipt while the stock has not moved.
struct CostReversal {
    double cost = 0;
    bool changed = false;
    QString note; // why the cost was left as it was, or became 0
};
CostReversal costAfterReversal(double stockQty, double stockCost, double lotQty, double lotCost);

// A line's cost per kilogram of wheat: its whole value, bags included, over its net weight.
double invoiceLineCost(const InvoiceLine& line);

} // namespace gm
