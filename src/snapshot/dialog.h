#pragma once

#include "forms/frm_main.h"
#include "snapshot/writer.h"

namespace tarnwell::snapshot {

/// The path that the file dialog proposes: `folder` and the first characters of the description, no extension.
QString ProposedPath(const QString& folder, const QString& description);

/// The logic of frmSaveSnapshot: a description, a file, and the writing, which closes the form however it ends.
class Dialog {
 public:
  Dialog(forms::frmSaveSnapshot& form, const forms::frmMain& main, const link::SSPA_Public& shared, Writer& writer,
         const link::IntervalTiming& timing, platform::Desktop& desktop)
      : m_form(form), m_main(main), m_shared(shared), m_writer(writer), m_timing(timing), m_desktop(desktop) {}

  void Form_Load();
  void Form_Activate();
  /// Refuses what no file name may hold. Enter stands for cmdOk.
  void txtSnapShotID_KeyPress(forms::KeyAscii& key);
  void cmdOk_Click();
  void cmdCancel_Click();

 private:
  std::optional<QString> ChooseFile(const QString& description);
  void Write(const QString& path);
  void SetWriting(bool writing);
  void YieldWithoutInput();

  forms::frmSaveSnapshot& m_form;
  const forms::frmMain& m_main;
  const link::SSPA_Public& m_shared;
  Writer& m_writer;
  const link::IntervalTiming& m_timing;
  platform::Desktop& m_desktop;
};

}  // namespace tarnwell::snapshot
