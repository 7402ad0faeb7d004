#pragma once

#include "services/Objection.h"

#include <QColor>
#include <QMessageBox>
#include <QString>

#include <exception>
#include <functional>

class QWidget;

namespace gm {

// The message boxes the screens show. Every box is a real modal QMessageBox so that a clerk
// (or a test answering through QApplication::activeModalWidget()) meets the exact words,
// title, icon and buttons each screen promises.
namespace msg {

inline const QString kAlert = QStringLiteral("Alert");
inline const QString kConfirmation = QStringLiteral("Confirmation");

// Shows one box and returns the button pressed. `defaultButton` NoButton leaves Qt's choice.
QMessageBox::StandardButton show(QWidget* parent, const QString& text, const QString& title,
                                 QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

// Yes/No question; true on Yes. With `defaultNo` a careless Enter answers No.
bool askYesNo(QWidget* parent, const QString& text, const QString& title,
              QMessageBox::Icon icon = QMessageBox::Question, bool defaultNo = false);

// An OK box, information icon unless told.
void inform(QWidget* parent, const QString& text, const QString& title = kAlert,
            QMessageBox::Icon icon = QMessageBox::Information);

// The box of an objection: its words, title and icon, with OK (nothing for a quiet one).
void showObjection(QWidget* parent, const Objection& objection);
QMessageBox::Icon boxIcon(Objection::Icon icon);

// "Do you want to print?", "Confirmation", Yes/No, question icon, No as the default.
bool askPrint(QWidget* parent);

// "Are you sure to save this invoice?", "Alert", Yes/No, question icon.
bool askSave(QWidget* parent);

// "Are you sure to close without save?", "Alert", Yes/No, question icon.
bool askCloseWithoutSave(QWidget* parent);

} // namespace msg

// The error box: the description as text, the source as title, OK, critical icon.
void ShowErrorBox(QWidget* parent, const QString& description, const QString& source);

// Runs `work`; an objection a store raised ends in its box, a DbError or any other exception
// in ShowErrorBox, instead of reaching the host. Returns false when something was caught, so
// callers can stop their own steps.
bool guarded(QWidget* parent, const std::function<void()>& work);

// Field colours of the screens.
inline const QColor kEditableColour(0xFF, 0xFF, 0xFF);
inline const QColor kLockedColour(0xE0, 0xE0, 0xE0);
inline const QColor kYellowColour(0xFF, 0xFF, 0x00);

// A colour stored as one number with red in the low byte (65535 is yellow).
QColor colourFromBgr(quint32 value);
// Paints a field's background (line edits, combos, date fields).
void setFieldColour(QWidget* field, const QColor& colour);
QColor fieldColour(const QWidget* field);

} // namespace gm
