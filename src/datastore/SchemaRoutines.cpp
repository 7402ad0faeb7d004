#include "datastore/SchemaParts.h"

// The stock quantities are kept by the database alone, so that no screen can forget a case:
//   CurrentStock.TotalWeight  = net weight of the vehicles of posted arrivals
//                               - bags x bag weight consumed + bags x bag weight produced
//   BagsCurrentStock.NoOfBags = bags of the vehicles of posted arrivals
//                               - bags produced on days that do not add their own bags
// Every trigger moves the quantities by the difference a row makes, first taking out what the
// old row gave and then putting in what the new row gives; a stock row that is missing is
// created with cost 0 before it is moved.

namespace gm::schema {

namespace {

// --- PostgreSQL ------------------------------------------------------------------------------

const char* const kPostgres[] = {
    // The mill's statements are small and many; compiling them to machine code costs far more
    // than it saves (a second per statement before the tables have statistics). Switched off
    // for this database where the login may, and for the session at hand in any case.
    R"(DO $$ BEGIN
         EXECUTE format('ALTER DATABASE %I SET jit = off', current_database());
       EXCEPTION WHEN insufficient_privilege THEN NULL;
       END $$)",
    "SET jit = off",

    // Server routines. Plain SQL and STABLE, so that the planner can inline them into the
    // searches that call them once per row.
    R"(CREATE FUNCTION FunGetPartyName(account text) RETURNS text
       LANGUAGE sql STABLE AS $$
         SELECT CASE WHEN c.CityName IS NULL THEN a.AccountName
                     ELSE a.AccountName || '-' || c.CityName END
           FROM ChartOfAccounts a
           LEFT JOIN Parties p ON p.PartyId = a.AccountNo
           LEFT JOIN Cities c ON c.CityId = p.CityId
          WHERE a.AccountNo = account
       $$)",
    R"(CREATE FUNCTION FunGetCommodity(commodity integer) RETURNS text
       LANGUAGE sql STABLE AS $$
         SELECT CommodityName FROM Commodities WHERE CommodityId = commodity
       $$)",
    R"(CREATE FUNCTION FungrnCurrentDebit(account text, upto date) RETURNS numeric
       LANGUAGE sql STABLE AS $$
         SELECT COALESCE(SUM(COALESCE(Debit, 0) - COALESCE(Credit, 0)), 0)
           FROM LedgerEntries
          WHERE AccountNo = account AND EntryDate <= upto
       $$)",

    // Helpers of the triggers.
    R"(CREATE FUNCTION gm_move_weight(commodity integer, delta numeric) RETURNS void
       LANGUAGE plpgsql AS $$
       BEGIN
         IF commodity IS NULL OR COALESCE(delta, 0) = 0 THEN RETURN; END IF;
         INSERT INTO CurrentStock (CommodityId, TotalWeight, Cost)
              VALUES (commodity, 0, 0) ON CONFLICT DO NOTHING;
         UPDATE CurrentStock SET TotalWeight = TotalWeight + delta
          WHERE CommodityId = commodity;
       END $$)",
    R"(CREATE FUNCTION gm_move_bags(bagtype integer, bagclass integer, delta numeric)
       RETURNS void LANGUAGE plpgsql AS $$
       BEGIN
         IF bagtype IS NULL OR bagclass IS NULL OR COALESCE(delta, 0) = 0 THEN RETURN; END IF;
         INSERT INTO BagsCurrentStock (BagsTypeId, BagsClassId, NoOfBags, Cost)
              VALUES (bagtype, bagclass, 0, 0) ON CONFLICT DO NOTHING;
         UPDATE BagsCurrentStock SET NoOfBags = NoOfBags + delta
          WHERE BagsTypeId = bagtype AND BagsClassId = bagclass;
       END $$)",
    R"(CREATE FUNCTION gm_arrival_posted(arrival integer) RETURNS boolean
       LANGUAGE sql STABLE AS $$
         SELECT COALESCE((SELECT IsPosted = 1 FROM Arrivals WHERE ArrivalId = arrival), false)
       $$)",
    R"(CREATE FUNCTION gm_day_adds_bags(day date, process integer) RETURNS boolean
       LANGUAGE sql STABLE AS $$
         SELECT COALESCE((SELECT AddBardana = 1 FROM DailyProduction
                           WHERE ProductionDate = day AND ProcessId = process), false)
       $$)",

    // A vehicle line counts while its arrival is posted.
    R"(CREATE FUNCTION gm_arrivalsbody_stock() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' AND gm_arrival_posted(OLD.ArrivalId) THEN
           PERFORM gm_move_weight(OLD.CommodityId, -OLD.NetWeight);
           PERFORM gm_move_bags(OLD.BagsTypeId, OLD.BagsClassId, -OLD.NoOfBags);
         END IF;
         IF TG_OP <> 'DELETE' AND gm_arrival_posted(NEW.ArrivalId) THEN
           PERFORM gm_move_weight(NEW.CommodityId, NEW.NetWeight);
           PERFORM gm_move_bags(NEW.BagsTypeId, NEW.BagsClassId, NEW.NoOfBags);
         END IF;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrArrivalsBodyStock AFTER INSERT OR UPDATE OR DELETE ON ArrivalsBody
       FOR EACH ROW EXECUTE FUNCTION gm_arrivalsbody_stock())",

    // Posting brings all the vehicles in, unposting takes them out; a posted head that goes
    // takes its vehicles with it (the keys refuse that while vehicles remain, but the stock
    // must not rest on that alone).
    R"(CREATE FUNCTION gm_arrivals_stock() RETURNS trigger LANGUAGE plpgsql AS $$
       DECLARE
         was boolean := TG_OP <> 'INSERT' AND COALESCE(OLD.IsPosted, 0) = 1;
         now_ boolean := TG_OP <> 'DELETE' AND COALESCE(NEW.IsPosted, 0) = 1;
         line record;
       BEGIN
         IF was AND (NOT now_ OR OLD.ArrivalId <> NEW.ArrivalId) THEN
           FOR line IN SELECT * FROM ArrivalsBody WHERE ArrivalId = OLD.ArrivalId LOOP
             PERFORM gm_move_weight(line.CommodityId, -line.NetWeight);
             PERFORM gm_move_bags(line.BagsTypeId, line.BagsClassId, -line.NoOfBags);
           END LOOP;
         END IF;
         IF now_ AND (NOT was OR OLD.ArrivalId <> NEW.ArrivalId) THEN
           FOR line IN SELECT * FROM ArrivalsBody WHERE ArrivalId = NEW.ArrivalId LOOP
             PERFORM gm_move_weight(line.CommodityId, line.NetWeight);
             PERFORM gm_move_bags(line.BagsTypeId, line.BagsClassId, line.NoOfBags);
           END LOOP;
         END IF;
         IF TG_OP = 'DELETE' THEN RETURN OLD; END IF;
         RETURN NEW;
       END $$)",
    R"(CREATE TRIGGER TrArrivalsStock BEFORE UPDATE OR DELETE ON Arrivals
       FOR EACH ROW EXECUTE FUNCTION gm_arrivals_stock())",

    R"(CREATE FUNCTION gm_consumption_stock() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' THEN
           PERFORM gm_move_weight(OLD.CommodityId, OLD.NoOfBags * OLD.BagWeight);
         END IF;
         IF TG_OP <> 'DELETE' THEN
           PERFORM gm_move_weight(NEW.CommodityId, -(NEW.NoOfBags * NEW.BagWeight));
         END IF;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrConsumptionStock AFTER INSERT OR UPDATE OR DELETE ON Consumption
       FOR EACH ROW EXECUTE FUNCTION gm_consumption_stock())",

    // Output is packed in the mill's own bags unless the day adds its bags in.
    R"(CREATE FUNCTION gm_production_stock() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' THEN
           PERFORM gm_move_weight(OLD.CommodityId, -(OLD.NoOfBags * OLD.BagWeight));
           IF NOT gm_day_adds_bags(OLD.ProductionDate, OLD.ProcessId) THEN
             PERFORM gm_move_bags(OLD.BagsTypeId, OLD.BagsClassId, OLD.NoOfBags);
           END IF;
         END IF;
         IF TG_OP <> 'DELETE' THEN
           PERFORM gm_move_weight(NEW.CommodityId, NEW.NoOfBags * NEW.BagWeight);
           IF NOT gm_day_adds_bags(NEW.ProductionDate, NEW.ProcessId) THEN
             PERFORM gm_move_bags(NEW.BagsTypeId, NEW.BagsClassId, -NEW.NoOfBags);
           END IF;
         END IF;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrProductionStock AFTER INSERT OR UPDATE OR DELETE ON Production
       FOR EACH ROW EXECUTE FUNCTION gm_production_stock())",

    // Turning the day's flag gives back or takes again the bags of its output.
    R"(CREATE FUNCTION gm_dailyproduction_stock() RETURNS trigger LANGUAGE plpgsql AS $$
       DECLARE
         line record;
         direction numeric;
       BEGIN
         IF (COALESCE(OLD.AddBardana, 0) = 1) = (COALESCE(NEW.AddBardana, 0) = 1) THEN
           RETURN NULL;
         END IF;
         direction := CASE WHEN COALESCE(NEW.AddBardana, 0) = 1 THEN 1 ELSE -1 END;
         FOR line IN SELECT * FROM Production
                      WHERE ProductionDate = NEW.ProductionDate AND ProcessId = NEW.ProcessId
         LOOP
           PERFORM gm_move_bags(line.BagsTypeId, line.BagsClassId, direction * line.NoOfBags);
         END LOOP;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrDailyProductionStock AFTER UPDATE OF AddBardana ON DailyProduction
       FOR EACH ROW EXECUTE FUNCTION gm_dailyproduction_stock())",
};

// --- SQLite ----------------------------------------------------------------------------------
// The routines of SQLite live in the program (registerSqliteFunctions); only triggers here.
// A trigger cannot call a procedure, so each movement is written out: a stock row is first
// made sure of, then moved.

QString weightMove(const QString& row, const QString& delta, const QString& when) {
    return QStringLiteral("INSERT OR IGNORE INTO CurrentStock (CommodityId, TotalWeight, Cost) "
                          "SELECT %1.CommodityId, 0, 0 WHERE %1.CommodityId IS NOT NULL AND (%3);\n"
                          "UPDATE CurrentStock SET TotalWeight = TotalWeight + (%2) "
                          "WHERE CommodityId = %1.CommodityId AND (%3);\n")
        .arg(row, delta, when);
}

QString bagsMove(const QString& row, const QString& delta, const QString& when) {
    return QStringLiteral(
               "INSERT OR IGNORE INTO BagsCurrentStock (BagsTypeId, BagsClassId, NoOfBags, Cost) "
               "SELECT %1.BagsTypeId, %1.BagsClassId, 0, 0 "
               "WHERE %1.BagsTypeId IS NOT NULL AND %1.BagsClassId IS NOT NULL AND (%3);\n"
               "UPDATE BagsCurrentStock SET NoOfBags = NoOfBags + (%2) "
               "WHERE BagsTypeId = %1.BagsTypeId AND BagsClassId = %1.BagsClassId AND (%3);\n")
        .arg(row, delta, when);
}

QString arrivalPosted(const QString& row) {
    return QStringLiteral("COALESCE((SELECT IsPosted FROM Arrivals WHERE ArrivalId = "
                          "%1.ArrivalId), 0) = 1")
        .arg(row);
}

QString dayKeepsBags(const QString& row) {
    return QStringLiteral("COALESCE((SELECT AddBardana FROM DailyProduction WHERE "
                          "ProductionDate = %1.ProductionDate AND ProcessId = %1.ProcessId), "
                          "0) <> 1")
        .arg(row);
}

QString trigger(const QString& name, const QString& event, const QString& body,
                const QString& when = {}) {
    return QStringLiteral("CREATE TRIGGER %1 %2 FOR EACH ROW %3BEGIN\n%4END")
        .arg(name, event, when.isEmpty() ? QString() : QStringLiteral("WHEN %1 ").arg(when), body);
}

// All lines of one arrival, in or out at once, as the flag of its head turns.
QString arrivalLinesMove(const QString& head, const QString& sign) {
    const QString lines =
        QStringLiteral("(SELECT CommodityId, SUM(COALESCE(NetWeight, 0)) AS W FROM ArrivalsBody "
                       "WHERE ArrivalId = %1.ArrivalId GROUP BY CommodityId)")
            .arg(head);
    const QString bags =
        QStringLiteral("(SELECT BagsTypeId, BagsClassId, SUM(COALESCE(NoOfBags, 0)) AS N "
                       "FROM ArrivalsBody WHERE ArrivalId = %1.ArrivalId AND BagsTypeId IS NOT "
                       "NULL AND BagsClassId IS NOT NULL GROUP BY BagsTypeId, BagsClassId)")
            .arg(head);
    return QStringLiteral(
               "INSERT OR IGNORE INTO CurrentStock (CommodityId, TotalWeight, Cost) "
               "SELECT DISTINCT CommodityId, 0, 0 FROM ArrivalsBody WHERE ArrivalId = "
               "%1.ArrivalId;\n"
               "UPDATE CurrentStock SET TotalWeight = TotalWeight %2 COALESCE((SELECT L.W FROM %3 "
               "L "
               "WHERE L.CommodityId = CurrentStock.CommodityId), 0) "
               "WHERE CommodityId IN (SELECT CommodityId FROM ArrivalsBody WHERE ArrivalId = "
               "%1.ArrivalId);\n"
               "INSERT OR IGNORE INTO BagsCurrentStock (BagsTypeId, BagsClassId, NoOfBags, Cost) "
               "SELECT DISTINCT BagsTypeId, BagsClassId, 0, 0 FROM %4;\n"
               "UPDATE BagsCurrentStock SET NoOfBags = NoOfBags %2 COALESCE((SELECT B.N FROM %4 B "
               "WHERE B.BagsTypeId = BagsCurrentStock.BagsTypeId AND B.BagsClassId = "
               "BagsCurrentStock.BagsClassId), 0) "
               // The bag kinds of this one arrival are listed first, through its key; a
               // correlated test per stock row lets the planner walk every vehicle of a bag
               // kind instead, which grows with the years.
               "WHERE (BagsTypeId, BagsClassId) IN (SELECT BagsTypeId, BagsClassId FROM "
               "ArrivalsBody WHERE ArrivalId = %1.ArrivalId);\n")
        .arg(head, sign, lines, bags);
}

// Posting a head moves all of its vehicles at once.
QStringList arrivalPostingTriggers() {
    const QString O = QStringLiteral("OLD"), N = QStringLiteral("NEW");
    return {
        // BEFORE, so that the lines are still those of the head being turned or removed.
        trigger(QStringLiteral("TrArrivalsStockUnpost"),
                QStringLiteral("BEFORE UPDATE ON Arrivals"),
                arrivalLinesMove(O, QStringLiteral("-")),
                QStringLiteral("COALESCE(OLD.IsPosted, 0) = 1 AND (COALESCE(NEW.IsPosted, 0) <> 1 "
                               "OR NEW.ArrivalId <> OLD.ArrivalId)")),
        trigger(QStringLiteral("TrArrivalsStockDel"), QStringLiteral("BEFORE DELETE ON Arrivals"),
                arrivalLinesMove(O, QStringLiteral("-")),
                QStringLiteral("COALESCE(OLD.IsPosted, 0) = 1")),
        trigger(QStringLiteral("TrArrivalsStockPost"), QStringLiteral("AFTER UPDATE ON Arrivals"),
                arrivalLinesMove(N, QStringLiteral("+")),
                QStringLiteral("COALESCE(NEW.IsPosted, 0) = 1 AND (COALESCE(OLD.IsPosted, 0) <> 1 "
                               "OR NEW.ArrivalId <> OLD.ArrivalId)")),
    };
}

QStringList sqliteTriggers() {
    const QString oldPosted = arrivalPosted(QStringLiteral("OLD"));
    const QString newPosted = arrivalPosted(QStringLiteral("NEW"));
    const QString always = QStringLiteral("1 = 1");
    const QString oldWeight =
        QStringLiteral("COALESCE(OLD.NoOfBags, 0) * COALESCE(OLD.BagWeight, 0)");
    const QString newWeight =
        QStringLiteral("COALESCE(NEW.NoOfBags, 0) * COALESCE(NEW.BagWeight, 0)");
    const QString O = QStringLiteral("OLD"), N = QStringLiteral("NEW");

    const QString lineOut =
        weightMove(O, QStringLiteral("-COALESCE(OLD.NetWeight, 0)"), oldPosted) +
        bagsMove(O, QStringLiteral("-COALESCE(OLD.NoOfBags, 0)"), oldPosted);
    const QString lineIn = weightMove(N, QStringLiteral("COALESCE(NEW.NetWeight, 0)"), newPosted) +
                           bagsMove(N, QStringLiteral("COALESCE(NEW.NoOfBags, 0)"), newPosted);

    const QString productionOut =
        weightMove(O, QStringLiteral("-(%1)").arg(oldWeight), always) +
        bagsMove(O, QStringLiteral("COALESCE(OLD.NoOfBags, 0)"), dayKeepsBags(O));
    const QString productionIn =
        weightMove(N, newWeight, always) +
        bagsMove(N, QStringLiteral("-COALESCE(NEW.NoOfBags, 0)"), dayKeepsBags(N));

    const QString dayBags = QStringLiteral(
        "(SELECT BagsTypeId, BagsClassId, SUM(COALESCE(NoOfBags, 0)) AS N FROM Production "
        "WHERE ProductionDate = NEW.ProductionDate AND ProcessId = NEW.ProcessId AND BagsTypeId "
        "IS NOT NULL AND BagsClassId IS NOT NULL GROUP BY BagsTypeId, BagsClassId)");
    auto dayBagsMove = [&](const QString& sign) {
        return QStringLiteral(
                   "INSERT OR IGNORE INTO BagsCurrentStock (BagsTypeId, BagsClassId, NoOfBags, "
                   "Cost) SELECT BagsTypeId, BagsClassId, 0, 0 FROM %1;\n"
                   "UPDATE BagsCurrentStock SET NoOfBags = NoOfBags %2 COALESCE((SELECT D.N FROM "
                   "%1 D WHERE D.BagsTypeId = BagsCurrentStock.BagsTypeId AND D.BagsClassId = "
                   "BagsCurrentStock.BagsClassId), 0);\n")
            .arg(dayBags, sign);
    };

    return {
        trigger(QStringLiteral("TrArrivalsBodyStockIns"),
                QStringLiteral("AFTER INSERT ON ArrivalsBody"), lineIn),
        trigger(QStringLiteral("TrArrivalsBodyStockUpd"),
                QStringLiteral("AFTER UPDATE ON ArrivalsBody"), lineOut + lineIn),
        trigger(QStringLiteral("TrArrivalsBodyStockDel"),
                QStringLiteral("AFTER DELETE ON ArrivalsBody"), lineOut),

        trigger(QStringLiteral("TrConsumptionStockIns"),
                QStringLiteral("AFTER INSERT ON Consumption"),
                weightMove(N, QStringLiteral("-(%1)").arg(newWeight), always)),
        trigger(QStringLiteral("TrConsumptionStockUpd"),
                QStringLiteral("AFTER UPDATE ON Consumption"),
                weightMove(O, oldWeight, always) +
                    weightMove(N, QStringLiteral("-(%1)").arg(newWeight), always)),
        trigger(QStringLiteral("TrConsumptionStockDel"),
                QStringLiteral("AFTER DELETE ON Consumption"), weightMove(O, oldWeight, always)),

        trigger(QStringLiteral("TrProductionStockIns"),
                QStringLiteral("AFTER INSERT ON Production"), productionIn),
        trigger(QStringLiteral("TrProductionStockUpd"),
                QStringLiteral("AFTER UPDATE ON Production"), productionOut + productionIn),
        trigger(QStringLiteral("TrProductionStockDel"),
                QStringLiteral("AFTER DELETE ON Production"), productionOut),

        trigger(QStringLiteral("TrDailyProductionBagsIn"),
                QStringLiteral("AFTER UPDATE OF AddBardana ON DailyProduction"),
                dayBagsMove(QStringLiteral("+")),
                QStringLiteral("COALESCE(NEW.AddBardana, 0) = 1 AND COALESCE(OLD.AddBardana, 0) "
                               "<> 1")),
        trigger(QStringLiteral("TrDailyProductionBagsOut"),
                QStringLiteral("AFTER UPDATE OF AddBardana ON DailyProduction"),
                dayBagsMove(QStringLiteral("-")),
                QStringLiteral("COALESCE(NEW.AddBardana, 0) <> 1 AND COALESCE(OLD.AddBardana, 0) "
                               "= 1")),
    };
}

} // namespace

QStringList sqliteRoutineStatements() {
    return sqliteTriggers() + arrivalPostingTriggers();
}

QStringList sqliteArrivalPostingRebuild() {
    QStringList steps = {QStringLiteral("DROP TRIGGER IF EXISTS TrArrivalsStockUnpost"),
                         QStringLiteral("DROP TRIGGER IF EXISTS TrArrivalsStockDel"),
                         QStringLiteral("DROP TRIGGER IF EXISTS TrArrivalsStockPost")};
    return steps + arrivalPostingTriggers();
}

QStringList postgresRoutineStatements() {
    QStringList out;
    for (const char* s : kPostgres)
        out << QString::fromUtf8(s);
    return out;
}

} // namespace gm::schema
