#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <map>
#include <string_view>
#include <vector>

#include "tools/shared/page.h"
#include "tools/vorel-snapshot/inputs.h"

namespace tarnwell::vorel_snapshot {

/// One value that is followed over time: a row's, or the second field of one point of its table.
struct Quantity {
  const Row* row = nullptr;
  std::string_view name = {};  ///< that the entry has; a row may have two
  std::size_t point = 0;       ///< from 1; 0: the row is no table
};

/// "rf level", "rf level table:8". Nothing is found for what has no number.
std::optional<Quantity> FindQuantity(const QString& name);

/// The names of all levels, limits, temperatures and rails, and of the tables with their ranges of points.
QStringList QuantityNames();

/// What tells one device from another.
enum class Device { kModelAndAddress, kDescription, kFolder };

/// Values of several snapshots by device and time.
class Trend {
 public:
  /// Without quantities all those of which at least one snapshot has a number, tables left out.
  Trend(std::vector<Quantity> quantities, Device device) : m_quantities(std::move(quantities)), m_device(device) {}

  /// An amplifier's snapshot. Why not, where it doesn't tell its place in the trend; else empty.
  QString Add(const Input& input);

  /// Puts all in order; behind the last Add.
  void Finish();

  /// Whether there is no number to draw.
  bool IsEmpty() const;
  tools::Page Picture() const;

  /// Rows of value, device, time, number, unit, state, file, with a heading.
  QByteArray Csv() const;

 private:
  struct Sample {
    double time;     ///< seconds since the start of 1970, by the clock of the console's machine
    QString device;  ///< its key in m_names
    QString file;
    std::vector<Value> values;  ///< one a quantity; kLost where it is damaged
  };

  /// What tells the device apart, in the order of the legend, and its name. Empty where that is damaged.
  struct Identity {
    QString key;
    QString name;
  };

  tools::Chart MakeChart(std::size_t quantity) const;
  Identity DeviceOf(const Input& input) const;
  /// Folders may look alike though their names differ.
  void NumberNames();
  QStringList Names() const;
  bool HasNumber(std::size_t quantity) const;

  std::vector<Quantity> m_quantities;
  Device m_device;
  std::vector<Sample> m_samples;
  std::map<QString, QString> m_names;
  QStringList m_devices;  ///< keys
};

}  // namespace tarnwell::vorel_snapshot
