#pragma once

#include <QSerialPort>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::platform {

/// A port's speed and character format.
struct PortFormat {
  int speed = 9600;
  QSerialPort::Parity parity = QSerialPort::NoParity;
  QSerialPort::DataBits dataBits = QSerialPort::Data8;
  QSerialPort::StopBits stopBits = QSerialPort::OneStop;

  bool operator==(const PortFormat&) const = default;
};

/// Reads "speed,parity letter,data bits,stop bits", such as "9600,n,8,1": a standard speed from 110 to 256000; n, e, o,
/// m or s in either case; 5 to 8; 1 or 2. Anything else, blanks included, is no format.
std::optional<PortFormat> ParsePortFormat(std::string_view settings);

}  // namespace tarnwell::platform
