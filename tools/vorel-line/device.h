#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwell::vorel_line {

/// Speed, data bits, parity, stop bits and handshake of a terminal, as the kernel has them.
struct LineFormat {
  unsigned flags = 0;
  unsigned speed = 0;
  bool operator==(const LineFormat&) const = default;
};

/// 9600,n,8,1 without handshake: what a console's side has until a console sets it.
LineFormat UsualFormat();

/// Of an open terminal; nothing where it is none.
std::optional<LineFormat> FormatOf(int terminal);

/// Such as "9600,n,8,1".
std::string FormatText(const LineFormat& format);

/// Parity, data bits and stop bits in the console's order, such as "e,7,1". "7,e,1" is taken too; empty for what is
/// neither.
std::string DataFormatOf(std::string_view text);

/// The real port of a recording.
class DevicePort {
 public:
  /// `dataFormat` such as "e,7,1" fixes what the console's side can't tell.
  DevicePort(std::string path, std::string dataFormat) : m_path(std::move(path)), m_dataFormat(std::move(dataFormat)) {}
  ~DevicePort() { Close(); }
  DevicePort(const DevicePort&) = delete;
  DevicePort& operator=(const DevicePort&) = delete;

  /// Opens it at `console`, the format of the console's side. What went wrong, or nothing.
  std::string Open(const LineFormat& console);
  /// Whether the last opening found no device: it may come.
  bool IsAbsent() const { return m_isAbsent; }
  void Close();
  int Descriptor() const { return m_descriptor; }

  /// What is told of the format when it is to be another one: "9600,n,8,1", or that the port has refused it and stays
  /// as it was. Nothing while it is the same.
  std::optional<std::string> Follow(const LineFormat& console);

  /// Nothing happens on a line that has no RTS.
  void SetRts(bool on) const;

  /// The format that is set, such as "9600,n,8,1"; empty while closed.
  std::string Settings() const;

 private:
  bool Apply(const LineFormat& console);

  std::string m_path;
  std::string m_dataFormat;
  int m_descriptor = -1;
  bool m_isAbsent = false;
  LineFormat m_followed;
};

}  // namespace tarnwell::vorel_line
