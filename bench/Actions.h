#pragma once

#include "entry/Forms.h"

#include <QDate>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QWidget;

namespace gm {
class Conn;
} // namespace gm

namespace gm::bench {

// One thing a clerk waits on, and the same question asked the way the old screens asked it.
// Each step returns the number of rows it brought back, so that a fast answer to a smaller
// question is not mistaken for a faster query.
struct Action {
    QString name;
    std::function<int()> ours;
    std::function<int()> oldWay;  // may be empty: the old screens had no such step
    std::function<void()> before; // untimed set-up of each repetition
    std::function<void()> after;  // untimed tidy-up of each repetition
    QString note;                 // how "ours" was measured, when not a store call
};

// The documents and parties the actions ask about, chosen the same way on every database so
// that a small and a large mill are asked comparable questions.
struct Subjects {
    QString seller;                // the seller with most arrivals in the last year
    qint64 contractForInvoice = 0; // the newest contract whose arrival still has open vehicles
    qint64 centre = 0;             // the centre with most letters in the last year
    qint64 centreCommodity = 0;
    qint64 contractToOpen = 0;
    int arrivalToOpen = 0;
    int purchaseToOpen = 0;
    int paymentToOpen = 0;
    QDate productionDay;
    QDate freeProductionDay; // the day after the last production day: a day still to save
    qint64 bagsType = 0;     // the bag kind with most bags in stock, for products to save
    qint64 bagsClass = 0;
    int serialToOpen = 0;
    QString hourlyLateName;  // the hourly commodity whose first record comes last
    QString hourlyNoName;    // a commodity no hourly record has
    qint64 freeContract = 0; // a contract no arrival uses yet
    QDate today;
};

Subjects pickSubjects(const Conn& conn);

// What the screens are built with: user 1, the generated mill's DFC account, and the last year
// as the accounting period.
Context benchContext(const Conn& conn, const Subjects& s);

// Everything that is timed. `owner` parents the search screens, which are built once and
// driven through their own controls.
class ActionSet {
public:
    ActionSet(const Context& ctx, const Subjects& s, QWidget* owner);
    ~ActionSet();
    std::vector<Action>& actions() { return m_actions; }

private:
    struct Screens;
    std::unique_ptr<Screens> m_screens;
    std::vector<Action> m_actions;
};

} // namespace gm::bench
