#include "editedform.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

EditedForm::Chooser &chooser()
{
    static EditedForm::Chooser current;
    return current;
}

} // namespace

EditedForm::~EditedForm() = default;

bool EditedForm::mayLeave(QWidget *parent)
{
    if (!hasUnsavedChanges())
        return true;
    switch (ask(parent, unsavedChangesName())) {
    case Save:
        return saveChanges();
    case Discard:
        discardChanges();
        return true;
    case Stay:
        break;
    }
    return false;
}

EditedForm::Choice EditedForm::ask(QWidget *parent, const QString &what)
{
    if (chooser())
        return chooser()(parent, what);
    QMessageBox box(QMessageBox::Question,
        QCoreApplication::translate("EditedForm", "Unsaved changes"),
        QCoreApplication::translate("EditedForm", "There are unsaved changes in %1.").arg(what),
        QMessageBox::NoButton, parent);
    box.setObjectName(QStringLiteral("unsavedChangesQuestion"));
    box.setInformativeText(QCoreApplication::translate(
        "EditedForm", "Save them to the controller, discard them, or stay and go on editing?"));
    QPushButton *save
        = box.addButton(QCoreApplication::translate("EditedForm", "Save"), QMessageBox::AcceptRole);
    save->setObjectName(QStringLiteral("unsavedSave"));
    QPushButton *discard = box.addButton(
        QCoreApplication::translate("EditedForm", "Discard"), QMessageBox::DestructiveRole);
    discard->setObjectName(QStringLiteral("unsavedDiscard"));
    QPushButton *stay
        = box.addButton(QCoreApplication::translate("EditedForm", "Stay"), QMessageBox::RejectRole);
    stay->setObjectName(QStringLiteral("unsavedStay"));
    // Nothing is lost by a stray Enter or Escape.
    box.setDefaultButton(stay);
    box.setEscapeButton(stay);
    box.exec();
    if (box.clickedButton() == save)
        return Save;
    if (box.clickedButton() == discard)
        return Discard;
    return Stay;
}

void EditedForm::setChooser(Chooser chooser)
{
    ::chooser() = std::move(chooser);
}
