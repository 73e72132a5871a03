#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::test {

/// The lines of a whole snapshot, without padding and check characters, in the file's encoding.
std::vector<std::string> AmplifierLines();
std::vector<std::string> ControllerLines();

/// The file of such lines.
std::string SnapshotFile(const std::vector<std::string>& lines);

}  // namespace tarnwell::test
