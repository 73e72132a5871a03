#pragma once

#include <QString>
#include <fstream>
#include <string>

namespace tarnwell::test {

/// The bytes of a whole snapshot, from "amplifier.txt" or "controller.txt". There each line is the code of its check
/// character by another's reckoning, a blank, and the text.
inline std::string SampleFile(const char* name) {
  std::ifstream file(std::string(EXAMPLES "/") + name);
  std::string bytes;
  for (std::string line; std::getline(file, line);) {
    const QByteArray text = QString::fromStdString(line.substr(line.find(' ') + 1)).toLatin1();
    bytes += text.leftJustified(79).toStdString() + static_cast<char>(std::stoi(line)) + "\r\n";
  }
  return bytes;
}

}  // namespace tarnwell::test
