#include "tools/vorel-line/plot.h"

#include <QDateTime>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <optional>
#include <utility>

#include "link/frame_codec.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"
#include "tools/shared/files.h"
#include "tools/shared/page.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/events.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/record_reader.h"
#include "tools/vorel-line/turns.h"

namespace tarnwell::vorel_line {

namespace {

constexpr double kGap = 15.0;      // seconds without a value, behind which the curve begins anew
constexpr double kColumns = 1100;  // of the picture; no more of a curve can be seen
constexpr double kSetBack = 1.0;   // seconds
constexpr std::size_t kMostLanes = 12;
constexpr int kNamesWidth = 190;

struct Quantity {
  const protocol::Request* query;
  const char* title;
  const char* unit;
};
const Quantity kQuantities[] = {{&protocol::kRFLevelQuery, "RF level", "dBm"},
                                {&protocol::kTemperature1Query, "Temperature 1", "°C"},
                                {&protocol::kTemperature2Query, "Temperature 2", "°C"}};
constexpr std::size_t kCount = std::size(kQuantities);

/// A number at the head of the text; none where the device said something else, such as "D".
std::optional<double> NumberOf(std::string_view text) {
  const std::size_t digit = text.find_first_of("0123456789");
  const std::size_t other = text.find_first_not_of(" +-.");
  return digit != std::string_view::npos && digit == other ? std::optional(protocol::LeadingNumber(text))
                                                           : std::nullopt;
}

/// At most four points a column, which look the same: the first, the least, the greatest and the last.
QPolygonF Thinned(const QPolygonF& run, double column) {
  QPolygonF thin;
  for (qsizetype from = 0; from < run.size();) {
    qsizetype to = from + 1;
    const double end = (std::floor(run[from].x() / column) + 1) * column;
    while (to < run.size() && run[to].x() < end) ++to;
    const auto less = [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); };
    const auto [least, greatest] = std::minmax_element(run.begin() + from, run.begin() + to, less);
    std::array<qsizetype, 4> chosen = {from, least - run.begin(), greatest - run.begin(), to - 1};
    std::sort(chosen.begin(), chosen.end());
    const auto* const chosenEnd = std::unique(chosen.begin(), chosen.end());
    for (const auto* at = chosen.begin(); at != chosenEnd; ++at) thin += run[*at];
    from = to;
  }
  return thin;
}

/// One device's curves.
using Curves = std::array<tools::Series, kCount>;

class LinePlot {
 public:
  LinePlot()
      : m_events([this](const Event& event) { Follow(event); }), m_turns([this](const Turn& turn) { Take(turn); }) {}

  void Take(const Record& record) { m_turns.Take(record); }
  void End() {
    m_turns.End();
    m_events.End();
    for (const auto& [lane, from] : m_open) Close(lane, from);
  }

  bool IsEmpty() const { return m_values == 0; }
  tools::Page Picture() const;

 private:
  /// What lasts, of which device.
  using Lane = std::pair<std::optional<int>, std::string>;

  void Take(const Turn& turn);
  void TakeValue(char address, std::size_t quantity, std::optional<double> value);
  void Follow(const Event& event);
  /// Of the device at an address, or of all.
  void BreakCurves(std::optional<int> of);
  void Close(const Lane& lane, double from);
  QString NameOf(const Lane& lane) const;
  tools::Chart MakeChart(std::size_t quantity) const;

  Events m_events;
  Turns m_turns;
  std::map<char, Curves> m_devices;
  int m_values = 0;
  std::map<Lane, double> m_open;  // since when it stands
  std::vector<Lane> m_lanes;
  std::vector<tools::Band> m_bands;
  std::optional<double> m_first;  // the earliest, and the latest: the clock may have been set
  double m_last = 0;
  double m_now = 0;
  int m_offset = 0;
};

void LinePlot::Take(const Turn& turn) {
  const bool begins = turn.what == What::kNote && turn.bytes == kStarted;
  if (!m_first) m_offset = turn.offset;
  const double now = static_cast<double>(turn.at) / 1e6 + m_offset * 60.0;
  // Nobody knows what stood between two recordings; nor how long it stood when the clock was set back.
  const bool setBack = now < m_now - kSetBack;
  if (begins || setBack) {
    for (auto& [lane, from] : m_open) Close(lane, std::exchange(from, now));
    BreakCurves({});
  }
  if (begins) m_open.clear();
  m_now = now;
  m_first = std::min(m_first.value_or(now), now);
  m_last = std::max(m_last, now);
  m_events.Take(turn);
  if (turn.what != What::kAnswer || turn.fault != Fault::kNone) return;
  for (std::size_t i = 0; i < kCount; ++i) {
    const protocol::Request& query = *kQuantities[i].query;
    if (turn.request != query.text) continue;
    TakeValue(turn.address, i, NumberOf(protocol::AfterEcho(link::ReplyPayload(turn.bytes), query.expected.size())));
  }
}

void LinePlot::TakeValue(char address, std::size_t quantity, std::optional<double> value) {
  auto& runs = m_devices[address][quantity].runs;
  if (value) ++m_values;
  const double since = runs.empty() || runs.back().isEmpty() ? kGap : m_now - runs.back().last().x();
  const bool follows = since >= 0 && since < kGap;
  if (!value || !follows) runs.emplace_back();
  if (value) runs.back() += QPointF(m_now, *value);
}

void LinePlot::Follow(const Event& event) {
  const auto& [name, stands] = event.condition;
  if (event.type == "link" && stands) BreakCurves(event.address);
  if (name.empty()) return;
  const Lane lane{event.address, name};
  const auto found = m_open.find(lane);
  if (stands && found == m_open.end()) m_open[lane] = m_now;
  if (stands || found == m_open.end()) return;
  Close(lane, found->second);
  m_open.erase(found);
}

void LinePlot::BreakCurves(std::optional<int> of) {
  for (auto& [address, curves] : m_devices) {
    if (of && *of != address - link::AddressByte(0)) continue;
    for (tools::Series& series : curves) series.runs.emplace_back();
  }
}

void LinePlot::Close(const Lane& lane, double from) {
  const auto found = std::find(m_lanes.begin(), m_lanes.end(), lane);
  const auto index = static_cast<int>(found - m_lanes.begin());
  if (found == m_lanes.end()) m_lanes.push_back(lane);
  m_bands.push_back({from, m_now, index});
}

QString LinePlot::NameOf(const Lane& lane) const {
  const QString name = QString::fromStdString(lane.second);
  return m_devices.size() > 1 && lane.first ? QStringLiteral("%1: %2").arg(*lane.first).arg(name) : name;
}

tools::Chart LinePlot::MakeChart(std::size_t quantity) const {
  const Quantity& row = kQuantities[quantity];
  tools::Chart chart{.title = QString::fromUtf8(row.title), .yTitle = QString::fromUtf8(row.unit), .timeAcross = true};
  chart.xSpan = {*m_first, std::max(m_last, *m_first + 1)};
  chart.leftMargin = m_lanes.empty() ? chart.leftMargin : kNamesWidth;
  for (std::size_t i = 0; i < std::min(m_lanes.size(), kMostLanes); ++i) chart.lanes += NameOf(m_lanes[i]);
  chart.bands = m_bands;
  for (const auto& [address, curves] : m_devices) {
    tools::Series series;
    for (const QPolygonF& run : curves[quantity].runs) {
      if (!run.isEmpty()) series.runs.push_back(Thinned(run, (chart.xSpan->second - chart.xSpan->first) / kColumns));
    }
    chart.series.push_back(std::move(series));
  }
  return chart;
}

QString MomentText(double at) {
  const QDateTime time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(at * 1000), Qt::UTC);
  return time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

tools::Page LinePlot::Picture() const {
  const QString zone = QStringLiteral("UTC%1%2:%3")
                           .arg(QLatin1Char(m_offset < 0 ? '-' : '+'))
                           .arg(std::abs(m_offset) / 60, 2, 10, QLatin1Char('0'))
                           .arg(std::abs(m_offset) % 60, 2, 10, QLatin1Char('0'));
  tools::Page page{.title = MomentText(*m_first) + QStringLiteral(" to ") + MomentText(m_last),
                   .details = QStringLiteral("Local times of the recording, ") + zone};
  page.oneARow = true;
  if (m_devices.size() > 1) {
    for (const auto& [address, curves] : m_devices) {
      page.legend += QStringLiteral("address %1").arg(address - link::AddressByte(0));
    }
  }
  for (std::size_t i = 0; i < kCount; ++i) {
    tools::Chart chart = MakeChart(i);
    if (!chart.IsEmpty()) page.charts.push_back(std::move(chart));
  }
  QStringList unnamed;
  for (std::size_t i = kMostLanes; i < m_lanes.size(); ++i) unnamed += NameOf(m_lanes[i]);
  if (!unnamed.isEmpty())
    page.notes += QStringLiteral("Tinted, and without a line: ") + unnamed.join(QStringLiteral(", "));
  return page;
}

int Refuse(const QString& what, int code = kExitUnusable) {
  Complain(what.toStdString());
  return code;
}

}  // namespace

int DrawPlot(const std::vector<std::string>& files, const std::string& out) {
  const QString name = tools::NameFromBytes(QByteArray::fromStdString(out));
  const QString format = name.section(QLatin1Char('.'), -1).toLower();
  if (format != QLatin1String("svg") && format != QLatin1String("png")) {
    return Refuse(tools::Told(name, QStringLiteral("neither .svg nor .png")));
  }
  for (const std::string& file : files) {
    if (!tools::IsSameFile(tools::NameFromBytes(QByteArray::fromStdString(file)), name)) continue;
    return Refuse(tools::Told(name, QStringLiteral("is a recording that is read")));
  }
  LinePlot plot;
  const Exit read = ReadFiles(files, false, [&](const Record& record) { plot.Take(record); });
  plot.End();
  if (plot.IsEmpty() && read == kExitUnusable) return read;
  if (plot.IsEmpty()) return Refuse(QStringLiteral("no RF level and no temperature to draw"), kExitNothing);
  QString error;
  if (!tools::WriteWhole(name, tools::DrawPage(plot.Picture(), format), error)) {
    return Refuse(tools::Told(name, error));
  }
  return read;
}

}  // namespace tarnwell::vorel_line
