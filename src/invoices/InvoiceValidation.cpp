#include "invoices/InvoiceValidation.h"

#include <QSet>

namespace gm {

namespace {

const QString kGrid = QStringLiteral("Grid");
const QString kEntryError = QStringLiteral("Entry Error");

QString vehicleOf(const InvoiceLine& l) {
    return QStringLiteral("%1 of arrival %2").arg(l.vehicleNo).arg(l.arrivalId);
}

} // namespace

std::optional<Objection> ValidatePurchase(const PurchaseSaveInput& input,
                                          const DocumentKeys& keys) {
    if (input.sellerKey.isEmpty())
        return Objection::warning(QStringLiteral("Please select a seller and try again"),
                                  QStringLiteral("CboSeller"));

    const QString idText = input.purchaseIdText.trimmed();
    const qint64 id = qint64(leadingNumber(idText));
    if (idText.isEmpty() || id == 0)
        return Objection::info(QStringLiteral("Invalid purchase Id. A new Purchase has been "
                                              "automatically generated. Please save again"))
            .titled(QString(), Objection::Icon::None)
            .withNewDocumentId(keys.nextDocumentId());
    if (!input.isOpened && keys.exists(id))
        return Objection::warning(kPurchaseIdTaken).withNewDocumentId(keys.nextDocumentId());
    return checkPricedLines(input.lines);
}

std::optional<Objection> checkPricedLines(const std::vector<InvoiceLine>& lines) {
    // An invoice of unpriced lines would be a head that costs nothing and invoices nothing.
    int firstPriced = -1;
    QSet<QString> seen;
    for (int i = 0; i < int(lines.size()); ++i) {
        const InvoiceLine& l = lines[size_t(i)];
        if (!(l.rate > 0))
            continue;
        if (firstPriced < 0)
            firstPriced = i;
        // Its cost per kilogram is its value over its weight.
        if (!(l.netWeight > 0))
            return Objection::warning(QStringLiteral("Vehicle %1 has no net weight, so it cannot "
                                                     "be priced. Please set its rate to 0.")
                                          .arg(vehicleOf(l)))
                .titled(kEntryError, Objection::Icon::Warning)
                .inGrid(kGrid, i, InvNetWeight);
        const QString key = QString::number(l.arrivalId) + QLatin1Char('\n') + l.vehicleNo;
        if (seen.contains(key))
            return Objection::warning(
                       QStringLiteral("Vehicle %1 stands twice in this invoice.").arg(vehicleOf(l)))
                .titled(kEntryError, Objection::Icon::Warning)
                .inGrid(kGrid, i, InvVehicleNo);
        seen.insert(key);
    }
    if (firstPriced < 0)
        return Objection::info(QStringLiteral("Please specify Rate."))
            .titled(kEntryError, Objection::Icon::None)
            .inGrid(kGrid, 0, InvRate);
    return std::nullopt;
}

Objection vehicleTaken(const QString& vehicleNo, qint64 arrivalId, qint64 purchaseId) {
    return Objection::warning(
        QStringLiteral("Vehicle %1 of arrival %2 is already invoiced in purchase %3. Please load "
                       "the vehicles again.")
            .arg(vehicleNo)
            .arg(arrivalId)
            .arg(purchaseId),
        kGrid);
}

QString purchaseInUse(const QString& table) {
    return QStringLiteral("Cannot remove this purchase because it is used in (") + table +
           QStringLiteral(") table");
}

Objection noArrivalForSeller(const QString& sellerKey) {
    return Objection::info(QStringLiteral("No arrival for selected seller. ") + sellerKey,
                           QStringLiteral("CboSeller"));
}

Objection noContractFound() {
    return Objection::info(QStringLiteral("No Contract Found."))
        .titled(kEntryError, Objection::Icon::None);
}

} // namespace gm
