#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QWidget;

namespace gm {
class Conn;
}

namespace gm::host {

class HostConfig;

// What the command line asked for.
struct StartOptions {
    QString location; // empty: the last database used, else the default file
    std::optional<qint16> user;
    bool sampleData = false;
    bool quitAfterStart = false; // for scripted checks: start, then close at once
};

// Reads the command line; on --help, --version or a bad value prints and returns the exit
// code to leave with in `exitCode`.
std::optional<StartOptions> parseCommandLine(const QStringList& arguments, int* exitCode);

// True when the database holds any master data (accounts or commodities).
bool hasMasterData(const Conn& conn);

struct OpenOutcome {
    std::unique_ptr<Conn> conn;
    QString error;
    bool sampleLoaded = false;
};
// Opens the location (creating and upgrading the schema) and, when asked and the database
// has no master data, loads the sample mill into it.
OpenOutcome openMillDatabase(const QString& location, bool loadSampleIfEmpty);

// The location to start with: the given one, else the last one used, else the default file.
// `firstStart` tells whether it is the default file of a user who never chose one, where the
// sample mill is loaded so that a new user sees a working mill.
QString startLocation(const StartOptions& options, const HostConfig& config, bool* firstStart);

// The location as it may be kept in the settings file: a server password is left out and
// asked for again by the database dialog when the server wants one.
QString rememberedLocation(const QString& location);

// Opens the start location; when it fails, logs why and offers the database dialog until a
// database opens or the clerk quits (null). Without `interactive` the first failure ends it.
std::unique_ptr<Conn> openAtStart(const StartOptions& options, HostConfig& config, bool interactive,
                                  QString* lastError = nullptr);

} // namespace gm::host
