#include "tools/vorel-line/line_plot.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "link/frame_codec.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"

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
static_assert(std::size(kQuantities) == kLineQuantities);

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

QString MomentText(double at) {
  const QDateTime time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(at * 1000), QTimeZone::utc());
  return time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

}  // namespace

bool LinePlot::Device::HasCurve() const {
  return std::any_of(curves.begin(), curves.end(), [](const tools::Series& series) { return !series.runs.empty(); });
}

QString LinePlot::Device::Name() const {
  QStringList names;
  for (const int address : addresses) names += QString::number(address);
  return names.join(QStringLiteral(", "));
}

void LinePlot::Take(const Turn& turn) {
  const bool begins = turn.what == What::kNote && turn.bytes == kStarted;
  if (!m_first) m_offset = turn.offset;
  const double now = static_cast<double>(turn.at) / 1e6 + m_offset * 60.0;
  const bool setBack = now < m_now - kSetBack;
  if (begins || setBack) {
    // Nobody knows what stood between two recordings; nor how long it stood when the clock was set back.
    std::map<Lane, tools::Band> open = m_open;
    CloseAll();
    for (auto& [lane, band] : open) band.from = now;
    if (!begins) m_open = std::move(open);
    for (Device& device : m_devices) BreakCurves(device);
  }
  m_now = now;
  m_first = std::min(m_first.value_or(now), now);
  m_last = std::max(m_last, now);
  // A device that confirms another address is the same one there.
  const auto move = m_addresses.Take(turn);
  if (move) Move(move->first - link::AddressByte(0), move->second - link::AddressByte(0));
  TakeTurn(turn);
  if (move) m_at.erase(move->first - link::AddressByte(0));
}

void LinePlot::Move(int from, int to) {
  const std::size_t device = DeviceAt(from);
  const auto there = m_at.find(to);
  // What was asked there in vain before is no device.
  if (there != m_at.end()) CloseAll(there->second);
  m_at[to] = device;
  m_devices[device].addresses.push_back(to);
}

void LinePlot::TakeTurn(const Turn& turn) {
  m_events.Take(turn);
  if (turn.what != What::kAnswer || turn.fault != Fault::kNone) return;
  for (std::size_t i = 0; i < kLineQuantities; ++i) {
    const protocol::Request& query = *kQuantities[i].query;
    if (turn.request != query.text) continue;
    TakeValue(m_devices[DeviceAt(turn.address - link::AddressByte(0))], i,
              NumberOf(protocol::AfterEcho(link::ReplyPayload(turn.bytes), query.expected.size())));
  }
}

void LinePlot::TakeValue(Device& device, std::size_t quantity, std::optional<double> value) {
  auto& runs = device.curves[quantity].runs;
  if (value) ++m_values;
  const double since = runs.empty() || runs.back().isEmpty() ? kGap : m_now - runs.back().last().x();
  const bool follows = since >= 0 && since < kGap;
  if (!value || !follows) runs.emplace_back();
  if (value) runs.back() += QPointF(m_now, *value);
}

std::size_t LinePlot::DeviceAt(int address) {
  const auto [found, isNew] = m_at.try_emplace(address, m_devices.size());
  if (isNew) m_devices.push_back({{address}, {}});
  return found->second;
}

void LinePlot::Follow(const Event& event) {
  if (!event.address || (event.conditions.empty() && !event.isOther)) return;
  const std::size_t device = DeviceAt(*event.address);
  if (event.isOther) CloseAll(device);
  for (const Condition& condition : event.conditions) {
    Follow({device, condition.name}, condition);
    if (event.type == "link" && condition.stands) BreakCurves(m_devices[device]);
  }
}

void LinePlot::Follow(const Lane& lane, const Condition& condition) {
  const auto found = m_open.find(lane);
  const bool isOpen = found != m_open.end();
  if (isOpen && condition.stands && found->second.over == condition.latched) return;
  if (isOpen) {
    found->second.to = m_now;
    m_bands.push_back(found->second);
    m_open.erase(found);
  }
  if (condition.stands) m_open[lane] = {m_now, m_now, LaneIndex(lane), condition.latched};
}

void LinePlot::BreakCurves(Device& device) {
  for (tools::Series& series : device.curves) {
    if (!series.runs.empty()) series.runs.emplace_back();
  }
}

void LinePlot::CloseAll(std::optional<std::size_t> of) {
  for (const auto& [lane, band] : std::map(m_open)) {
    if (!of || lane.first == *of) Follow(lane, {lane.second});
  }
}

int LinePlot::LaneIndex(const Lane& lane) {
  const auto found = std::find(m_lanes.begin(), m_lanes.end(), lane);
  const auto index = static_cast<int>(found - m_lanes.begin());
  if (found == m_lanes.end()) m_lanes.push_back(lane);
  return index;
}

QString LinePlot::NameOf(const Lane& lane) const {
  const QString name = QString::fromStdString(lane.second);
  return m_devices.size() > 1 ? QStringLiteral("%1: %2").arg(m_devices[lane.first].Name(), name) : name;
}

QStringList LinePlot::NamesOf(std::size_t from, std::size_t to) const {
  QStringList names;
  for (std::size_t i = from; i < std::min(m_lanes.size(), to); ++i) names += NameOf(m_lanes[i]);
  return names;
}

/// With the bands alone.
tools::Chart LinePlot::MakeChart() const {
  tools::Chart chart{.title = QStringLiteral("What stood"), .timeAcross = true};
  chart.xSpan = {*m_first, std::max(m_last, *m_first + 1)};
  chart.leftMargin = m_lanes.empty() ? chart.leftMargin : kNamesWidth;
  chart.lanes = NamesOf(0, kMostLanes);
  chart.bands = m_bands;
  return chart;
}

tools::Chart LinePlot::MakeChart(std::size_t quantity) const {
  tools::Chart chart = MakeChart();
  chart.title = QString::fromUtf8(kQuantities[quantity].title);
  chart.yTitle = QString::fromUtf8(kQuantities[quantity].unit);
  for (const Device& device : m_devices) {
    if (!device.HasCurve()) continue;
    tools::Series series;
    for (const QPolygonF& run : device.curves[quantity].runs) {
      if (!run.isEmpty()) series.runs.push_back(Thinned(run, (chart.xSpan->second - chart.xSpan->first) / kColumns));
    }
    chart.series.push_back(std::move(series));
  }
  return chart;
}

tools::Page LinePlot::Picture() const {
  const QString zone = QStringLiteral("UTC%1%2:%3")
                           .arg(QLatin1Char(m_offset < 0 ? '-' : '+'))
                           .arg(std::abs(m_offset) / 60, 2, 10, QLatin1Char('0'))
                           .arg(std::abs(m_offset) % 60, 2, 10, QLatin1Char('0'));
  tools::Page page{.title = MomentText(*m_first) + QStringLiteral(" to ") + MomentText(m_last),
                   .details = QStringLiteral("Local times of the recording, ") + zone};
  page.oneARow = true;
  for (const Device& device : m_devices) {
    if (m_devices.size() > 1 && device.HasCurve()) page.legend += QStringLiteral("address %1").arg(device.Name());
  }
  for (std::size_t i = 0; i < kLineQuantities; ++i) {
    tools::Chart chart = MakeChart(i);
    if (!chart.IsEmpty()) page.charts.push_back(std::move(chart));
  }
  if (page.charts.empty()) page.charts.push_back(MakeChart());
  const auto isOver = [](const tools::Band& band) { return band.over; };
  if (std::any_of(m_bands.begin(), m_bands.end(), isOver)) {
    page.notes += QStringLiteral("A hollow bar: the alarm itself is gone, and latched");
  }
  const QString unnamed = NamesOf(kMostLanes, m_lanes.size()).join(QStringLiteral(", "));
  if (!unnamed.isEmpty()) page.notes += QStringLiteral("Tinted, and without a line: ") + unnamed;
  return page;
}

}  // namespace tarnwell::vorel_line
