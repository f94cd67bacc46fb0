#include "datafolderlock.h"

#include <QDir>
#include <QLockFile>

namespace kelcontroller {

DataFolderLock::DataFolderLock(const QString &folder) : m_folder(folder)
{ }

DataFolderLock::~DataFolderLock() = default;

QString DataFolderLock::fileName()
{
    return QStringLiteral("kelcontroller.lock");
}

bool DataFolderLock::acquire(QString *error)
{
    if (!QDir().mkpath(m_folder)) {
        *error = QStringLiteral("the data folder %1 cannot be created").arg(m_folder);
        return false;
    }
    m_lock.reset(new QLockFile(QDir(m_folder).filePath(fileName())));
    // Only a dead owner makes a lock stale, never its age: a controller runs for months.
    m_lock->setStaleLockTime(0);
    if (m_lock->tryLock(0))
        return true;
    qint64 pid = 0;
    QString host;
    QString program;
    switch (m_lock->error()) {
    case QLockFile::LockFailedError:
        if (m_lock->getLockInfo(&pid, &host, &program)) {
            *error = QStringLiteral("the data folder %1 is in use by %2 (process %3 on %4); "
                                    "one controller at a time keeps its data there")
                         .arg(m_folder, program.isEmpty() ? QStringLiteral("a program") : program)
                         .arg(pid)
                         .arg(host.isEmpty() ? QStringLiteral("this computer") : host);
        } else {
            *error = QStringLiteral("the data folder %1 is in use by another program (%2)")
                         .arg(m_folder, QDir(m_folder).filePath(fileName()));
        }
        break;
    case QLockFile::PermissionError:
        *error = QStringLiteral("permission denied: the lock file %1 cannot be made")
                     .arg(QDir(m_folder).filePath(fileName()));
        break;
    default:
        // QLockFile keeps errno to itself; these are what is left.
        *error = QStringLiteral("the lock file %1 cannot be made: the folder is read-only, full "
                                "or gone")
                     .arg(QDir(m_folder).filePath(fileName()));
        break;
    }
    m_lock.reset();
    return false;
}

bool DataFolderLock::isHeld() const
{
    return m_lock && m_lock->isLocked();
}

} // namespace kelcontroller
