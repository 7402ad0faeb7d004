#include "services/Lookups.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"

#include <QAbstractItemModel>
#include <QSqlRecord>

#include <algorithm>
#include <cmath>

namespace gm {

namespace {

// Lists are read in key order and then put into name order here rather than by the server,
// so that both engines, whatever their collations, give the clerk the same order: names
// without regard to case, then with it, then by key (which the stable sort keeps).
bool nameBefore(const QString& a, const QString& b) {
    const int folded = a.compare(b, Qt::CaseInsensitive);
    if (folded != 0)
        return folded < 0;
    return a.compare(b, Qt::CaseSensitive) < 0;
}

void sortByName(LookupList& list) {
    std::stable_sort(list.begin(), list.end(), [](const LookupItem& a, const LookupItem& b) {
        return nameBefore(a.name, b.name);
    });
}

LookupList readNameAndId(Query& q) {
    const QSqlRecord record = q.raw().record();
    // The record looks fields up without regard to case, as PostgreSQL folds aliases.
    const int nameAt = record.indexOf(QStringLiteral("Name"));
    const int idAt = record.indexOf(QStringLiteral("ID"));
    if (nameAt < 0 || idAt < 0)
        throw DbError(QStringLiteral("A list query must give the fields Name and ID."),
                      QStringLiteral("Lookup"));
    LookupList list;
    while (q.next())
        list.push_back({toText(q.value(nameAt)), toText(q.value(idAt))});
    return list;
}

LookupList load(const Conn& conn, const QString& sql, const QVariantList& binds = {}) {
    Query q(conn, sql);
    for (const QVariant& v : binds)
        q.bind(v);
    q.exec();
    return readNameAndId(q);
}

struct PartyTypeRow {
    PartyType type;
    const char* name;
    const char* flagFilter; // constant text, never a value
};

constexpr PartyTypeRow kPartyTypes[] = {
    {PartyType::All, "ALL", nullptr},
    {PartyType::Suppliers, "Suppliers", "Parties.IsSeller = 1"},
    {PartyType::Buyers, "Buyers", "Parties.IsBuyer = 1"},
    {PartyType::Brokers, "Brokers", "Parties.IsBroker = 1"},
};

const PartyTypeRow& partyTypeRow(PartyType type) {
    for (const PartyTypeRow& row : kPartyTypes)
        if (row.type == type)
            return row;
    return kPartyTypes[0];
}

} // namespace

LookupList partyTypeList() {
    LookupList list;
    for (const PartyTypeRow& row : kPartyTypes)
        list.push_back({QString::fromLatin1(row.name), QString::number(int(row.type))});
    return list;
}

QString partyTypeName(PartyType type) {
    return QString::fromLatin1(partyTypeRow(type).name);
}

std::optional<PartyType> partyTypeNamed(const QString& name) {
    for (const PartyTypeRow& row : kPartyTypes)
        if (name == QLatin1String(row.name))
            return row.type;
    return std::nullopt;
}

std::optional<PartyType> partyTypeFromKey(const QString& key) {
    bool ok = false;
    const int n = key.toInt(&ok);
    for (const PartyTypeRow& row : kPartyTypes)
        if (ok && int(row.type) == n)
            return row.type;
    return std::nullopt;
}

QString partyNameSql(const char* account, const char* city) {
    return QStringLiteral("(CASE WHEN %2.CityName IS NULL THEN %1.AccountName "
                          "ELSE %1.AccountName || '-' || %2.CityName END)")
        .arg(QLatin1String(account), QLatin1String(city));
}

LookupList loadParties(const Conn& conn, PartyType type) {
    const PartyTypeRow& row = partyTypeRow(type);
    QString sql = QStringLiteral("SELECT ChartOfAccounts.AccountNo, %1, "
                                 "ChartOfAccounts.AccountName "
                                 "FROM ChartOfAccounts INNER JOIN Parties "
                                 "ON ChartOfAccounts.AccountNo = Parties.PartyId "
                                 "LEFT OUTER JOIN Cities ON Parties.CityId = Cities.CityId")
                      .arg(partyNameSql("ChartOfAccounts", "Cities"));
    // Every party is offered under ALL; a kind of its own shows only accounts still in use.
    if (row.flagFilter)
        sql += QStringLiteral(" WHERE %1 AND ChartOfAccounts.IsEditable = 1")
                   .arg(QLatin1String(row.flagFilter));
    sql += QStringLiteral(" ORDER BY ChartOfAccounts.AccountNo");
    Query q(conn, sql);
    q.exec();

    // In account name order, not display text order: two parties of one name in different
    // cities keep their account order.
    struct Named {
        QString accountName;
        LookupItem item;
    };
    std::vector<Named> rows;
    while (q.next())
        rows.push_back({toText(q.value(2)), {toText(q.value(1)), toText(q.value(0))}});
    std::stable_sort(rows.begin(), rows.end(), [](const Named& a, const Named& b) {
        return nameBefore(a.accountName, b.accountName);
    });
    LookupList list;
    list.reserve(rows.size());
    for (Named& r : rows)
        list.push_back(std::move(r.item));
    return list;
}

LookupList loadBanks(const Conn& conn) {
    LookupList banks = load(conn,
                            QStringLiteral("SELECT AccountNo AS ID, AccountName AS Name "
                                           "FROM ChartOfAccounts WHERE ParentAccountNo LIKE ? "
                                           "ORDER BY AccountNo"),
                            {QStringLiteral("112%")});
    const LookupList cash = load(conn,
                                 QStringLiteral("SELECT AccountNo AS ID, AccountName AS Name "
                                                "FROM ChartOfAccounts WHERE AccountNo = ?"),
                                 {QStringLiteral("111")});
    banks.insert(banks.end(), cash.begin(), cash.end());
    return banks;
}

LookupList loadPRCenters(const Conn& conn) {
    LookupList list = load(conn, QStringLiteral("SELECT CenterId AS ID, CenterName AS Name "
                                                "FROM PRCenters ORDER BY CenterId"));
    sortByName(list);
    return list;
}

LookupList loadCommodities(const Conn& conn, bool purchaseable, bool saleable, bool wheat) {
    QString sql = QStringLiteral("SELECT CommodityId AS ID, FunGetCommodity(CommodityId) AS Name "
                                 "FROM Commodities WHERE 1 = 1");
    if (!(purchaseable && saleable && wheat)) {
        if (purchaseable)
            sql += QStringLiteral(" AND IsPurchaseable = 1");
        if (saleable)
            sql += QStringLiteral(" AND IsSaleable = 1");
        if (wheat)
            sql += QStringLiteral(" AND IsWheatCommodity = 1");
    }
    sql += QStringLiteral(" ORDER BY CommodityId");
    return load(conn, sql);
}

LookupList loadBagClasses(const Conn& conn) {
    return load(conn, QStringLiteral("SELECT BagsClassId AS ID, BagsClass AS Name "
                                     "FROM BagsClasses ORDER BY BagsClassId"));
}

LookupList loadBagTypes(const Conn& conn) {
    LookupList list = load(conn, QStringLiteral("SELECT BagsTypeId AS ID, BagsType AS Name "
                                                "FROM BagsTypes ORDER BY BagsTypeId"));
    sortByName(list);
    return list;
}

QString unitDisplayName(const QVariant& unitName, const QVariant& weightInKgs) {
    if (unitName.isNull() || weightInKgs.isNull())
        return QString();
    // The stored weight has four decimals; whole kilograms round half away from zero.
    const double kg = std::round(roundHalfEven(toDouble(weightInKgs), 4));
    return QStringLiteral("%1 (%2)").arg(toText(unitName), QString::number(qint64(kg)));
}

LookupList loadUnits(const Conn& conn) {
    Query q(conn,
            QStringLiteral("SELECT UnitId, UnitName, WeightInKgs FROM Units ORDER BY UnitId"));
    q.exec();
    LookupList list;
    while (q.next())
        list.push_back({unitDisplayName(q.value(1), q.value(2)), toText(q.value(0))});
    return list;
}

LookupList loadProcesses(const Conn& conn) {
    return load(conn, QStringLiteral("SELECT ProcessId AS ID, ProcessName AS Name "
                                     "FROM Processes ORDER BY ProcessId"));
}

LookupList loadList(const Conn& conn, const QString& sql, const QVariantList& binds) {
    return load(conn, sql, binds);
}

QString GetRateUnitName(const Conn& conn, qint64 commodityId) {
    Query q(conn, QStringLiteral("SELECT Units.UnitName, Units.WeightInKgs FROM Units "
                                 "INNER JOIN Commodities ON Units.UnitId = Commodities.RateUnitId "
                                 "WHERE Commodities.CommodityId = ?"));
    q.bind(commodityId).exec();
    return q.next() ? unitDisplayName(q.value(0), q.value(1)) : QString();
}

QHash<QString, double> unitWeights(const Conn& conn) {
    Query q(conn, QStringLiteral("SELECT UnitId, WeightInKgs FROM Units"));
    q.exec();
    QHash<QString, double> weights;
    while (q.next())
        weights.insert(toText(q.value(0)), toDouble(q.value(1)));
    return weights;
}

int indexOfName(const LookupList& list, const QString& text) {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list[i].name == text)
            return int(i);
    return -1;
}

QStringList listNames(const LookupList& list) {
    QStringList out;
    for (const LookupItem& item : list)
        out << item.name;
    return out;
}

QString findKey(const LookupList& list, const QString& text) {
    const int at = indexOfName(list, text);
    return at < 0 ? QStringLiteral("0") : list[std::size_t(at)].key;
}

Currency SumGridColumn(const QAbstractItemModel& model, int column, int role) {
    Currency total;
    if (column < 0 || column >= model.columnCount())
        return total;
    for (int r = 0; r < model.rowCount(); ++r)
        total += Currency::fromDouble(leadingNumber(model.index(r, column).data(role).toString()));
    return total;
}

QString likeCondition(const Conn& conn, const QString& column) {
    return conn.caselessLike(column, QStringLiteral("?")) + QStringLiteral(" ESCAPE '!'");
}

namespace {
QString escapeLike(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('!') || c == QLatin1Char('%') || c == QLatin1Char('_'))
            out += QLatin1Char('!');
        out += c;
    }
    return out;
}
} // namespace

QString likeStartsWith(const QString& text) {
    return escapeLike(text) + QLatin1Char('%');
}

QString likeContains(const QString& text) {
    return QLatin1Char('%') + escapeLike(text) + QLatin1Char('%');
}

} // namespace gm
