#include "platform/port_map.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace tarnwell::platform {
namespace {

TEST(PortMap, OnBoardPortsComeFirstAndNumbersSortAsNumbers) {
  const QString listed = QStringLiteral("ttyUSB10 ttyS4 ttyACM0 ttyUSB2 ttyS10 rfcomm0 ttyAMA0 ttyS0");
  const QString expected = QStringLiteral("ttyAMA0 ttyS0 ttyS4 ttyS10 rfcomm0 ttyACM0 ttyUSB2 ttyUSB10");
  EXPECT_EQ(InPortOrder(listed.split(QLatin1Char(' '))).join(QLatin1Char(' ')), expected);
  // a number of the system's own that no hardware stands behind is no port
  EXPECT_FALSE(IsRealPort(QStringLiteral("ttyS7"), QStringLiteral("0")));
  EXPECT_TRUE(IsRealPort(QStringLiteral("ttyS0"), QStringLiteral("4")));
  EXPECT_TRUE(IsRealPort(QStringLiteral("ttyUSB0"), QStringLiteral("0")));
}

TEST(PortMap, TheOperatorsLinkStandsForThePortAlsoWhenItIsBrokenOrMissing) {
  QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
              QStringLiteral("/tarnwell/ports"));
  ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
  const QString chained = folder.filePath(QStringLiteral("com102"));
  const QString broken = folder.filePath(QStringLiteral("com103"));
  ASSERT_TRUE(QFile::link(QStringLiteral("/dev/null"), folder.filePath(QStringLiteral("com101"))));
  ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("com101")), chained));
  ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/ttyUSB7"), broken));

  EXPECT_EQ(DeviceOfPort(102), chained);
  EXPECT_EQ(TargetOf(chained), QStringLiteral("/dev/null"));
  EXPECT_EQ(DeviceOfPort(103), broken);
  EXPECT_EQ(TargetOf(broken), QStringLiteral("/nowhere/ttyUSB7"));
  // Where links are kept the system's own ports stand for nothing, nor does one for a link that was there before.
  for (const int number : {1, 104}) {
    const QString missing = folder.filePath(QStringLiteral("com%1").arg(number));
    EXPECT_EQ(DeviceOfPort(number), missing);
    EXPECT_EQ(DescribePorts(number).last(), missing + QStringLiteral(" - missing"));
  }
  EXPECT_EQ(DescribePorts(104).value(102), QStringLiteral("/nowhere/ttyUSB7 - missing"));
  folder.removeRecursively();
  EXPECT_EQ(DeviceOfPort(103), broken) << "its link stood earlier in this run";
  EXPECT_EQ(DeviceOfPort(104), std::nullopt);
  EXPECT_EQ(DescribePorts(104).last(), QStringLiteral("No such port on this computer"));
}

TEST(PortMap, ADeniedDeviceSaysWhoMayOpenItAndWhatToDo) {
  DeviceRights rights{QStringLiteral("ann"), QStringLiteral("root"), QStringLiteral("dialout"), true, false};
  const auto tells = [&](const char* part) { return DeniedReason(rights).contains(QLatin1String(part)); };
  EXPECT_TRUE(tells("members of the group dialout may open it. Run \"sudo usermod -aG dialout ann\""));
  rights.userListedInGroup = true;
  EXPECT_TRUE(tells("You are one since you last logged in") && !tells("sudo"));
  rights.groupMayOpen = false;
  EXPECT_TRUE(tells("only the user root may open it") && tells("GROUP=\"dialout\""));
}

}  // namespace
}  // namespace tarnwell::platform
