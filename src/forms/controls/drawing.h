#pragma once

#include <QIcon>

namespace tarnwell::forms {

/// The SVG drawing of that path as an icon, sharp at every size. Drawn by the library that is linked: the toolkit's own
/// way from a path to an icon goes through plug-ins, which some systems install apart.
QIcon Drawing(const QString& path);

}  // namespace tarnwell::forms
