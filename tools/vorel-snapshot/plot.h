#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

#include "tools/vorel-snapshot/chart.h"
#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::vorel_snapshot {

/// The charts of the calibration tables; none for a device without tables. A point that is disabled, was not read or
/// stands in a damaged line is left out and told in the note.
std::vector<Chart> Charts(const Snapshot& snapshot);

/// The page with the charts as a file's bytes; `format` is "svg" or "png". Needs a QGuiApplication.
QByteArray PlotPage(const QString& file, const Snapshot& snapshot, const QString& format);

}  // namespace tarnwell::vorel_snapshot
