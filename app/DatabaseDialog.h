#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;
class QStackedWidget;

namespace gm::host {

// Choosing the mill's database: a SQLite file on this machine or a PostgreSQL server. Shown
// from the File menu, and at start when the database cannot be opened, with the reason.
class DatabaseDialog : public QDialog {
    Q_OBJECT
public:
    enum class Purpose { Start, Change };
    DatabaseDialog(Purpose purpose, const QString& currentLocation, const QString& problem,
                   QWidget* parent = nullptr);

    // The location string for Conn::open (a PostgreSQL password is percent-encoded in it).
    QString location() const;
    void accept() override;

private:
    void browse();

    QLabel* m_problem;
    QRadioButton* m_useSqlite;
    QRadioButton* m_usePostgres;
    QStackedWidget* m_pages;
    QLineEdit* m_file;
    QLineEdit* m_host;
    QSpinBox* m_port;
    QLineEdit* m_user;
    QLineEdit* m_password;
    QLineEdit* m_database;
};

} // namespace gm::host
