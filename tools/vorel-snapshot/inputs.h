#pragma once

#include <functional>
#include <optional>

#include "tools/vorel-snapshot/file_commands.h"
#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::vorel_snapshot {

/// One file that was read.
struct Input {
  QString name;  ///< to be shown
  QString path;  ///< to be opened
  bool named;    ///< by the operator; else found in a folder
  Snapshot snapshot;

  /// Something else that stands in the folder.
  bool IsForeign() const { return !named && snapshot.foreign; }
};

/// A file's name that stands for standard input.
inline constexpr QLatin1String kStandardInput("-");

/// The name as it is shown.
QString ShownName(const QString& path);

/// The file, or nothing: why not is told on standard error.
std::optional<Snapshot> ReadNamed(const QString& path, Output& output);

/// What a command couldn't read.
struct Missed {
  int files = 0;
  int folders = 0;  ///< those without a snapshot among them

  bool Any() const { return files + folders > 0; }
};

/// Reads the command's files in turn, those of a folder by name, and those of its folders with --recursive. What
/// couldn't be read is told on standard error.
Missed ReadInputs(Call& call, const std::function<void(Input&)>& take);

/// 0, or 1 for one that is damaged.
int ExitOf(const Snapshot& snapshot);

}  // namespace tarnwell::vorel_snapshot
