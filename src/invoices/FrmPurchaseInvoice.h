#pragma once

#include "entry/DocumentScreen.h"
#include "invoices/InvoiceStore.h"
#include "services/LookupItem.h"

#include <QHash>

class QCheckBox;
class QGroupBox;
class QLineEdit;

namespace gm {

class DateEdit;
class LineGrid;
class LookupCombo;
class NumberEdit;

// The purchase invoice: the uninvoiced vehicles of a contract or a seller, priced line by
// line, with the charges, commission and tax of the lot and the seller's balance. Saving it
// moves the average cost of the wheat and the bags it bought. The arithmetic lives in
// InvoiceLines/PurchaseInvoice, the SQL in InvoiceStore; this class maps fields to them.
class FrmPurchaseInvoice : public DocumentScreen {
    Q_OBJECT
public:
    explicit FrmPurchaseInvoice(const Context& ctx, QWidget* parent = nullptr);
    ~FrmPurchaseInvoice() override;

    void LoadPurchaseLists();
    void RefreshBrokerFields();
    // The invoice as the screen holds it, and what the screen shows below the grid.
    InvoiceDocument documentOnScreen() const;
    LineGrid* grid() const { return m_grid; }

protected:
    void modeEntered(int mode) override;
    void afterClearWalk() override;
    void saveDocument() override;
    void printDocument() override;
    void removeDocument() override;
    qint64 nextDocumentId() override;
    bool loadDocument(qint64 purchaseId) override;
    bool screenKey(QKeyEvent* event, const QString& activeName) override;

private:
    struct ChargeFields {
        explicit ChargeFields(Charge c) : charge(c) {}
        Charge charge;
        NumberEdit* perBag = nullptr;
        NumberEdit* total = nullptr;
        ChargePair pair;
    };

    void buildUi();
    void wireHandlers();
    void LoadFromContract();
    void LoadFromSeller();
    void contractEmptied();
    void showPreviousBalance();
    void enableOfferFields(bool enabled);
    void setLines(std::vector<InvoiceLine> lines);
    void recompute(int row, int column);
    // Footers, gross, brokerage, commission, tax, net and payable from the invoice as it
    // stands: run after every change, so nothing shown is stale.
    void refreshFigures();
    // What the clerk entered, without the figures worked out from it.
    InvoiceDocument enteredOnScreen() const;
    void chargeTyped(ChargeFields& fields, bool totalSide);
    void showCharge(const ChargeFields& fields);
    std::optional<Objection> checkCell(int row, int column, const QString& text) const;
    InvoiceStore store() const;

    QLineEdit* m_txtPurchaseId = nullptr;
    DateEdit* m_dtpPurchaseDate = nullptr;
    LookupCombo* m_cboContract = nullptr;
    LookupCombo* m_cboSellerType = nullptr;
    LookupCombo* m_cboSeller = nullptr;
    LookupCombo* m_cboBrokerType = nullptr;
    LookupCombo* m_cboBroker = nullptr;
    NumberEdit* m_txtBrokerageRate = nullptr;
    QCheckBox* m_chkPerBag = nullptr;
    NumberEdit* m_txtBrokerage = nullptr;
    LineGrid* m_grid = nullptr;
    LookupCombo* m_cboRateUnit = nullptr;
    QGroupBox* m_frame1 = nullptr;
    ChargeFields m_freight{Charge::Freight};
    ChargeFields m_unloading{Charge::Unloading};
    ChargeFields m_expense{Charge::Expense};
    NumberEdit* m_txtGrossValue = nullptr;
    NumberEdit* m_txtComm = nullptr;
    NumberEdit* m_txtCommValue = nullptr;
    NumberEdit* m_txtWHTaxRatio = nullptr;
    NumberEdit* m_txtWHTaxValue = nullptr;
    NumberEdit* m_txtSpecialDiscount = nullptr;
    NumberEdit* m_txtNetAmount = nullptr;
    NumberEdit* m_txtPreviousCredit = nullptr;
    NumberEdit* m_txtTotalPayable = nullptr;
    NumberEdit* m_txtPaidAmount = nullptr;
    QCheckBox* m_chkHidePrevBal = nullptr;

    LookupList m_units;
    QHash<QString, double> m_unitWeights;
    bool m_arrivalRowsLoaded = false; // a contract's vehicles stand in the grid
    int m_quiet = 0;                  // >0 while code fills fields: their handlers stay still
};

} // namespace gm
