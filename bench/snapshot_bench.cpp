#include <QApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

#include "link/frame_codec.h"
#include "sim/frame_server.h"
#include "snapshot/writer.h"
#include "support/plain_port.h"

// The longest snapshot on the real counter, against what it can't do without: the pauses, the transmit windows, and the
// answers of a device at 9600 bit/s. The rest is the console's own: spins that overshoot, the bar, the file.

namespace {

using namespace tarnwell;

constexpr double kPause = 0.05;
constexpr double kLead = 0.002;  // from the opening of a transmit window to its first bit
constexpr double kAnswerTime = 0.005;
constexpr double kByteTime = 10.0 / 9600.0;
constexpr int kRuns = 3;

double Now() {
  platform::MonotonicCounter counter;
  std::int64_t count = 0;
  counter.QueryCount(count);
  return static_cast<double>(count) * 1e-9;
}

/// A line whose bytes take their time, with one simulated device at its end.
class TimedLine final : public test::PlainPort {
 public:
  explicit TimedLine(sim::Device& device) { m_server.Attach(device); }

  double Needed() const { return m_needed; }  ///< seconds, of all transactions and the pauses before them
  int Transactions() const { return m_transactions; }

  int InBufferCount() override {
    const auto arrived = static_cast<long>((Now() - m_firstBit) / kByteTime);
    return static_cast<int>(std::clamp(arrived, 0L, static_cast<long>(m_reply.size())) - m_read);
  }
  void DiscardInput() override { m_reply.clear(); }
  std::uint8_t Input() override { return static_cast<std::uint8_t>(m_reply[static_cast<std::size_t>(m_read++)]); }

  void Output(std::string_view frame) override {
    m_reply.clear();
    m_read = 0;
    for (const sim::Exchange& exchange : m_server.Receive(frame)) m_reply += exchange.frame;
    const double untilAnswer = static_cast<double>(frame.size()) * kByteTime + kAnswerTime;
    m_firstBit = Now() + untilAnswer;
    const double answered = kLead + untilAnswer + static_cast<double>(m_reply.size()) * kByteTime;
    m_needed += kPause + std::max(link::TransmitTime(Settings(), frame.size()), answered);
    ++m_transactions;
  }

 private:
  sim::FrameServer m_server;
  std::string m_reply;
  double m_firstBit = 0;
  double m_needed = 0;
  int m_transactions = 0;
  int m_read = 0;
};

class SilentDesktop final : public platform::Desktop {
 public:
  void ShowMessage(const platform::Message&) override {}
  std::optional<QString> ChooseSaveFile(const platform::SaveDialog&) override { return std::nullopt; }
  void Beep() override {}
  void SetBusyPointer(bool) override {}
};

bool Measure(const QString& path) {
  const auto device = sim::MakeDevice({sim::FindKind("c240"), 1, "0264C-01 V6.2", "842", 2, 0});
  TimedLine port(*device);
  SilentDesktop desktop;
  link::SSPA_Public shared;
  shared.ConnectAddress = 1;
  shared.SSPAType = 3;
  shared.FirmwareClass = 3;
  shared.HWPlatform = 2;
  platform::MonotonicCounter counter;
  platform::EventLoopYielder yielder(counter);
  link::IntervalTiming timing(counter, yielder);
  timing.InitCounter();
  link::SerialLink line(shared, timing, port);
  forms::frmSaveSnapshot form;
  form.prgSaveSnapshot.setRange(0, 110);
  form.show();
  QCoreApplication::processEvents();
  snapshot::Writer writer(form, shared, line, timing, desktop, [] { return QDateTime::currentDateTime(); });

  const double start = Now();
  if (!writer.WriteSSPASnapshot(path) || shared.CommsLost) return false;
  const double taken = Now() - start;
  std::printf("%12d %12.3f %12.3f %12.1f\n", port.Transactions(), taken, port.Needed(),
              (taken - port.Needed()) * 1000.0);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  const QTemporaryDir folder;
  std::printf("transactions      taken s     needed s       own ms\n");
  bool written = true;
  for (int run = 0; run < kRuns; ++run) written = written && Measure(folder.filePath(QStringLiteral("snapshot")));
  return written ? 0 : 1;
}
