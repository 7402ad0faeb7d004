#include "dfc/DFCValidation.h"

#include "services/Numeric.h"

#include <QSet>

namespace gm {

namespace {

const QString kGrid = QStringLiteral("GridBagsSale");

} // namespace

QString permitTakenRefusal(const QString& permitNo) {
    return QStringLiteral("The Permit No (") + permitNo +
           QStringLiteral(") already exists. Please change it and save your record again");
}

std::optional<Objection> ValidateDFCPayment(const DFCSaveInput& in, const DocumentKeys& keys,
                                            const PermitRegister& permits) {
    const QString challan = in.challanNo.trimmed();
    if (challan.isEmpty() || challan.size() > kMaxChallanLength)
        return Objection::warning(kChallanRule, QStringLiteral("TxtChallanNo"));
    if (in.totalWeight <= 0)
        return Objection::warning(kWeightRule, QStringLiteral("TxtNoOfBags"));
    if (in.value <= 0)
        return Objection::warning(kValueRule, QStringLiteral("CboUnit"));
    if (in.grossValue <= 0)
        return Objection::warning(kGrossRule, QStringLiteral("TxtBagsQty"));
    if (in.commodityKey.isEmpty())
        return Objection::warning(kCommodityRule, QStringLiteral("CboCommodities"));

    const qint64 id = qint64(leadingNumber(in.paymentIdText));
    if (id <= 0)
        return Objection::info(kInvalidPaymentId)
            .titled(QString(), Objection::Icon::None)
            .withNewDocumentId(keys.nextDocumentId());
    if (in.lines.empty())
        return Objection::info(kNoLetters, kGrid)
            .titled(QStringLiteral("Alert!"), Objection::Icon::Information);

    // An opened payment keeps its own permits; any other holder is another payment.
    const qint64 own = in.isOpened ? id : 0;
    QSet<QString> seen;
    for (int i = 0; i < int(in.lines.size()); ++i) {
        const AuthorityLine& l = in.lines[size_t(i)];
        const QString permit = l.permitNo.trimmed();
        if (permit.isEmpty())
            return Objection::warning(authorityRefusal(ColPermitNo)).inGrid(kGrid, i, ColPermitNo);
        const qint64 holder = permits.permitHolder(permit);
        if (seen.contains(permit) || (holder != 0 && holder != own))
            return Objection::warning(permitTakenRefusal(permit)).inGrid(kGrid, i, ColPermitNo);
        seen.insert(permit);
        if (l.centerId == 0)
            return Objection::warning(kCenterRule).inGrid(kGrid, i, ColCenter);
    }

    // Two clerks can be shown the same next number; the second to save is given a new one.
    if (!in.isOpened && keys.exists(id))
        return Objection::warning(kPaymentIdTaken).withNewDocumentId(keys.nextDocumentId());
    return std::nullopt;
}

} // namespace gm
