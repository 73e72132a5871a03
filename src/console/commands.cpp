#include "console/commands.h"

#include "console/entry_keys.h"
#include "console/entry_text.h"
#include "console/view_rules.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::console {

namespace {

constexpr double kPauseAroundCommand = 0.1;
constexpr double kPauseBeforeReadBack = 0.05;
constexpr double kPauseAroundGain = 0.05;

constexpr std::string_view kGainKeys = "0123456789.,-";

}  // namespace

template <typename ReadBack>
bool Commands::SendAndReadBack(const protocol::Request& request, ReadBack readBack) {
  m_timing.DelayBlocking(kPauseAroundCommand);
  std::string reply;
  const bool answered = protocol::Send(m_line, request, reply);
  if (answered) {
    m_timing.DelayBlocking(kPauseBeforeReadBack);
    readBack();
  }
  m_timing.DelayBlocking(kPauseAroundCommand);
  return answered;
}

void Commands::SendStateCommand(char code) { SendStatus(protocol::SetStatus(code)); }

void Commands::SendCommsMode(const protocol::Request& mode) { SendStatus(mode); }

void Commands::SendStatus(const protocol::Request& request) {
  if (!SendAndReadBack(request, [this] { m_readers.ReadStatus(); })) m_readers.Doubt(Question::kStatus);
}

void Commands::SendPathCommand(std::string_view setting) {
  const bool pathA = protocol::Holds(setting, "A=");
  const int which = pathA ? 5 : 6;
  if (SendAndReadBack(protocol::SetPath(setting), [this, which] { m_readers.ReadPathSelection(which); })) return;
  m_readers.Doubt(pathA ? Question::kPathA : Question::kPathB);
  m_readers.SelectShownPath(which);
}

void Commands::WriteGain() {
  m_timing.DelayBlocking(kPauseAroundGain);
  const std::optional<double> gain = NumberFromEntry(m_form.txtGainAdjust.Text());
  if (!gain) {
    updwnGainAdjust_Change();
    return;
  }
  std::string reply;
  if (protocol::Send(m_line, protocol::SetGain(*gain), reply)) {
    m_readers.TakeGain(protocol::AfterEcho(reply, 2));
  } else {
    m_readers.Doubt(Question::kGain);
    m_session.GainInDoubt = true;
  }
  m_timing.DelayBlocking(kPauseAroundGain);
}

void Commands::txtGainAdjust_KeyPress(forms::KeyAscii& key) {
  TakeEntryKey(
      key, kGainKeys, [this] { EnterGain(); }, [this] { updwnGainAdjust_Change(); });
}

void Commands::EnterGain() {
  const std::optional<double> gain = NumberFromEntry(m_form.txtGainAdjust.Text());
  if (!gain) {
    updwnGainAdjust_Change();
    return;
  }
  m_form.updwnGainAdjust.SetValue(protocol::Tenths(*gain));
  // A value held at a limit is shown even where the spin stood there already: what is sent is what the field shows.
  const int spin = m_form.updwnGainAdjust.Value();
  if (protocol::Tenths(*gain) != spin) updwnGainAdjust_Change();
  WriteGain();
}

void Commands::txtGainAdjust_KeyDown(int key) {
  if (StepByKey(m_form.updwnGainAdjust, key)) WriteGain();
}

void Commands::updwnGainAdjust_Change() { ShowGain(m_form); }

void Commands::updwnGainAdjust_MouseUp() {
  // At its limit the spin changes nothing, and what was half typed would go out.
  ShowGain(m_form);
  WriteGain();
}

}  // namespace tarnwell::console
