#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tarnwell::platform {

/// The device behind a port number, 1 or more: its path, or the path of the operator's own link to it, whether or not
/// link and device are there. The system's own ports count only where the operator keeps no link at all. Empty: this
/// computer has no such port.
std::optional<QString> DeviceOfPort(int number);

/// Where a path leads at this moment: the device at the end of a chain of links, or the missing target of a broken one.
QString TargetOf(const QString& path);

/// Why opening `path` failed where nothing stands there, and what to look at.
QString MissingReason(const QString& path);

/// What the port numbers from 1 to `count` stand for, for tool tips: "/dev/ttyUSB0 - FTDI TTL232R", that the device is
/// missing, or that there is no such port. Asks the system once, which takes about 10 ms.
QStringList DescribePorts(int count);

/// Device names ("ttyUSB10") in the order of their port numbers: on-board ports, then adapters, each in natural order.
QStringList InPortOrder(QStringList names);

/// Whether a name that the system lists stands for hardware. `typeFileText` is what the system says of the driver's
/// type, empty where it says nothing.
bool IsRealPort(const QString& name, const QString& typeFileText);

/// Who may open a device, and who asks.
struct DeviceRights {
  QString user;
  QString owner;
  QString group;
  bool groupMayOpen = false;
  bool userListedInGroup = false;  ///< in the group by the system's list, in force from the next login
};

/// Why a device that is there can't be opened by this user, and what to do.
QString DeniedReason(const DeviceRights& rights);

/// Why opening `path` was denied although it exists: no rights to it, or in use by another program.
QString PermissionReason(const QString& path);

}  // namespace tarnwell::platform
