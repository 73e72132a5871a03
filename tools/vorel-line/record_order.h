#pragma once

#include <string>
#include <vector>

namespace tarnwell::vorel_line {

/// The files in the order in which they were begun, whatever order a shell gives them in: "a.rec a.rec.1" is newest
/// first, and "a.rec.10" stands ahead of "a.rec.2". One without a record, or that isn't there yet, is the newest; one
/// that is no recording stands ahead of all. As given where one is no regular file: what is read from a pipe is gone
/// from it.
std::vector<std::string> InOrderOfTime(const std::vector<std::string>& files);

}  // namespace tarnwell::vorel_line
