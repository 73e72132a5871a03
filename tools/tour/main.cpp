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

// tour OUTDIR: connects the console to COM1 and leaves pictures of its forms in OUTDIR, which must exist.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setQuitOnLastWindowClosed(false);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() != 2 || !QDir(arguments[1]).exists()) {
    qCritical("usage: tour OUTDIR");
    return 2;
  }

  tarnwell::platform::MonotonicCounter counter;
  tarnwell::platform::EventLoopYielder yielder(counter);
  tarnwell::platform::QtSerialPort comConnect;
  UnattendedDesktop desktop;
  tarnwell::app::Program program({counter, yielder, comConnect, desktop});
  QObject::connect(&program.MainForm(), &tarnwell::forms::Form::Unload, &application, &QApplication::quit,
                   Qt::QueuedConnection);
  tarnwell::tour::Tour tour(program, QDir(arguments[1]));
  desktop.onMessage = [&tour](const QString& text) { tour.Fail(text); };
  return program.Start() ? tour.Run() : 1;
}
