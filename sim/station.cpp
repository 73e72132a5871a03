#include "sim/station.h"

#include <array>
#include <cstdio>
#include <limits>

namespace tarnwell::sim {

namespace {

constexpr double kForGood = std::numeric_limits<double>::infinity();

/// Text for a terminal: what isn't plain ASCII as its code.
std::string Readable(std::string_view text) {
  std::string readable;
  for (const char c : text) {
    std::array<char, 8> code;
    std::snprintf(code.data(), code.size(), "\\x%02X", static_cast<unsigned char>(c));
    if (c >= ' ' && c <= '~') {
      readable += c;
    } else {
      readable += code.data();
    }
  }
  return readable;
}

/// "12.345 A > S?"
std::string TraceLine(double now, char address, char direction, std::string_view text) {
  std::array<char, 32> time;
  std::snprintf(time.data(), time.size(), "%.3f %c %c ", now, address, direction);
  return time.data() + Readable(text);
}

std::string_view FaultMark(const std::vector<Piece>& pieces, const std::string& frame) {
  if (pieces.empty()) return " (lost)";
  const bool whole = pieces.size() == 1 && pieces[0].delay == 0.0 && pieces[0].bytes == frame;
  return whole ? "" : " (spoilt)";
}

}  // namespace

Station::Station(const Options& options)
    : m_asked{options.trace},
      m_faults(options.seed),
      // A real port has a speed of its own.
      m_outbox(options.port.empty() ? options.rate : 0),
      m_answerTime(options.answerTime),
      m_echo(options.echo) {
  for (const DeviceSetup& setup : options.devices) {
    m_devices.push_back(MakeDevice(setup));
    m_server.Attach(*m_devices.back());
  }
  for (const auto& [name, probability] : options.faults) m_faults.Set(name, probability);
}

std::vector<std::string> Station::Receive(double now, std::string_view bytes) {
  EndSilence(now);
  if (m_echo) m_outbox.Add(now, {{0.0, std::string(bytes)}});
  std::vector<std::string> lines;
  for (const Exchange& exchange : m_server.Receive(bytes)) {
    lines.push_back(TraceLine(now, exchange.addressByte, '>', exchange.command));
    if (!exchange.reply) continue;
    const std::vector<Piece> pieces = m_faults.Apply(exchange.frame);
    const double requestTime = m_outbox.LineTime(exchange.command.size() + 4);
    m_outbox.Add(now + requestTime + m_answerTime, pieces);
    lines.push_back(TraceLine(now, exchange.frame[1], '<', *exchange.reply).append(FaultMark(pieces, exchange.frame)));
  }
  return lines;
}

std::string Station::Send(double now) {
  EndSilence(now);
  return m_outbox.Take(now);
}

std::optional<double> Station::NextDue() const {
  const auto due = m_outbox.NextDue();
  if (!m_silentUntil || *m_silentUntil == kForGood) return due;
  return due ? std::min(*due, *m_silentUntil) : m_silentUntil;
}

void Station::Silence(double now, std::optional<double> seconds) {
  m_silentUntil = seconds ? now + *seconds : kForGood;
  m_server.SetSilent(true);
}

void Station::EndSilence(double now) {
  if (m_silentUntil && *m_silentUntil <= now) Talk();
}

void Station::Talk() {
  m_silentUntil.reset();
  m_server.SetSilent(false);
}

bool Station::Select(std::uint8_t address) {
  for (std::size_t i = 0; i < m_devices.size(); ++i) {
    if (m_devices[i]->Address() != address) continue;
    m_selected = i;
    return true;
  }
  return false;
}

}  // namespace tarnwell::sim
