#pragma once

#include <utility>
#include <vector>

#include "console/session_state.h"
#include "forms/frm_options.h"
#include "link/sspa_public.h"
#include "platform/desktop.h"
#include "platform/serial_port.h"
#include "session/stored_properties.h"

namespace tarnwell::options {

/// The dialog that chooses the serial port, its format and flow control, the kind of line and the beep. Nothing is
/// applied before cmdOK; what the port refuses is told, and then nothing is stored.
class OptionsDialog {
 public:
  OptionsDialog(forms::frmOptions& form, link::SSPA_Public& shared, platform::SerialPort& comConnect,
                const console::SessionState& session, session::StoredProperties& properties, platform::Desktop& desktop)
      : m_form(form),
        m_shared(shared),
        m_port(comConnect),
        m_session(session),
        m_properties(properties),
        m_desktop(desktop) {}

  /// `main` is the form that it opens over.
  void Form_Load(const forms::Form& main);

  /// Fills the lists and shows the values in force.
  void LoadOptions();

  void cmdOk_Click();
  void cmdCancel_Click() { m_form.UnloadForm(); }
  void optRS232_Click() { AllowLine(true); }
  void optRS4xx_Click();
  void opt485Control_Click(int index) { Selected485Control = index; }
  void tabOptions_Click();
  void optAudibleOn_Click() { m_desktop.Beep(); }

  /// After the dialog: RTS stays raised on an RS-422/485 line that doesn't switch its driver with it.
  void RaiseRTS();

 private:
  void FillLists();
  void ShowDataFormat();
  void ShowPort();
  void ShowAudible();
  void TellHowHeard();
  void AllowLine(bool rs232);
  bool ApplyPort();
  bool TryPort(int number);
  void RefusePort();
  bool ApplyDataFormat();
  bool ApplyFlow();
  void TakeVariables();
  using Properties = std::vector<std::pair<const char*, QString>>;
  /// The properties as they are in force, in the order in which they are stored.
  Properties InForce() const;
  bool StoreProperties();
  bool Refuse(const QString& message, const QString& details = {});

  forms::frmOptions& m_form;
  link::SSPA_Public& m_shared;
  platform::SerialPort& m_port;
  const console::SessionState& m_session;
  session::StoredProperties& m_properties;
  platform::Desktop& m_desktop;

  int Selected485Control = 0;  ///< the element of opt485Control that was clicked last
  Properties m_atOpening;      ///< a port that OK took stays, also where OK then refused its format
};

}  // namespace tarnwell::options
