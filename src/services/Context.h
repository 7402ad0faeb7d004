#pragma once

#include "services/Host.h"
#include "services/Searches.h"

#include <memory>

class QWidget;

namespace gm {

class Conn;

// Everything a screen of the component needs from outside: the one connection, the host's
// objects and the searches. Owned by Forms; screens keep a reference.
struct Context {
    const Conn* conn = nullptr;
    std::shared_ptr<HostSession> session;
    std::shared_ptr<HostSettings> settings;
    std::shared_ptr<Searches> searches;

    const Conn& db() const; // throws DbError when InitializeClass has not run
    HostSettingsValues hostSettings() const;
    qint16 userNo() const;

    // The searches, as a screen calls them; without searches no choice is made.
    PartyChoice findParty(QWidget* owner) const;
    int findDocument(DocumentKind kind, QWidget* owner, int* sellerId = nullptr) const;
};

} // namespace gm
