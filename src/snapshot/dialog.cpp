#include "snapshot/dialog.h"

#include <QDir>

#include "forms/controls/input_gate.h"

namespace tarnwell::snapshot {

namespace {

constexpr int kBarEnd = 110;
constexpr double kDrawingTime = 0.1;  // seconds
constexpr qsizetype kShortestDescription = 3;
constexpr qsizetype kDescriptionInName = 20;

bool FitsFileName(char16_t character) { return !QStringLiteral("/\\:*?\"<>|.").contains(QChar(character)); }

}  // namespace

QString ProposedPath(const QString& folder, const QString& description) {
  const QChar separator = QDir::separator();
  return folder + (folder.endsWith(separator) ? QString() : QString(separator)) + description.left(kDescriptionInName);
}

void Dialog::Form_Load() {
  m_form.CentreOn(m_main);
  m_form.prgSaveSnapshot.setRange(0, kBarEnd);
  m_form.prgSaveSnapshot.setValue(0);
}

void Dialog::Form_Activate() { m_form.txtSnapShotID.setFocus(); }

void Dialog::txtSnapShotID_KeyPress(forms::KeyAscii& key) {
  if (!FitsFileName(key.character)) key.character = forms::KeyAscii::kSwallowed;
  if (key.character == forms::KeyAscii::kEnter) cmdOk_Click();
}

void Dialog::cmdOk_Click() {
  const QString description = m_form.txtSnapShotID.Text();
  if (description.size() < kShortestDescription) {
    m_desktop.ShowMessage(
        {QStringLiteral("Must enter at least 3 characters for File Description"), platform::MessageIcon::kWarning});
    return;
  }
  const std::optional<QString> path = ChooseFile(description);
  // A program that ended meanwhile took the form and the session with it.
  if (path && !m_form.Unloaded()) Write(*path);
}

void Dialog::cmdCancel_Click() { m_form.UnloadForm(); }

std::optional<QString> Dialog::ChooseFile(const QString& description) {
  return m_desktop.ChooseSaveFile({.filters = {QStringLiteral("All Files (*.*)"), QStringLiteral("Text Files(*.txt)")},
                                   .filterIndex = 2,
                                   .fileName = ProposedPath(platform::ProposedFolder(), description)});
}

void Dialog::Write(const QString& path) {
  SetWriting(true);
  // The file dialog's picture goes when what lies below it is drawn, and the writer lets nothing be drawn but its form.
  YieldWithoutInput();
  if (!m_form.Unloaded()) {
    const bool controller = m_shared.SSPAType == link::kRedundancyController;
    if (controller) {
      m_writer.WriteControllerSnapshot(path);
    } else {
      m_writer.WriteSSPASnapshot(path);
    }
  }
  YieldWithoutInput();
  SetWriting(false);
  m_form.UnloadForm();
}

void Dialog::YieldWithoutInput() {
  const forms::InputPause pause;
  m_timing.DelayPumped(kDrawingTime);
}

void Dialog::SetWriting(bool writing) {
  m_form.cmdOk.setEnabled(!writing);
  m_form.cmdCancel.setEnabled(!writing);
  m_desktop.SetBusyPointer(writing);
}

}  // namespace tarnwell::snapshot
