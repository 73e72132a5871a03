#include "tools/shared/painting.h"

#include <QGuiApplication>

namespace tarnwell::tools {

std::unique_ptr<QGuiApplication> PreparePainting(int& argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Qt's remarks on locale and fonts are not for the operator.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace tarnwell::tools
