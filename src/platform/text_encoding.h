#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tarnwell::platform {

/// Bytes of a device as text: one character a byte, by the code page windows-1252. A code that the page leaves open
/// becomes the control character of the same number.
QString FromDevice(std::string_view bytes);

/// Text as bytes of the same code page; a character outside it becomes "?".
std::string ToDevice(const QString& text);

/// `text` with every control character but the line feed shown as the replacement character U+FFFD.
QString Printable(const QString& text);

}  // namespace tarnwell::platform
