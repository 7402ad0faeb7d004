#pragma once

#include "Actions.h"

#include <QString>

#include <vector>

namespace gm::bench {

struct Timing {
    bool ran = false;
    double medianMs = 0;
    double p95Ms = 0;
    int runs = 0;
    int rows = 0;
    QString error; // the failure or the time limit that stopped it
    bool timedOut = false;
};

struct Result {
    QString name;
    Timing ours;
    Timing oldWay;
    QString note;
};

struct RunOptions {
    int repeat = 20;
    // Repetitions stop early once an action has used this much time, so a slow old statement
    // does not hold the run up for minutes.
    int budgetMs = 15000;
    // A server statement running longer than this is cancelled and reported as such.
    int statementTimeoutMs = 60000;
    // Only the actions whose name contains this text, when it is not empty.
    QString only;
};

// Times one action, then its old way.
Result runAction(const Conn& conn, const Action& action, const RunOptions& options);

// The results as a Markdown table. `small` holds the same actions run on a one-year mill, or
// is empty; `targetMs` is the median an action must stay under.
QString resultTable(const std::vector<Result>& large, const std::vector<Result>& small,
                    double targetMs);

} // namespace gm::bench
