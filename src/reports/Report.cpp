#include "reports/Report.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QFont>
#include <QFontMetricsF>
#include <QMessageBox>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPrintPreviewWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <vector>

namespace gm {

// ---------------------------------------------------------------------------------------------
// The report model

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

// ---------------------------------------------------------------------------------------------
// Layout: the body is laid out first into pages of drawing steps; only then, with the page
// count known, is every page painted with its letterhead and its "Page n of m".

namespace {

struct Step {
    enum Kind { Text, Rule } kind = Text;
    QRectF rect;
    QString text;
    int flags = 0;
    int font = 0; // index into Fonts
};

struct Fonts {
    enum { Body, Bold, Heading, Title, Small, Count };
    QFont font[Count];
};

class Layout {
public:
    Layout(const Report& report, QPaintDevice* device) : m_report(report) {
        QFont base = QApplication::font();
        // No ligatures: the text of an exported PDF must read back letter for letter, so that
        // it can be searched and copied ("office", not a glyph for "ffi").
        base.setStyleHint(QFont::SansSerif, QFont::PreferNoShaping);
        auto make = [&](int index, qreal points, bool bold) {
            QFont f = base;
            f.setPointSizeF(points);
            f.setBold(bold);
            m_fonts.font[index] = f;
            m_metrics.emplace_back(f, device);
        };
        make(Fonts::Body, 9, false);
        make(Fonts::Bold, 9, true);
        make(Fonts::Heading, 14, true);
        make(Fonts::Title, 12, true);
        make(Fonts::Small, 8, false);
        m_width = device->width();
        m_height = device->height();
        m_gap = lineHeight(Fonts::Body) * 0.5;
        m_bodyTop = headerHeight();
        m_bodyBottom = m_height - lineHeight(Fonts::Small) * 1.8;
    }

    const QFont& font(int index) const { return m_fonts.font[index]; }
    const QFontMetricsF& metrics(int index) const { return m_metrics[size_t(index)]; }
    qreal lineHeight(int index) const { return metrics(index).height() * 1.25; }
    qreal width() const { return m_width; }
    qreal height() const { return m_height; }

    // Lays the whole body out and returns its pages (at least one).
    std::vector<std::vector<Step>> run() {
        m_pages.assign(1, {});
        m_y = m_bodyTop;
        headerFields();
        for (const ReportTable& table : m_report.tables)
            this->table(table);
        summaryFields();
        for (const QString& note : m_report.notes) {
            need(lineHeight(Fonts::Body));
            text(QRectF(0, m_y, m_width, lineHeight(Fonts::Body)), note, Fonts::Body,
                 Qt::AlignLeft | Qt::AlignVCenter);
            m_y += lineHeight(Fonts::Body);
        }
        return m_pages;
    }

    // The letterhead, the title and a rule: repeated at the top of every page.
    std::vector<Step> pageHeader() const {
        std::vector<Step> steps;
        qreal y = 0;
        for (int i = 0; i < m_report.letterhead.size(); ++i) {
            const int f = i == 0 ? Fonts::Heading : Fonts::Body;
            steps.push_back({Step::Text, QRectF(0, y, m_width, lineHeight(f)),
                             m_report.letterhead[i], Qt::AlignHCenter | Qt::AlignVCenter, f});
            y += lineHeight(f);
        }
        if (!m_report.title.isEmpty()) {
            y += m_gap * 0.5;
            steps.push_back({Step::Text, QRectF(0, y, m_width, lineHeight(Fonts::Title)),
                             m_report.title, Qt::AlignHCenter | Qt::AlignVCenter, Fonts::Title});
            y += lineHeight(Fonts::Title);
        }
        if (!steps.empty()) {
            y += m_gap * 0.5;
            steps.push_back({Step::Rule, QRectF(0, y, m_width, 0), {}, 0, 0});
        }
        return steps;
    }

    Step pageFooter(int page, int pages) const {
        const qreal h = lineHeight(Fonts::Small);
        return {Step::Text, QRectF(0, m_height - h, m_width, h),
                QStringLiteral("Page %1 of %2").arg(page).arg(pages),
                Qt::AlignHCenter | Qt::AlignVCenter, Fonts::Small};
    }

private:
    qreal headerHeight() const {
        qreal y = 0;
        for (int i = 0; i < m_report.letterhead.size(); ++i)
            y += lineHeight(i == 0 ? Fonts::Heading : Fonts::Body);
        if (!m_report.title.isEmpty())
            y += m_gap * 0.5 + lineHeight(Fonts::Title);
        if (y > 0)
            y += m_gap * 1.5;
        return y;
    }

    void newPage() {
        m_pages.emplace_back();
        m_y = m_bodyTop;
    }

    // Starts a new page unless `h` more fits on this one.
    bool need(qreal h) {
        if (m_y + h <= m_bodyBottom || m_y <= m_bodyTop)
            return false;
        newPage();
        return true;
    }

    void text(const QRectF& rect, const QString& s, int font, int flags) {
        const QString shown =
            metrics(font).elidedText(s, Qt::ElideRight, std::max<qreal>(rect.width(), 0));
        m_pages.back().push_back({Step::Text, rect, shown, flags, font});
    }

    void rule(qreal y, qreal x0 = 0, qreal x1 = -1) {
        m_pages.back().push_back(
            {Step::Rule, QRectF(x0, y, (x1 < 0 ? m_width : x1) - x0, 0), {}, 0, 0});
    }

    static QList<const ReportField*> shown(const QList<ReportField>& fields) {
        QList<const ReportField*> out;
        for (const ReportField& f : fields)
            if (!f.suppressed)
                out << &f;
        return out;
    }

    void headerFields() {
        const QList<const ReportField*> fields = shown(m_report.headerFields);
        if (fields.isEmpty())
            return;
        const int perRow = std::max(1, m_report.headerColumns);
        const qreal cell = m_width / perRow;
        const qreal h = lineHeight(Fonts::Body);
        // Labels of one column line up: each column's label width is its widest label.
        std::vector<qreal> labelWidth(size_t(perRow), 0);
        for (int i = 0; i < fields.size(); ++i) {
            qreal& w = labelWidth[size_t(i % perRow)];
            const QString label = fields[i]->label + QStringLiteral(": ");
            w = std::max(w, metrics(Fonts::Bold).horizontalAdvance(label) + m_gap * 0.5);
        }
        for (qreal& w : labelWidth)
            w = std::min(w, cell * 0.5);
        for (int i = 0; i < fields.size(); ++i) {
            const int col = i % perRow;
            if (col == 0) {
                if (i > 0)
                    m_y += h;
                need(h);
            }
            const qreal x = col * cell;
            const qreal lw = labelWidth[size_t(col)];
            text(QRectF(x, m_y, lw, h), fields[i]->label + QStringLiteral(": "), Fonts::Bold,
                 Qt::AlignLeft | Qt::AlignVCenter);
            text(QRectF(x + lw, m_y, cell - lw - m_gap, h), fields[i]->value, Fonts::Body,
                 Qt::AlignLeft | Qt::AlignVCenter);
        }
        m_y += h + m_gap;
    }

    std::vector<QRectF> columnCells(const ReportTable& t, qreal y, qreal h) const {
        double total = 0;
        for (const ReportColumn& c : t.columns)
            total += std::max(c.width, 0.0);
        std::vector<QRectF> cells;
        qreal x = 0;
        const qreal pad = m_gap * 0.4;
        for (const ReportColumn& c : t.columns) {
            const qreal w =
                total > 0 ? m_width * std::max(c.width, 0.0) / total : m_width / t.columns.size();
            cells.emplace_back(x + pad, y, std::max<qreal>(w - 2 * pad, 0), h);
            x += w;
        }
        return cells;
    }

    void columnHeader(const ReportTable& t) {
        const qreal h = lineHeight(Fonts::Bold);
        rule(m_y);
        const std::vector<QRectF> cells = columnCells(t, m_y, h);
        for (int c = 0; c < t.columns.size(); ++c)
            text(cells[size_t(c)], t.columns[c].caption, Fonts::Bold,
                 int(t.columns[c].alignment | Qt::AlignVCenter));
        m_y += h;
        rule(m_y);
    }

    void row(const ReportTable& t, const QStringList& texts, int font) {
        const qreal h = lineHeight(font);
        const std::vector<QRectF> cells = columnCells(t, m_y, h);
        for (int c = 0; c < t.columns.size(); ++c)
            text(cells[size_t(c)], texts.value(c), font,
                 int(t.columns[c].alignment | Qt::AlignVCenter));
        m_y += h;
    }

    void table(const ReportTable& t) {
        if (t.columns.isEmpty())
            return;
        const qreal captionH = t.caption.isEmpty() ? 0 : lineHeight(Fonts::Bold);
        // A caption and column header never stand alone at the foot of a page.
        need(captionH + lineHeight(Fonts::Bold) * 2 + lineHeight(Fonts::Body));
        if (!t.caption.isEmpty()) {
            text(QRectF(0, m_y, m_width, captionH), t.caption, Fonts::Bold,
                 Qt::AlignLeft | Qt::AlignVCenter);
            m_y += captionH;
        }
        columnHeader(t);
        for (const QStringList& r : t.rows) {
            if (need(lineHeight(Fonts::Body)))
                columnHeader(t);
            row(t, r, Fonts::Body);
        }
        if (!t.totals.isEmpty()) {
            if (need(lineHeight(Fonts::Bold)))
                columnHeader(t);
            rule(m_y);
            row(t, t.totals, Fonts::Bold);
            rule(m_y);
        } else if (!t.rows.isEmpty()) {
            rule(m_y);
        }
        m_y += m_gap;
    }

    void summaryFields() {
        const QList<const ReportField*> fields = shown(m_report.summaryFields);
        if (fields.isEmpty())
            return;
        // Figures stand in a block on the right half, values right-aligned under each other.
        const qreal x = m_width * 0.5;
        const qreal w = m_width - x;
        const qreal h = lineHeight(Fonts::Body);
        for (const ReportField* f : fields) {
            need(h);
            text(QRectF(x, m_y, w * 0.6, h), f->label, Fonts::Bold,
                 Qt::AlignLeft | Qt::AlignVCenter);
            text(QRectF(x + w * 0.6, m_y, w * 0.4, h), f->value, Fonts::Body,
                 Qt::AlignRight | Qt::AlignVCenter);
            m_y += h;
        }
        m_y += m_gap;
    }

    const Report& m_report;
    Fonts m_fonts;
    std::vector<QFontMetricsF> m_metrics;
    qreal m_width = 0, m_height = 0, m_gap = 0, m_bodyTop = 0, m_bodyBottom = 0, m_y = 0;
    std::vector<std::vector<Step>> m_pages;
};

void paintSteps(QPainter& painter, const Layout& layout, const std::vector<Step>& steps) {
    for (const Step& s : steps) {
        if (s.kind == Step::Rule) {
            painter.drawLine(QPointF(s.rect.left(), s.rect.top()),
                             QPointF(s.rect.right(), s.rect.top()));
        } else {
            painter.setFont(layout.font(s.font));
            painter.drawText(s.rect, s.flags, s.text);
        }
    }
}

} // namespace

int renderReport(const Report& report, QPagedPaintDevice* device) {
    Layout layout(report, device);
    const std::vector<std::vector<Step>> pages = layout.run();
    QPainter painter;
    if (!painter.begin(device))
        return 0;
    // Plain black on white: no object of the page carries a colour or a filled background.
    QPen pen(Qt::black);
    pen.setWidthF(std::max<qreal>(device->logicalDpiX() / 96.0, 1.0));
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const std::vector<Step> header = layout.pageHeader();
    const int count = int(pages.size());
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            device->newPage();
        paintSteps(painter, layout, header);
        paintSteps(painter, layout, pages[size_t(i)]);
        paintSteps(painter, layout, {layout.pageFooter(i + 1, count)});
    }
    painter.end();
    return count;
}

int reportPageCount(const Report& report, QPrinter* printer) {
    Layout layout(report, printer);
    return int(layout.run().size());
}

namespace {
QPageLayout reportPageLayout() {
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(12, 12, 12, 12),
                       QPageLayout::Millimeter);
}
} // namespace

bool writeReportPdf(const Report& report, const QString& path, QString* error) {
    QPdfWriter writer(path);
    writer.setResolution(300);
    writer.setPageLayout(reportPageLayout());
    writer.setTitle(report.title.isEmpty() ? report.name : report.title);
    writer.setCreator(QStringLiteral("grainmill"));
    if (renderReport(report, &writer) == 0) {
        if (error)
            *error = QStringLiteral("The file \"%1\" could not be written.").arg(path);
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// The preview screen

RptReportViewer::RptReportViewer(QWidget* owner)
    : QDialog(owner), m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution)) {
    setObjectName(QStringLiteral("RptReportViewer"));
    setWindowTitle(QStringLiteral("Previewing Report"));
    m_printer->setPageLayout(reportPageLayout());
    // The office prints on its EPSON when the machine has one; otherwise the default printer.
    if (QPrinterInfo::availablePrinterNames().contains(QStringLiteral("EPSON")))
        m_printer->setPrinterName(QStringLiteral("EPSON"));
    buildUi();
}

RptReportViewer::~RptReportViewer() = default;

void RptReportViewer::buildUi() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* bar = new QToolBar(this);
    bar->setObjectName(QStringLiteral("ReportToolBar"));
    layout->addWidget(bar);
    m_preview = new QPrintPreviewWidget(m_printer.get(), this);
    m_preview->setObjectName(QStringLiteral("CRViewer91"));
    layout->addWidget(m_preview, 1);
    connect(m_preview, &QPrintPreviewWidget::paintRequested, this,
            &RptReportViewer::paintRequested);

    auto add = [&](const char* name, const QString& text, const QKeySequence& key,
                   std::function<void()> run) {
        QAction* a = bar->addAction(text);
        a->setObjectName(QLatin1String(name));
        if (!key.isEmpty())
            a->setShortcut(key);
        connect(a, &QAction::triggered, this, std::move(run));
        return a;
    };
    add("ActFirstPage", QStringLiteral("First"), QKeySequence(Qt::Key_Home),
        [this] { m_preview->setCurrentPage(1); });
    add("ActPreviousPage", QStringLiteral("Previous"), QKeySequence(Qt::Key_PageUp),
        [this] { m_preview->setCurrentPage(std::max(1, m_preview->currentPage() - 1)); });
    add("ActNextPage", QStringLiteral("Next"), QKeySequence(Qt::Key_PageDown), [this] {
        m_preview->setCurrentPage(std::min(m_preview->pageCount(), m_preview->currentPage() + 1));
    });
    add("ActLastPage", QStringLiteral("Last"), QKeySequence(Qt::Key_End),
        [this] { m_preview->setCurrentPage(m_preview->pageCount()); });
    bar->addSeparator();
    add("ActZoomIn", QStringLiteral("Zoom In"), QKeySequence::ZoomIn,
        [this] { m_preview->zoomIn(); });
    add("ActZoomOut", QStringLiteral("Zoom Out"), QKeySequence::ZoomOut,
        [this] { m_preview->zoomOut(); });
    add("ActFitWidth", QStringLiteral("Fit Width"), {}, [this] { m_preview->fitToWidth(); });
    add("ActFitPage", QStringLiteral("Whole Page"), {}, [this] { m_preview->fitInView(); });
    bar->addSeparator();
    add("ActPrint", QStringLiteral("Print"), QKeySequence::Print, [this] { printReport(); });
    add("ActExportPdf", QStringLiteral("Export PDF"), {}, [this] { choosePdfFile(); });
    resize(900, 700);
}

void RptReportViewer::setReport(Report report) {
    m_report = std::move(report);
    m_preview->updatePreview();
}

int RptReportViewer::pageCount() const {
    return m_preview->pageCount();
}

void RptReportViewer::paintRequested(QPrinter* printer) {
    renderReport(m_report, printer);
}

void RptReportViewer::RemoveObjectColors() {
    // Every page is drawn black on white already; drawing it again shows that state.
    m_preview->updatePreview();
}

void RptReportViewer::SetBorderColor() {}

void RptReportViewer::printReport() {
    QPrintDialog dialog(m_printer.get(), this);
    dialog.setWindowTitle(QStringLiteral("Print"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    renderReport(m_report, m_printer.get());
}

bool RptReportViewer::exportPdf(const QString& path) {
    return writeReportPdf(m_report, path);
}

void RptReportViewer::choosePdfFile() {
    QString name = m_report.name.isEmpty() ? QStringLiteral("report") : m_report.name;
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export PDF"),
                                                      name + QStringLiteral(".pdf"),
                                                      QStringLiteral("PDF files (*.pdf)"));
    if (!path.isEmpty() && !exportPdf(path))
        QMessageBox::critical(this, QStringLiteral("Export PDF"),
                              QStringLiteral("The file \"%1\" could not be written.").arg(path));
}

// ---------------------------------------------------------------------------------------------

namespace {
Report& lastReport() {
    static Report r;
    return r;
}
} // namespace

void showReport(QWidget* owner, const Report& report) {
    lastReport() = report;
    RptReportViewer viewer(owner);
    viewer.setReport(report);
    viewer.exec();
}

const Report& lastShownReport() {
    return lastReport();
}

} // namespace gm
