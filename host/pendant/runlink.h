#pragma once

#include <QObject>

class MessageList;
class ProgramEditor;

namespace kelcontroller {
class ProgramRunner;
}

// Runs the program editor's program on the controller: the editor's Run, Step and Stop drive
// the controller's run, and the run's line, state and refusals show in the editor and, as
// operator messages, in the pendant's message list.
class RunLink : public QObject
{
    Q_OBJECT
public:
    RunLink(ProgramEditor *editor, kelcontroller::ProgramRunner *runner, MessageList *messages,
        QObject *parent = nullptr);

private:
    void run();
    void step();
    void showMessage(int level, const QString &text, int line);

    ProgramEditor *m_editor;
    kelcontroller::ProgramRunner *m_runner;
    MessageList *m_messages;
};
