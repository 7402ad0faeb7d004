#pragma once

#include "dfc/DFCLines.h"
#include "dfc/DFCStore.h"
#include "entry/DocumentScreen.h"
#include "entry/LineGrid.h"
#include "services/LookupItem.h"

#include <QHash>

#include <optional>

class QAction;
class QLineEdit;
class QMenu;
class QPushButton;

namespace gm {

class DateEdit;
class LookupCombo;
class NumberEdit;

// A purchase of wheat and bags from the DFC: the payment with its challan and bank, the goods
// and their value, the bags bought, and under it the authority letters by PR centre that the
// arrival screen spends.
class FrmPurchaseFromDFC : public DocumentScreen {
    Q_OBJECT
public:
    explicit FrmPurchaseFromDFC(const Context& ctx, QWidget* parent = nullptr);
    ~FrmPurchaseFromDFC() override;

    void LoadDFCLookups();
    void RefreshDFCFooters();
    // "Full Authority": the whole purchase under one letter, its permit and centre left for
    // the clerk to fill in.
    void CmdAuthority_Click();
    // "Remove this Row": the current letter, after the question.
    void mniRemoveRow_Click();

    LineGrid* grid() const { return m_grid; }
    LineGridModel* lines() const;
    QMenu* rowMenu() const { return m_rowMenu; }
    bool rowsRemoved() const { return m_rowsRemoved; }

protected:
    void modeEntered(int mode) override;
    void ClearScreen() override;
    void afterClearWalk() override;
    void saveDocument() override;
    void printDocument() override;
    void removeDocument() override;
    qint64 nextDocumentId() override;
    bool loadDocument(qint64 paymentId) override;
    void documentOpened() override;
    bool screenKey(QKeyEvent* event, const QString& activeName) override;

private:
    void buildUi();
    void wireHandlers();

    // The value fields follow one another as the clerk types.
    void bagsOrWeightEntered();
    void valueFollows();
    void bagsValueFollows();
    void RecomputeGrossValue();
    double unitWeightKgs() const;

    std::optional<Objection> checkCell(int row, int column, const QString& text);
    void recompute(int row, int column);
    void showRowMenu(const QPoint& at);
    DFCPayment paymentOnScreen() const;

    DFCStore m_store;

    QLineEdit* m_txtPaymentId = nullptr;
    DateEdit* m_dtpPaymentDate = nullptr;
    LookupCombo* m_cboCommodities = nullptr;
    LookupCombo* m_cboBank = nullptr;
    LookupCombo* m_cboUnit = nullptr;
    QLineEdit* m_txtChallanNo = nullptr;
    NumberEdit* m_txtNoOfBags = nullptr;
    NumberEdit* m_txtBagWeight = nullptr;
    NumberEdit* m_txtTotalWeight = nullptr;
    NumberEdit* m_txtRatePerUnit = nullptr;
    NumberEdit* m_txtValue = nullptr;
    LookupCombo* m_cboBagType = nullptr;
    LookupCombo* m_cboBagClass = nullptr;
    NumberEdit* m_txtBagsQty = nullptr;
    NumberEdit* m_txtRatePerBag = nullptr;
    NumberEdit* m_txtBagsValue = nullptr;
    NumberEdit* m_txtGrossValue = nullptr;
    QPushButton* m_cmdAuthority = nullptr;
    LineGrid* m_grid = nullptr;
    QMenu* m_rowMenu = nullptr;
    QAction* m_mniRemoveRow = nullptr;
    QAction* m_mniRemoveRowBatch = nullptr;

    LookupList m_centres;
    QHash<QString, double> m_unitWeights;
    bool m_rowsRemoved = false;
    int m_quiet = 0; // >0 while code fills fields: their handlers stay still
};

} // namespace gm
