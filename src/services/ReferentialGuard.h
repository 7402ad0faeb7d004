#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace gm {

class Conn;

// One column of a document's key and the value it holds, e.g. {"ContractId", 5}.
struct KeyValue {
    QString column;
    QVariant value;
};
using DocumentKey = std::vector<KeyValue>;

// One foreign key that points at a table, as the database's catalog declares it.
struct ForeignKeyRef {
    QString table; // the referencing table, in the schema's own spelling
    // (column of the referenced table, column of the referencing table), in key order and
    // as the catalog spells them (PostgreSQL folds unquoted names to lower case)
    std::vector<std::pair<QString, QString>> columns;
};

// Every foreign key that points at `table`, ordered by referencing table. Throws DbError when
// the table does not exist or the catalog cannot be read.
std::vector<ForeignKeyRef> referencingForeignKeys(const Conn& conn, const QString& table);

// The guard a removal runs before it deletes a document: the name of the first table that
// still holds a row pointing at the document, in the schema's own spelling, or the empty
// text when nothing does. Only declared foreign keys are seen, so a table this program does
// not know is still protected as long as it declares its keys.
//
// Each key column is looked up in the referencing table under the name its foreign key gives
// it, so a dependant may call the column differently. Tables in `exclusions` (any case) are
// skipped: they are the document's own lines, removed with it.
//
// It fails closed: an unknown table, an unreadable catalog, a key column the referencing
// table lacks, or a failing query throws DbError, and the caller must refuse the removal.
// It uses the caller's connection, so it runs inside the removal's transaction.
QString FindReferencingTable(const Conn& conn, const QString& table, const DocumentKey& keys,
                             const QStringList& exclusions = {});

// The removal's refusal when `table` still refers to the document.
QString referencedRefusal(const QString& table);
// The guard as a removal runs it: throws Objected with that refusal when anything refers to
// the document.
void refuseIfReferenced(const Conn& conn, const QString& table, const DocumentKey& keys,
                        const QStringList& exclusions = {});

} // namespace gm
