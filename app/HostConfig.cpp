#include "HostConfig.h"

namespace gm::host {

namespace {

const QString kGroup = QStringLiteral("Component/");

QString key(const char* name) {
    return kGroup + QLatin1String(name);
}

// Stored as ISO text so the file reads the same on every locale.
QDate readDate(const QSettings& s, const QString& k, const QDate& fallback) {
    const QDate d = QDate::fromString(s.value(k).toString(), Qt::ISODate);
    return d.isValid() ? d : fallback;
}

} // namespace

std::pair<QDate, QDate> seasonAround(const QDate& today) {
    const int startYear = today.month() >= 7 ? today.year() : today.year() - 1;
    return {QDate(startYear, 7, 1), QDate(startYear + 1, 6, 30)};
}

HostConfig::HostConfig()
    : m_settings(std::make_unique<QSettings>(QSettings::UserScope, QStringLiteral("grainmill"),
                                             QStringLiteral("grainmill"))) {}

HostConfig::HostConfig(const QString& iniFile)
    : m_settings(std::make_unique<QSettings>(iniFile, QSettings::IniFormat)) {}

HostConfig::~HostConfig() = default;

HostSettingsValues HostConfig::defaults(const QDate& today) {
    HostSettingsValues v;
    // The sample mill keeps the food department's account under this number.
    v.DFCAccountNo = QStringLiteral("6000001");
    const auto [start, end] = seasonAround(today);
    v.PeriodStart = start;
    v.PeriodEnd = end;
    v.HeaderLine1 = QStringLiteral("GRAIN MILL (PVT) LTD");
    v.HeaderLine2 = QStringLiteral("Flour Mills & Purchase Office");
    v.HeaderLine3Main = QStringLiteral("Industrial Estate, Mill Road");
    v.HeaderLine3Extra = QString();
    v.HeaderEmail = QStringLiteral("office@grainmill.example");
    return v;
}

HostSettingsValues HostConfig::settings() const {
    const HostSettingsValues d = defaults();
    const QSettings& s = *m_settings;
    HostSettingsValues v;
    v.DFCAccountNo = s.value(key("DFCAccountNo"), d.DFCAccountNo).toString();
    v.PeriodStart = readDate(s, key("PeriodStart"), d.PeriodStart);
    v.PeriodEnd = readDate(s, key("PeriodEnd"), d.PeriodEnd);
    v.HeaderLine1 = s.value(key("HeaderLine1"), d.HeaderLine1).toString();
    v.HeaderLine2 = s.value(key("HeaderLine2"), d.HeaderLine2).toString();
    v.HeaderLine3Main = s.value(key("HeaderLine3Main"), d.HeaderLine3Main).toString();
    v.HeaderLine3Extra = s.value(key("HeaderLine3Extra"), d.HeaderLine3Extra).toString();
    v.HeaderEmail = s.value(key("HeaderEmail"), d.HeaderEmail).toString();
    return v;
}

void HostConfig::setSettings(const HostSettingsValues& v) {
    QSettings& s = *m_settings;
    s.setValue(key("DFCAccountNo"), v.DFCAccountNo);
    s.setValue(key("PeriodStart"), v.PeriodStart.toString(Qt::ISODate));
    s.setValue(key("PeriodEnd"), v.PeriodEnd.toString(Qt::ISODate));
    s.setValue(key("HeaderLine1"), v.HeaderLine1);
    s.setValue(key("HeaderLine2"), v.HeaderLine2);
    s.setValue(key("HeaderLine3Main"), v.HeaderLine3Main);
    s.setValue(key("HeaderLine3Extra"), v.HeaderLine3Extra);
    s.setValue(key("HeaderEmail"), v.HeaderEmail);
    s.sync();
}

QString HostConfig::lastLocation() const {
    return m_settings->value(QStringLiteral("Host/LastLocation")).toString();
}

void HostConfig::setLastLocation(const QString& location) {
    m_settings->setValue(QStringLiteral("Host/LastLocation"), location);
    m_settings->sync();
}

qint16 HostConfig::lastUser() const {
    const int u = m_settings->value(QStringLiteral("Host/LastUser"), 0).toInt();
    return u > 0 && u <= 32767 ? qint16(u) : qint16(0);
}

void HostConfig::setLastUser(qint16 user) {
    m_settings->setValue(QStringLiteral("Host/LastUser"), int(user));
    m_settings->sync();
}

void HostConfig::sync() {
    m_settings->sync();
}

} // namespace gm::host
