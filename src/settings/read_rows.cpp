#include "settings/read_rows.h"

#include "console/view_rules.h"
#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "settings/lock_groups.h"
#include "settings/reply_rules.h"
#include "settings/spin_fields.h"

namespace tarnwell::settings {

namespace {

using console::Enable;
using console::EnableAndShow;
using link::SSPA_Public;
using View = std::string_view;

bool Always(const SSPA_Public&) { return true; }
bool NotClass1(const SSPA_Public& shared) { return shared.FirmwareClass != 1; }
bool HasConverter(const SSPA_Public& shared) { return NotClass1(shared) && shared.HWPlatform == 2; }
bool HasFanControl(const SSPA_Public& shared) { return shared.FirmwareClass == 3 && shared.HWPlatform == 2; }

void ShowFirmware(Opening& o, View text) {
  Enable(true, {&o.form.lblFWVer, &o.form.lblFirmwareVersion});
  o.form.lblFirmwareVersion.SetCaption(platform::FromDevice(text));
}

void ShowAddress(Opening& o, View text) {
  frmSettings& f = o.form;
  Enable(o.TakesCommands(), {&f.fraAddress, &f.lblSSPAAddress, &f.txtSSPAAddress, &f.updwnSSPAAddress});
  SetAddress(f.txtSSPAAddress, f.updwnSSPAAddress, text);
}

void ShowPlatform(Opening& o, View text) {
  Enable(true, {&o.form.lblHWPlat, &o.form.lblHWPlatform});
  o.form.lblHWPlatform.SetCaption(platform::FromDevice(text));
}

/// What all amplifiers of class 1 stand on.
void ShowOldPlatform(Opening& o) { ShowPlatform(o, "0712/0358"); }

void ShowTransceiver(Opening& o, View text) {
  Enable(o.TakesCommands(), {&o.form.fraTransceiver, &o.form.optTxVorel, &o.form.optTxOther});
  Choose(o.form, text, kTransceiverChoices);
}

void HideTransceiver(Opening& o) {
  EnableAndShow(false, {&o.form.fraTransceiver, &o.form.optTxVorel, &o.form.optTxOther});
}

void ShowMinimum(Opening& o, View text) {
  frmSettings& f = o.form;
  Enable(o.TakesCommands(), {&f.fraThresholds, &f.lblRFMin, &f.txtRFMin, &f.updwnRFMin});
  SetLimit(f.txtRFMin, f.updwnRFMin, text);
}

void ShowMaximum(Opening& o, View text) {
  frmSettings& f = o.form;
  Enable(o.TakesCommands(), {&f.fraThresholds, &f.lblRFMax, &f.txtRFMax, &f.updwnRFMax});
  SetLimit(f.txtRFMax, f.updwnRFMax, text);
}

void ShowReflected(Opening& o, View text) {
  frmSettings& f = o.form;
  EnableAndShow(true, {&f.fraReflectedThreshold, &f.lblReflectedMax, &f.txtReflectedMax, &f.updwnReflectedMax});
  Enable(o.TakesCommands(), {&f.fraReflectedThreshold, &f.lblReflectedMax, &f.txtReflectedMax, &f.updwnReflectedMax});
  SetLimit(f.txtReflectedMax, f.updwnReflectedMax, text);
}

void HideReflected(Opening& o) {
  frmSettings& f = o.form;
  EnableAndShow(false, {&f.fraReflectedThreshold, &f.txtReflectedMax, &f.updwnReflectedMax});
}

void ShowShutdown(Opening& o, View text) {
  SetRead(o, &ReadFlags::ShutdownRead);
  Choose(o.form, text, kShutdownChoices);
}

void ShowAlarmStyle(Opening& o, View text) {
  SetRead(o, &ReadFlags::AlarmStyleRead);
  Choose(o.form, text, kAlarmStyleChoices);
}

void ShowAuxSense(Opening& o, View text) {
  SetRead(o, &ReadFlags::AuxSenseRead);
  Choose(o.form, text, kAuxSenseChoices);
}

void ShowStatus(Opening& o, View letters) {
  for (auto flag : {&ReadFlags::TempCompRead, &ReadFlags::ModeRead, &ReadFlags::BeeperRead}) SetRead(o, flag);
  const bool hasBeeper = o.shared.HWPlatform != 2;
  for (QWidget* control : LockGroupOf(o.form, &ReadFlags::BeeperRead).controls) control->setVisible(hasBeeper);
  ChooseByStatus(o.form, letters);
}

void ShowFan(Opening& o, View text) {
  for (QWidget* control : LockGroupOf(o.form, &ReadFlags::FanCtrlRead).controls) control->setVisible(true);
  SetRead(o, &ReadFlags::FanCtrlRead);
  Choose(o.form, text, kFanChoices);
}

void HideFan(Opening& o) { EnableAndShow(false, {&o.form.fraFanCtrl, &o.form.optFanCtrlOn, &o.form.optFanCtrlOff}); }

}  // namespace

constinit const std::array<ScalarRead, 2> kCommonReads = {{
    {Always, protocol::kFirmwareQuery, 3, ShowFirmware},
    {Always, protocol::kAddressQuery, 2, ShowAddress},
}};

constinit const std::array<ScalarRead, 10> kAmplifierReads = {{
    {NotClass1, protocol::kPlatformQuery, 3, ShowPlatform, ShowOldPlatform},
    {HasConverter, protocol::kTransceiverQuery, 3, ShowTransceiver, HideTransceiver},
    {Always, protocol::kRFMinimumQuery, 3, ShowMinimum},
    {Always, protocol::kRFMaximumQuery, 3, ShowMaximum},
    {link::MeasuresReflectedLevel, protocol::kReflectedMaximumQuery, 3, ShowReflected, HideReflected},
    {Always, protocol::kShutdownQuery, 0, ShowShutdown},
    {Always, protocol::kAlarmStyleQuery, 0, ShowAlarmStyle},
    {Always, protocol::kAuxSenseQuery, 0, ShowAuxSense},
    {Always, protocol::kStatusQuery, 2, ShowStatus},
    {HasFanControl, protocol::kFanQuery, 3, ShowFan, HideFan, true},
}};

using Tables = CalibrationTables;
constinit const std::array<TableRead, 4> kTableReads = {{
    {NotClass1, kRFTempCompPoints, &Tables::ReadRFTempCompPoint, &Tables::DrawRFTempCompPoint,
     &frmSettings::updwnRFTempComp, &ReadFlags::RFTCPointsRead},
    {Always, kTempCompPoints, &Tables::ReadTempCompPoint, &Tables::DrawTempCompPoint, &frmSettings::updwnTempComp,
     &ReadFlags::TCPointsRead},
    {Always, kRFLevelPoints, &Tables::ReadRFLevelPoint, &Tables::DrawRFLevelPoint, &frmSettings::updwnRFLevel,
     &ReadFlags::RFTableRead},
    {NotClass1, kPiNPoints, &Tables::ReadPiNPoint, &Tables::DrawPiNPoint, &frmSettings::updwnPiNLevel,
     &ReadFlags::PiNTableRead},
}};

}  // namespace tarnwell::settings
