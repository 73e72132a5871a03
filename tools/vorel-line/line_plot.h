#pragma once

#include <QStringList>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/shared/page.h"
#include "tools/vorel-line/events.h"
#include "tools/vorel-line/turns.h"
#include "tools/vorel-line/words.h"

namespace tarnwell::vorel_line {

/// RF level and two temperatures.
inline constexpr std::size_t kLineQuantities = 3;

/// What a picture of recordings shows: curves, and what stood beside them.
class LinePlot {
 public:
  LinePlot()
      : m_events([this](const Event& event) { Follow(event); }), m_turns([this](const Turn& turn) { Take(turn); }) {}

  void Take(const Record& record) { m_turns.Take(record); }
  void End() {
    m_turns.End();
    m_events.End();
    CloseAll();
  }

  bool IsEmpty() const { return m_values == 0 && m_bands.empty(); }
  tools::Page Picture() const;

 private:
  /// One device: where it is asked, its last address being the present one, and its curves.
  struct Device {
    std::vector<int> addresses;
    std::array<tools::Series, kLineQuantities> curves;

    bool HasCurve() const;
    QString Name() const;
  };
  /// What lasts, of which device.
  using Lane = std::pair<std::size_t, std::string>;

  void Take(const Turn& turn);
  void TakeTurn(const Turn& turn);
  void Move(int from, int to);
  void TakeValue(Device& device, std::size_t quantity, std::optional<double> value);
  std::size_t DeviceAt(int address);
  void Follow(const Event& event);
  void Follow(const Lane& lane, const Condition& condition);
  static void BreakCurves(Device& device);
  /// Ends what stands, of one device or of all.
  void CloseAll(std::optional<std::size_t> of = {});
  int LaneIndex(const Lane& lane);
  QString NameOf(const Lane& lane) const;
  QStringList NamesOf(std::size_t from, std::size_t to) const;
  tools::Chart MakeChart() const;
  tools::Chart MakeChart(std::size_t quantity) const;

  Events m_events;
  Turns m_turns;
  AddressFollower m_addresses;
  std::map<int, std::size_t> m_at;  // the device at an address
  std::vector<Device> m_devices;
  int m_values = 0;
  std::map<Lane, tools::Band> m_open;  // what stands, and since when
  std::vector<Lane> m_lanes;           // in the order in which they first stood
  std::vector<tools::Band> m_bands;
  std::optional<double> m_first;  // the earliest, and the latest: the clock may have been set
  double m_last = 0;
  double m_now = 0;
  int m_offset = 0;
};

}  // namespace tarnwell::vorel_line
