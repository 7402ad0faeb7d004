#include "DatabaseDialog.h"

#include "datastore/Conn.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

namespace gm::host {

DatabaseDialog::DatabaseDialog(Purpose purpose, const QString& currentLocation,
                               const QString& problem, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("DatabaseDialog"));
    setWindowTitle(QStringLiteral("Open database"));
    auto* layout = new QVBoxLayout(this);

    auto* problemRow = new QHBoxLayout;
    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(32, 32));
    icon->setAlignment(Qt::AlignTop);
    m_problem = new QLabel(problem, this);
    m_problem->setObjectName(QStringLiteral("LblProblem"));
    m_problem->setWordWrap(true);
    m_problem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    problemRow->addWidget(icon);
    problemRow->addWidget(m_problem, 1);
    icon->setVisible(!problem.isEmpty());
    m_problem->setVisible(!problem.isEmpty());
    layout->addLayout(problemRow);

    m_useSqlite = new QRadioButton(QStringLiteral("A database &file on this computer"), this);
    m_useSqlite->setObjectName(QStringLiteral("OptSqlite"));
    m_usePostgres = new QRadioButton(QStringLiteral("A PostgreSQL &server"), this);
    m_usePostgres->setObjectName(QStringLiteral("OptPostgres"));
    layout->addWidget(m_useSqlite);
    layout->addWidget(m_usePostgres);

    m_pages = new QStackedWidget(this);
    auto* filePage = new QWidget(m_pages);
    auto* fileRow = new QHBoxLayout(filePage);
    fileRow->setContentsMargins(20, 0, 0, 0);
    m_file = new QLineEdit(filePage);
    m_file->setObjectName(QStringLiteral("TxtFile"));
    m_file->setMinimumWidth(360);
    auto* browseButton = new QPushButton(QStringLiteral("&Browse..."), filePage);
    browseButton->setObjectName(QStringLiteral("BtnBrowse"));
    browseButton->setAutoDefault(false);
    fileRow->addWidget(m_file, 1);
    fileRow->addWidget(browseButton);
    m_pages->addWidget(filePage);

    auto* serverPage = new QWidget(m_pages);
    auto* serverForm = new QFormLayout(serverPage);
    serverForm->setContentsMargins(20, 0, 0, 0);
    m_host = new QLineEdit(QStringLiteral("localhost"), serverPage);
    m_host->setObjectName(QStringLiteral("TxtHost"));
    m_port = new QSpinBox(serverPage);
    m_port->setObjectName(QStringLiteral("TxtPort"));
    m_port->setRange(1, 65535);
    m_port->setValue(5432);
    m_user = new QLineEdit(serverPage);
    m_user->setObjectName(QStringLiteral("TxtUser"));
    m_password = new QLineEdit(serverPage);
    m_password->setObjectName(QStringLiteral("TxtPassword"));
    m_password->setEchoMode(QLineEdit::Password);
    m_database = new QLineEdit(QStringLiteral("mill"), serverPage);
    m_database->setObjectName(QStringLiteral("TxtDatabase"));
    serverForm->addRow(QStringLiteral("&Host:"), m_host);
    serverForm->addRow(QStringLiteral("P&ort:"), m_port);
    serverForm->addRow(QStringLiteral("&User:"), m_user);
    serverForm->addRow(QStringLiteral("Pass&word:"), m_password);
    serverForm->addRow(QStringLiteral("&Database:"), m_database);
    m_pages->addWidget(serverPage);
    layout->addWidget(m_pages);

    auto* buttons = new QDialogButtonBox(this);
    auto* open = buttons->addButton(QStringLiteral("&Open"), QDialogButtonBox::AcceptRole);
    open->setObjectName(QStringLiteral("BtnOpen"));
    open->setDefault(true);
    auto* leave = buttons->addButton(purpose == Purpose::Start ? QStringLiteral("&Quit")
                                                               : QStringLiteral("Cancel"),
                                     QDialogButtonBox::RejectRole);
    leave->setObjectName(QStringLiteral("BtnQuit"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    connect(m_useSqlite, &QRadioButton::toggled, this,
            [this](bool on) { m_pages->setCurrentIndex(on ? 0 : 1); });
    connect(browseButton, &QPushButton::clicked, this, &DatabaseDialog::browse);

    // Start from where the clerk was, without ever showing a password back.
    const auto loc = DbLocation::parse(currentLocation);
    if (loc && loc->engine == Engine::PostgreSQL) {
        m_host->setText(loc->host);
        m_port->setValue(loc->port);
        m_user->setText(loc->user);
        m_database->setText(loc->database);
        m_usePostgres->setChecked(true);
        m_pages->setCurrentIndex(1);
    } else {
        m_file->setText(loc ? QDir::toNativeSeparators(loc->path)
                            : QDir::toNativeSeparators(Conn::defaultLocation()));
        m_useSqlite->setChecked(true);
        m_pages->setCurrentIndex(0);
    }
}

void DatabaseDialog::browse() {
    const QString chosen = QFileDialog::getSaveFileName(
        this, QStringLiteral("Database file"), m_file->text(),
        QStringLiteral("Mill databases (*.sqlite *.db);;All files (*)"), nullptr,
        QFileDialog::DontConfirmOverwrite);
    if (!chosen.isEmpty())
        m_file->setText(QDir::toNativeSeparators(chosen));
}

QString DatabaseDialog::location() const {
    if (m_useSqlite->isChecked())
        return QDir::fromNativeSeparators(m_file->text().trimmed());
    QUrl url;
    url.setScheme(QStringLiteral("postgresql"));
    url.setHost(m_host->text().trimmed());
    url.setPort(m_port->value());
    url.setUserName(m_user->text().trimmed());
    if (!m_password->text().isEmpty())
        url.setPassword(m_password->text());
    url.setPath(QLatin1Char('/') + m_database->text().trimmed());
    return url.toString(QUrl::FullyEncoded);
}

void DatabaseDialog::accept() {
    QString why;
    if (m_usePostgres->isChecked() &&
        (m_host->text().trimmed().isEmpty() || m_database->text().trimmed().isEmpty())) {
        QMessageBox::warning(this, windowTitle(),
                             QStringLiteral("Please enter the server and the database name."));
        (m_host->text().trimmed().isEmpty() ? m_host : m_database)->setFocus();
        return;
    }
    if (!DbLocation::parse(location(), &why)) {
        QMessageBox::warning(this, windowTitle(), why);
        return;
    }
    QDialog::accept();
}

} // namespace gm::host
