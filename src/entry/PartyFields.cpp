#include "entry/PartyFields.h"

#include "services/Lookups.h"
#include "widgets/LookupCombo.h"

namespace gm {

void fillPartiesOfType(const Conn& conn, LookupCombo* typeCombo, LookupCombo* partyCombo) {
    const auto type = partyTypeFromKey(typeCombo->currentKey());
    if (!type)
        return;
    const QString key = partyCombo->currentKey();
    const QString text = partyCombo->text();
    partyCombo->setItems(loadParties(conn, *type));
    if (key.isEmpty() || !partyCombo->selectKey(key))
        partyCombo->setText(text);
}

void placeParty(LookupCombo* typeCombo, LookupCombo* partyCombo, const QString& key,
                const QString& name) {
    if (key.isEmpty())
        return;
    if (partyCombo->selectKey(key))
        return;
    const QString all = partyTypeList().front().key;
    if (typeCombo->currentKey() != all)
        typeCombo->selectKey(all); // refills the party list through the kind's change
    if (!partyCombo->selectKey(key))
        partyCombo->setText(name);
}

} // namespace gm
