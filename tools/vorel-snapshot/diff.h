#pragma once

#include <QString>

#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::vorel_snapshot {

struct NamedSnapshot {
  QString file;
  Snapshot snapshot;
};

struct Differences {
  QString report;
  std::size_t count = 0;  ///< of those that count: readings only where asked for, and no damage
};

/// What changed from `before` to `after`, by label and by table point. The lines of the heading (program, description,
/// time) only tell which file is which. A measured value never stands still, so that two numbers of one are told and do
/// not count unless `readingsCount`; a value that came, went or could not be read does. What stands in damage is marked
/// "!" and counted apart.
Differences Diff(const NamedSnapshot& before, const NamedSnapshot& after, bool readingsCount);

}  // namespace tarnwell::vorel_snapshot
