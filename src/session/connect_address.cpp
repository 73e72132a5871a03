#include "session/connect_address.h"

#include "console/entry_keys.h"
#include "console/entry_text.h"

namespace tarnwell::session {

void ConnectAddressEntry::updwnConnectAddress_Change() {
  const int address = m_form.updwnConnectAddress.Value();
  const QString text = QString::number(address);
  m_form.txtConnectAddress.SetText(text);
  m_shared.ConnectAddress = static_cast<std::uint8_t>(address);
  m_properties.SaveStoredProperty(QStringLiteral("ConnectAddress"), text);
}

void ConnectAddressEntry::txtConnectAddress_KeyPress(forms::KeyAscii& key) {
  console::TakeEntryKey(
      key, console::kDigitKeys, [this] { EnterAddress(); }, [this] { updwnConnectAddress_Change(); });
}

void ConnectAddressEntry::EnterAddress() {
  const std::optional<int> address = console::WholeNumberFromEntry(m_form.txtConnectAddress.Text());
  if (address) m_form.updwnConnectAddress.SetValue(*address);
  updwnConnectAddress_Change();
}

void ConnectAddressEntry::txtConnectAddress_KeyDown(int key) { console::StepByKey(m_form.updwnConnectAddress, key); }

}  // namespace tarnwell::session
