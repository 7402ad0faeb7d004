#pragma once

#include "services/LookupItem.h"
#include "services/Numeric.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <optional>
#include <vector>

class QAbstractItemModel;

namespace gm {

class Conn;

// The lists behind the screens' combos. Each loader reads the whole list at once, so typing
// in a combo never goes to the database; each returns a new list, so a refill never keeps
// rows of the one before. A database failure throws DbError for the screen to show.

// The kinds of party a seller or broker combo can list. Each kind stands for a fixed,
// prepared query in code: a list row carries only the kind, never SQL.
enum class PartyType { All, Suppliers, Buyers, Brokers };

// "ALL", "Suppliers", "Buyers", "Brokers", keyed "0" to "3".
LookupList partyTypeList();
QString partyTypeName(PartyType type);
// The kind shown under this text in partyTypeList(), if any.
std::optional<PartyType> partyTypeNamed(const QString& name);
// The kind behind a key of partyTypeList(), if any.
std::optional<PartyType> partyTypeFromKey(const QString& key);

// A party's display name written into a statement, for the account row `account` and the city
// row `city` joined to it: the same text as FunGetPartyName, without a call per row, which a
// server cannot fold into the statement.
QString partyNameSql(const char* account, const char* city);

// Parties as "AccountName-CityName" keyed by account number, in name order. ALL lists every
// party; the other kinds only parties of that kind whose account is editable. A party
// without a city is still listed.
LookupList loadParties(const Conn& conn, PartyType type);
// Bank accounts (parent account beginning 112, in account order), then the cash account 111.
LookupList loadBanks(const Conn& conn);
// Procurement centres in name order.
LookupList loadPRCenters(const Conn& conn);
// Commodities by key, restricted by each flag that is set; all three flags set means every
// commodity (the search screens ask for that), not those marked all three ways.
LookupList loadCommodities(const Conn& conn, bool purchaseable, bool saleable, bool wheat);
LookupList loadBagClasses(const Conn& conn);
// Bag types in name order.
LookupList loadBagTypes(const Conn& conn);
// Units as "Mound (40)", by key.
LookupList loadUnits(const Conn& conn);
LookupList loadProcesses(const Conn& conn);
// Any query of a screen's own that yields the fields Name and ID (in any case), rows in the
// query's order. Values are bound to the query's "?" placeholders in order.
LookupList loadList(const Conn& conn, const QString& sql, const QVariantList& binds = {});

// A unit as every screen shows it: the name, a blank and the weight in whole kilograms in
// brackets, rounded half away from zero ("Mound (40)"; 37.5 kg reads "(38)"). A unit whose
// name or weight is missing reads as the empty text, as it cannot be told apart otherwise.
QString unitDisplayName(const QVariant& unitName, const QVariant& weightInKgs);
// The unit in which the commodity's rate is quoted, as unitDisplayName(); empty when the
// commodity or its rate unit is unknown.
QString GetRateUnitName(const Conn& conn, qint64 commodityId);
// Kilograms per unit by unit key, so that screens can convert on every keystroke without
// asking the database.
QHash<QString, double> unitWeights(const Conn& conn);

// The key of the first entry whose name is exactly `text`, or "0" (no choice) when none is.
QString findKey(const LookupList& list, const QString& text);
// The names of a list, in its order (what a grid's name check compares with).
QStringList listNames(const LookupList& list);
// The position of the first entry whose name is exactly `text`, or -1.
int indexOfName(const LookupList& list, const QString& text);

// A grid column's total: each cell's leading number taken to four decimals (ties to even)
// and added in fixed point, so a long column adds up without drift. A row too short for the
// column, and a cell with no number, count as 0. Over a model's top-level rows, reading each
// cell's text under `role`.
Currency SumGridColumn(const QAbstractItemModel& model, int column, int role = Qt::DisplayRole);

// Matching a clerk's text with LIKE: the text is data, so its own %, _ and ! match only
// themselves, and case is ignored for every letter on both engines.
// "<column> LIKE ? ESCAPE '!'" as this engine ignores case; `column` may be any text expression.
QString likeCondition(const Conn& conn, const QString& column);
// Patterns for likeCondition(): texts that begin with, or contain, `text`.
QString likeStartsWith(const QString& text);
QString likeContains(const QString& text);

} // namespace gm
