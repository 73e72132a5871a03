#include "platform/desktop.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <algorithm>

#include "platform/posted_call.h"
#include "platform/text_encoding.h"

namespace tarnwell::platform {

namespace {

QMessageBox::Icon ToolkitIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kInformation:
      return QMessageBox::Information;
    case MessageIcon::kWarning:
      return QMessageBox::Warning;
    case MessageIcon::kCritical:
      return QMessageBox::Critical;
    case MessageIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

/// Looks at a file's name and kind alone. To tell its type by its content it would be opened, and one that never ends,
/// or never answers, would hold the thread for good.
class PlainIcons final : public QFileIconProvider {
 public:
  using QFileIconProvider::icon;
  QIcon icon(const QFileInfo& file) const override { return icon(file.isDir() ? Folder : File); }
  QString type(const QFileInfo& file) const override {
    return file.isDir() ? QStringLiteral("Folder") : file.suffix().toUpper() + QStringLiteral(" File");
  }
};

/// The box's own setter reaches the first text only; the one below it would still guess at markup.
void ShowPlain(QMessageBox& box) {
  const auto labels = box.findChildren<QLabel*>();
  for (QLabel* label : labels) label->setTextFormat(Qt::PlainText);
}

/// A box with a short text would be narrower than its own title.
void MakeRoomForTitle(QMessageBox& box) {
  constexpr int kWidth = 320;
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (grid != nullptr) grid->addItem(new QSpacerItem(kWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

/// Lets no input through while it lives; requests to close a window are none.
class ClosesOnly final : public QObject {
 public:
  ClosesOnly() {
    qApp->installEventFilter(this);
    m_lives = true;
  }
  ~ClosesOnly() override { m_lives = false; }
  static bool Lives() { return m_lives; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    return event->isInputEvent() || event->type() == QEvent::Shortcut || event->type() == QEvent::ContextMenu;
  }

 private:
  static inline bool m_lives = false;
};

bool AnyWindowIsVisible() {
  const auto windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) { return window->isVisible(); });
}

/// Closes what the operator asked to close while the thread was held: behind a message box the request would be lost.
/// False where nothing is left to show a message above.
bool TakeRequestsToClose() {
  if (!AnyWindowIsVisible()) return true;  // the program is about to start
  constexpr int kMilliseconds = 50;
  const ClosesOnly closesOnly;
  QCoreApplication::processEvents(QEventLoop::AllEvents, kMilliseconds);
  return AnyWindowIsVisible();
}

}  // namespace

QWidget* FrontWindow() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  const auto windows = QApplication::topLevelWidgets();
  const auto shown = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
    return window->isVisible() && window->windowType() == Qt::Window;
  });
  return shown != windows.end() ? *shown : nullptr;
}

bool OnlyClosesAreTaken() { return ClosesOnly::Lives(); }

void SetMessageFont(const QFont& font) { QApplication::setFont(font, "QMessageBox"); }

ToolkitDesktop::ToolkitDesktop() : m_sounder(DesktopSounds(), QApplication::beep) {}

void ToolkitDesktop::ShowMessage(const Message& message) {
  if (m_showing) {
    m_waiting.push_back(message);
    return;
  }
  m_showing = true;
  if (!EndAsked() && TakeRequestsToClose()) ShowBox(message);
  m_showing = false;
  if (!m_waiting.empty()) {
    PostCall(m_context, [this] { ShowWaiting(); });
  }
}

void ToolkitDesktop::ShowWaiting() {
  if (m_showing || m_waiting.empty()) return;
  const Message message = std::move(m_waiting.front());
  m_waiting.pop_front();
  ShowMessage(message);
}

void ToolkitDesktop::ShowBox(const Message& message) {
  // The box names the program, not the window's title: the title says the link's state and may be a lost one.
  QMessageBox box(ToolkitIcon(message.icon), QCoreApplication::applicationName(), Printable(message.text),
                  QMessageBox::Ok, FrontWindow());
  box.setInformativeText(Printable(message.details));
  box.setDefaultButton(QMessageBox::Ok);
  box.setEscapeButton(QMessageBox::Ok);
  ShowPlain(box);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.button(QMessageBox::Ok)->setFocus();  // a text that can be selected would get it first
  MakeRoomForTitle(box);
  const bool busy = QApplication::overrideCursor() != nullptr;
  SetBusyPointer(false);  // the box waits for the operator, not the operator for the program
  box.exec();
  SetBusyPointer(busy);
}

std::optional<QString> ToolkitDesktop::ChooseSaveFile(const SaveDialog& dialog) {
  if (EndAsked()) return std::nullopt;
  const QFileInfo proposed(dialog.fileName);
  // In two parts: the toolkit would take a folder of that name for the place to save in.
  PlainIcons icons;
  QFileDialog box(FrontWindow(), QString(), proposed.path());
  box.setIconProvider(&icons);
  box.setAcceptMode(QFileDialog::AcceptSave);
  box.setNameFilters(dialog.filters);
  box.selectNameFilter(dialog.filters.value(dialog.filterIndex - 1));
  box.selectFile(proposed.fileName());
  if (box.exec() != QDialog::Accepted || box.selectedFiles().isEmpty()) return std::nullopt;
  return box.selectedFiles().constFirst();
}

void ToolkitDesktop::SetBusyPointer(bool busy) {
  const bool shown = QApplication::overrideCursor() != nullptr;
  if (busy && !shown) QApplication::setOverrideCursor(Qt::WaitCursor);
  if (!busy && shown) QApplication::restoreOverrideCursor();
}

QString FirstWritable(const QStringList& folders) {
  const auto found = std::find_if(folders.begin(), folders.end(), [](const QString& folder) {
    const QFileInfo info(folder);
    return info.isDir() && info.isWritable();
  });
  return QDir::toNativeSeparators(found != folders.end() ? *found : folders.value(folders.size() - 1));
}

QString ProposedFolder() {
  return FirstWritable({QCoreApplication::applicationDirPath(),
                        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), QDir::homePath()});
}

}  // namespace tarnwell::platform
