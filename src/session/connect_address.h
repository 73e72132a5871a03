#pragma once

#include "forms/frm_main.h"
#include "link/sspa_public.h"
#include "platform/desktop.h"
#include "session/stored_properties.h"

namespace tarnwell::session {

/// The entry of the bus address on the main form, while there is no session. An address that was changed and can't be
/// stored is told once, until one could be stored again.
class ConnectAddressEntry {
 public:
  ConnectAddressEntry(forms::frmMain& form, link::SSPA_Public& shared, StoredProperties& properties,
                      platform::Desktop& desktop)
      : m_form(form), m_shared(shared), m_properties(properties), m_desktop(desktop) {}

  /// Shows the spin's value, puts it in use and stores it. Also takes a half-typed entry back.
  void updwnConnectAddress_Change();
  void txtConnectAddress_KeyPress(forms::KeyAscii& key);
  void txtConnectAddress_KeyDown(int key);

 private:
  void EnterAddress();
  void TellNotStored(int address);

  forms::frmMain& m_form;
  link::SSPA_Public& m_shared;
  StoredProperties& m_properties;
  platform::Desktop& m_desktop;
  bool m_told = false;  ///< that none can be stored
};

}  // namespace tarnwell::session
