#pragma once

#include "tools/vorel-snapshot/snapshot.h"

class QString;

namespace tarnwell::vorel_snapshot {

/// The snapshot as a page to read: labels with their values, then each table by point. What stands in a damaged line is
/// marked "!".
QString Show(const QString& file, const Snapshot& snapshot);

}  // namespace tarnwell::vorel_snapshot
