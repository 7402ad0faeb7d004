// grainmill-bench: fills a database with a synthetic mill and times what a clerk waits on.
#include "Actions.h"
#include "Generator.h"
#include "Runner.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "entry/Forms.h"
#include "services/Host.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QSysInfo>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace {

using namespace gm;
using namespace gm::bench;

QTextStream& out() {
    static QTextStream s(stdout);
    return s;
}
QTextStream& err() {
    static QTextStream s(stderr);
    return s;
}

std::unique_ptr<Conn> openOrSay(const QString& location) {
    QString why;
    auto conn = Conn::open(location, &why);
    if (!conn)
        err() << "cannot open " << location << ": " << why << Qt::endl;
    return conn;
}

int generate(const QCommandLineParser& p) {
    GenerateOptions o;
    bool ok = true;
    o.years = p.value(QStringLiteral("years")).toDouble(&ok);
    if (!ok || o.years <= 0) {
        err() << "--years needs a positive number" << Qt::endl;
        return 2;
    }
    o.seed = p.value(QStringLiteral("seed")).toULongLong(&ok);
    if (!ok) {
        err() << "--seed needs a whole number" << Qt::endl;
        return 2;
    }
    if (p.isSet(QStringLiteral("today"))) {
        o.today = QDate::fromString(p.value(QStringLiteral("today")), Qt::ISODate);
        if (!o.today.isValid()) {
            err() << "--today needs a date as yyyy-MM-dd" << Qt::endl;
            return 2;
        }
    }
    auto conn = openOrSay(p.value(QStringLiteral("database")));
    if (!conn)
        return 1;
    const GenerateReport r = generateMill(*conn, o);
    for (const auto& [table, rows] : r.rows)
        out() << QStringLiteral("%1 %2").arg(table, -20).arg(rows, 10) << Qt::endl;
    out() << QStringLiteral("%1 rows in %2 s (%3 years, seed %4, %5)")
                 .arg(r.total())
                 .arg(double(r.elapsedMs) / 1000.0, 0, 'f', 1)
                 .arg(o.years)
                 .arg(o.seed)
                 .arg(conn->isPostgres() ? QStringLiteral("PostgreSQL") : QStringLiteral("SQLite"))
          << Qt::endl;
    return 0;
}

struct Mill {
    std::unique_ptr<Conn> conn;
    Context ctx;
    Subjects subjects;
};

bool prepare(Mill& m, const QString& location) {
    m.conn = openOrSay(location);
    if (!m.conn)
        return false;
    m.subjects = pickSubjects(*m.conn);
    m.ctx = benchContext(*m.conn, m.subjects);
    return true;
}

int run(const QCommandLineParser& p) {
    RunOptions o;
    bool ok = true;
    o.repeat = p.value(QStringLiteral("repeat")).toInt(&ok);
    if (!ok || o.repeat < 1) {
        err() << "--repeat needs a whole number above 0" << Qt::endl;
        return 2;
    }
    o.only = p.value(QStringLiteral("only"));
    // A failing screen shows an error box; in a timing run it is noted and closed, never left
    // waiting for a click.
    QTimer boxes;
    QObject::connect(&boxes, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            err() << "  error box: " << box->windowTitle() << ": " << box->text() << Qt::endl;
            box->close();
        }
    });
    boxes.start(20);

    Mill large;
    if (!prepare(large, p.value(QStringLiteral("database"))))
        return 1;
    Mill one;
    const bool compare = p.isSet(QStringLiteral("compare"));
    if (compare && !prepare(one, p.value(QStringLiteral("compare"))))
        return 1;
    // Each action is timed on the large mill and at once on the small one, so that a change
    // in what else the machine is doing falls on both alike and not on the ratio.
    QWidget owner;
    ActionSet bigSet(large.ctx, large.subjects, &owner);
    std::optional<ActionSet> smallSet;
    if (compare)
        smallSet.emplace(one.ctx, one.subjects, &owner);
    std::vector<Result> big, small;
    for (size_t i = 0; i < bigSet.actions().size(); ++i) {
        const Action& a = bigSet.actions()[i];
        if (!o.only.isEmpty() && !a.name.contains(o.only, Qt::CaseInsensitive))
            continue;
        big.push_back(runAction(*large.conn, a, o));
        if (smallSet) {
            small.push_back(runAction(*one.conn, smallSet->actions()[i], o));
        }
    }
    const bool pg = large.conn->isPostgres();
    const double target = pg ? 100 : 50;
    out() << "### " << (pg ? "PostgreSQL" : "SQLite") << " — "
          << large.conn->location().displayText() << Qt::endl
          << Qt::endl;
    out() << "Arrivals: "
          << toInt(scalar(*large.conn, QStringLiteral("SELECT COUNT(*) FROM Arrivals")))
          << ", vehicles: "
          << toInt(scalar(*large.conn, QStringLiteral("SELECT COUNT(*) FROM ArrivalsBody")))
          << ", repetitions: " << o.repeat << ", target median " << target << " ms, "
          << QDateTime::currentDateTimeUtc().toString(Qt::ISODate) << Qt::endl
          << Qt::endl;
    out() << resultTable(big, small, target) << Qt::endl;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    // The search screens are real widgets; a timing run needs no display for them.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("grainmill-bench"));

    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral(
        "generate --years N --database LOCATION [--seed S] [--today yyyy-MM-dd]\n"
        "run --database LOCATION [--compare LOCATION_1YEAR] [--repeat K] [--only TEXT]"));
    p.addHelpOption();
    p.addPositionalArgument(QStringLiteral("command"), QStringLiteral("generate or run"));
    p.addOption({QStringLiteral("database"), QStringLiteral("Database location."),
                 QStringLiteral("location")});
    p.addOption({QStringLiteral("years"), QStringLiteral("Years of history (fractions allowed)."),
                 QStringLiteral("n"), QStringLiteral("10")});
    p.addOption({QStringLiteral("seed"), QStringLiteral("Random seed."), QStringLiteral("s"),
                 QStringLiteral("1")});
    p.addOption({QStringLiteral("today"), QStringLiteral("Last day of the history."),
                 QStringLiteral("date")});
    p.addOption({QStringLiteral("compare"), QStringLiteral("A one-year database to compare with."),
                 QStringLiteral("location")});
    p.addOption({QStringLiteral("repeat"), QStringLiteral("Repetitions per action."),
                 QStringLiteral("k"), QStringLiteral("20")});
    p.addOption({QStringLiteral("only"),
                 QStringLiteral("Time only the actions whose name contains this text."),
                 QStringLiteral("text")});
    p.process(app);

    const QStringList args = p.positionalArguments();
    if (args.size() != 1 || !p.isSet(QStringLiteral("database"))) {
        p.showHelp(2);
    }
    try {
        if (args[0] == QLatin1String("generate"))
            return generate(p);
        if (args[0] == QLatin1String("run"))
            return run(p);
    } catch (const DbError& e) {
        err() << e.source() << ": " << e.description() << Qt::endl;
        return 1;
    }
    p.showHelp(2);
}
