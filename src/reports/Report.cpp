#include "reports/Report.h"

#include <QPrinter>
#include <QPrintPreviewWidget>

namespace gm {

void Report::setLetterhead(const HostSettingsValues& settings, bool withEmail) {
    letterhead = {settings.HeaderLine1, settings.HeaderLine2, settings.headerLine3()};
    if (withEmail)
        letterhead << settings.emailLine();
}

ReportField* Report::field(const QString& name) {
    for (auto* list : {&headerFields, &summaryFields})
        for (ReportField& f : *list)
            if (f.name == name)
                return &f;
    return nullptr;
}

const ReportField* Report::field(const QString& name) const {
    return const_cast<Report*>(this)->field(name);
}

bool Report::setSuppressed(const QString& name, bool suppressed) {
    ReportField* f = field(name);
    if (!f)
        return false;
    f->suppressed = suppressed;
    return true;
}

bool Report::isEmpty() const {
    for (const ReportTable& t : tables)
        if (!t.rows.isEmpty())
            return false;
    return true;
}

int renderReport(const Report&, QPagedPaintDevice*) {
    return 0;
}
int reportPageCount(const Report&, QPrinter*) {
    return 0;
}
bool writeReportPdf(const Report&, const QString&, QString*) {
    return false;
}

RptReportViewer::RptReportViewer(QWidget* owner)
    : QDialog(owner), m_printer(std::make_unique<QPrinter>()) {
    setObjectName(QStringLiteral("RptReportViewer"));
    setWindowTitle(QStringLiteral("Previewing Report"));
}
RptReportViewer::~RptReportViewer() = default;
void RptReportViewer::setReport(Report report) {
    m_report = std::move(report);
}
int RptReportViewer::pageCount() const {
    return 0;
}
void RptReportViewer::RemoveObjectColors() {}
void RptReportViewer::SetBorderColor() {}
void RptReportViewer::printReport() {}
bool RptReportViewer::exportPdf(const QString&) {
    return false;
}
void RptReportViewer::buildUi() {}
void RptReportViewer::choosePdfFile() {}
void RptReportViewer::paintRequested(QPrinter*) {}

namespace {
Report& lastReport() {
    static Report r;
    return r;
}
} // namespace

void showReport(QWidget*, const Report& report) {
    lastReport() = report;
}
const Report& lastShownReport() {
    return lastReport();
}

} // namespace gm
