#include "session/connect_address.h"

#include "console/entry_text.h"

namespace tarnwell::session {

namespace {

bool PassesIntoAddress(char16_t character) {
  return (character >= u'0' && character <= u'9') || character == forms::KeyAscii::kBackspace;
}

}  // namespace

void ConnectAddressEntry::updwnConnectAddress_Change() {
  const int address = m_form.updwnConnectAddress.Value();
  const QString text = QString::number(address);
  m_form.txtConnectAddress.SetText(text);
  m_shared.ConnectAddress = static_cast<std::uint8_t>(address);
  m_properties.SaveStoredProperty(QStringLiteral("ConnectAddress"), text);
}

void ConnectAddressEntry::txtConnectAddress_KeyPress(forms::KeyAscii& key) {
  if (key.character == forms::KeyAscii::kEscape) updwnConnectAddress_Change();
  if (key.character == forms::KeyAscii::kEnter) EnterAddress();
  if (!PassesIntoAddress(key.character)) key.character = forms::KeyAscii::kSwallowed;
}

void ConnectAddressEntry::EnterAddress() {
  const std::optional<int> address = console::WholeNumberFromEntry(m_form.txtConnectAddress.Text());
  if (address) m_form.updwnConnectAddress.SetValue(*address);
  updwnConnectAddress_Change();
}

void ConnectAddressEntry::txtConnectAddress_KeyDown(int key) {
  forms::UpDown& spin = m_form.updwnConnectAddress;
  if (key == Qt::Key_Up) spin.SetValue(spin.Value() + spin.Increment());
  if (key == Qt::Key_Down) spin.SetValue(spin.Value() - spin.Increment());
}

}  // namespace tarnwell::session
