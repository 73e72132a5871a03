#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "snapshot/snapshot_line.h"
#include "support/snapshot_sample.h"
#include "tools/vorel-snapshot/lines.h"
#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::test {
namespace {

constexpr std::size_t kRecord = snapshot::kLineLength + 2;

/// A line that shows its damage by itself makes the whole file damaged, so that the whole is only read for the others.
bool IsFound(const std::string& file, std::size_t at, std::size_t length, const std::string& bytes) {
  const std::size_t start = at / kRecord * kRecord;
  const std::size_t size = at - start + length > kRecord ? 2 * kRecord : kRecord;
  const std::string record = file.substr(start, size).replace(at - start, length, bytes);
  const auto lines = vorel_snapshot::SplitLines(record);
  const auto shows = [](const auto& line) { return !vorel_snapshot::LineFaults(line, 1).empty(); };
  if (std::any_of(lines.begin(), lines.end(), shows)) return true;
  return !vorel_snapshot::ReadSnapshot(std::string(file).replace(at, length, bytes)).faults.empty();
}

using Counts = std::vector<int>;

TEST(SnapshotDamage, OfSingleBytesIsMissedAsOftenAsTheManualSays) {
  for (const auto& [name, expected] :
       {std::pair{"amplifier.txt", Counts{195, 0, 0, 243}}, {"controller.txt", {170, 0, 0, 41}}}) {
    const std::string file = SampleFile(name);
    int changed = 0, dropped = 0, added = 0, swapped = 0;
    for (std::size_t at = 0; at < file.size(); ++at) {
      const auto missed = [&](std::size_t length, const std::string& bytes) {
        return bytes != file.substr(at, length) && !IsFound(file, at, length, bytes) ? 1 : 0;
      };
      for (int code = 0; code < 256; ++code) {
        changed += missed(1, {static_cast<char>(code)});
        added += missed(0, {static_cast<char>(code)});
      }
      dropped += missed(1, "");
      if (at + 1 < file.size()) swapped += missed(2, {file[at + 1], file[at]});
    }
    EXPECT_EQ((Counts{changed, dropped, added, swapped}), expected) << name;
  }
}

}  // namespace
}  // namespace tarnwell::test
