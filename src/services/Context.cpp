#include "services/Context.h"

#include "datastore/Sql.h"

namespace gm {

const Conn& Context::db() const {
    if (!conn)
        throw DbError(QStringLiteral("No database connection has been given to the screens."),
                      QStringLiteral("grainmill"));
    return *conn;
}

HostSettingsValues Context::hostSettings() const {
    return settings ? settings->values() : HostSettingsValues{};
}

qint16 Context::userNo() const {
    return session ? session->userNo() : 0;
}

PartyChoice Context::findParty(QWidget* owner) const {
    return searches ? searches->party(owner, *this) : PartyChoice{};
}

int Context::findDocument(DocumentKind kind, QWidget* owner, int* sellerId) const {
    if (!searches) {
        if (sellerId)
            *sellerId = 0;
        return 0;
    }
    return searches->document(kind, owner, *this, sellerId);
}

} // namespace gm
