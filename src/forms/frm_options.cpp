#include "forms/frm_options.h"

#include "forms/layout.h"
#include "forms/view.h"

namespace tarnwell::forms {

namespace {

constexpr Twips kOutOfSight = -20000;

/// Port and rate have no caption of their own but their frame's title.
void NameFields(frmOptions& f) {
  PairUp({{f.lblDataBits, f.cboDataBits}, {f.lblParity, f.cboParity}, {f.lblStopBits, f.cboStopBits}});
  f.cboPort.setAccessibleName(QStringLiteral("Port"));
  f.fraCommunications.setAccessibleName(QStringLiteral("Communications"));
  f.fraGeneral.setAccessibleName(QStringLiteral("General"));
  f.cboSpeed.setAccessibleName(QStringLiteral("Data Rate"));
}

}  // namespace

frmOptions::frmOptions() : Form("frmOptions", "", Border::kFixedDialog, 7110, 5025) {
  NameFields(*this);
  SetFirstFocus(cmdOK);
  SetCancelButton(cmdCancel);
  SetDefaultButton(cmdOK);
  tabOptions.lower();
  Place(fraGeneral, kOutOfSight, 0, ScaleWidth(), ScaleHeight());
  GiveIcon();
  connect(this, &Form::Resize, this, [this] { ArrangeOptions(*this); });
}

}  // namespace tarnwell::forms
