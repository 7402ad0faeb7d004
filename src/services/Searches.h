#pragma once

#include <QString>

#include <memory>

class QWidget;

namespace gm {

struct Context;

// The party a clerk picked on the party search; empty when the search was closed without one.
struct PartyChoice {
    QString SelectedPartyId, SelectedPartyName, SelectedCityName;
    bool isEmpty() const { return SelectedPartyId.isEmpty(); }
};

// The documents that have a search screen.
enum class DocumentKind { PurchaseContract, Purchase, Arrival, DFCPurchase, HourlyProduction };

// The search screens as a service: a screen asks its context for a search and never names the
// search windows, which lie beside the screens, not below them. Each search is modal with
// `owner` as parent.
class Searches {
public:
    virtual ~Searches() = default;
    virtual PartyChoice party(QWidget* owner, const Context& ctx) = 0;
    // The chosen document's key, 0 when the clerk closed without a choice. `sellerId`
    // receives the seller of a chosen purchase invoice (0 when none).
    virtual int document(DocumentKind kind, QWidget* owner, const Context& ctx,
                         int* sellerId = nullptr) = 0;
};

// The real search screens.
std::shared_ptr<Searches> dialogSearches();

} // namespace gm
