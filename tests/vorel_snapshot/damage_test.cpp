#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "snapshot/snapshot_line.h"
#include "support/snapshot_sample.h"
#include "tools/vorel-snapshot/lines.h"
#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::test {
namespace {

constexpr std::size_t kRecord = snapshot::kLineLength + 2;

/// So many bytes of the file, and what stands there instead.
struct Edit {
  std::size_t length;
  std::string bytes;
};
using Edits = std::vector<Edit>;

Edits Any(std::size_t length) {
  Edits edits;
  for (int code = 0; code < 256; ++code) edits.push_back({length, {static_cast<char>(code)}});
  return edits;
}

/// A line that shows its damage by itself makes the whole file damaged, so that the whole is only read for the others.
bool IsFound(const std::string& file, std::size_t at, const Edit& edit) {
  const std::size_t start = at / kRecord * kRecord;
  const std::size_t size = at - start + edit.length > kRecord ? 2 * kRecord : kRecord;
  const std::string record = file.substr(start, size).replace(at - start, edit.length, edit.bytes);
  const auto lines = vorel_snapshot::SplitLines(record);
  const auto shows = [](const auto& line) { return !vorel_snapshot::LineFaults(line, 1).empty(); };
  if (std::any_of(lines.begin(), lines.end(), shows)) return true;
  const std::string damaged = std::string(file).replace(at, edit.length, edit.bytes);
  return !vorel_snapshot::ReadSnapshot(damaged).faults.empty();
}

/// How much was tried on an amplifier's file and a controller's, and what of it was not found, by label.
std::string Damage(Edits (*damage)(std::string_view rest)) {
  int tried = 0;
  std::map<std::string, int> missed;
  for (const std::string& file : {SampleFile("amplifier.txt"), SampleFile("controller.txt")}) {
    for (std::size_t at = 0; at < file.size(); ++at) {
      const std::size_t start = at / kRecord * kRecord;
      for (const Edit& edit : damage(std::string_view(file).substr(at))) {
        if (edit.bytes == file.substr(at, edit.length)) continue;
        ++tried;
        if (!IsFound(file, at, edit)) ++missed[file.substr(start, file.find(']', start) + 1 - start)];
      }
    }
  }
  std::string told = std::to_string(tried) + " tried";
  for (const auto& [label, count] : missed) told += ", " + label + " " + std::to_string(count);
  return told;
}

TEST(SnapshotDamage, OfSingleBytesIsFoundButInThePlacesToldInTheManual) {
  const auto change = [](std::string_view) { return Any(1); };
  const auto drop = [](std::string_view) { return Edits{{1, ""}}; };
  const auto add = [](std::string_view) { return Any(0); };
  const auto swap = [](std::string_view rest) { return rest.size() > 1 ? Edits{{2, {rest[1], rest[0]}}} : Edits{}; };
  EXPECT_EQ(Damage(change),
            "1526430 tried, [alarm style] 4, [amp shutdown] 3, [aux alarm sense] 3, [file description] 299, [firmware] "
            "28, [hw platform] 6, [pin diodes] 4, [redundancy controller] 7, [sspa] 8, [thermal fan control] 3");
  EXPECT_EQ(Damage(drop), "5986 tried");
  EXPECT_EQ(Damage(add), "1532416 tried");
  EXPECT_EQ(Damage(swap),
            "2720 tried, [-10v rail] 3, [11v lc rail] 3, [11v rail] 3, [14v rail] 4, [5v rail] 3, [address] 2, [alarm "
            "style] 7, [amp shutdown] 2, [aux alarm sense] 3, [file description] 37, [firmware] 26, [gain adjust] 2, "
            "[hw platform] 3, [pin diode table (dB,DAC)] 53, [pin diodes] 1, [redundancy controller] 4, [rf level "
            "table (dBm,V)] 83, [rf level] 3, [rf max] 3, [rf temp comp points (\xB0\x43,dB)] 4, [software] 2, [sspa] "
            "11, [sys temp comp points (\xB0\x43,dB)] 11, [temp amp1] 1, [thermal fan control] 2, [time dd/mm/yyyy "
            "hh:mm:ss] 8");
}

}  // namespace
}  // namespace tarnwell::test
