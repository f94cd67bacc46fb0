#pragma once

#include <QTreeWidget>

// The pendant's operator message list: newest first, with time, source and level colour.
class MessageList : public QTreeWidget
{
    Q_OBJECT
public:
    explicit MessageList(QWidget *parent = nullptr);

    void addMessage(const QString &source, int level, const QString &text);

private:
    static constexpr int kMaxMessages = 500;
};
