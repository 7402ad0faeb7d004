#include "Actions.h"

#include "arrivals/ArrivalStore.h"
#include "contracts/ContractStore.h"
#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "dfc/DFCReport.h"
#include "dfc/DFCStore.h"
#include "dfc/DFCValidation.h"
#include "entry/LineGrid.h"
#include "Generator.h"
#include "invoices/FrmPurchaseInvoice.h"
#include "invoices/InvoiceReport.h"
#include "invoices/InvoiceStore.h"
#include "production/HourlyStore.h"
#include "production/ProductionStore.h"
#include "reports/Report.h"
#include "search/Search.h"
#include "services/Host.h"
#include "services/Lookups.h"
#include "widgets/LookupCombo.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSqlRecord>
#include <QTableView>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <algorithm>

namespace gm::bench {

namespace {

// Runs a statement and reads every row and field, as a screen filling a list does.
int readAll(const Conn& conn, const QString& sql, std::initializer_list<QVariant> values = {}) {
    Query q(conn, sql);
    q.bind(values);
    q.exec();
    int rows = 0;
    const int fields = q.raw().record().count();
    while (q.next()) {
        for (int i = 0; i < fields; ++i)
            (void)q.value(i);
        ++rows;
    }
    return rows;
}

int listSize(const LookupList& l) {
    return int(l.size());
}

// The name filter of the old screens: the party name worked out per row and matched anywhere.
QString like(const Conn& conn) {
    return QStringLiteral(" ") + conn.likeOperator() + QStringLiteral(" ?");
}

// A busy day's lot on one invoice: fifty vehicles of the bench seller, five to an arrival, each
// priced, with freight, commission and tax. Made before a repetition and taken away after it,
// so the mill is left as it was found: the invoice's removal takes its lots back out of the
// average costs, the arrivals' removal takes their weight back out of the stock.
class FiftyLineInvoice {
public:
    static constexpr int kArrivals = 10;
    static constexpr int kVehicles = 5;

    FiftyLineInvoice(const Conn& conn, const Subjects& s)
        : m_conn(conn), m_seller(s.seller), m_day(s.today) {}

    // The arrivals saved and the invoice drawn up as the seller route fills the screen, then
    // priced; saved as well when `save`.
    void make(bool save) {
        ArrivalStore arrivals(m_conn);
        for (int a = 0; a < kArrivals; ++a) {
            ArrivalDocument doc;
            doc.arrivalId = arrivals.nextArrivalId();
            doc.arrivalDate = m_day;
            // Two commodities and four bag stock rows, so the costing locks and moves several.
            doc.commodityId = 1 + a % 2;
            doc.sellerId = m_seller;
            for (int v = 0; v < kVehicles; ++v) {
                ArrivalLine l;
                l.vehicleNo = QStringLiteral("INV-%1-%2").arg(a + 1).arg(v + 1);
                l.bagsClassId = 1 + a % 2;
                l.bagsTypeId = 1 + v % 2;
                l.noOfBags = 250 + 10 * v + a;
                l.bagWeight = 100;
                l.bagsDeduction = 1;
                l.otherDeduction = 5 + v;
                l.rateUnit = 3500;
                l.rateUnitId = 2;
                l.weightInKgs = 40;
                doc.lines.push_back(l);
            }
            arrivals.save(doc, true);
            m_arrivals.push_back(doc.arrivalId);
        }

        InvoiceStore store(m_conn, 1);
        InvoiceDocument& d = m_invoice;
        d = InvoiceDocument();
        d.purchaseId = store.nextPurchaseId();
        d.purchaseDate = m_day;
        d.sellerId = m_seller;
        int serial = 0;
        for (InvoiceLine& l : store.linesOfSeller(m_seller)) {
            if (std::find(m_arrivals.begin(), m_arrivals.end(), l.arrivalId) == m_arrivals.end())
                continue;
            l.serialNo = ++serial;
            l.rate = 3400 + 25 * (serial % 7);
            l.bagRate = 45;
            applyRateRule(l);
            d.lines.push_back(l);
        }
        const double bags = invoiceFooters(d.lines).bags.toDouble();
        d.freight.perBag = 12;
        d.freight.total = chargeTotalOf(12, bags);
        d.commPerMound = 10;
        d.whTaxRatio = 5;
        const InvoiceFigures f = computeInvoice(d);
        d.commValue = f.totals.commValue;
        d.whTaxValue = f.totals.whTaxValue;
        if (save)
            store.save(d, true);
    }

    void tidy() {
        InvoiceStore store(m_conn, 1);
        if (m_invoice.purchaseId != 0 && store.exists(m_invoice.purchaseId))
            store.remove(m_invoice.purchaseId);
        m_invoice.purchaseId = 0;
        ArrivalStore arrivals(m_conn);
        for (int id : m_arrivals)
            arrivals.remove(id);
        m_arrivals.clear();
    }

    const InvoiceDocument& invoice() const { return m_invoice; }

private:
    const Conn& m_conn;
    QString m_seller;
    QDate m_day;
    std::vector<int> m_arrivals;
    InvoiceDocument m_invoice;
};

} // namespace

Subjects pickSubjects(const Conn& conn) {
    Subjects s;
    s.today = toDate(scalar(conn, QStringLiteral("SELECT MAX(ArrivalDate) FROM Arrivals")));
    const QDate yearAgo = s.today.addDays(-365);
    s.seller = toText(scalar(conn,
                             QStringLiteral("SELECT SellerId FROM Arrivals WHERE ArrivalDate > ? "
                                            "AND ContractId IS NULL AND CenterId IS NULL "
                                            "GROUP BY SellerId ORDER BY COUNT(*) DESC, SellerId "
                                            "LIMIT 1"),
                             {yearAgo}));
    s.contractForInvoice = toInt(
        scalar(conn, QStringLiteral("SELECT MAX(a.ContractId) FROM Arrivals a "
                                    "INNER JOIN ArrivalsBody ab ON ab.ArrivalId = a.ArrivalId "
                                    "WHERE a.ContractId IS NOT NULL AND NOT EXISTS (SELECT 1 FROM "
                                    "PurchaseBody pb WHERE pb.ArrivalId = ab.ArrivalId "
                                    "AND pb.VehicleNo = ab.VehicleNo)")));
    Query centre(conn, QStringLiteral("SELECT al.CenterId, d.CommodityId FROM AuthorityLetters al "
                                      "INNER JOIN DFCPayments d ON d.PaymentId = al.PaymentId "
                                      "WHERE d.PaymentDate > ? GROUP BY al.CenterId, d.CommodityId "
                                      "ORDER BY COUNT(*) DESC, al.CenterId LIMIT 1"));
    centre.bind(yearAgo).exec();
    if (centre.next()) {
        s.centre = toInt(centre.value(0));
        s.centreCommodity = toInt(centre.value(1));
    }
    // Documents from about a month ago: recent enough to be opened, old enough to be complete.
    const QDate monthAgo = s.today.addDays(-30);
    s.contractToOpen = toInt(scalar(
        conn, QStringLiteral("SELECT MAX(ContractId) FROM PContracts WHERE ContractDate <= ?"),
        {monthAgo}));
    s.arrivalToOpen = int(toInt(
        scalar(conn, QStringLiteral("SELECT MAX(ArrivalId) FROM Arrivals WHERE ArrivalDate <= ?"),
               {monthAgo})));
    s.purchaseToOpen = int(toInt(scalar(
        conn, QStringLiteral("SELECT MAX(PurchaseId) FROM Purchases WHERE PurchaseDate <= ?"),
        {monthAgo})));
    // A payment of eight letters, the most a payment has, or any when none has eight.
    s.paymentToOpen = int(toInt(scalar(
        conn,
        QStringLiteral("SELECT MAX(d.PaymentId) FROM DFCPayments d WHERE d.PaymentDate <= ? AND "
                       "(SELECT COUNT(*) FROM AuthorityLetters l WHERE l.PaymentId = "
                       "d.PaymentId) = 8"),
        {monthAgo})));
    if (s.paymentToOpen == 0)
        s.paymentToOpen = int(toInt(scalar(
            conn, QStringLiteral("SELECT MAX(PaymentId) FROM DFCPayments WHERE PaymentDate <= ?"),
            {monthAgo})));
    s.productionDay = monthAgo;
    const QDate lastDay =
        toDate(scalar(conn, QStringLiteral("SELECT MAX(ProductionDate) FROM DailyProduction")));
    s.freeProductionDay = (lastDay.isValid() ? lastDay : s.today).addDays(1);
    Query bags(conn, QStringLiteral("SELECT BagsTypeId, BagsClassId FROM BagsCurrentStock "
                                    "ORDER BY NoOfBags DESC, BagsTypeId, BagsClassId LIMIT 1"));
    bags.exec();
    if (bags.next()) {
        s.bagsType = toInt(bags.value(0));
        s.bagsClass = toInt(bags.value(1));
    }
    s.serialToOpen = int(toInt(scalar(
        conn, QStringLiteral("SELECT MAX(SerialNo) FROM HourlyProduction WHERE ProcessTime < ?"),
        {QDateTime(monthAgo, QTime(0, 0))})));
    s.hourlyLateName = toText(
        scalar(conn, QStringLiteral("SELECT co.CommodityName FROM HProductionBody hb "
                                    "INNER JOIN Commodities co ON co.CommodityId = hb.CommodityId "
                                    "GROUP BY co.CommodityName "
                                    "ORDER BY MIN(hb.SerialNo) DESC, co.CommodityName LIMIT 1")));
    s.hourlyNoName = toText(
        scalar(conn, QStringLiteral("SELECT CommodityName FROM Commodities co WHERE NOT EXISTS "
                                    "(SELECT 1 FROM HProductionBody hb "
                                    "WHERE hb.CommodityId = co.CommodityId) "
                                    "ORDER BY CommodityId LIMIT 1")));
    s.freeContract = toInt(scalar(
        conn, QStringLiteral("SELECT MAX(ContractId) FROM PContracts pc WHERE NOT EXISTS "
                             "(SELECT 1 FROM Arrivals a WHERE a.ContractId = pc.ContractId)")));
    return s;
}

Context benchContext(const Conn& conn, const Subjects& s) {
    Context ctx;
    ctx.conn = &conn;
    ctx.session = std::make_shared<FixedHostSession>(1);
    HostSettingsValues v;
    v.DFCAccountNo = kBenchDfcAccount;
    v.PeriodStart = s.today.addDays(-365);
    v.PeriodEnd = s.today;
    ctx.settings = std::make_shared<FixedHostSettings>(v);
    return ctx;
}

struct ActionSet::Screens {
    std::unique_ptr<SchArrivals> arrivals;
    std::unique_ptr<SchPurchase> purchases;
    std::unique_ptr<SchPurchaseContract> contracts;
    std::unique_ptr<SchDFCPurchase> dfc;
    std::unique_ptr<SchHProduction> hourly;
    std::unique_ptr<SchParty> parties;
    std::unique_ptr<FrmPurchaseInvoice> invoice;
};

ActionSet::~ActionSet() = default;

ActionSet::ActionSet(const Context& ctx, const Subjects& s, QWidget* owner)
    : m_screens(std::make_unique<Screens>()) {
    const Conn& conn = ctx.db();
    const Conn* c = &conn;
    auto add = [&](QString name, std::function<int()> ours, std::function<int()> oldWay = {},
                   QString note = {}) {
        m_actions.push_back(
            Action{std::move(name), std::move(ours), std::move(oldWay), {}, {}, std::move(note)});
        return &m_actions.back();
    };
    const QString partyName = QStringLiteral("FunGetPartyName(ChartOfAccounts.AccountNo)");

    // --- The lists of the document screens ------------------------------------------------
    const QString oldParties =
        QStringLiteral("SELECT ChartOfAccounts.AccountNo AS ID, FunGetPartyName("
                       "ChartOfAccounts.AccountNo) AS Name FROM ChartOfAccounts INNER JOIN "
                       "Parties ON ChartOfAccounts.AccountNo = Parties.PartyId LEFT OUTER JOIN "
                       "Cities ON Parties.CityId = Cities.CityId %1 ORDER BY "
                       "ChartOfAccounts.AccountName");
    add(
        QStringLiteral("list: parties ALL"),
        [c] { return listSize(loadParties(*c, PartyType::All)); },
        [c, oldParties] { return readAll(*c, oldParties.arg(QString())); });
    add(
        QStringLiteral("list: parties Suppliers"),
        [c] { return listSize(loadParties(*c, PartyType::Suppliers)); },
        [c, oldParties] {
            return readAll(
                *c, oldParties.arg(QStringLiteral(
                        "WHERE (Parties.IsSeller = 1) AND (ChartOfAccounts.IsEditable = 1)")));
        });
    add(
        QStringLiteral("list: parties Brokers"),
        [c] { return listSize(loadParties(*c, PartyType::Brokers)); },
        [c, oldParties] {
            return readAll(
                *c, oldParties.arg(QStringLiteral(
                        "WHERE (Parties.IsBroker = 1) AND (ChartOfAccounts.IsEditable = 1)")));
        });
    const QString oldCommodities =
        QStringLiteral(" select commodityid as id, fungetcommodity(commodityid) as name from "
                       "commodities Where 1 = 1");
    add(
        QStringLiteral("list: commodities purchaseable wheat"),
        [c] { return listSize(loadCommodities(*c, true, false, true)); },
        [c, oldCommodities] {
            return readAll(*c,
                           oldCommodities +
                               QStringLiteral(" and IsPurchaseable = 1 and IsWheatCommodity = 1"));
        });
    add(
        QStringLiteral("list: commodities all"),
        [c] { return listSize(loadCommodities(*c, true, true, true)); },
        [c, oldCommodities] { return readAll(*c, oldCommodities); });
    add(
        QStringLiteral("list: units"), [c] { return listSize(loadUnits(*c)); },
        [c] {
            return readAll(*c,
                           QStringLiteral("SELECT UnitId AS ID, UnitName || ' (' || "
                                          "CAST(CAST(WeightInKgs AS decimal(6)) AS varchar(10)) "
                                          "|| ')' AS Name FROM Units"));
        });
    add(
        QStringLiteral("list: bag types"), [c] { return listSize(loadBagTypes(*c)); },
        [c] {
            return readAll(*c, QStringLiteral("select BagsTypeID as ID, BagsType As Name from "
                                              "bagstypes Order By BagsType"));
        });
    add(
        QStringLiteral("list: bag classes"), [c] { return listSize(loadBagClasses(*c)); },
        [c] {
            return readAll(*c, QStringLiteral("select BagsClassid as ID, BagsClass as Name from "
                                              "bagsclasses"));
        });
    add(
        QStringLiteral("list: PR centres"), [c] { return listSize(loadPRCenters(*c)); },
        [c] {
            return readAll(*c, QStringLiteral("SELECT CenterId AS ID, CenterName AS Name From "
                                              "PRCenters Order By CenterName"));
        });
    add(
        QStringLiteral("list: banks"), [c] { return listSize(loadBanks(*c)); },
        [c] {
            return readAll(*c, QStringLiteral("SELECT AccountNo AS ID, AccountName AS Name From "
                                              "ChartOfAccounts WHERE ParentAccountNo LIKE '112%' "
                                              "UNION ALL SELECT AccountNo AS ID, AccountName AS "
                                              "Name From ChartOfAccounts WHERE AccountNo = '111'"));
        });
    add(
        QStringLiteral("list: processes"), [c] { return listSize(loadProcesses(*c)); },
        [c] {
            return readAll(*c, QStringLiteral("select processid as id, processname as name from "
                                              "processes"));
        });

    // --- The arrival screen -----------------------------------------------------------------
    add(
        QStringLiteral("arrival: contract list"),
        [c] { return listSize(ArrivalStore(*c).contracts()); },
        [c] {
            return readAll(
                *c,
                QStringLiteral("SELECT PContracts.ContractId AS Name, fungetpartyname("
                               "PContracts.PartyId) AS ID FROM PContracts INNER JOIN "
                               "ChartOfAccounts ON PContracts.PartyId = ChartOfAccounts.AccountNo "
                               "WHERE (PContracts.ContractId NOT IN (SELECT COALESCE("
                               "ContractId, 0) FROM Arrivals))"));
        });
    add(
        QStringLiteral("arrival: PR centre list"),
        [c] { return listSize(ArrivalStore(*c).prCentres()); },
        [c] {
            return readAll(
                *c, QStringLiteral("SELECT AuthorityLetters.CenterId AS Id, PRCenters.CenterName "
                                   "AS Name FROM AuthorityLetters INNER JOIN PRCenters ON "
                                   "AuthorityLetters.CenterId = PRCenters.CenterId GROUP BY "
                                   "AuthorityLetters.CenterId, PRCenters.CenterName"));
        });
    add(
        QStringLiteral("arrival: permit list"),
        [c] { return listSize(ArrivalStore(*c).permits()); },
        [c] {
            return readAll(*c, QStringLiteral("SELECT PermitNo as Name, 0 as Id From "
                                              "AuthorityLetters"));
        });
    add(
        QStringLiteral("arrival: contract chosen"),
        [c, s] { return ArrivalStore(*c).contractDefaults(s.freeContract) ? 1 : 0; },
        [c, s] {
            return readAll(
                       *c,
                       QStringLiteral("SELECT ChartOfAccounts.AccountName FROM PContracts "
                                      "INNER JOIN ChartOfAccounts ON PContracts.PartyId = "
                                      "ChartOfAccounts.AccountNo Where PContracts.ContractId = ?"),
                       {s.freeContract}) +
                   readAll(*c,
                           QStringLiteral("SELECT fungetcommodity(Commodities.CommodityId) as "
                                          "CommodityName FROM PContracts INNER JOIN Commodities ON "
                                          "PContracts.CommodityId = Commodities.CommodityId Where "
                                          "PContracts.ContractId = ?"),
                           {s.freeContract});
        });
    add(
        QStringLiteral("arrival: PR centre remaining"),
        [c, s] {
            (void)ArrivalStore(*c).remaining(s.centre);
            return 1;
        },
        [c, s] {
            const QString from = QStringLiteral(" from arrivals a Inner Join arrivalsBody ab on "
                                                "a.ArrivalId = ab.arrivalId Where a.centerId = ?");
            int n = readAll(*c, QStringLiteral("Select count(*) from Arrivals Where CenterId = ?"),
                            {s.centre});
            n += readAll(*c, QStringLiteral("Select COALESCE(Sum(ab.NoOfBags),0) as Bags") + from,
                         {s.centre});
            n +=
                readAll(*c, QStringLiteral("Select COALESCE(Sum(ab.NetWeight),0) as Weight") + from,
                        {s.centre});
            return n + readAll(*c,
                               QStringLiteral(" Select COALESCE(Sum(NoOfBags),0) as TotalQty, "
                                              "COALESCE(Sum(TotalWeight),0) as TotalWeight "
                                              "from AuthorityLetters Where CenterId = ?"),
                               {s.centre});
        });
    add(
        QStringLiteral("arrival: permit rates"),
        [c, s] { return ArrivalStore(*c).permitRates(s.centre, s.centreCommodity) ? 1 : 0; },
        [c, s] {
            const QString join = QStringLiteral(
                " FROM DFCPayments INNER JOIN AuthorityLetters ON DFCPayments.PaymentId = "
                "AuthorityLetters.PaymentId WHERE (AuthorityLetters.CenterId = ?) AND "
                "(DFCPayments.CommodityId = ?)");
            int n = readAll(*c,
                            QStringLiteral("SELECT AVG(DFCPayments.RatePerUnit) AS RatePerUnit, "
                                           "AVG(DFCPayments.PricePerBag) AS PricePerBag") +
                                join,
                            {s.centre, s.centreCommodity});
            Query unit(*c, QStringLiteral("SELECT DFCPayments.RateUnitId") + join);
            unit.bind({s.centre, s.centreCommodity}).exec();
            const QVariant id = unit.next() ? unit.value(0) : QVariant();
            return n + readAll(*c, QStringLiteral("Select WeightInKgs from Units where unitid = ?"),
                               {id});
        });

    // --- The invoice store: what is still to invoice, and the seller's balance -------------
    const QString oldArrivalLines = QStringLiteral(
        "SELECT Arrivals.ArrivalId, Arrivals.ArrivalDate, FunGetCommodity(Arrivals.CommodityId) "
        "AS Commodity, Arrivals.SellerId, Arrivals.Contractid, Arrivals.CommodityId, "
        "ArrivalsBody.VehicleNo, ArrivalsBody.BagsTypeId, ArrivalsBody.BagsClassId, "
        "BagsTypes.BagsType, ArrivalsBody.NoOfBags, ArrivalsBody.BagWeight, %1 AS NetWeight, "
        "Units.UnitName || ' (' || CAST(CAST(Units.WeightInKgs AS decimal(6)) AS varchar(10)) || "
        "')' As RatePerUnit, Units.UnitId, Units.WeightInKgs FROM Arrivals INNER JOIN "
        "ArrivalsBody ON Arrivals.ArrivalId = ArrivalsBody.ArrivalId INNER JOIN BagsTypes ON "
        "ArrivalsBody.BagsTypeId = BagsTypes.BagsTypeId INNER JOIN Commodities ON "
        "Arrivals.CommodityId = Commodities.CommodityId INNER JOIN Units ON "
        "Commodities.RateUnitId = Units.UnitId");
    const QString net = QStringLiteral("ArrivalsBody.NoOfBags * ArrivalsBody.BagWeight - "
                                       "ArrivalsBody.NoOfBags * ArrivalsBody.BagsDeduction - "
                                       "ArrivalsBody.OtherDeduction");
    add(
        QStringLiteral("invoice: open vehicles of a seller"),
        [c, s] { return int(InvoiceStore(*c).linesOfSeller(s.seller).size()); },
        [c, s, oldArrivalLines, net] {
            return readAll(
                *c,
                oldArrivalLines.arg(QStringLiteral("ROUND(%1, 2)").arg(net)) +
                    QStringLiteral(" WHERE (Arrivals.SellerId = ?) AND (ArrivalsBody.VehicleNo NOT "
                                   "IN (SELECT VehicleNo FROM PurchaseBody) OR "
                                   "ArrivalsBody.ArrivalId NOT IN (SELECT ArrivalId FROM "
                                   "PurchaseBody))"),
                {s.seller});
        });
    add(
        QStringLiteral("invoice: open vehicles of a contract"),
        [c, s] {
            const auto offer = InvoiceStore(*c).linesOfContract(s.contractForInvoice);
            return offer ? int(offer->lines.size()) : 0;
        },
        [c, s, oldArrivalLines, net] {
            // The old contract route: its OR also brings every wholly open arrival of any
            // contract or seller.
            return readAll(
                *c,
                QStringLiteral("SELECT PC.ContractId, PC.CommodityId, PC.ContractDate, "
                               "FunGetCommodity(PC.CommodityId) AS Commodity, "
                               "FunGetPartyName(PC.BrokerId) AS BrokerName, "
                               "FunGetPartyName(PC.PartyId) AS PartyName, PC.Brokerage, "
                               "PC.IsBrokeragePerBag, PC.RateUnitId, A.RatePerUnit As Rate, "
                               "PC.RatePerUnit, A.ArrivalId, A.ArrivalDate, A.Commodity AS Expr1, "
                               "A.VehicleNo, A.BagsType, A.NoOfBags, A.BagWeight, A.NetWeight, "
                               "A.WeightInKgs, A.UnitId FROM PContracts PC INNER JOIN (") +
                    oldArrivalLines.arg(net) +
                    QStringLiteral(") A ON PC.ContractId = A.Contractid WHERE PC.ContractId = ? "
                                   "AND (A.SellerId = A.Sellerid) AND (A.VehicleNo NOT IN "
                                   "(SELECT VehicleNo FROM PurchaseBody)) or (A.Arrivalid NOT IN "
                                   "(SELECT ArrivalId FROM PurchaseBody))"),
                {s.contractForInvoice});
        });
    add(QStringLiteral("invoice: seller balance"), [c, s] {
        (void)InvoiceStore(*c).currentDebit(s.seller, s.today);
        return 1;
    });

    // --- Opening saved documents --------------------------------------------------------------
    // The old invoice screen read head and lines in one statement, names worked out per row.
    const QString oldInvoice = QStringLiteral(
        " SELECT Purchases.PurchaseId, Purchases.PurchaseDate, Purchases.ContractId, "
        "Purchases.BrokerId, Purchases.SellerId, Purchases.Brokerage, Purchases.IsBrokeragePerBag, "
        "Purchases.Unloading, Purchases.Freight, Purchases.Expenses, Purchases.CommPerMound, "
        "Purchases.CommValue, Purchases.WHTaxRatio, Purchases.WHTaxValue, Purchases.PaidAmount, "
        "Purchases.SpecialDiscount, Purchases.PreviousCredit, PurchaseBody.ArrivalId, "
        "PurchaseBody.VehicleNo, PurchaseBody.CommodityId, PurchaseBody.BagWeight, "
        "PurchaseBody.NoOfBags, PurchaseBody.TotalWeight, PurchaseBody.RateUnitId, "
        "PurchaseBody.RatePerUnit, PurchaseBody.BagRate, PurchaseBody.TTLValue, "
        "ArrivalsBody.BagsTypeId, FunGetPartyName(Purchases.SellerId) AS SellerName, "
        "FunGetPartyName(Purchases.BrokerId) AS BrokerName, "
        "FunGetCommodity(PurchaseBody.CommodityId) AS Commodity, BagsTypes.BagsType, "
        "Arrivals.ArrivalDate FROM Purchases INNER JOIN PurchaseBody ON Purchases.PurchaseId = "
        "PurchaseBody.PurchaseId INNER JOIN ArrivalsBody ON PurchaseBody.ArrivalId = "
        "ArrivalsBody.ArrivalId AND PurchaseBody.VehicleNo = ArrivalsBody.VehicleNo INNER JOIN "
        "BagsTypes ON ArrivalsBody.BagsTypeId = BagsTypes.BagsTypeId INNER JOIN Arrivals ON "
        "ArrivalsBody.ArrivalId = Arrivals.ArrivalId WHERE Purchases.PurchaseId = ? Order by "
        "Purchases.PurchaseId DESC");
    add(
        QStringLiteral("open: contract"),
        [c, s] { return ContractStore(*c).load(s.contractToOpen) ? 1 : 0; },
        [c, s] {
            // The old screen read every contract and filtered on the client.
            Query q(*c, QStringLiteral("Select * from pcontracts"));
            q.exec();
            int found = 0;
            while (q.next())
                if (toInt(q.value(0)) == s.contractToOpen) {
                    for (int i = 0; i < q.raw().record().count(); ++i)
                        (void)q.value(i);
                    ++found;
                }
            return found;
        });
    add(
        QStringLiteral("open: arrival"),
        [c, s] {
            ArrivalStore store(*c);
            const auto a = store.load(s.arrivalToOpen);
            (void)store.isInvoiced(s.arrivalToOpen);
            return a ? int(a->lines.size()) : 0;
        },
        [c, s] {
            return readAll(
                       *c,
                       QStringLiteral(
                           "SELECT A.ArrivalId, A.ArrivalDate, A.PermitNo, A.CenterId, "
                           "A.CommodityId, A.SellerId, A.ContractId, FunGetPartyName("
                           "Parties.PartyId) AS PartyName, Parties.PartyId, PRCenters.CenterName, "
                           "FunGetPartyName(PContracts.PartyId) AS CPartyName, AB.VehicleNo, "
                           "AB.BagWeight, AB.NoOfBags, AB.BagsDeduction, AB.OtherDeduction, "
                           "AB.DriverName, AB.BiltyNo, FunGetCommodity(A.CommodityId) As "
                           "CommodityName, BC.BagsClass, BT.BagsType, AB.RateUnit, AB.BagsRate, "
                           "AB.RateUnitId FROM Arrivals A INNER JOIN Parties ON A.SellerId = "
                           "Parties.PartyId LEFT OUTER JOIN PContracts ON A.ContractId = "
                           "PContracts.ContractId LEFT OUTER JOIN PRCenters ON A.CenterId = "
                           "PRCenters.CenterId INNER JOIN ArrivalsBody AB ON A.ArrivalId = "
                           "AB.ArrivalId LEFT JOIN BagsClasses BC ON BC.BagsClassId = "
                           "AB.BagsClassId LEFT JOIN BagsTypes BT ON BT.BagsTypeId = AB.BagsTypeId "
                           "WHERE A.ArrivalId = ?"),
                       {s.arrivalToOpen}) +
                   readAll(
                       *c,
                       QStringLiteral("select PurchaseId from purchasebody Where arrivalid = ?"),
                       {s.arrivalToOpen});
        });
    add(
        QStringLiteral("open: invoice"),
        [c, s] {
            const auto invoice = InvoiceStore(*c).load(s.purchaseToOpen);
            return invoice ? int(invoice->lines.size()) : 0;
        },
        [c, s, oldInvoice] { return readAll(*c, oldInvoice, {s.purchaseToOpen}); });
    // The old screen's one query for the load and the print: everything joined, inner joins on the
    // lists, a row per letter.
    const QString oldPayment = QStringLiteral(
        "SELECT DFCPayments.PaymentId, DFCPayments.PaymentDate, DFCPayments.CommodityId, "
        "Commodities.CommodityName, DFCPayments.BankAccountNo, ChartOfAccounts.AccountName, "
        "DFCPayments.ChallanNo, DFCPayments.NoOfBags, DFCPayments.BagWeight, "
        "DFCPayments.TotalWeight, DFCPayments.RateUnitId, DFCPayments.RatePerUnit, "
        "DFCPayments.TTLValueWheet, DFCPayments.BagsTypeId, DFCPayments.BagsClassId, "
        "DFCPayments.BagsQty, DFCPayments.PricePerBag, DFCPayments.TTLValueBags, "
        "AuthorityLetters.PermitNo, AuthorityLetters.Date, AuthorityLetters.CenterId, "
        "AuthorityLetters.NoOfBags AS GrdNoOfBags, AuthorityLetters.BagWeight AS GrdBagWeight, "
        "AuthorityLetters.TotalWeight AS GrdTotalWeight, AuthorityLetters.IsWithBags, "
        "PRCenters.CenterName, Units.UnitName, Units.WeightInKgs, BagsTypes.BagsType, "
        "BagsClasses.BagsClass FROM DFCPayments INNER JOIN Commodities ON "
        "DFCPayments.CommodityId = Commodities.CommodityId LEFT OUTER JOIN ChartOfAccounts ON "
        "DFCPayments.BankAccountNo = ChartOfAccounts.AccountNo INNER JOIN AuthorityLetters ON "
        "DFCPayments.PaymentId = AuthorityLetters.PaymentId INNER JOIN PRCenters ON "
        "AuthorityLetters.CenterId = PRCenters.CenterId INNER JOIN Units ON "
        "DFCPayments.RateUnitId = Units.UnitId INNER JOIN BagsClasses ON DFCPayments.BagsClassId "
        "= BagsClasses.BagsClassId INNER JOIN BagsTypes ON DFCPayments.BagsTypeId = "
        "BagsTypes.BagsTypeId WHERE DFCPayments.PaymentId = ?");
    add(
        QStringLiteral("open: DFC payment (8 letters)"),
        [c, s] {
            const auto p = DFCStore(*c).load(s.paymentToOpen);
            return p ? int(p->letters.size()) : 0;
        },
        [c, s, oldPayment] {
            return readAll(*c, oldPayment, {s.paymentToOpen}) +
                   readAll(*c, QStringLiteral("Select * From AuthorityLetters where PaymentId = ?"),
                           {s.paymentToOpen});
        });
    add(
        QStringLiteral("check: DFC permits (8 letters)"),
        [c, s] {
            DFCStore store(*c);
            const auto p = store.load(s.paymentToOpen);
            if (!p)
                return 0;
            DFCSaveInput in;
            in.challanNo = p->challanNo;
            in.totalWeight = p->totalWeight;
            in.value = p->value;
            in.grossValue = p->grossValue();
            in.commodityKey = QString::number(p->commodityId);
            in.paymentIdText = QString::number(p->paymentId);
            in.isOpened = true;
            in.lines = p->letters;
            return ValidateDFCPayment(in, store, store) ? 0 : int(in.lines.size());
        },
        [c, s] {
            // A count per permit, then the number's own count.
            QVariantList permits;
            Query q(*c,
                    QStringLiteral("SELECT PermitNo FROM AuthorityLetters WHERE PaymentId = ?"));
            q.bind(s.paymentToOpen).exec();
            while (q.next())
                permits << q.value(0);
            int n = 0;
            for (const QVariant& permit : permits)
                n += readAll(*c,
                             QStringLiteral("Select Count(*) From AuthorityLetters Where "
                                            "PermitNo = ?"),
                             {permit});
            return n + readAll(*c,
                               QStringLiteral("Select Count(*) From DFCPayments Where "
                                              "PaymentId = ?"),
                               {s.paymentToOpen});
        });
    add(
        QStringLiteral("print: DFC payment (8 letters)"),
        [c, s] {
            const auto p = DFCStore(*c).load(s.paymentToOpen);
            const Report r = CrpDFCPurchase(p ? &*p : nullptr, HostSettingsValues{});
            QTemporaryFile file;
            if (!file.open() || !writeReportPdf(r, file.fileName()))
                return 0;
            return int(r.tables.value(0).rows.size());
        },
        [c, s, oldPayment] { return readAll(*c, oldPayment, {s.paymentToOpen}); },
        QStringLiteral("the payment read and its page laid out and painted to a PDF file"));
    add(QStringLiteral("open: production day"), [c, s] {
        const auto day = ProductionStore(*c).load(s.productionDay, 1);
        return day ? int(1 + day->consumption.size() + day->production.size()) : 0;
    });
    // What leaving a consumed commodity's cell asks: its stock row, its cost, its stock shown.
    add(QStringLiteral("production: current stock"), [c] {
        ProductionStore store(*c);
        (void)store.hasStock(1);
        (void)store.currentCost(1);
        (void)store.defaultBag(1);
        return store.currentStock(1) ? 1 : 0;
    });
    add(QStringLiteral("open: hourly production"), [c, s] {
        const auto entry = HourlyStore(*c).load(s.serialToOpen);
        return entry ? int(1 + entry->lines.size()) : 0;
    });

    // --- Saving and removing --------------------------------------------------------------
    // A new contract on a fresh number, removed again, so the database is left as it was.
    auto contract = std::make_shared<PurchaseContract>();
    contract->contractDate = s.today;
    contract->commodityId = 1;
    contract->partyId = s.seller;
    contract->rateUnitId = 2;
    contract->contractMode = QStringLiteral("Vehicles");
    contract->quantity = 3;
    contract->ratePerUnit = 3500;
    contract->modeOfPayment = QStringLiteral("Cash");
    contract->deliveryStartDate = s.today;
    contract->deliveryEndDate = s.today.addDays(20);
    Action* save = add(
        QStringLiteral("save: new contract"),
        [c, contract] {
            ContractStore(*c).insert(*contract);
            return 1;
        },
        [c, contract] {
            // The old save opened the whole table before writing one row.
            Query all(*c, QStringLiteral("Select * from pcontracts"));
            all.exec();
            int rows = 0;
            while (all.next())
                ++rows;
            ContractStore(*c).insert(*contract);
            return 1;
        });
    save->before = [c, contract] { contract->contractId = ContractStore(*c).nextContractId(); };
    save->after = [c, contract] { ContractStore(*c).remove(contract->contractId); };
    Action* removeContract = add(QStringLiteral("remove: contract"), [c, contract] {
        ContractStore(*c).remove(contract->contractId);
        return 1;
    });
    removeContract->before = [c, contract] {
        contract->contractId = ContractStore(*c).nextContractId();
        ContractStore(*c).insert(*contract);
    };

    auto arrival = std::make_shared<ArrivalDocument>();
    arrival->arrivalDate = s.today;
    arrival->commodityId = 1;
    arrival->sellerId = s.seller;
    for (int i = 0; i < 3; ++i) {
        ArrivalLine l;
        l.vehicleNo = QStringLiteral("BENCH-%1").arg(i + 1);
        l.bagsClassId = 1;
        l.bagsTypeId = 1;
        l.noOfBags = 300 + i;
        l.bagWeight = 100;
        l.bagsDeduction = 1;
        l.otherDeduction = 5;
        l.rateUnit = 3500;
        l.rateUnitId = 2;
        l.weightInKgs = 40;
        arrival->lines.push_back(l);
    }
    Action* saveArrival = add(QStringLiteral("save: new arrival (3 vehicles)"), [c, arrival] {
        ArrivalStore(*c).save(*arrival, true);
        return int(arrival->lines.size());
    });
    saveArrival->before = [c, arrival] { arrival->arrivalId = ArrivalStore(*c).nextArrivalId(); };
    saveArrival->after = [c, arrival] { ArrivalStore(*c).remove(arrival->arrivalId); };
    Action* removeArrival = add(QStringLiteral("remove: arrival (3 vehicles)"), [c, arrival] {
        ArrivalStore(*c).remove(arrival->arrivalId);
        return 1;
    });
    removeArrival->before = [c, arrival] {
        arrival->arrivalId = ArrivalStore(*c).nextArrivalId();
        ArrivalStore(*c).save(*arrival, true);
    };

    // A day of the first process: its four inputs and its six outputs, the products in the bag
    // kind the stock holds most of, so that the bag test passes.
    auto day = std::make_shared<ProductionDay>();
    day->processId = 1;
    day->productionExpense = 40000;
    day->otherExpense = 7500;
    for (int i = 0; i < 4; ++i) {
        ProductionLine l;
        l.commodityId = i + 1;
        l.bagsTypeId = 1;
        l.bagsClassId = 2;
        l.noOfBags = 150;
        l.bagWeight = 100;
        l.weight = 15000.0;
        l.cost = 85.0;
        day->consumption.push_back(l);
    }
    for (int out : {13, 14, 16, 17, 18, 19}) {
        ProductionLine l;
        l.commodityId = out;
        l.bagsTypeId = s.bagsType;
        l.bagsClassId = s.bagsClass;
        l.noOfBags = 5;
        l.bagWeight = 50;
        l.weight = 250.0;
        day->production.push_back(l);
    }
    day->ratio = ratioOf(*day);
    Action* saveDay = add(QStringLiteral("save: production day (4 + 6 lines)"), [c, day] {
        ProductionStore(*c).save(*day);
        return int(day->consumption.size() + day->production.size());
    });
    saveDay->before = [day, s] { day->productionDate = s.freeProductionDay; };
    saveDay->after = [c, day] { ProductionStore(*c).remove(day->productionDate, day->processId); };
    Action* removeDay = add(QStringLiteral("remove: production day (4 + 6 lines)"), [c, day] {
        ProductionStore(*c).remove(day->productionDate, day->processId);
        return 1;
    });
    removeDay->before = [c, day, s] {
        day->productionDate = s.freeProductionDay;
        ProductionStore(*c).save(*day);
    };

    // A payment of eight letters on a fresh number with permits of its own, saved, opened and
    // saved again, removed; the database is left as it was.
    auto dfc = std::make_shared<DFCPayment>();
    auto permitRun = std::make_shared<int>(0);
    dfc->paymentDate = s.today;
    dfc->commodityId = s.centreCommodity ? s.centreCommodity : 1;
    dfc->challanNo = QStringLiteral("BENCH");
    dfc->noOfBags = 800;
    dfc->bagWeight = 100;
    dfc->totalWeight = 80000;
    dfc->rateUnitId = 2;
    dfc->ratePerUnit = 3100;
    dfc->value = 6200000;
    dfc->bagsTypeId = 1;
    dfc->bagsClassId = 3;
    dfc->userNo = 1;
    const auto freshLetters = [dfc, permitRun, s] {
        dfc->letters.clear();
        ++*permitRun;
        for (int i = 0; i < 8; ++i) {
            AuthorityLine l;
            l.permitNo = QStringLiteral("BENCH-%1-%2").arg(*permitRun).arg(i + 1);
            l.date = s.today;
            l.centerId = s.centre ? s.centre : 1;
            l.noOfBags = 100;
            l.bagWeight = 100;
            l.totalWeight = 10000;
            dfc->letters.push_back(l);
        }
    };
    const auto drawNew = [c, dfc, freshLetters] {
        dfc->paymentId = DFCStore(*c).nextPaymentId();
        freshLetters();
    };
    const auto saveNew = [c, dfc, drawNew] {
        drawNew();
        DFCStore(*c).save(*dfc, true);
    };
    const auto removeIt = [c, dfc] { DFCStore(*c).remove(dfc->paymentId); };
    // (Each action's set-up is given before the next is added: adding moves the list.)
    Action* saveDfc = add(QStringLiteral("save: new DFC payment (8 letters)"), [c, dfc] {
        DFCStore(*c).save(*dfc, true);
        return int(dfc->letters.size());
    });
    saveDfc->before = drawNew;
    saveDfc->after = removeIt;
    Action* resaveDfc =
        add(QStringLiteral("save: opened DFC payment (8 letters, one changed)"), [c, dfc] {
            DFCPayment opened = *DFCStore(*c).load(dfc->paymentId);
            opened.letters[3].noOfBags = 120;
            opened.letters[3].totalWeight = 12000;
            DFCStore(*c).save(opened, false);
            return int(opened.letters.size());
        });
    resaveDfc->before = saveNew;
    resaveDfc->after = removeIt;
    Action* removeDfc = add(QStringLiteral("remove: DFC payment (8 letters)"), [c, dfc] {
        DFCStore(*c).remove(dfc->paymentId);
        return 1;
    });
    removeDfc->before = saveNew;

    // --- The invoice screen, and an invoice of fifty lines -----------------------------------
    // The screen is built once and driven as the clerk drives it: choosing a seller or a
    // contract fills the grid and every figure below it; what is timed is the screen's own
    // handler, not the painting of a window that is never shown.
    m_screens->invoice = std::make_unique<FrmPurchaseInvoice>(ctx, owner);
    FrmPurchaseInvoice* invoiceScreen = m_screens->invoice.get();
    auto gridLines = [invoiceScreen] { return invoiceScreen->grid()->lines()->lineCount(); };
    auto* cboSeller = invoiceScreen->findChild<LookupCombo*>(QStringLiteral("CboSeller"));
    auto* cboContract = invoiceScreen->findChild<LookupCombo*>(QStringLiteral("CboContract"));
    add(
        QStringLiteral("invoice screen: lists"),
        [invoiceScreen, cboContract] {
            invoiceScreen->LoadPurchaseLists();
            return cboContract->count();
        },
        {}, QStringLiteral("the lists a new invoice fills, the contract list among them"));
    Action* bySeller = add(
        QStringLiteral("invoice screen: a seller's open vehicles"),
        [cboSeller, seller = s.seller, gridLines] {
            cboSeller->selectKey(seller);
            return gridLines();
        },
        {}, QStringLiteral("the seller chosen on the screen: balance, grid and figures filled"));
    bySeller->before = [invoiceScreen] { invoiceScreen->ClearScreen(); };
    Action* byContract = add(
        QStringLiteral("invoice screen: a contract's open vehicles"),
        [cboContract, contract = s.contractForInvoice, gridLines] {
            cboContract->setText(QString::number(contract));
            return gridLines();
        },
        {}, QStringLiteral("the contract chosen on the screen: terms, balance, grid and figures"));
    byContract->before = [invoiceScreen] { invoiceScreen->ClearScreen(); };

    auto fifty = std::make_shared<FiftyLineInvoice>(conn, s);
    Action* saveInvoice = add(QStringLiteral("save: invoice (50 lines) with costing"), [c, fifty] {
        InvoiceStore(*c, 1).save(fifty->invoice(), true);
        return int(fifty->invoice().lines.size());
    });
    saveInvoice->before = [fifty] { fifty->make(false); };
    saveInvoice->after = [fifty] { fifty->tidy(); };

    Action* openInvoice = add(
        QStringLiteral("open: invoice (50 lines) on the screen"),
        [invoiceScreen, fifty, gridLines] {
            invoiceScreen->openDocumentById(fifty->invoice().purchaseId);
            return gridLines();
        },
        [c, fifty, oldInvoice] { return readAll(*c, oldInvoice, {fifty->invoice().purchaseId}); });
    openInvoice->before = [fifty] { fifty->make(true); };
    openInvoice->after = [fifty, invoiceScreen] {
        invoiceScreen->ClearScreen();
        fifty->tidy();
    };

    Action* removeInvoice = add(QStringLiteral("remove: invoice (50 lines)"), [c, fifty] {
        InvoiceStore(*c, 1).remove(fifty->invoice().purchaseId);
        return int(fifty->invoice().lines.size());
    });
    removeInvoice->before = [fifty] { fifty->make(true); };
    removeInvoice->after = [fifty] { fifty->tidy(); };

    // What Print hands the preview, laid out and painted page by page into a file instead of
    // the preview's window.
    auto pdfDir = std::make_shared<QTemporaryDir>();
    Action* printInvoice = add(
        QStringLiteral("print preview: invoice (50 lines)"),
        [ctx = &ctx, fifty, pdfDir] {
            const auto print = InvoiceStore(ctx->db(), 1).printData(fifty->invoice().purchaseId);
            if (!print)
                return 0;
            const Report report =
                CrpPurchase(&*print, printFigures(print->invoice, computeInvoice(print->invoice)),
                            false, ctx->hostSettings());
            QString why;
            if (!writeReportPdf(report, pdfDir->filePath(QStringLiteral("invoice.pdf")), &why))
                throw DbError(why, QStringLiteral("grainmill-bench"));
            return int(print->lines.size());
        },
        {}, QStringLiteral("the report built and its pages painted into a PDF, no window"));
    printInvoice->before = [fifty] { fifty->make(true); };
    printInvoice->after = [fifty] { fifty->tidy(); };

    // --- The search screens, driven through their own controls ------------------------------
    m_screens->arrivals = std::make_unique<SchArrivals>(ctx, owner);
    m_screens->purchases = std::make_unique<SchPurchase>(ctx, owner);
    m_screens->contracts = std::make_unique<SchPurchaseContract>(ctx, owner);
    m_screens->dfc = std::make_unique<SchDFCPurchase>(ctx, owner);
    m_screens->hourly = std::make_unique<SchHProduction>(ctx, owner);
    m_screens->parties = std::make_unique<SchParty>(ctx, owner);

    const QDate from = s.today.addDays(-365);
    // The old lists: names worked out per row by the server routine, a filter with a leading %.
    const QString oldArrivals =
        QStringLiteral(" SELECT Arrivals.ArrivalId, Arrivals.ArrivalDate, %1 AS AccountName, "
                       "FunGetCommodity(Commodities.CommodityId) AS Commodity FROM Arrivals "
                       "INNER JOIN Commodities ON Arrivals.CommodityId = Commodities.CommodityId "
                       "INNER JOIN Parties ON Arrivals.SellerId = Parties.PartyId INNER JOIN "
                       "ChartOfAccounts ON Parties.PartyId = ChartOfAccounts.AccountNo Where "
                       "Arrivals.ArrivalDate Between ? And ? %2 Order By Arrivals.ArrivalId desc")
            .arg(partyName);
    const QString oldPurchases = QStringLiteral(
        " SELECT Purchases.PurchaseId, Purchases.PurchaseDate, Purchases.SellerId, "
        "Purchases.BrokerId, FunGetPartyName(Purchases.BrokerId) AS BrokerName, "
        "FunGetPartyName(Purchases.SellerId) AS SellerName, SUM(ROUND(PurchaseBody.TotalWeight "
        "* PurchaseBody.RatePerUnit / Units.WeightInKgs, 2)) AS Value FROM (Arrivals INNER "
        "JOIN Commodities ON Arrivals.CommodityId = Commodities.CommodityId INNER JOIN Units "
        "ON Commodities.RateUnitId = Units.UnitId) RIGHT OUTER JOIN (Purchases INNER JOIN "
        "PurchaseBody ON Purchases.PurchaseId = PurchaseBody.PurchaseId) ON "
        "Arrivals.ArrivalId = PurchaseBody.ArrivalId Where Purchases.PurchaseDate Between ? "
        "And ? %1 GROUP BY Purchases.PurchaseId, Purchases.PurchaseDate, Purchases.SellerId, "
        "Purchases.BrokerId, FunGetPartyName(Purchases.BrokerId), "
        "FunGetPartyName(Purchases.SellerId) Order By Purchases.PurchaseId desc");
    const QString oldContracts = QStringLiteral(
        " SELECT PContracts.ContractId, PContracts.ContractDate, PContracts.BrokerId, "
        "ChartOfAccounts.AccountName AS Broker, PContracts.PartyId, SellerName.AccountName AS "
        "Seller, CAST(PContracts.Quantity AS varchar(6)) || PContracts.ContractMode as Quantity "
        "FROM (Parties Broker INNER JOIN ChartOfAccounts ON Broker.PartyId = "
        "ChartOfAccounts.AccountNo) RIGHT OUTER JOIN (PContracts INNER JOIN Parties Seller ON "
        "PContracts.PartyId = Seller.PartyId) ON Broker.PartyId = PContracts.BrokerId INNER JOIN "
        "ChartOfAccounts SellerName ON Seller.PartyId = SellerName.AccountNo Where "
        "PContracts.ContractDate Between ? And ? %1 ORDER BY PContracts.ContractId DESC");
    const QString oldDfc = QStringLiteral(
        " SELECT DFCPayments.PaymentId AS Id, DFCPayments.PaymentDate AS Date, "
        "Commodities.CommodityName, DFCPayments.TotalWeight AS TTLWeight, "
        "SUM(DFCPayments.TTLValueWheet + DFCPayments.TTLValueBags) AS GrossValue FROM DFCPayments "
        "INNER JOIN Commodities ON DFCPayments.CommodityId = Commodities.CommodityId Where "
        "DFCPayments.PaymentDate BETWEEN ? and ? %1 GROUP BY DFCPayments.PaymentId, "
        "DFCPayments.PaymentDate, Commodities.CommodityName, DFCPayments.TotalWeight ");
    const QString lk = like(conn);
    const QString oneKey = QStringLiteral("a");

    // A search screen's list: its default range with the filters empty, then one keystroke.
    auto search = [&](const QString& screen, QWidget* w, const QString& oldSql,
                      const QString& oldFilter, const QString& oldPattern, bool hasId, qint64 id,
                      bool dated = true) {
        auto* filter = w->findChild<QLineEdit*>(QStringLiteral("TxtFilter"));
        auto* filterId = w->findChild<QLineEdit*>(QStringLiteral("TxtFilterId"));
        auto* doc = qobject_cast<DocumentSearch*>(w);
        auto* party = qobject_cast<SchParty*>(w);
        auto count = [doc, party] { return doc ? doc->rowCount() : party->rowCount(); };
        auto reset = [filter, filterId] {
            const QSignalBlocker b1(filter);
            filter->clear();
            if (filterId) {
                const QSignalBlocker b2(filterId);
                filterId->clear();
            }
        };
        Action* range = add(
            screen + QStringLiteral(": list"),
            [doc, party, count] {
                if (doc)
                    doc->RunSearch();
                else
                    party->RunSearch();
                return count();
            },
            oldSql.isEmpty() ? std::function<int()>{}
                             : std::function<int()>([c, oldSql, from, s, dated] {
                                   if (!dated)
                                       return readAll(*c, oldSql.arg(QString()));
                                   return readAll(*c, oldSql.arg(QString()), {from, s.today});
                               }));
        range->before = reset;
        Action* key = add(
            screen + QStringLiteral(": name filter \"a\""),
            [filter, oneKey, count] {
                filter->setText(oneKey);
                return count();
            },
            oldSql.isEmpty()
                ? std::function<int()>{}
                : std::function<int()>([c, oldSql, oldFilter, oldPattern, from, s, dated] {
                      if (!dated)
                          return readAll(*c, oldSql.arg(oldFilter), {oldPattern});
                      return readAll(*c, oldSql.arg(oldFilter), {from, s.today, oldPattern});
                  }));
        key->before = reset;
        if (hasId && filterId) {
            Action* byId = add(screen + QStringLiteral(": id filter"), [filterId, id, count] {
                filterId->setText(QString::number(id));
                return count();
            });
            byId->before = reset;
        }
    };
    search(QStringLiteral("SchArrivals"), m_screens->arrivals.get(), oldArrivals,
           QStringLiteral(" And ") + partyName + lk, QStringLiteral("%a%"), true, s.arrivalToOpen);
    search(QStringLiteral("SchPurchase"), m_screens->purchases.get(), oldPurchases,
           QStringLiteral(" And FunGetPartyName(Purchases.SellerId)") + lk, QStringLiteral("%a%"),
           true, s.purchaseToOpen);
    search(QStringLiteral("SchPurchaseContract"), m_screens->contracts.get(), oldContracts,
           QStringLiteral(" And SellerName.AccountName") + lk, QStringLiteral("%a%"), false, 0);
    search(QStringLiteral("SchDFCPurchase"), m_screens->dfc.get(), oldDfc,
           QStringLiteral(" and Commodities.CommodityName") + lk, QStringLiteral("a%"), false, 0);
    Action* hourly = add(
        QStringLiteral("SchHProduction: list"),
        [ctx = &ctx, owner] {
            SchHProduction screen(*ctx, owner);
            return screen.rowCount();
        },
        [c] {
            return readAll(
                *c,
                QStringLiteral(" SELECT HourlyProduction.SerialNo AS ID, "
                               "HourlyProduction.ProcessTime, FunGetCommodity("
                               "Commodities.CommodityId) AS CommodityName FROM HourlyProduction "
                               "INNER JOIN HProductionBody ON HourlyProduction.SerialNo = "
                               "HProductionBody.SerialNo INNER JOIN Commodities ON "
                               "HProductionBody.CommodityId = Commodities.CommodityId GROUP BY "
                               "HourlyProduction.SerialNo, HourlyProduction.ProcessTime, "
                               "FunGetCommodity(Commodities.CommodityId)"));
        },
        QStringLiteral("opening the screen, which lists every hourly record"));
    (void)hourly;
    // The find moves through the list; each repetition starts from a freshly opened screen.
    // "At once": typed the moment the screen opens. Otherwise after the screen has read the
    // rest of its list while waiting for the clerk, as it does in the first second or so.
    auto find = [&](const QString& what, const QString& text, bool settled) {
        Action* a =
            add(QStringLiteral("SchHProduction: find ") + what, [screens = m_screens.get(), text] {
                screens->hourly->FindCommodity(text);
                return screens->hourly->currentRow() + 1;
            });
        a->before = [screens = m_screens.get(), ctx = &ctx, owner, settled] {
            screens->hourly = std::make_unique<SchHProduction>(*ctx, owner);
            QAbstractItemModel* rows =
                screens->hourly->findChild<QTableView*>(QStringLiteral("GrdSch"))->model();
            while (settled && rows->canFetchMore({}))
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        };
    };
    find(QStringLiteral("a name on the list"), s.hourlyLateName, false);
    find(QStringLiteral("a name no record has, at once"), s.hourlyNoName, false);
    find(QStringLiteral("a name no record has"), s.hourlyNoName, true);
    find(QStringLiteral("a first letter typed"), s.hourlyLateName.left(1), true);
    search(QStringLiteral("SchParty"), m_screens->parties.get(),
           QStringLiteral("Select P.PartyId,C.AccountName,Ct.CityName from Parties P Inner Join "
                          "ChartofAccounts C On P.PartyId = C.AccountNo Inner Join Cities CT On "
                          "P.CityId = CT.CityId wHERE p.PartyId Like '6%' %1"),
           QStringLiteral(" And C.AccountName") + lk, QStringLiteral("%a%"), false, 0, false);
}

} // namespace gm::bench
