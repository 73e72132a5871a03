#include <QApplication>
#include <algorithm>
#include <cstdio>

#include "forms/frm_main.h"
#include "settings/read_back.h"
#include "sim/frame_server.h"
#include "sim/outbox.h"
#include "support/plain_port.h"

// One opening of the settings form on a full amplifier, in real time: how long the read-back takes, and how much of it
// is neither its pauses nor the line nor the device. The device stands on the other side of the port control, and its
// bytes come at the pace of 9600 bit/s.

namespace {

using namespace tarnwell;

constexpr int kOpenings = 3;
constexpr int kSpeed = 9600;
constexpr double kAnswerTime = 0.005;

double Now() {
  platform::MonotonicCounter counter;
  std::int64_t rate = 0;
  std::int64_t count = 0;
  counter.QueryFrequency(rate);
  counter.QueryCount(count);
  return static_cast<double>(count) / static_cast<double>(rate);
}

/// The line and the device, with the time noted that they can't do without.
class PacedPort final : public test::PlainPort {
 public:
  explicit PacedPort(sim::FrameServer& devices) : m_devices(devices) {}

  int sent = 0;
  double lineTime = 0.0;  ///< transmit windows, answers and replies

  void DiscardInput() override { m_arrived.clear(); }
  int InBufferCount() override { return static_cast<int>((m_arrived += m_line.Take(Now())).size()); }

  void Output(std::string_view bytes) override {
    ++sent;
    const double window = link::TransmitTime(Settings(), bytes.size());
    double whole = window;
    for (const sim::Exchange& exchange : m_devices.Receive(bytes)) {
      if (!exchange.reply) continue;
      const double answer = m_line.LineTime(bytes.size()) + kAnswerTime;
      m_line.Add(Now() + answer, {{0.0, exchange.frame}});
      whole = std::max(window, link::kTransmitLead + answer + m_line.LineTime(exchange.frame.size()));
    }
    lineTime += whole;
  }

  std::uint8_t Input() override {
    const auto byte = static_cast<std::uint8_t>(m_arrived.front());
    m_arrived.erase(0, 1);
    return byte;
  }

 private:
  sim::FrameServer& m_devices;
  sim::Outbox m_line{kSpeed};
  std::string m_arrived;
};

struct Result {
  double whole;
  double pauses;
  double line;
  int transactions;
};

Result OpenOnce() {
  const auto device = sim::MakeDevice({sim::FindKind("c240"), 1, {}, {}, 0, 1});
  sim::FrameServer devices;
  devices.Attach(*device);
  PacedPort port(devices);
  platform::MonotonicCounter counter;
  platform::EventLoopYielder yielder(counter);
  link::IntervalTiming timing(counter, yielder);
  timing.InitCounter();
  link::SSPA_Public shared;
  shared.ConnectAddress = 1;
  shared.SSPAType = 3;
  shared.FirmwareClass = 3;
  shared.HWPlatform = 2;
  shared.SettingsOpen = true;
  link::SerialLink line(shared, timing, port);

  forms::frmMain main;
  forms::frmSettings form(main.lblRFLevel);
  form.SetInnerSize(form.ScaleWidth(), form.ScaleHeight());
  form.show();
  QCoreApplication::processEvents();
  settings::Opening opening{form, main, shared, timing};
  settings::CalibrationTables tables(opening, line);
  settings::ReadBack readBack(opening, line, tables);
  const double start = Now();
  readBack.ReadAllSettings();
  const double whole = Now() - start;
  constexpr int kRowsWithoutRead = 1;  // the reflected limit has its pause all the same; and one pause is ahead of all
  const double pauses = settings::kPauseAroundCommand * (1 + port.sent + kRowsWithoutRead);
  return {whole, pauses, port.lineTime, shared.CommsLost ? 0 : port.sent};
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  std::printf(
      "| opening of the settings form | transactions | whole, s | pauses, s | line and device, s | rest, ms |\n");
  std::printf("|---|---|---|---|---|---|\n");
  for (int i = 1; i <= kOpenings; ++i) {
    const Result r = OpenOnce();
    std::printf("| %d | %d | %.3f | %.3f | %.3f | %.1f |\n", i, r.transactions, r.whole, r.pauses, r.line,
                (r.whole - r.pauses - r.line) * 1e3);
  }
}
