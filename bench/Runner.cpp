#include "Runner.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QTextStream>

#include <sqlite3.h>

#include <algorithm>
#include <cmath>

namespace gm::bench {

namespace {

// SQLite has no statement timeout of its own; the progress callback cancels a statement
// that has run past the deadline, which the driver reports as an interrupted query.
struct SqliteDeadline {
    QElapsedTimer clock;
    qint64 limitMs = 0;
};

int sqliteProgress(void* data) {
    auto* d = static_cast<SqliteDeadline*>(data);
    return d->limitMs > 0 && d->clock.elapsed() > d->limitMs ? 1 : 0;
}

sqlite3* sqliteHandle(const Conn& conn) {
    const QVariant handle = conn.db().driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3* const*>(handle.data());
}

// A server will not prepare SET; the number in it comes from the program, never from input.
void plain(const Conn& conn, const QString& sql) {
    QSqlQuery q(conn.db());
    if (!q.exec(sql))
        throw DbError(q.lastError().text(), QStringLiteral("grainmill-bench"));
}

Timing measure(const Action& a, const std::function<int()>& step, const RunOptions& o) {
    Timing t;
    std::vector<double> samples;
    QElapsedTimer total;
    total.start();
    try {
        // One run first, untimed: the statement is prepared and the pages are read in, as
        // they are after a clerk's first minute on the screen. A first run that already took
        // longer than a second is itself the sample: repeating it adds nothing but waiting.
        if (a.before)
            a.before();
        QElapsedTimer first;
        first.start();
        t.rows = step();
        const double firstMs = double(first.nsecsElapsed()) / 1e6;
        if (a.after)
            a.after();
        if (firstMs > 1000) {
            samples.push_back(firstMs);
            total.restart();
            total = QElapsedTimer();
        } else {
            total.restart();
        }
        for (int i = 0; total.isValid() && i < o.repeat; ++i) {
            if (a.before)
                a.before();
            QElapsedTimer clock;
            clock.start();
            t.rows = step();
            samples.push_back(double(clock.nsecsElapsed()) / 1e6);
            if (a.after)
                a.after();
            QCoreApplication::processEvents();
            if (total.elapsed() > o.budgetMs)
                break;
        }
    } catch (const std::exception& e) {
        // A store's refusal (Objected) ends the action as a failed statement does.
        const auto* db = dynamic_cast<const DbError*>(&e);
        t.error = (db ? db->description() : QString::fromUtf8(e.what())).left(120).simplified();
        if (a.after) {
            try {
                a.after();
            } catch (const std::exception&) {
            }
        }
        if (samples.empty())
            return t;
    }
    std::sort(samples.begin(), samples.end());
    t.ran = true;
    t.runs = int(samples.size());
    const size_t n = samples.size();
    t.medianMs = n % 2 ? samples[n / 2] : (samples[n / 2 - 1] + samples[n / 2]) / 2;
    t.p95Ms = samples[std::min(n - 1, size_t(std::ceil(0.95 * double(n))) - 1)];
    return t;
}

QString ms(double v) {
    if (v >= 100)
        return QString::number(v, 'f', 0);
    if (v >= 10)
        return QString::number(v, 'f', 1);
    return QString::number(v, 'f', 2);
}

QString cell(const Timing& t, bool p95 = false) {
    if (t.timedOut)
        return QStringLiteral("> 60000");
    if (!t.ran)
        return t.error.isEmpty() ? QStringLiteral("–") : QStringLiteral("failed");
    return ms(p95 ? t.p95Ms : t.medianMs);
}

} // namespace

Result runAction(const Conn& conn, const Action& a, const RunOptions& options) {
    QTextStream err(stderr);
    const bool pg = conn.isPostgres();
    Result r{a.name, {}, {}, a.note};
    err << "  " << a.name << " ..." << Qt::flush;
    r.ours = measure(a, a.ours, options);
    if (a.oldWay) {
        // The old statements were not written for this much data; a server cancels one
        // that runs away rather than leaving the run stuck.
        if (pg)
            plain(conn,
                  QStringLiteral("SET statement_timeout = %1").arg(options.statementTimeoutMs));
        sqlite3* lite = pg ? nullptr : sqliteHandle(conn);
        SqliteDeadline deadline;
        if (lite) {
            deadline.limitMs = options.statementTimeoutMs;
            deadline.clock.start();
            sqlite3_progress_handler(lite, 10000, sqliteProgress, &deadline);
        }
        Action oldOnly = a;
        oldOnly.before = [&deadline, before = a.before] {
            if (before)
                before();
            deadline.clock.restart();
        };
        r.oldWay = measure(oldOnly, a.oldWay, options);
        r.oldWay.timedOut = !r.oldWay.ran && (r.oldWay.error.contains(QLatin1String("interrupt")) ||
                                              r.oldWay.error.contains(QLatin1String("timeout")));
        if (lite)
            sqlite3_progress_handler(lite, 0, nullptr, nullptr);
        if (pg)
            plain(conn, QStringLiteral("SET statement_timeout = 0"));
    }
    err << " " << cell(r.ours) << " ms";
    if (a.oldWay)
        err << ", old way " << cell(r.oldWay) << " ms";
    if (!r.ours.error.isEmpty())
        err << " [ours: " << r.ours.error << "]";
    if (!r.oldWay.error.isEmpty())
        err << " [old way: " << r.oldWay.error << "]";
    err << Qt::endl;
    return r;
}

QString resultTable(const std::vector<Result>& large, const std::vector<Result>& small,
                    double targetMs) {
    QString text;
    QTextStream s(&text);
    s << "| Action | rows | median ms | p95 ms | 10y/1y | old way rows | old way median ms | "
         "old way / ours | |\n";
    s << "|---|---:|---:|---:|---:|---:|---:|---:|---|\n";
    for (const Result& r : large) {
        const Result* base = nullptr;
        for (const Result& b : small)
            if (b.name == r.name)
                base = &b;
        QString ratio = QStringLiteral("–");
        bool grows = false;
        if (base && base->ours.ran && r.ours.ran && base->ours.medianMs > 0) {
            const double x = r.ours.medianMs / base->ours.medianMs;
            ratio = QString::number(x, 'f', 2);
            grows = x > 1.5;
        }
        QString oldRatio = QStringLiteral("–");
        if (r.oldWay.ran && r.ours.ran && r.ours.medianMs > 0)
            oldRatio = QString::number(r.oldWay.medianMs / r.ours.medianMs, 'f', 1);
        else if (r.oldWay.timedOut && r.ours.ran && r.ours.medianMs > 0)
            oldRatio = QStringLiteral("> %1").arg(60000 / r.ours.medianMs, 0, 'f', 0);
        else if (!r.oldWay.ran && !r.oldWay.error.isEmpty())
            oldRatio = QStringLiteral("(%1)").arg(r.oldWay.error.left(40));
        QStringList flags;
        if (!r.ours.ran)
            flags << QStringLiteral("failed: ") + r.ours.error.left(60);
        else if (r.ours.medianMs >= targetMs)
            flags << QStringLiteral("over target");
        if (grows)
            flags << QStringLiteral("grows");
        if (!r.note.isEmpty())
            flags << QStringLiteral("*");
        s << "| " << r.name << " | " << r.ours.rows << " | " << cell(r.ours) << " | "
          << cell(r.ours, true) << " | " << ratio << " | "
          << (r.oldWay.ran ? QString::number(r.oldWay.rows) : QStringLiteral("–")) << " | "
          << cell(r.oldWay) << " | " << oldRatio << " | " << flags.join(QStringLiteral(", "))
          << " |\n";
    }
    QStringList notes;
    for (const Result& r : large)
        if (!r.note.isEmpty())
            notes << QStringLiteral("* %1: %2").arg(r.name, r.note);
    if (!notes.isEmpty())
        s << "\n" << notes.join(QLatin1Char('\n')) << "\n";
    return text;
}

} // namespace gm::bench
