#include <benchmark/benchmark.h>

#include <QApplication>
#include <array>
#include <map>

#include "console/readers.h"
#include "forms/frm_alarms.h"
#include "forms/frm_main.h"
#include "forms/frm_options.h"
#include "forms/frm_settings.h"
#include "support/scripted_port.h"
#include "support/virtual_counter.h"

// What the operator would feel as a slow window: the layout of each form at a new size, and a reader's own work from
// the request to the screen, the waiting for the line left out.

namespace {

using namespace tarnwell;

void Resize(benchmark::State& state, forms::Form& form) {
  constexpr std::array<QSize, 2> kSizes = {QSize(640, 480), QSize(1280, 1000)};
  form.show();
  std::size_t next = 0;
  for (auto _ : state) {
    form.setFixedSize(kSizes[next++ % kSizes.size()]);  // some forms keep the size they are given
    QCoreApplication::sendPostedEvents();
  }
}

template <typename View>
void Layout(benchmark::State& state) {
  View form;
  Resize(state, form);
}

void LayoutOfSettings(benchmark::State& state) {
  forms::frmMain main;
  forms::frmSettings form(main.lblRFLevel);
  Resize(state, form);
}
BENCHMARK(Layout<forms::frmMain>)->Unit(benchmark::kMicrosecond);
BENCHMARK(Layout<forms::frmAlarms>)->Unit(benchmark::kMicrosecond);
BENCHMARK(LayoutOfSettings)->Unit(benchmark::kMicrosecond);
BENCHMARK(Layout<forms::frmOptions>)->Unit(benchmark::kMicrosecond);

class SilentDesktop final : public platform::Desktop {
 public:
  void ShowMessage(const platform::Message&) override {}
  std::optional<QString> ChooseSaveFile(const platform::SaveDialog&) override { return std::nullopt; }
  void Beep() override {}
  void SetBusyPointer(bool) override {}
};

/// The readers on a port that answers each query by a table, two answers in turn, so that what is shown changes.
struct Bench {
  Bench() {
    counter.SetReadTakes(test::VirtualCounter::kRate / 1000);
    timing.InitCounter();
    port.SetPortOpen(true);
    port.AnswerAlways(
        [this](const std::string& command) -> std::optional<std::string> { return answers.at(command)[turn++ % 2]; });
    shared.SSPAType = 3;
    form.show();
  }

  std::map<std::string, std::array<std::string, 2>> answers = {{"S?", {"S=OTUAY", "S=SXDA"}},
                                                               {"A?", {"A=", "A=Ac"}},
                                                               {"VR?", {"VR=43.21", "VR=-1.5"}},
                                                               {"VT?", {"VT=41.5", "VT=42"}}};
  std::size_t turn = 0;
  test::VirtualCounter counter;
  test::VirtualYielder yielder{counter};
  test::ScriptedPort port{counter};
  SilentDesktop desktop;
  link::SSPA_Public shared;
  link::IntervalTiming timing{counter, yielder};
  link::SerialLink line{shared, timing, port};
  console::SessionState session;
  forms::frmMain form;
  alarms::AlarmIndicator indicator{form, shared, desktop};
  console::Readers readers{form, shared, line, timing, session, indicator, [] { return QDateTime::currentDateTime(); }};
};

template <typename Read>
void RunReader(benchmark::State& state, Read read) {
  constexpr int kForgetEvery = 1000;
  Bench bench;
  int runs = 0;
  for (auto _ : state) {
    read(bench.readers);
    if (++runs % kForgetEvery == 0) bench.port.TakeTranscript();
  }
  if (bench.shared.CommsLost) state.SkipWithError("the device did not answer");
}

void ReadStatus(benchmark::State& state) {
  RunReader(state, [](console::Readers& readers) { readers.ReadStatus(); });
}
BENCHMARK(ReadStatus)->Unit(benchmark::kMicrosecond);

void ReadAlarms(benchmark::State& state) {
  RunReader(state, [](console::Readers& readers) { readers.ReadAlarms(); });
}
BENCHMARK(ReadAlarms)->Unit(benchmark::kMicrosecond);

void ReadRFLevel(benchmark::State& state) {
  RunReader(state, [](console::Readers& readers) { readers.ReadRFLevel(); });
}
BENCHMARK(ReadRFLevel)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
