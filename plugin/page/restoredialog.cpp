#include "restoredialog.h"

#include "configrestore.h"
#include "pagesave.h"

#include "core/recorddiff.h"

#include <QFile>
#include <QHeaderView>
#include <QTreeWidgetItem>

namespace {

constexpr int kRecordRole = Qt::UserRole;

} // namespace

RestoreDialog::RestoreDialog(QWidget *parent) : QDialog(parent)
{
    m_ui.setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
    m_ui.treeWidget_changes->header()->setSectionResizeMode(QHeaderView::Interactive);
    m_ui.treeWidget_changes->setColumnWidth(0, 300);
    m_ui.treeWidget_changes->setColumnWidth(1, 200);
    connect(m_ui.pushButton_restore, &QPushButton::clicked, this, &RestoreDialog::restoreSelected);
    connect(m_ui.pushButton_close, &QPushButton::clicked, this, &QDialog::reject);
    m_ui.pushButton_restore->setEnabled(false);
}

RestoreDialog::~RestoreDialog() = default;

void RestoreDialog::showError(const QString &text)
{
    m_contents = {};
    m_ui.treeWidget_changes->clear();
    m_ui.label_file->setText(text);
    m_ui.pushButton_restore->setEnabled(false);
}

bool RestoreDialog::openFile(const QString &path)
{
    QFile file(path);
    // A file far beyond any backup is not read at all, so the pendant never waits for it.
    if (file.size() > ConfigBackup::maxFileSize) {
        showError(ConfigBackup::tr("The file is too large for a backup."));
        return false;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        showError(tr("The file cannot be read: %1").arg(file.errorString()));
        return false;
    }
    const ConfigBackup::Contents contents
        = ConfigBackup::read(file.read(ConfigBackup::maxFileSize + 1));
    if (!contents.error.isEmpty()) {
        showError(contents.error);
        return false;
    }
    showBackup(contents);
    return true;
}

void RestoreDialog::showBackup(const ConfigBackup::Contents &contents)
{
    m_contents = contents;
    m_ui.plainTextEdit_report->clear();
    const QString model = contents.controller.value(QLatin1String("model")).toString();
    m_ui.label_file->setText(
        tr("Backup of %1, made %2. Tick the records to restore.")
            .arg(model.isEmpty() ? tr("an unknown controller") : model, contents.created));
    QTreeWidget *tree = m_ui.treeWidget_changes;
    tree->clear();
    const QJsonObject current = ConfigRestore::currentRecords();
    for (const QString &key : ConfigBackup::recordKeys()) {
        if (!contents.records.contains(key))
            continue;
        const QJsonObject record = contents.records.value(key).toObject();
        const QJsonObject now = current.value(key).toObject();
        auto *item = new QTreeWidgetItem(tree, {key});
        item->setData(0, kRecordRole, key);
        const QString refusal = ConfigRestore::refusalNow(key, record, current);
        const auto changes = kellaser::RecordDiff::diff(now, record);
        if (!refusal.isEmpty()) {
            item->setText(1, tr("Cannot be restored: %1").arg(refusal));
            item->setFirstColumnSpanned(false);
            item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
        } else {
            item->setCheckState(0, changes.isEmpty() ? Qt::Unchecked : Qt::Checked);
            item->setText(
                1, changes.isEmpty() ? tr("No changes") : tr("Changes: %1").arg(changes.size()));
        }
        for (const auto &change : changes) {
            QString key = change.key;
            if (change.kind == kellaser::RecordDiff::Kind::Added)
                key = tr("%1 (added)").arg(change.key);
            else if (change.kind == kellaser::RecordDiff::Kind::Removed)
                key = tr("%1 (kept: not in the backup)").arg(change.key);
            new QTreeWidgetItem(item,
                {key, kellaser::RecordDiff::text(change.before),
                    kellaser::RecordDiff::text(change.after)});
        }
    }
    tree->expandAll();
    m_ui.pushButton_restore->setEnabled(tree->topLevelItemCount() > 0);
}

QStringList RestoreDialog::selectedRecords() const
{
    QStringList keys;
    for (int i = 0; i < m_ui.treeWidget_changes->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = m_ui.treeWidget_changes->topLevelItem(i);
        if (item->checkState(0) == Qt::Checked)
            keys.append(item->data(0, kRecordRole).toString());
    }
    return keys;
}

void RestoreDialog::restoreSelected()
{
    // The dialog may have been opened at a higher level than the one logged in now.
    if (!kellaser::PageSave::mayChange(tr("Insufficient user permissions!"))) {
        m_ui.plainTextEdit_report->setPlainText(tr("Nothing was restored."));
        return;
    }
    const auto results = ConfigRestore::restore(this, m_contents.records, selectedRecords());
    QStringList lines;
    for (const auto &result : results)
        lines.append(result.record.isEmpty()
                ? result.message
                : QStringLiteral("%1: %2").arg(result.record, result.message));
    if (lines.isEmpty())
        lines.append(tr("No record was selected."));
    const ConfigBackup::Contents contents = m_contents;
    showBackup(contents);
    m_ui.plainTextEdit_report->setPlainText(lines.join(QLatin1Char('\n')));
    if (!results.isEmpty())
        emit restored();
}
