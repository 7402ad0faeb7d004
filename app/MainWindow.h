#pragma once

#include "entry/Forms.h"
#include "HostConfig.h"

#include <QMainWindow>
#include <QPointer>

#include <map>
#include <memory>

class QAction;
class QLabel;
class QMenu;
class QTabWidget;

namespace gm {
class Conn;
}

namespace gm::host {

class HomePage;
class MasterDataEditor;

// The user whose number the screens write with a payment.
class UserSession final : public HostSession {
public:
    explicit UserSession(qint16 user) : m_user(user) {}
    qint16 userNo() const override { return m_user; }

private:
    qint16 m_user;
};

// The mill's main window: the menus that open the purchase and production screens, the
// master lists as tabs, and a status bar telling which database and which user.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(HostConfig& config, std::unique_ptr<Conn> conn, qint16 user,
               QWidget* parent = nullptr);
    ~MainWindow() override;

    const Conn& conn() const { return *m_conn; }
    Forms& forms() const { return *m_forms; }
    // Opens (or brings forward) the master list with this id.
    MasterDataEditor* openMasterList(const QString& id);
    // Switches to another database; the open screens and lists are closed first.
    bool switchDatabase(std::unique_ptr<Conn> conn);

    // The File menu's entries, also reachable by tests.
    void chooseDatabase();
    void editSettings();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildStatusBar();
    void attachForms();
    void updateStatus();
    bool closeEverything();
    void about();

    HostConfig& m_config;
    std::unique_ptr<Conn> m_conn;
    std::shared_ptr<UserSession> m_session;
    std::shared_ptr<ConfigHostSettings> m_settings;
    std::unique_ptr<Forms> m_forms;
    QTabWidget* m_tabs = nullptr;
    HomePage* m_home = nullptr;
    QLabel* m_dbLabel = nullptr;
    QLabel* m_userLabel = nullptr;
    std::map<QString, QPointer<MasterDataEditor>> m_lists;
};

} // namespace gm::host
