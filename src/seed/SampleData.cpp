#include "seed/SampleData.h"

#include "seed/SampleArrivals.h"
#include "seed/SampleContracts.h"
#include "seed/SampleDFC.h"
#include "seed/SampleInvoices.h"
#include "seed/SampleProduction.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"

#include <QDate>

namespace gm {

namespace {

struct City {
    int id;
    const char* name;
};
const City kCities[] = {{1, "Lahore"},  {2, "Faisalabad"}, {3, "Okara"},
                        {4, "Sahiwal"}, {5, "Multan"},     {6, "Gujranwala"}};

struct Account {
    const char* no;
    const char* name;
    const char* parent;
    int editable;
};
// The heads of the chart and the mill's cash and bank accounts. The bank list offers "111"
// and whatever sits under "112".
const Account kAccounts[] = {
    {"1", "Assets", nullptr, 0},
    {"11", "Current Assets", "1", 0},
    {"111", "Cash in Hand", "11", 1},
    {"112", "Banks", "11", 0},
    {"112001", "Habib Bank Okara Road", "112", 1},
    {"112002", "National Bank Main Bazar", "112", 1},
    {"112003", "Allied Bank Grain Market", "112", 1},
    {"6", "Trade Parties", nullptr, 0},
};

struct Party {
    const char* no;
    const char* name;
    int city; // 0: none
    int seller, buyer, broker, editable;
};
const Party kParties[] = {
    {"6000001", "District Food Controller", 3, 1, 0, 0, 1},
    {"6100001", "Haji Muhammad Aslam & Sons", 3, 1, 0, 0, 1},
    {"6100002", "Chaudhry Grain Traders", 4, 1, 0, 0, 1},
    {"6100003", "Rana Arshad Zamindar", 3, 1, 0, 0, 1},
    {"6100004", "Malik Tariq Farms", 0, 1, 0, 0, 1},
    {"6100005", "Sheikh's Grain Company", 2, 1, 0, 0, 1},
    {"6100006", "Bhatti Brothers", 5, 1, 0, 0, 0},
    {"6200001", "Al-Madina Flour Traders", 1, 0, 1, 0, 1},
    {"6200002", "Punjab Atta Distributors", 6, 0, 1, 0, 1},
    {"6200003", "Noor Bakers", 1, 0, 1, 0, 1},
    {"6300001", "Mian Javed Commission Agent", 3, 0, 0, 1, 1},
    {"6300002", "Iqbal & Co Brokers", 4, 0, 0, 1, 1},
    {"6300003", "Zafar Ali Arhti", 2, 1, 0, 1, 1},
};

struct Named {
    int id;
    const char* name;
    double amount;
};
const Named kUnits[] = {{1, "Kg", 1}, {2, "Mound", 40}, {3, "Quintal", 100}};
const Named kBagTypes[] = {{1, "PP 100 Kg", 100},
                           {2, "Jute 100 Kg", 100},
                           {3, "PP 50 Kg", 50},
                           {4, "Jute 50 Kg", 50},
                           {5, "PP 10 Kg", 10}};
const Named kBagClasses[] = {{1, "New", 0}, {2, "Used", 0}, {3, "Repaired", 0}};
const Named kCenters[] = {{1, "PR Centre Okara", 0},
                          {2, "PR Centre Renala Khurd", 0},
                          {3, "PR Centre Depalpur", 0},
                          {4, "PR Centre Sahiwal", 0}};

struct Commodity {
    int id;
    const char* name;
    int classId; // 1 wheat, 2 flour products, 3 by-products
    int bagType, rateUnit, stockUnit;
    double saleRate;
    int purchaseable, saleable, wheat;
};
const Commodity kCommodities[] = {
    {1, "Wheat Local", 1, 2, 2, 1, 0, 1, 0, 1},    {2, "Wheat Government", 1, 2, 2, 1, 0, 1, 0, 1},
    {3, "Wheat Imported", 1, 1, 2, 1, 0, 1, 0, 1}, {4, "Flour", 2, 3, 2, 1, 4400, 0, 1, 0},
    {5, "Fine Flour", 2, 3, 2, 1, 4800, 0, 1, 0},  {6, "Suji", 2, 3, 2, 1, 5200, 0, 1, 0},
    {7, "Bran", 3, 1, 2, 1, 2600, 0, 1, 0},
};

const Named kProcesses[] = {{1, "Milling", 0}, {2, "Fine Milling", 0}};
struct Component {
    int process, commodity, input, output;
};
const Component kComponents[] = {
    {1, 1, 1, 0}, {1, 2, 1, 0}, {1, 3, 1, 0}, {1, 4, 0, 1}, {1, 7, 0, 1},
    {2, 1, 1, 0}, {2, 2, 1, 0}, {2, 5, 0, 1}, {2, 6, 0, 1}, {2, 7, 0, 1},
};

struct Opening {
    const char* account;
    double debit, credit;
};
// Balances brought forward at the start of the year; a seller the mill owes reads negative.
const Opening kOpenings[] = {
    {"6100001", 0, 250000}, {"6100002", 50000, 0}, {"6200001", 180000, 0},
    {"6300001", 0, 15000},  {"111", 75000, 0},     {"112001", 1500000, 0},
};

QVariant text(const char* s) {
    return s ? QVariant(QString::fromUtf8(s)) : QVariant();
}

} // namespace

namespace {

void writeMasterData(const Conn& conn) {
    const qint64 existing =
        toInt(scalar(conn, QStringLiteral("SELECT (SELECT COUNT(*) FROM ChartOfAccounts) + "
                                          "(SELECT COUNT(*) FROM Commodities) + "
                                          "(SELECT COUNT(*) FROM Cities)")));
    if (existing > 0)
        throw DbError(QStringLiteral("The database already holds accounts, commodities or cities; "
                                     "the sample mill is loaded only into an empty database."),
                      QStringLiteral("Sample mill"));

    for (const City& c : kCities)
        execute(conn, QStringLiteral("INSERT INTO Cities (CityId, CityName) VALUES (?, ?)"),
                {c.id, text(c.name)});

    const QString account = QStringLiteral("INSERT INTO ChartOfAccounts (AccountNo, AccountName, "
                                           "ParentAccountNo, IsEditable) VALUES (?, ?, ?, ?)");
    for (const Account& a : kAccounts)
        execute(conn, account, {text(a.no), text(a.name), text(a.parent), a.editable});
    for (const Party& p : kParties) {
        execute(conn, account, {text(p.no), text(p.name), QStringLiteral("6"), p.editable});
        execute(conn,
                QStringLiteral("INSERT INTO Parties (PartyId, CityId, IsSeller, IsBuyer, IsBroker) "
                               "VALUES (?, ?, ?, ?, ?)"),
                {text(p.no), p.city ? QVariant(p.city) : QVariant(), p.seller, p.buyer, p.broker});
    }

    for (const Named& u : kUnits)
        execute(
            conn,
            QStringLiteral("INSERT INTO Units (UnitId, UnitName, WeightInKgs) VALUES (?, ?, ?)"),
            {u.id, text(u.name), u.amount});
    for (const Named& b : kBagTypes)
        execute(conn,
                QStringLiteral(
                    "INSERT INTO BagsTypes (BagsTypeId, BagsType, BagCapacity) VALUES (?, ?, ?)"),
                {b.id, text(b.name), b.amount});
    for (const Named& b : kBagClasses)
        execute(conn,
                QStringLiteral("INSERT INTO BagsClasses (BagsClassId, BagsClass) VALUES (?, ?)"),
                {b.id, text(b.name)});
    for (const Named& c : kCenters)
        execute(conn, QStringLiteral("INSERT INTO PRCenters (CenterId, CenterName) VALUES (?, ?)"),
                {c.id, text(c.name)});

    for (const Commodity& c : kCommodities)
        execute(conn,
                QStringLiteral("INSERT INTO Commodities (CommodityId, CommodityName, "
                               "CommodityClassId, DefaultBagsTypeID, RateUnitId, StockUnitId, "
                               "SaleRate, IsPurchaseable, IsSaleable, IsWheatCommodity) "
                               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                {c.id, text(c.name), c.classId, c.bagType, c.rateUnit, c.stockUnit, c.saleRate,
                 c.purchaseable, c.saleable, c.wheat});

    for (const Named& p : kProcesses)
        execute(conn,
                QStringLiteral("INSERT INTO Processes (ProcessId, ProcessName) VALUES (?, ?)"),
                {p.id, text(p.name)});
    for (const Component& c : kComponents)
        execute(conn,
                QStringLiteral("INSERT INTO ProcessComponents (ProcessId, CommodityId, IsForInput, "
                               "IsForOutPut) VALUES (?, ?, ?, ?)"),
                {c.process, c.commodity, c.input, c.output});

    const QDate yearStart(QDate::currentDate().month() >= 7 ? QDate::currentDate().year()
                                                            : QDate::currentDate().year() - 1,
                          7, 1);
    for (const Opening& o : kOpenings)
        execute(conn,
                QStringLiteral("INSERT INTO LedgerEntries (AccountNo, EntryDate, Debit, Credit) "
                               "VALUES (?, ?, ?, ?)"),
                {text(o.account), yearStart, o.debit, o.credit});
}

} // namespace

void loadSampleMasterData(const Conn& conn) {
    Transaction tx(conn, Transaction::Write);
    writeMasterData(conn);
    tx.commit();
}

void loadSampleMill(const Conn& conn) {
    Transaction tx(conn, Transaction::Write);
    writeMasterData(conn);

    // ---- Sample documents -------------------------------------------------------------------
    // Each document subsystem adds here the call that writes its own sample documents
    // (contracts, arrivals, ...) through its store, in the order in which they depend on one
    // another; the stores' own transactions join this one.
    loadSampleContracts(conn);
    loadSampleDFCPayments(conn);
    loadSampleArrivals(conn);
    loadSampleInvoices(conn);
    loadSampleProduction(conn);
    loadSampleHourlyProduction(conn);
    // ---- End of sample documents ------------------------------------------------------------

    tx.commit();
}

} // namespace gm
