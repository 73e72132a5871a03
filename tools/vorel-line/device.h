#pragma once

#include <termios.h>

#include <string>
#include <string_view>

namespace tarnwell::vorel_line {

/// The real port of a recording.
class DevicePort {
 public:
  /// `dataFormat` such as "7,e,1" fixes what the console's side can't tell.
  DevicePort(std::string path, std::string dataFormat) : m_path(std::move(path)), m_dataFormat(std::move(dataFormat)) {}
  ~DevicePort() { Close(); }
  DevicePort(const DevicePort&) = delete;
  DevicePort& operator=(const DevicePort&) = delete;

  /// Opens it at the format of `console`. What went wrong, or nothing.
  std::string Open(const termios& console);
  void Close();
  int Descriptor() const { return m_descriptor; }

  /// Sets the format of `console` where it isn't set; true where it was another.
  bool Follow(const termios& console);

  /// Nothing happens on a line that has no RTS.
  void SetRts(bool on) const;

  /// The format that is set, such as "9600,n,8,1".
  std::string Settings() const;

 private:
  bool Apply(const termios& console);
  void FixFormat(termios& wanted) const;

  std::string m_path;
  std::string m_dataFormat;
  int m_descriptor = -1;
  termios m_followed{};
};

/// Whether `text` is data bits, parity and stop bits, such as "7,e,1".
bool IsDataFormat(std::string_view text);

}  // namespace tarnwell::vorel_line
