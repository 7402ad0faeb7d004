#include "Generator.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"

#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTextStream>

#include <cmath>
#include <map>
#include <memory>
#include <optional>

namespace gm::bench {

qint64 Dice::between(qint64 lo, qint64 hi) {
    if (hi <= lo)
        return lo;
    const auto span = std::uint64_t(hi - lo) + 1;
    return lo + qint64(m_engine() % span);
}

double Dice::unit() {
    return double(m_engine() >> 11) * 0x1.0p-53;
}

int Dice::around(double mean) {
    if (mean <= 0)
        return 0;
    // Twice the mean, spread over the whole numbers below it and a fraction carried by chance.
    const double top = 2 * mean * unit();
    const int whole = int(top);
    return whole + (chance(top - whole) ? 1 : 0);
}

qint64 GenerateReport::total() const {
    qint64 sum = 0;
    for (const auto& r : rows)
        sum += r.second;
    return sum;
}

namespace {

QVariant nullText() {
    return QVariant(QMetaType(QMetaType::QString));
}
QVariant nullInt() {
    return QVariant(QMetaType(QMetaType::LongLong));
}
double money(double v) {
    return std::round(v * 10000.0) / 10000.0;
}
double cents(double v) {
    return std::round(v * 100.0) / 100.0;
}

// Rows of one table collected and written many to a statement: a round trip per row would
// dominate the generation on a server, and the statement is prepared once per row count.
class Batch {
public:
    // The SQLite driver looks each parameter up by a linear walk, so a long statement costs
    // it the square of its length; a server pays per round trip instead.
    Batch(const Conn& conn, const char* table, const QStringList& columns)
        : m_conn(conn), m_table(QString::fromLatin1(table)), m_columns(columns),
          m_rowsPerStatement(conn.isPostgres() ? 200 : 8) {
        m_values.reserve(size_t(m_rowsPerStatement * columns.size()));
    }

    void add(std::initializer_list<QVariant> values) {
        Q_ASSERT(qsizetype(values.size()) == m_columns.size());
        for (const QVariant& v : values)
            m_values.push_back(v);
        ++m_pending;
    }
    bool full() const { return m_pending >= m_rowsPerStatement; }
    const QString& table() const { return m_table; }

    void flush() {
        if (m_pending == 0)
            return;
        QSqlQuery& q = statementFor(m_pending);
        for (size_t i = 0; i < m_values.size(); ++i)
            q.bindValue(int(i), m_values[i]);
        if (!q.exec())
            throw DbError(q.lastError().text(), QStringLiteral("Generating ") + m_table);
        m_values.clear();
        m_pending = 0;
    }

private:
    QSqlQuery& statementFor(int rows) {
        auto it = m_statements.find(rows);
        if (it != m_statements.end())
            return it->second;
        const QString one =
            QLatin1Char('(') +
            QStringList(m_columns.size(), QStringLiteral("?")).join(QLatin1Char(',')) +
            QLatin1Char(')');
        const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES ")
                                .arg(m_table, m_columns.join(QLatin1Char(','))) +
                            QStringList(rows, one).join(QLatin1Char(','));
        QSqlQuery q(m_conn.db());
        if (!q.prepare(sql))
            throw DbError(q.lastError().text(), QStringLiteral("Generating ") + m_table);
        return m_statements.emplace(rows, std::move(q)).first->second;
    }

    const Conn& m_conn;
    QString m_table;
    QStringList m_columns;
    int m_rowsPerStatement;
    std::vector<QVariant> m_values;
    int m_pending = 0;
    std::map<int, QSqlQuery> m_statements;
};

QStringList cols(const char* list) {
    return QString::fromLatin1(list).split(QLatin1Char(','), Qt::SkipEmptyParts);
}

const char* const kCities[] = {
    "Lahore",    "Faisalabad",  "Multan",  "Gujranwala", "Sialkot", "Sargodha", "Sahiwal",
    "Okara",     "Kasur",       "Jhang",   "Bahawalpur", "Vehari",  "Khanewal", "Pakpattan",
    "Chiniot",   "Hafizabad",   "Mandi",   "Toba",       "Layyah",  "Bhakkar",  "Mianwali",
    "Rahim Yar", "Sheikhupura", "Narowal", "Lodhran",
};
const char* const kFirst[] = {"Haji Muhammad", "Malik",  "Chaudhry", "Rana",  "Mian",  "Sheikh",
                              "Syed",          "Ghulam", "Abdul",    "Hafiz", "Mehar", "Sardar"};
const char* const kSecond[] = {"Aslam", "Akram",  "Bashir", "Rafiq",  "Nawaz", "Iqbal",
                               "Latif", "Sadiq",  "Anwar",  "Yousaf", "Tariq", "Zafar",
                               "Hanif", "Saleem", "Javed",  "Khalid", "Arif",  "Ikram"};
const char* const kSuffix[] = {
    "", " & Sons", " Traders", " Grain Co", " & Brothers", " Commission Shop", " Enterprises"};
const char* const kPlates[] = {"LHR", "FSD", "MLN", "GRW", "SKT",
                               "RWP", "SGD", "JHG", "OKR", "KSR"};
const char* const kDrivers[] = {"Imran", "Shahid", "Nadeem", "Asif",   "Kashif",
                                "Sajid", "Waqas",  "Zahid",  "Naveed", "Amjad"};

struct Commodity {
    int id;
    const char* name;
    int bagType;
    bool purchaseable, saleable, wheat;
};
const Commodity kCommodities[] = {
    {1, "Wheat Punjab", 1, true, false, true},     {2, "Wheat Sindh", 1, true, false, true},
    {3, "Wheat Galaxy", 1, true, false, true},     {4, "Wheat Faisalabad", 1, true, false, true},
    {5, "Wheat Lasani", 1, true, false, true},     {6, "Wheat Sehar", 1, true, false, true},
    {7, "Wheat Imported", 1, true, false, true},   {8, "Wheat Government", 3, true, false, true},
    {9, "Maize", 2, true, false, false},           {10, "Barley", 2, true, false, false},
    {11, "Gram", 2, true, false, false},           {12, "Rice Broken", 2, true, false, false},
    {13, "Fine Flour", 4, false, true, false},     {14, "Super Fine Flour", 4, false, true, false},
    {15, "Chakki Atta", 5, false, true, false},    {16, "Maida", 4, false, true, false},
    {17, "Suji", 5, false, true, false},           {18, "Bran", 2, false, true, false},
    {19, "Choker", 2, false, true, false},         {20, "Wheat Germ", 6, false, true, false},
    {21, "Broken Wheat", 2, false, true, false},   {22, "Screenings", 2, false, true, false},
    {23, "Fine Atta 10kg", 6, false, true, false}, {24, "Fine Atta 20kg", 7, false, true, false},
    {25, "Bakery Flour", 4, true, true, false},    {26, "Whole Wheat Flour", 5, true, true, false},
    {27, "Feed Mix", 2, true, true, false},        {28, "Cleaned Wheat", 1, true, true, true},
    {29, "Tempered Wheat", 1, false, false, true}, {30, "Dust", 2, false, true, false},
};
const double kBagCapacity[] = {0, 100, 50, 95, 80, 40, 10, 20, 25};
constexpr int kBagTypes = 8;

// Process 1 mills wheat into flours, process 2 cleans and grinds the rest.
const int kInputs[2][4] = {{1, 2, 3, 4}, {5, 6, 7, 28}};
const int kOutputs[2][6] = {{13, 14, 16, 17, 18, 19}, {15, 20, 21, 22, 23, 24}};

struct Letter {
    QString permitNo;
    int centerId;
    int commodityId;
    QDate date;
};

struct Vehicle {
    QString no;
    int bagsClass, bagsType;
    double bags, bagWeight, bagsDeduction, otherDeduction, net, rate, bagsRate;
};

struct PendingInvoice {
    int arrivalId;
    int commodityId;
    QString sellerId;
    std::optional<int> contractId;
    QString brokerId;
    double brokerage;
    bool perBag;
    std::vector<Vehicle> vehicles;
};

struct ContractInfo {
    int id;
    int commodityId;
    QString partyId;
    QString brokerId;
    double brokerage;
    bool perBag;
    double rate;
    double bagsDeduction;
    double otherDeduction;
};

class Mill {
public:
    Mill(const Conn& conn, const GenerateOptions& o) : m_conn(conn), m_o(o), m_dice(o.seed) {}

    GenerateReport run();

private:
    void say(const QString& text) {
        if (!m_o.quiet)
            QTextStream(stdout) << text << Qt::endl;
    }
    void masterData();
    void day(const QDate& d);
    void contracts(const QDate& d);
    void dfcPayments(const QDate& d);
    void arrivals(const QDate& d);
    int arrival(const QDate& d, int commodityId, const QString& seller,
                const ContractInfo* contract, const Letter* letter);
    void invoices(const QDate& d);
    void production(const QDate& d);
    void hourly(const QDate& d);

    // Adds a row and, when its batch is full, writes it after every batch it may point at.
    void add(Batch& b, std::initializer_list<QVariant> values) {
        b.add(values);
        if (!b.full())
            return;
        for (auto& parent : m_order) {
            parent->flush();
            if (parent.get() == &b)
                break;
        }
    }
    // Writes everything and posts it: the end of a day.
    void flushAll();
    void post();

    QString sellerAt(qint64 i) const {
        return QStringLiteral("6%1").arg(i, 4, 10, QLatin1Char('0'));
    }
    QString randomSeller() { return sellerAt(m_dice.between(2, 301)); }
    QString randomBroker() { return sellerAt(m_dice.between(302, 341)); }
    QString randomBank() { return QStringLiteral("1120%1").arg(m_dice.between(1, 6)); }

    const Conn& m_conn;
    GenerateOptions m_o;
    Dice m_dice;

    std::vector<std::unique_ptr<Batch>> m_order;
    Batch* m_contracts = nullptr;
    Batch* m_payments = nullptr;
    Batch* m_letters = nullptr;
    Batch* m_arrivals = nullptr;
    Batch* m_arrivalBody = nullptr;
    Batch* m_purchases = nullptr;
    Batch* m_purchaseBody = nullptr;
    Batch* m_ledger = nullptr;
    Batch* m_daily = nullptr;
    Batch* m_consumption = nullptr;
    Batch* m_production = nullptr;
    Batch* m_hourly = nullptr;
    Batch* m_hourlyBody = nullptr;

    std::vector<QString> m_plates;
    std::vector<Letter> m_recentLetters;
    std::multimap<QDate, ContractInfo> m_contractArrivals;
    std::multimap<QDate, PendingInvoice> m_invoiceDue;
    double m_perYear = 1;
    int m_nextContract = 1, m_nextPayment = 1, m_nextArrival = 1, m_nextPurchase = 1,
        m_nextSerial = 1;
    int m_postedPayment = 0;
    qint64 m_permitSerial = 0;
};

void Mill::masterData() {
    Batch cities(m_conn, "Cities", cols("CityId,CityName"));
    int c = 0;
    for (const char* name : kCities)
        cities.add({++c, QString::fromLatin1(name)});
    cities.flush();

    Batch accounts(m_conn, "ChartOfAccounts",
                   cols("AccountNo,AccountName,ParentAccountNo,IsEditable"));
    auto account = [&](const QString& no, const QString& name, const QVariant& parent,
                       int editable) {
        accounts.add({no, name, parent, editable});
        if (accounts.full())
            accounts.flush();
    };
    account(QStringLiteral("11"), QStringLiteral("Cash and Bank"), nullText(), 0);
    account(QStringLiteral("111"), QStringLiteral("Cash in Hand"), QStringLiteral("11"), 1);
    account(QStringLiteral("112"), QStringLiteral("Banks"), QStringLiteral("11"), 0);
    const char* const banks[] = {"Habib Bank",  "National Bank", "Allied Bank",
                                 "United Bank", "MCB Bank",      "Bank Alfalah"};
    for (int i = 0; i < 6; ++i)
        account(QStringLiteral("1120%1").arg(i + 1), QString::fromLatin1(banks[i]),
                QStringLiteral("112"), 1);
    account(QStringLiteral("6"), QStringLiteral("Parties"), nullText(), 0);
    account(kBenchDfcAccount, QStringLiteral("DFC Food Department"), QStringLiteral("6"), 1);
    std::vector<QString> names;
    for (int i = 2; i <= 400; ++i) {
        const QString name =
            QString::fromLatin1(
                m_dice.pick(std::vector<const char*>(std::begin(kFirst), std::end(kFirst)))) +
            QLatin1Char(' ') + QString::fromLatin1(kSecond[m_dice.between(0, 17)]) +
            QString::fromLatin1(kSuffix[m_dice.between(0, 6)]);
        account(sellerAt(i), name, QStringLiteral("6"), m_dice.chance(0.97) ? 1 : 0);
    }
    accounts.flush();

    Batch parties(m_conn, "Parties", cols("PartyId,CityId,IsSeller,IsBuyer,IsBroker"));
    parties.add({kBenchDfcAccount, 1, 1, 0, 0});
    for (int i = 2; i <= 400; ++i) {
        // One party in a hundred has no city: it is listed but carries a bare name.
        const QVariant city = i % 100 == 50 ? nullInt() : QVariant(m_dice.between(1, c));
        const bool seller = i <= 301, broker = i >= 302 && i <= 341;
        const bool buyer = i >= 342 || (seller && m_dice.chance(0.1));
        parties.add({sellerAt(i), city, seller ? 1 : 0, buyer ? 1 : 0, broker ? 1 : 0});
        if (parties.full())
            parties.flush();
    }
    parties.flush();

    Batch units(m_conn, "Units", cols("UnitId,UnitName,WeightInKgs"));
    units.add({1, QStringLiteral("Kg"), 1.0});
    units.add({2, QStringLiteral("Mound"), 40.0});
    units.add({3, QStringLiteral("Quintal"), 100.0});
    units.add({4, QStringLiteral("Ton"), 1000.0});
    units.flush();

    Batch bagTypes(m_conn, "BagsTypes", cols("BagsTypeId,BagsType,BagCapacity"));
    const char* const typeNames[] = {"",        "Jute 100kg", "PP 50kg",    "Jute 95kg", "PP 80kg",
                                     "PP 40kg", "Paper 10kg", "Paper 20kg", "PP 25kg"};
    for (int i = 1; i <= kBagTypes; ++i)
        bagTypes.add({i, QString::fromLatin1(typeNames[i]), kBagCapacity[i]});
    bagTypes.flush();

    Batch bagClasses(m_conn, "BagsClasses", cols("BagsClassId,BagsClass"));
    bagClasses.add({1, QStringLiteral("New")});
    bagClasses.add({2, QStringLiteral("Used")});
    bagClasses.add({3, QStringLiteral("Government")});
    bagClasses.add({4, QStringLiteral("Torn")});
    bagClasses.flush();

    Batch commodities(m_conn, "Commodities",
                      cols("CommodityId,CommodityName,CommodityClassId,DefaultBagsTypeID,"
                           "RateUnitId,StockUnitId,SaleRate,IsPurchaseable,IsSaleable,"
                           "IsWheatCommodity"));
    for (const Commodity& k : kCommodities)
        commodities.add({k.id, QString::fromLatin1(k.name), k.wheat ? 1 : (k.saleable ? 2 : 3),
                         k.bagType, 2, 1, k.saleable ? 4200.0 : 0.0, k.purchaseable ? 1 : 0,
                         k.saleable ? 1 : 0, k.wheat ? 1 : 0});
    commodities.flush();

    Batch processes(m_conn, "Processes", cols("ProcessId,ProcessName"));
    processes.add({1, QStringLiteral("Milling")});
    processes.add({2, QStringLiteral("Cleaning and Grinding")});
    processes.flush();
    Batch components(m_conn, "ProcessComponents",
                     cols("ProcessId,CommodityId,IsForInput,IsForOutPut"));
    for (int p = 0; p < 2; ++p) {
        for (int in : kInputs[p])
            components.add({p + 1, in, 1, 0});
        for (int out : kOutputs[p])
            components.add({p + 1, out, 0, 1});
    }
    components.flush();

    Batch centres(m_conn, "PRCenters", cols("CenterId,CenterName"));
    for (int i = 1; i <= 40; ++i)
        centres.add({i, QStringLiteral("PR Centre %1 %2")
                            .arg(QString::fromLatin1(kCities[(i - 1) % 25]))
                            .arg((i - 1) / 25 + 1)});
    centres.flush();

    for (int i = 0; i < 5000; ++i)
        m_plates.push_back(QStringLiteral("%1-%2")
                               .arg(QString::fromLatin1(kPlates[m_dice.between(0, 9)]))
                               .arg(m_dice.between(1000, 9999)));
}

void Mill::contracts(const QDate& d) {
    const int n = m_dice.around(2000.0 / 365.0);
    static const char* const modes[] = {"Vehicles", "Bags", "Weight"};
    static const char* const payments[] = {"DD", "Cash", "To Pay"};
    for (int i = 0; i < n; ++i) {
        ContractInfo c;
        c.id = m_nextContract++;
        c.commodityId = int(m_dice.between(1, 8));
        c.partyId = randomSeller();
        c.brokerId = m_dice.chance(0.6) ? randomBroker() : QString();
        c.perBag = m_dice.chance(0.5);
        c.brokerage = c.perBag ? cents(m_dice.real(1.0, 5.0)) : cents(m_dice.real(0.25, 1.5));
        // Prices drift upward over the years, as they do.
        const double years = d.daysTo(m_o.today) / 365.0;
        c.rate = cents(m_dice.real(3000.0, 3600.0) * std::pow(0.93, years));
        c.bagsDeduction = cents(m_dice.real(0.5, 1.2));
        c.otherDeduction = double(m_dice.between(0, 10));
        const QDate end = d.addDays(m_dice.between(10, 45));
        add(*m_contracts,
            {c.id,
             d,
             c.commodityId,
             c.brokerId.isEmpty() ? nullText() : QVariant(c.brokerId),
             c.brokerage,
             c.perBag ? 1 : 0,
             c.partyId,
             2,
             QString::fromLatin1(modes[m_dice.between(0, 2)]),
             double(m_dice.between(1, 40)),
             c.rate,
             m_dice.chance(0.3) ? 1 : 0,
             m_dice.chance(0.5) ? 1 : 0,
             d,
             end,
             QString::fromLatin1(payments[m_dice.between(0, 2)]),
             c.bagsDeduction,
             c.otherDeduction,
             m_dice.chance(0.2) ? 1 : 0,
             m_dice.chance(0.3) ? QVariant(QStringLiteral("Quality as per sample")) : nullText(),
             end < m_o.today ? 1 : 0,
             0});
        // One contract, one arrival. A few deals fall through and stay unused for ever.
        if (m_dice.chance(0.98))
            m_contractArrivals.emplace(d.addDays(m_dice.between(1, 30)), c);
    }
}

void Mill::dfcPayments(const QDate& d) {
    if (!m_dice.chance(300.0 / 365.0))
        return;
    const int id = m_nextPayment++;
    const int centre = int(m_dice.between(1, 40));
    const int commodity = m_dice.chance(0.8) ? 8 : int(m_dice.between(1, 7));
    const int letters = int(m_dice.between(1, 8));
    std::vector<std::pair<QString, double>> permits;
    double bags = 0;
    for (int i = 0; i < letters; ++i) {
        const double b = double(m_dice.between(5, 40) * 100);
        permits.emplace_back(
            QStringLiteral("AL-%1-%2").arg(d.year()).arg(++m_permitSerial, 6, 10, QLatin1Char('0')),
            b);
        bags += b;
    }
    const double bagWeight = 100;
    const double weight = bags * bagWeight;
    const double years = d.daysTo(m_o.today) / 365.0;
    const double rate = cents(m_dice.real(2900.0, 3300.0) * std::pow(0.93, years));
    const double value = cents(weight * rate / 40.0);
    const bool withBags = m_dice.chance(0.5);
    const double bagPrice = withBags ? cents(m_dice.real(60.0, 120.0)) : 0.0;
    const double bagsValue = withBags ? cents(bags * bagPrice) : 0.0;
    add(*m_payments, {id,
                      d,
                      commodity,
                      randomBank(),
                      QStringLiteral("CH-%1").arg(id * 7 + 1000),
                      bags,
                      bagWeight,
                      weight,
                      2,
                      rate,
                      value,
                      1,
                      3,
                      withBags ? bags : 0.0,
                      bagPrice,
                      bagsValue,
                      money(value / weight),
                      bagPrice,
                      1,
                      0});
    for (const auto& [permit, b] : permits) {
        add(*m_letters, {id, permit, d, centre, b, bagWeight, b * bagWeight, 0});
        m_recentLetters.push_back(Letter{permit, centre, commodity, d});
    }
}

int Mill::arrival(const QDate& d, int commodityId, const QString& seller,
                  const ContractInfo* contract, const Letter* letter) {
    const int id = m_nextArrival++;
    add(*m_arrivals, {id, d, letter ? QVariant(letter->permitNo) : nullText(),
                      letter ? QVariant(letter->centerId) : nullInt(), commodityId, seller,
                      contract ? QVariant(contract->id) : nullInt(), 1});
    const int count = int(m_dice.between(1, 5));
    const int bagType = kCommodities[commodityId - 1].bagType;
    const double baseRate =
        contract ? contract->rate
                 : cents(m_dice.real(2900.0, 3600.0) * std::pow(0.93, d.daysTo(m_o.today) / 365.0));
    std::vector<Vehicle> invoiced;
    std::vector<QString> used;
    for (int i = 0; i < count; ++i) {
        Vehicle v;
        do
            v.no = m_dice.pick(m_plates);
        while (std::find(used.begin(), used.end(), v.no) != used.end());
        used.push_back(v.no);
        v.bagsClass = letter ? 3 : int(m_dice.between(1, 2));
        v.bagsType = bagType;
        v.bags = double(m_dice.between(100, 600));
        v.bagWeight = kBagCapacity[bagType] + double(m_dice.between(-2, 3));
        v.bagsDeduction = contract ? contract->bagsDeduction : cents(m_dice.real(0.5, 1.2));
        v.otherDeduction = contract ? contract->otherDeduction : double(m_dice.between(0, 10));
        v.net = cents(v.bags * v.bagWeight - v.bags * v.bagsDeduction - v.otherDeduction);
        v.rate = baseRate;
        v.bagsRate = m_dice.chance(0.3) ? cents(m_dice.real(40.0, 90.0)) : 0.0;
        add(*m_arrivalBody, {id, commodityId, v.no, v.no, v.bagsClass, v.bagsType, v.bags,
                             v.bagWeight, v.bagsDeduction, v.otherDeduction, v.net,
                             QString::fromLatin1(kDrivers[m_dice.between(0, 9)]),
                             QStringLiteral("B-%1").arg(m_dice.between(10000, 99999)), v.rate,
                             v.bagsRate, 2, money(v.rate / 40.0), v.bagsRate, 0.0});
        // Nine vehicles in ten are invoiced, a few days after they came in.
        if (m_dice.chance(0.9))
            invoiced.push_back(v);
    }
    const QDate due = d.addDays(m_dice.between(0, 10));
    if (!invoiced.empty() && due <= m_o.today) {
        PendingInvoice p{id,
                         commodityId,
                         seller,
                         contract ? std::optional<int>(contract->id) : std::nullopt,
                         contract ? contract->brokerId : QString(),
                         contract ? contract->brokerage : 0.0,
                         contract ? contract->perBag : false,
                         std::move(invoiced)};
        m_invoiceDue.emplace(due, std::move(p));
    }
    return id;
}

void Mill::arrivals(const QDate& d) {
    // Through contracts: each contract's one arrival, on the day it was due.
    auto range = m_contractArrivals.equal_range(d);
    std::vector<ContractInfo> due;
    for (auto it = range.first; it != range.second; ++it)
        due.push_back(it->second);
    m_contractArrivals.erase(range.first, range.second);
    for (const ContractInfo& c : due)
        arrival(d, c.commodityId, c.partyId, &c, nullptr);

    // Through PR centres, against a permit of the last four months.
    while (!m_recentLetters.empty() && m_recentLetters.front().date.daysTo(d) > 120)
        m_recentLetters.erase(m_recentLetters.begin());
    const int viaCentre = m_recentLetters.empty() ? 0 : m_dice.around(3000.0 / 365.0);
    for (int i = 0; i < viaCentre; ++i) {
        const Letter l = m_dice.pick(m_recentLetters);
        arrival(d, l.commodityId, kBenchDfcAccount, nullptr, &l);
    }

    // The rest come from sellers without a contract.
    const int free = m_dice.around(25000.0 / 365.0 - 2000.0 / 365.0 - 3000.0 / 365.0);
    for (int i = 0; i < free; ++i) {
        const int commodity =
            m_dice.chance(0.85) ? int(m_dice.between(1, 7)) : int(m_dice.between(9, 12));
        arrival(d, commodity, randomSeller(), nullptr, nullptr);
    }
}

void Mill::invoices(const QDate& d) {
    auto range = m_invoiceDue.equal_range(d);
    for (auto it = range.first; it != range.second; ++it) {
        const PendingInvoice& p = it->second;
        const int id = m_nextPurchase++;
        const double unloading = double(m_dice.between(0, 3));
        const double freight = m_dice.chance(0.4) ? double(m_dice.between(5, 20)) : 0.0;
        double total = 0, bags = 0;
        for (const Vehicle& v : p.vehicles) {
            total += cents(v.net * v.rate / 40.0) + cents(v.bags * v.bagsRate);
            bags += v.bags;
        }
        const double charges = bags * (unloading + freight);
        const double paid = m_dice.chance(0.7) ? cents(total * m_dice.real(0.6, 1.0)) : 0.0;
        add(*m_purchases,
            {id, d, p.contractId ? QVariant(*p.contractId) : nullInt(), p.sellerId,
             p.brokerId.isEmpty() ? nullText() : QVariant(p.brokerId), p.brokerage,
             p.perBag ? 1 : 0, unloading, freight, 0.0, 0.0, paid, 0.0, 0.0, 0.0, 0.0, 0.0, 0});
        for (const Vehicle& v : p.vehicles) {
            const double value = cents(v.net * v.rate / 40.0);
            const double cost =
                v.net > 0 ? money((value + v.bags * (unloading + freight)) / v.net) : 0.0;
            add(*m_purchaseBody, {id, p.arrivalId, v.no, p.commodityId, v.bagWeight, v.bags, v.net,
                                  2, v.rate, v.bagsRate, value, cost, v.bagsRate, 0, 0});
        }
        // The seller's ledger: the invoice is owed to them, and most are partly paid at once.
        add(*m_ledger, {p.sellerId, d, 0.0, cents(total - charges)});
        if (paid > 0)
            add(*m_ledger, {p.sellerId, d, paid, 0.0});
    }
    m_invoiceDue.erase(range.first, range.second);
}

void Mill::production(const QDate& d) {
    for (int p = 0; p < 2; ++p) {
        const bool ownBags = m_dice.chance(0.7);
        add(*m_daily,
            {d, p + 1, double(m_dice.between(16, 24)),
             m_dice.chance(0.1) ? QVariant(QStringLiteral("Maintenance stop")) : nullText(),
             double(m_dice.between(20000, 60000)), double(m_dice.between(0, 15000)), 0,
             ownBags ? 1 : 0});
        for (int in : kInputs[p])
            add(*m_consumption, {d, p + 1, in, 1, 2, double(m_dice.between(100, 500)), 100.0,
                                 money(m_dice.real(70.0, 95.0)), ownBags ? 1 : 0});
        for (int out : kOutputs[p]) {
            const int type = kCommodities[out - 1].bagType;
            add(*m_production, {d, p + 1, out, type, 1, double(m_dice.between(50, 400)),
                                kBagCapacity[type], money(m_dice.real(80.0, 120.0))});
        }
    }
}

void Mill::hourly(const QDate& d) {
    for (int h = 0; h < 24; ++h) {
        const int serial = m_nextSerial++;
        add(*m_hourly, {serial, QDateTime(d, QTime(h, 0))});
        for (int i = 0; i < 2; ++i) {
            const int out = kOutputs[i][m_dice.between(0, 5)];
            const int type = kCommodities[out - 1].bagType;
            const double bags = double(m_dice.between(5, 40));
            add(*m_hourlyBody,
                {serial, out, type, 1, bags, kBagCapacity[type], bags * kBagCapacity[type]});
        }
    }
}

void Mill::post() {
    // Arrival heads go in posted, ahead of their vehicles, so each vehicle's own trigger brings
    // its goods into stock: the same quantities as posting afterwards, without the posting
    // trigger reading every vehicle of the arrival back. DFC heads are posted after their
    // letters, as the screen does.
    const int lastPayment = m_nextPayment - 1;
    if (lastPayment > m_postedPayment) {
        execute(m_conn,
                QStringLiteral("UPDATE DFCPayments SET IsPosted = 1 "
                               "WHERE PaymentId > ? AND PaymentId <= ?"),
                {m_postedPayment, lastPayment});
        m_postedPayment = lastPayment;
    }
}

void Mill::flushAll() {
    for (auto& b : m_order)
        b->flush();
    post();
}

GenerateReport Mill::run() {
    QElapsedTimer clock;
    clock.start();
    const bool sqlite = !m_conn.isPostgres();
    if (toInt(scalar(m_conn, QStringLiteral("SELECT COUNT(*) FROM ChartOfAccounts"))) > 0)
        throw DbError(QStringLiteral("The database already holds a mill; generate into an "
                                     "empty one."),
                      QStringLiteral("grainmill-bench"));
    // Losing the file to a crash mid-generation costs nothing but a rerun.
    if (sqlite) {
        execute(m_conn, QStringLiteral("PRAGMA synchronous = OFF"));
        // Written once, the pages need no second copy in the write-ahead log.
        execute(m_conn, QStringLiteral("PRAGMA journal_mode = OFF"));
        // The indexes on vehicle numbers and names take rows at random places; a cache that
        // holds them spares a read for nearly every row.
        execute(m_conn, QStringLiteral("PRAGMA cache_size = -524288"));
    }

    auto batch = [&](const char* table, const char* columns) {
        m_order.push_back(std::make_unique<Batch>(m_conn, table, cols(columns)));
        return m_order.back().get();
    };
    m_contracts = batch("PContracts",
                        "ContractId,ContractDate,CommodityId,BrokerId,Brokerage,"
                        "IsBrokeragePerBag,PartyId,RateUnitId,ContractMode,Quantity,RatePerUnit,"
                        "IsWithBags,IsDeliveryInMill,DeliveryStartDate,DeliveryEndDate,"
                        "ModeOfPayment,BagsDeduction,OtherDeduction,IsPaymentOnSite,OtherTerms,"
                        "IsCompleted,IsPosted");
    m_payments = batch("DFCPayments",
                       "PaymentId,PaymentDate,CommodityId,BankAccountNo,ChallanNo,NoOfBags,"
                       "BagWeight,TotalWeight,RateUnitId,RatePerUnit,TTLValueWheet,BagsTypeId,"
                       "BagsClassId,BagsQty,PricePerBag,TTLValueBags,Cost,BagsCost,UserNo,"
                       "IsPosted");
    m_letters = batch("AuthorityLetters",
                      "PaymentId,PermitNo,Date,CenterId,NoOfBags,BagWeight,TotalWeight,IsWithBags");
    m_arrivals =
        batch("Arrivals", "ArrivalId,ArrivalDate,PermitNo,CenterId,CommodityId,SellerId,ContractId,"
                          "IsPosted");
    m_arrivalBody = batch("ArrivalsBody",
                          "ArrivalId,CommodityId,VehicleNo,VehicleNoText,BagsClassId,BagsTypeId,"
                          "NoOfBags,BagWeight,BagsDeduction,OtherDeduction,NetWeight,DriverName,"
                          "BiltyNo,RateUnit,BagsRate,RateUnitId,Cost,BagsCost,TareWeight");
    m_purchases =
        batch("Purchases", "PurchaseId,PurchaseDate,ContractId,SellerId,BrokerId,Brokerage,"
                           "IsBrokeragePerBag,Unloading,Freight,Expenses,PreviousCredit,PaidAmount,"
                           "SpecialDiscount,CommPerMound,CommValue,WHTaxRatio,WHTaxValue,IsPosted");
    m_purchaseBody =
        batch("PurchaseBody", "PurchaseId,ArrivalId,VehicleNo,CommodityId,BagWeight,NoOfBags,"
                              "TotalWeight,RateUnitId,RatePerUnit,BagRate,TTLValue,Cost,BagsCost,"
                              "IsWithBags,BagsPurchased");
    m_ledger = batch("LedgerEntries", "AccountNo,EntryDate,Debit,Credit");
    m_daily =
        batch("DailyProduction", "ProductionDate,ProcessId,FactoryTime,Remarks,ProductionCharges,"
                                 "OtherExpenses,IsPosted,AddBardana");
    m_consumption =
        batch("Consumption", "ProductionDate,ProcessId,CommodityId,BagsTypeId,BagsClassId,NoOfBags,"
                             "BagWeight,Cost,AddBardana");
    m_production =
        batch("Production", "ProductionDate,ProcessId,CommodityId,BagsTypeId,BagsClassId,NoOfBags,"
                            "BagWeight,Cost");
    m_hourly = batch("HourlyProduction", "SerialNo,ProcessTime");
    m_hourlyBody =
        batch("HProductionBody", "SerialNo,CommodityId,BagsTypeId,BagsClassId,NoOfBags,BagWeight,"
                                 "TTLWeight");

    const int days = std::max(1, int(std::lround(m_o.years * 365.0)));
    const QDate first = m_o.today.addDays(1 - days);
    {
        Transaction t(m_conn, Transaction::Write);
        masterData();
        // Every party starts with the balance it brought from before the history begins.
        for (int i = 2; i <= 341; ++i)
            add(*m_ledger,
                {sellerAt(i), first.addDays(-1), 0.0, double(m_dice.between(0, 500) * 1000)});
        flushAll();
        t.commit();
    }
    say(QStringLiteral("master data: %1 ms").arg(clock.elapsed()));

    std::optional<Transaction> t;
    t.emplace(m_conn, Transaction::Write);
    for (QDate d = first; d <= m_o.today; d = d.addDays(1)) {
        contracts(d);
        dfcPayments(d);
        arrivals(d);
        invoices(d);
        production(d);
        hourly(d);
        flushAll();
        // On a server a day per transaction: every vehicle and production line moves one of a
        // few stock rows, and the server walks all the versions a transaction has left of a
        // row to update it again, so a year in one transaction costs the square of its lines.
        // SQLite has no such versions and is fastest with few commits.
        const bool yearEnd = first.daysTo(d) % 365 == 364;
        if (yearEnd || !sqlite) {
            t->commit();
            t.emplace(m_conn, Transaction::Write);
        }
        if (yearEnd)
            say(QStringLiteral("up to %1: %2 arrivals, %3 ms")
                    .arg(d.toString(Qt::ISODate))
                    .arg(m_nextArrival - 1)
                    .arg(clock.elapsed()));
    }
    flushAll();
    t->commit();
    t.reset();

    if (sqlite) {
        execute(m_conn, QStringLiteral("PRAGMA journal_mode = WAL"));
        execute(m_conn, QStringLiteral("PRAGMA synchronous = NORMAL"));
    }
    // The planners need to know how the tables are now shaped, and a server trusts its
    // index-only scans only on pages its vacuum has marked. A server refuses to prepare these
    // statements, so they go as plain text; they carry no value.
    QSqlQuery analyze(m_conn.db());
    if (!analyze.exec(sqlite ? QStringLiteral("ANALYZE") : QStringLiteral("VACUUM ANALYZE")))
        throw DbError(analyze.lastError().text(), QStringLiteral("Generating"));

    GenerateReport report;
    const char* const tables[] = {"Cities",
                                  "ChartOfAccounts",
                                  "Parties",
                                  "Units",
                                  "BagsTypes",
                                  "BagsClasses",
                                  "Commodities",
                                  "Processes",
                                  "ProcessComponents",
                                  "PRCenters",
                                  "PContracts",
                                  "DFCPayments",
                                  "AuthorityLetters",
                                  "Arrivals",
                                  "ArrivalsBody",
                                  "Purchases",
                                  "PurchaseBody",
                                  "LedgerEntries",
                                  "DailyProduction",
                                  "Consumption",
                                  "Production",
                                  "HourlyProduction",
                                  "HProductionBody",
                                  "CurrentStock",
                                  "BagsCurrentStock"};
    for (const char* table : tables)
        report.rows.emplace_back(
            QString::fromLatin1(table),
            toInt(scalar(m_conn, QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table))));
    report.elapsedMs = clock.elapsed();
    return report;
}

} // namespace

GenerateReport generateMill(const Conn& conn, const GenerateOptions& options) {
    Mill mill(conn, options);
    return mill.run();
}

} // namespace gm::bench
