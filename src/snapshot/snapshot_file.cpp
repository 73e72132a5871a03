#include "snapshot/snapshot_file.h"

#include <QDir>
#include <algorithm>

#include "snapshot/snapshot_line.h"

namespace tarnwell::snapshot {

namespace {

constexpr std::string_view kLineEnd = "\r\n";  // also where the platform's own is shorter
constexpr std::string_view kErrorMark = "#ERROR: FILE MAY BE INCOMPLETE";

constexpr bool IsControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

}  // namespace

bool SnapshotFile::Open() {
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
  m_reason = QStringLiteral("removed while it was written");
  return m_file.exists();
}

void SnapshotFile::WriteErrorMark() {
  if (m_file.isOpen()) Write(kErrorMark);
}

QString SnapshotFile::Failure() const {
  return QDir::toNativeSeparators(m_file.fileName()) + QStringLiteral(": ") + m_reason;
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
