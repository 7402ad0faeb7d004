#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace gm::host {

enum class FieldType {
    Text,
    Integer,
    Decimal,
    Flag,
    Date,
    Lookup, // a key chosen from another table's list
};

// One column of a master list as the clerk sees and edits it.
struct FieldDef {
    QString column;
    QString caption;
    FieldType type = FieldType::Text;
    bool key = false;       // part of the row's identity; fixed once the row is saved
    bool required = false;  // must not be left empty
    bool unique = false;    // no two rows may share the value
    bool secondary = false; // lives in the list's second table (a party's Parties row)
    bool hidden = false;    // not shown in the list (the parent's key of a detail list)
    bool autoKey = false;   // proposed as the highest key + 1 on a new row
    bool generated = false; // filled by the database on insert, never by the clerk
    int maxLength = 0;      // texts: the longest value accepted, 0 for no limit
    // Lookups: a statement returning (key, display name) rows, and whether its keys are whole
    // numbers (they are bound as such).
    QString lookupSql;
    bool lookupIntKey = true;
    bool nonNegative = false; // numbers that cannot sensibly be below zero
};

// A master list: the table it edits and how its rows look.
struct TableDef {
    QString id;    // stable name used by menus and tests ("commodities")
    QString title; // "Commodities"
    QString noun;  // one row in the clerk's words: "commodity"
    QString table; // the table rows are read from and written to
    // A second table kept together with the first, one row each, joined on
    // secondaryKeyColumn = the first table's key (a party is an account and a Parties row).
    QString secondaryTable;
    QString secondaryKeyColumn;
    std::vector<FieldDef> fields;
    QString orderBy;      // column of the list's order
    QString parentColumn; // detail lists: the column holding the parent row's key
    // Tables that are written together with this one and so must not stop its removal.
    QStringList ownedBy;
    // A column of the same table naming a row above (an account's parent): a row that others
    // hang under is in use even though no foreign key says so.
    QString childColumn;

    int fieldIndex(const QString& column) const;
    std::vector<int> keyFields() const;
};

// Every master list of the mill, in menu order.
const std::vector<TableDef>& masterTables();
const TableDef* findMasterTable(const QString& id);
// The detail list shown under a list (process components under processes), or null.
const TableDef* detailOf(const TableDef& def);

} // namespace gm::host
