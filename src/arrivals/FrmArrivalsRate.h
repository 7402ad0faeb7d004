#pragma once

#include "arrivals/ArrivalLines.h"
#include "arrivals/ArrivalStore.h"
#include "entry/DocumentScreen.h"
#include "entry/LineGrid.h"
#include "services/LookupItem.h"

#include <QHash>

#include <optional>

class QGroupBox;
class QLineEdit;

namespace gm {

class DateEdit;
class LookupCombo;

// The gate of the mill: vehicles received against a contract, from a free party, or from a
// PR centre under a DFC permit, with their bags, weights and deductions.
class FrmArrivalsRate : public DocumentScreen {
    Q_OBJECT
public:
    explicit FrmArrivalsRate(const Context& ctx, QWidget* parent = nullptr);
    ~FrmArrivalsRate() override;

    void LoadArrivalLookups();
    void RefreshRemaining();
    void RefreshArrivalFooters();

    LineGridModel* lines() const;
    LineGrid* grid() const { return m_grid; }
    // The line the permit's rates and the commodity's bag go into: the current one, or a new
    // first line when the grid has none.
    int currentLineForDefaults();

protected:
    void modeEntered(int mode) override;
    void afterClearWalk() override;
    void saveDocument() override;
    void printDocument() override;
    void removeDocument() override;
    qint64 nextDocumentId() override;
    // Loads the arrival into the screen; false when there is no such arrival with vehicles.
    bool loadDocument(qint64 arrivalId) override;
    void documentOpened() override;
    bool focusNextPrevChild(bool next) override;

private:
    void buildUi();
    void wireHandlers();

    // Handlers of the header's choices.
    void contractChosen();
    void contractEmptied();
    void commodityChosen();
    void commodityChosenQuietly(); // the commodity's rate unit, without the default bag
    void centreChosen();
    void centreEmptied();
    void permitChosen();
    void sellerTypeChosen();

    ArrivalCellContext cellContext() const;
    std::optional<Objection> checkCell(int row, int column, const QString& text);
    void recompute(int row, int column);
    std::optional<RateUnitInfo> unitNamed(const QString& name) const;
    void placeSeller(const QString& displayName);
    void enableSellerFields(bool enabled);
    int arrivalIdOnScreen() const;
    ArrivalDocument documentOnScreen() const;

    ArrivalStore m_store;

    QLineEdit* m_txtArrivalId = nullptr;
    DateEdit* m_dtpArrivalDate = nullptr;
    LookupCombo* m_cboSellerType = nullptr;
    LookupCombo* m_cboSeller = nullptr;
    LookupCombo* m_cboCommodity = nullptr;
    LookupCombo* m_cboContract = nullptr;
    QGroupBox* m_frame1 = nullptr;
    LookupCombo* m_cboPRCenter = nullptr;
    LookupCombo* m_cboPermitNo = nullptr;
    QLineEdit* m_txtPermitNo = nullptr;
    QLineEdit* m_txtRemainingBags = nullptr;
    QLineEdit* m_txtRemainingWeight = nullptr;
    LineGrid* m_grid = nullptr;
    LookupCombo* m_cboRateUnit = nullptr;

    LookupList m_units;
    LookupList m_bagClasses;
    LookupList m_bagTypes;
    QHash<QString, double> m_unitWeights;
    std::optional<RateUnitInfo> m_commodityUnit;
    int m_quiet = 0;                // >0 while code fills fields: their handlers stay still
    bool m_contractCleared = false; // the clerk emptied CboContract and has not left it yet
};

} // namespace gm
