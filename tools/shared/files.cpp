#include "tools/shared/files.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <string_view>
#include <system_error>

#include "platform/text_encoding.h"
#include "tools/vorel-line/recording.h"
#include "tools/vorel-snapshot/snapshot.h"

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#endif

namespace tarnwell::tools {

namespace {

constexpr char16_t kEscape = 0xDC00;

bool IsEscaped(QChar character) {
  return character.unicode() >= kEscape + 0x80 && character.unicode() <= kEscape + 0xFF;
}

/// A lone low surrogate; the second half of a pair is part of a character.
bool IsEscapeAt(const QString& name, qsizetype at) {
  return IsEscaped(name[at]) && (at == 0 || !name[at - 1].isHighSurrogate());
}

bool HasEscape(const QString& name) {
  for (qsizetype i = 0; i < name.size(); ++i) {
    if (IsEscapeAt(name, i)) return true;
  }
  return false;
}

#ifndef Q_OS_WIN
QString PartFromBytes(const QByteArray& part) {
  const QString text = QString::fromUtf8(part);
  if (text.toUtf8() == part) return text;
  QString escaped;
  for (const char byte : part) {
    const auto code = static_cast<unsigned char>(byte);
    escaped += QChar(static_cast<char16_t>(code < 0x80 ? code : kEscape + code));
  }
  return escaped;
}
#endif

QString ReasonOf(int error) {
  return error == 0 ? QStringLiteral("can't be read")
                    : QString::fromLocal8Bit(std::generic_category().message(error).c_str());
}

/// By what is in it: also one that is damaged, or a further part of a recording.
bool IsSnapshotOrRecording(const QByteArray& bytes) {
  const std::string_view start(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  return start.starts_with(vorel_line::kRecordingHead) || vorel_snapshot::ReadSnapshot(start).known;
}

/// Why the file may not be put there; empty: nothing is against it.
QString Objection(const QString& name) {
  const QFileInfo target(name);
  if (name == QLatin1String("-")) return QString::fromLatin1(kDashIsNoFile);
  if (HasEscape(name)) return QStringLiteral("a name that is no UTF-8 is only read");
  const bool taken = target.exists() || target.isSymLink();
  if (!taken) return {};
  if (!target.isFile()) return QStringLiteral("exists and is no regular file: not replaced");
  QString unknown;
  const auto bytes = LoadFile(name, unknown);
  if (!bytes) return QStringLiteral("exists and can't be read: not replaced");
  return IsSnapshotOrRecording(*bytes) ? QStringLiteral("is a snapshot or a recording: not replaced") : QString();
}

/// A disk that fills up takes a part first; why, is told by the write behind it.
bool TakesAll(QIODevice& file, const QByteArray& bytes) {
  for (qsizetype at = 0; at < bytes.size();) {
    const qint64 taken = file.write(bytes.constData() + at, bytes.size() - at);
    if (taken <= 0) return false;
    at += taken;
  }
  return true;
}

}  // namespace

QString NameFromBytes(const QByteArray& bytes) {
#ifdef Q_OS_WIN
  return QFile::decodeName(bytes);
#else
  // Folder by folder, so that a name in another encoding doesn't make those of its folders unreadable.
  QStringList parts;
  for (const QByteArray& part : bytes.split('/')) parts += PartFromBytes(part);
  return parts.join(QLatin1Char('/'));
#endif
}

QString NameFromPath(const std::filesystem::path& path) {
#ifdef Q_OS_WIN
  return QString::fromStdWString(path.native());
#else
  return NameFromBytes(QByteArray::fromStdString(path.native()));
#endif
}

std::filesystem::path PathOf(const QString& name) {
#ifdef Q_OS_WIN
  return name.toStdWString();
#else
  QByteArray bytes;
  for (qsizetype i = 0; i < name.size();) {
    const qsizetype size = name[i].isHighSurrogate() ? 2 : 1;
    bytes += IsEscapeAt(name, i) ? QByteArray(1, static_cast<char>(name[i].unicode() - kEscape))
                                 : name.mid(i, size).toUtf8();
    i += size;
  }
  return bytes.toStdString();
#endif
}

QString ShownName(const QString& name) {
  QString shown = platform::Printable(name);
  for (qsizetype i = 0; i < shown.size(); ++i) {
    if (shown[i] == QLatin1Char('\n') || IsEscapeAt(shown, i)) shown[i] = QChar::ReplacementCharacter;
  }
  return shown;
}

QString Told(const QString& name, const QString& why) {
  return name.isEmpty() ? QStringLiteral("a file's name is empty") : ShownName(name) + QStringLiteral(": ") + why;
}

std::optional<QByteArray> LoadFile(const QString& name, QString& error) {
  const std::filesystem::path path = PathOf(name);
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown)) {
    error = QStringLiteral("is a directory");
    return std::nullopt;
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  // A device has no size, so the bytes that come are counted.
  QByteArray bytes(static_cast<qsizetype>(kMostBytes) + 1, Qt::Uninitialized);
  if (file) file.read(bytes.data(), bytes.size());
  if (!file.is_open() || file.bad()) {
    error = ReasonOf(errno);
    return std::nullopt;
  }
  bytes.truncate(static_cast<qsizetype>(file.gcount()));
  return bytes;
}

std::optional<QByteArray> LoadStandardInput(QString& error) {
#ifdef Q_OS_WIN
  _setmode(_fileno(stdin), _O_BINARY);
#endif
  QByteArray bytes(static_cast<qsizetype>(kMostBytes) + 1, Qt::Uninitialized);
  errno = 0;
  const std::size_t count = std::fread(bytes.data(), 1, static_cast<std::size_t>(bytes.size()), stdin);
  bytes.truncate(static_cast<qsizetype>(count));
  if (std::ferror(stdin) == 0) return bytes;
  error = ReasonOf(errno);
  return std::nullopt;
}

bool IsSameFile(const QString& a, const QString& b) {
  std::error_code unknown;
  return std::filesystem::equivalent(PathOf(a), PathOf(b), unknown);
}

void SurviveFileLimit() {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

bool WriteWhole(const QString& name, const QByteArray& bytes, QString& error) {
  error = Objection(name);
  if (!error.isEmpty()) return false;
  QSaveFile file(name);
  if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && TakesAll(file, bytes) && file.commit()) return true;
  error = file.errorString();
  return false;
}

}  // namespace tarnwell::tools
