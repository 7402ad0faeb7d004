#include "contracts/ContractValidation.h"

#include "services/Numeric.h"

#include <cmath>

namespace gm {

namespace {

Objection refuse(const QString& message, const QString& focus) {
    return Objection::warning(message, focus);
}

} // namespace

qint64 contractNumber(const QString& text) {
    return static_cast<qint64>(std::trunc(leadingNumber(text.trimmed())));
}

std::optional<Objection> validateContract(const ContractEntry& e, const DocumentKeys& keys) {
    if (e.sellerText.trimmed().isEmpty() && e.brokerText.trimmed().isEmpty())
        return refuse(QStringLiteral("Please select a broker and try again"),
                      QStringLiteral("CboBroker"));

    const qint64 number = contractNumber(e.contractIdText);
    // A number below 1 cannot be a key that others will look up: draw a real one.
    if (e.contractIdText.trimmed().isEmpty() || number <= 0)
        return Objection::info(QStringLiteral("Invalid purchase Id. A new Purchase has been "
                                              "automatically generated. Please save again"))
            .titled(QString(), Objection::Icon::None)
            .withNewDocumentId(keys.nextDocumentId());

    if (!e.isOpened && keys.exists(number))
        return refuse(kContractIdTaken, QString()).withNewDocumentId(keys.nextDocumentId());

    if (e.sellerText.trimmed().isEmpty() || e.sellerKey.trimmed().isEmpty())
        return refuse(QStringLiteral("Please select a seller and try again"),
                      QStringLiteral("CboSeller"));
    if (e.commodityText.trimmed().isEmpty() || e.commodityKey.trimmed().isEmpty())
        return refuse(QStringLiteral("Please select a Commodity and try again"),
                      QStringLiteral("CboCommodity"));
    if (e.contractModeText.trimmed().isEmpty())
        return refuse(QStringLiteral("Please select a valid Contract Mode and try again"),
                      QStringLiteral("CboContractMode"));
    if (e.unitKey.trimmed().isEmpty())
        return refuse(QStringLiteral("Please select a valid Unit and try again"),
                      QStringLiteral("CboUnit"));
    if (leadingNumber(e.quantityText) <= 0)
        return refuse(QStringLiteral("Quantity must be greater than 0."),
                      QStringLiteral("TxtQuantity"));
    if (leadingNumber(e.ratePerUnitText) <= 0)
        return refuse(QStringLiteral("Rate must be greater than 0"),
                      QStringLiteral("TxtRatePerUnit"));
    return std::nullopt;
}

} // namespace gm
