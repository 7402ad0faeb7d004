#pragma once

#include "entry/DocumentScreen.h"
#include "entry/LineGrid.h"
#include "production/ProductionLines.h"
#include "production/ProductionStore.h"
#include "production/ProductionValidation.h"
#include "services/LookupItem.h"

#include <QDate>

#include <optional>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace gm {

class DateEdit;
class LookupCombo;
class NumberEdit;

inline const QString kRemoveProductionQuestion =
    QStringLiteral("Are you sure to remove this this production?");

// The mill's day: what one process took out of stock and what it gave, under the key date and
// process. A saved day comes up by itself when the process is left with a date that has one;
// it is never changed, only removed and entered again.
class FrmProduction : public DocumentScreen {
    Q_OBJECT
public:
    explicit FrmProduction(const Context& ctx, QWidget* parent = nullptr);
    ~FrmProduction() override;

    // Every list of the screen, read anew: processes, bags, and the full commodity lists that
    // a process narrows.
    void LoadProductionCombos();
    // Gain or shortage of the day from the two weight footers, into lblstatus, TxtResult and
    // TxtRatio.
    void ShowBalance();
    // The stock of a consumed commodity into GridCurrentStock, with `addBack` kilograms added.
    void RefreshCurrentStock(qint64 commodityId, double addBack);

    LineGrid* consumptionGrid() const { return m_grdConsumption; }
    LineGrid* productionGrid() const { return m_grdProduction; }

protected:
    void modeEntered(int mode) override;
    void afterClearWalk() override;
    void clearDocument() override;
    void saveDocument() override;
    void removeDocument() override;
    // Brings up the day of this process on the date shown; false when there is none.
    bool loadDocument(qint64 processId) override;
    void documentOpened() override;
    bool screenKey(QKeyEvent* event, const QString& activeName) override;

private:
    void buildUi();
    void wireHandlers();

    // CboProcesses left: the commodity lists narrowed to the process, and its day on this
    // date brought up when it was saved.
    void processLeft();
    std::optional<Objection> checkConsumption(int column, const QString& text);
    void recompute(LineGrid* grid, int row, int column);
    void refreshFooters(LineGrid* grid);
    void lineRemoved(LineGrid* grid);
    ProductionLists lists() const;
    ProductionDay dayOnScreen() const;
    void focusDate();

    ProductionStore m_store;

    DateEdit* m_dtpProductionDate = nullptr;
    LookupCombo* m_cboProcesses = nullptr;
    NumberEdit* m_txtFactoryRunningTime = nullptr;
    QCheckBox* m_chkAddBardana = nullptr;
    LineGrid* m_grdConsumption = nullptr;
    LineGrid* m_grdProduction = nullptr;
    LineGrid* m_gridCurrentStock = nullptr;
    NumberEdit* m_txtProductionExpense = nullptr;
    NumberEdit* m_txtOtherExpense = nullptr;
    QLineEdit* m_txtResult = nullptr;
    QLineEdit* m_txtRatio = nullptr;
    QLabel* m_lblStatus = nullptr;
    QLineEdit* m_txtRemarks = nullptr;

    LookupList m_consumedCommodities;
    LookupList m_producedCommodities;
    LookupList m_bagTypes;
    LookupList m_bagClasses;
    QDate m_openedDate; // the date of the day on the screen, as it was brought up
    QMetaObject::Connection m_focusWatch;
};

} // namespace gm
