#include "search/Search.h"

#include <QComboBox>
#include <QDateEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>

namespace gm {

struct SearchDefinition {
    QString objectName;
    QString caption;
};

namespace {
const SearchDefinition kArrivals{QStringLiteral("SchArrivals"), QStringLiteral("Search Arrivals")};
const SearchDefinition kPurchase{QStringLiteral("SchPurchase"), QStringLiteral("Search Purchase")};
const SearchDefinition kContract{QStringLiteral("SchPurchaseContract"),
                                 QStringLiteral("Search Purchase Contract")};
const SearchDefinition kDfc{QStringLiteral("SchDFCPurchase"),
                            QStringLiteral("Search DFC Purchase")};
const SearchDefinition kHourly{QStringLiteral("SchHProduction"),
                               QStringLiteral("Search Hourly Production")};
} // namespace

DocumentSearch::DocumentSearch(const Context& ctx, const SearchDefinition& def, QWidget* owner)
    : QDialog(owner), m_ctx(ctx), m_def(def) {
    setObjectName(def.objectName);
    setWindowTitle(def.caption);
}
DocumentSearch::~DocumentSearch() = default;
void DocumentSearch::RunSearch() {}
void DocumentSearch::Select() {}
int DocumentSearch::rowCount() const {
    return 0;
}
bool DocumentSearch::eventFilter(QObject* watched, QEvent* event) {
    return QDialog::eventFilter(watched, event);
}
void DocumentSearch::keyPressEvent(QKeyEvent* event) {
    QDialog::keyPressEvent(event);
}
void DocumentSearch::rowChosen(int) {}
QVariant DocumentSearch::keyOfRow(int, int) const {
    return {};
}
void DocumentSearch::buildUi() {}

SchArrivals::SchArrivals(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kArrivals, owner) {}
SchPurchase::SchPurchase(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kPurchase, owner) {}
void SchPurchase::rowChosen(int) {}
SchPurchaseContract::SchPurchaseContract(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kContract, owner) {}
SchDFCPurchase::SchDFCPurchase(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kDfc, owner) {}
SchHProduction::SchHProduction(const Context& ctx, QWidget* owner)
    : DocumentSearch(ctx, kHourly, owner) {}
void SchHProduction::FindCommodity(const QString&) {}

SchParty::SchParty(const Context& ctx, QWidget* owner) : QDialog(owner), m_ctx(ctx) {
    setObjectName(QStringLiteral("SchParty"));
    setWindowTitle(QStringLiteral("Search Parties"));
}
void SchParty::RunSearch() {}
void SchParty::FindPartyId(const QString&) {}
void SchParty::Select() {}
int SchParty::rowCount() const {
    return 0;
}
bool SchParty::eventFilter(QObject* watched, QEvent* event) {
    return QDialog::eventFilter(watched, event);
}
void SchParty::keyPressEvent(QKeyEvent* event) {
    QDialog::keyPressEvent(event);
}
void SchParty::buildUi() {}

PartyChoice showPartySearch(QWidget*, const Context&) {
    return {};
}
int showContractSearch(QWidget*, const Context&) {
    return 0;
}
int showPurchaseSearch(QWidget*, const Context&, int* selectedSellerId) {
    if (selectedSellerId)
        *selectedSellerId = 0;
    return 0;
}
int showArrivalSearch(QWidget*, const Context&) {
    return 0;
}
int showDFCPurchaseSearch(QWidget*, const Context&) {
    return 0;
}
int showHProductionSearch(QWidget*, const Context&) {
    return 0;
}

} // namespace gm
