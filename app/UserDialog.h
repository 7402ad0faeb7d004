#pragma once

#include <QDialog>

class QSpinBox;

namespace gm::host {

// Who is at the keyboard: the user's number, offered as the one who logged on last.
class UserDialog : public QDialog {
    Q_OBJECT
public:
    explicit UserDialog(qint16 lastUser, QWidget* parent = nullptr);
    qint16 userNo() const;

private:
    QSpinBox* m_user;
};

} // namespace gm::host
