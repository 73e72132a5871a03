#include "alarms/viewer.h"

#include <QApplication>

#include "alarms/alarm_news.h"
#include "alarms/alarm_table.h"
#include "alarms/viewer_controls.h"
#include "platform/text_encoding.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::alarms {

namespace {

constexpr double kPause = 0.05;
constexpr double kPauseAfterClearing = 0.1;

// The title says the state of the link, and the link check reads it there.
const QString kConnectedTo = QStringLiteral("Connected to");
const QString kLostConnectionTo = QStringLiteral("Lost Connection to");

constexpr bool Always(const link::SSPA_Public& /*device*/) { return true; }
constexpr bool Platform2(const link::SSPA_Public& device) { return device.HWPlatform == 2; }
constexpr bool Platform4(const link::SSPA_Public& device) { return device.HWPlatform == 4; }
constexpr bool TwoModules(const link::SSPA_Public& device) { return !device.SingleModule; }

std::string OneDecimal(std::string_view text) {
  return protocol::FixedText(protocol::LeadingNumber(text), 1, protocol::LeadingZero::kAlways);
}
std::string TwoDecimals(std::string_view text) {
  return protocol::FixedText(protocol::LeadingNumber(text), 2, protocol::LeadingZero::kAlways);
}

void ShowSlot(forms::CommandButton* button, const link::AlarmSlot& slot) {
  if (button == nullptr) return;
  button->SetBackground(slot.Active ? forms::kActiveColour : slot.Latched ? forms::kLatchedColour : forms::kGoodColour);
  button->SetCaption(slot.Acknowledged ? QStringLiteral("A") : QString());
  QString state = slot.Active    ? QStringLiteral("Active")
                  : slot.Latched ? QStringLiteral("Latched")
                                 : QStringLiteral("OK");
  if (slot.Acknowledged) state += QStringLiteral(", acknowledged");
  if (button->accessibleDescription() != state) button->setAccessibleDescription(state);
}

}  // namespace

/// One row a step of the poll loop behind the alarms: asked where `condition` holds, and shown in `label`.
struct AlarmViewer::Measurement {
  bool (*condition)(const link::SSPA_Public&);
  const protocol::Request& request;
  std::string (*shown)(std::string_view);
  forms::Label forms::frmAlarms::*label;
  const char* unit;
};

void AlarmViewer::TellOfAutomaticMode() {
  if (!IsController() || !m_shared.AutoMode) return;
  m_desktop.ShowMessage({QStringLiteral("To Clear Alarms 7316 must be in manual mode")});
}

QString AlarmViewer::TitleOf(const QString& state) const {
  return (IsController() ? QStringLiteral("Redundancy Controller Alarms: ") : QStringLiteral("SSPA Alarms: ")) + state;
}

QString AlarmViewer::TitleConnected() const { return TitleOf(kConnectedTo + QLatin1Char(' ') + DeviceName); }

void AlarmViewer::Form_Load(const forms::Form& main) {
  m_form.CoverForm(main);
  ShowAlarmTable();
  ShowPanelOf(m_form, IsController());
  if (!IsController()) FitToAmplifier(m_form, m_shared);
  NameButtons(m_form);
  m_desktop.SetBusyPointer(true);
  m_timing.DelayBlocking(kPause);
  std::string reply;
  StopPolling = !protocol::Send(m_line, protocol::kModelQuery, reply);
  if (StopPolling) {
    m_form.SetTitle(TitleOf(QStringLiteral("Lost Connection")));
    m_onLost();
  } else {
    DeviceName = platform::FromDevice(protocol::AfterEcho(reply, 3));
    m_form.SetTitle(TitleConnected());
    EnableAlarmControls(true);
  }
  m_form.tmrStartPolling.SetEnabled(true);
  m_form.tmrAlarmBeeper.SetEnabled(true);
  m_desktop.SetBusyPointer(false);
}

void AlarmViewer::Form_Unload() {
  m_form.tmrAlarmBeeper.SetEnabled(false);
  m_form.tmrForcePollResume.SetEnabled(false);
  StopPolling = true;
}

void AlarmViewer::EnableAlarmControls(bool enable) {
  const bool mayClear = enable && !m_shared.RemoteLockout;
  m_form.cmd7316ClearAlarms.setEnabled(mayClear && !m_shared.AutoMode);
  m_form.cmdClear.setEnabled(mayClear);
  for (QWidget* control : LinkedControls(m_form)) control->setEnabled(enable);
}

void AlarmViewer::ShowAlarmTable() {
  for (int i = 0; i < link::kAlarmSlots; ++i) {
    const link::AlarmSlot& slot = m_shared.AlarmStatus[static_cast<std::size_t>(i)];
    ShowSlot(m_form.cmdAlarms(i), slot);
    ShowSlot(m_form.cmd7316Alarms(i), slot);
  }
}

bool AlarmViewer::Ask(const protocol::Request& request, const forms::Shown& shown, std::string& reply) {
  const bool answered = protocol::Send(m_line, request, reply);
  if (answered) {
    forms::ShowAnswered(shown, m_timeOfDay().time());
  } else {
    forms::ShowUnanswered(shown);
  }
  return answered;
}

void AlarmViewer::ReadAlarmTable() {
  std::string reply;
  if (Ask(protocol::kAlarmQuery, AlarmButtons(m_form), reply)) {
    const link::AlarmTable former = m_shared.AlarmStatus;
    DecodeAlarmReply(protocol::AfterEcho(reply, 2), m_shared.AlarmStatus);
    m_form.Announce(AlarmNews(former, m_shared.AlarmStatus, [this](int i) {
      const forms::CommandButton* button = (IsController() ? m_form.cmd7316Alarms : m_form.cmdAlarms)(i);
      return button != nullptr ? button->accessibleName() : QString();
    }));
  }
}

void AlarmViewer::ShowMeasurement(const Measurement& measurement) {
  std::string reply;
  forms::Label& label = m_form.*measurement.label;
  if (!measurement.condition(m_shared) || !Ask(measurement.request, {&label}, reply)) return;
  const std::string_view text = protocol::AfterEcho(reply, measurement.request.expected.size());
  label.SetCaption(platform::FromDevice(measurement.shown(text)) + QString::fromUtf8(measurement.unit));
}

void AlarmViewer::tmrStartPolling_Timer() {
  m_form.tmrStartPolling.SetEnabled(false);
  if (!StopPolling) PollAlarms();
  m_form.UnloadForm();
}

void AlarmViewer::PollAlarms() {
  constexpr int kAmplifierSteps = 10;
  const int steps = IsController() ? 1 : kAmplifierSteps;
  m_form.tmrForcePollResume.SetEnabled(true);
  int step = 0;
  do {
    PollStep(step);
    step = (step + 1) % steps;
    CheckLink();
    PollHeartbeat = true;
    m_timing.DelayPumped(kPause);
  } while (!StopPolling);
  m_form.tmrForcePollResume.SetEnabled(false);
}

void AlarmViewer::PollStep(int step) {
  using forms::frmAlarms;
  using protocol::RoundedText;
  static const std::array<Measurement, 9> kMeasurements{{
      {Always, protocol::kRFLevelQuery, OneDecimal, &frmAlarms::lblRF, " dBm"},
      {Platform4, protocol::kReflectedLevelQuery, OneDecimal, &frmAlarms::lblReflected, " dBm"},
      {Always, protocol::kTemperature1Query, RoundedText, &frmAlarms::lblTemp1, "°C"},
      {TwoModules, protocol::kTemperature2Query, RoundedText, &frmAlarms::lblTemp2, "°C"},
      {Always, protocol::kRail5VQuery, TwoDecimals, &frmAlarms::lbl5V, " V"},
      {Always, protocol::kRail11VQuery, TwoDecimals, &frmAlarms::lbl11V, " V"},
      {Platform2, protocol::kRail11VLCQuery, TwoDecimals, &frmAlarms::lbl11VLC, " V"},
      {Always, protocol::kRailMinus10VQuery, TwoDecimals, &frmAlarms::lbl10V, " V"},
      {Always, protocol::kRail14VQuery, TwoDecimals, &frmAlarms::lbl14V, " V"},
  }};
  if (step > 0) {
    ShowMeasurement(kMeasurements[static_cast<std::size_t>(step - 1)]);
    return;
  }
  ReadAlarmTable();
  ShowAlarmTable();
}

void AlarmViewer::CheckLink() {
  const QString title = m_form.Title();
  if (m_shared.CommsLost && title.contains(kConnectedTo)) {
    m_form.SetTitle(TitleOf(kLostConnectionTo + QLatin1Char(' ') + DeviceName + QStringLiteral(" Retrying...")));
    m_form.Announce(m_form.Title());
    EnableAlarmControls(false);
    m_onLost();
  } else if (!m_shared.CommsLost && title.contains(kLostConnectionTo)) {
    m_form.SetTitle(TitleConnected());
    m_form.Announce(m_form.Title());
    EnableAlarmControls(true);
  }
}

void AlarmViewer::cmdAlarms_Click(int index) {
  link::AlarmSlot& slot = m_shared.AlarmStatus[static_cast<std::size_t>(index)];
  slot.Acknowledged = !slot.Acknowledged && (slot.Active || slot.Latched);
  ShowAlarmTable();
}

void AlarmViewer::cmdClear_Click() {
  m_timing.DelayBlocking(kPause);
  std::string reply;
  if (!protocol::Send(m_line, protocol::kClearAlarms, reply)) {
    CheckLink();  // at once: further clicks that wait would each ask a silent device
    return;
  }
  m_timing.DelayBlocking(kPauseAfterClearing);
  ReadAlarmTable();
  ShowAlarmTable();
  m_timing.DelayBlocking(kPause);
}

void AlarmViewer::SoundAlarmBeep() {
  if (m_shared.AudibleNotify && GetAlarmSummary(m_shared.AlarmStatus).UnackedPresent) m_desktop.Beep();
}

void AlarmViewer::tmrForcePollResume_Timer() {
  if (StopPolling) return;
  if (!PollHeartbeat) m_form.HideAndShow();
  PollHeartbeat = false;
}

}  // namespace tarnwell::alarms
