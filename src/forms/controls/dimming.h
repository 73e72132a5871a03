#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace tarnwell::forms {

/// Contrast of two colours, 1 to 21, as the accessibility guidelines reckon it.
double Contrast(const QColor& a, const QColor& b);

/// Black or white, whichever reads better on `background`.
QColor ReadableOn(const QColor& background);

/// The colour of disabled text on `background`: clearly weaker than other text, and readable still.
QColor WeakOn(const QColor& background);

/// The colour of lines on the window, such as a frame's: seen on a light palette and on a dark one.
QColor LineColour(const QPalette& palette);
/// True for a palette on which the style's own lines, darker than the window, can't be seen.
bool IsDark(const QPalette& palette);

/// What a coloured control looks like when its state isn't live: halfway to the window's colour.
QColor Dimmed(const QColor& colour);

/// True where `control` is drawn dimmed: it is disabled, or what it shows is old. A label counts as disabled by its own
/// state alone.
bool IsDimmed(const QWidget& control);

/// Gives the application's palette a disabled text that can be read. To be called again when the palette has changed.
void AdoptPalette();

}  // namespace tarnwell::forms
