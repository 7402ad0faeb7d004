#pragma once

#include <QDate>
#include <QString>

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace gm {
class Conn;
}

namespace gm::bench {

// A random source whose output is fixed by the seed on every standard library: the engine's
// sequence is defined by the standard, the library's distributions are not, so the ones
// needed here are written out.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : m_engine(seed) {}
    // A whole number from lo to hi, both included.
    qint64 between(qint64 lo, qint64 hi);
    // A number in [0, 1).
    double unit();
    double real(double lo, double hi) { return lo + (hi - lo) * unit(); }
    bool chance(double p) { return unit() < p; }
    // A count whose mean is `mean`, spread evenly from 0 to twice the mean.
    int around(double mean);
    template <typename T> const T& pick(const std::vector<T>& v) {
        return v[size_t(between(0, qint64(v.size()) - 1))];
    }

private:
    std::mt19937_64 m_engine;
};

struct GenerateOptions {
    double years = 10;
    std::uint64_t seed = 1;
    QDate today = QDate::currentDate(); // the last day of the generated history
    bool quiet = false;
};

// What a generation wrote, table by table, in the order the tables were filled.
struct GenerateReport {
    std::vector<std::pair<QString, qint64>> rows;
    qint64 elapsedMs = 0;
    qint64 total() const;
};

// The DFC party's account: every arrival through a PR centre has it as seller.
inline const QString kBenchDfcAccount = QStringLiteral("60001");

// Fills an empty database with a mill of `years` years ending on `today`: master data, then
// day by day contracts, DFC payments with their letters, arrivals through contracts, PR
// centres and free sellers, invoices for nine in ten vehicles, the seller ledger, daily and
// hourly production. Everything goes in through the schema, so the stock triggers see each
// arrival posted and each production day written. Throws DbError on any failure, or when the
// database already holds a mill.
GenerateReport generateMill(const Conn& conn, const GenerateOptions& options);

} // namespace gm::bench
