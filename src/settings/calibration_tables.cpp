#include "settings/calibration_tables.h"

#include "console/entry_text.h"
#include "forms/controls/answers.h"
#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"

namespace tarnwell::settings {

namespace {

constexpr std::size_t kRFCompensationName = 4;  // "RT02"
constexpr std::size_t kCompensationName = 3;    // "H03"

bool IsDisabled(float value) { return value == static_cast<float>(protocol::kDisabledValue); }

/// The float's decimal digits are shown, not its binary neighbour: 0.35 is 0.4 with one decimal.
QString ShownNumber(float value, int decimals) {
  if (IsDisabled(value)) return DisabledText();
  return console::EntryFromNumber(protocol::LeadingNumber(protocol::NumberText(value)), decimals);
}

QString ShownWhole(int value) { return value == protocol::kDisabledValue ? DisabledText() : QString::number(value); }

void DrawPosition(forms::TextBox& field, const forms::UpDown& spin) {
  field.SetText(QStringLiteral("%1 of %2").arg(spin.Value() + 1).arg(spin.Maximum() + 1));
}

template <typename Table>
auto& At(Table& table, int index) {
  return table.at(static_cast<std::size_t>(index));
}

template <typename Point, typename Take>
void TakeReply(std::string_view reply, Point& point, Take take) {
  point.Senseless = take(reply, point) ? std::string() : std::string(reply);
}

/// The fields of a point that isn't known are doubtful.
void ShowSense(const forms::Shown& fields, const SenselessReply& reply, const QString& also = {}) {
  const QString quoted = platform::Printable(platform::FromDevice(reply));
  const QString why = QStringLiteral("Not known: the device answered \"%1\"").arg(quoted) + also;
  forms::ShowDoubtful(fields, reply.empty() ? QString() : why);
}

/// One command sets both values of a compensation point, so what is typed in one field takes the other's along.
void ShowSenseOfPair(const forms::Shown& fields, const SenselessReply& reply) {
  ShowSense(fields, reply, QStringLiteral("; Enter in the field beside it sends what stands here too"));
}

/// A compensation point as its two fields show it; nothing where one of them is no number.
std::optional<CompensationPoint> PointFromEntry(const forms::TextBox& temperature, const forms::TextBox& compensation) {
  const std::optional<int> degrees = console::WholeNumberFromEntry(temperature.Text());
  const std::optional<float> value = CompensationOf(compensation.Text());
  if (!degrees || !value) return std::nullopt;
  return CompensationPoint{*value, static_cast<std::int16_t>(*degrees)};
}

}  // namespace

bool CalibrationTables::TemperaturesAreFixed() const { return m_opening.shared.FirmwareClass == 1; }

template <typename Point, typename Take>
void CalibrationTables::Read(const protocol::Request& query, Point& point, Take take) {
  std::string reply;
  if (protocol::Send(m_line, query, reply)) TakeReply(reply, point, take);
}

void CalibrationTables::ReadRFLevelPoint(int index) {
  Read(protocol::RFLevelPointQuery(index), At(RFLevelTable, index), TakeRFLevel);
}

void CalibrationTables::ReadPiNPoint(int index) {
  Read(protocol::PiNPointQuery(index), At(PiNTable, index), [index](auto reply, auto& point) {
    point.Level = static_cast<std::uint8_t>(index);
    return TakePiN(reply, point);
  });
}

void CalibrationTables::ReadRFTempCompPoint(int index) {
  Read(protocol::RFCompensationQuery(index + 1), At(RFTempCompPoints, index), [](auto reply, auto& point) {
    return TakeCompensation(protocol::AfterEcho(reply, kRFCompensationName), point);
  });
}

void CalibrationTables::ReadTempCompPoint(int index) {
  CompensationPoint& point = At(TempCompPoints, index);
  if (TemperaturesAreFixed()) {
    const int degrees = FixedTemperature(index);
    Read(protocol::FixedCompensationQuery(degrees), point,
         [degrees](auto reply, auto& taken) { return TakeFixedCompensation(reply, degrees, taken); });
  } else {
    Read(protocol::SystemCompensationQuery(index + 1), point, [](auto reply, auto& taken) {
      return TakeCompensation(protocol::AfterEcho(reply, kCompensationName), taken);
    });
  }
}

void CalibrationTables::DrawRFLevelPoint() {
  const RFLevelPoint& point = At(RFLevelTable, m_form.updwnRFLevel.Value());
  m_form.lblRFLevel.SetCaption(ShownWhole(point.Level));
  m_form.txtRFVolts.SetText(ShownNumber(point.Volts, 2));
  ShowSense({&m_form.lblRFLevel, &m_form.txtRFVolts}, point.Senseless);
  DrawPosition(m_form.txtRFLevelPoint, m_form.updwnRFLevel);
}

void CalibrationTables::DrawPiNPoint() {
  const PiNPoint& point = At(PiNTable, m_form.updwnPiNLevel.Value());
  m_form.lblPiNLevel.SetCaption(QString::number(point.Level));
  m_form.txtPiNDAC.SetText(ShownWhole(point.DAC));
  ShowSense({&m_form.txtPiNDAC}, point.Senseless);
  DrawPosition(m_form.txtPiNLevelPoint, m_form.updwnPiNLevel);
  if (m_form.optModeMaint.Value()) SelectPiNPoint();
}

void CalibrationTables::SelectPiNPoint() {
  m_opening.timing.DelayBlocking(kPauseAroundCommand);
  std::string reply;
  protocol::Send(m_line, protocol::SelectPiNPoint(m_form.updwnPiNLevel.Value()), reply);
  m_opening.timing.DelayBlocking(kPauseAroundCommand);  // the read-back may go on at once
}

void CalibrationTables::DrawRFTempCompPoint() {
  const CompensationPoint& point = At(RFTempCompPoints, m_form.updwnRFTempComp.Value());
  m_form.txtRFTCComp.SetText(ShownNumber(point.Comp, 1));
  m_form.txtRFTCTemp.SetText(QString::number(point.Temp));
  ShowSenseOfPair({&m_form.txtRFTCComp, &m_form.txtRFTCTemp}, point.Senseless);
  DrawPosition(m_form.txtRFTempCompPoint, m_form.updwnRFTempComp);
}

void CalibrationTables::DrawTempCompPoint() {
  const CompensationPoint& point = At(TempCompPoints, m_form.updwnTempComp.Value());
  m_form.txtTCComp.SetText(ShownNumber(point.Comp, 1));
  m_form.txtTCTemp.SetText(QString::number(point.Temp));
  if (TemperaturesAreFixed()) {
    ShowSense({&m_form.txtTCComp}, point.Senseless);
  } else {
    ShowSenseOfPair({&m_form.txtTCComp, &m_form.txtTCTemp}, point.Senseless);
  }
  DrawPosition(m_form.txtTempCompPoint, m_form.updwnTempComp);
}

template <typename Point, typename Take>
void CalibrationTables::Write(const protocol::Request& setting, Point& point, Take take, Draw draw) {
  m_opening.timing.DelayBlocking(kPauseAroundCommand);
  std::string reply;
  if (!protocol::Send(m_line, setting, reply)) {
    m_opening.CloseUnanswered();
    return;
  }
  TakeReply(reply, point, take);
  (this->*draw)();
  m_opening.timing.DelayBlocking(kPauseAroundCommand);
}

void CalibrationTables::WriteRFLevelPoint(float volts) {
  const int index = m_form.updwnRFLevel.Value();
  Write(protocol::SetRFLevelPoint(index, volts), At(RFLevelTable, index), TakeRFLevel,
        &CalibrationTables::DrawRFLevelPoint);
}

void CalibrationTables::cmdQuickCal_Click() {
  const int index = m_form.updwnRFLevel.Value();
  Write(protocol::QuickCalibration(index), At(RFLevelTable, index), TakeRFLevel, &CalibrationTables::DrawRFLevelPoint);
}

void CalibrationTables::WritePiNPoint() {
  const int index = m_form.updwnPiNLevel.Value();
  Write(protocol::SetPiNPoint(index, platform::ToDevice(m_form.txtPiNDAC.Text())), At(PiNTable, index), TakePiN,
        &CalibrationTables::DrawPiNPoint);
}

void CalibrationTables::WriteRFTempCompPoint() {
  const int index = m_form.updwnRFTempComp.Value();
  const std::optional<CompensationPoint> point = PointFromEntry(m_form.txtRFTCTemp, m_form.txtRFTCComp);
  if (!point) return DrawRFTempCompPoint();
  Write(
      protocol::SetRFCompensation(index + 1, point->Temp, point->Comp), At(RFTempCompPoints, index),
      [](auto reply, auto& taken) {
        return TakeSetCompensation(protocol::AfterEcho(reply, kRFCompensationName + 1), taken);
      },
      &CalibrationTables::DrawRFTempCompPoint);
}

void CalibrationTables::WriteTempCompPoint() {
  if (TemperaturesAreFixed()) return WriteFixedTempCompPoint();
  const int index = m_form.updwnTempComp.Value();
  const std::optional<CompensationPoint> point = PointFromEntry(m_form.txtTCTemp, m_form.txtTCComp);
  if (!point) return DrawTempCompPoint();
  Write(
      protocol::SetSystemCompensation(index + 1, point->Temp, point->Comp), At(TempCompPoints, index),
      [](auto reply, auto& taken) {
        return TakeSetCompensation(protocol::AfterEcho(reply, kCompensationName + 1), taken);
      },
      &CalibrationTables::DrawTempCompPoint);
}

void CalibrationTables::WriteFixedTempCompPoint() {
  const int index = m_form.updwnTempComp.Value();
  const int degrees = FixedTemperature(index);
  const std::optional<float> compensation = CompensationOf(m_form.txtTCComp.Text());
  if (!compensation) return DrawTempCompPoint();
  Write(
      protocol::SetFixedCompensation(degrees, *compensation), At(TempCompPoints, index),
      [degrees](auto reply, auto& taken) { return TakeFixedCompensation(reply, degrees, taken); },
      &CalibrationTables::DrawTempCompPoint);
}

}  // namespace tarnwell::settings
