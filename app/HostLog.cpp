#include "HostLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QMutex>
#include <QStandardPaths>
#include <QTextStream>

#include <cstdio>

namespace gm::host {

namespace {

QMutex g_logMutex;
QString g_logPath;
QtMessageHandler g_previousHandler = nullptr;

void appendLine(const QString& level, const QString& title, const QString& text) {
    const QString path = logFilePath();
    QMutexLocker lock(&g_logMutex);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return; // a log that cannot be written must never stop the program
    QTextStream out(&file);
    const QString stamp = QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
    QString body = text;
    body.replace(QLatin1Char('\n'), QLatin1String("\n    "));
    out << stamp << ' ' << level << ' ';
    if (!title.isEmpty())
        out << '[' << title << "] ";
    out << body << '\n';
}

void messageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // A platform plugin's note that it lacks a window feature is not an error of the mill's.
    const bool pluginNote =
        type == QtWarningMsg && message.startsWith(QLatin1String("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !pluginNote) {
        const char* level = type == QtWarningMsg    ? "WARNING"
                            : type == QtCriticalMsg ? "ERROR"
                                                    : "FATAL";
        appendLine(QString::fromLatin1(level),
                   context.category && qstrcmp(context.category, "default") != 0
                       ? QString::fromLatin1(context.category)
                       : QString(),
                   message);
    }
    if (g_previousHandler)
        g_previousHandler(type, context, message);
    else
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

QString logFilePath() {
    if (!g_logPath.isEmpty())
        return g_logPath;
    QString dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (dir.isEmpty())
        dir = QDir::homePath() + QStringLiteral("/.grainmill");
    return QDir(dir).filePath(QStringLiteral("grainmill.log"));
}

void setLogFilePath(const QString& path) {
    g_logPath = path;
}

void installMessageHandler() {
    QtMessageHandler previous = qInstallMessageHandler(messageHandler);
    if (previous != messageHandler)
        g_previousHandler = previous;
}

void logError(const QString& title, const QString& text) {
    appendLine(QStringLiteral("ERROR"), title, text);
}

void showError(QWidget* parent, const QString& title, const QString& text) {
    logError(title, text);
    QMessageBox::critical(parent, title, text);
}

} // namespace gm::host
