#include "messagelist.h"

#include <QHeaderView>
#include <QTime>

MessageList::MessageList(QWidget *parent) : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("messageList"));
    setColumnCount(4);
    setHeaderLabels({tr("Time"), tr("Level"), tr("Source"), tr("Message")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    header()->setStretchLastSection(true);
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
}

void MessageList::addMessage(const QString &source, int level, const QString &text)
{
    QString levelText;
    QColor colour;
    switch (level) {
    case 0:
        levelText = tr("Info");
        colour = QColor(0x1b, 0x7a, 0x2e);
        break;
    case 1:
        levelText = tr("Warning");
        colour = QColor(0xb3, 0x6b, 0x00);
        break;
    default:
        levelText = tr("Error");
        colour = QColor(0xc0, 0x1c, 0x28);
        break;
    }
    auto *item = new QTreeWidgetItem(
        {QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz")), levelText, source, text});
    for (int c = 0; c < columnCount(); ++c)
        item->setForeground(c, colour);
    insertTopLevelItem(0, item);
    while (topLevelItemCount() > kMaxMessages)
        delete takeTopLevelItem(topLevelItemCount() - 1);
}
