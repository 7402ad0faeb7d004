#include "dfc/FrmPurchaseFromDFC.h"

#include "dfc/DFCReport.h"
#include "dfc/DFCValidation.h"
#include "entry/Fields.h"
#include "reports/Report.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "widgets/LookupCombo.h"
#include "widgets/Messages.h"

#include <QAction>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QValidator>
#include <QVBoxLayout>

#include <functional>

namespace gm {

namespace {

const QString kGrid = QStringLiteral("GridBagsSale");
const QString kRemoveRowQuestion = QStringLiteral("Are you sure to remove this product?");
const QString kRemoveQuestion = QStringLiteral("Are you sure to remove this Invoice?");
const QString kNoAuthority = QStringLiteral("Please provide correct informations");

ScreenTraits dfcTraits() {
    ScreenTraits t;
    t.objectName = QStringLiteral("FrmPurchaseFromDFC");
    t.caption = QStringLiteral("DFC Purchase Invoice");
    // Enter moves on everywhere but on a button, which it presses, and in the grid, which
    // takes it for its own; it never marks a change.
    t.enterPassesIn = {kGrid};
    t.enterTabsOnButtons = false;
    t.enterOnButtonMarksMode2 = false;
    t.mark = ScreenTraits::Mark::OnceWithWord;
    t.markAfterHandledKeys = false;
    t.ctrlShiftDeleteRemoves = true;
    t.focusAfterClear = {QStringLiteral("DTPPaymentDate"), QStringLiteral("TxtNoOfBags")};
    t.documentSearch = DocumentKind::DFCPurchase;
    t.idField = QStringLiteral("TxtPaymentId");
    return t;
}

// Holds back the fields' handlers while code, not the clerk, fills them.
class Quiet {
public:
    explicit Quiet(int& counter) : m_counter(counter) { ++m_counter; }
    ~Quiet() { --m_counter; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    int& m_counter;
};

// Typing in a number field stops at its format and its range, as the field's own limits: a
// key that would pass them is not taken.
class BoundedNumber : public QValidator {
public:
    BoundedNumber(int decimals, double minimum, double maximum, QObject* parent)
        : QValidator(parent), m_minimum(minimum), m_maximum(maximum),
          m_shape(QStringLiteral("^%1\\d*%2$")
                      .arg(minimum < 0 ? QStringLiteral("-?") : QString(),
                           decimals > 0 ? QStringLiteral("(\\.\\d{0,%1})?").arg(decimals)
                                        : QString())) {}

    State validate(QString& input, int&) const override {
        if (input.isEmpty())
            return Acceptable;
        if (!m_shape.match(input).hasMatch())
            return Invalid;
        if (input == QLatin1String("-"))
            return Intermediate;
        const double v = leadingNumber(input);
        return v < m_minimum || v > m_maximum ? Invalid : Acceptable;
    }

private:
    double m_minimum;
    double m_maximum;
    QRegularExpression m_shape;
};

NumberEdit* numberField(const char* name, int decimals, double minimum, double maximum,
                        QWidget* parent) {
    auto* e = new NumberEdit(QString::fromLatin1(name), parent);
    e->setValidator(new BoundedNumber(decimals, minimum, maximum, e));
    return e;
}

// A field the screen works out: shown, reached by Tab, never typed in.
NumberEdit* workedOutField(const char* name, QWidget* parent) {
    auto* e = new NumberEdit(QString::fromLatin1(name), parent);
    e->setAllowNegative(true);
    e->setReadOnly(true);
    return e;
}

// The right button let go over the grid's lines brings the row menu up there.
class RightRelease : public QObject {
public:
    RightRelease(QWidget* area, std::function<void(const QPoint&)> onRelease)
        : QObject(area), m_onRelease(std::move(onRelease)) {
        area->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonRelease) {
            auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::RightButton) {
                m_onRelease(mouse->position().toPoint());
                return true;
            }
        }
        return false;
    }

private:
    std::function<void(const QPoint&)> m_onRelease;
};

} // namespace

FrmPurchaseFromDFC::FrmPurchaseFromDFC(const Context& ctx, QWidget* parent)
    : DocumentScreen(ctx, dfcTraits(), parent), m_store(ctx.db()) {
    buildUi();
    wireHandlers();
    guard([this] { SetScreenMode(1); });
}

FrmPurchaseFromDFC::~FrmPurchaseFromDFC() = default;

LineGridModel* FrmPurchaseFromDFC::lines() const {
    return m_grid->lines();
}

void FrmPurchaseFromDFC::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* head = new QGridLayout();
    outer->addLayout(head);

    const auto place = [this, head](const QString& caption, QWidget* field, int row, int column) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        head->addWidget(label, row, column * 2);
        head->addWidget(field, row, column * 2 + 1);
    };

    m_txtPaymentId = new QLineEdit(this);
    m_txtPaymentId->setObjectName(QStringLiteral("TxtPaymentId"));
    // The number is drawn, never typed.
    m_txtPaymentId->setEnabled(false);
    m_dtpPaymentDate = new DateEdit(QStringLiteral("DTPPaymentDate"), this);
    m_cboCommodities = new LookupCombo(QStringLiteral("CboCommodities"), this);
    m_cboBank = new LookupCombo(QStringLiteral("CboBank"), this);
    m_cboUnit = new LookupCombo(QStringLiteral("CboUnit"), this);
    m_cboCommodities->setRefusal(QStringLiteral("Please provide a valid Commodity."));
    m_cboBank->setRefusal(QStringLiteral("Please provide a valid Bank."));
    m_cboUnit->setRefusal(QStringLiteral("Please provide a valid Unit."));
    m_txtChallanNo = new QLineEdit(this);
    m_txtChallanNo->setObjectName(QStringLiteral("TxtChallanNo"));

    m_txtNoOfBags = numberField("TxtNoOfBags", 0, 0, 10000, this);
    m_txtBagWeight = numberField("TxtBagWeight", 0, 0, 10000, this);
    m_txtTotalWeight = numberField("TxtTotalWeight", 0, -kMaxTotalWeight, kMaxTotalWeight, this);
    m_txtRatePerUnit = numberField("TxtRatePerUnit", 2, 0, 10000, this);
    m_txtValue = workedOutField("TxtValue", this);

    m_cboBagType = new LookupCombo(QStringLiteral("CboBagType"), this);
    m_cboBagClass = new LookupCombo(QStringLiteral("CboBagClass"), this);
    m_cboBagType->setRefusal(QStringLiteral("Please provide a valid Bag Type."));
    m_cboBagClass->setRefusal(QStringLiteral("Please provide a valid Bag Class."));
    m_txtBagsQty = numberField("TxtBagsQty", 0, 0, 10000, this);
    m_txtRatePerBag = numberField("TxtRatePerBag", 2, 0, 10000, this);
    m_txtBagsValue = workedOutField("TxtBagsValue", this);
    m_txtGrossValue = workedOutField("TxtGrossValue", this);

    place(QStringLiteral("Payment Id"), m_txtPaymentId, 0, 0);
    place(QStringLiteral("Payment Date"), m_dtpPaymentDate, 0, 1);
    place(QStringLiteral("Commodities"), m_cboCommodities, 1, 0);
    place(QStringLiteral("Bank"), m_cboBank, 1, 1);
    place(QStringLiteral("Unit"), m_cboUnit, 2, 0);
    place(QStringLiteral("Challan No"), m_txtChallanNo, 2, 1);
    place(QStringLiteral("No Of Bags"), m_txtNoOfBags, 3, 0);
    place(QStringLiteral("Bag Weight"), m_txtBagWeight, 3, 1);
    place(QStringLiteral("Total Weight"), m_txtTotalWeight, 4, 0);
    place(QStringLiteral("Rate/Unit"), m_txtRatePerUnit, 4, 1);
    place(QStringLiteral("Value"), m_txtValue, 5, 0);
    place(QStringLiteral("Bag Type"), m_cboBagType, 6, 0);
    place(QStringLiteral("Bag Class"), m_cboBagClass, 6, 1);
    place(QStringLiteral("Bags Qty"), m_txtBagsQty, 7, 0);
    place(QStringLiteral("Rate Per Bag"), m_txtRatePerBag, 7, 1);
    place(QStringLiteral("Bags Value"), m_txtBagsValue, 8, 0);
    place(QStringLiteral("Gross Value"), m_txtGrossValue, 8, 1);

    m_cmdAuthority = new QPushButton(QStringLiteral("Full Authority"), this);
    m_cmdAuthority->setObjectName(QStringLiteral("CmdAuthority"));
    m_cmdAuthority->setAutoDefault(false);
    head->addWidget(m_cmdAuthority, 9, 3);

    m_grid = new LineGrid(kGrid, this);
    const QStringList& caps = authorityColumnCaptions();
    const auto& f = authorityLineFields();
    m_grid->setColumns<AuthorityLine>({
        {GridColumn::text(caps[ColPermitNo], 110), f[ColPermitNo]},
        {GridColumn::date(caps[ColLetterDate], 100).named(QStringLiteral("DTpGrdDate")),
         f[ColLetterDate]},
        {GridColumn::lookupOf(caps[ColCenter], {}, 200).named(QStringLiteral("CboPrCenters")),
         f[ColCenter]},
        {GridColumn::number(caps[ColLetterBags], 90, 0, 0, 10000)
             .named(QStringLiteral("TxtGrdNoOfBags")),
         f[ColLetterBags]},
        {GridColumn::number(caps[ColLetterBagWeight], 90, 4, 0, 10000)
             .named(QStringLiteral("TxtGrdBagWeight")),
         f[ColLetterBagWeight]},
        {GridColumn::number(caps[ColLetterWeight], 110, 0, -1000000, 1000000)
             .named(QStringLiteral("TxtGrdValue")),
         f[ColLetterWeight]},
    });
    outer->addWidget(m_grid->panel(), 1);

    m_rowMenu = new QMenu(QStringLiteral("Delete"), this);
    m_rowMenu->setObjectName(QStringLiteral("mnuDelete"));
    m_mniRemoveRow = m_rowMenu->addAction(QStringLiteral("Remove this Row"));
    m_mniRemoveRow->setObjectName(QStringLiteral("mniRemoveRow"));
    m_mniRemoveRowBatch = m_rowMenu->addAction(QStringLiteral("Remove this Row"));
    m_mniRemoveRowBatch->setObjectName(QStringLiteral("mniRemoveRowBatch"));
    m_mniRemoveRowBatch->setVisible(false);

    outer->addWidget(buttonRow());

    const QList<QWidget*> order = {m_dtpPaymentDate, m_cboCommodities, m_cboBank,
                                   m_cboUnit,        m_txtChallanNo,   m_txtNoOfBags,
                                   m_txtBagWeight,   m_txtTotalWeight, m_txtRatePerUnit,
                                   m_txtValue,       m_cboBagType,     m_cboBagClass,
                                   m_txtBagsQty,     m_txtRatePerBag,  m_txtBagsValue,
                                   m_txtGrossValue,  m_cmdAuthority,   m_grid};
    for (int i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    resize(900, 640);
}

void FrmPurchaseFromDFC::wireHandlers() {
    LineGridModel* model = lines();
    model->setCellCheck(
        [this](int row, int column, const QString& text) { return checkCell(row, column, text); });
    model->setRecompute([this](int row, int column) { recompute(row, column); });

    const auto whenClerk = [this](void (FrmPurchaseFromDFC::*handler)()) {
        return [this, handler]() {
            if (m_quiet == 0)
                guard([this, handler] { (this->*handler)(); });
        };
    };
    for (NumberEdit* e : {m_txtNoOfBags, m_txtBagWeight})
        connect(e, &QLineEdit::textChanged, this,
                whenClerk(&FrmPurchaseFromDFC::bagsOrWeightEntered));
    for (NumberEdit* e : {m_txtTotalWeight, m_txtRatePerUnit})
        connect(e, &QLineEdit::textChanged, this, whenClerk(&FrmPurchaseFromDFC::valueFollows));
    connect(m_cboUnit, &LookupCombo::entryChosen, this,
            whenClerk(&FrmPurchaseFromDFC::valueFollows));
    connect(m_cboUnit, &QComboBox::editTextChanged, this,
            whenClerk(&FrmPurchaseFromDFC::valueFollows));
    for (NumberEdit* e : {m_txtBagsQty, m_txtRatePerBag})
        connect(e, &QLineEdit::textChanged, this, whenClerk(&FrmPurchaseFromDFC::bagsValueFollows));

    connect(m_dtpPaymentDate, &QDateEdit::dateChanged, this, [this] {
        if (m_quiet == 0)
            markChanged();
    });
    // A choice made with the mouse is a change as much as a typed one.
    for (LookupCombo* combo : {m_cboCommodities, m_cboBank, m_cboUnit, m_cboBagType, m_cboBagClass})
        connect(combo, &QComboBox::activated, this, [this] {
            if (m_quiet == 0)
                markChanged();
        });

    connect(m_cmdAuthority, &QPushButton::clicked, this,
            [this] { guard([this] { CmdAuthority_Click(); }); });
    connect(m_mniRemoveRow, &QAction::triggered, this,
            [this] { guard([this] { mniRemoveRow_Click(); }); });
    new RightRelease(m_grid->viewport(), [this](const QPoint& at) { showRowMenu(at); });
}

// ---- Modes, clearing, lists -----------------------------------------------------------------

void FrmPurchaseFromDFC::LoadDFCLookups() {
    Quiet quiet(m_quiet);
    const Conn& conn = context().db();
    m_cboBank->setItems(loadBanks(conn));
    m_centres = loadPRCenters(conn);
    lines()->setLookup(ColCenter, m_centres);
    m_cboCommodities->setItems(loadCommodities(conn, true, true, true));
    m_cboBagClass->setItems(loadBagClasses(conn));
    m_cboBagType->setItems(loadBagTypes(conn));
    m_cboUnit->setItems(loadUnits(conn));
    m_unitWeights = unitWeights(conn);
}

qint64 FrmPurchaseFromDFC::nextDocumentId() {
    return m_store.nextPaymentId();
}

void FrmPurchaseFromDFC::modeEntered(int mode) {
    if (mode == 1) {
        // Every new payment starts from the lists as they stand now.
        LoadDFCLookups();
        Quiet quiet(m_quiet);
        NextDocumentId();
        m_dtpPaymentDate->setDate(QDate::currentDate());
        m_rowsRemoved = false;
    }
}

void FrmPurchaseFromDFC::ClearScreen() {
    Quiet quiet(m_quiet);
    DocumentScreen::ClearScreen();
}

void FrmPurchaseFromDFC::afterClearWalk() {
    lines()->clearLines();
    lines()->clearFooters();
    m_dtpPaymentDate->setEnabled(true);
    m_grid->setEnabled(true);
    m_rowsRemoved = false;
}

// ---- The payment's figures ------------------------------------------------------------------

double FrmPurchaseFromDFC::unitWeightKgs() const {
    const QString key = m_cboUnit->currentKey();
    return key.isEmpty() ? 0.0 : m_unitWeights.value(key, 0.0);
}

void FrmPurchaseFromDFC::bagsOrWeightEntered() {
    const auto total = dfcTotalWeight(m_txtNoOfBags->value(), m_txtBagWeight->value());
    if (!total) {
        // More than the total can hold: both entries go, and with them the total.
        {
            Quiet quiet(m_quiet);
            m_txtNoOfBags->clear();
            m_txtBagWeight->clear();
        }
        m_txtTotalWeight->setValue(0);
        return;
    }
    m_txtTotalWeight->setValue(*total);
}

void FrmPurchaseFromDFC::valueFollows() {
    const auto value =
        dfcValue(m_txtTotalWeight->value(), unitWeightKgs(), m_txtRatePerUnit->value());
    if (value)
        m_txtValue->setValue(*value);
    else
        m_txtValue->clear();
    RecomputeGrossValue();
}

void FrmPurchaseFromDFC::bagsValueFollows() {
    m_txtBagsValue->setValue(dfcBagsValue(m_txtRatePerBag->value(), m_txtBagsQty->value()), 4);
    RecomputeGrossValue();
}

void FrmPurchaseFromDFC::RecomputeGrossValue() {
    if (m_txtValue->text().isEmpty() && m_txtBagsValue->text().isEmpty()) {
        m_txtGrossValue->clear();
        return;
    }
    m_txtGrossValue->setValue(dfcGrossValue(m_txtValue->value(), m_txtBagsValue->value()));
}

// ---- Letters --------------------------------------------------------------------------------

std::optional<Objection> FrmPurchaseFromDFC::checkCell(int row, int column, const QString& text) {
    return checkAuthorityCell(row, column, text, listNames(m_centres), m_grid->lines<AuthorityLine>());
}

void FrmPurchaseFromDFC::recompute(int row, int column) {
    if (column == ColLetterBags || column == ColLetterBagWeight)
        lines()->updateLine<AuthorityLine>(row, [](AuthorityLine& l) {
            if (l.noOfBags > 0 && l.bagWeight > 0)
                l.totalWeight = letterTotalWeight(l.noOfBags, l.bagWeight);
        });
    RefreshDFCFooters();
}

void FrmPurchaseFromDFC::RefreshDFCFooters() {
    for (int column : kAuthorityFooterColumns)
        lines()->setFooterText(column, lines()->sumColumn(column).toString());
}

void FrmPurchaseFromDFC::CmdAuthority_Click() {
    lines()->clearLines();
    lines()->clearFooters();
    if (m_txtTotalWeight->value() <= 0) {
        msg::inform(this, kNoAuthority, QStringLiteral("Alert!"));
        m_txtNoOfBags->setFocus(Qt::OtherFocusReason);
        return;
    }
    AuthorityLine whole;
    whole.date = m_dtpPaymentDate->date();
    whole.noOfBags = m_txtNoOfBags->value();
    whole.bagWeight = m_txtBagWeight->value();
    whole.totalWeight = m_txtTotalWeight->value();
    m_grid->setLines(std::vector<AuthorityLine>{whole});
    RefreshDFCFooters();
    markChanged();
    // The permit is what the clerk has to give it first.
    m_grid->setCurrentIndex(lines()->index(0, ColPermitNo));
    m_grid->setFocus(Qt::OtherFocusReason);
}

void FrmPurchaseFromDFC::showRowMenu(const QPoint& at) {
    const QModelIndex index = m_grid->indexAt(at);
    if (index.isValid())
        m_grid->setCurrentIndex(index);
    m_mniRemoveRow->setVisible(true);
    m_mniRemoveRowBatch->setVisible(false);
    m_rowMenu->popup(m_grid->viewport()->mapToGlobal(at));
}

void FrmPurchaseFromDFC::mniRemoveRow_Click() {
    if (!msg::askYesNo(this, kRemoveRowQuestion, msg::kAlert))
        return;
    if (!m_grid->removeCurrentLine())
        return;
    m_rowsRemoved = true;
    RefreshDFCFooters();
    markChanged();
    const int count = lines()->lineCount();
    if (count > 1)
        m_grid->setCurrentIndex(lines()->index(count - 1, m_grid->currentIndex().column()));
}

bool FrmPurchaseFromDFC::screenKey(QKeyEvent* event, const QString& activeName) {
    const Qt::KeyboardModifiers mods =
        event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (activeName == kGrid && mods == Qt::ControlModifier && event->key() == Qt::Key_Delete) {
        mniRemoveRow_Click();
        return true;
    }
    return false;
}

// ---- Open -----------------------------------------------------------------------------------

bool FrmPurchaseFromDFC::loadDocument(qint64 paymentId) {
    const auto doc = m_store.load(qint32(paymentId));
    if (!doc)
        return false;
    ClearScreen();
    Quiet quiet(m_quiet);
    const DFCPayment& p = *doc;
    m_txtPaymentId->setText(QString::number(p.paymentId));
    m_dtpPaymentDate->setDate(p.paymentDate);
    // Names the lists no longer offer are shown as they were saved.
    if (!m_cboCommodities->selectKey(QString::number(p.commodityId)))
        m_cboCommodities->setText(p.commodityName);
    if (p.bankAccountNo.isEmpty() || !m_cboBank->selectKey(p.bankAccountNo))
        m_cboBank->setText(p.bankName);
    m_txtChallanNo->setText(p.challanNo);
    m_txtNoOfBags->setValue(p.noOfBags);
    m_txtBagWeight->setValue(p.bagWeight);
    m_txtTotalWeight->setValue(p.totalWeight);
    if (p.rateUnitId == 0 || !m_cboUnit->selectKey(QString::number(p.rateUnitId)))
        m_cboUnit->setText(p.unitName);
    m_txtRatePerUnit->setValue(p.ratePerUnit);
    // What was saved, as it was saved: the value the payment's cost was drawn from.
    m_txtValue->setValue(p.value);
    if (p.bagsTypeId == 0 || !m_cboBagType->selectKey(QString::number(p.bagsTypeId)))
        m_cboBagType->setText(p.bagsType);
    if (p.bagsClassId == 0 || !m_cboBagClass->selectKey(QString::number(p.bagsClassId)))
        m_cboBagClass->setText(p.bagsClass);
    m_txtBagsQty->setValue(p.bagsQty);
    m_txtRatePerBag->setValue(p.pricePerBag);
    m_txtBagsValue->setValue(p.bagsValue, 4);
    m_txtGrossValue->setValue(p.grossValue());
    m_grid->setLines(p.letters);
    RefreshDFCFooters();
    return true;
}

void FrmPurchaseFromDFC::documentOpened() {
    // On the new-letter line, ready for another permit.
    m_grid->setCurrentIndex(lines()->index(lines()->lineCount(), ColPermitNo));
    m_grid->setFocus(Qt::OtherFocusReason);
}

// ---- Save, remove, print --------------------------------------------------------------------

DFCPayment FrmPurchaseFromDFC::paymentOnScreen() const {
    DFCPayment p;
    p.paymentId = qint32(leadingNumber(m_txtPaymentId->text()));
    p.paymentDate = m_dtpPaymentDate->date();
    p.commodityId = m_cboCommodities->currentKey().toLongLong();
    p.bankAccountNo = m_cboBank->currentKey();
    p.challanNo = m_txtChallanNo->text().trimmed();
    p.noOfBags = m_txtNoOfBags->value();
    p.bagWeight = m_txtBagWeight->value();
    p.totalWeight = m_txtTotalWeight->value();
    p.rateUnitId = m_cboUnit->currentKey().toLongLong();
    p.ratePerUnit = m_txtRatePerUnit->value();
    p.value = m_txtValue->value();
    p.bagsTypeId = m_cboBagType->currentKey().toLongLong();
    p.bagsClassId = m_cboBagClass->currentKey().toLongLong();
    p.bagsQty = m_txtBagsQty->value();
    p.pricePerBag = m_txtRatePerBag->value();
    p.bagsValue = m_txtBagsValue->value();
    p.userNo = context().userNo();
    p.letters = m_grid->lines<AuthorityLine>();
    for (AuthorityLine& l : p.letters) {
        l.permitNo = l.permitNo.trimmed();
        l.centerId = findKey(m_centres, l.centerName).toLongLong();
    }
    return p;
}

void FrmPurchaseFromDFC::saveDocument() {
    const DFCPayment doc = paymentOnScreen();
    DFCSaveInput in;
    in.challanNo = m_txtChallanNo->text();
    in.totalWeight = doc.totalWeight;
    in.value = doc.value;
    in.grossValue = m_txtGrossValue->value();
    in.commodityKey = m_cboCommodities->currentKey();
    in.paymentIdText = m_txtPaymentId->text();
    in.isOpened = isOpened();
    in.lines = doc.letters;
    if (const auto objection = ValidateDFCPayment(in, m_store, m_store)) {
        object(*objection);
        return;
    }
    m_store.save(doc, !isOpened());
    documentSaved(doc.paymentId);
}

void FrmPurchaseFromDFC::printDocument() {
    const auto doc = m_store.load(qint32(documentId()));
    showReport(this, CrpDFCPurchase(doc ? &*doc : nullptr, context().hostSettings()));
}

void FrmPurchaseFromDFC::removeDocument() {
    if (!msg::askYesNo(this, kRemoveQuestion, msg::kAlert))
        return;
    m_store.remove(qint32(documentId()));
    clearDocument();
}

} // namespace gm
