#pragma once

#include <QDate>
#include <QString>
#include <QVariant>
#include <QVariantList>

namespace gm {

class Conn;

// The statements of the search screens, apart from their windows. Each statement function
// returns its text with the values appended to `binds` in order; a helper that reads ahead
// (the bounds of a range, the parties a name matches) runs its own statement on `conn` and
// throws DbError.

// What the clerk has set on a search screen when its query runs.
struct SearchFilters {
    QDate from;
    QDate to;
    bool byId = false;
    QVariant id; // a whole number, or the fraction typed, which no key equals
    QString name;
    QVariant before;  // the last key of the rows read so far; null for the first page
    int pageRows = 0; // the rows of at most this many keys; 0 for all of them
};

// The filter id of a typed text: the number the text begins with ("12ab" looks for 12,
// letters alone for 0), as a whole number when it is one.
QVariant typedId(const QString& text);

// Arrivals newest first: ArrivalId, ArrivalDate, party name, commodity.
QString arrivalsStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds);
// Purchase invoices newest first: PurchaseId, PurchaseDate, broker, seller, value, SellerId.
QString purchasesStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds);
// Contracts newest first: ContractId, ContractDate, broker, seller, Quantity, ContractMode,
// BrokerId, PartyId.
QString contractsStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds);
// DFC payments in key order: PaymentId, PaymentDate, commodity, weight, gross value.
QString dfcPurchasesStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds);
// Hourly production oldest first: SerialNo, ProcessTime, commodity.
QString hourlyStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds);
// Parties with a city in key order: PartyId, AccountName, CityName; `name` narrows the list.
QString partiesStatement(const Conn& conn, const QString& name, QVariantList& binds);

// The hourly search's find, which reads no further than the row it finds.
namespace hourly {
// Whether any production line has one of these commodities.
bool anyLineOf(const Conn& conn, const QVariantList& commodityIds);
// The first serial after `after` with a line of one of these commodities; null when none.
QVariant firstSerialWith(const Conn& conn, const QVariant& after, const QVariantList& commodityIds);
// How many serials have lines after `after` up to and including `through`.
int serialsBetween(const Conn& conn, const QVariant& after, const QVariant& through);
// The serial before the last one with lines; null when fewer than two serials have lines.
QVariant serialBeforeLast(const Conn& conn);
} // namespace hourly

} // namespace gm
