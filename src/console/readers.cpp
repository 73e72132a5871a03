#include "console/readers.h"

#include <array>

#include "alarms/alarm_news.h"
#include "console/entry_text.h"
#include "console/view_rules.h"
#include "forms/controls/colours.h"
#include "platform/text_encoding.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::console {

namespace {

constexpr double kPauseBeforeGain = 0.05;

/// Marks the path that has priority in its group's caption.
void ShowPriority(forms::frmMain& form, protocol::PriorityPath path) {
  const auto show = [](forms::Frame& frame, const QString& caption, bool priority) {
    const QString shown = caption + (priority ? QStringLiteral(" [Priority]") : QString());
    if (frame.Caption() != shown) frame.SetCaption(shown);
  };
  using protocol::PriorityPath;
  show(form.fra7316PathASelect, QStringLiteral("Path &A SSPA Selection"), path == PriorityPath::kPathA);
  show(form.fra7316PathBSelect, QStringLiteral("Path &B SSPA Selection"), path == PriorityPath::kPathB);
}

void ShowSSPAState(forms::Label& label, bool online) {
  label.SetCaption(online ? QStringLiteral("ONLINE") : QStringLiteral("STBY/ALARM"));
  label.SetBackground(online ? forms::kGoodColour : forms::kLatchedColour);
}

/// What a 1:1 controller, with two amplifiers and one path, has no use for.
std::array<QWidget*, 6> OnlyIn1to2(forms::frmMain& f) {
  return {&f.lbl7316SSPA3,  &f.lbl7316SSPA3State, &f.lbl7316PathBState,
          &f.opt7316PathB3, &f.opt7316PathB2,     &f.fra7316PathBSelect};
}

/// One of the two amplifiers that a path can select.
struct PathChoice {
  std::string_view digit;
  QString name;
  forms::OptionButton& option;
};

struct PathView {
  forms::Label& label;
  std::array<PathChoice, 2> choices;
};

/// 5 is path A, anything else path B. The order of the choices is that of the tests.
PathView ViewOfPath(forms::frmMain& f, int which) {
  const PathChoice second{"2", QStringLiteral("SSPA2"), which == 5 ? f.opt7316PathA2 : f.opt7316PathB2};
  if (which == 5) return {f.lbl7316PathAState, {{{"1", QStringLiteral("SSPA1"), f.opt7316PathA1}, second}}};
  return {f.lbl7316PathBState, {{{"3", QStringLiteral("SSPA3"), f.opt7316PathB3}, second}}};
}

}  // namespace

void Readers::ForgetDevice() {
  forms::ForgetAnswers(ShownByAny(m_form));
  // These show something also before the device has said it.
  forms::ShowUnanswered({&m_form.optRFMute, &m_form.imgAlarm, &m_form.imgOk});
  m_gainAsOf.clear();
  EndSession();
  ShowPriority(m_form, protocol::PriorityPath::kNone);
  m_session.GainInDoubt = false;
  // Without optRFMute: selecting it again from a status would send the mute again.
  for (forms::OptionButton* option :
       {&m_form.optOnline, &m_form.optStandby, &m_form.optMaint, &m_form.optRFOn, &m_form.optREM, &m_form.optLLO,
        &m_form.optRLO, &m_form.opt7316Auto, &m_form.opt7316Manual, &m_form.opt7316PathA1, &m_form.opt7316PathA2,
        &m_form.opt7316PathB2, &m_form.opt7316PathB3}) {
    option->Deselect();
  }
}

void Readers::DoubtAll() {
  forms::ShowUnanswered(ShownByAny(m_form));
  // No schedule asks for the gain: without this it would stay old for the rest of the session.
  m_session.GainInDoubt = m_shared.SSPAType != link::kRedundancyController;
}

void Readers::DoubtPolled() {
  if (m_session.PollRunning) forms::ShowUnanswered(ShownByPoll(m_form));
}

void Readers::TakeGain(std::string_view text) {
  m_session.GainInDoubt = false;
  Confirm(Question::kGain);
  m_gainAsOf = QStringLiteral("As of %1").arg(m_timeOfDay().time().toString(QStringLiteral("hh:mm:ss")));
  forms::SetOwnToolTip(m_form.txtGainAdjust, m_gainAsOf + QStringLiteral("; not asked again while connected"));
  const int tenths = protocol::Tenths(protocol::LeadingNumber(text));
  m_form.updwnGainAdjust.SetValue(tenths);
  const bool held = protocol::BeginsWithNumber(text) && m_form.updwnGainAdjust.Value() == tenths;
  if (!held) forms::ShowDoubtful({&m_form.txtGainAdjust}, OutsideOfEntry(text));
}

void Readers::EndSession() { forms::SetOwnToolTip(m_form.txtGainAdjust, m_gainAsOf); }

bool Readers::Ask(Question question, const protocol::Request& request, std::size_t echo, std::string& text) {
  std::string reply;
  if (!protocol::Send(m_line, request, reply)) {
    Doubt(question);
    return false;
  }
  Confirm(question);
  text = protocol::AfterEcho(reply, echo);
  return true;
}

void Readers::ReadStatus() {
  std::string status;
  if (!Ask(Question::kStatus, protocol::kStatusQuery, 2, status)) return;
  ShowCommsMode(status);
  if (m_shared.SSPAType == link::kRedundancyController) {
    ShowControllerMode(status);
    return;
  }
  ShowOperatingState(status);
  ShowRFOutput(status);
  AllowUserMute(status);
}

void Readers::ShowCommsMode(std::string_view status) {
  const protocol::CommsMode mode = protocol::ReadCommsMode(status);
  switch (mode) {
    case protocol::CommsMode::kLLO:
      m_form.optLLO.Select();
      break;
    case protocol::CommsMode::kRLO:
      m_form.optRLO.Select();
      break;
    case protocol::CommsMode::kREM:
      m_form.optREM.Select();
      break;
  }
  const bool lockout = mode == protocol::CommsMode::kRLO;
  if (lockout == m_shared.RemoteLockout) return;
  m_shared.RemoteLockout = lockout;
  SetConsoleEnabled(m_form, m_shared, true);
}

void Readers::ShowOperatingState(std::string_view status) {
  switch (protocol::ReadOperatingState(status)) {
    case protocol::OperatingState::kOnline:
      m_form.optOnline.Select();
      break;
    case protocol::OperatingState::kStandby:
      m_form.optStandby.Select();
      break;
    case protocol::OperatingState::kMaintenance:
      m_form.optMaint.Select();
      break;
    case protocol::OperatingState::kNotTold:
      for (forms::OptionButton* option : {&m_form.optOnline, &m_form.optStandby}) option->TakeBack();
      break;
  }
}

void Readers::ShowRFOutput(std::string_view status) {
  using protocol::RFOutput;
  const RFOutput output = protocol::ReadRFOutput(status);
  if (output == RFOutput::kNotTold) {
    for (forms::OptionButton* option : {&m_form.optRFOn, &m_form.optRFMute}) option->TakeBack();
    return;
  }
  const bool on = output == RFOutput::kOn || output == RFOutput::kOnButModuleFailed;
  (on ? m_form.optRFOn : m_form.optRFMute).Select();

  const std::string_view text = protocol::RFOutputText(output);
  m_form.lblSSPAMute.SetCaption(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
}

void Readers::AllowUserMute(std::string_view status) {
  const bool forced = protocol::MuteIsForced(status);
  if (!forced && m_shared.RemoteLockout) return;
  m_form.optRFOn.setEnabled(!forced);
  m_form.optRFMute.setEnabled(!forced);
  m_form.fraUserMute.setEnabled(!forced);
}

void Readers::ShowControllerMode(std::string_view status) {
  const protocol::ControllerMode mode = protocol::ReadControllerMode(status);
  if (mode == protocol::ControllerMode::kNotTold) {
    for (forms::OptionButton* option : {&m_form.opt7316Auto, &m_form.opt7316Manual}) option->TakeBack();
    return;
  }
  const bool automatic = mode == protocol::ControllerMode::kAutomatic;
  (automatic ? m_form.opt7316Auto : m_form.opt7316Manual).Select();
  if (automatic == m_shared.AutoMode) return;
  m_shared.AutoMode = automatic;
  SetConsoleEnabled(m_form, m_shared, true);
}

void Readers::ReadConfiguration() {
  std::string text;
  if (!Ask(Question::kConfiguration, protocol::kConfigurationQuery, 2, text)) return;
  const protocol::Configuration configuration = protocol::ReadConfigurationCode(text);
  if (configuration == protocol::Configuration::k1to1 && !m_shared.Config1to1) ChangeTo1to1();
  if (configuration == protocol::Configuration::k1to2 && m_shared.Config1to1) ChangeTo1to2();
  m_session.PollLength = m_shared.Config1to1 ? 5 : 7;
}

void Readers::ChangeTo1to1() {
  m_shared.Config1to1 = true;
  for (QWidget* control : OnlyIn1to2(m_form)) {
    control->setEnabled(false);
    control->setVisible(false);
  }
  SetConsoleEnabled(m_form, m_shared, true);
  m_form.fra7316PathASelect.SetCaption(QStringLiteral("Path &A SSPA Selection"));
}

void Readers::ChangeTo1to2() {
  m_shared.Config1to1 = false;
  for (QWidget* control : OnlyIn1to2(m_form)) {
    control->setVisible(true);
    control->setEnabled(!m_shared.AutoMode);
  }
  SetConsoleEnabled(m_form, m_shared, true);
}

void Readers::ReadPathPriority() {
  std::string text;
  if (!Ask(Question::kPriority, protocol::kPriorityOrDiodeQuery, 2, text)) return;
  ShowPriority(m_form, protocol::ReadPriority(text));
}

void Readers::ReadSSPAStates() {
  std::string text;
  if (!Ask(Question::kSSPAStates, protocol::kOnlineQuery, 2, text)) return;
  ShowSSPAState(m_form.lbl7316SSPA1State, protocol::Holds(text, "1"));
  ShowSSPAState(m_form.lbl7316SSPA2State, protocol::Holds(text, "2"));
  if (!m_shared.Config1to1) ShowSSPAState(m_form.lbl7316SSPA3State, protocol::Holds(text, "3"));
}

void Readers::ReadPathSelection(int which) {
  std::string text;
  const bool pathA = which == 5;
  if (!Ask(pathA ? Question::kPathA : Question::kPathB, pathA ? protocol::kPathAQuery : protocol::kPathBQuery, 2,
           text)) {
    return;
  }
  ShowPath(which, text);
  SelectShownPath(which);
}

void Readers::ShowPath(int which, std::string_view text) {
  const PathView view = ViewOfPath(m_form, which);
  for (const PathChoice& choice : view.choices) {
    if (view.label.Caption().contains(choice.name) || !protocol::Holds(text, choice.digit)) continue;
    view.label.SetCaption(choice.name);
    return;
  }
  if (protocol::Holds(text, "?")) view.label.SetCaption(QStringLiteral("UNKNOWN"));
}

void Readers::SelectShownPath(int which) {
  const PathView view = ViewOfPath(m_form, which);
  for (const PathChoice& choice : view.choices) {
    if (view.label.Caption() == choice.name) return choice.option.Select();
  }
  for (const PathChoice& choice : view.choices) choice.option.TakeBack();
  forms::ShowDoubtful({&view.choices[0].option, &view.choices[1].option}, QStringLiteral("The path isn't known"));
}

void Readers::ReadAlarms() {
  std::string letters;
  if (!Ask(Question::kAlarms, protocol::kAlarmQuery, 2, letters)) return;
  const link::AlarmTable former = m_shared.AlarmStatus;
  m_indicator.ShowReply(alarms::DecodeAlarmReply(letters, m_shared.AlarmStatus));
  m_form.Announce(alarms::AlarmNews(former, m_shared.AlarmStatus));
}

void Readers::ReadTemperature(int which) {
  if (which != 6 && which != 12) return;
  const bool module1 = which == 6;
  std::string text;
  const Question question = module1 ? Question::kTemperature1 : Question::kTemperature2;
  const protocol::Request& request = module1 ? protocol::kTemperature1Query : protocol::kTemperature2Query;
  if (!Ask(question, request, module1 ? 3 : 4, text)) return;
  forms::Label& label = module1 ? m_form.lblTempMod1 : m_form.lblTempMod2;
  label.SetCaption(platform::FromDevice(text) + QStringLiteral("°C"));
}

void Readers::ReadRFLevel() {
  std::string text;
  if (!Ask(Question::kRFLevel, protocol::kRFLevelQuery, 3, text)) return;
  const std::string level = protocol::FixedText(protocol::LeadingNumber(text), 1, protocol::LeadingZero::kNone);
  m_form.lblRFLevel.SetCaption(QString::fromStdString(level) + QStringLiteral(" dBm"));
}

bool Readers::ReadGain() {
  m_session.GainInDoubt = true;
  m_timing.DelayBlocking(kPauseBeforeGain);
  std::string text;
  if (!Ask(Question::kGain, protocol::kGainQuery, 2, text)) return false;
  TakeGain(text);
  ShowGain(m_form);  // also where the value is the one that the spin starts with
  return true;
}

}  // namespace tarnwell::console
