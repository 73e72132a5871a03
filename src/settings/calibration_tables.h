#pragma once

#include <array>

#include "link/send_command.h"
#include "protocol/vocabulary.h"
#include "settings/calibration_points.h"
#include "settings/opening.h"

namespace tarnwell::settings {

/// The form's copy of the four calibration tables. The device owns them: a point is shown as the device last told it,
/// never as it was typed. One point is one transaction, and nothing here lets other code run.
class CalibrationTables {
 public:
  CalibrationTables(Opening& opening, link::SerialLink& line)
      : m_opening(opening), m_form(opening.form), m_line(line) {}

  // Each asks for one point, counted from 0; without an answer the copy stays as it was. Nothing is drawn.
  void ReadRFLevelPoint(int index);
  void ReadPiNPoint(int index);
  void ReadRFTempCompPoint(int index);
  void ReadTempCompPoint(int index);

  // Each shows the point that its spin control selects; what was half typed there is gone.
  void DrawRFLevelPoint();
  /// In maintenance mode also asks the device for the point, which so puts that point in force.
  void DrawPiNPoint();
  void DrawRFTempCompPoint();
  void DrawTempCompPoint();

  // Each sends the selected point, then stores and draws what the device answers. Without an answer the form closes.
  /// Volts from 0 to 15, or protocol::kDisabledValue.
  void WriteRFLevelPoint(float volts);
  void WritePiNPoint();
  void WriteRFTempCompPoint();
  void WriteTempCompPoint();

  /// Has the device calibrate the selected RF level point at the level of this moment.
  void cmdQuickCal_Click();

 private:
  using Draw = void (CalibrationTables::*)();

  bool TemperaturesAreFixed() const;
  template <typename Point, typename Take>
  void Read(const protocol::Request& query, Point& point, Take take);
  template <typename Point, typename Take>
  void Write(const protocol::Request& setting, Point& point, Take take, Draw draw);
  void SelectPiNPoint();
  void WriteFixedTempCompPoint();

  Opening& m_opening;
  forms::frmSettings& m_form;
  link::SerialLink& m_line;
  std::array<RFLevelPoint, kRFLevelPoints> RFLevelTable{};
  std::array<PiNPoint, kPiNPoints> PiNTable{};
  std::array<CompensationPoint, kRFTempCompPoints> RFTempCompPoints{};
  std::array<CompensationPoint, kTempCompPoints> TempCompPoints{};
};

}  // namespace tarnwell::settings
