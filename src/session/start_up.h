#pragma once

#include <QRect>

#include "forms/frm_main.h"
#include "link/interval_timing.h"
#include "link/sspa_public.h"
#include "platform/desktop.h"
#include "platform/serial_port.h"
#include "session/stored_properties.h"

namespace tarnwell::session {

/// The loading of the main form: start values, the first screen, and the stored properties onto port and address. A
/// stored value that is refused leaves the port or the preference as it is, some with a message; the start goes on.
class StartUp {
 public:
  StartUp(forms::frmMain& form, link::SSPA_Public& shared, link::IntervalTiming& timing,
          platform::SerialPort& comConnect, platform::Desktop& desktop, const StoredProperties& properties)
      : m_form(form),
        m_shared(shared),
        m_timing(timing),
        m_port(comConnect),
        m_desktop(desktop),
        m_properties(properties) {}

  void Form_Load();
  /// The first time the window is placed again, now that its frame is known: the first size is the outer one.
  void Form_Activate();

 private:
  void PlaceWindow();
  void ShowFirstScreen();
  void ApplyStoredProperties();
  void ApplySettings();
  void ApplyCommPort();
  void ApplyHandshaking();
  void ApplyAddress();
  void ApplyPreferences();
  void WarnOfCorrupted(const QString& what);

  forms::frmMain& m_form;
  link::SSPA_Public& m_shared;
  link::IntervalTiming& m_timing;
  platform::SerialPort& m_port;
  platform::Desktop& m_desktop;
  const StoredProperties& m_properties;
  QRect m_firstPlace;  ///< the window's, until it was shown
};

}  // namespace tarnwell::session
