#pragma once

#include "MasterTables.h"
#include "services/LookupItem.h"

#include <QVariant>

#include <optional>
#include <vector>

namespace gm {
class Conn;
class Query;
} // namespace gm

namespace gm::host {

// One row of a master list, one value per field of its TableDef, already typed: text as
// QString, whole numbers as qint64, decimals as double, flags as bool, dates as QDate, lookup
// keys as the lookup's key type; a null QVariant for an empty optional value.
using RowValues = std::vector<QVariant>;

// Why a row cannot be saved: the field to put the cursor on and the words for the clerk.
struct Problem {
    int field = -1;
    QString message;
};

// Reads and writes one master list. No widgets: the list editor maps its fields to a
// RowValues and calls this, so every rule is testable without a window.
class MasterDataStore {
public:
    MasterDataStore(const Conn& conn, const TableDef& def);

    const TableDef& def() const { return m_def; }

    // The rows in the list's order; a detail list only the rows of `parent`.
    std::vector<RowValues> load(const QVariant& parent = {}) const;
    LookupList lookupList(int field) const;
    // Forgets the lookup lists read so far, so that rows added in another list show up.
    void clearLookups() const;
    // The key a new row is offered: the highest one + 1.
    qint64 nextKey(int field) const;

    // Turns what the clerk typed (texts for text and number fields, typed values for the
    // others) into a row; the first field that does not read gives the problem.
    static std::optional<Problem> parse(const TableDef& def, const std::vector<QVariant>& input,
                                        RowValues* row);
    // Required fields, ranges and unique values. `original` is the saved row being changed,
    // null for a new row.
    std::optional<Problem> validate(const RowValues& row, const RowValues* original) const;

    // Each is one transaction; DbError carries the clerk's words on refusal.
    void insert(const RowValues& row) const;
    void update(const RowValues& original, const RowValues& row) const;
    void remove(const RowValues& row) const;

    // The table that still holds a row pointing at `row`, or the empty text.
    QString referencedBy(const RowValues& row) const;
    // "This commodity cannot be deleted: it is used in (Arrivals)."
    QString inUseMessage(const QString& table) const;

    // The text a value shows in the list (lookups by name, flags as a tick).
    QString displayText(int field, const QVariant& value) const;

private:
    QString columnList(bool secondary) const;
    QVariant bindable(int field, const QVariant& value) const;
    std::vector<int> fieldsOf(bool secondary) const;
    std::vector<int> insertedFields(bool secondary) const;
    QString keyCondition(bool secondary) const;
    void bindKey(Query& q, const RowValues& row) const;

    const Conn& m_conn;
    TableDef m_def;
    mutable std::vector<std::optional<LookupList>> m_lookups;
};

} // namespace gm::host
