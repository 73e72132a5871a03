#include "forms/frm_settings.h"

#include "forms/layout.h"
#include "forms/view.h"

namespace tarnwell::forms {

namespace {

constexpr Twips kOutOfSight = -20000;

void NameFields(frmSettings& f) {
  PairUp({{f.lblHWPlat, f.lblHWPlatform},
          {f.lblFWVer, f.lblFirmwareVersion},
          {f.lblSSPAAddress, f.txtSSPAAddress},
          {f.lblRFMax, f.txtRFMax},
          {f.lblRFMin, f.txtRFMin},
          {f.lblReflectedMax, f.txtReflectedMax},
          {f.lblRFLev, f.lblRFLevel},
          {f.lblRFVolts, f.txtRFVolts},
          {f.lblScrollRFLevel, f.txtRFLevelPoint},
          {f.lblPiNLev, f.lblPiNLevel},
          {f.lblPiNDAC, f.txtPiNDAC},
          {f.lblScrollPiNLevel, f.txtPiNLevelPoint},
          {f.lblTCTemp, f.txtTCTemp},
          {f.lblTCComp, f.txtTCComp},
          {f.lblScrollTempComp, f.txtTempCompPoint},
          {f.lblRFTCTemp, f.txtRFTCTemp},
          {f.lblRFTCComp, f.txtRFTCComp},
          {f.lblScrollRFTempComp, f.txtRFTempCompPoint}});
  NameSpins({{f.lblSSPAAddress, f.txtSSPAAddress, f.updwnSSPAAddress},
             {f.lblRFMax, f.txtRFMax, f.updwnRFMax},
             {f.lblRFMin, f.txtRFMin, f.updwnRFMin},
             {f.lblReflectedMax, f.txtReflectedMax, f.updwnReflectedMax},
             {f.lblScrollRFLevel, f.txtRFLevelPoint, f.updwnRFLevel},
             {f.lblScrollPiNLevel, f.txtPiNLevelPoint, f.updwnPiNLevel},
             {f.lblScrollTempComp, f.txtTempCompPoint, f.updwnTempComp},
             {f.lblScrollRFTempComp, f.txtRFTempCompPoint, f.updwnRFTempComp}});
  f.fraStandard.setAccessibleName(QStringLiteral("Standard"));
  f.fraAdvanced.setAccessibleName(QStringLiteral("Advanced"));
  f.fraFactory.setAccessibleName(QStringLiteral("Factory"));
}

}  // namespace

frmSettings::frmSettings(const Label& mainLevel)
    : Form("frmSettings", "", Border::kFixedDialog, 9510, 6825), m_mainLevel(mainLevel) {
  NameFields(*this);
  SetFirstFocus(cmdExit);
  SetCancelButton(cmdExit);
  tabSettings.lower();
  for (Frame* page : {&fraAdvanced, &fraFactory}) Place(*page, kOutOfSight, 0, ScaleWidth(), ScaleHeight());
  GiveIcon();
  connect(this, &Form::Resize, this, [this] { ArrangeSettings(*this); });
}

double frmSettings::MainLevelPoints() const { return FontSize(m_mainLevel); }

}  // namespace tarnwell::forms
