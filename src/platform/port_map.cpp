#include "platform/port_map.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStandardPaths>
#include <algorithm>
#include <set>
#include <utility>

namespace tarnwell::platform {

namespace {

bool IsOnBoard(const QString& name) {
  // ttyUSB and ttyACM are adapters; Bluetooth's rfcomm stands with them.
  const auto isPrefix = [&name](QLatin1String prefix) { return name.startsWith(prefix); };
  return isPrefix(QLatin1String("ttyS")) || isPrefix(QLatin1String("ttyAMA")) || isPrefix(QLatin1String("ttymxc"));
}

/// The name with its number apart: "ttyUSB10" is ("ttyUSB", 10).
std::pair<QString, int> Parts(const QString& name) {
  qsizetype digits = name.size();
  while (digits > 0 && name[digits - 1].isDigit()) --digits;
  return {name.left(digits), name.mid(digits).toInt()};
}

#ifdef Q_OS_WIN
QStringList ListedPorts() { return {}; }

std::optional<QString> NamedDevice(int number) { return QStringLiteral("COM%1").arg(number); }

std::optional<QString> ListedDevice(int, const QStringList&) { return std::nullopt; }

bool IsMadeByAProgram(const QString&) { return false; }
#else
QString TypeFileText(const QString& name) {
  QFile file(QStringLiteral("/sys/class/tty/%1/type").arg(name));
  return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()).trimmed() : QString();
}

QStringList ListedPorts() {
  QStringList names;
  const auto listed = QSerialPortInfo::availablePorts();
  for (const QSerialPortInfo& port : listed) {
    if (IsRealPort(port.portName(), TypeFileText(port.portName()))) names.append(port.portName());
  }
  return InPortOrder(names);
}

QDir LinkFolder() {
  return {QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/tarnwell/ports")};
}

/// exists() follows a link and would miss a broken one: that one is the operator's choice too.
bool Stands(const QString& link) { return QFileInfo(link).isSymLink() || QFileInfo::exists(link); }

bool HoldsLinks(const QDir& folder) {
  const QStringList names = folder.entryList(QDir::AllEntries | QDir::System);  // broken links count as System
  return std::any_of(names.begin(), names.end(), [](const QString& name) {
    const auto [word, number] = Parts(name);
    return word == QLatin1String("com") && number > 0;
  });
}

/// The operator's own link. Where links are kept, or this one stood earlier in this run, a missing link is a device
/// that isn't there: the computer's own port of that number may lead to another rack.
std::optional<QString> NamedDevice(int number) {
  static std::set<int> seen;
  const QDir folder = LinkFolder();
  QString link = folder.filePath(QStringLiteral("com%1").arg(number));
  if (Stands(link)) {
    seen.insert(number);
  } else if (!seen.contains(number) && !HoldsLinks(folder)) {
    return std::nullopt;
  }
  return link;
}

std::optional<QString> ListedDevice(int number, const QStringList& listed) {
  if (number < 1 || number > listed.size()) return std::nullopt;
  return QStringLiteral("/dev/") + listed[number - 1];
}

/// Links and pseudo-terminals come and go with a program; the system makes every other device.
bool IsMadeByAProgram(const QString& path) {
  return path.startsWith(QLatin1String("/dev/pts/")) || !path.startsWith(QLatin1String("/dev/"));
}
#endif

QString Description(const QString& path) {
  if (!QFileInfo::exists(path)) return path + QStringLiteral(" - missing");
  const QSerialPortInfo info{QFileInfo(path).fileName()};
  QStringList words = {info.manufacturer(), info.description()};
  // Many adapters repeat the maker's name in the product's.
  if (words[1].startsWith(words[0])) words.removeFirst();
  words.removeAll(QString());
  if (words.isEmpty()) return path;
  return path + QStringLiteral(" - ") + words.join(QLatin1Char(' '));
}

}  // namespace

bool IsRealPort(const QString& name, const QString& typeFileText) {
  // The kernel makes ttyS0 to ttyS31 whether or not there is hardware; type 0 is a place with none.
  return !name.startsWith(QLatin1String("ttyS")) || typeFileText != QLatin1String("0");
}

QStringList InPortOrder(QStringList names) {
  const auto before = [](const QString& a, const QString& b) {
    return std::make_pair(!IsOnBoard(a), Parts(a)) < std::make_pair(!IsOnBoard(b), Parts(b));
  };
  std::sort(names.begin(), names.end(), before);
  return names;
}

std::optional<QString> DeviceOfPort(int number) {
  if (const std::optional<QString> device = NamedDevice(number)) return device;
  return ListedDevice(number, ListedPorts());
}

QString TargetOf(const QString& path) {
#ifdef Q_OS_WIN
  return path;
#else
  const QFileInfo file(path);
  const QString target = file.canonicalFilePath();
  if (!target.isEmpty()) return target;
  return file.isSymLink() ? file.symLinkTarget() : path;
#endif
}

QString MissingReason(const QString& path) {
  return IsMadeByAProgram(path)
             ? QStringLiteral("it doesn't exist (is the program running that makes it, such as vorel-line or socat?)")
             : QStringLiteral("the device doesn't exist (adapter not plugged in?)");
}

QStringList DescribePorts(int count) {
  const QStringList listed = ListedPorts();
  QStringList descriptions;
  for (int number = 1; number <= count; ++number) {
    const std::optional<QString> named = NamedDevice(number);
    const std::optional<QString> device = named ? named : ListedDevice(number, listed);
    descriptions += device ? Description(TargetOf(*device)) : QStringLiteral("No such port on this computer");
  }
  return descriptions;
}

}  // namespace tarnwell::platform
