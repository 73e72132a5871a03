#include "forms/frm_alarms.h"

#include <utility>

#include "forms/layout.h"
#include "forms/view.h"

namespace tarnwell::forms {

namespace {

void NameValues(frmAlarms& f) {
  PairUp({{f.lbl5L, *f.cmdAlarms(0)},
          {f.lbl5H, *f.cmdAlarms(1)},
          {f.lbl11L, *f.cmdAlarms(2)},
          {f.lbl11H, *f.cmdAlarms(3)},
          {f.lblEEPROM, *f.cmdAlarms(4)},
          {f.lbl14L, *f.cmdAlarms(5)},
          {f.lbl14H, *f.cmdAlarms(6)},
          {f.lblPSThermal, *f.cmdAlarms(7)},
          {f.lblInternal, *f.cmdAlarms(8)},
          {f.lbl10L, *f.cmdAlarms(9)},
          {f.lbl10H, *f.cmdAlarms(10)},
          {f.lblRFL, *f.cmdAlarms(11)},
          {f.lblRFH, *f.cmdAlarms(12)},
          {f.lblReflectedH, *f.cmdAlarms(13)},
          {f.lblDriverAmp, *f.cmdAlarms(14)},
          {f.lblPowerAmp1, *f.cmdAlarms(15)},
          {f.lblPowerAmp2, *f.cmdAlarms(16)},
          {f.lbl11LCL, *f.cmdAlarms(17)},
          {f.lbl11LCH, *f.cmdAlarms(18)},
          {f.lblTemp1H, *f.cmdAlarms(19)},
          {f.lblTemp2H, *f.cmdAlarms(20)},
          {f.lblAux, *f.cmdAlarms(23)},
          {f.lblCEFailSafe, *f.cmdAlarms(24)},
          {f.lblSimulated, *f.cmdAlarms(25)},
          {f.lbl7316EEPROM, *f.cmd7316Alarms(4)},
          {f.lbl7316System, *f.cmd7316Alarms(18)},
          {f.lbl7316WGuide1, *f.cmd7316Alarms(22)},
          {f.lbl7316WGuide2, *f.cmd7316Alarms(23)}});
  for (const auto& [value, name] :
       std::initializer_list<std::pair<QWidget&, const char*>>{{f.lbl5V, "5V rail"},
                                                               {f.lbl11V, "11V rail"},
                                                               {f.lbl14V, "14V rail"},
                                                               {f.lbl10V, "-10V rail"},
                                                               {f.lbl11VLC, "11V LC rail"},
                                                               {f.lblRF, "RF Level"},
                                                               {f.lblReflected, "Reflected Level"},
                                                               {f.lblTemp1, "Temperature, amplifier 1"},
                                                               {f.lblTemp2, "Temperature, amplifier 2"},
                                                               {f.cmdExOk, "Sample of OK"},
                                                               {f.cmdExAct, "Sample of Active"},
                                                               {f.cmdExLatch, "Sample of Latched"},
                                                               {f.cmdExAck, "Sample of Acknowledged"},
                                                               {f.cmd7316ExOk, "Sample of OK"},
                                                               {f.cmd7316ExAct, "Sample of Active"},
                                                               {f.cmd7316ExAck, "Sample of Acknowledged"}}) {
    value.setAccessibleName(QString::fromUtf8(name));
  }
}

}  // namespace

frmAlarms::frmAlarms() : Form("frmAlarms", "", Border::kFixedSingle, 9480, 6795) {
  cmdAlarms.Add({20, fraAlarms, "", "Click to acknowledge",
                 kDisabled | kGraphical | Background(kUnusedColour) | kBold | Points(9.75)});
  NameValues(*this);
  SetFirstFocus(cmdExit);
  SetCancelButton(cmdExit);
  fra7316Alarms.raise();
  GiveIcon();
  connect(this, &Form::Resize, this, [this] { ArrangeAlarms(*this); });
}

}  // namespace tarnwell::forms
