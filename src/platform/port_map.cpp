#include "platform/port_map.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStandardPaths>
#include <algorithm>
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

/// The operator's own link, where there is one.
std::optional<QString> NamedDevice(int number) {
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
  const QString link = folder.filePath(QStringLiteral("tarnwell/ports/com%1").arg(number));
  // exists() follows the link and would miss a broken one: that one is the operator's choice too.
  if (QFileInfo(link).isSymLink() || QFileInfo::exists(link)) return link;
  return std::nullopt;
}

std::optional<QString> ListedDevice(int number, const QStringList& listed) {
  if (number < 1 || number > listed.size()) return std::nullopt;
  return QStringLiteral("/dev/") + listed[number - 1];
}
#endif

QString Description(const QString& path) {
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
