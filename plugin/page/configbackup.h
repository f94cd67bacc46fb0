#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonObject>
#include <QStringList>

// The backup file of the cell's configuration: the five records in one JSON document with its
// format name, version, time and the controller it came from. Keys are sorted and indented,
// so that two backups compare line by line.
class ConfigBackup
{
    Q_DECLARE_TR_FUNCTIONS(ConfigBackup)
public:
    static const QString &formatName();
    static constexpr int version = 1;
    // A real backup is some ten kilobytes; anything far larger is no backup.
    static constexpr qint64 maxFileSize = 4 * 1024 * 1024;

    // weld_io_config, weld_setting_config, weld_curve_config, weld_param_config,
    // weld_param_match, in the pages' order.
    static const QStringList &recordKeys();

    static QByteArray write(
        const QJsonObject &records, const QJsonObject &controller, const QDateTime &time);

    struct Contents
    {
        QJsonObject records;
        QJsonObject controller;
        QString created;
        QString error; // why the whole file is refused; empty when it was read
    };
    static Contents read(const QByteArray &bytes);

    // Why a record of the file does not fit what the controller keeps: an unknown key, a value
    // of another type than the controller's own, a set name outside the pages' range. current is
    // the controller's record, the reference for keys and types. Empty when it fits.
    static QString shapeRefusal(
        const QString &recordKey, const QJsonObject &record, const QJsonObject &current);
};
