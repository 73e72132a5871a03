#include "platform/port_format.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace tarnwell::platform {

namespace {

template <typename Value>
using Word = std::pair<std::string_view, Value>;

constexpr std::array<Word<int>, 16> kSpeeds = {{{"110", 110},
                                                {"300", 300},
                                                {"600", 600},
                                                {"1200", 1200},
                                                {"2400", 2400},
                                                {"4800", 4800},
                                                {"9600", 9600},
                                                {"14400", 14400},
                                                {"19200", 19200},
                                                {"28800", 28800},
                                                {"38400", 38400},
                                                {"56000", 56000},
                                                {"57600", 57600},
                                                {"115200", 115200},
                                                {"128000", 128000},
                                                {"256000", 256000}}};

constexpr std::array<Word<QSerialPort::Parity>, 10> kParities = {{{"n", QSerialPort::NoParity},
                                                                  {"N", QSerialPort::NoParity},
                                                                  {"e", QSerialPort::EvenParity},
                                                                  {"E", QSerialPort::EvenParity},
                                                                  {"o", QSerialPort::OddParity},
                                                                  {"O", QSerialPort::OddParity},
                                                                  {"m", QSerialPort::MarkParity},
                                                                  {"M", QSerialPort::MarkParity},
                                                                  {"s", QSerialPort::SpaceParity},
                                                                  {"S", QSerialPort::SpaceParity}}};

constexpr std::array<Word<QSerialPort::DataBits>, 4> kDataBits = {
    {{"5", QSerialPort::Data5}, {"6", QSerialPort::Data6}, {"7", QSerialPort::Data7}, {"8", QSerialPort::Data8}}};

// No 1.5: the text reads back with one character for each field behind the speed, and is taken apart by that.
constexpr std::array<Word<QSerialPort::StopBits>, 2> kStopBits = {
    {{"1", QSerialPort::OneStop}, {"2", QSerialPort::TwoStop}}};

/// The value of `word` into `value`; false for a word that isn't in the table.
template <typename Table, typename Value>
bool Read(const Table& table, std::string_view word, Value& value) {
  const auto* found = std::find_if(table.begin(), table.end(), [word](const auto& row) { return row.first == word; });
  if (found == table.end()) return false;
  value = found->second;
  return true;
}

std::vector<std::string_view> AtCommas(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
    words.push_back(text.substr(0, comma));
    text.remove_prefix(comma + 1);
  }
  words.push_back(text);
  return words;
}

}  // namespace

std::optional<PortFormat> ParsePortFormat(std::string_view settings) {
  const std::vector<std::string_view> words = AtCommas(settings);
  if (words.size() != 4) return std::nullopt;
  PortFormat format;
  const bool known = Read(kSpeeds, words[0], format.speed) && Read(kParities, words[1], format.parity) &&
                     Read(kDataBits, words[2], format.dataBits) && Read(kStopBits, words[3], format.stopBits);
  return known ? std::optional(format) : std::nullopt;
}

}  // namespace tarnwell::platform
