#pragma once

#include "services/Context.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <map>
#include <memory>

namespace gm {

// The component's public face. The host creates one, hands it the open connection, and asks
// it for screens. Each document screen has one instance, created on first use and shown
// non-modally; asking again raises the same window.
class Forms : public QObject {
    Q_OBJECT
public:
    enum class Screen {
        Arrivals,
        PurchaseFromDFC,
        PurchaseContract,
        PurchaseInvoice,
        Production,
        HourlyProduction
    };

    explicit Forms(QObject* parent = nullptr);
    ~Forms() override;

    void InitializeClass(const Conn& conn);
    void setHostSession(std::shared_ptr<HostSession> session);
    void setHostSettings(std::shared_ptr<HostSettings> settings);
    const Context& context() const { return m_context; }

    void ArrivalForm();
    void PurchaseFromDFCForm();
    void PurchaseContractForm();
    void PurchaseInvoiceForm();
    void ProductionForm();
    void HProductionForm();

    // Whether this build has the screen at all; a host shows menu entries only for these.
    static bool isAvailable(Screen screen);
    // The screen's instance, or null when it was never shown or is closed (for tests).
    QWidget* instance(Screen screen) const;
    // Closes every open screen, asking as each screen asks; false when one refused.
    bool closeAll();

private:
    void show(Screen screen);

    Context m_context;
    std::map<Screen, QPointer<QWidget>> m_screens;
};

} // namespace gm
