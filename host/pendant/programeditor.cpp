#include "programeditor.h"

#include "skeletonform.h"

#include "kelplugin/rlcatalog.h"
#include "kelplugin/rlcontentbase.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QPainter>
#include <QPixmap>
#include <QSaveFile>
#include <QVBoxLayout>

namespace {

// A program is a few thousand lines at most; anything far larger is not a program.
const qint64 kMaxProgramBytes = 16 * 1024 * 1024;

const QIcon &invalidMarker()
{
    static const QIcon icon = [] {
        QPixmap pixmap(12, 12);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(220, 30, 30));
        painter.drawEllipse(1, 1, 10, 10);
        return QIcon(pixmap);
    }();
    return icon;
}

const QBrush &runLineBrush()
{
    static const QBrush brush(QColor(255, 236, 150));
    return brush;
}

} // namespace

ProgramEditor::ProgramEditor(QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);

    connect(m_ui.comboBox_group, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        &ProgramEditor::showGroup);
    connect(m_ui.listWidget_instructions, &QListWidget::currentRowChanged, this,
        &ProgramEditor::showDescription);
    connect(m_ui.listWidget_instructions, &QListWidget::itemDoubleClicked, this,
        &ProgramEditor::insertWithEditor);
    connect(m_ui.pushButton_insert, &QPushButton::clicked, this, &ProgramEditor::insertWithEditor);
    connect(
        m_ui.pushButton_insert_default, &QPushButton::clicked, this, &ProgramEditor::insertDefault);
    connect(m_ui.pushButton_edit, &QPushButton::clicked, this, &ProgramEditor::editCurrentLine);
    connect(m_ui.listWidget_program, &QListWidget::itemDoubleClicked, this,
        &ProgramEditor::editCurrentLine);
    connect(m_ui.pushButton_delete, &QPushButton::clicked, this, &ProgramEditor::deleteCurrentLine);
    connect(m_ui.pushButton_open, &QPushButton::clicked, this, &ProgramEditor::chooseAndOpen);
    connect(m_ui.pushButton_save, &QPushButton::clicked, this, &ProgramEditor::chooseAndSave);
    connect(
        m_ui.listWidget_program, &QListWidget::itemChanged, this, [this](QListWidgetItem *item) {
            if (m_checking)
                return;
            checkItem(item);
            emit programChanged();
        });

    for (double factor : speedFactors()) {
        m_ui.comboBox_speed_factor->addItem(
            factor == 1.0 ? tr("×1 (real time)") : tr("×%1").arg(QLocale().toString(factor)),
            factor);
    }
    connect(m_ui.comboBox_speed_factor, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        [this] { emit speedFactorChanged(speedFactor()); });
    connect(m_ui.pushButton_run, &QPushButton::clicked, this, &ProgramEditor::runRequested);
    connect(m_ui.pushButton_step, &QPushButton::clicked, this, &ProgramEditor::stepRequested);
    connect(m_ui.pushButton_stop, &QPushButton::clicked, this, &ProgramEditor::stopRequested);

    reloadCatalogue();
}

ProgramEditor::~ProgramEditor() = default;

const QList<double> &ProgramEditor::speedFactors()
{
    static const QList<double> factors {1, 2, 5, 10, 100};
    return factors;
}

double ProgramEditor::speedFactor() const
{
    return m_ui.comboBox_speed_factor->currentData().toDouble();
}

void ProgramEditor::setRunState(RunState state)
{
    if (state == m_runState)
        return;
    m_runState = state;
    const bool idle = state == RunState::Idle;
    m_ui.pushButton_run->setEnabled(state != RunState::Running);
    m_ui.pushButton_step->setEnabled(state != RunState::Running);
    m_ui.pushButton_stop->setEnabled(!idle);
    // The controller runs the lines it was given; edits would not reach it.
    for (QPushButton *button : {m_ui.pushButton_open, m_ui.pushButton_edit, m_ui.pushButton_delete,
             m_ui.pushButton_insert, m_ui.pushButton_insert_default})
        button->setEnabled(idle);
    m_ui.listWidget_program->setEditTriggers(
        idle ? QAbstractItemView::EditKeyPressed : QAbstractItemView::NoEditTriggers);
    if (idle)
        setRunLine(-1);
}

void ProgramEditor::setRunLine(int row)
{
    QListWidget *list = m_ui.listWidget_program;
    if (row < -1 || row >= list->count())
        row = -1;
    if (row == m_runLine)
        return;
    if (QListWidgetItem *previous = list->item(m_runLine))
        decorate([previous] { previous->setData(Qt::BackgroundRole, QVariant()); });
    m_runLine = row;
    if (QListWidgetItem *item = list->item(row)) {
        decorate([item] { item->setBackground(runLineBrush()); });
        list->scrollToItem(item);
    }
}

void ProgramEditor::markRefusedLine(int row, const QString &reason)
{
    setStatus(reason);
    QListWidgetItem *item = m_ui.listWidget_program->item(row);
    if (!item)
        return;
    decorate([item, &reason] {
        item->setIcon(invalidMarker());
        item->setToolTip(reason);
    });
    m_ui.listWidget_program->setCurrentItem(item);
    m_ui.listWidget_program->scrollToItem(item);
}

void ProgramEditor::decorate(const std::function<void()> &change)
{
    const bool wasChecking = m_checking;
    m_checking = true;
    change();
    m_checking = wasChecking;
}

void ProgramEditor::reloadCatalogue()
{
    const QString group = m_ui.comboBox_group->currentData().toString();
    const QString instruction = selectedInstruction();
    {
        const QSignalBlocker blocker(m_ui.comboBox_group);
        m_ui.comboBox_group->clear();
        for (const kelplugin::RLGroup &g : kelplugin::rlCatalog().groups())
            m_ui.comboBox_group->addItem(g.caption.isEmpty() ? g.key : g.caption, g.key);
        const int index = m_ui.comboBox_group->findData(group);
        m_ui.comboBox_group->setCurrentIndex(index < 0 ? 0 : index);
    }
    showGroup();
    if (!instruction.isEmpty())
        selectInstruction(instruction);
    // Patterns may have changed with the catalogue.
    for (int row = 0; row < m_ui.listWidget_program->count(); ++row)
        checkItem(m_ui.listWidget_program->item(row));
}

QStringList ProgramEditor::lines() const
{
    QStringList result;
    for (int row = 0; row < m_ui.listWidget_program->count(); ++row)
        result.append(m_ui.listWidget_program->item(row)->text());
    return result;
}

void ProgramEditor::setLines(const QStringList &lines)
{
    m_ui.listWidget_program->clear();
    m_runLine = -1;
    for (const QString &line : lines) {
        auto *item = new QListWidgetItem(line);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        m_ui.listWidget_program->addItem(item);
        checkItem(item);
    }
    emit programChanged();
}

bool ProgramEditor::openFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        setStatus(tr("Cannot open %1: %2").arg(path, file.errorString()));
        return false;
    }
    if (file.size() > kMaxProgramBytes) {
        setStatus(tr("%1 is too large for a program.").arg(path));
        return false;
    }
    // With an explicit size: the QByteArray overload stops at the first NUL byte.
    const QByteArray bytes = file.readAll();
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    text.remove(QLatin1Char('\r'));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    setLines(lines);
    m_fileName = path;
    setStatus(tr("Opened %1").arg(QFileInfo(path).fileName()));
    return true;
}

bool ProgramEditor::saveFile(const QString &path)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        QString text;
        for (const QString &line : lines())
            text += line + QLatin1Char('\n');
        file.write(text.toUtf8());
        if (file.commit()) {
            m_fileName = path;
            setStatus(tr("Saved %1").arg(QFileInfo(path).fileName()));
            return true;
        }
    }
    setStatus(tr("Cannot save %1: %2").arg(path, file.errorString()));
    return false;
}

QString ProgramEditor::selectedInstruction() const
{
    const QListWidgetItem *item = m_ui.listWidget_instructions->currentItem();
    return item ? item->data(Qt::UserRole).toString() : QString();
}

void ProgramEditor::selectInstruction(const QString &typeKey)
{
    const kelplugin::RLInstruction *instruction = kelplugin::rlCatalog().instruction(typeKey);
    if (!instruction)
        return;
    const int group = m_ui.comboBox_group->findData(instruction->groupKey);
    if (group >= 0)
        m_ui.comboBox_group->setCurrentIndex(group);
    for (int row = 0; row < m_ui.listWidget_instructions->count(); ++row) {
        if (m_ui.listWidget_instructions->item(row)->data(Qt::UserRole).toString() == typeKey) {
            m_ui.listWidget_instructions->setCurrentRow(row);
            return;
        }
    }
}

void ProgramEditor::insertLine(const QString &text)
{
    auto *item = new QListWidgetItem(text);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    const int current = m_ui.listWidget_program->currentRow();
    const int row = current < 0 ? m_ui.listWidget_program->count() : current + 1;
    m_ui.listWidget_program->insertItem(row, item);
    checkItem(item);
    m_ui.listWidget_program->setCurrentRow(row);
    emit programChanged();
}

void ProgramEditor::showGroup()
{
    const QString group = m_ui.comboBox_group->currentData().toString();
    m_ui.listWidget_instructions->clear();
    for (const kelplugin::RLInstruction &instruction : kelplugin::rlCatalog().instructions()) {
        if (instruction.groupKey != group)
            continue;
        auto *item = new QListWidgetItem(instruction.typeKey);
        item->setData(Qt::UserRole, instruction.typeKey);
        item->setToolTip(instruction.description);
        m_ui.listWidget_instructions->addItem(item);
    }
    if (m_ui.listWidget_instructions->count() > 0)
        m_ui.listWidget_instructions->setCurrentRow(0);
    showDescription();
}

void ProgramEditor::showDescription()
{
    const kelplugin::RLInstruction *instruction
        = kelplugin::rlCatalog().instruction(selectedInstruction());
    m_ui.label_description->setText(instruction ? instruction->description : QString());
}

void ProgramEditor::insertWithEditor()
{
    const kelplugin::RLInstruction *instruction
        = kelplugin::rlCatalog().instruction(selectedInstruction());
    if (!instruction)
        return;
    const QString title = tr("Insert %1").arg(instruction->typeKey);
    auto insert = [this](const QString &text) { insertLine(text); };

    if (kelplugin::RLContentBase *editor
        = instruction->insertWidget ? instruction->insertWidget() : nullptr) {
        runDialog(
            title, editor, [editor] { return editor->instructionText(); }, insert);
        return;
    }
    auto *form = new SkeletonForm(instruction->skeleton);
    if (form->fieldCount() > 0) {
        form->setText(instruction->defaultText);
        runDialog(
            title, form, [form] { return form->text(); }, insert);
        return;
    }
    delete form;
    insertLine(instruction->defaultText);
}

void ProgramEditor::insertDefault()
{
    const kelplugin::RLInstruction *instruction
        = kelplugin::rlCatalog().instruction(selectedInstruction());
    if (instruction)
        insertLine(instruction->defaultText);
}

void ProgramEditor::editCurrentLine()
{
    QListWidgetItem *item = m_ui.listWidget_program->currentItem();
    if (!item)
        return;
    const QString line = item->text();
    const kelplugin::RLInstruction *instruction
        = kelplugin::rlCatalog().instruction(LineValidator::instructionName(line));
    const QString title = tr("Edit %1").arg(LineValidator::instructionName(line));
    // The item may be gone by the time the dialog closes.
    QPersistentModelIndex index = m_ui.listWidget_program->currentIndex();
    auto replace = [this, index](const QString &text) {
        if (!index.isValid())
            return;
        m_ui.listWidget_program->item(index.row())->setText(text);
    };

    if (instruction) {
        if (kelplugin::RLContentBase *editor
            = instruction->propertyWidget ? instruction->propertyWidget() : nullptr) {
            editor->setInstructionText(line);
            runDialog(
                title, editor, [editor] { return editor->instructionText(); }, replace);
            return;
        }
        auto *form = new SkeletonForm(instruction->skeleton);
        if (form->fieldCount() > 0) {
            if (!form->setText(line)) {
                form->setText(instruction->defaultText);
                setStatus(tr("The line could not be read into the form; it shows the defaults."));
            }
            runDialog(
                title, form, [form] { return form->text(); }, replace);
            return;
        }
        delete form;
    }
    m_ui.listWidget_program->editItem(item);
}

void ProgramEditor::deleteCurrentLine()
{
    const int row = m_ui.listWidget_program->currentRow();
    if (row < 0)
        return;
    delete m_ui.listWidget_program->takeItem(row);
    emit programChanged();
}

void ProgramEditor::chooseAndOpen()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open program"), m_fileName, tr("Programs (*.prg *.txt);;All files (*)"));
    if (!path.isEmpty())
        openFile(path);
}

void ProgramEditor::chooseAndSave()
{
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save program"), m_fileName, tr("Programs (*.prg *.txt);;All files (*)"));
    if (!path.isEmpty())
        saveFile(path);
}

void ProgramEditor::checkItem(QListWidgetItem *item)
{
    if (!item)
        return;
    const LineValidator::Result result = m_validator.check(item->text());
    decorate([item, &result] {
        item->setData(VerdictRole, int(result.verdict));
        item->setIcon(
            result.verdict == LineValidator::Verdict::Invalid ? invalidMarker() : QIcon());
        item->setToolTip(result.message);
    });
}

void ProgramEditor::setStatus(const QString &text)
{
    m_ui.label_status->setText(text);
}

void ProgramEditor::runDialog(const QString &title, QWidget *content,
    std::function<QString()> produce, std::function<void(const QString &)> apply)
{
    auto *dialog = new QDialog(this);
    dialog->setObjectName(QStringLiteral("dialog_instruction"));
    dialog->setWindowTitle(title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto *layout = new QVBoxLayout(dialog);
    layout->addWidget(content);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    buttons->setObjectName(QStringLiteral("buttonBox"));
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    connect(dialog, &QDialog::accepted, this,
        [produce = std::move(produce), apply = std::move(apply)] { apply(produce()); });
    dialog->open();
}
