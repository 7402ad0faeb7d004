#pragma once

#include "entry/DocumentScreen.h"
#include "entry/LineGrid.h"
#include "production/HourlyLines.h"
#include "production/HourlyStore.h"
#include "services/LookupItem.h"

class QDateTimeEdit;
class QLineEdit;

namespace gm {

// The hourly log: at a given time, these lines of bagged output, under a serial of their own.
// No stock, no cost, no link to the day's production. A saved record can be opened through its
// search and saved again, which replaces its lines; it is never removed here.
class FrmHourlyProduction : public DocumentScreen {
    Q_OBJECT
public:
    explicit FrmHourlyProduction(const Context& ctx, QWidget* parent = nullptr);
    ~FrmHourlyProduction() override;

    void LoadHourlyCombos();
    LineGrid* grid() const { return m_grdProduction; }

protected:
    void modeEntered(int mode) override;
    void afterClearWalk() override;
    void clearDocument() override;
    void saveDocument() override;
    // The Remove button comes on for an opened record and does nothing: no record is removed
    // from this screen.
    void removeDocument() override {}
    qint64 nextDocumentId() override;
    bool loadDocument(qint64 serialNo) override;

private:
    void buildUi();
    void recompute(int row, int column);
    void refreshFooter();
    HourlyLists lists() const;

    HourlyStore m_store;
    QLineEdit* m_txtProcessId = nullptr;
    QDateTimeEdit* m_dtpProcessTime = nullptr;
    LineGrid* m_grdProduction = nullptr;
    LookupList m_commodities;
    LookupList m_bagTypes;
    LookupList m_bagClasses;
};

} // namespace gm
