#include "tools/vorel-snapshot/inputs.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "tools/shared/files.h"

namespace tarnwell::vorel_snapshot {

namespace {

namespace fs = std::filesystem;

/// What the files of a command come to.
class InputReader {
 public:
  InputReader(Call& call, const std::function<void(Input&)>& take)
      : m_call(call), m_take(take), m_recursive(call.Has("recursive")) {}

  Missed All() {
    for (const QString& name : m_call.files) {
      std::error_code none;
      if (name == kStandardInput || !fs::is_directory(tools::PathOf(name), none)) {
        ReadFile(name, true);
        continue;
      }
      const int before = m_snapshots;
      if (ReadFolder(name) && m_snapshots == before) MissFolder(name, QStringLiteral("no snapshot is in it"));
    }
    return m_missed;
  }

 private:
  void MissFolder(const QString& name, const QString& why) {
    ++m_missed.folders;
    Complain(m_call.output, tools::Told(name, why));
  }

  void ReadFile(const QString& name, bool named) {
    auto snapshot = ReadNamed(name, m_call.output);
    if (!snapshot) {
      ++m_missed.files;
      return;
    }
    Input input{ShownName(name), name, named, std::move(*snapshot)};
    if (!input.IsForeign()) ++m_snapshots;
    m_take(input);
  }

  /// False: the folder can't be read, which was told.
  bool ReadFolder(const QString& name) {
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator at(tools::PathOf(name), error), end; !error && at != end; at.increment(error)) {
      entries.push_back(*at);
    }
    if (error) {
      MissFolder(name, QString::fromLocal8Bit(error.message().c_str()));
      return false;
    }
    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry& entry : entries) ReadEntry(entry);
    return true;
  }

  void ReadEntry(const fs::directory_entry& entry) {
    std::error_code none;
    const QString name = tools::NameFromPath(entry.path());
    // A link to a folder may lead back; and whoever opens a pipe waits.
    if (entry.is_directory(none) && !entry.is_symlink(none)) {
      if (m_recursive) ReadFolder(name);
    } else if (entry.is_regular_file(none)) {
      ReadFile(name, false);
    }
  }

  Call& m_call;
  const std::function<void(Input&)>& m_take;
  bool m_recursive;
  int m_snapshots = 0;
  Missed m_missed;
};

/// Something may stand behind a snapshot that made its file larger than any: that is read as far as one goes.
Snapshot ReadBytes(std::string_view bytes) {
  Snapshot snapshot = ReadSnapshot(bytes.substr(0, tools::kMostBytes));
  if (bytes.size() <= tools::kMostBytes) return snapshot;
  if (!snapshot.known) return {.known = false, .foreign = true, .faults = {{0, 0, "not a snapshot: larger than any"}}};
  snapshot.faults.insert(snapshot.faults.begin(), {0, 0, "larger than any snapshot: its first 64 KiB are read"});
  return snapshot;
}

}  // namespace

QString ShownName(const QString& path) {
  return path == kStandardInput ? QStringLiteral("standard input") : tools::ShownName(path);
}

std::optional<Snapshot> ReadNamed(const QString& path, Output& output) {
  QString error;
  const auto bytes = path == kStandardInput ? tools::LoadStandardInput(error) : tools::LoadFile(path, error);
  if (bytes) return ReadBytes({bytes->constData(), static_cast<std::size_t>(bytes->size())});
  Complain(output, tools::Told(ShownName(path), error));
  return std::nullopt;
}

Missed ReadInputs(Call& call, const std::function<void(Input&)>& take) { return InputReader(call, take).All(); }

int ExitOf(const Snapshot& snapshot) { return snapshot.faults.empty() ? kExitFine : kExitDamaged; }

}  // namespace tarnwell::vorel_snapshot
