#pragma once

#include <QString>

class QWidget;

namespace gm::host {

// The log lives beside the default database, so a clerk's report of "an error box" can be
// matched with what the program saw at that moment.
QString logFilePath();
// Overrides the log's location (tests write to a temporary folder).
void setLogFilePath(const QString& path);

// Routes Qt's warnings and errors into the log as well as to the console.
void installMessageHandler();

// Appends one timestamped line (several for a multi-line text) to the log.
void logError(const QString& title, const QString& text);

// The host's own error box: critical icon, OK, and the same words in the log.
void showError(QWidget* parent, const QString& title, const QString& text);

} // namespace gm::host
