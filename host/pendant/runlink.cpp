#include "runlink.h"

#include "messagelist.h"
#include "programeditor.h"

#include "celllink.h"

#include <QFileInfo>

namespace {

ProgramEditor::RunState editorState(kelcontroller::ProgramRunner::State state)
{
    switch (state) {
    case kelcontroller::ProgramRunner::State::Running:
        return ProgramEditor::RunState::Running;
    case kelcontroller::ProgramRunner::State::Stepping:
        return ProgramEditor::RunState::Paused;
    case kelcontroller::ProgramRunner::State::Idle:
        break;
    }
    return ProgramEditor::RunState::Idle;
}

} // namespace

RunLink::RunLink(ProgramEditor *editor, CellLink *cell, MessageList *messages, QObject *parent)
    : QObject(parent), m_editor(editor), m_cell(cell), m_messages(messages)
{
    connect(editor, &ProgramEditor::runRequested, this, &RunLink::run);
    connect(editor, &ProgramEditor::stepRequested, this, &RunLink::step);
    connect(editor, &ProgramEditor::stopRequested, cell, &CellLink::stop);
    connect(editor, &ProgramEditor::speedFactorChanged, cell, &CellLink::setSpeedFactor);
    connect(cell, &CellLink::runLineChanged, editor, &ProgramEditor::setRunLine);
    connect(cell, &CellLink::runStateChanged, editor,
        [editor](kelcontroller::ProgramRunner::State state) {
            editor->setRunState(editorState(state));
        });
    connect(cell, &CellLink::runMessage, this, &RunLink::showMessage);
    cell->setSpeedFactor(editor->speedFactor());
    editor->setRunState(editorState(cell->state().run));
}

void RunLink::run()
{
    m_cell->run(m_editor->lines(), QFileInfo(m_editor->fileName()).fileName());
}

void RunLink::step()
{
    m_cell->step(m_editor->lines(), QFileInfo(m_editor->fileName()).fileName());
}

void RunLink::showMessage(int level, const QString &text, int line)
{
    if (level > 0 && line >= 0)
        m_editor->markRefusedLine(line, text);
    m_messages->addMessage(tr("controller"), level, text);
}
