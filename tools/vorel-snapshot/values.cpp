#include "tools/vorel-snapshot/values.h"

#include <algorithm>
#include <chrono>

#include "protocol/encodings.h"
#include "tools/vorel-snapshot/scanner.h"

namespace tarnwell::vorel_snapshot {

namespace {

using Single = Read<Value>;

Value NumberValue(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return {Value::Kind::kNumber, std::string(text), protocol::LeadingNumber(text)};
}

Value ErrorValue(std::string_view text) { return {Value::Kind::kError, std::string(text)}; }

Single Wrong(std::string_view text, std::size_t offset, std::string what) {
  return {{Value::Kind::kText, std::string(text)}, Mismatch{offset, std::move(what)}};
}

Single Right(std::string_view text) { return {{Value::Kind::kText, std::string(text)}, {}}; }

Single ReadSoftware(const Row&, std::string_view text) {
  Scanner scanner(text);
  const bool fits =
      scanner.Literal("Tarnwell v") && scanner.Digits(1) && scanner.Literal(".") && scanner.Digits(2) && scanner.End();
  return fits ? Right(text) : Wrong(text, scanner.At(), "not the console's name and version");
}

/// Two digits from `low` to `high`.
bool ScanTwoDigits(Scanner& scanner, int low, int high) {
  const std::size_t start = scanner.At();
  if (!scanner.Digits(2)) return false;
  const double value = protocol::LeadingNumber(scanner.Since(start));
  return value >= low && value <= high;
}

/// Whether "31/02/2007" and what follows it begins with a day that was or will be.
bool IsInCalendar(std::string_view date) {
  const auto number = [&](std::size_t at, std::size_t digits) {
    return static_cast<unsigned>(protocol::LeadingNumber(date.substr(at, digits)));
  };
  const std::chrono::year year(static_cast<int>(number(6, 4)));
  const std::chrono::year_month_day day(year, std::chrono::month(number(3, 2)), std::chrono::day(number(0, 2)));
  return day.ok() && year > std::chrono::year(0);
}

Single ReadTime(const Row&, std::string_view text) {
  Scanner at(text);
  const bool date = ScanTwoDigits(at, 1, 31) && at.Literal("/") && ScanTwoDigits(at, 1, 12) && at.Literal("/");
  const bool fits = date && at.Digits(4) && at.Literal(" ") && ScanTwoDigits(at, 0, 23) && at.Literal(":") &&
                    ScanTwoDigits(at, 0, 59) && at.Literal(":") && ScanTwoDigits(at, 0, 59) && at.End();
  if (!fits) return Wrong(text, at.At(), "no date and time");
  return IsInCalendar(text) ? Right(text) : Wrong(text, 0, "no day of the calendar");
}

Single ReadText(const Row& row, std::string_view text) {
  if (row.longest != 0 && text.size() > row.longest) {
    return Wrong(text, row.longest, "text behind the longest that fits here");
  }
  return Right(text);
}

/// A closing brace would have ended the reply.
bool IsNoReplyText(char c) { return static_cast<unsigned char>(c) > 0x7E || c == '}'; }

/// A device sends ASCII, and its texts are one or two words.
Single ReadDeviceText(const Row& row, std::string_view text) {
  const auto strange = std::find_if(text.begin(), text.end(), IsNoReplyText);
  if (strange != text.end()) {
    return Wrong(text, static_cast<std::size_t>(strange - text.begin()), "a character that no device sends");
  }
  const std::size_t gap = text.find("   ");
  if (gap != std::string_view::npos) return Wrong(text, text.find_first_not_of(' ', gap), "text behind the padding");
  return ReadText(row, text);
}

Single ReadAddress(const Row&, std::string_view text) {
  Scanner scanner(text);
  const bool number = scanner.Number(false) && scanner.End();
  if (!number) return Wrong(text, scanner.At(), "no address");
  const Value value = NumberValue(text);
  if (value.number < 0 || value.number > 31) return Wrong(text, 0, "no address from 0 to 31");
  return {value, {}};
}

/// Characters that `text` has in common with the word that it fits best.
std::size_t CommonWithBest(const Row& row, std::string_view text) {
  std::size_t best = 0;
  for (const std::string_view word : row.words) {
    const auto differ = std::mismatch(word.begin(), word.end(), text.begin(), text.end());
    best = std::max(best, static_cast<std::size_t>(differ.second - text.begin()));
  }
  return best;
}

Single ReadWord(const Row& row, std::string_view text) {
  const bool known = !text.empty() && std::find(row.words.begin(), row.words.end(), text) != row.words.end();
  return known ? Right(text) : Wrong(text, CommonWithBest(row, text), "none of the words that stand here");
}

Single ReadNumber(const Row& row, std::string_view text) {
  Scanner scanner(text);
  if (!scanner.Number(true)) return Wrong(text, scanner.At(), "no number");
  const std::string_view number = scanner.Since(0);
  if (!scanner.Literal(" ") || !scanner.Literal(row.unit)) {
    return Wrong(text, scanner.At(), "not the unit " + std::string(row.unit));
  }
  if (!scanner.End()) return Wrong(text, scanner.At(), "text behind the unit");
  return {NumberValue(number), {}};
}

Single ReadLimit(const Row& row, std::string_view text) {
  if (text == kDisabledLimit) return {{Value::Kind::kDisabled, std::string(text)}, {}};
  return ReadNumber(row, text);
}

Single ReadDegrees(const Row& row, std::string_view text) {
  Scanner scanner(text);
  if (!scanner.Number(false)) return Wrong(text, scanner.At(), "no whole number");
  const std::string_view number = scanner.Since(0);
  const bool fits = scanner.Literal(row.unit) && scanner.End();
  return fits ? Single{NumberValue(number), {}} : Wrong(text, scanner.At(), "not the unit " + std::string(row.unit));
}

Single ReadByForm(const Row& row, std::string_view text) {
  switch (row.form) {
    case Form::kSoftware:
      return ReadSoftware(row, text);
    case Form::kTime:
      return ReadTime(row, text);
    case Form::kDescription:
      return ReadText(row, text);
    case Form::kDeviceText:
      return ReadDeviceText(row, text);
    case Form::kAddress:
      return ReadAddress(row, text);
    case Form::kWord:
      return ReadWord(row, text);
    case Form::kNumber:
      return ReadNumber(row, text);
    case Form::kLimit:
      return ReadLimit(row, text);
    case Form::kDegrees:
      return ReadDegrees(row, text);
    case Form::kAlarms:
    case Form::kTable:
      break;
  }
  return Right(text);
}

bool IsAlarm(Kind kind, std::size_t slot, std::string_view token) {
  if (kind == Kind::kAmplifier && slot == kOtherAlarm.slot && token == kOtherAlarm.name) return true;
  return AlarmNames(kind)[slot] == token;
}

/// The points of one line, taken one after the other.
class PointReader {
 public:
  PointReader(const TableShape& shape, std::string_view text, bool cut) : m_shape(shape), m_at(text), m_cut(cut) {}

  ReadMany<Point> All(bool goOn) {
    ReadMany<Point> read;
    while (!m_at.End()) {
      m_start = m_at.At();
      const bool fits = (read.values.empty() || m_at.Literal(", ")) && TakePoint();
      if (fits) {
        read.values.push_back(m_point);
        continue;
      }
      const bool isCut = m_cut && m_at.End();
      // What is left of "(#ERR, #ERR)" can be nothing else.
      if (isCut && m_point.first.kind == Value::Kind::kError) read.values.push_back(m_point);
      if (isCut) break;
      read.mismatches.push_back({m_at.At(), m_fault});
      if (!goOn) break;
      read.values.emplace_back();
      m_at.GoTo(", (", m_start);
    }
    return read;
  }

 private:
  bool TakePoint() {
    m_start = m_at.At();
    m_point = {};
    m_fault = "no point in brackets";
    if (!m_at.Literal("(")) return false;
    if (m_at.Sees("#")) {
      m_point = {ErrorValue(kNotReadMark), ErrorValue(kNotReadMark)};
      return m_at.Literal(kNotReadMark) && m_at.Literal(", ") && m_at.Literal(kNotReadMark) && m_at.Literal(")");
    }
    return TakeField(m_point.first, false) && m_at.Literal(", ") && TakeField(m_point.second, !m_shape.counted) &&
           PairFits() && m_at.Literal(")");
  }

  bool TakeField(Value& value, bool decimals) {
    const std::size_t start = m_at.At();
    if (m_at.Sees("D")) {
      value = {Value::Kind::kDisabled, "D"};
      return m_at.Literal("D");
    }
    const bool fits = m_at.Number(decimals);
    value = NumberValue(m_at.Since(start));
    return fits;
  }

  /// A point without its first number has no second; an index is never without.
  bool PairFits() {
    const bool fits = m_point.first.kind == Value::Kind::kNumber ||
                      (m_point.second.kind == Value::Kind::kDisabled && !m_shape.counted);
    if (!fits) m_fault = "a value at a point that is disabled";
    return fits;
  }

  const TableShape& m_shape;
  Scanner m_at;
  std::size_t m_start = 0;  ///< of the point that is taken
  bool m_cut;
  Point m_point;
  std::string m_fault;
};

}  // namespace

Single ReadSingle(const Row& row, std::string_view text) {
  const bool asked = row.role != Role::kHeading;
  if (asked && text == kNotReadMark) return {ErrorValue(text), {}};
  if (row.mayLack && text == kLackingMark) return {{Value::Kind::kLacking, std::string(text)}, {}};
  Single read = ReadByForm(row, text);
  if (read.mismatch && IsNumeric(row.form)) read.value.kind = Value::Kind::kLost;
  if (row.form == Form::kWord && text == kUnknown) read.value.kind = Value::Kind::kError;
  return read;
}

ReadMany<std::string> ReadAlarms(Kind kind, std::string_view text, std::size_t& slot) {
  ReadMany<std::string> read;
  const std::size_t slots = AlarmNames(kind).size();
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(", ", start), text.size());
    const std::string_view token = text.substr(start, end - start);
    std::size_t found = slot;
    while (found < slots && !IsAlarm(kind, found, token)) ++found;
    if (found == slots) {
      read.mismatches.push_back({start, "no alarm that can stand here"});
    } else {
      slot = found + 1;
    }
    read.values.emplace_back(token);
    start = end + (end == text.size() ? 1 : 2);
  }
  return read;
}

ReadMany<Point> ReadPoints(const TableShape& shape, std::string_view text, bool cut, bool goOn) {
  return PointReader(shape, text, cut).All(goOn);
}

}  // namespace tarnwell::vorel_snapshot
