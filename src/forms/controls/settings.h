#pragma once

#include <QRgb>

namespace tarnwell::forms {

/// What a row of a form's table says of a control beyond kind, name, container, caption and tool tip.
struct Settings {
  enum Flag : unsigned {
    kNothing = 0,
    kHiddenFlag = 1U << 0,
    kDisabledFlag = 1U << 1,
    kBoxedFlag = 1U << 2,
    kRightAlignedFlag = 1U << 3,
    kCentredFlag = 1U << 4,
    kReadOnlyFlag = 1U << 5,
    kNoTabStopFlag = 1U << 6,
    kNoBorderFlag = 1U << 7,
    kBoldFlag = 1U << 8,
    kActsOnClickFlag = 1U << 9,
    kOnFlag = 1U << 10,
    kGraphicalFlag = 1U << 11,
    kColumnsFlag = 1U << 12,
    kSingleStepFlag = 1U << 13,
    kTenthsFlag = 1U << 14,
    kSampleFlag = 1U << 15,
  };

  unsigned flags = kNothing;
  double points = 0.0;  ///< the control's own font size; 0: the form's
  int maxLength = 0;    ///< characters a text box accepts; 0: any number
  int minimum = 0;      ///< of a spin control or progress bar
  int maximum = 0;
  int increment = 1;
  int milliseconds = 0;  ///< a timer's period
  QRgb background = 0;   ///< 0: the style's own

  constexpr bool has(Flag flag) const { return (flags & flag) != 0; }
};

/// Settings joined: flags add up, and a value that the right side sets stands.
constexpr Settings operator|(Settings left, const Settings& right) {
  left.flags |= right.flags;
  if (right.points != 0.0) left.points = right.points;
  if (right.maxLength != 0) left.maxLength = right.maxLength;
  if (right.minimum != 0 || right.maximum != 0) {
    left.minimum = right.minimum;
    left.maximum = right.maximum;
    left.increment = right.increment;
  }
  if (right.milliseconds != 0) left.milliseconds = right.milliseconds;
  if (right.background != 0) left.background = right.background;
  return left;
}

inline constexpr Settings kHidden{.flags = Settings::kHiddenFlag};
inline constexpr Settings kDisabled{.flags = Settings::kDisabledFlag};
inline constexpr Settings kBoxed{.flags = Settings::kBoxedFlag};
inline constexpr Settings kRightAligned{.flags = Settings::kRightAlignedFlag};
inline constexpr Settings kCentred{.flags = Settings::kCentredFlag};
inline constexpr Settings kReadOnly{.flags = Settings::kReadOnlyFlag};
inline constexpr Settings kNoTabStop{.flags = Settings::kNoTabStopFlag};
inline constexpr Settings kNoBorder{.flags = Settings::kNoBorderFlag};
inline constexpr Settings kBold{.flags = Settings::kBoldFlag};
/// An option button that acts on its click, not on getting the focus.
inline constexpr Settings kActsOnClick{.flags = Settings::kActsOnClickFlag};
/// A command button that can show a background colour.
inline constexpr Settings kGraphical{.flags = Settings::kGraphicalFlag};

/// A frame whose controls are read column by column, not row by row.
inline constexpr Settings kInColumns{.flags = Settings::kColumnsFlag};
/// A text box in which a held arrow key steps once.
inline constexpr Settings kSingleStep{.flags = Settings::kSingleStepFlag};

/// A spin control that counts tenths of what its field shows.
inline constexpr Settings kTenths{.flags = Settings::kTenthsFlag};
/// A button that explains the look of others and does nothing.
inline constexpr Settings kSample{.flags = Settings::kSampleFlag};

constexpr Settings Points(double size) { return {.points = size}; }
constexpr Settings UpTo(int characters) { return {.maxLength = characters}; }
constexpr Settings Range(int minimum, int maximum, int increment = 1) {
  return {.minimum = minimum, .maximum = maximum, .increment = increment};
}
constexpr Settings On(int milliseconds) { return {.flags = Settings::kOnFlag, .milliseconds = milliseconds}; }
constexpr Settings Off(int milliseconds) { return {.milliseconds = milliseconds}; }
constexpr Settings Background(QRgb colour) { return {.background = colour}; }

}  // namespace tarnwell::forms

/// One row of a form's table: CONTROL(kind, name, container, caption, tool tip, settings). The name becomes the member
/// and the object name, so that both can't differ.
#define CONTROL(Kind, name, ...) \
  Kind name { #name, __VA_ARGS__ }
