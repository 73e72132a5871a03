#pragma once

#include <QByteArray>
#include <QString>
#include <filesystem>
#include <optional>

namespace tarnwell::tools {

// A file's name goes through the program as QString, also where it is no UTF-8: such a byte stands in it as a lone
// surrogate, U+DC00 and the byte, and becomes the byte again where the file is opened.

/// The name of a command line's argument.
QString NameFromBytes(const QByteArray& bytes);
QString NameFromPath(const std::filesystem::path& path);
std::filesystem::path PathOf(const QString& name);

/// The name on one line of valid text: control characters, and bytes that are no UTF-8, are replaced.
QString ShownName(const QString& name);

/// The name and what is wrong with it, as a message.
QString Told(const QString& name, const QString& why);

/// Why "-" is refused behind -o: elsewhere it stands for a stream, and a file of that name nobody wants.
inline constexpr const char* kDashIsNoFile = "is no file; one of that name is ./-";

/// Some ten snapshots; what is larger is something else.
inline constexpr std::size_t kMostBytes = 1 << 16;

/// The file's bytes, or why not. Of a larger one kMostBytes and one more, which tells that it is.
std::optional<QByteArray> LoadFile(const QString& name, QString& error);

/// The same of what comes in on standard input.
std::optional<QByteArray> LoadStandardInput(QString& error);

/// Whether both name one file that exists, by links too.
bool IsSameFile(const QString& a, const QString& b);

/// A write beyond the limit that the user set for files fails then, and is told like a full disk; without this the
/// program is killed.
void SurviveFileLimit();

/// Puts the whole file there, or leaves what was there and says why. What is no regular file isn't replaced: a device,
/// a pipe or a link to one would be gone. Nor is a snapshot or a recording, which nobody can make anew.
bool WriteWhole(const QString& name, const QByteArray& bytes, QString& error);

}  // namespace tarnwell::tools
