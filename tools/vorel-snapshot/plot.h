#pragma once

#include <vector>

#include "tools/shared/page.h"
#include "tools/vorel-snapshot/diff.h"

namespace tarnwell::vorel_snapshot {

/// What stands between two parts of a line in a picture.
QString Separator();

/// The charts of the calibration tables, each with a curve a snapshot. A point that is disabled, was not read or stands
/// in a damaged line is left out and told in the notes.
std::vector<tools::Chart> Charts(const std::vector<NamedSnapshot>& snapshots);

/// The page of those that have a point; the others are told below.
tools::Page PlotPage(const std::vector<NamedSnapshot>& snapshots);

}  // namespace tarnwell::vorel_snapshot
