#pragma once

#include <QObject>

class CellLink;
class MessageList;
class ProgramEditor;

// Runs the program editor's program on the controller: the editor's Run, Step and Stop drive
// the controller's run, and the run's line, state and refusals show in the editor and, as
// operator messages, in the pendant's message list.
class RunLink : public QObject
{
    Q_OBJECT
public:
    RunLink(
        ProgramEditor *editor, CellLink *cell, MessageList *messages, QObject *parent = nullptr);

private:
    void run();
    void step();
    void showMessage(int level, const QString &text, int line);

    ProgramEditor *m_editor;
    CellLink *m_cell;
    MessageList *m_messages;
};
