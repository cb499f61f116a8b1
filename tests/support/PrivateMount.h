// Mounts of the test process's own: what a test mounts vanishes with the process, even on a crash.
#pragma once

#include <QFile>
#include <QString>

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace tw::test {

// Enters a private mount namespace, through a user namespace when not root; false when the system
// allows neither.
inline bool enterPrivateMountNamespace() {
    const auto write = [](const char* path, const QByteArray& bytes) {
        QFile file(QString::fromLatin1(path));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    if (geteuid() != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || !write("/proc/self/setgroups", "deny") ||
            !write("/proc/self/uid_map", "0 " + QByteArray::number(geteuid()) + " 1") ||
            !write("/proc/self/gid_map", "0 " + QByteArray::number(getegid()) + " 1")) {
            return false;
        }
    } else if (unshare(CLONE_NEWNS) != 0) {
        return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// Makes `directory` read-only in this namespace, which stops root as well; false on failure.
inline bool mountReadOnly(const QString& directory) {
    const QByteArray path = QFile::encodeName(directory);
    struct statvfs fs {};
    if (statvfs(path.constData(), &fs) != 0 ||
        mount(path.constData(), path.constData(), nullptr, MS_BIND, nullptr) != 0) {
        return false;
    }
    // A user namespace may not drop the flags the mount already has, only add to them.
    unsigned long flags = MS_REMOUNT | MS_BIND | MS_RDONLY;
    flags |= (fs.f_flag & ST_NOSUID) != 0 ? MS_NOSUID : 0;
    flags |= (fs.f_flag & ST_NODEV) != 0 ? MS_NODEV : 0;
    flags |= (fs.f_flag & ST_NOEXEC) != 0 ? MS_NOEXEC : 0;
    return mount(nullptr, path.constData(), nullptr, flags, nullptr) == 0;
}

} // namespace tw::test
