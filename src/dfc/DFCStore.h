#pragma once

#include "dfc/DFCLines.h"
#include "dfc/DFCValidation.h"
#include "services/DocumentKeys.h"

#include <QDate>
#include <QString>

#include <optional>
#include <vector>

namespace gm {

class Conn;

// A purchase from the DFC: the payment with its challan, the goods and the bags bought, and the
// authority letters under it. Names stand as the lists show them; a loaded payment has both
// the keys and the names.
struct DFCPayment {
    qint32 paymentId = 0;
    QDate paymentDate;
    qint64 commodityId = 0;
    QString commodityName;
    QString bankAccountNo; // empty: none
    QString bankName;
    QString challanNo;
    double noOfBags = 0;
    double bagWeight = 0;
    double totalWeight = 0;
    qint64 rateUnitId = 0; // 0: none
    QString unitName;      // "Mound (40)"
    double unitWeightInKgs = 0;
    double ratePerUnit = 0;
    double value = 0; // of the goods
    qint64 bagsTypeId = 0;
    QString bagsType;
    qint64 bagsClassId = 0;
    QString bagsClass;
    double bagsQty = 0;
    double pricePerBag = 0;
    double bagsValue = 0;
    qint32 userNo = 0;
    std::vector<AuthorityLine> letters;

    double grossValue() const { return dfcGrossValue(value, bagsValue); }
};

// "The Permit No (<permit>) has arrivals against it. ..." : a letter in use keeps its number and
// its centre and stays under its payment.
QString letterInUseRefusal(const QString& permitNo, const QString& usedIn);

// Everything the DFC screen reads from and writes to the database. Refusals come as Objected,
// after the transaction has rolled back.
class DFCStore final : public DocumentKeys, public PermitRegister {
public:
    explicit DFCStore(const Conn& conn) : m_conn(conn) {}

    qint32 nextPaymentId() const;
    bool exists(qint64 paymentId) const override;
    qint64 nextDocumentId() const override { return nextPaymentId(); }
    qint64 permitHolder(const QString& permitNo) const override;

    // The payment with its letters in permit order; nothing when there is no such payment.
    // Bank, unit, bag type and class may be missing: the payment opens all the same.
    std::optional<DFCPayment> load(qint32 paymentId) const;

    // One transaction, or part of one the caller holds. The head is written unposted, its
    // letters are matched by permit number (kept ones updated in place, new ones inserted,
    // the ones taken out deleted), then it is posted. A letter that anything still refers to
    // (an arrival under its permit) cannot be taken out or moved to another centre. A new
    // payment is only ever inserted; letters' centres are given by key.
    void save(const DFCPayment& payment, bool isNew);
    // One transaction; refused when anything still refers to the payment or to its letters.
    void remove(qint32 paymentId);

private:
    const Conn& m_conn;
};

} // namespace gm
