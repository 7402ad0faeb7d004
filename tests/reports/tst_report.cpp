#include "PdfText.h"
#include "reports/Report.h"

#include <QApplication>
#include <QPrintPreviewWidget>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace gm;
using test::pdfPages;

namespace {

Report invoiceLike(int rows) {
    HostSettingsValues v;
    v.HeaderLine1 = QStringLiteral("CRESCENT FLOUR MILLS");
    v.HeaderLine2 = QStringLiteral("Grain Market Road");
    v.HeaderLine3Main = QStringLiteral("Phone 042-111");
    v.HeaderEmail = QStringLiteral("office@mill.example");
    Report r;
    r.name = QStringLiteral("CrpPurchase");
    r.title = QStringLiteral("PURCHASE INVOICE");
    r.setLetterhead(v);
    r.headerFields = {{QStringLiteral("Invoice No"), QStringLiteral("17"), {}, false},
                      {QStringLiteral("Previous Balance"), QStringLiteral("5000"),
                       QStringLiteral("PreviousCredit1"), false}};
    ReportTable t;
    t.columns = {{QStringLiteral("Vehicle"), Qt::AlignLeft, 2},
                 {QStringLiteral("Bags"), Qt::AlignRight, 1},
                 {QStringLiteral("Weight"), Qt::AlignRight, 1.5}};
    for (int i = 1; i <= rows; ++i)
        t.rows << QStringList{QStringLiteral("LHR-%1").arg(i), QString::number(i),
                              QString::number(i * 40)};
    t.totals = {QStringLiteral("Total"), QString::number(rows * (rows + 1) / 2), {}};
    r.tables << t;
    r.summaryFields = {{QStringLiteral("Net Amount"), QStringLiteral("123456.00"), {}, false}};
    return r;
}

} // namespace

class TestReport : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private Q_SLOTS:
    // Many pages, so that a page lost at a break, or a preview paginating apart from the PDF,
    // shows.
    void longTablePrintedAndPreviewed() {
        const Report report = invoiceLike(200);
        const QString path = m_dir.filePath("long.pdf");
        QString error;
        QVERIFY2(writeReportPdf(report, path, &error), qPrintable(error));
        const QStringList pages = pdfPages(path);
        QVERIFY(pages.size() >= 3);
        QStringList vehicles;
        for (int i = 0; i < pages.size(); ++i) {
            const QString& page = pages[i];
            QVERIFY2(page.contains("CRESCENT FLOUR MILLS"), qPrintable(QString::number(i)));
            QVERIFY2(page.contains("Email: office@mill.example"), qPrintable(page));
            QVERIFY(page.contains("Phone 042-111") && !page.contains("Phone 042-111,"));
            QVERIFY(page.contains("PURCHASE INVOICE"));
            QVERIFY(page.contains(QRegularExpression("Vehicle\\s+Bags\\s+Weight")));
            QVERIFY(page.contains(QStringLiteral("Page %1 of %2").arg(i + 1).arg(pages.size())));
            for (const QString& line : page.split('\n'))
                if (line.trimmed().startsWith("LHR-"))
                    vehicles << line.trimmed().section(' ', 0, 0);
        }
        // Every row printed once, in order, none lost at a page break.
        QCOMPARE(vehicles.size(), 200);
        QCOMPARE(vehicles.first(), QStringLiteral("LHR-1"));
        QCOMPARE(vehicles.last(), QStringLiteral("LHR-200"));
        QVERIFY(pages.last().contains(QRegularExpression("Total\\s+20100")));
        QVERIFY(pages.last().contains("123456.00"));

        QWidget owner;
        bool shown = false;
        QTimer::singleShot(0, [&] {
            auto* viewer = qobject_cast<RptReportViewer*>(QApplication::activeModalWidget());
            QVERIFY(viewer);
            const auto close = qScopeGuard([viewer] { viewer->reject(); });
            QCOMPARE(viewer->windowTitle(), QStringLiteral("Previewing Report"));
            QCOMPARE(viewer->parentWidget(), &owner);
            viewer->previewWidget()->updatePreview();
            // The preview pages as the PDF does.
            QCOMPARE(viewer->pageCount(), int(pages.size()));
            shown = true;
        });
        showReport(&owner, report);
        QVERIFY(shown);
        QCOMPARE(lastShownReport().tables.value(0).rows.size(), 200);
    }

    void shortReports() {
        Report r = invoiceLike(3);
        QVERIFY(r.setSuppressed("PreviousCredit1", true));
        QVERIFY(!r.setSuppressed("NoSuchField", true));
        QVERIFY(writeReportPdf(r, m_dir.filePath("suppressed.pdf")));
        const QStringList pages = pdfPages(m_dir.filePath("suppressed.pdf"));
        QCOMPARE(pages.size(), 1);
        QVERIFY(!pages[0].contains("Previous Balance"));
        QVERIFY(pages[0].contains("Invoice No"));

        QVERIFY(writeReportPdf(Report{}, m_dir.filePath("empty.pdf")));
        QCOMPARE(pdfPages(m_dir.filePath("empty.pdf")).join('|').simplified(),
                 QStringLiteral("Page 1 of 1"));

        QString error;
        QVERIFY(!writeReportPdf(r, m_dir.filePath("no/such/dir/x.pdf"), &error));
        QVERIFY(!error.isEmpty());
    }
};

QTEST_MAIN(TestReport)
#include "tst_report.moc"
