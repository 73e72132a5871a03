#include <QApplication>

#include "app/program.h"
#include "platform/qt_serial_port.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  // A watchdog may hide the only window for a moment; the program ends with its main form.
  QApplication::setQuitOnLastWindowClosed(false);

  tarnwell::platform::MonotonicCounter counter;
  tarnwell::platform::EventLoopYielder yielder(counter);
  tarnwell::platform::QtSerialPort comConnect(&yielder);
  tarnwell::platform::ToolkitDesktop desktop;
  tarnwell::app::Program program({counter, yielder, comConnect, desktop});
  QObject::connect(&program.MainForm(), &tarnwell::forms::Form::Unload, &application, &QApplication::quit,
                   Qt::QueuedConnection);
  const tarnwell::platform::Ending ending;
  QObject::connect(&ending, &tarnwell::platform::Ending::Asked, &application, [&program] { program.End(); });
  return program.Start() ? QApplication::exec() : 0;
}
