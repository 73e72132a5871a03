#include "settings/spin_fields.h"

#include "console/entry_text.h"
#include "settings/calibration_points.h"

namespace tarnwell::settings {

void DrawLimit(forms::TextBox& field, const forms::UpDown& spin) {
  const int tenths = spin.Value();
  field.SetText(tenths < 0 ? DisabledText() : console::EntryFromNumber(tenths / 10.0, 1));
}

void DrawAddress(forms::TextBox& field, const forms::UpDown& spin) { field.SetText(QString::number(spin.Value())); }

void SetLimit(forms::TextBox& field, forms::UpDown& spin, int tenths) {
  spin.SetValue(tenths);
  DrawLimit(field, spin);
}

void SetAddress(forms::TextBox& field, forms::UpDown& spin, int address) {
  spin.SetValue(address);
  DrawAddress(field, spin);
}

}  // namespace tarnwell::settings
