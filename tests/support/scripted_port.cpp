#include "support/scripted_port.h"

#include <gtest/gtest.h>

#include <cctype>
#include <utility>

namespace tarnwell::test {

std::string Framed(std::string_view text, std::uint8_t address) {
  std::string body(1, static_cast<char>('@' + address));
  body += text;
  int sum = 0;
  for (const char byte : body) sum += static_cast<unsigned char>(byte);
  const int low = sum % 256;
  return "{" + body + static_cast<char>(((low % 64) ^ (low / 64)) + ' ') + "}";
}

ScriptedPort::~ScriptedPort() {
  std::string unsent;
  for (const Exchange& exchange : m_script) unsent += exchange.command + ' ';
  EXPECT_EQ(unsent, "") << "was expected and never sent";
  std::string unread;
  for (const ReceivedByte& received : m_received) unread += received.byte;
  EXPECT_EQ(unread, "") << "was received and never read";
}

Exchange& ScriptedPort::Expect(std::string command) { return m_script.emplace_back(Exchange{std::move(command)}); }

std::string ScriptedPort::Joined(bool commandsAlone) const {
  std::string text;
  for (const Entry& entry : m_transcript) {
    if (entry.isCommand || !commandsAlone) text += (text.empty() ? "" : " ") + entry.text;
  }
  return text;
}

std::string ScriptedPort::TakeTranscript() {
  std::string text = Transcript();
  m_transcript.clear();
  m_transcriptStart = m_counter.Now();
  return text;
}

std::string ScriptedPort::Paces() const {
  constexpr std::int64_t kAnswerTakes = 20;
  std::string text;
  std::int64_t before = m_transcriptStart;
  const auto pause = [&](std::int64_t at) {
    const std::int64_t milliseconds = (at - before) * 1000 / VirtualCounter::kRate - (text.empty() ? 0 : kAnswerTakes);
    return std::to_string((milliseconds + 5) / 10 * 10);  // the looks at port and counter take some too
  };
  for (const Entry& entry : m_transcript) {
    if (!entry.isCommand) continue;
    text += pause(entry.at) + ' ' + entry.text + ' ';
    before = entry.at;
  }
  return text + pause(m_counter.Now());
}

std::vector<double> ScriptedPort::Gaps(bool commandsAlone) const {
  std::vector<double> gaps;
  const Entry* before = nullptr;
  for (const Entry& entry : m_transcript) {
    if (commandsAlone && !entry.isCommand) continue;
    if (before != nullptr) gaps.push_back(static_cast<double>(entry.at - before->at) / VirtualCounter::kRate);
    before = &entry;
  }
  return gaps;
}

bool ScriptedPort::SetCommPort(int number) {
  const bool taken = Take(!m_open && number >= 1 && number <= 256, "CommPort=" + std::to_string(number));
  if (taken) m_commPort = number;
  return taken;
}

bool ScriptedPort::SetSettings(std::string_view settings) {
  const bool taken = Take(settings.find(",,") == std::string_view::npos, "Settings=" + std::string(settings));
  if (taken) {
    m_settings = settings;
    for (char& letter : m_settings) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return taken;
}

bool ScriptedPort::SetHandshaking(int handshaking) {
  const bool taken = Take(handshaking == 0 || handshaking == 2, "Handshaking=" + std::to_string(handshaking));
  if (taken) m_handshaking = handshaking;
  return taken;
}

bool ScriptedPort::SetPortOpen(bool open) {
  const bool refused = open && (m_refusedPort == 0 || m_refusedPort == m_commPort);
  m_openFailure = refused ? m_openRefusal : "";
  const bool taken = Take(m_openFailure.empty(), open ? "PortOpen=1" : "PortOpen=0");
  if (taken) m_open = open;
  return taken;
}

bool ScriptedPort::SetInputMode(int mode) { return Take(m_open && mode == 1, "InputMode=" + std::to_string(mode)); }

int ScriptedPort::InBufferCount() {
  AwaitInput(1);  // as long as a port may look at an empty line
  return Arrived();
}

void ScriptedPort::AwaitInput(int milliseconds) {
  if (Arrived() != 0) return;
  const std::int64_t end = m_counter.Now() + milliseconds * VirtualCounter::kRate / 1000;
  m_counter.AdvanceTo(m_received.empty() ? end : std::min(end, m_received.front().at));
}

void ScriptedPort::DiscardInput() { m_received.erase(m_received.begin(), m_received.begin() + Arrived()); }

void ScriptedPort::Output(std::string_view bytes) {
  EXPECT_TRUE(m_open) << "sent on a closed port: " << bytes;
  const std::string command = CommandOf(bytes);
  Record(command, true);
  if (m_script.empty() && m_model) return Reply({command, m_model(command)});
  if (m_script.empty() || m_script.front().command != command) {
    ADD_FAILURE() << "sent \"" << command << "\", expected "
                  << (m_script.empty() ? "nothing" : '"' + m_script.front().command + '"')
                  << "; so far: " << Commands();
    return;
  }
  const Exchange exchange = std::move(m_script.front());
  m_script.pop_front();
  Reply(exchange);
}

std::uint8_t ScriptedPort::Input() {
  if (Arrived() == 0) {
    ADD_FAILURE() << "read from an empty buffer";
    return 0;
  }
  const char byte = m_received.front().byte;
  m_received.pop_front();
  return static_cast<std::uint8_t>(byte);
}

void ScriptedPort::Record(std::string text, bool isCommand) {
  m_transcript.push_back({m_counter.Now(), std::move(text), isCommand});
}

/// A refused value is recorded too: it was asked for.
bool ScriptedPort::Take(bool valid, const std::string& entry) {
  const bool taken = valid && (m_refused.empty() || !entry.starts_with(m_refused));
  Record(taken ? entry : entry + "(refused)");
  return taken;
}

std::string ScriptedPort::CommandOf(std::string_view frame) const {
  constexpr std::size_t kOverhead = 4;
  std::string command(frame.size() < kOverhead ? frame : frame.substr(2, frame.size() - kOverhead));
  EXPECT_EQ(frame, Framed(command, m_address)) << "is no whole frame to address " << int{m_address};
  return command;
}

void ScriptedPort::Reply(const Exchange& exchange) {
  if (exchange.action) exchange.action();
  const std::string bytes = exchange.text ? Framed(*exchange.text, m_address) : exchange.bytes;
  double seconds = exchange.delay;
  for (const char byte : bytes) {
    m_received.push_back({m_counter.Now() + std::llround(seconds * VirtualCounter::kRate), byte});
    seconds += exchange.gap;
  }
  std::ranges::stable_sort(m_received, {}, &ReceivedByte::at);
}

int ScriptedPort::Arrived() const {
  const auto later = std::ranges::upper_bound(m_received, m_counter.Now(), {}, &ReceivedByte::at);
  return static_cast<int>(later - m_received.begin());
}

}  // namespace tarnwell::test
