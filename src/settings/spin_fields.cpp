#include "settings/spin_fields.h"

#include "console/entry_text.h"
#include "forms/controls/answers.h"
#include "link/frame_codec.h"
#include "protocol/encodings.h"
#include "settings/calibration_points.h"
#include "settings/reply_rules.h"

namespace tarnwell::settings {

void DrawLimit(forms::TextBox& field, const forms::UpDown& spin) {
  const int tenths = spin.Value();
  field.SetText(tenths < 0 ? DisabledText() : console::EntryFromNumber(tenths / 10.0, 1));
}

void DrawAddress(forms::TextBox& field, const forms::UpDown& spin) { field.SetText(QString::number(spin.Value())); }

void SetLimit(forms::TextBox& field, forms::UpDown& spin, std::string_view text) {
  const std::optional<int> tenths = LimitTenths(text);
  spin.SetValue(tenths.value_or(kDisabledLimit));
  DrawLimit(field, spin);
  const bool held = !tenths || (protocol::BeginsWithNumber(text) && *tenths >= 0 && *tenths <= spin.Maximum());
  forms::ShowDoubtful({&field}, held ? QString() : console::OutsideOfEntry(text));
}

void SetAddress(forms::TextBox& field, forms::UpDown& spin, std::string_view text) {
  const int address = text.empty() ? -1 : text.front() - link::AddressByte(0);
  if (address >= 0) spin.SetValue(address);
  DrawAddress(field, spin);
  forms::ShowDoubtful({&field}, spin.Value() == address ? QString() : console::OutsideOfEntry(text));
}

}  // namespace tarnwell::settings
