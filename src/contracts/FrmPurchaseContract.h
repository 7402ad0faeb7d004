#pragma once

#include "entry/DocumentScreen.h"

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;

namespace gm {

class DateEdit;
class LookupCombo;
class NumberEdit;
struct ContractRecord;
struct PurchaseContract;

// The purchase contract screen: one agreement to buy a commodity from a seller, usually
// through a broker. The checks live in validateContract, the SQL in ContractStore; this class
// only moves values between the controls and those.
class FrmPurchaseContract : public DocumentScreen {
    Q_OBJECT
public:
    explicit FrmPurchaseContract(const Context& ctx, QWidget* parent = nullptr);
    ~FrmPurchaseContract() override;

    void LoadContractLists();

protected:
    void modeEntered(int mode) override;
    void saveDocument() override;
    void printDocument() override;
    void removeDocument() override;
    qint64 nextDocumentId() override;
    bool loadDocument(qint64 contractId) override;

private:
    void buildUi();
    void partyTypeChosen(LookupCombo* typeCombo, LookupCombo* partyCombo);
    void showRecord(const ContractRecord& record);
    PurchaseContract contractFromScreen() const;

    QLineEdit* m_contractId = nullptr;
    DateEdit* m_contractDate = nullptr;
    LookupCombo* m_commodity = nullptr;
    LookupCombo* m_brokerType = nullptr;
    LookupCombo* m_broker = nullptr;
    LookupCombo* m_sellerType = nullptr;
    LookupCombo* m_seller = nullptr;
    NumberEdit* m_brokerage = nullptr;
    QGroupBox* m_brokerageMode = nullptr;
    QRadioButton* m_perBag = nullptr;
    QRadioButton* m_percentage = nullptr;
    LookupCombo* m_contractMode = nullptr;
    NumberEdit* m_quantity = nullptr;
    LookupCombo* m_unit = nullptr;
    NumberEdit* m_ratePerUnit = nullptr;
    NumberEdit* m_perBagDeduction = nullptr;
    NumberEdit* m_otherDeduction = nullptr;
    LookupCombo* m_modeOfPayment = nullptr;
    DateEdit* m_deliveryStart = nullptr;
    DateEdit* m_deliveryEnd = nullptr;
    QLineEdit* m_otherTerms = nullptr;
    QCheckBox* m_withBags = nullptr;
    QCheckBox* m_deliveryInMill = nullptr;
    QCheckBox* m_paymentOnSite = nullptr;
    QCheckBox* m_completed = nullptr;
};

} // namespace gm
