#pragma once

#include "services/Host.h"

#include <QSettings>
#include <QString>

#include <memory>

namespace gm::host {

// Everything the host keeps between runs: the last database, the last user and the settings
// the component reads. One QSettings file per user; tests give a file of their own.
class HostConfig {
public:
    HostConfig();                                // the user's own settings
    explicit HostConfig(const QString& iniFile); // a given file, for tests
    ~HostConfig();

    HostSettingsValues settings() const;
    void setSettings(const HostSettingsValues& values);
    // What a mill starts with before anyone opens the settings dialog.
    static HostSettingsValues defaults(const QDate& today = QDate::currentDate());

    QString lastLocation() const;
    void setLastLocation(const QString& location);
    // 0 when no user ever logged on.
    qint16 lastUser() const;
    void setLastUser(qint16 user);

    void sync();
    QSettings& raw() { return *m_settings; }

private:
    std::unique_ptr<QSettings> m_settings;
};

// The component reads the settings through this on every use, so a change in the settings
// dialog reaches an open screen's next print without a restart.
class ConfigHostSettings final : public HostSettings {
public:
    explicit ConfigHostSettings(const HostConfig& config) : m_config(config) {}
    HostSettingsValues values() const override { return m_config.settings(); }

private:
    const HostConfig& m_config;
};

// The mill's season runs from July to June: the period that holds `today`.
std::pair<QDate, QDate> seasonAround(const QDate& today);

} // namespace gm::host
