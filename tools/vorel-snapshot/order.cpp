#include "tools/vorel-snapshot/order.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tarnwell::vorel_snapshot {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::string Bracketed(std::string_view label) { return "[" + std::string(label) + "]"; }

bool HasLabel(std::string_view text, std::string_view label) {
  return text.size() >= label.size() + 2 && text.front() == '[' && text.substr(1).starts_with(label) &&
         text[label.size() + 1] == ']' && (text.size() == label.size() + 2 || text[label.size() + 2] == ' ');
}

/// The label of the row that the text begins with; empty if it is none of the row's.
std::string_view LabelOf(const Row& row, std::string_view text) {
  if (HasLabel(text, row.label)) return row.label;
  return !row.otherLabel.empty() && HasLabel(text, row.otherLabel) ? row.otherLabel : std::string_view();
}

/// For each line its row, or kNone.
std::vector<std::size_t> RowsByLabel(Kind kind, const std::vector<Line>& lines) {
  const auto rows = Rows(kind);
  std::vector<std::size_t> found;
  for (const Line& line : lines) {
    const std::string_view text = LineText(line);
    const auto has = [&](const Row& row) { return !LabelOf(row, text).empty(); };
    const auto row = std::find_if(rows.begin(), rows.end(), has);
    found.push_back(row == rows.end() ? kNone : static_cast<std::size_t>(row - rows.begin()));
  }
  return found;
}

std::size_t KnownCount(const std::vector<std::size_t>& rows) {
  return rows.size() - static_cast<std::size_t>(std::count(rows.begin(), rows.end(), kNone));
}

/// The lines of the longest sequence whose rows never go back: all others stand out of place.
std::vector<bool> LongestInOrder(const std::vector<std::size_t>& rows) {
  std::vector<std::size_t> ends;  // of the best sequence of each length, the line that it ends with
  std::vector<std::size_t> ahead(rows.size(), kNone);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i] == kNone) continue;
    const auto above = [&](std::size_t row, std::size_t line) { return row < rows[line]; };
    const auto place = std::upper_bound(ends.begin(), ends.end(), rows[i], above);
    if (place != ends.begin()) ahead[i] = *(place - 1);
    if (place == ends.end()) {
      ends.push_back(i);
    } else {
      *place = i;
    }
  }
  std::vector<bool> inOrder(rows.size());
  for (std::size_t line = ends.empty() ? kNone : ends.back(); line != kNone; line = ahead[line]) inOrder[line] = true;
  return inOrder;
}

std::size_t CommonStart(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

/// Characters of the label in its brackets that stand in their place, or all one further behind a fault.
std::size_t Likeness(std::string_view text, std::string_view label) {
  const std::string whole = Bracketed(label);
  const std::size_t right = CommonStart(whole, text);
  std::size_t best = 0;
  for (const std::size_t moved : {0U, 1U, 2U}) {
    std::size_t same = 0;
    for (std::size_t i = std::max<std::size_t>(right, 1); i < whole.size() && i + moved <= text.size(); ++i) {
      same += whole[i] == text[i + moved - 1] ? 1 : 0;
    }
    best = std::max(best, same);
  }
  return right + best;
}

/// Where the value begins behind a damaged label, which may have lost or gained a character.
std::size_t ValueBehind(std::string_view text, std::string_view label) {
  const std::size_t bracket = text.find("] ");
  const bool moved = bracket != std::string_view::npos && bracket >= label.size() && bracket <= label.size() + 2;
  return std::min(moved ? bracket + 2 : label.size() + 3, text.size());
}

class Placer {
 public:
  explicit Placer(const std::vector<Line>& lines) : m_lines(lines) {
    const auto amplifier = RowsByLabel(Kind::kAmplifier, lines);
    const auto controller = RowsByLabel(Kind::kController, lines);
    const bool isController = KnownCount(controller) > KnownCount(amplifier);
    m_order.kind = isController ? Kind::kController : Kind::kAmplifier;
    m_byLabel = isController ? controller : amplifier;
    m_order.known = KnownCount(m_byLabel) > 0;
    m_order.rows.resize(Rows(m_order.kind).size());
  }

  Order Place() {
    const std::vector<bool> inOrder = LongestInOrder(m_byLabel);
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      if (inOrder[i]) m_order.rows[m_byLabel[i]].push_back(Known(i));
    }
    PlaceDamagedLabels(inOrder);
    PlaceStrays(inOrder);
    TellMissing();
    return std::move(m_order);
  }

 private:
  const Row& RowAt(std::size_t index) const { return Rows(m_order.kind)[index]; }

  /// A line by its own label.
  Placed Known(std::size_t line) const {
    const std::string_view text = LineText(m_lines[line]);
    const std::string_view label = LabelOf(RowAt(m_byLabel[line]), text);
    return {line, label, std::min(label.size() + 3, text.size())};
  }

  void Tell(std::size_t line, std::size_t column, std::string what) {
    m_order.faults.push_back({line + 1, column, std::move(what)});
  }

  bool HasRoom(std::size_t row) const {
    if (RowAt(row).form == Form::kAlarms) return true;
    return m_order.rows[row].size() < (RowAt(row).table ? RowAt(row).table->Lines() : 1);
  }

  void PlaceDamagedLabels(const std::vector<bool>& inOrder) {
    // For each line the row of the next that is in order.
    std::vector<std::size_t> high(m_lines.size() + 1, m_order.rows.size() - 1);
    for (std::size_t i = m_lines.size(); i-- > 0;) high[i] = inOrder[i] ? m_byLabel[i] : high[i + 1];
    std::size_t low = 0;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      if (inOrder[i]) low = m_byLabel[i];
      if (m_byLabel[i] == kNone && m_lines[i].body != kGivenUp) PlaceDamagedLabel(i, low, high[i]);
    }
  }

  /// Gives the line to the row from `low` to `high` that its label is like; the line stands between theirs.
  void PlaceDamagedLabel(std::size_t line, std::size_t low, std::size_t high) {
    const std::string_view text = LineText(m_lines[line]);
    std::size_t best = kNone;
    double bestLikeness = 0.6;
    for (std::size_t row = low; row <= high; ++row) {
      const std::string_view label = RowAt(row).label;
      const double likeness = static_cast<double>(Likeness(text, label)) / static_cast<double>(label.size() + 2);
      if (!HasRoom(row) || likeness <= bestLikeness) continue;
      best = row;
      bestLikeness = likeness;
    }
    if (best == kNone) return Tell(line, 1, "no label that can stand here");
    const std::string_view label = RowAt(best).label;
    Tell(line, CommonStart(Bracketed(label) + " ", text) + 1, "the label " + Bracketed(label) + " is damaged");
    auto& placed = m_order.rows[best];
    const auto behind = [](std::size_t index, const Placed& other) { return index < other.line; };
    placed.insert(std::upper_bound(placed.begin(), placed.end(), line, behind),
                  {line, label, ValueBehind(text, label)});
  }

  /// A line with a label, but not where that belongs.
  void PlaceStrays(const std::vector<bool>& inOrder) {
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      if (m_byLabel[i] == kNone || inOrder[i]) continue;
      const Row& row = RowAt(m_byLabel[i]);
      auto& placed = m_order.rows[m_byLabel[i]];
      if (!HasRoom(m_byLabel[i])) {
        Tell(i, 0, "repeats " + Bracketed(row.label) + " of line " + std::to_string(placed.front().line + 1));
        continue;
      }
      Tell(i, 0, Bracketed(row.label) + " stands out of place");
      placed.push_back(Known(i));
      placed.back().stray = true;
    }
  }

  void TellMissing() {
    std::size_t behind = 0;  // the line ahead of which a missing one belongs
    for (std::size_t row = 0; row < m_order.rows.size(); ++row) {
      for (const Placed& placed : m_order.rows[row]) {
        if (!placed.stray) behind = std::max(behind, placed.line + 1);
      }
      if (!m_order.rows[row].empty()) continue;
      std::size_t last = row;
      while (last + 1 < m_order.rows.size() && m_order.rows[last + 1].empty()) ++last;
      TellMissing(row, last, behind);
      row = last;
    }
  }

  void TellMissing(std::size_t first, std::size_t last, std::size_t line) {
    const std::string from = Bracketed(RowAt(first).label);
    if (last + 1 == m_order.rows.size()) {
      const std::string what = "truncated: " + from + " and what follows it is missing behind this line";
      m_order.gaps.push_back({m_lines.size(), 0, what});
      return;
    }
    const bool atEnd = line == m_lines.size();
    const std::string lost = first == last ? from + " is" : from + " to " + Bracketed(RowAt(last).label) + " are";
    const std::string where = atEnd ? " missing behind this line" : " missing ahead of this line";
    m_order.gaps.push_back({atEnd ? line : line + 1, 0, lost + where});
  }

  const std::vector<Line>& m_lines;
  std::vector<std::size_t> m_byLabel;
  Order m_order;
};

}  // namespace

std::vector<std::size_t> Beginnings(const std::vector<Line>& lines) {
  // Both kinds of device have the same heading; one of its lines may be damaged.
  constexpr std::size_t kHeading = 3;
  const auto rows = RowsByLabel(Kind::kAmplifier, lines);
  std::vector<std::size_t> begins = {0};
  for (std::size_t line = kHeading + 1; line + kHeading <= lines.size(); ++line) {
    std::size_t heading = 0;
    for (std::size_t row = 0; row < kHeading; ++row) heading += rows[line + row] == row ? 1 : 0;
    if (heading + 1 < kHeading) continue;
    const auto from = rows.begin() + static_cast<std::ptrdiff_t>(begins.back());
    const auto to = rows.begin() + static_cast<std::ptrdiff_t>(line);
    if (static_cast<std::size_t>(to - from - std::count(from, to, kNone)) > kHeading) begins.push_back(line);
  }
  return begins;
}

Order PlaceLines(const std::vector<Line>& lines) { return Placer(lines).Place(); }

}  // namespace tarnwell::vorel_snapshot
