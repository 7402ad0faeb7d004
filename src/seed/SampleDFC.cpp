#include "seed/SampleDFC.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "dfc/DFCStore.h"

#include <QDate>

namespace gm {

namespace {

constexpr int kWheatGovernment = 2;
constexpr int kMound = 2;
constexpr int kPP100 = 1;
constexpr int kJute100 = 2;
constexpr int kNew = 1;
constexpr double kMoundKgs = 40;

AuthorityLine letter(const char* permit, const QDate& date, qint64 centre, double bags,
                     double bagWeight) {
    AuthorityLine l;
    l.permitNo = QString::fromUtf8(permit);
    l.date = date;
    l.centerId = centre;
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    l.totalWeight = letterTotalWeight(bags, bagWeight);
    return l;
}

// A payment whose figures follow from its bags, weights and rates as the screen works them out.
DFCPayment payment(qint32 id, const QDate& date, const char* bank, const char* challan, double bags,
                   double bagWeight, double ratePerUnit, qint64 bagsType, double bagsQty,
                   double pricePerBag) {
    DFCPayment p;
    p.paymentId = id;
    p.paymentDate = date;
    p.commodityId = kWheatGovernment;
    p.bankAccountNo = QString::fromLatin1(bank);
    p.challanNo = QString::fromUtf8(challan);
    p.noOfBags = bags;
    p.bagWeight = bagWeight;
    p.totalWeight = dfcTotalWeight(bags, bagWeight).value_or(0);
    p.rateUnitId = kMound;
    p.ratePerUnit = ratePerUnit;
    p.value = dfcValue(p.totalWeight, kMoundKgs, ratePerUnit).value_or(0);
    p.bagsTypeId = bagsType;
    p.bagsClassId = kNew;
    p.bagsQty = bagsQty;
    p.pricePerBag = pricePerBag;
    p.bagsValue = dfcBagsValue(pricePerBag, bagsQty);
    p.userNo = 1;
    return p;
}

} // namespace

void loadSampleDFCPayments(const Conn& conn) {
    DFCStore store(conn);
    const QDate today = QDate::currentDate();

    const QDate first = today.addDays(-15);
    DFCPayment okara = payment(store.nextPaymentId(), first, "112001", "CH-2231", 1000, 100, 3900,
                               kPP100, 1000, 85);
    okara.letters = {letter("OKR-2231/1", first, 1, 600, 100),
                     letter("OKR-2231/2", first, 2, 400, 100)};
    store.save(okara, true);

    const QDate second = today.addDays(-5);
    DFCPayment depalpur = payment(store.nextPaymentId(), second, "112002", "CH-2307", 500, 100,
                                  3950, kJute100, 200, 120);
    depalpur.letters = {letter("DPR-2307/1", second, 3, 300, 100),
                        letter("SWL-2307/2", second, 4, 200, 100)};
    store.save(depalpur, true);
}

} // namespace gm
