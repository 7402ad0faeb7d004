#include "entry/Forms.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "widgets/Messages.h"

#include <QMessageBox>

// Screens: each document screen adds its include here and its case in createScreen below.
#include "arrivals/FrmArrivalsRate.h"
#include "contracts/FrmPurchaseContract.h"
#include "dfc/FrmPurchaseFromDFC.h"
#include "invoices/FrmPurchaseInvoice.h"
#include "production/FrmHourlyProduction.h"
#include "production/FrmProduction.h"

namespace gm {

namespace {

using ScreenMaker = std::unique_ptr<QWidget> (*)(const Context&);

template <class S> std::unique_ptr<QWidget> make(const Context& ctx) {
    return std::make_unique<S>(ctx);
}

// The one place that knows which class stands behind which screen. A screen that is not
// built yet has no case and yields null.
ScreenMaker createScreen(Forms::Screen screen) {
    switch (screen) {
    case Forms::Screen::Arrivals:
        return &make<FrmArrivalsRate>;
    case Forms::Screen::PurchaseContract:
        return &make<FrmPurchaseContract>;
    case Forms::Screen::PurchaseInvoice:
        return &make<FrmPurchaseInvoice>;
    case Forms::Screen::Production:
        return &make<FrmProduction>;
    case Forms::Screen::HourlyProduction:
        return &make<FrmHourlyProduction>;
    case Forms::Screen::PurchaseFromDFC:
        return &make<FrmPurchaseFromDFC>;
    default:
        return nullptr;
    }
}

} // namespace

Forms::Forms(QObject* parent) : QObject(parent) {
    // The host may never hand its objects over; the screens then see user 1 and empty
    // settings rather than failing.
    m_context.session = std::make_shared<FixedHostSession>();
    m_context.settings = std::make_shared<FixedHostSettings>();
    m_context.searches = dialogSearches();
}

Forms::~Forms() {
    for (auto& [screen, widget] : m_screens) {
        // Screens are top-level windows without a parent; the ones still up go with us.
        std::unique_ptr<QWidget> doomed(widget.data());
    }
}

void Forms::InitializeClass(const Conn& conn) {
    m_context.conn = &conn;
}

void Forms::setHostSession(std::shared_ptr<HostSession> session) {
    if (session)
        m_context.session = std::move(session);
}

void Forms::setHostSettings(std::shared_ptr<HostSettings> settings) {
    if (settings)
        m_context.settings = std::move(settings);
}

void Forms::ArrivalForm() {
    show(Screen::Arrivals);
}
void Forms::PurchaseFromDFCForm() {
    show(Screen::PurchaseFromDFC);
}
void Forms::PurchaseContractForm() {
    show(Screen::PurchaseContract);
}
void Forms::PurchaseInvoiceForm() {
    show(Screen::PurchaseInvoice);
}
void Forms::ProductionForm() {
    show(Screen::Production);
}
void Forms::HProductionForm() {
    show(Screen::HourlyProduction);
}

bool Forms::isAvailable(Screen screen) {
    return createScreen(screen) != nullptr;
}

QWidget* Forms::instance(Screen screen) const {
    auto it = m_screens.find(screen);
    return it == m_screens.end() ? nullptr : it->second.data();
}

bool Forms::closeAll() {
    for (auto& [screen, widget] : m_screens) {
        if (widget && !widget->close())
            return false;
    }
    return true;
}

void Forms::show(Screen screen) {
    if (!m_context.conn) {
        QMessageBox::warning(
            nullptr, QStringLiteral("grainmill"),
            QStringLiteral(
                "The screens cannot open: no database connection has been given to them."));
        return;
    }
    QPointer<QWidget>& slot = m_screens[screen];
    if (!slot) {
        ScreenMaker maker = createScreen(screen);
        if (!maker) {
            QMessageBox::information(nullptr, QStringLiteral("grainmill"),
                                     QStringLiteral("This screen is not part of this build."));
            return;
        }
        std::unique_ptr<QWidget> created;
        // A screen that fails while it loads reports through the error box; the host goes on.
        if (!guarded(nullptr, [&] { created = maker(m_context); }) || !created)
            return;
        // A closed screen is destroyed, so the next call builds it anew and its load runs
        // again; the pointer empties itself.
        created->setAttribute(Qt::WA_DeleteOnClose);
        slot = created.release();
    }
    slot->show();
    slot->raise();
    slot->activateWindow();
}

} // namespace gm
