#include "forms/frm_save_snapshot.h"

#include "forms/view.h"

namespace tarnwell::forms {

frmSaveSnapshot::frmSaveSnapshot() : Form("frmSaveSnapshot", "Save Snapshot", Border::kFixedDialog, 6480, 1905) {
  Place(lblFileDescription, 120, 225, 1635, 360);
  Place(txtSnapShotID, 1875, 225, 4365, 360);
  Place(lblProgressBar, 120, 735, 1635, 360);
  Place(prgSaveSnapshot, 1875, 735, 4365, 360);
  Place(cmdOk, 3675, 1305, 1200, 420);
  Place(cmdCancel, 5040, 1305, 1200, 420);
  txtSnapShotID.setAccessibleDescription(QStringLiteral("3 to 50 characters"));
  PairUp({{lblFileDescription, txtSnapShotID}, {lblProgressBar, prgSaveSnapshot}});
  SetFirstFocus(cmdCancel);
  SetCancelButton(cmdCancel);
  GiveIcon();
}

}  // namespace tarnwell::forms
