#pragma once

#include "services/Context.h"

#include <QDate>
#include <QDialog>
#include <QString>
#include <QVariant>

class QDateEdit;
class QKeyEvent;
class QLineEdit;
class QPushButton;
class QTableView;

class QTimer;

namespace gm {

// Each shows its screen modally with `owner` as parent and returns the choice; 0 or an empty
// choice means the user closed without picking. `selectedSellerId` receives the seller of the
// chosen invoice, 0 when none was chosen.
PartyChoice showPartySearch(QWidget* owner, const Context& ctx);
int showContractSearch(QWidget* owner, const Context& ctx);
int showPurchaseSearch(QWidget* owner, const Context& ctx, int* selectedSellerId = nullptr);
int showArrivalSearch(QWidget* owner, const Context& ctx);
int showDFCPurchaseSearch(QWidget* owner, const Context& ctx);
int showHProductionSearch(QWidget* owner, const Context& ctx);

class LookupCombo;
struct SearchDefinition; // what one document search lists and how; see Search.cpp
class SearchRowsModel;   // the rows of a search as display texts plus their raw fields

// The common screen of the document searches: filters over a list of saved documents, and
// one key handed back. Each search below is this screen with its own definition.
class DocumentSearch : public QDialog {
    Q_OBJECT
public:
    ~DocumentSearch() override;

    int SelectedId() const { return m_selectedId; }
    // Runs the screen's query again with the current filters. A failure is shown in an error
    // box and leaves the list empty.
    void RunSearch();
    // Picks the current row and closes; does nothing on an empty list.
    void Select();
    // The rows read so far: a long list newest first is read a page at a time as it scrolls.
    int rowCount() const;
    // Reads the rest of the list, for a caller that needs all of it.
    void fetchAllRows();
    int currentRow() const;
    // The text shown in a cell, as the user reads it.
    QString cellText(int row, int column) const;

    // Enough rows to fill a tall grid several times over; more are read as the list scrolls.
    static constexpr int kPageRows = 200;

protected:
    DocumentSearch(const Context& ctx, const SearchDefinition& def, QWidget* owner,
                   int pageRows = kPageRows);
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Takes what the screen hands back from the chosen row.
    virtual void rowChosen(int row);
    QVariant field(int row, int sqlColumn) const;
    void moveToRow(int row);
    QWidget* topRowExtra(); // a place for a screen's own controls above the list

    const Context& m_ctx;
    const SearchDefinition& m_def;
    QLineEdit* m_filter = nullptr;
    QLineEdit* m_filterId = nullptr;
    QDateEdit* m_from = nullptr;
    QDateEdit* m_to = nullptr;
    QTableView* m_grid = nullptr;
    SearchRowsModel* m_rows = nullptr;
    QPushButton* m_select = nullptr;
    QPushButton* m_close = nullptr;
    int m_selectedId = 0;
    const int m_pageRows; // keys a page reads

private:
    void buildUi();
    bool handleKey(QWidget* control, QKeyEvent* key);
    QWidget* m_extra = nullptr;
};

class SchArrivals : public DocumentSearch {
    Q_OBJECT
public:
    explicit SchArrivals(const Context& ctx, QWidget* owner = nullptr);
};

class SchPurchase : public DocumentSearch {
    Q_OBJECT
public:
    explicit SchPurchase(const Context& ctx, QWidget* owner = nullptr);
    int SelectedSellerId() const { return m_selectedSellerId; }

protected:
    void rowChosen(int row) override;

private:
    int m_selectedSellerId = 0;
};

class SchPurchaseContract : public DocumentSearch {
    Q_OBJECT
public:
    explicit SchPurchaseContract(const Context& ctx, QWidget* owner = nullptr);
};

class SchDFCPurchase : public DocumentSearch {
    Q_OBJECT
public:
    explicit SchDFCPurchase(const Context& ctx, QWidget* owner = nullptr);
};

// Lists every hourly production, oldest first, a page of `pageSerials` serials at a time; the
// commodity combo finds instead of filters.
class SchHProduction : public DocumentSearch {
    Q_OBJECT
public:
    explicit SchHProduction(const Context& ctx, QWidget* owner = nullptr,
                            int pageSerials = kPageRows);
    // Moves to the first row of that commodity (the whole name, in any case); the last row of
    // the whole list when no row has it, the first row for an empty text.
    void FindCommodity(const QString& text);

    // The rest of the list is read in steps of this many serials, starting this long after
    // the screen opens; a step takes a few milliseconds at most.
    static constexpr int kFillDelayMs = 150;
    static constexpr int kFillSerials = 500;

private:
    // The first row with that name, reading further pages as far as it; -1 when no row has
    // it. Throws DbError.
    int findRow(const QString& text);
    // Reads the next stretch of the list while the screen waits for the clerk.
    void fillStep();

    LookupCombo* m_commodity = nullptr;
    QTimer* m_fill = nullptr;
};

// Finds a party for the party combos. Its key is text and three values come back. The
// screen has no keyboard way to pick or close: Enter and Esc do nothing here.
class SchParty : public QDialog {
    Q_OBJECT
public:
    explicit SchParty(const Context& ctx, QWidget* owner = nullptr);
    ~SchParty() override;

    QString SelectedPartyId() const { return m_choice.SelectedPartyId; }
    QString SelectedPartyName() const { return m_choice.SelectedPartyName; }
    QString SelectedCityName() const { return m_choice.SelectedCityName; }
    PartyChoice choice() const { return m_choice; }

    void RunSearch();
    // Moves to the party with exactly this key; the last row when there is none, the first
    // row for an empty text. The list itself is not narrowed.
    void FindPartyId(const QString& text);
    void Select();
    void CloseWithoutChoice();
    int rowCount() const;
    int currentRow() const;
    QString cellText(int row, int column) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildUi();
    void moveToRow(int row);

    const Context& m_ctx;
    QLineEdit* m_filterId = nullptr;
    QLineEdit* m_filter = nullptr;
    QTableView* m_grid = nullptr;
    SearchRowsModel* m_rows = nullptr;
    QPushButton* m_select = nullptr;
    QPushButton* m_close = nullptr;
    PartyChoice m_choice;
};

} // namespace gm
