#include "runlink.h"

#include "messagelist.h"
#include "programeditor.h"

#include "controller/programrunner.h"

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

RunLink::RunLink(ProgramEditor *editor, kelcontroller::ProgramRunner *runner, MessageList *messages,
    QObject *parent)
    : QObject(parent), m_editor(editor), m_runner(runner), m_messages(messages)
{
    using Runner = kelcontroller::ProgramRunner;
    connect(editor, &ProgramEditor::runRequested, this, &RunLink::run);
    connect(editor, &ProgramEditor::stepRequested, this, &RunLink::step);
    connect(editor, &ProgramEditor::stopRequested, runner, &Runner::stop);
    connect(editor, &ProgramEditor::speedFactorChanged, runner, &Runner::setSpeedFactor);
    connect(runner, &Runner::lineChanged, editor, &ProgramEditor::setRunLine);
    connect(runner, &Runner::stateChanged, editor,
        [editor](Runner::State state) { editor->setRunState(editorState(state)); });
    connect(runner, &Runner::message, this, &RunLink::showMessage);
    runner->setSpeedFactor(editor->speedFactor());
    editor->setRunState(editorState(runner->state()));
}

void RunLink::run()
{
    m_runner->run(m_editor->lines(), QFileInfo(m_editor->fileName()).fileName());
}

void RunLink::step()
{
    m_runner->step(m_editor->lines(), QFileInfo(m_editor->fileName()).fileName());
}

void RunLink::showMessage(int level, const QString &text, int line)
{
    if (level > 0 && line >= 0)
        m_editor->markRefusedLine(line, text);
    m_messages->addMessage(QStringLiteral("controller"), level, text);
}
