#include "tools/shared/painting.h"

#include <QGuiApplication>

namespace tarnwell::tools {

namespace {

// Neither needs a display. Windows' own is the one that its packages bring.
#ifdef Q_OS_WIN
constexpr auto kPlatform = "windows";
#else
constexpr auto kPlatform = "offscreen";
#endif

}  // namespace

std::unique_ptr<QGuiApplication> PreparePainting(int& argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", kPlatform);
  // Qt's remarks on locale and fonts are not for the operator.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace tarnwell::tools
