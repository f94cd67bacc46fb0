#pragma once

#include "linevalidator.h"
#include "ui_programeditor.h"

#include <QStringList>
#include <QWidget>

#include <functional>

class QDialog;
class QListWidgetItem;

namespace kelplugin {
class RLContentBase;
struct RLInstruction;
} // namespace kelplugin

// The pendant's program editor: a robot-language program, one instruction per line, with the
// instructions the plug-ins registered offered by group. New lines come from an instruction's
// insert editor, a form built from its skeleton, or its default text; existing lines are
// edited with the property editor or the skeleton form, or as plain text. Every line is
// checked against its instruction's pattern.
class ProgramEditor : public QWidget
{
    Q_OBJECT
public:
    enum ItemRole { VerdictRole = Qt::UserRole + 1 };
    // Where a run of the program stands: a paused run has done one step and waits for the next.
    enum class RunState { Idle, Running, Paused };

    explicit ProgramEditor(QWidget *parent = nullptr);
    ~ProgramEditor() override;

    // Re-reads the instruction catalogue, e.g. after plug-ins have registered.
    void reloadCatalogue();

    QStringList lines() const;
    void setLines(const QStringList &lines);

    // Plain text, UTF-8, one line per instruction. False (and the reason in the status line)
    // when the file cannot be read or written.
    bool openFile(const QString &path);
    bool saveFile(const QString &path);
    QString fileName() const { return m_fileName; }

    // The selected instruction of the catalogue list, or an empty string.
    QString selectedInstruction() const;
    void selectInstruction(const QString &typeKey);

    // Inserts after the current line, or at the end.
    void insertLine(const QString &text);

    // Simulated time per real time that a run may be given; 1 is real time, the default.
    static const QList<double> &speedFactors();
    double speedFactor() const;

    // A run locks the program against edits and shows the line the controller executes.
    void setRunState(RunState state);
    RunState runState() const { return m_runState; }
    // -1 shows no line.
    void setRunLine(int row);
    int runLine() const { return m_runLine; }
    // A line the controller refused keeps its marker and reason until the program changes.
    void markRefusedLine(int row, const QString &reason);

signals:
    void programChanged();
    void runRequested();
    void stepRequested();
    void stopRequested();
    void speedFactorChanged(double factor);

private:
    void showGroup();
    void showDescription();
    void insertWithEditor();
    void insertDefault();
    void editCurrentLine();
    void deleteCurrentLine();
    void chooseAndOpen();
    void chooseAndSave();
    void checkItem(QListWidgetItem *item);
    void setStatus(const QString &text);
    // Runs change, which alters how items look, without counting it as an edit of the program.
    void decorate(const std::function<void()> &change);
    // Shows content in a dialog; on OK, apply receives the text content produces.
    void runDialog(const QString &title, QWidget *content, std::function<QString()> produce,
        std::function<void(const QString &)> apply);

    Ui::ProgramEditor m_ui;
    LineValidator m_validator;
    QString m_fileName;
    bool m_checking = false;
    RunState m_runState = RunState::Idle;
    int m_runLine = -1;
};
