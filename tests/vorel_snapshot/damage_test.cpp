#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "snapshot/snapshot_line.h"
#include "support/snapshot_sample.h"
#include "tools/vorel-snapshot/lines.h"
#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::test {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kRecord = snapshot::kLineLength + 2;

bool IsWhole(const std::string& file) { return vorel_snapshot::ReadSnapshot(file).faults.empty(); }

/// What was tried on a file, and what of it was not found, by label.
class Tally {
 public:
  explicit Tally(const Lines& lines) : m_file(SnapshotFile(lines)) {}

  /// Puts `bytes` in the place of `length` bytes of the file. A line that shows its damage by itself makes the whole
  /// file damaged, so that the whole is only read for the others.
  void Try(std::size_t at, std::size_t length, const std::string& bytes) {
    ++m_tried;
    const std::size_t start = at / kRecord * kRecord;
    const std::size_t size = at - start + length > kRecord ? 2 * kRecord : kRecord;
    const std::string record = m_file.substr(start, size).replace(at - start, length, bytes);
    if (ShowsByItself(record) || !IsWhole(std::string(m_file).replace(at, length, bytes))) return;
    ++m_missed[m_file.substr(start, m_file.find(']', start) + 1 - start)];
  }

  const std::string& File() const { return m_file; }

  std::string Told() const {
    std::string text = std::to_string(m_tried) + " tried";
    for (const auto& [label, count] : m_missed) text += ", " + label + " " + std::to_string(count);
    return text;
  }

 private:
  static bool ShowsByItself(std::string_view record) {
    const auto shows = [](const auto& line) { return !vorel_snapshot::LineFaults(line, 1).empty(); };
    const auto lines = vorel_snapshot::SplitLines(record);
    return std::any_of(lines.begin(), lines.end(), shows);
  }

  std::string m_file;
  int m_tried = 0;
  std::map<std::string, int> m_missed;
};

void Change(Tally& tally, std::size_t at) {
  for (int code = 0; code < 256; ++code) {
    const char byte = static_cast<char>(code);
    if (byte != tally.File()[at]) tally.Try(at, 1, {byte});
  }
}

void Drop(Tally& tally, std::size_t at) { tally.Try(at, 1, {}); }

void Add(Tally& tally, std::size_t at) {
  for (int code = 0; code < 256; ++code) tally.Try(at, 0, {static_cast<char>(code)});
}

/// The byte with the next, where the two differ.
void Swap(Tally& tally, std::size_t at) {
  const std::string& file = tally.File();
  if (at + 1 < file.size() && file[at] != file[at + 1]) tally.Try(at, 2, {file[at + 1], file[at]});
}

std::string Damage(const Lines& lines, void (*damage)(Tally&, std::size_t)) {
  Tally tally(lines);
  for (std::size_t at = 0; at < tally.File().size(); ++at) damage(tally, at);
  return tally.Told();
}

TEST(SnapshotDamage, OfSingleBytesIsFoundButInThePlacesToldInTheManual) {
  const struct {
    const char* what;
    void (*damage)(Tally&, std::size_t);
    const char* amplifier;
    const char* controller;
  } cases[] = {
      {"changed", Change,
       "1191870 tried, [alarm style] 4, [amp shutdown] 3, [aux alarm sense] 3, [file description] 150, [firmware] 14, "
       "[hw platform] 6, [pin diodes] 4, [sspa] 8, [thermal fan control] 3",
       "334560 tried, [file description] 149, [firmware] 14, [redundancy controller] 7"},
      {"dropped", Drop, "4674 tried", "1312 tried"},
      {"added", Add, "1196544 tried", "335872 tried"},
      {"swapped", Swap,
       "2307 tried, [-10v rail] 3, [11v lc rail] 3, [11v rail] 3, [14v rail] 4, [5v rail] 3, [address] 1, [alarm "
       "style] 7, [amp shutdown] 2, [aux alarm sense] 3, [file description] 20, [firmware] 13, [gain adjust] 2, [hw "
       "platform] 3, [pin diode table (dB,DAC)] 53, [pin diodes] 1, [rf level table (dBm,V)] 83, [rf level] 3, [rf "
       "max] 3, [rf temp comp points (\xB0"
       "C,dB)] 4, [software] 1, [sspa] 11, [sys temp comp points (\xB0"
       "C,dB)] 11, [temp amp1] 1, [thermal fan control] 2, [time dd/mm/yyyy hh:mm:ss] 3",
       "413 tried, [address] 1, [file description] 17, [firmware] 13, [redundancy controller] 4, [software] 1, [time "
       "dd/mm/yyyy hh:mm:ss] 5"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Damage(AmplifierLines(), row.damage), row.amplifier) << row.what;
    EXPECT_EQ(Damage(ControllerLines(), row.damage), row.controller) << row.what;
  }
}

}  // namespace
}  // namespace tarnwell::test
