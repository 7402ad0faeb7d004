#include "MainWindow.h"

#include "DatabaseDialog.h"
#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "HostLog.h"
#include "MasterDataEditor.h"
#include "seed/SampleData.h"
#include "SettingsDialog.h"
#include "Startup.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QStyle>
#include <QTabBar>
#include <QTableView>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace gm::host {

namespace {

struct DocumentEntry {
    const char* objectName;
    const char* text;
    const char* tip;
    Forms::Screen screen;
    void (Forms::*open)();
    QKeySequence key;
    bool production;
};

const std::vector<DocumentEntry>& documentEntries() {
    static const std::vector<DocumentEntry> all = {
        {"ActContracts", "&Contracts", "Purchase contracts with sellers and brokers",
         Forms::Screen::PurchaseContract, &Forms::PurchaseContractForm,
         QKeySequence(Qt::CTRL | Qt::Key_1), false},
        {"ActArrivals", "&Arrivals", "Vehicles received with their bags and weights",
         Forms::Screen::Arrivals, &Forms::ArrivalForm, QKeySequence(Qt::CTRL | Qt::Key_2), false},
        {"ActPurchaseInvoices", "Purchase &invoices", "Invoices made from arrivals",
         Forms::Screen::PurchaseInvoice, &Forms::PurchaseInvoiceForm,
         QKeySequence(Qt::CTRL | Qt::Key_3), false},
        {"ActDFCPurchases", "&DFC purchases", "Payments, challans and authority letters",
         Forms::Screen::PurchaseFromDFC, &Forms::PurchaseFromDFCForm,
         QKeySequence(Qt::CTRL | Qt::Key_4), false},
        {"ActDailyProduction", "&Daily production", "A day's consumption and products",
         Forms::Screen::Production, &Forms::ProductionForm, QKeySequence(Qt::CTRL | Qt::Key_5),
         true},
        {"ActHourlyProduction", "&Hourly production", "Hourly production counts",
         Forms::Screen::HourlyProduction, &Forms::HProductionForm,
         QKeySequence(Qt::CTRL | Qt::Key_6), true},
    };
    return all;
}

// Menu texts of the master lists: mnemonics chosen so that none clash.
QString masterMenuText(const QString& id, const QString& title) {
    static const std::map<QString, QString> texts = {
        {QStringLiteral("parties"), QStringLiteral("&Parties")},
        {QStringLiteral("accounts"), QStringLiteral("&Accounts")},
        {QStringLiteral("cities"), QStringLiteral("&Cities")},
        {QStringLiteral("commodities"), QStringLiteral("Co&mmodities")},
        {QStringLiteral("units"), QStringLiteral("&Units")},
        {QStringLiteral("bagtypes"), QStringLiteral("&Bag types")},
        {QStringLiteral("bagclasses"), QStringLiteral("Bag c&lasses")},
        {QStringLiteral("processes"), QStringLiteral("Pr&ocesses")},
        {QStringLiteral("prcentres"), QStringLiteral("P&R centres")},
        {QStringLiteral("ledger"), QStringLiteral("Opening bala&nces")},
    };
    auto it = texts.find(id);
    return it == texts.end() ? title : it->second;
}

} // namespace

// The first tab: the mill's name and a button for everything the menus offer, so a new
// clerk finds the screens without reading the menus.
class HomePage : public QWidget {
public:
    explicit HomePage(QWidget* parent) : QWidget(parent) {
        setObjectName(QStringLiteral("HomePage"));
        auto* outer = new QVBoxLayout(this);
        outer->setContentsMargins(32, 28, 32, 28);
        m_line1 = new QLabel(this);
        m_line1->setObjectName(QStringLiteral("LblMillName"));
        QFont f = m_line1->font();
        f.setPointSizeF(f.pointSizeF() * 2.0);
        f.setBold(true);
        m_line1->setFont(f);
        m_line2 = new QLabel(this);
        QFont f2 = m_line2->font();
        f2.setPointSizeF(f2.pointSizeF() * 1.2);
        m_line2->setFont(f2);
        m_line3 = new QLabel(this);
        m_line3->setStyleSheet(QStringLiteral("color: palette(dark);"));
        outer->addWidget(m_line1);
        outer->addWidget(m_line2);
        outer->addWidget(m_line3);
        auto* rule = new QFrame(this);
        rule->setFrameShape(QFrame::HLine);
        rule->setFrameShadow(QFrame::Sunken);
        outer->addSpacing(8);
        outer->addWidget(rule);
        outer->addSpacing(12);
        m_groups = new QHBoxLayout;
        m_groups->setSpacing(18);
        outer->addLayout(m_groups);
        outer->addStretch(1);
        auto* hint = new QLabel(
            QStringLiteral("Ctrl+1 to Ctrl+6 open the document screens. In a list: type to "
                           "find, Insert adds a row, Enter saves it, Delete removes it, Esc "
                           "drops changes."),
            this);
        hint->setWordWrap(true);
        hint->setStyleSheet(QStringLiteral("color: palette(dark);"));
        outer->addWidget(hint);
    }

    void setLetterhead(const HostSettingsValues& v) {
        m_line1->setText(v.HeaderLine1);
        m_line2->setText(v.HeaderLine2);
        m_line3->setText(v.headerLine3());
    }

    void addGroup(const QString& title, const QList<QAction*>& actions) {
        if (actions.isEmpty())
            return;
        auto* box = new QGroupBox(title, this);
        auto* col = new QVBoxLayout(box);
        col->setSpacing(2);
        for (QAction* a : actions) {
            auto* b = new QToolButton(box);
            b->setDefaultAction(a);
            b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
            b->setAutoRaise(true);
            b->setIconSize(QSize(20, 20));
            b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
            b->setFocusPolicy(Qt::StrongFocus);
            col->addWidget(b);
        }
        col->addStretch(1);
        box->setMinimumWidth(220);
        m_groups->addWidget(box, 0, Qt::AlignTop);
    }

    void finish() { m_groups->addStretch(1); }

private:
    QLabel* m_line1;
    QLabel* m_line2;
    QLabel* m_line3;
    QHBoxLayout* m_groups;
};

MainWindow::MainWindow(HostConfig& config, std::unique_ptr<Conn> conn, qint16 user, QWidget* parent)
    : QMainWindow(parent), m_config(config), m_conn(std::move(conn)),
      m_session(std::make_shared<UserSession>(user)),
      m_settings(std::make_shared<ConfigHostSettings>(config)) {
    setObjectName(QStringLiteral("MainWindow"));
    setWindowIcon(style()->standardIcon(QStyle::SP_ComputerIcon));
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("TabLists"));
    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_home = new HomePage(m_tabs);
    m_tabs->addTab(m_home, style()->standardIcon(QStyle::SP_DirHomeIcon), QStringLiteral("Start"));
    m_tabs->tabBar()->setTabButton(0, QTabBar::RightSide, nullptr);
    m_tabs->tabBar()->setTabButton(0, QTabBar::LeftSide, nullptr);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, [this](int index) {
        auto* editor = qobject_cast<MasterDataEditor*>(m_tabs->widget(index));
        if (!editor || !editor->settleChanges())
            return;
        m_tabs->removeTab(index);
        editor->deleteLater();
    });
    setCentralWidget(m_tabs);

    attachForms();
    buildMenus();
    buildStatusBar();
    updateStatus();
    resize(1280, 760);
    const QByteArray geometry = m_config.raw().value(QStringLiteral("Host/Geometry")).toByteArray();
    if (!geometry.isEmpty())
        restoreGeometry(geometry);
}

MainWindow::~MainWindow() {
    // The screens use the connection: they go first.
    m_forms.reset();
}

void MainWindow::attachForms() {
    m_forms = std::make_unique<Forms>();
    m_forms->InitializeClass(*m_conn);
    m_forms->setHostSession(m_session);
    m_forms->setHostSettings(m_settings);
}

void MainWindow::buildMenus() {
    QStyle* st = style();
    auto* file = menuBar()->addMenu(QStringLiteral("&File"));
    auto* purchase = menuBar()->addMenu(QStringLiteral("&Purchase"));
    auto* production = menuBar()->addMenu(QStringLiteral("Pr&oduction"));
    auto* master = menuBar()->addMenu(QStringLiteral("&Master data"));
    auto* help = menuBar()->addMenu(QStringLiteral("&Help"));
    purchase->setObjectName(QStringLiteral("MnuPurchase"));
    production->setObjectName(QStringLiteral("MnuProduction"));
    master->setObjectName(QStringLiteral("MnuMasterData"));
    file->setObjectName(QStringLiteral("MnuFile"));
    help->setObjectName(QStringLiteral("MnuHelp"));

    QList<QAction*> purchaseActions, productionActions, masterActions;
    for (const DocumentEntry& e : documentEntries()) {
        if (!Forms::isAvailable(e.screen))
            continue; // a screen this build does not have gets no entry at all
        QMenu* menu = e.production ? production : purchase;
        QAction* a = menu->addAction(QString::fromLatin1(e.text));
        a->setObjectName(QString::fromLatin1(e.objectName));
        a->setShortcut(e.key);
        a->setStatusTip(QString::fromLatin1(e.tip));
        a->setToolTip(QString::fromLatin1(e.tip));
        a->setIcon(st->standardIcon(e.production ? QStyle::SP_MediaPlay
                                                 : QStyle::SP_FileDialogDetailedView));
        const auto open = e.open;
        connect(a, &QAction::triggered, this, [this, open] {
            try {
                ((*m_forms).*open)();
            } catch (const DbError& err) {
                showError(this, err.source(), err.description());
            }
        });
        (e.production ? productionActions : purchaseActions) << a;
    }
    purchase->menuAction()->setVisible(!purchaseActions.isEmpty());
    production->menuAction()->setVisible(!productionActions.isEmpty());

    for (const TableDef& t : masterTables()) {
        if (!t.parentColumn.isEmpty())
            continue; // edited under its parent's list
        QAction* a = master->addAction(masterMenuText(t.id, t.title));
        a->setObjectName(QStringLiteral("ActMaster_") + t.id);
        a->setStatusTip(QStringLiteral("Maintain the list of %1").arg(t.title.toLower()));
        a->setIcon(st->standardIcon(QStyle::SP_FileDialogListView));
        const QString id = t.id;
        connect(a, &QAction::triggered, this, [this, id] { openMasterList(id); });
        masterActions << a;
        if (t.id == QLatin1String("accounts") || t.id == QLatin1String("bagclasses"))
            master->addSeparator();
    }

    QAction* open = file->addAction(st->standardIcon(QStyle::SP_DialogOpenButton),
                                    QStringLiteral("&Open database..."));
    open->setObjectName(QStringLiteral("ActOpenDatabase"));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, &MainWindow::chooseDatabase);
    QAction* settings = file->addAction(st->standardIcon(QStyle::SP_FileDialogContentsView),
                                        QStringLiteral("&Settings..."));
    settings->setObjectName(QStringLiteral("ActSettings"));
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    connect(settings, &QAction::triggered, this, &MainWindow::editSettings);
    file->addSeparator();
    QAction* quit = file->addAction(QStringLiteral("&Quit"));
    quit->setObjectName(QStringLiteral("ActQuit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, this, &QWidget::close);

    QAction* about = help->addAction(QStringLiteral("&About grainmill"));
    about->setObjectName(QStringLiteral("ActAbout"));
    about->setShortcut(QKeySequence(Qt::Key_F1 | Qt::SHIFT));
    connect(about, &QAction::triggered, this, &MainWindow::about);

    m_home->addGroup(QStringLiteral("Purchase"), purchaseActions);
    m_home->addGroup(QStringLiteral("Production"), productionActions);
    m_home->addGroup(QStringLiteral("Master data"), masterActions);
    m_home->addGroup(QStringLiteral("Database"), {open, settings});
    m_home->finish();
}

void MainWindow::buildStatusBar() {
    m_dbLabel = new QLabel(this);
    m_dbLabel->setObjectName(QStringLiteral("LblDatabase"));
    m_userLabel = new QLabel(this);
    m_userLabel->setObjectName(QStringLiteral("LblUser"));
    statusBar()->addPermanentWidget(m_dbLabel, 1);
    statusBar()->addPermanentWidget(m_userLabel);
}

void MainWindow::updateStatus() {
    const HostSettingsValues v = m_config.settings();
    const QString db = m_conn->location().displayText();
    m_dbLabel->setText(QStringLiteral("Database: %1").arg(db));
    m_dbLabel->setToolTip(m_conn->isPostgres() ? QStringLiteral("PostgreSQL server")
                                               : QStringLiteral("SQLite file"));
    m_userLabel->setText(QStringLiteral("User %1").arg(m_session->userNo()));
    m_home->setLetterhead(v);
    setWindowTitle(v.HeaderLine1.isEmpty() ? QStringLiteral("grainmill")
                                           : QStringLiteral("%1 - grainmill").arg(v.HeaderLine1));
}

MasterDataEditor* MainWindow::openMasterList(const QString& id) {
    auto& slot = m_lists[id];
    if (!slot) {
        const TableDef* def = findMasterTable(id);
        if (!def)
            return nullptr;
        slot = new MasterDataEditor(*m_conn, *def, m_tabs);
        m_tabs->addTab(slot, style()->standardIcon(QStyle::SP_FileDialogListView), def->title);
    }
    m_tabs->setCurrentWidget(slot);
    slot->view()->setFocus();
    return slot;
}

bool MainWindow::closeEverything() {
    for (auto& [id, editor] : m_lists)
        if (editor && !editor->settleChanges())
            return false;
    return m_forms->closeAll();
}

bool MainWindow::switchDatabase(std::unique_ptr<Conn> conn) {
    if (!closeEverything())
        return false;
    for (auto& [id, editor] : m_lists)
        delete editor.data();
    m_lists.clear();
    m_forms.reset();
    m_conn = std::move(conn);
    attachForms();
    updateStatus();
    return true;
}

void MainWindow::chooseDatabase() {
    QString problem;
    QString location = m_config.lastLocation();
    for (;;) {
        DatabaseDialog dialog(DatabaseDialog::Purpose::Change, location, problem, this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        location = dialog.location();
        OpenOutcome outcome = openMillDatabase(location, false);
        if (!outcome.conn) {
            logError(QStringLiteral("Open database"), outcome.error);
            problem = outcome.error;
            continue;
        }
        try {
            if (!hasMasterData(*outcome.conn) &&
                QMessageBox::question(
                    this, QStringLiteral("Open database"),
                    QStringLiteral("The database %1 holds no master data yet.\n\nLoad the "
                                   "sample mill into it?")
                        .arg(outcome.conn->location().displayText()),
                    QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes)
                loadSampleMill(*outcome.conn);
        } catch (const DbError& e) {
            showError(this, e.source(), e.description());
        }
        if (switchDatabase(std::move(outcome.conn)))
            m_config.setLastLocation(rememberedLocation(location));
        return;
    }
}

void MainWindow::editSettings() {
    SettingsDialog dialog(m_config.settings(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_config.setSettings(dialog.values());
    updateStatus();
}

void MainWindow::about() {
    QMessageBox::about(
        this, QStringLiteral("About grainmill"),
        QStringLiteral("<h3>grainmill %1</h3><p>Purchase and production office of a flour mill: "
                       "contracts, arrivals, purchase invoices, DFC purchases and production."
                       "</p><p>Database: %2<br>Log file: %3</p>")
            .arg(QCoreApplication::applicationVersion(),
                 m_conn->location().displayText().toHtmlEscaped(), logFilePath().toHtmlEscaped()));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!closeEverything()) {
        event->ignore();
        return;
    }
    m_config.raw().setValue(QStringLiteral("Host/Geometry"), saveGeometry());
    m_config.sync();
    event->accept();
}

} // namespace gm::host
