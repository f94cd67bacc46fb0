#pragma once

#include "configbackup.h"
#include "ui_restoredialog.h"

#include <QDialog>

// Shows what a backup would change in the controller, record by record and key by key, lets
// the operator pick the records and restores them with a report per record.
class RestoreDialog : public QDialog
{
    Q_OBJECT
public:
    explicit RestoreDialog(QWidget *parent = nullptr);
    ~RestoreDialog() override;

    // Reads and previews a backup file; false, with the reason shown, when it cannot be used.
    bool openFile(const QString &path);
    // Previews backup contents against what the controller holds now.
    void showBackup(const ConfigBackup::Contents &contents);
    QStringList selectedRecords() const;
    void restoreSelected();

signals:
    // Records were sent: pages showing them must read them again.
    void restored();

private:
    void showError(const QString &text);

    Ui::RestoreDialog m_ui;
    ConfigBackup::Contents m_contents;
};
