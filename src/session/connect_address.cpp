#include "session/connect_address.h"

#include <utility>

#include "console/entry_keys.h"
#include "console/entry_text.h"
#include "forms/controls/input_gate.h"

namespace tarnwell::session {

void ConnectAddressEntry::updwnConnectAddress_Change() {
  const int address = m_form.updwnConnectAddress.Value();
  const QString text = QString::number(address);
  const bool changed = std::exchange(m_shared.ConnectAddress, static_cast<std::uint8_t>(address)) != address;
  m_form.txtConnectAddress.SetText(text);
  if (m_properties.SaveStoredProperty(QStringLiteral("ConnectAddress"), text)) {
    m_told = false;
  } else if (changed && !std::exchange(m_told, true)) {
    // Later: the address may be changed on the way from one command to the next.
    forms::InputGate::Instance().ActLater([this, address, form = QPointer<forms::Form>(&m_form)] {
      if (form != nullptr) TellNotStored(address);
    });
  }
}

// Not what is in use: a change that the device didn't follow is taken back while this waits behind its message.
void ConnectAddressEntry::TellNotStored(int address) {
  if (m_form.Unloaded()) return;
  m_desktop.ShowMessage({QStringLiteral("The connection address %1 could not be stored. The next start of the program "
                                        "takes the one that was stored last.")
                             .arg(address),
                         platform::MessageIcon::kInformation, m_properties.Failure()});
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
