#pragma once

#include "tools/shared/chart.h"

namespace tarnwell::tools {

/// Whether the curves lie on one another for a while, rather than cross, where less than `hair` can't be seen. Their
/// points stand in the order of x.
bool LieTogether(const Series& one, const Series& other, const QPointF& hair);

}  // namespace tarnwell::tools
