#include "tools/vorel-line/record_order.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <limits>
#include <utility>

#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

namespace {

/// When the first record of the file was that can be read.
std::int64_t BeginOf(const std::string& path) {
  using Limits = std::numeric_limits<std::int64_t>;
  std::ifstream file(path, std::ios::binary);
  std::array<char, 2 * kLongestRecord> buffer;
  Decoder decoder;
  Record record;
  while (file.read(buffer.data(), buffer.size()), file.gcount() != 0) {
    decoder.Feed({buffer.data(), static_cast<std::size_t>(file.gcount())});
    Decoder::Result result = decoder.Next(record);
    if (result == Decoder::Result::kDamaged && decoder.WholeBytes() == 0) return Limits::min();
    for (; result == Decoder::Result::kDamaged; result = decoder.Next(record)) decoder.PassOver();
    if (result == Decoder::Result::kRecord) return record.at;
  }
  return Limits::max();
}

/// Something else than a file of which a second look finds the same.
bool IsPassing(const std::string& path) {
  std::error_code unknown;
  return std::filesystem::exists(path, unknown) && !std::filesystem::is_regular_file(path, unknown);
}

}  // namespace

std::vector<std::string> InOrderOfTime(const std::vector<std::string>& files) {
  if (files.size() < 2 || std::any_of(files.begin(), files.end(), IsPassing)) return files;
  std::vector<std::pair<std::int64_t, std::string>> begun;
  begun.reserve(files.size());
  for (const std::string& file : files) begun.emplace_back(BeginOf(file), file);
  std::stable_sort(begun.begin(), begun.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> ordered;
  ordered.reserve(begun.size());
  for (auto& [at, file] : begun) ordered.push_back(std::move(file));
  return ordered;
}

}  // namespace tarnwell::vorel_line
