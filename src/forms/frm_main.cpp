#include "forms/frm_main.h"

#include "forms/layout.h"
#include "forms/view.h"

namespace tarnwell::forms {

namespace {

void NameFields(frmMain& f) {
  PairUp({{f.lblAddress, f.txtConnectAddress},
          {f.lblGainAdjust, f.txtGainAdjust},
          {f.lblRF, f.lblRFLevel},
          {f.lblMod1, f.lblTempMod1},
          {f.lblMod2, f.lblTempMod2},
          {f.lbl7316SSPA1, f.lbl7316SSPA1State},
          {f.lbl7316SSPA2, f.lbl7316SSPA2State},
          {f.lbl7316SSPA3, f.lbl7316SSPA3State}});
  NameSpins({{f.lblAddress, f.txtConnectAddress, f.updwnConnectAddress},
             {f.lblGainAdjust, f.txtGainAdjust, f.updwnGainAdjust}});
  f.cmdViewAlarms.setAccessibleName(QStringLiteral("View alarms"));
}

}  // namespace

frmMain::frmMain() : Form("frmMain", "", Border::kFixedSingle, 9510, 6960, TitleButtons::kMinimiseMaximise, 9.75) {
  NameFields(*this);
  SetFirstFocus(cmdConnect);
  fra7316Status.raise();
  GiveIcon();
  connect(this, &Form::Resize, this, [this] { ArrangeMain(*this); });
}

}  // namespace tarnwell::forms
