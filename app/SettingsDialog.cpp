#include "SettingsDialog.h"

#include "services/Numeric.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QVBoxLayout>

namespace gm::host {

namespace {

QLineEdit* line(QWidget* parent, const char* name, const QString& text) {
    auto* edit = new QLineEdit(text, parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setMinimumWidth(320);
    return edit;
}

QDateEdit* date(QWidget* parent, const char* name, const QDate& value) {
    auto* edit = new QDateEdit(value, parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setCalendarPopup(true);
    edit->setDisplayFormat(QString::fromLatin1(kDateFormat));
    return edit;
}

} // namespace

SettingsDialog::SettingsDialog(const HostSettingsValues& v, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("SettingsDialog"));
    setWindowTitle(QStringLiteral("Settings"));
    auto* layout = new QVBoxLayout(this);

    auto* purchase = new QGroupBox(QStringLiteral("Purchase"), this);
    auto* pf = new QFormLayout(purchase);
    m_dfcAccount = line(purchase, "TxtDFCAccountNo", v.DFCAccountNo);
    m_periodStart = date(purchase, "DtpPeriodStart", v.PeriodStart);
    m_periodEnd = date(purchase, "DtpPeriodEnd", v.PeriodEnd);
    pf->addRow(QStringLiteral("&Food department account:"), m_dfcAccount);
    pf->addRow(QStringLiteral("Period &from:"), m_periodStart);
    pf->addRow(QStringLiteral("Period &to:"), m_periodEnd);
    layout->addWidget(purchase);

    auto* head = new QGroupBox(QStringLiteral("Letterhead of printed documents"), this);
    auto* hf = new QFormLayout(head);
    m_line1 = line(head, "TxtHeaderLine1", v.HeaderLine1);
    m_line2 = line(head, "TxtHeaderLine2", v.HeaderLine2);
    m_line3Main = line(head, "TxtHeaderLine3Main", v.HeaderLine3Main);
    m_line3Extra = line(head, "TxtHeaderLine3Extra", v.HeaderLine3Extra);
    m_line3Extra->setPlaceholderText(QStringLiteral("optional"));
    m_email = line(head, "TxtHeaderEmail", v.HeaderEmail);
    hf->addRow(QStringLiteral("Line &1:"), m_line1);
    hf->addRow(QStringLiteral("Line &2:"), m_line2);
    hf->addRow(QStringLiteral("Line &3:"), m_line3Main);
    hf->addRow(QStringLiteral("Line 3, &extra:"), m_line3Extra);
    hf->addRow(QStringLiteral("E-&mail:"), m_email);
    layout->addWidget(head);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

HostSettingsValues SettingsDialog::values() const {
    HostSettingsValues v;
    v.DFCAccountNo = m_dfcAccount->text().trimmed();
    v.PeriodStart = m_periodStart->date();
    v.PeriodEnd = m_periodEnd->date();
    v.HeaderLine1 = m_line1->text().trimmed();
    v.HeaderLine2 = m_line2->text().trimmed();
    v.HeaderLine3Main = m_line3Main->text().trimmed();
    v.HeaderLine3Extra = m_line3Extra->text().trimmed();
    v.HeaderEmail = m_email->text().trimmed();
    return v;
}

void SettingsDialog::accept() {
    if (m_dfcAccount->text().trimmed().isEmpty()) {
        QMessageBox::warning(this, windowTitle(),
                             QStringLiteral("Please enter the account of the food department."));
        m_dfcAccount->setFocus();
        return;
    }
    if (m_periodEnd->date() < m_periodStart->date()) {
        QMessageBox::warning(this, windowTitle(),
                             QStringLiteral("The period cannot end before it begins."));
        m_periodEnd->setFocus();
        return;
    }
    QDialog::accept();
}

} // namespace gm::host
