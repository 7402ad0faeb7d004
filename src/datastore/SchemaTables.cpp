#include "datastore/SchemaParts.h"

namespace gm::schema {

namespace {

// The tables are written once in a neutral form; the words in braces become each engine's own
// type. That keeps the two engines from drifting apart column by column.
//   {KEY}    surrogate whole-number key filled by the database when an insert leaves it out
//   {MONEY}  money, weights and counts: four decimals
//   {COST}   a cost per kilogram or per bag: averaged again and again, so more decimals
//   {DATE}   a calendar day;  {STAMP} a day with its time
//   {NAME}   a name that people search and sort by
//   {TEXT}   any other text, unbounded
//   {FLAG}   0 or 1
const char* const kTables[] = {
    // --- Master data of the host, only read by the component -------------------------------
    R"(CREATE TABLE Cities (
        CityId integer PRIMARY KEY,
        CityName {NAME} NOT NULL))",

    R"(CREATE TABLE ChartOfAccounts (
        AccountNo {TEXT} PRIMARY KEY,
        AccountName {NAME} NOT NULL,
        ParentAccountNo {TEXT},
        IsEditable {FLAG}))",
    "CREATE INDEX IX_ChartOfAccounts_Parent ON ChartOfAccounts (ParentAccountNo)",

    R"(CREATE TABLE Parties (
        PartyId {TEXT} PRIMARY KEY REFERENCES ChartOfAccounts (AccountNo),
        CityId integer REFERENCES Cities (CityId),
        IsSeller {FLAG},
        IsBuyer {FLAG},
        IsBroker {FLAG}))",
    "CREATE INDEX IX_Parties_City ON Parties (CityId)",

    R"(CREATE TABLE Units (
        UnitId integer PRIMARY KEY,
        UnitName {NAME} NOT NULL,
        WeightInKgs {MONEY} NOT NULL))",

    R"(CREATE TABLE BagsTypes (
        BagsTypeId integer PRIMARY KEY,
        BagsType {NAME} NOT NULL,
        BagCapacity {MONEY} NOT NULL DEFAULT 0))",

    R"(CREATE TABLE BagsClasses (
        BagsClassId integer PRIMARY KEY,
        BagsClass {NAME} NOT NULL))",

    R"(CREATE TABLE Commodities (
        CommodityId integer PRIMARY KEY,
        CommodityName {NAME} NOT NULL,
        CommodityClassId integer,
        DefaultBagsTypeID integer REFERENCES BagsTypes (BagsTypeId),
        RateUnitId integer REFERENCES Units (UnitId),
        StockUnitId integer REFERENCES Units (UnitId),
        SaleRate {MONEY} DEFAULT 0,
        IsPurchaseable {FLAG},
        IsSaleable {FLAG},
        IsWheatCommodity {FLAG}))",

    R"(CREATE TABLE Processes (
        ProcessId integer PRIMARY KEY,
        ProcessName {NAME} NOT NULL))",

    R"(CREATE TABLE ProcessComponents (
        ProcessId integer NOT NULL REFERENCES Processes (ProcessId),
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        IsForInput {FLAG},
        IsForOutPut {FLAG},
        PRIMARY KEY (ProcessId, CommodityId)))",
    "CREATE INDEX IX_ProcessComponents_Commodity ON ProcessComponents (CommodityId)",

    R"(CREATE TABLE PRCenters (
        CenterId integer PRIMARY KEY,
        CenterName {NAME} NOT NULL))",

    // The host's ledger, read only for a party's balance.
    R"(CREATE TABLE LedgerEntries (
        EntryId {KEY},
        AccountNo {TEXT} NOT NULL REFERENCES ChartOfAccounts (AccountNo),
        EntryDate {DATE} NOT NULL,
        Debit {MONEY} NOT NULL DEFAULT 0,
        Credit {MONEY} NOT NULL DEFAULT 0))",
    "CREATE INDEX IX_LedgerEntries_Account ON LedgerEntries (AccountNo, EntryDate)",

    // --- Purchase documents ---------------------------------------------------------------
    R"(CREATE TABLE PContracts (
        ContractId integer PRIMARY KEY,
        ContractDate {DATE} NOT NULL,
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        BrokerId {TEXT} REFERENCES ChartOfAccounts (AccountNo),
        Brokerage {MONEY} DEFAULT 0,
        IsBrokeragePerBag {FLAG},
        PartyId {TEXT} NOT NULL REFERENCES ChartOfAccounts (AccountNo),
        RateUnitId integer REFERENCES Units (UnitId),
        ContractMode {TEXT},
        Quantity {MONEY} DEFAULT 0,
        RatePerUnit {MONEY} DEFAULT 0,
        IsWithBags {FLAG},
        IsDeliveryInMill {FLAG},
        DeliveryStartDate {DATE},
        DeliveryEndDate {DATE},
        ModeOfPayment {TEXT},
        BagsDeduction {MONEY} DEFAULT 0,
        OtherDeduction {MONEY} DEFAULT 0,
        IsPaymentOnSite {FLAG},
        OtherTerms {TEXT},
        IsCompleted {FLAG},
        IsPosted {FLAG}))",
    "CREATE INDEX IX_PContracts_Date ON PContracts (ContractDate)",
    "CREATE INDEX IX_PContracts_Party ON PContracts (PartyId)",
    "CREATE INDEX IX_PContracts_Broker ON PContracts (BrokerId)",
    "CREATE INDEX IX_PContracts_Commodity ON PContracts (CommodityId)",

    R"(CREATE TABLE DFCPayments (
        PaymentId integer PRIMARY KEY,
        PaymentDate {DATE} NOT NULL,
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        BankAccountNo {TEXT} REFERENCES ChartOfAccounts (AccountNo),
        ChallanNo {TEXT},
        NoOfBags {MONEY} DEFAULT 0,
        BagWeight {MONEY} DEFAULT 0,
        TotalWeight {MONEY} DEFAULT 0,
        RateUnitId integer REFERENCES Units (UnitId),
        RatePerUnit {MONEY} DEFAULT 0,
        TTLValueWheet {MONEY} DEFAULT 0,
        BagsTypeId integer REFERENCES BagsTypes (BagsTypeId),
        BagsClassId integer REFERENCES BagsClasses (BagsClassId),
        BagsQty {MONEY} DEFAULT 0,
        PricePerBag {MONEY} DEFAULT 0,
        TTLValueBags {MONEY} DEFAULT 0,
        Cost {COST} DEFAULT 0,
        BagsCost {COST} DEFAULT 0,
        UserNo smallint,
        IsPosted {FLAG}))",
    "CREATE INDEX IX_DFCPayments_Date ON DFCPayments (PaymentDate)",
    "CREATE INDEX IX_DFCPayments_Commodity ON DFCPayments (CommodityId)",
    "CREATE INDEX IX_DFCPayments_Bank ON DFCPayments (BankAccountNo)",

    // A permit number is unique across all payments: arrivals point at it alone.
    R"(CREATE TABLE AuthorityLetters (
        PaymentId integer NOT NULL REFERENCES DFCPayments (PaymentId),
        PermitNo {TEXT} NOT NULL,
        Date {DATE},
        CenterId integer REFERENCES PRCenters (CenterId),
        NoOfBags {MONEY} DEFAULT 0,
        BagWeight {MONEY} DEFAULT 0,
        TotalWeight {MONEY} DEFAULT 0,
        IsWithBags {FLAG},
        PRIMARY KEY (PaymentId, PermitNo),
        UNIQUE (PermitNo)))",
    "CREATE INDEX IX_AuthorityLetters_Center ON AuthorityLetters (CenterId)",

    R"(CREATE TABLE Arrivals (
        ArrivalId integer PRIMARY KEY,
        ArrivalDate {DATE} NOT NULL,
        PermitNo {TEXT} REFERENCES AuthorityLetters (PermitNo),
        CenterId integer REFERENCES PRCenters (CenterId),
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        SellerId {TEXT} REFERENCES ChartOfAccounts (AccountNo),
        ContractId integer REFERENCES PContracts (ContractId),
        IsPosted {FLAG}))",
    "CREATE INDEX IX_Arrivals_Date ON Arrivals (ArrivalDate)",
    "CREATE INDEX IX_Arrivals_Seller ON Arrivals (SellerId)",
    "CREATE INDEX IX_Arrivals_Contract ON Arrivals (ContractId)",
    "CREATE INDEX IX_Arrivals_Center ON Arrivals (CenterId)",
    "CREATE INDEX IX_Arrivals_Permit ON Arrivals (PermitNo)",
    "CREATE INDEX IX_Arrivals_Commodity ON Arrivals (CommodityId)",

    // One row per vehicle of an arrival; a vehicle number appears once per arrival, which is
    // what an invoice line points at.
    R"(CREATE TABLE ArrivalsBody (
        ArrivalId integer NOT NULL REFERENCES Arrivals (ArrivalId),
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        VehicleNo {TEXT} NOT NULL,
        VehicleNoText {TEXT},
        BagsClassId integer REFERENCES BagsClasses (BagsClassId),
        BagsTypeId integer REFERENCES BagsTypes (BagsTypeId),
        NoOfBags {MONEY} DEFAULT 0,
        BagWeight {MONEY} DEFAULT 0,
        BagsDeduction {MONEY} DEFAULT 0,
        OtherDeduction {MONEY} DEFAULT 0,
        NetWeight {MONEY} DEFAULT 0,
        DriverName {NAME},
        BiltyNo {TEXT},
        RateUnit {MONEY} DEFAULT 0,
        BagsRate {MONEY} DEFAULT 0,
        RateUnitId integer REFERENCES Units (UnitId),
        Cost {COST} DEFAULT 0,
        BagsCost {COST} DEFAULT 0,
        TareWeight {MONEY} DEFAULT 0,
        PRIMARY KEY (ArrivalId, VehicleNo)))",
    "CREATE INDEX IX_ArrivalsBody_Commodity ON ArrivalsBody (CommodityId)",
    "CREATE INDEX IX_ArrivalsBody_Vehicle ON ArrivalsBody (VehicleNo)",
    "CREATE INDEX IX_ArrivalsBody_Bags ON ArrivalsBody (BagsTypeId, BagsClassId)",

    R"(CREATE TABLE Purchases (
        PurchaseId integer PRIMARY KEY,
        PurchaseDate {DATE} NOT NULL,
        ContractId integer REFERENCES PContracts (ContractId),
        SellerId {TEXT} REFERENCES ChartOfAccounts (AccountNo),
        BrokerId {TEXT} REFERENCES ChartOfAccounts (AccountNo),
        Brokerage {MONEY} DEFAULT 0,
        IsBrokeragePerBag {FLAG},
        Unloading {MONEY} DEFAULT 0,
        Freight {MONEY} DEFAULT 0,
        Expenses {MONEY} DEFAULT 0,
        PreviousCredit {MONEY} DEFAULT 0,
        PaidAmount {MONEY} DEFAULT 0,
        SpecialDiscount {MONEY} DEFAULT 0,
        CommPerMound {MONEY} DEFAULT 0,
        CommValue {MONEY} DEFAULT 0,
        WHTaxRatio {MONEY} DEFAULT 0,
        WHTaxValue {MONEY} DEFAULT 0,
        IsPosted {FLAG}))",
    "CREATE INDEX IX_Purchases_Date ON Purchases (PurchaseDate)",
    "CREATE INDEX IX_Purchases_Seller ON Purchases (SellerId)",
    "CREATE INDEX IX_Purchases_Contract ON Purchases (ContractId)",
    "CREATE INDEX IX_Purchases_Broker ON Purchases (BrokerId)",

    // A vehicle is invoiced once. The line also points at the arrival head, so that removing
    // an invoiced arrival is refused by name before any of its vehicles is touched.
    R"(CREATE TABLE PurchaseBody (
        PurchaseId integer NOT NULL REFERENCES Purchases (PurchaseId),
        ArrivalId integer NOT NULL REFERENCES Arrivals (ArrivalId),
        VehicleNo {TEXT} NOT NULL,
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        BagWeight {MONEY} DEFAULT 0,
        NoOfBags {MONEY} DEFAULT 0,
        TotalWeight {MONEY} DEFAULT 0,
        RateUnitId integer REFERENCES Units (UnitId),
        RatePerUnit {MONEY} DEFAULT 0,
        BagRate {MONEY} DEFAULT 0,
        TTLValue {MONEY} DEFAULT 0,
        Cost {COST} DEFAULT 0,
        BagsCost {COST} DEFAULT 0,
        IsWithBags {FLAG},
        BagsPurchased {FLAG},
        PRIMARY KEY (PurchaseId, ArrivalId, VehicleNo),
        UNIQUE (ArrivalId, VehicleNo),
        FOREIGN KEY (ArrivalId, VehicleNo) REFERENCES ArrivalsBody (ArrivalId, VehicleNo)))",
    "CREATE INDEX IX_PurchaseBody_Vehicle ON PurchaseBody (VehicleNo)",
    "CREATE INDEX IX_PurchaseBody_Commodity ON PurchaseBody (CommodityId)",

    // --- Production -----------------------------------------------------------------------
    R"(CREATE TABLE DailyProduction (
        ProductionDate {DATE} NOT NULL,
        ProcessId integer NOT NULL REFERENCES Processes (ProcessId),
        FactoryTime {MONEY} DEFAULT 0,
        Remarks {TEXT},
        ProductionCharges {MONEY} DEFAULT 0,
        OtherExpenses {MONEY} DEFAULT 0,
        IsPosted {FLAG},
        AddBardana {FLAG},
        PRIMARY KEY (ProductionDate, ProcessId)))",
    "CREATE INDEX IX_DailyProduction_Process ON DailyProduction (ProcessId)",

    R"(CREATE TABLE Consumption (
        ConsumptionId {KEY},
        ProductionDate {DATE} NOT NULL,
        ProcessId integer NOT NULL,
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        BagsTypeId integer REFERENCES BagsTypes (BagsTypeId),
        BagsClassId integer REFERENCES BagsClasses (BagsClassId),
        NoOfBags {MONEY} DEFAULT 0,
        BagWeight {MONEY} DEFAULT 0,
        Cost {COST} DEFAULT 0,
        AddBardana smallint,
        FOREIGN KEY (ProductionDate, ProcessId)
            REFERENCES DailyProduction (ProductionDate, ProcessId)))",
    "CREATE INDEX IX_Consumption_Day ON Consumption (ProductionDate, ProcessId)",
    "CREATE INDEX IX_Consumption_Commodity ON Consumption (CommodityId)",

    R"(CREATE TABLE Production (
        ProductionLineId {KEY},
        ProductionDate {DATE} NOT NULL,
        ProcessId integer NOT NULL,
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        BagsTypeId integer REFERENCES BagsTypes (BagsTypeId),
        BagsClassId integer REFERENCES BagsClasses (BagsClassId),
        NoOfBags {MONEY} DEFAULT 0,
        BagWeight {MONEY} DEFAULT 0,
        Cost {COST} DEFAULT 0,
        FOREIGN KEY (ProductionDate, ProcessId)
            REFERENCES DailyProduction (ProductionDate, ProcessId)))",
    "CREATE INDEX IX_Production_Day ON Production (ProductionDate, ProcessId)",
    "CREATE INDEX IX_Production_Commodity ON Production (CommodityId)",

    R"(CREATE TABLE HourlyProduction (
        SerialNo integer PRIMARY KEY,
        ProcessTime {STAMP} NOT NULL))",
    "CREATE INDEX IX_HourlyProduction_Time ON HourlyProduction (ProcessTime)",

    R"(CREATE TABLE HProductionBody (
        HProductionLineId {KEY},
        SerialNo integer NOT NULL REFERENCES HourlyProduction (SerialNo),
        CommodityId integer NOT NULL REFERENCES Commodities (CommodityId),
        BagsTypeId integer REFERENCES BagsTypes (BagsTypeId),
        BagsClassId integer REFERENCES BagsClasses (BagsClassId),
        NoOfBags {MONEY} DEFAULT 0,
        BagWeight {MONEY} DEFAULT 0,
        TTLWeight {MONEY} DEFAULT 0))",
    "CREATE INDEX IX_HProductionBody_Serial ON HProductionBody (SerialNo)",

    // --- Stock: quantities kept by the database itself, costs moved by the invoices -------
    R"(CREATE TABLE CurrentStock (
        CommodityId integer PRIMARY KEY REFERENCES Commodities (CommodityId),
        TotalWeight {MONEY} NOT NULL DEFAULT 0,
        Cost {COST} NOT NULL DEFAULT 0))",

    R"(CREATE TABLE BagsCurrentStock (
        BagsTypeId integer NOT NULL REFERENCES BagsTypes (BagsTypeId),
        BagsClassId integer NOT NULL REFERENCES BagsClasses (BagsClassId),
        NoOfBags {MONEY} NOT NULL DEFAULT 0,
        Cost {COST} NOT NULL DEFAULT 0,
        PRIMARY KEY (BagsTypeId, BagsClassId)))",
    "CREATE INDEX IX_BagsCurrentStock_Class ON BagsCurrentStock (BagsClassId)",
};

QString render(QString ddl, Engine engine) {
    const bool pg = engine == Engine::PostgreSQL;
    struct Word {
        const char* key;
        const char* sqlite;
        const char* postgres;
    };
    static const Word words[] = {
        {"{KEY}", "integer PRIMARY KEY", "integer GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY"},
        {"{MONEY}", "numeric", "numeric(19,4)"},
        {"{COST}", "numeric", "numeric(24,10)"},
        {"{DATE}", "date", "date"},
        {"{STAMP}", "datetime", "timestamp"},
        {"{NAME}", "text COLLATE NOCASE", "text"},
        {"{TEXT}", "text", "text"},
        {"{FLAG}", "smallint NOT NULL DEFAULT 0", "smallint NOT NULL DEFAULT 0"},
    };
    for (const Word& w : words)
        ddl.replace(QLatin1String(w.key), QLatin1String(pg ? w.postgres : w.sqlite));
    return ddl;
}

} // namespace

QStringList tableStatements(Engine engine) {
    QStringList out;
    for (const char* ddl : kTables)
        out << render(QString::fromUtf8(ddl), engine);
    return out;
}

} // namespace gm::schema
