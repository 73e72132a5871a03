#include "settings/field_entry.h"

#include <utility>

#include "console/entry_keys.h"
#include "console/entry_text.h"
#include "forms/controls/answers.h"
#include "settings/entry_values.h"
#include "settings/spin_fields.h"

namespace tarnwell::settings {

namespace {

using Tables = CalibrationTables;
using console::kDigitKeys, forms::TextBox, forms::UpDown;

constexpr std::string_view kDACKeys = "0123456789D";
constexpr std::string_view kLevelKeys = "0123456789.,D";
constexpr std::string_view kCompensationKeys = "0123456789.,-D";
constexpr std::string_view kTemperatureKeys = "0123456789-";

void MoveCaret(TextBox& box, int key) {
  if (key == Qt::Key_Up) box.cursorBackward(false);
  if (key == Qt::Key_Down) box.cursorForward(false);
}

void TellLimits(forms::frmSettings& form) {
  form.txtRFVolts.setAccessibleDescription(VoltsInWords());
  form.txtPiNDAC.setAccessibleDescription(DACInWords());
  for (TextBox* box : {&form.txtRFTCComp, &form.txtTCComp}) box->setAccessibleDescription(CompensationInWords());
  for (TextBox* box : {&form.txtRFTCTemp, &form.txtTCTemp}) box->setAccessibleDescription(TemperatureInWords());
  for (const auto& [box, spin] : {std::pair{&form.txtRFMin, &form.updwnRFMin},
                                  {&form.txtRFMax, &form.updwnRFMax},
                                  {&form.txtReflectedMax, &form.updwnReflectedMax}}) {
    box->setAccessibleDescription(ThresholdInWords(spin->Shown(spin->Maximum()), spin->Shown(spin->Increment())));
  }
}

}  // namespace

FieldEntry::FieldEntry(forms::frmSettings& form, CalibrationTables& tables, const SpinWriters& writers)
    : m_form(form),
      m_tables(tables),
      m_writers(writers),
      m_fields{
          Limit(form.txtRFMin, form.updwnRFMin, "T1"),
          Limit(form.txtRFMax, form.updwnRFMax, "T2"),
          Limit(form.txtReflectedMax, form.updwnReflectedMax, "T3"),
          Address(),
          Volts(),
          TableField(form.txtPiNDAC, kDACKeys, DACFromEntry, &Tables::DrawPiNPoint, &Tables::WritePiNPoint),
          TableField(form.txtRFTCComp, kCompensationKeys, CompensationFromEntry, &Tables::DrawRFTempCompPoint,
                     &Tables::WriteRFTempCompPoint),
          TableField(form.txtRFTCTemp, kTemperatureKeys, TemperatureFromEntry, &Tables::DrawRFTempCompPoint,
                     &Tables::WriteRFTempCompPoint),
          TableField(form.txtTCComp, kCompensationKeys, CompensationFromEntry, &Tables::DrawTempCompPoint,
                     &Tables::WriteTempCompPoint),
          TableField(form.txtTCTemp, kTemperatureKeys, TemperatureFromEntry, &Tables::DrawTempCompPoint,
                     &Tables::WriteTempCompPoint),
          Position(form.txtRFLevelPoint, form.updwnRFLevel, &Tables::DrawRFLevelPoint),
          Position(form.txtPiNLevelPoint, form.updwnPiNLevel, &Tables::DrawPiNPoint),
          Position(form.txtRFTempCompPoint, form.updwnRFTempComp, &Tables::DrawRFTempCompPoint),
          Position(form.txtTempCompPoint, form.updwnTempComp, &Tables::DrawTempCompPoint),
      } {
  TellLimits(form);
}

FieldEntry::Field FieldEntry::SpinField(TextBox& box, std::string_view keys, UpDown& spin, ToSpin convert,
                                        DrawSpin draw, std::function<void()> write) {
  const auto commit = [&box, &spin, convert, draw, write] {
    const std::optional<int> value = convert(box.Text());
    if (!value) return false;
    spin.SetValue(*value);
    draw(box, spin);  // also where the spin stood there already
    write();
    return true;
  };
  return {box, keys, &spin, [&box, &spin, draw] { draw(box, spin); }, commit, std::move(write)};
}

FieldEntry::Field FieldEntry::Limit(TextBox& box, UpDown& spin, std::string_view tag) {
  return SpinField(box, kLevelKeys, spin, LimitFromEntry, DrawLimit, [this, tag] { m_writers.WriteThreshold(tag); });
}

FieldEntry::Field FieldEntry::Address() {
  return SpinField(m_form.txtSSPAAddress, kDigitKeys, m_form.updwnSSPAAddress, console::WholeNumberFromEntry,
                   DrawAddress, m_writers.WriteSSPAAddress);
}

FieldEntry::Field FieldEntry::TableField(TextBox& box, std::string_view keys, ToText convert, TableAction draw,
                                         TableAction write) {
  const auto commit = [this, &box, convert, write] {
    const std::optional<QString> text = convert(box.Text());
    if (!text) return false;
    box.SetText(*text);
    (m_tables.*write)();
    return true;
  };
  return {box, keys, nullptr, [this, draw] { (m_tables.*draw)(); }, commit};
}

FieldEntry::Field FieldEntry::Volts() {
  TextBox& box = m_form.txtRFVolts;
  const auto commit = [this, &box] {
    const std::optional<float> volts = VoltsFromEntry(box.Text());
    if (volts) m_tables.WriteRFLevelPoint(*volts);
    return volts.has_value();
  };
  return {box, kLevelKeys, nullptr, [this] { m_tables.DrawRFLevelPoint(); }, commit};
}

FieldEntry::Field FieldEntry::Position(TextBox& box, UpDown& spin, TableAction draw) {
  return {box, {}, &spin, [this, draw] { (m_tables.*draw)(); }};
}

void FieldEntry::Connect() {
  for (const Field& field : m_fields) {
    if (!field.keys.empty()) ConnectTyping(field);
    if (field.spin != nullptr) ConnectSpin(field);
  }
}

void FieldEntry::ConnectTyping(const Field& field) {
  const auto enter = [&field] {
    // What stands in a doubtful field isn't the device's, and the operator hasn't asked for it.
    if (forms::IsOld(field.box) && !field.box.isModified()) return;
    if (!field.commit()) field.draw();
  };
  QObject::connect(&field.box, &TextBox::KeyPress, &m_wires, [&field, enter](forms::KeyAscii& key) {
    console::TakeEntryKey(key, field.keys, enter, field.draw);
  });
  QObject::connect(&field.box, &TextBox::LostFocus, &m_wires, field.draw);
  if (field.spin != nullptr) return;
  QObject::connect(&field.box, &TextBox::KeyDown, &m_wires, [&field](int key) { MoveCaret(field.box, key); });
}

void FieldEntry::ConnectSpin(const Field& field) {
  QObject::connect(&field.box, &TextBox::KeyDown, &m_wires, [&field](int key) { Step(field, key); });
  QObject::connect(field.spin, &UpDown::Change, &m_wires, field.draw);
  if (!field.writeSpin) return;
  QObject::connect(field.spin, &UpDown::MouseUp, &m_wires, [&field] {
    field.draw();  // at its limit the spin changes nothing, and what was half typed would stand there
    field.writeSpin();
  });
}

void FieldEntry::Step(const Field& field, int key) {
  if (console::StepByKey(*field.spin, key) && field.writeSpin) field.writeSpin();
}

}  // namespace tarnwell::settings
