#include <algorithm>
#include <string>

#include "fuzz.h"
#include "snapshot/snapshot_line.h"
#include "tools/vorel-snapshot/snapshot.h"

namespace {

using namespace tarnwell;

/// What is told stays within the file, and a table has its points or none.
void RequireSense(std::string_view file) {
  const vorel_snapshot::Snapshot snapshot = vorel_snapshot::ReadSnapshot(file);
  for (const auto& fault : snapshot.faults) {
    fuzz::Require(fault.line <= snapshot.lines && !fault.what.empty());
    fuzz::Require(fault.column == 0 || fault.line != 0);
  }
  fuzz::Require(snapshot.known || snapshot.entries.empty());
  for (const auto& entry : snapshot.entries) {
    fuzz::Require(entry.points.empty() || (entry.row->table && entry.points.size() == entry.row->table->points));
  }
}

/// The bytes with each line as the console would write it: noise alone seldom has a right check character.
std::string Written(std::string_view text) {
  std::string file;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    file += snapshot::FormatSnapshotLine(line) + "\r\n";
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return file;
}

}  // namespace

// Whatever bytes a file has, reading it ends and tells places that are in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  RequireSense(fuzz::Text(data, size));
  const std::string written = Written(fuzz::Text(data, size));
  RequireSense(written);
  RequireSense(written + written);
  return 0;
}
