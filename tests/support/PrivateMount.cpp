#include "PrivateMount.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace tw::test {

namespace {

bool writeFile(const char* path, const QByteArray& bytes) {
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

bool enterPrivateMountNamespace() {
    if (geteuid() != 0) {
        const QByteArray uid = QByteArray::number(geteuid());
        const QByteArray gid = QByteArray::number(getegid());
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 ||
            !writeFile("/proc/self/setgroups", "deny") ||
            !writeFile("/proc/self/uid_map", "0 " + uid + " 1") ||
            !writeFile("/proc/self/gid_map", "0 " + gid + " 1")) {
            return false;
        }
    } else if (unshare(CLONE_NEWNS) != 0) {
        return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountReadOnly(const QString& directory) {
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
