#pragma once

#include <QString>
#include <fstream>
#include <string>
#include <vector>

#include "snapshot/snapshot_line.h"

namespace tarnwell::test {

/// A line of a whole snapshot in the file's encoding, without padding, and its check character by another's reckoning.
struct SampleLine {
  std::string text;
  char check;
};

/// The lines of "amplifier.txt" or "controller.txt": the code of the check character, a blank, the text.
inline std::vector<SampleLine> SampleLines(const char* name) {
  std::ifstream file(std::string(EXAMPLES "/") + name);
  std::vector<SampleLine> lines;
  for (std::string line; std::getline(file, line);) {
    const QByteArray text = QString::fromStdString(line.substr(line.find(' ') + 1)).toLatin1();
    lines.push_back({text.toStdString(), static_cast<char>(std::stoi(line))});
  }
  return lines;
}

inline std::vector<std::string> TextsOf(const char* name) {
  std::vector<std::string> texts;
  for (const SampleLine& line : SampleLines(name)) texts.push_back(line.text);
  return texts;
}
inline std::vector<std::string> AmplifierLines() { return TextsOf("amplifier.txt"); }
inline std::vector<std::string> ControllerLines() { return TextsOf("controller.txt"); }

/// The file of such lines.
inline std::string SnapshotFile(const std::vector<std::string>& lines) {
  std::string file;
  for (const std::string& line : lines) file += snapshot::FormatSnapshotLine(line) + "\r\n";
  return file;
}

}  // namespace tarnwell::test
