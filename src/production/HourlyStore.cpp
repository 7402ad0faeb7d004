#include "production/HourlyStore.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"

namespace gm {

qint32 HourlyStore::nextSerialNo() const {
    return qint32(toInt(scalar(
        m_conn, QStringLiteral("SELECT COALESCE(MAX(SerialNo), 0) + 1 FROM HourlyProduction"))));
}

bool HourlyStore::exists(qint64 serialNo) const {
    return toInt(scalar(m_conn,
                        QStringLiteral("SELECT COUNT(*) FROM HourlyProduction WHERE SerialNo = ?"),
                        {serialNo})) > 0;
}

std::optional<HourlyEntry> HourlyStore::load(qint32 serialNo) const {
    Query q(m_conn, QStringLiteral("SELECT h.ProcessTime, FunGetCommodity(b.CommodityId), "
                                   "bt.BagsType, bc.BagsClass, b.NoOfBags, b.BagWeight, "
                                   "b.CommodityId, b.BagsTypeId, b.BagsClassId "
                                   "FROM HourlyProduction h "
                                   "INNER JOIN HProductionBody b ON h.SerialNo = b.SerialNo "
                                   "INNER JOIN BagsClasses bc ON b.BagsClassId = bc.BagsClassId "
                                   "INNER JOIN BagsTypes bt ON b.BagsTypeId = bt.BagsTypeId "
                                   "WHERE h.SerialNo = ? ORDER BY b.HProductionLineId"));
    q.bind(serialNo).exec();
    HourlyEntry entry;
    entry.serialNo = serialNo;
    while (q.next()) {
        entry.processTime = toDateTime(q.value(0));
        HourlyLine l;
        l.commodity = toText(q.value(1));
        l.bagsType = toText(q.value(2));
        l.bagsClass = toText(q.value(3));
        l.noOfBags = toDouble(q.value(4));
        l.bagWeight = toDouble(q.value(5));
        // The weight kept is not shown: it is worked out again as it was typed.
        l.netWeight = lineWeight(l);
        l.commodityId = toInt(q.value(6));
        l.bagsTypeId = toInt(q.value(7));
        l.bagsClassId = toInt(q.value(8));
        entry.lines.push_back(l);
    }
    if (entry.lines.empty())
        return std::nullopt;
    return entry;
}

void HourlyStore::save(const HourlyEntry& entry, bool isNew) {
    if (entry.serialNo <= 0)
        throw DbError(QStringLiteral("An hourly record is saved under a serial above 0."),
                      QStringLiteral("Hourly production"));
    if (entry.lines.empty())
        throw Objected(Objection::warning(kGridEmpty));
    // A line without one of its keys would be kept under key 0; the screen's checks stop that
    // first, this stops any other writer.
    for (int row = 0; row < int(entry.lines.size()); ++row) {
        const HourlyLine& l = entry.lines[size_t(row)];
        const qint64 keys[] = {l.commodityId, l.bagsTypeId, l.bagsClassId};
        for (int column : {int(HrCommodity), int(HrBagType), int(HrBagClass)})
            if (keys[column] == 0)
                throw Objected(
                    Objection::info(hourlyRefusal(column)).inGrid(kHourlyGrid, row, column));
    }

    Transaction tx(m_conn, Transaction::Write);
    const auto insertHead = [&] {
        Query insert(m_conn, QStringLiteral("INSERT INTO HourlyProduction (SerialNo, ProcessTime) "
                                            "VALUES (?, ?) ON CONFLICT DO NOTHING"));
        insert.bind({entry.serialNo, entry.processTime}).exec();
        // Another clerk's record under this serial is never taken over.
        if (insert.numRowsAffected() != 1)
            throw Objected(Objection::warning(kSerialTaken).withNewDocumentId(nextSerialNo()));
    };
    if (isNew) {
        insertHead();
    } else {
        tx.lockRows(QStringLiteral("HourlyProduction"), QStringLiteral("SerialNo"),
                    {entry.serialNo});
        Query update(m_conn, QStringLiteral(
                                 "UPDATE HourlyProduction SET ProcessTime = ? WHERE SerialNo = ?"));
        update.bind({entry.processTime, entry.serialNo}).exec();
        if (update.numRowsAffected() == 0)
            insertHead(); // removed meanwhile: saved afresh under its serial
    }

    execute(m_conn, QStringLiteral("DELETE FROM HProductionBody WHERE SerialNo = ?"),
            {entry.serialNo});
    for (const HourlyLine& l : entry.lines)
        Query(m_conn, QStringLiteral("INSERT INTO HProductionBody (SerialNo, CommodityId, "
                                     "BagsTypeId, BagsClassId, NoOfBags, BagWeight, TTLWeight) "
                                     "VALUES (?, ?, ?, ?, ?, ?, ?)"))
            .bind({entry.serialNo, l.commodityId, l.bagsTypeId, l.bagsClassId, double(l.noOfBags),
                   double(l.bagWeight), lineWeight(l)})
            .exec();
    tx.commit();
}

} // namespace gm
