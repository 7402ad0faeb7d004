#pragma once

#include "services/Host.h"

#include <QDialog>

class QDateEdit;
class QLineEdit;

namespace gm::host {

// The mill's settings that the screens and printed documents read: the food department's
// account, the default search period and the letterhead.
class SettingsDialog : public QDialog {
    Q_OBJECT
public:
    explicit SettingsDialog(const HostSettingsValues& values, QWidget* parent = nullptr);
    HostSettingsValues values() const;
    void accept() override;

private:
    QLineEdit* m_dfcAccount;
    QDateEdit* m_periodStart;
    QDateEdit* m_periodEnd;
    QLineEdit* m_line1;
    QLineEdit* m_line2;
    QLineEdit* m_line3Main;
    QLineEdit* m_line3Extra;
    QLineEdit* m_email;
};

} // namespace gm::host
