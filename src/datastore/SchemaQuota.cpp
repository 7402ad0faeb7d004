#include "datastore/SchemaParts.h"

// A PR centre's quota as running totals, kept by the database alone like the stock:
//   LetterBags, LetterWeight     = bags and total weight of the centre's authority letters
//   ArrivedBags, ArrivedWeight   = bags and net weight of the vehicles of every arrival whose
//                                  head names the centre, posted or not
//   Letters                      = the number of the centre's letters (added a step later),
//                                  which lists the centres that have any
// so that the arrival screen reads one row instead of the centre's whole history. A letter or
// head without a centre touches no row. There is deliberately no foreign key to PRCenters:
// the removal guard would then name this table, and a centre nobody uses any more must stay
// removable; a row of zeros left behind says the same as no row.
//
// The DFC prices at a centre are kept the same way, per centre and commodity of the payment:
//   Letters               = letters of the centre whose payment is of the commodity
//   RateSum, RateCount    = sum and number of the payments' rates per unit that are not empty,
//                           one per letter (a payment of three letters counts three times)
//   PriceSum, PriceCount  = the same for the price per bag
// so that an average is the sum over the count, as an average over the letters would give.

namespace gm::schema {

namespace {

const char* const kTable = "CREATE TABLE PRCenterQuota ("
                           "CenterId integer PRIMARY KEY, "
                           "LetterBags %1 NOT NULL DEFAULT 0, "
                           "LetterWeight %1 NOT NULL DEFAULT 0, "
                           "ArrivedBags %1 NOT NULL DEFAULT 0, "
                           "ArrivedWeight %1 NOT NULL DEFAULT 0)";

const char* const kRatesTable = "CREATE TABLE PRCenterRates ("
                                "CenterId integer NOT NULL, "
                                "CommodityId integer NOT NULL, "
                                "Letters integer NOT NULL DEFAULT 0, "
                                "RateSum numeric NOT NULL DEFAULT 0, "
                                "RateCount integer NOT NULL DEFAULT 0, "
                                "PriceSum numeric NOT NULL DEFAULT 0, "
                                "PriceCount integer NOT NULL DEFAULT 0, "
                                "PRIMARY KEY (CenterId, CommodityId))";

// The first payment of a centre's letters for a commodity is found by walking the centre's
// letters in payment order and stopping at the first match.
const char* const kLetterPaymentIndex =
    "CREATE INDEX IX_AuthorityLetters_CenterPayment ON AuthorityLetters (CenterId, PaymentId)";

const char* const kRatesFill =
    "INSERT INTO PRCenterRates (CenterId, CommodityId, Letters, RateSum, RateCount, PriceSum, "
    "PriceCount) SELECT l.CenterId, d.CommodityId, COUNT(*), %1SUM(COALESCE(d.RatePerUnit, 0))%2, "
    "COUNT(d.RatePerUnit), %1SUM(COALESCE(d.PricePerBag, 0))%2, COUNT(d.PricePerBag) "
    "FROM AuthorityLetters l INNER JOIN DFCPayments d ON d.PaymentId = l.PaymentId "
    "WHERE l.CenterId IS NOT NULL GROUP BY l.CenterId, d.CommodityId";

// Every figure, whether a letter or a vehicle, with its centre.
const char* const kFigures =
    "SELECT CenterId, COALESCE(NoOfBags, 0) AS LB, COALESCE(TotalWeight, 0) AS LW, "
    "0 AS AB, 0 AS AW FROM AuthorityLetters WHERE CenterId IS NOT NULL "
    "UNION ALL "
    "SELECT a.CenterId, 0, 0, COALESCE(b.NoOfBags, 0), COALESCE(b.NetWeight, 0) "
    "FROM Arrivals a INNER JOIN ArrivalsBody b ON b.ArrivalId = a.ArrivalId "
    "WHERE a.CenterId IS NOT NULL";

// --- PostgreSQL: numeric throughout, so the totals are the exact sums ---------------------

const char* const kPostgres[] = {
    R"(CREATE FUNCTION gm_move_quota(center integer, letter_bags numeric, letter_weight numeric,
                                     arrived_bags numeric, arrived_weight numeric)
       RETURNS void LANGUAGE plpgsql AS $$
       BEGIN
         IF center IS NULL THEN RETURN; END IF;
         letter_bags := COALESCE(letter_bags, 0);
         letter_weight := COALESCE(letter_weight, 0);
         arrived_bags := COALESCE(arrived_bags, 0);
         arrived_weight := COALESCE(arrived_weight, 0);
         IF letter_bags = 0 AND letter_weight = 0 AND arrived_bags = 0 AND arrived_weight = 0
         THEN RETURN; END IF;
         INSERT INTO PRCenterQuota (CenterId) VALUES (center) ON CONFLICT DO NOTHING;
         UPDATE PRCenterQuota
            SET LetterBags = LetterBags + letter_bags,
                LetterWeight = LetterWeight + letter_weight,
                ArrivedBags = ArrivedBags + arrived_bags,
                ArrivedWeight = ArrivedWeight + arrived_weight
          WHERE CenterId = center;
       END $$)",
    // All the vehicles of one head, in or out of a centre at once.
    R"(CREATE FUNCTION gm_move_arrival_quota(center integer, arrival integer, sign numeric)
       RETURNS void LANGUAGE plpgsql AS $$
       DECLARE
         bags numeric;
         weight numeric;
       BEGIN
         IF center IS NULL THEN RETURN; END IF;
         SELECT SUM(NoOfBags), SUM(NetWeight) INTO bags, weight
           FROM ArrivalsBody WHERE ArrivalId = arrival;
         PERFORM gm_move_quota(center, 0, 0, sign * bags, sign * weight);
       END $$)",

    R"(CREATE FUNCTION gm_authorityletters_quota() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' THEN
           PERFORM gm_move_quota(OLD.CenterId, -OLD.NoOfBags, -OLD.TotalWeight, 0, 0);
         END IF;
         IF TG_OP <> 'DELETE' THEN
           PERFORM gm_move_quota(NEW.CenterId, NEW.NoOfBags, NEW.TotalWeight, 0, 0);
         END IF;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrAuthorityLettersQuota
       AFTER INSERT OR DELETE OR UPDATE OF CenterId, NoOfBags, TotalWeight ON AuthorityLetters
       FOR EACH ROW EXECUTE FUNCTION gm_authorityletters_quota())",

    R"(CREATE FUNCTION gm_arrivalsbody_quota() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' THEN
           PERFORM gm_move_quota((SELECT CenterId FROM Arrivals WHERE ArrivalId = OLD.ArrivalId),
                                 0, 0, -OLD.NoOfBags, -OLD.NetWeight);
         END IF;
         IF TG_OP <> 'DELETE' THEN
           PERFORM gm_move_quota((SELECT CenterId FROM Arrivals WHERE ArrivalId = NEW.ArrivalId),
                                 0, 0, NEW.NoOfBags, NEW.NetWeight);
         END IF;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrArrivalsBodyQuota
       AFTER INSERT OR DELETE OR UPDATE OF ArrivalId, NoOfBags, NetWeight ON ArrivalsBody
       FOR EACH ROW EXECUTE FUNCTION gm_arrivalsbody_quota())",

    // A head that changes centre takes its vehicles along. The keys keep a head's number from
    // changing while it has vehicles, so the vehicles under the old number are the ones moved.
    R"(CREATE FUNCTION gm_arrivals_quota_move() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         PERFORM gm_move_arrival_quota(OLD.CenterId, OLD.ArrivalId, -1);
         PERFORM gm_move_arrival_quota(NEW.CenterId, NEW.ArrivalId, 1);
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrArrivalsQuotaMove AFTER UPDATE OF CenterId, ArrivalId ON Arrivals
       FOR EACH ROW WHEN (OLD.CenterId IS DISTINCT FROM NEW.CenterId
                          OR OLD.ArrivalId <> NEW.ArrivalId)
       EXECUTE FUNCTION gm_arrivals_quota_move())",
    // Before, while its vehicles (if the keys ever let a head go with them) are still its own.
    R"(CREATE FUNCTION gm_arrivals_quota_remove() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         PERFORM gm_move_arrival_quota(OLD.CenterId, OLD.ArrivalId, -1);
         RETURN OLD;
       END $$)",
    R"(CREATE TRIGGER TrArrivalsQuotaRemove BEFORE DELETE ON Arrivals
       FOR EACH ROW WHEN (OLD.CenterId IS NOT NULL)
       EXECUTE FUNCTION gm_arrivals_quota_remove())",

};

// The number of letters per centre, so that the centres with letters are listed from one row
// per centre instead of from the letters.
const char* const kPostgresLetterCount[] = {
    "ALTER TABLE PRCenterQuota ADD COLUMN Letters integer NOT NULL DEFAULT 0",
    R"(CREATE FUNCTION gm_count_letter(center integer, delta integer)
       RETURNS void LANGUAGE plpgsql AS $$
       BEGIN
         IF center IS NULL THEN RETURN; END IF;
         INSERT INTO PRCenterQuota (CenterId) VALUES (center) ON CONFLICT DO NOTHING;
         UPDATE PRCenterQuota SET Letters = Letters + delta WHERE CenterId = center;
       END $$)",
    R"(CREATE OR REPLACE FUNCTION gm_authorityletters_quota() RETURNS trigger
       LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' THEN
           PERFORM gm_move_quota(OLD.CenterId, -OLD.NoOfBags, -OLD.TotalWeight, 0, 0);
           PERFORM gm_count_letter(OLD.CenterId, -1);
         END IF;
         IF TG_OP <> 'DELETE' THEN
           PERFORM gm_move_quota(NEW.CenterId, NEW.NoOfBags, NEW.TotalWeight, 0, 0);
           PERFORM gm_count_letter(NEW.CenterId, 1);
         END IF;
         RETURN NULL;
       END $$)",
};

const char* const kLetterCountFill[] = {
    "INSERT INTO PRCenterQuota (CenterId) SELECT DISTINCT CenterId FROM AuthorityLetters "
    "WHERE CenterId IS NOT NULL AND CenterId NOT IN (SELECT CenterId FROM PRCenterQuota)",
    "UPDATE PRCenterQuota SET Letters = (SELECT COUNT(*) FROM AuthorityLetters l "
    "WHERE l.CenterId = PRCenterQuota.CenterId)",
};

const char* const kPostgresRates[] = {
    // `how_many` letters of one payment's prices, into (sign 1) or out of (-1) a centre.
    R"(CREATE FUNCTION gm_move_rates(center integer, commodity integer, how_many integer,
                                     rate numeric, price numeric, sign integer)
       RETURNS void LANGUAGE plpgsql AS $$
       DECLARE
         n integer := sign * how_many;
       BEGIN
         IF center IS NULL OR commodity IS NULL OR COALESCE(n, 0) = 0 THEN RETURN; END IF;
         INSERT INTO PRCenterRates (CenterId, CommodityId) VALUES (center, commodity)
             ON CONFLICT DO NOTHING;
         UPDATE PRCenterRates
            SET Letters = Letters + n,
                RateSum = RateSum + n * COALESCE(rate, 0),
                RateCount = RateCount + CASE WHEN rate IS NULL THEN 0 ELSE n END,
                PriceSum = PriceSum + n * COALESCE(price, 0),
                PriceCount = PriceCount + CASE WHEN price IS NULL THEN 0 ELSE n END
          WHERE CenterId = center AND CommodityId = commodity;
       END $$)",
    R"(CREATE FUNCTION gm_move_letter_rates(center integer, payment integer, sign integer)
       RETURNS void LANGUAGE plpgsql AS $$
       DECLARE
         p record;
       BEGIN
         IF center IS NULL THEN RETURN; END IF;
         SELECT CommodityId, RatePerUnit, PricePerBag INTO p
           FROM DFCPayments WHERE PaymentId = payment;
         IF FOUND THEN
           PERFORM gm_move_rates(center, p.CommodityId, 1, p.RatePerUnit, p.PricePerBag, sign);
         END IF;
       END $$)",
    R"(CREATE FUNCTION gm_authorityletters_rates() RETURNS trigger LANGUAGE plpgsql AS $$
       BEGIN
         IF TG_OP <> 'INSERT' THEN
           PERFORM gm_move_letter_rates(OLD.CenterId, OLD.PaymentId, -1);
         END IF;
         IF TG_OP <> 'DELETE' THEN
           PERFORM gm_move_letter_rates(NEW.CenterId, NEW.PaymentId, 1);
         END IF;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrAuthorityLettersRates
       AFTER INSERT OR DELETE OR UPDATE OF CenterId, PaymentId ON AuthorityLetters
       FOR EACH ROW EXECUTE FUNCTION gm_authorityletters_rates())",
    // A payment's new prices or commodity apply to all of its letters. The keys keep its
    // number from changing while it has letters.
    R"(CREATE FUNCTION gm_dfcpayments_rates() RETURNS trigger LANGUAGE plpgsql AS $$
       DECLARE
         g record;
       BEGIN
         FOR g IN SELECT CenterId, COUNT(*)::integer AS n FROM AuthorityLetters
                   WHERE PaymentId = OLD.PaymentId AND CenterId IS NOT NULL GROUP BY CenterId
         LOOP
           PERFORM gm_move_rates(g.CenterId, OLD.CommodityId, g.n, OLD.RatePerUnit,
                                 OLD.PricePerBag, -1);
         END LOOP;
         IF TG_OP = 'DELETE' THEN RETURN OLD; END IF;
         FOR g IN SELECT CenterId, COUNT(*)::integer AS n FROM AuthorityLetters
                   WHERE PaymentId = NEW.PaymentId AND CenterId IS NOT NULL GROUP BY CenterId
         LOOP
           PERFORM gm_move_rates(g.CenterId, NEW.CommodityId, g.n, NEW.RatePerUnit,
                                 NEW.PricePerBag, 1);
         END LOOP;
         RETURN NULL;
       END $$)",
    R"(CREATE TRIGGER TrDFCPaymentsRates
       AFTER UPDATE OF PaymentId, CommodityId, RatePerUnit, PricePerBag ON DFCPayments
       FOR EACH ROW WHEN (OLD.PaymentId <> NEW.PaymentId
                          OR OLD.CommodityId IS DISTINCT FROM NEW.CommodityId
                          OR OLD.RatePerUnit IS DISTINCT FROM NEW.RatePerUnit
                          OR OLD.PricePerBag IS DISTINCT FROM NEW.PricePerBag)
       EXECUTE FUNCTION gm_dfcpayments_rates())",
    R"(CREATE TRIGGER TrDFCPaymentsRatesRemove BEFORE DELETE ON DFCPayments
       FOR EACH ROW EXECUTE FUNCTION gm_dfcpayments_rates())",
};

// --- SQLite: real numbers, so every total is taken back to the four decimals its figures
// carry; the float noise of thousands of moves never builds up, and the total stays the
// nearest value to the exact sum that the reader then rounds as before.

QString trigger(const QString& name, const QString& event, const QString& body,
                const QString& when = {}) {
    return QStringLiteral("CREATE TRIGGER %1 %2 FOR EACH ROW %3BEGIN\n%4END")
        .arg(name, event, when.isEmpty() ? QString() : QStringLiteral("WHEN %1 ").arg(when), body);
}

QString sqliteMove(const QString& center, const QString& letterBags, const QString& letterWeight,
                   const QString& arrivedBags, const QString& arrivedWeight) {
    return QStringLiteral("INSERT OR IGNORE INTO PRCenterQuota (CenterId) SELECT C FROM (SELECT "
                          "%1 AS C) WHERE C IS NOT NULL;\n"
                          "UPDATE PRCenterQuota SET "
                          "LetterBags = ROUND(LetterBags + (%2), 4), "
                          "LetterWeight = ROUND(LetterWeight + (%3), 4), "
                          "ArrivedBags = ROUND(ArrivedBags + (%4), 4), "
                          "ArrivedWeight = ROUND(ArrivedWeight + (%5), 4) "
                          "WHERE CenterId = %1;\n")
        .arg(center, letterBags, letterWeight, arrivedBags, arrivedWeight);
}

QString letterMove(const QString& row, const QString& sign) {
    return sqliteMove(row + QStringLiteral(".CenterId"),
                      QStringLiteral("%1COALESCE(%2.NoOfBags, 0)").arg(sign, row),
                      QStringLiteral("%1COALESCE(%2.TotalWeight, 0)").arg(sign, row),
                      QStringLiteral("0"), QStringLiteral("0"));
}

// The letter itself counted in or out; its row is already made sure of by letterMove.
QString letterCount(const QString& row, const QString& sign) {
    return QStringLiteral("UPDATE PRCenterQuota SET Letters = Letters + (%1 1) "
                          "WHERE CenterId = %2.CenterId;\n")
        .arg(sign, row);
}

// The letters' triggers; from the step that added the count on, they count the letters too.
QStringList letterQuotaTriggers(bool counted) {
    const QString O = QStringLiteral("OLD"), N = QStringLiteral("NEW");
    const QString minus = QStringLiteral("-"), plus;
    auto out = [&](const QString& row) {
        return letterMove(row, minus) + (counted ? letterCount(row, minus) : QString());
    };
    auto in = [&](const QString& row) {
        return letterMove(row, plus) + (counted ? letterCount(row, plus) : QString());
    };
    return {
        trigger(QStringLiteral("TrAuthorityLettersQuotaIns"),
                QStringLiteral("AFTER INSERT ON AuthorityLetters"), in(N),
                QStringLiteral("NEW.CenterId IS NOT NULL")),
        trigger(QStringLiteral("TrAuthorityLettersQuotaUpd"),
                QStringLiteral("AFTER UPDATE OF CenterId, NoOfBags, TotalWeight ON "
                               "AuthorityLetters"),
                out(O) + in(N)),
        trigger(QStringLiteral("TrAuthorityLettersQuotaDel"),
                QStringLiteral("AFTER DELETE ON AuthorityLetters"), out(O),
                QStringLiteral("OLD.CenterId IS NOT NULL")),
    };
}

QString vehicleMove(const QString& row, const QString& sign) {
    return sqliteMove(
        QStringLiteral("(SELECT CenterId FROM Arrivals WHERE ArrivalId = %1.ArrivalId)").arg(row),
        QStringLiteral("0"), QStringLiteral("0"),
        QStringLiteral("%1COALESCE(%2.NoOfBags, 0)").arg(sign, row),
        QStringLiteral("%1COALESCE(%2.NetWeight, 0)").arg(sign, row));
}

QString headMove(const QString& row, const QString& sign) {
    const QString sum = QStringLiteral("%1COALESCE((SELECT SUM(%3) FROM ArrivalsBody WHERE "
                                       "ArrivalId = %2.ArrivalId), 0)");
    return sqliteMove(row + QStringLiteral(".CenterId"), QStringLiteral("0"), QStringLiteral("0"),
                      sum.arg(sign, row, QStringLiteral("NoOfBags")),
                      sum.arg(sign, row, QStringLiteral("NetWeight")));
}

// One letter's prices, taken from its payment, into or out of its centre.
QString letterRatesMove(const QString& row, const QString& sign) {
    const QString pay =
        QStringLiteral("(SELECT %2 FROM DFCPayments WHERE PaymentId = %1.PaymentId)").arg(row);
    const QString commodity = pay.arg(QStringLiteral("CommodityId"));
    return QStringLiteral(
               "INSERT OR IGNORE INTO PRCenterRates (CenterId, CommodityId) SELECT %1.CenterId, "
               "%2 WHERE %1.CenterId IS NOT NULL AND %2 IS NOT NULL;\n"
               "UPDATE PRCenterRates SET Letters = Letters %3 1, "
               "RateSum = ROUND(RateSum %3 COALESCE(%4, 0), 4), "
               "RateCount = RateCount %3 (%4 IS NOT NULL), "
               "PriceSum = ROUND(PriceSum %3 COALESCE(%5, 0), 4), "
               "PriceCount = PriceCount %3 (%5 IS NOT NULL) "
               "WHERE CenterId = %1.CenterId AND CommodityId = %2;\n")
        .arg(row, commodity, sign, pay.arg(QStringLiteral("RatePerUnit")),
             pay.arg(QStringLiteral("PricePerBag")));
}

// All the letters of one payment, centre by centre, with the payment's prices as the row
// gives them.
QString paymentRatesMove(const QString& row, const QString& sign) {
    const QString n = QStringLiteral("(SELECT COUNT(*) FROM AuthorityLetters l WHERE l.PaymentId "
                                     "= %1.PaymentId AND l.CenterId = PRCenterRates.CenterId)")
                          .arg(row);
    return QStringLiteral(
               "INSERT OR IGNORE INTO PRCenterRates (CenterId, CommodityId) SELECT DISTINCT "
               "CenterId, %1.CommodityId FROM AuthorityLetters WHERE PaymentId = %1.PaymentId "
               "AND CenterId IS NOT NULL AND %1.CommodityId IS NOT NULL;\n"
               "UPDATE PRCenterRates SET Letters = Letters %2 %3, "
               "RateSum = ROUND(RateSum %2 %3 * COALESCE(%1.RatePerUnit, 0), 4), "
               "RateCount = RateCount %2 %3 * (%1.RatePerUnit IS NOT NULL), "
               "PriceSum = ROUND(PriceSum %2 %3 * COALESCE(%1.PricePerBag, 0), 4), "
               "PriceCount = PriceCount %2 %3 * (%1.PricePerBag IS NOT NULL) "
               "WHERE CommodityId = %1.CommodityId AND CenterId IN (SELECT CenterId FROM "
               "AuthorityLetters WHERE PaymentId = %1.PaymentId);\n")
        .arg(row, sign, n);
}

} // namespace

QStringList sqliteQuotaStatements() {
    const QString O = QStringLiteral("OLD"), N = QStringLiteral("NEW");
    const QString minus = QStringLiteral("-"), plus;
    return QStringList{QString::fromLatin1(kTable).arg(QStringLiteral("numeric"))} +
           letterQuotaTriggers(false) +
           QStringList{
               trigger(QStringLiteral("TrArrivalsBodyQuotaIns"),
                       QStringLiteral("AFTER INSERT ON ArrivalsBody"), vehicleMove(N, plus)),
               trigger(
                   QStringLiteral("TrArrivalsBodyQuotaUpd"),
                   QStringLiteral("AFTER UPDATE OF ArrivalId, NoOfBags, NetWeight ON ArrivalsBody"),
                   vehicleMove(O, minus) + vehicleMove(N, plus)),
               trigger(QStringLiteral("TrArrivalsBodyQuotaDel"),
                       QStringLiteral("AFTER DELETE ON ArrivalsBody"), vehicleMove(O, minus)),

               // The keys keep a head's number from changing while it has vehicles, so the vehicles
               // under the old number are the ones that move with it.
               trigger(QStringLiteral("TrArrivalsQuotaMove"),
                       QStringLiteral("AFTER UPDATE OF CenterId, ArrivalId ON Arrivals"),
                       headMove(O, minus) + headMove(N, plus),
                       QStringLiteral("OLD.CenterId IS NOT NEW.CenterId OR OLD.ArrivalId <> "
                                      "NEW.ArrivalId")),
               trigger(QStringLiteral("TrArrivalsQuotaDel"),
                       QStringLiteral("BEFORE DELETE ON Arrivals"), headMove(O, minus),
                       QStringLiteral("OLD.CenterId IS NOT NULL")),

               QStringLiteral(
                   "INSERT INTO PRCenterQuota (CenterId, LetterBags, LetterWeight, "
                   "ArrivedBags, ArrivedWeight) "
                   "SELECT CenterId, ROUND(SUM(LB), 4), ROUND(SUM(LW), 4), ROUND(SUM(AB), 4), "
                   "ROUND(SUM(AW), 4) FROM (%1) F GROUP BY CenterId")
                   .arg(QLatin1String(kFigures)),
           };
}

QStringList postgresQuotaStatements() {
    QStringList out{QString::fromLatin1(kTable).arg(QStringLiteral("numeric"))};
    for (const char* s : kPostgres)
        out << QString::fromUtf8(s);
    out << QStringLiteral("INSERT INTO PRCenterQuota (CenterId, LetterBags, LetterWeight, "
                          "ArrivedBags, ArrivedWeight) "
                          "SELECT CenterId, SUM(LB), SUM(LW), SUM(AB), SUM(AW) FROM (%1) F "
                          "GROUP BY CenterId")
               .arg(QLatin1String(kFigures));
    return out;
}

QStringList sqlitePermitRateStatements() {
    const QString O = QStringLiteral("OLD"), N = QStringLiteral("NEW");
    const QString minus = QStringLiteral("-"), plusSign = QStringLiteral("+");
    return {
        QString::fromLatin1(kRatesTable),
        trigger(QStringLiteral("TrAuthorityLettersRatesIns"),
                QStringLiteral("AFTER INSERT ON AuthorityLetters"), letterRatesMove(N, plusSign),
                QStringLiteral("NEW.CenterId IS NOT NULL")),
        trigger(QStringLiteral("TrAuthorityLettersRatesUpd"),
                QStringLiteral("AFTER UPDATE OF CenterId, PaymentId ON AuthorityLetters"),
                letterRatesMove(O, minus) + letterRatesMove(N, plusSign)),
        trigger(QStringLiteral("TrAuthorityLettersRatesDel"),
                QStringLiteral("AFTER DELETE ON AuthorityLetters"), letterRatesMove(O, minus),
                QStringLiteral("OLD.CenterId IS NOT NULL")),
        // The keys keep a payment's number from changing while it has letters.
        trigger(QStringLiteral("TrDFCPaymentsRatesUpd"),
                QStringLiteral("AFTER UPDATE OF PaymentId, CommodityId, RatePerUnit, PricePerBag "
                               "ON DFCPayments"),
                paymentRatesMove(O, minus) + paymentRatesMove(N, plusSign),
                QStringLiteral("OLD.PaymentId <> NEW.PaymentId OR OLD.CommodityId IS NOT "
                               "NEW.CommodityId OR OLD.RatePerUnit IS NOT NEW.RatePerUnit OR "
                               "OLD.PricePerBag IS NOT NEW.PricePerBag")),
        trigger(QStringLiteral("TrDFCPaymentsRatesDel"),
                QStringLiteral("BEFORE DELETE ON DFCPayments"), paymentRatesMove(O, minus)),
        QString::fromLatin1(kLetterPaymentIndex),
        QString::fromLatin1(kRatesFill).arg(QStringLiteral("ROUND("), QStringLiteral(", 4)")),
    };
}

QStringList postgresPermitRateStatements() {
    QStringList out{QString::fromLatin1(kRatesTable)};
    for (const char* s : kPostgresRates)
        out << QString::fromUtf8(s);
    out << QString::fromLatin1(kLetterPaymentIndex)
        << QString::fromLatin1(kRatesFill).arg(QString(), QString());
    return out;
}

QStringList sqliteLetterCountStatements() {
    QStringList out = {QStringLiteral("ALTER TABLE PRCenterQuota ADD COLUMN Letters integer NOT "
                                      "NULL DEFAULT 0"),
                       QStringLiteral("DROP TRIGGER TrAuthorityLettersQuotaIns"),
                       QStringLiteral("DROP TRIGGER TrAuthorityLettersQuotaUpd"),
                       QStringLiteral("DROP TRIGGER TrAuthorityLettersQuotaDel")};
    out += letterQuotaTriggers(true);
    for (const char* s : kLetterCountFill)
        out << QString::fromLatin1(s);
    return out;
}

QStringList postgresLetterCountStatements() {
    QStringList out;
    for (const char* s : kPostgresLetterCount)
        out << QString::fromUtf8(s);
    for (const char* s : kLetterCountFill)
        out << QString::fromLatin1(s);
    return out;
}

} // namespace gm::schema
