#include <QApplication>
#include <functional>

#include "platform/qt_serial_port.h"
#include "tour.h"

namespace {

/// The real desktop but for its message boxes: nobody is there to close one, so each that warns ends the tour.
class UnattendedDesktop final : public tarnwell::platform::Desktop {
 public:
  std::function<void(const QString&)> onMessage;

  void ShowMessage(const tarnwell::platform::Message& message) override {
    const bool plain = message.icon == tarnwell::platform::MessageIcon::kNone;
    if (onMessage && !plain) onMessage(message.text + QLatin1Char(' ') + message.details);
  }
  std::optional<QString> ChooseSaveFile(const tarnwell::platform::SaveDialog& /*dialog*/) override {
    return std::nullopt;
  }
  void Beep() override {}
  void SetBusyPointer(bool busy) override { m_desktop.SetBusyPointer(busy); }

 private:
  tarnwell::platform::ToolkitDesktop m_desktop;
};

}  // namespace

// tour [--check] FOLDER [PICTURE=FILE...]: connects the console to COM1 and leaves pictures of its forms in FOLDER,
// which must exist: all, or those named. With --check it looks whether those in FOLDER show the forms as they are.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setCursorFlashTime(0);
  QStringList words = QApplication::arguments().mid(1);
  tarnwell::tour::Plan plan;
  plan.check = words.removeAll(QStringLiteral("--check")) > 0;
  if (words.isEmpty() || !QDir(words[0]).exists()) {
    qCritical("usage: tour [--check] FOLDER [PICTURE=FILE...]");
    return 2;
  }
  plan.folder.setPath(words.takeFirst());
  for (const QString& word : words)
    plan.files[word.section(QLatin1Char('='), 0, 0)] = word.section(QLatin1Char('='), -1);

  tarnwell::platform::MonotonicCounter counter;
  tarnwell::platform::EventLoopYielder yielder(counter);
  tarnwell::platform::QtSerialPort comConnect;
  UnattendedDesktop desktop;
  tarnwell::app::Program program({counter, yielder, comConnect, desktop});
  QObject::connect(&program.MainForm(), &tarnwell::forms::Form::Unload, &application, &QApplication::quit,
                   Qt::QueuedConnection);
  tarnwell::tour::Tour tour(program, plan);
  desktop.onMessage = [&tour](const QString& text) { tour.Fail(text); };
  return program.Start() ? tour.Run() : 1;
}
