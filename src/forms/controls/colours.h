#pragma once

#include <QRgb>

namespace tarnwell::forms {

// What a state looks like on every form. No state is told by its colour alone.
inline constexpr QRgb kGoodColour = qRgb(0, 255, 0);
inline constexpr QRgb kActiveColour = qRgb(255, 0, 0);
inline constexpr QRgb kLatchedColour = qRgb(255, 128, 0);
/// An alarm that the device at hand doesn't have.
inline constexpr QRgb kUnusedColour = qRgb(192, 192, 192);

}  // namespace tarnwell::forms
