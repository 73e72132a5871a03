#include <QDir>
#include <QFileInfo>

#include "platform/port_map.h"

#ifdef Q_OS_UNIX
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#endif

namespace tarnwell::platform {

namespace {

/// The file by which serial programs tell each other that they hold a device; empty when there is none.
QString LockFileOf(const QString& path) {
  QString device = path.startsWith(QLatin1String("/dev/")) ? path.mid(5) : path;
  const QString name = QStringLiteral("LCK..") + device.replace(QLatin1Char('/'), QLatin1Char('_'));
  for (const QLatin1String folder : {QLatin1String("/var/lock"), QLatin1String("/run/lock"), QLatin1String("/tmp")}) {
    const QString file = QDir(folder).filePath(name);
    if (QFileInfo::exists(file)) return file;
  }
  return {};
}

QString InUseReason(const QString& path) {
  const QString lockFile = LockFileOf(path);
  const QString reason = QStringLiteral("in use by another program");
  return lockFile.isEmpty() ? reason : reason + QStringLiteral(" (lock file %1)").arg(lockFile);
}

#ifdef Q_OS_UNIX
bool ListedInGroup(const QString& user, const QString& group) {
  const struct group* entry = getgrnam(group.toLocal8Bit().constData());
  if (entry == nullptr) return false;
  for (char** member = entry->gr_mem; *member != nullptr; ++member) {
    if (QString::fromLocal8Bit(*member) == user) return true;
  }
  return false;
}

QString UserName() {
  const struct passwd* entry = getpwuid(getuid());
  return entry == nullptr ? QString::number(getuid()) : QString::fromLocal8Bit(entry->pw_name);
}

DeviceRights RightsOf(const QFileInfo& device) {
  DeviceRights rights;
  rights.user = UserName();
  rights.owner = device.owner();
  rights.group = device.group();
  if (rights.group.isEmpty()) rights.group = QString::number(device.groupId());
  rights.groupMayOpen = device.permissions().testFlags(QFile::ReadGroup | QFile::WriteGroup);
  rights.userListedInGroup = ListedInGroup(rights.user, rights.group);
  return rights;
}
#endif

}  // namespace

QString DeniedReason(const DeviceRights& rights) {
  if (!rights.groupMayOpen) {
    return QStringLiteral(
               "only the user %1 may open it. Ask the administrator for a udev rule that gives it to the group dialout "
               "(GROUP=\"dialout\", MODE=\"0660\").")
        .arg(rights.owner);
  }
  const QString group = QStringLiteral("only members of the group %1 may open it").arg(rights.group);
  if (rights.userListedInGroup) {
    return group + QStringLiteral(". You are one since you last logged in: log out and in again.");
  }
  return group +
         QStringLiteral(". Run \"sudo usermod -aG %1 %2\", then log out and in again.").arg(rights.group, rights.user);
}

QString PermissionReason(const QString& path) {
#ifdef Q_OS_UNIX
  const bool mayOpen = access(path.toLocal8Bit().constData(), R_OK | W_OK) == 0;
  if (!mayOpen) return DeniedReason(RightsOf(QFileInfo(path)));
#endif
  return InUseReason(path);
}

}  // namespace tarnwell::platform
