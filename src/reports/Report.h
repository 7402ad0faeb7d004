#pragma once

#include "services/Host.h"

#include <QDialog>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class QPagedPaintDevice;
class QPrinter;
class QPrintPreviewWidget;

namespace gm {

// One column of a printed table. Widths are relative: each column gets its share of the
// printable width.
struct ReportColumn {
    QString caption;
    Qt::Alignment alignment = Qt::AlignLeft;
    double width = 1.0;
};

// A table of the report. Rows are texts already formatted by the caller; a row shorter than
// the columns leaves the rest blank. An empty `totals` prints no totals row.
struct ReportTable {
    QString caption; // optional heading printed above the table
    QList<ReportColumn> columns;
    QList<QStringList> rows;
    QStringList totals;
};

// A label and its value, printed in a block. `name` lets a caller find the field again (for
// instance to suppress it); a suppressed field is not printed at all.
struct ReportField {
    QString label;
    QString value;
    QString name;
    bool suppressed = false;
};

// What a document screen hands to the preview: the whole printed page in plain data, with
// no database behind it, so that it can be built and checked without a window.
struct Report {
    QString name;                    // the report definition, e.g. "CrpPurchase"
    QString title;                   // printed under the letterhead
    QStringList letterhead;          // one to four lines, centred on every page
    QList<ReportField> headerFields; // block under the title
    int headerColumns = 2;           // how many label/value pairs stand side by side
    QList<ReportTable> tables;
    QList<ReportField> summaryFields; // block after the tables: charges, totals, balances
    QStringList notes;                // free lines printed last

    // Letterhead from the host's settings: lines 1, 2 and 3, and the email line when
    // `withEmail` (the contract report carries only three lines).
    void setLetterhead(const HostSettingsValues& settings, bool withEmail = true);
    // The header or summary field with this name, or null.
    ReportField* field(const QString& name);
    const ReportField* field(const QString& name) const;
    // Marks the named field as suppressed (or shown again); false when there is no such field.
    bool setSuppressed(const QString& name, bool suppressed);
    bool isEmpty() const;
};

// Lays the report out on the device's pages and paints it; returns the number of pages.
// The device must be ready to paint (a QPrinter with its output set, or a QPdfWriter).
int renderReport(const Report& report, QPagedPaintDevice* device);
// How many pages the report takes on the printer's page, without painting.
int reportPageCount(const Report& report, QPrinter* printer);
// Writes the report to a PDF file without any window; false with `error` set on failure.
bool writeReportPdf(const Report& report, const QString& path, QString* error = nullptr);

// The preview screen: shows one report, pages through it, zooms, prints and exports to PDF.
class RptReportViewer : public QDialog {
    Q_OBJECT
public:
    explicit RptReportViewer(QWidget* owner = nullptr);
    ~RptReportViewer() override;

    Report& report() { return m_report; }
    const Report& report() const { return m_report; }
    void setReport(Report report);

    QPrintPreviewWidget* previewWidget() const { return m_preview; }
    QPrinter* printer() const { return m_printer.get(); }
    int pageCount() const;

    // Keeps the page plain: black text, no filled backgrounds or coloured borders.
    void RemoveObjectColors();
    // Kept for callers of the old surface; borders are never coloured, so it draws nothing.
    void SetBorderColor();

    // The toolbar's actions, callable directly.
    void printReport();
    bool exportPdf(const QString& path);

private:
    void buildUi();
    void choosePdfFile();
    void paintRequested(QPrinter* printer);

    Report m_report;
    std::unique_ptr<QPrinter> m_printer;
    QPrintPreviewWidget* m_preview = nullptr;
};

// Shows the report modally with `owner` as parent. The report stays readable afterwards
// through lastShownReport() until the next one is shown.
void showReport(QWidget* owner, const Report& report);
const Report& lastShownReport();

} // namespace gm
