#include "MasterTables.h"

namespace gm::host {

namespace {

FieldDef text(const char* column, const char* caption, int maxLength = 0) {
    FieldDef f;
    f.column = QString::fromLatin1(column);
    f.caption = QString::fromLatin1(caption);
    f.maxLength = maxLength;
    return f;
}

FieldDef typed(const char* column, const char* caption, FieldType type) {
    FieldDef f = text(column, caption);
    f.type = type;
    return f;
}

FieldDef lookup(const char* column, const char* caption, const char* sql, bool intKey = true) {
    FieldDef f = typed(column, caption, FieldType::Lookup);
    f.lookupSql = QString::fromLatin1(sql);
    f.lookupIntKey = intKey;
    return f;
}

FieldDef intKey(const char* column, const char* caption) {
    FieldDef f = typed(column, caption, FieldType::Integer);
    f.key = f.required = f.autoKey = f.nonNegative = true;
    return f;
}

FieldDef name(const char* column, const char* caption, int maxLength = 100) {
    FieldDef f = text(column, caption, maxLength);
    f.required = f.unique = true;
    return f;
}

FieldDef flag(const char* column, const char* caption) {
    return typed(column, caption, FieldType::Flag);
}

FieldDef amount(const char* column, const char* caption) {
    FieldDef f = typed(column, caption, FieldType::Decimal);
    f.nonNegative = true;
    return f;
}

// A unit reads as its name and its weight in whole kilograms, "Mound (40)", as everywhere.
const char* kUnitList =
    "SELECT UnitId, UnitName || ' (' || CAST(CAST(ROUND(WeightInKgs) AS INTEGER) AS TEXT) || ')' "
    "FROM Units ORDER BY UnitId";
const char* kAccountList =
    "SELECT AccountNo, AccountNo || ' ' || COALESCE(AccountName, '') FROM ChartOfAccounts "
    "ORDER BY AccountNo";

std::vector<TableDef> build() {
    std::vector<TableDef> all;

    {
        TableDef t;
        t.id = QStringLiteral("parties");
        t.noun = QStringLiteral("party");
        t.title = QStringLiteral("Parties");
        t.table = QStringLiteral("ChartOfAccounts");
        t.secondaryTable = QStringLiteral("Parties");
        t.secondaryKeyColumn = QStringLiteral("PartyId");
        FieldDef no = text("AccountNo", "Account no.", 20);
        no.key = no.required = true;
        FieldDef parent = lookup("ParentAccountNo", "Parent account", kAccountList, false);
        FieldDef city =
            lookup("CityId", "City", "SELECT CityId, CityName FROM Cities ORDER BY CityName");
        city.secondary = true;
        FieldDef seller = flag("IsSeller", "Seller"), buyer = flag("IsBuyer", "Buyer"),
                 broker = flag("IsBroker", "Broker");
        seller.secondary = buyer.secondary = broker.secondary = true;
        t.fields = {no,     name("AccountName", "Name"),
                    parent, flag("IsEditable", "Editable"),
                    city,   seller,
                    buyer,  broker};
        t.fields[1].unique = false; // two parties of one name are told apart by their city
        t.orderBy = QStringLiteral("AccountName");
        t.childColumn = QStringLiteral("ParentAccountNo");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("accounts");
        t.noun = QStringLiteral("account");
        t.title = QStringLiteral("Accounts");
        t.table = QStringLiteral("ChartOfAccounts");
        FieldDef no = text("AccountNo", "Account no.", 20);
        no.key = no.required = true;
        FieldDef accountName = text("AccountName", "Name", 100);
        accountName.required = true;
        t.fields = {no, accountName,
                    lookup("ParentAccountNo", "Parent account", kAccountList, false),
                    flag("IsEditable", "Editable")};
        t.orderBy = QStringLiteral("AccountNo");
        t.childColumn = QStringLiteral("ParentAccountNo");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("cities");
        t.noun = QStringLiteral("city");
        t.title = QStringLiteral("Cities");
        t.table = QStringLiteral("Cities");
        t.fields = {intKey("CityId", "City no."), name("CityName", "City")};
        t.orderBy = QStringLiteral("CityName");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("commodities");
        t.noun = QStringLiteral("commodity");
        t.title = QStringLiteral("Commodities");
        t.table = QStringLiteral("Commodities");
        FieldDef cls = typed("CommodityClassId", "Class", FieldType::Integer);
        cls.nonNegative = true;
        FieldDef rateUnit = lookup("RateUnitId", "Rate unit", kUnitList);
        FieldDef stockUnit = lookup("StockUnitId", "Stock unit", kUnitList);
        rateUnit.required = stockUnit.required = true; // every value is divided by its weight
        t.fields = {intKey("CommodityId", "Commodity no."),
                    name("CommodityName", "Commodity"),
                    cls,
                    lookup("DefaultBagsTypeID", "Default bag type",
                           "SELECT BagsTypeId, BagsType FROM BagsTypes ORDER BY BagsTypeId"),
                    rateUnit,
                    stockUnit,
                    amount("SaleRate", "Sale rate"),
                    flag("IsPurchaseable", "Purchaseable"),
                    flag("IsSaleable", "Saleable"),
                    flag("IsWheatCommodity", "Wheat")};
        t.orderBy = QStringLiteral("CommodityId");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("units");
        t.noun = QStringLiteral("unit");
        t.title = QStringLiteral("Units");
        t.table = QStringLiteral("Units");
        FieldDef kgs = amount("WeightInKgs", "Weight in kg");
        kgs.required = true;
        t.fields = {intKey("UnitId", "Unit no."), name("UnitName", "Unit", 50), kgs};
        t.orderBy = QStringLiteral("UnitId");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("bagtypes");
        t.noun = QStringLiteral("bag type");
        t.title = QStringLiteral("Bag types");
        t.table = QStringLiteral("BagsTypes");
        FieldDef cap = amount("BagCapacity", "Bag weight (kg)");
        cap.required = true;
        t.fields = {intKey("BagsTypeId", "Bag type no."), name("BagsType", "Bag type", 50), cap};
        t.orderBy = QStringLiteral("BagsTypeId");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("bagclasses");
        t.noun = QStringLiteral("bag class");
        t.title = QStringLiteral("Bag classes");
        t.table = QStringLiteral("BagsClasses");
        t.fields = {intKey("BagsClassId", "Bag class no."), name("BagsClass", "Bag class", 50)};
        t.orderBy = QStringLiteral("BagsClassId");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("processes");
        t.noun = QStringLiteral("process");
        t.title = QStringLiteral("Processes");
        t.table = QStringLiteral("Processes");
        t.fields = {intKey("ProcessId", "Process no."), name("ProcessName", "Process")};
        t.orderBy = QStringLiteral("ProcessId");
        t.ownedBy = {QStringLiteral("ProcessComponents")};
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("processcomponents");
        t.noun = QStringLiteral("commodity of the process");
        t.title = QStringLiteral("Input and output commodities");
        t.table = QStringLiteral("ProcessComponents");
        FieldDef process = typed("ProcessId", "Process", FieldType::Integer);
        process.key = process.required = process.hidden = true;
        FieldDef commodity =
            lookup("CommodityId", "Commodity",
                   "SELECT CommodityId, CommodityName FROM Commodities ORDER BY CommodityId");
        commodity.key = commodity.required = true;
        t.fields = {process, commodity, flag("IsForInput", "Input"), flag("IsForOutPut", "Output")};
        t.orderBy = QStringLiteral("CommodityId");
        t.parentColumn = QStringLiteral("ProcessId");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("prcentres");
        t.noun = QStringLiteral("PR centre");
        t.title = QStringLiteral("PR centres");
        t.table = QStringLiteral("PRCenters");
        t.fields = {intKey("CenterId", "Centre no."), name("CenterName", "PR centre")};
        t.orderBy = QStringLiteral("CenterId");
        all.push_back(t);
    }
    {
        TableDef t;
        t.id = QStringLiteral("ledger");
        t.noun = QStringLiteral("balance");
        t.title = QStringLiteral("Opening balances");
        t.table = QStringLiteral("LedgerEntries");
        FieldDef id = typed("EntryId", "Entry no.", FieldType::Integer);
        id.key = id.hidden = id.generated = true;
        FieldDef account = lookup("AccountNo", "Account", kAccountList, false);
        account.required = true;
        FieldDef date = typed("EntryDate", "Date", FieldType::Date);
        date.required = true;
        t.fields = {id, account, date, amount("Debit", "Debit"), amount("Credit", "Credit")};
        t.orderBy = QStringLiteral("EntryId");
        all.push_back(t);
    }
    return all;
}

} // namespace

int TableDef::fieldIndex(const QString& column) const {
    for (size_t i = 0; i < fields.size(); ++i)
        if (fields[i].column.compare(column, Qt::CaseInsensitive) == 0)
            return int(i);
    return -1;
}

std::vector<int> TableDef::keyFields() const {
    std::vector<int> keys;
    for (size_t i = 0; i < fields.size(); ++i)
        if (fields[i].key)
            keys.push_back(int(i));
    return keys;
}

const std::vector<TableDef>& masterTables() {
    static const std::vector<TableDef> all = build();
    return all;
}

const TableDef* findMasterTable(const QString& id) {
    for (const TableDef& t : masterTables())
        if (t.id == id)
            return &t;
    return nullptr;
}

const TableDef* detailOf(const TableDef& def) {
    if (def.id == QLatin1String("processes"))
        return findMasterTable(QStringLiteral("processcomponents"));
    return nullptr;
}

} // namespace gm::host
