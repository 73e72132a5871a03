#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

int main(int argc, char** argv) {
  QTemporaryDir configuration;
  qputenv("XDG_CONFIG_HOME", configuration.path().toLocal8Bit());
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
  // also where a build lists its tests, which no property of a test reaches
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  // The program draws with what it links: a system may lack all further plug-ins.
  QCoreApplication::setLibraryPaths({});
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
