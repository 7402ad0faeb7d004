#include "UserDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace gm::host {

UserDialog::UserDialog(qint16 lastUser, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("UserDialog"));
    setWindowTitle(QStringLiteral("Log on"));
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(QStringLiteral("Enter your user number. It is written with the "
                                            "payments you record."),
                             this);
    intro->setWordWrap(true);
    layout->addWidget(intro);
    auto* form = new QFormLayout;
    m_user = new QSpinBox(this);
    m_user->setObjectName(QStringLiteral("TxtUserNo"));
    m_user->setRange(1, 32767); // the number is stored in a 16-bit column
    m_user->setValue(lastUser > 0 ? lastUser : 1);
    m_user->selectAll();
    form->addRow(QStringLiteral("&User number:"), m_user);
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("&Log on"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("&Quit"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    setMinimumWidth(320);
}

qint16 UserDialog::userNo() const {
    return qint16(m_user->value());
}

} // namespace gm::host
