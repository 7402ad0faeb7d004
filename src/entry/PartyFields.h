#pragma once

#include <QString>

namespace gm {

class Conn;
class LookupCombo;

// A party combo beside the combo of its kind ("Seller Type" / "Seller"), as the contract and
// invoice screens pair them.

// Refills the party combo with the kind the type combo names; a party already in the box
// stays there when the list changes under it.
void fillPartiesOfType(const Conn& conn, LookupCombo* typeCombo, LookupCombo* partyCombo);

// Places the party combo on a stored account, widening its list to every party when the
// chosen kind does not offer it; a party no list offers any more is shown by name.
void placeParty(LookupCombo* typeCombo, LookupCombo* partyCombo, const QString& key,
                const QString& name);

} // namespace gm
