#pragma once

#include <string>
#include <vector>

namespace tarnwell::vorel_line {

/// Draws RF level and temperatures over time into `out`, an SVG or PNG file by its ending, with bands where the link
/// was lost, RF muted, or an alarm stood. Gives the exit code; what is wrong is told on standard error. Needs a
/// QGuiApplication.
int DrawPlot(const std::vector<std::string>& files, const std::string& out);

}  // namespace tarnwell::vorel_line
