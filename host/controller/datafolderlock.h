#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QString>

#include <memory>

class QLockFile;

namespace kelcontroller {

// One owner per data folder: two controllers writing the same files would each overwrite what
// the other acknowledged. The lock file names the owner; the lock of a process that died is
// taken over.
class KELPLUGIN_EXPORT DataFolderLock
{
public:
    explicit DataFolderLock(const QString &folder);
    ~DataFolderLock();

    static QString fileName();
    // false, with error naming the process that holds the folder (or why the lock cannot be
    // made), when another one owns it.
    bool acquire(QString *error);
    bool isHeld() const;

private:
    QString m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace kelcontroller
