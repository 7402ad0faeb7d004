#pragma once

#include <QProcess>
#include <QStringList>

namespace gm::test {

// The text of a written PDF, one entry per page, as a reader copying it off the page sees it.
inline QStringList pdfPages(const QString& path) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        return {};
    QStringList pages = QString::fromUtf8(p.readAllStandardOutput()).split(QChar('\f'));
    if (!pages.isEmpty() && pages.last().trimmed().isEmpty())
        pages.removeLast();
    return pages;
}

} // namespace gm::test
