#pragma once

#include <QDate>
#include <QString>

#include <memory>

namespace gm {

// What the host tells the component about the logged-on user.
class HostSession {
public:
    virtual ~HostSession() = default;
    virtual qint16 userNo() const = 0;
};

// The settings the component reads from its host. The host stores them; tests hand them in
// through FixedHostSettings.
struct HostSettingsValues {
    QString DFCAccountNo;
    QDate PeriodStart;
    QDate PeriodEnd;
    QString HeaderLine1;
    QString HeaderLine2;
    QString HeaderLine3Main;
    QString HeaderLine3Extra; // may be empty: then no comma follows the main line
    QString HeaderEmail;

    // Letterhead line 3: the main text, and ",extra" only when there is an extra text.
    QString headerLine3() const {
        return HeaderLine3Extra.isEmpty() ? HeaderLine3Main
                                          : HeaderLine3Main + QLatin1Char(',') + HeaderLine3Extra;
    }
    // Letterhead line 4 of the reports that carry it.
    QString emailLine() const { return QStringLiteral("Email: ") + HeaderEmail; }
};

class HostSettings {
public:
    virtual ~HostSettings() = default;
    virtual HostSettingsValues values() const = 0;
};

// Values given in code, for tests and for hosts that keep settings elsewhere.
class FixedHostSession final : public HostSession {
public:
    explicit FixedHostSession(qint16 user = 1) : m_user(user) {}
    qint16 userNo() const override { return m_user; }
    void setUserNo(qint16 user) { m_user = user; }

private:
    qint16 m_user;
};

class FixedHostSettings final : public HostSettings {
public:
    FixedHostSettings() = default;
    explicit FixedHostSettings(HostSettingsValues v) : m_values(std::move(v)) {}
    HostSettingsValues values() const override { return m_values; }
    void setValues(HostSettingsValues v) { m_values = std::move(v); }

private:
    HostSettingsValues m_values;
};

} // namespace gm
