#include "tour.h"

#include <QAction>
#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdlib>

#include "forms/frm_alarms.h"
#include "forms/frm_save_snapshot.h"
#include "forms/frm_settings.h"

namespace tarnwell::tour {

namespace {

constexpr int kBetweenLooks = 400;        // ms; long enough to draw what changed
constexpr qint64 kLongestStage = 60'000;  // ms
constexpr int kMostLooks = 10;            // at a form that changes all the time, or that a picture doesn't show

bool IsBlank(const QImage& picture) {
  if (picture.isNull()) return true;
  QImage plain(picture.size(), picture.format());
  plain.fill(picture.pixelColor(0, 0));
  return picture == plain;
}

/// Alike in the mean colour of each block: an edge or a letter that another machine smooths differently is no
/// difference, and another colour, text or place is one.
bool LookAlike(const QImage& a, const QImage& b) {
  constexpr int kBlock = 8;      // pixels
  constexpr int kTolerance = 6;  // of 255
  const auto blocks = [](const QImage& image) {
    return image.scaled(image.size() / kBlock, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB888);
  };
  if (a.size() != b.size()) return false;
  const QImage first = blocks(a);
  const QImage second = blocks(b);
  for (int y = 0; y < first.height(); ++y) {
    const auto near = [](uchar one, uchar other) { return std::abs(one - other) <= kTolerance; };
    const uchar* line = first.constScanLine(y);
    if (!std::equal(line, line + qsizetype{3} * first.width(), second.constScanLine(y), near)) return false;
  }
  return true;
}

const QString kDrawnBy = QStringLiteral("Toolkit");

bool HasText(const forms::Label& label) { return !label.Caption().trimmed().isEmpty(); }

}  // namespace

const std::vector<Tour::Stage> Tour::kStages = {
    {&Tour::IsDisconnected, &Tour::StartPicture, &Tour::OpenOptions},
    {&Tour::ShowsOptions, &Tour::OptionsPicture, &Tour::ShowGeneralPage},
    {&Tour::ShowsOptions, &Tour::GeneralPicture, &Tour::CloseForm},
    {&Tour::IsDisconnected, &Tour::NoPicture, &Tour::PressConnect},
    {&Tour::ShowsDevice, &Tour::DevicePicture, &Tour::ViewAlarms},
    {&Tour::ShowsAlarms, &Tour::AlarmsPicture, &Tour::CloseForm},
    {&Tour::ShowsDevice, &Tour::NoPicture, &Tour::OpenSettings},
    {&Tour::ShowsSettings, &Tour::StandardPicture, &Tour::ShowAdvancedPage},
    {&Tour::ShowsSettings, &Tour::AdvancedPicture, &Tour::ShowFactoryPage},
    {&Tour::ShowsSettings, &Tour::FactoryPicture, &Tour::CloseForm},
    {&Tour::ShowsDevice, &Tour::NoPicture, &Tour::OpenSnapshot},
    {&Tour::ShowsSnapshot, &Tour::SnapshotPicture, &Tour::CloseForm},
    {&Tour::ShowsDevice, &Tour::NoPicture, &Tour::Maximise},
    {&Tour::IsMaximised, &Tour::MaximisedPicture, &Tour::RestoreAndDisconnect},
    {&Tour::IsDisconnected, &Tour::EndPicture, &Tour::Close},
};

int Tour::Run() {
  m_sinceLastStage.start();
  LookAgain();
  QApplication::exec();
  return m_result;
}

// A timer of its own for each look: a press that starts a session doesn't return before the session's end.
void Tour::LookAgain() {
  QTimer::singleShot(kBetweenLooks, &m_program.MainForm(), [this] { Look(); });
}

void Tour::Look() {
  if (m_sinceLastStage.elapsed() > kLongestStage) {
    Fail(QStringLiteral("stage %1 did not come in time; the window says: %2").arg(m_stage).arg(Front().Title()));
    return;
  }
  // What is ready at two looks in a row has been drawn.
  const Stage& stage = kStages[m_stage];
  const bool ready = (this->*stage.ready)();
  if (!ready || !std::exchange(m_wasReady, ready) || !TakePicture((this->*stage.picture)())) {
    m_wasReady = ready;
    LookAgain();
    return;
  }
  if (m_failed) return;
  m_wasReady = false;
  m_looks = 0;
  m_sinceLastStage.restart();
  if (++m_stage < kStages.size()) LookAgain();
  (this->*stage.act)();
}

forms::Form& Tour::Front() const {
  auto* modal = qobject_cast<forms::Form*>(QApplication::activeModalWidget());
  return modal != nullptr ? *modal : m_program.MainForm();
}

bool Tour::TakePicture(const QString& name) {
  const QString file = m_plan.files.isEmpty() ? name : m_plan.files.value(name);
  if (file.isEmpty()) return true;
  const forms::Form& form = Front();
  const QRect frame = form.frameGeometry();
  const QImage picture = form.screen()->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height()).toImage();
  // Drawn to its end where it hasn't changed since the look before.
  const bool changed = std::exchange(m_lastLook, picture) != picture;
  if (IsBlank(picture) || (changed && ++m_looks < kMostLooks)) return false;
  const QString path = m_plan.folder.filePath(file + QStringLiteral(".png"));
  return m_plan.check ? Check(picture, path) : Save(picture, path);
}

bool Tour::Save(const QImage& picture, const QString& path) {
  QImage marked = picture;
  marked.setText(kDrawnBy, QString::fromLatin1(qVersion()));
  if (!marked.save(path)) Fail(QStringLiteral("no picture in ") + path);
  return true;
}

bool Tour::Check(const QImage& picture, const QString& path) {
  const QImage drawn(path);
  // Another version of the toolkit draws other edges and shades.
  if (drawn.text(kDrawnBy) != QLatin1String(qVersion()) && !drawn.isNull()) {
    qInfo("tour: %s not checked: drawn with %s", qUtf8Printable(path), qUtf8Printable(drawn.text(kDrawnBy)));
    return true;
  }
  const QMargins margins = Front().windowHandle()->frameMargins();  // the window manager's
  const auto inner = [&margins](const QImage& image) { return image.copy(image.rect() - margins); };
  if (LookAlike(inner(picture), inner(drawn))) return true;
  if (++m_looks < kMostLooks) return false;
  qCritical("tour: %s shows another form than the program", qUtf8Printable(path));
  m_different = true;
  return true;
}

bool Tour::IsDisconnected() const { return Front().Title().contains(QLatin1String("No Connection")); }

bool Tour::ShowsOptions() const { return Front().objectName() == QLatin1String("frmOptions"); }

bool Tour::ShowsDevice() const {
  const forms::frmMain& form = m_program.MainForm();
  if (&Front() != &form || !form.Title().contains(QLatin1String("Connected to")) || !HasText(form.lblAlarm))
    return false;
  return IsController() ? HasText(form.lbl7316PathAState) : HasText(form.lblRFLevel) && HasText(form.lblTempMod1);
}

bool Tour::ShowsAlarms() const {
  const auto* form = dynamic_cast<forms::frmAlarms*>(&Front());
  return form != nullptr && (IsController() || HasText(form->lbl14V));
}

/// All has been read: the watch over the read-back has ended.
bool Tour::ShowsSettings() const {
  const auto* form = dynamic_cast<forms::frmSettings*>(&Front());
  return form != nullptr && HasText(form->lblFirmwareVersion) && !form->tmrForcePollResume.Enabled();
}

bool Tour::ShowsSnapshot() const {
  const auto* dialog = dynamic_cast<forms::frmSaveSnapshot*>(&Front());
  return dialog != nullptr && dialog->txtSnapShotID.hasFocus();
}

bool Tour::IsMaximised() const { return m_program.MainForm().isMaximized() && ShowsDevice(); }

void Tour::OpenOptions() { Q_EMIT m_program.MainForm().mnuSWOpt.Click(); }

void Tour::ShowGeneralPage() { QTest::keyClick(&Front(), Qt::Key_G, Qt::AltModifier); }

void Tour::CloseForm() { Front().close(); }

void Tour::PressConnect() { QTest::mouseClick(&m_program.MainForm().cmdConnect, Qt::LeftButton); }

void Tour::ViewAlarms() { QTest::mouseClick(&m_program.MainForm().cmdViewAlarms, Qt::LeftButton); }

void Tour::OpenSettings() { Q_EMIT m_program.MainForm().mnuSSPASettings.Click(); }

void Tour::ShowAdvancedPage() {
  QTest::keyClick(&Front(), Qt::Key_V, Qt::AltModifier);
  if (!IsController()) QTest::keyClick(&Front(), Qt::Key_K, Qt::AltModifier);  // unlocked, so that all can be read
}

void Tour::ShowFactoryPage() { QTest::keyClick(&Front(), Qt::Key_F, Qt::AltModifier); }

void Tour::OpenSnapshot() { Q_EMIT m_program.MainForm().mnuSnapshot.Click(); }

void Tour::Maximise() { m_program.MainForm().showMaximized(); }

void Tour::RestoreAndDisconnect() {
  m_program.MainForm().showNormal();
  PressConnect();
}

void Tour::Close() {
  m_result = m_different ? 1 : 0;
  m_program.MainForm().UnloadForm();
}

void Tour::Fail(const QString& reason) {
  m_failed = true;
  qCritical("tour: %s", qUtf8Printable(reason));
  m_program.MainForm().UnloadForm();
}

}  // namespace tarnwell::tour
