#include "snapshot/snapshot_file.h"

#include <QDir>
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "snapshot/snapshot_line.h"

namespace tarnwell::snapshot {

namespace {

constexpr std::string_view kLineEnd = "\r\n";  // also where the platform's own is shorter
constexpr std::string_view kErrorMark = "#ERROR: FILE MAY BE INCOMPLETE";

constexpr int kMostOfName = 60;  // characters, so that there is room for what is added, in UTF-8 too
constexpr int kMostBeside = 99;
constexpr int kMostLinks = 40;

constexpr bool IsControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

/// Where the links lead, also to what isn't there yet.
QFileInfo TargetOf(const QString& path) {
  QFileInfo target(path);
  for (int links = 0; links < kMostLinks && target.isSymbolicLink(); ++links) target.setFile(target.symLinkTarget());
  return target;
}

/// What is no file, such as a device, has nothing to lose; one that may not be written is refused for what it is; and
/// where the folder takes no new file the older one is written over.
bool CanBeReplaced(const QFileInfo& older) {
  return older.isFile() && QFile(older.filePath()).open(QIODevice::ReadWrite) && QFileInfo(older.path()).isWritable();
}

/// A name that no file can have is refused at once, and not once the device has been asked for everything.
bool CanBeNamed(const QFileInfo& target) {
  std::error_code refused;
  const auto found = std::filesystem::symlink_status(target.filesystemFilePath(), refused).type();
  return found == std::filesystem::file_type::not_found && !target.fileName().isEmpty();
}

/// The first characters of `name`; no pair of surrogates is cut, since half a pair can't be in a file's name.
QString StartOf(const QString& name) {
  const bool cutsPair = name.size() > kMostOfName && name[kMostOfName - 1].isHighSurrogate();
  return name.left(cutsPair ? kMostOfName - 1 : kMostOfName);
}

}  // namespace

bool SnapshotFile::Open() {
  const QFileInfo target = TargetOf(m_path);
  return (target.exists() ? CanBeReplaced(target) : CanBeNamed(target)) ? OpenBeside(target) : OpenInPlace();
}

bool SnapshotFile::OpenBeside(const QFileInfo& target) {
  const QString start = target.dir().filePath(StartOf(target.fileName()));
  for (int number = 1; number <= kMostBeside; ++number) {
    const QString path = start + (number == 1 ? QStringLiteral(".new") : QStringLiteral(".new%1").arg(number));
    m_reason = QStringLiteral("%1 is there already").arg(path);
    if (QFileInfo(path).exists() || QFileInfo(path).isSymLink()) continue;
    m_file.setFileName(path);
    const bool opened = m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
    m_reason = m_file.errorString();
    if (!opened) break;
    m_replaces = target.exists();
    if (m_replaces) m_file.setPermissions(target.permissions());
    m_target = target.filePath();
    return true;
  }
  return false;
}

bool SnapshotFile::OpenInPlace() {
  const bool opened = m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
  m_reason = m_file.errorString();
  return opened;
}

bool SnapshotFile::WriteLine(std::string_view text) {
  std::string printable(text);
  std::replace_if(printable.begin(), printable.end(), IsControl, '?');
  const qint64 start = m_file.pos();
  if (Write(FormatSnapshotLine(printable))) return true;
  m_reason = m_file.errorString();
  if (m_file.resize(start)) m_file.seek(start);
  return false;
}

bool SnapshotFile::Finish() {
  m_file.close();
  const bool closed = m_file.error() == QFileDevice::NoError;
  m_reason = closed ? QStringLiteral("removed while it was written") : m_file.errorString();
  return closed && m_file.exists() && TakeName();
}

bool SnapshotFile::TakeName() {
  if (m_target.isEmpty()) return true;
  std::error_code error;
  std::filesystem::rename(m_file.filesystemFileName(), QFileInfo(m_target).filesystemFilePath(), error);
  m_reason = QString::fromLocal8Bit(error.message().c_str());
  return !error;
}

void SnapshotFile::FinishIncomplete() {
  if (!m_file.isOpen()) return;
  Write(kErrorMark);
  m_file.close();
  if (!m_replaces) TakeName();
}

QString SnapshotFile::Failure() const { return QDir::toNativeSeparators(m_path) + QStringLiteral(": ") + m_reason; }

QString SnapshotFile::Kept() const {
  const bool takesName = m_file.isOpen() && !m_replaces;
  if (m_target.isEmpty() || takesName) return {};
  return (m_replaces ? QStringLiteral("\nThe file that was there is kept. What there is of the new one: ")
                     : QStringLiteral("\nWhat there is of the file: ")) +
         QDir::toNativeSeparators(m_file.fileName());
}

bool SnapshotFile::Write(std::string_view line) {
  const std::string bytes = std::string(line).append(kLineEnd);
  // A disk that fills up takes a part first; why, is told by the write behind it.
  for (std::size_t at = 0; at < bytes.size();) {
    const qint64 taken = m_file.write(bytes.data() + at, static_cast<qint64>(bytes.size() - at));
    if (taken <= 0) return false;
    at += static_cast<std::size_t>(taken);
  }
  return true;
}

}  // namespace tarnwell::snapshot
