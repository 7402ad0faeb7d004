#include "widgets/Messages.h"

#include "datastore/Sql.h"

#include <QPalette>
#include <QPushButton>
#include <QWidget>

namespace gm {
namespace msg {

QMessageBox::StandardButton show(QWidget* parent, const QString& text, const QString& title,
                                 QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton) {
    QMessageBox box(icon, title, text, buttons, parent);
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    return QMessageBox::StandardButton(box.exec());
}

bool askYesNo(QWidget* parent, const QString& text, const QString& title, QMessageBox::Icon icon,
              bool defaultNo) {
    return show(parent, text, title, icon, QMessageBox::Yes | QMessageBox::No,
                defaultNo ? QMessageBox::No : QMessageBox::Yes) == QMessageBox::Yes;
}

void inform(QWidget* parent, const QString& text, const QString& title, QMessageBox::Icon icon) {
    show(parent, text, title, icon, QMessageBox::Ok);
}

QMessageBox::Icon boxIcon(Objection::Icon icon) {
    switch (icon) {
    case Objection::Icon::None:
        return QMessageBox::NoIcon;
    case Objection::Icon::Information:
        return QMessageBox::Information;
    case Objection::Icon::Warning:
        break;
    }
    return QMessageBox::Warning;
}

void showObjection(QWidget* parent, const Objection& objection) {
    if (!objection.isQuiet())
        show(parent, objection.text, objection.title, boxIcon(objection.icon), QMessageBox::Ok);
}

bool askPrint(QWidget* parent) {
    return askYesNo(parent, QStringLiteral("Do you want to print?"), kConfirmation,
                    QMessageBox::Question, true);
}

bool askSave(QWidget* parent) {
    return askYesNo(parent, QStringLiteral("Are you sure to save this invoice?"), kAlert);
}

bool askCloseWithoutSave(QWidget* parent) {
    return askYesNo(parent, QStringLiteral("Are you sure to close without save?"), kAlert);
}

} // namespace msg

void ShowErrorBox(QWidget* parent, const QString& description, const QString& source) {
    msg::show(parent, description, source, QMessageBox::Critical, QMessageBox::Ok);
}

bool guarded(QWidget* parent, const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const Objected& o) {
        msg::showObjection(parent, o.objection());
    } catch (const DbError& e) {
        ShowErrorBox(parent, e.description(), e.source());
    } catch (const std::exception& e) {
        ShowErrorBox(parent, QString::fromLocal8Bit(e.what()), QStringLiteral("grainmill"));
    }
    return false;
}

QColor colourFromBgr(quint32 value) {
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

void setFieldColour(QWidget* field, const QColor& colour) {
    if (!field)
        return;
    QPalette pal = field->palette();
    pal.setColor(QPalette::Base, colour);
    field->setPalette(pal);
    field->setAutoFillBackground(true);
}

QColor fieldColour(const QWidget* field) {
    return field ? field->palette().color(QPalette::Base) : QColor();
}

} // namespace gm
