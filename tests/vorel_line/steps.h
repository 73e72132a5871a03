#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "support/scripted_port.h"
#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

using test::Framed;

inline constexpr std::int64_t kStart = 1'700'000'000'000'000;

/// A session in short: seconds, ">" or "<" or "-", and the bytes.
struct Step {
  double at;
  char side;
  std::string bytes;
};

inline Record RecordOf(const Step& step) {
  const Kind kind = step.side == '>' ? Kind::kConsole : step.side == '<' ? Kind::kDevice : Kind::kNote;
  return {kind, kStart + std::llround(step.at * 1e6), 0, step.bytes, 60};
}

template <class Reader>
void Feed(Reader& reader, const std::vector<Step>& steps) {
  for (const Step& step : steps) reader.Take(RecordOf(step));
  reader.End();
}

/// A question and its answer, which comes too late for an echo.
inline void Ask(std::vector<Step>& steps, double at, const char* request, const char* reply, std::uint8_t address = 1) {
  steps.push_back({at, '>', Framed(request, address)});
  steps.push_back({at + .05, '<', Framed(reply, address)});
}

}  // namespace tarnwell::vorel_line
