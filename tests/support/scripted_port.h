#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/serial_port.h"
#include "support/virtual_counter.h"

namespace tarnwell::test {

/// `text` in a whole frame, by the tests' own reckoning of the checksum.
std::string Framed(std::string_view text, std::uint8_t address = 0);

/// One expected request and what comes back. Without an answer the device is silent.
struct Exchange {
  std::string command;
  std::optional<std::string> text = {};  ///< of the reply; the port frames it from the address that it has then
  std::string bytes = {};                ///< of the reply, as they stand
  double delay = 0.02;                   ///< seconds from the request to the first byte of the reply
  double gap = 0.0;                      ///< seconds from one byte of the reply to the next
  std::function<void()> action = {};     ///< happens as the request arrives

  Exchange& Answer(std::string reply) { return Set(text, std::move(reply)); }
  Exchange& AnswerBytes(std::string reply) { return Set(bytes, std::move(reply)); }
  Exchange& After(double seconds) { return Set(delay, seconds); }
  Exchange& WithGaps(double seconds) { return Set(gap, seconds); }
  Exchange& Do(std::function<void()> act) { return Set(action, std::move(act)); }

  template <class T, class V>
  Exchange& Set(T& place, V value) {
    place = std::move(value);
    return *this;
  }
};

/// A serial port whose other end follows a script on the virtual counter: port.Expect("S?").Answer("S=OT").
/// A request that is not the next one of the script fails the test at once and gets no answer; what was never sent or
/// never read fails it when the port is destroyed. The port starts closed.
class ScriptedPort final : public platform::SerialPort {
 public:
  /// Gives the reply text to a command, or nothing for a silent device.
  using Model = std::function<std::optional<std::string>(std::string command)>;

  explicit ScriptedPort(VirtualCounter& counter) : m_counter(counter) {}
  ~ScriptedPort() override;

  /// The next request of the script. The reference is good until the request has come.
  Exchange& Expect(std::string command);
  /// Requests that come when the script is at its end are answered by `model`.
  void AnswerAlways(Model model) { m_model = std::move(model); }
  /// The address that requests must carry and that replies echo, 0 to 31; 0 unless told.
  void SetAddress(std::uint8_t address) { m_address = address; }

  /// What the console did to the port since the last Take, in order: commands, and "RTS=1", "PortOpen=1",
  /// "Settings=9600,n,8,1", "CommPort=2", "Handshaking=2", "InputMode=1", joined by blanks; "(refused)" stands
  /// behind what was not taken.
  std::string Transcript() const { return Joined(false); }
  std::string TakeTranscript();
  /// The same for the commands alone.
  std::string Commands() const { return Joined(true); }
  /// The commands since the last Take and the pauses around them in milliseconds, "100 S=O 50 S? 100". The first runs
  /// from the Take, the last until now; the way of an answer is taken off.
  std::string Paces() const;
  /// Seconds from each of those entries to the next since the last Take, or from each command.
  std::vector<double> Gaps(bool commandsAlone = true) const;
  double SmallestGap() const { return std::ranges::min(Gaps()); }

  /// Every opening, or that of one port number, fails with this reason until "" is given.
  void RefuseOpening(std::string reason, int port = 0) {
    m_openRefusal = std::move(reason);
    m_refusedPort = port;
  }
  /// "Settings", "Handshaking" or "InputMode" is refused until another, or "", is given.
  void Refuse(std::string what) { m_refused = std::move(what); }
  void SetCTSHolding(bool holding) { m_ctsHolding = holding; }
  /// Bytes that stand in the output buffer until it is discarded.
  void HoldOutput(int bytes) { m_outBuffered = bytes; }
  /// The adapter pulled, or plugged back in.
  void SetDevicePresent(bool present) { m_present = present; }

  int CommPort() const override { return m_commPort; }
  bool SetCommPort(int number) override;
  std::string Settings() const override { return m_settings; }
  bool SetSettings(std::string_view settings) override;
  int Handshaking() const override { return m_handshaking; }
  bool SetHandshaking(int handshaking) override;
  bool PortOpen() const override { return m_open; }
  bool SetPortOpen(bool open) override;
  bool SetInputMode(int mode) override;
  std::string OpenFailure() const override { return m_openFailure; }
  std::string DevicePath() const override { return m_commPort == 1 ? "/dev/ttyS0" : "COM2"; }
  void SetRTSEnable(bool on) override { Record(on ? "RTS=1" : "RTS=0"); }
  bool CTSHolding() const override { return m_ctsHolding; }
  int InBufferCount() override;
  void AwaitInput(int milliseconds) override;
  void DiscardInput() override;
  int OutBufferCount() override { return m_outBuffered; }
  void DiscardOutput() override { m_outBuffered = 0; }
  void Output(std::string_view bytes) override;
  std::uint8_t Input() override;
  bool DevicePresent() override { return m_present; }

 private:
  struct Entry {
    std::int64_t at;
    std::string text;
    bool isCommand;
  };
  struct ReceivedByte {
    std::int64_t at;
    char byte;
  };

  void Record(std::string text, bool isCommand = false);
  bool Take(bool valid, const std::string& entry);
  std::string Joined(bool commandsAlone) const;
  std::string CommandOf(std::string_view frame) const;
  void Reply(const Exchange& exchange);
  int Arrived() const;

  VirtualCounter& m_counter;
  std::deque<Exchange> m_script;
  Model m_model;
  std::uint8_t m_address = 0;
  std::vector<Entry> m_transcript;
  std::int64_t m_transcriptStart = m_counter.Now();
  std::deque<ReceivedByte> m_received;  // in order of arrival; later ones are still on their way

  std::string m_openRefusal;
  int m_refusedPort = 0;
  std::string m_openFailure;
  std::string m_refused;
  bool m_present = true;

  int m_commPort = 1;
  std::string m_settings = "9600,n,8,1";
  int m_handshaking = 0;
  bool m_open = false;
  bool m_ctsHolding = true;
  int m_outBuffered = 0;
};

}  // namespace tarnwell::test
