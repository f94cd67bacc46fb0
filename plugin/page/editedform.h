#pragma once

#include <QString>

#include <functional>

class QWidget;

// A page whose form the operator edits and saves to the controller. "Unsaved" means the record
// built from the form differs from the one last loaded (or saved); loading never counts as a
// change. Every way out of such a form (another page, another set, closing the window) asks
// the one question of mayLeave first.
class EditedForm
{
public:
    enum Choice { Save, Discard, Stay };
    using Chooser = std::function<Choice(QWidget *parent, const QString &what)>;

    virtual ~EditedForm();

    virtual bool hasUnsavedChanges() const = 0;
    // What holds the changes, as the question names it ("the device settings", "LsData3").
    virtual QString unsavedChangesName() const = 0;
    // Saves through the form's own Save; true when the changes reached the controller.
    virtual bool saveChanges() = 0;
    // Forgets the changes: the form goes back to the record last loaded.
    virtual void discardChanges() = 0;

    // True when the way out may be taken: nothing unsaved, saved now, or discarded; false
    // when the operator stays or the save failed (its message already told why).
    bool mayLeave(QWidget *parent);

    // Save / Discard / Stay, asked in a message box; tests put their own answer in its place
    // (an empty chooser restores the message box).
    static Choice ask(QWidget *parent, const QString &what);
    static void setChooser(Chooser chooser);
};
