#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include "link/frame_codec.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"

// What every transaction costs before and behind the line itself.

using namespace tarnwell;

static void BuildRequest(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(link::BuildRequestFrame("RT01.025= 1.5", 31));
}
BENCHMARK(BuildRequest);

static void CheckReply(benchmark::State& state) {
  const std::string text(static_cast<std::size_t>(state.range(0)), 'x');
  const std::string frame = link::BuildRequestFrame("S=" + text, 1);
  for (auto _ : state) benchmark::DoNotOptimize(link::CheckReplyFrame(frame, 1, "S="));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frame.size()));
}
BENCHMARK(CheckReply)->Arg(3)->Arg(18)->Arg(249);

static void WriteNumber(benchmark::State& state) {
  constexpr std::array<double, 4> kValues = {12.5, -0.5, 1234.567, 0.0};
  std::size_t next = 0;
  for (auto _ : state) benchmark::DoNotOptimize(protocol::NumberText(kValues[next++ % kValues.size()]));
}
BENCHMARK(WriteNumber);

static void ReadNumber(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(protocol::LeadingNumber(" -43.25 dBm"));
}
BENCHMARK(ReadNumber);

static void ReadStatusLetters(benchmark::State& state) {
  constexpr std::string_view kStatus = "OTACRY";
  for (auto _ : state) {
    benchmark::DoNotOptimize(protocol::ReadCommsMode(kStatus));
    benchmark::DoNotOptimize(protocol::ReadOperatingState(kStatus));
    benchmark::DoNotOptimize(protocol::ReadRFOutput(kStatus));
    benchmark::DoNotOptimize(protocol::MuteIsForced(kStatus));
  }
}
BENCHMARK(ReadStatusLetters);
