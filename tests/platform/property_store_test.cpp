#include "platform/property_store.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSettings>

namespace tarnwell::platform {
namespace {

const QString kSection = QStringLiteral("Properties");

/// A store of its own for each test, with the file that the system keeps it in.
class PropertyStoreTest : public testing::Test {
 protected:
  ~PropertyStoreTest() override { QDir(QFileInfo(m_path).path()).removeRecursively(); }

  void WriteFile(const QByteArray& text) {
    QDir().mkpath(QFileInfo(m_path).path());
    QFile file(m_path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  }

  QString Get(const QString& key) { return PropertyStore(m_application).Get(kSection, key); }

  QString m_application =
      QString::fromLatin1(testing::UnitTest::GetInstance()->current_test_info()->name()) + QStringLiteral(" v1.0");
  QString m_path =
      QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tarnwell"), m_application).fileName();
};

TEST_F(PropertyStoreTest, KeepsTextsAsTheyAreAndReadsThoseEditedByHand) {
  PropertyStore store(m_application);
  EXPECT_EQ(Get(QStringLiteral("Settings")), QString());
  for (const char* text : {"9600,n,8,1", "", "a = b; \"c\" \\ %41 @Invalid()", "\xC2\xB5 \xE2\x82\xAC"}) {
    store.Save(kSection, QStringLiteral("Settings"), QString::fromUtf8(text));
    EXPECT_EQ(Get(QStringLiteral("Settings")), QString::fromUtf8(text)) << "read back by another run";
  }
  WriteFile("[Properties]\nSettings=1200,e,7,2\nRS232=True\nConnectAddress= 31\n");
  EXPECT_EQ(Get(QStringLiteral("Settings")) + Get(QStringLiteral("ConnectAddress")), QStringLiteral("1200,e,7,231"));
}

TEST_F(PropertyStoreTest, WhatAnotherProgramWroteOrSpoiledMeanwhileIsKept) {
  PropertyStore store(m_application);
  EXPECT_TRUE(store.Save(kSection, QStringLiteral("CommPort"), QStringLiteral("4")));
  WriteFile("[Properties]\nCommPort=4\nSettings=\"1200,e,7,2\"\n");
  EXPECT_TRUE(store.Save(kSection, QStringLiteral("RS232"), QStringLiteral("True")));
  EXPECT_EQ(Get(QStringLiteral("Settings")), QStringLiteral("1200,e,7,2"));

  const QByteArray spoiled = "[Properties]\nCommPort=4\nspoiled by something else\nRS232=True\n";
  WriteFile(spoiled);
  EXPECT_TRUE(store.Save(kSection, QStringLiteral("RS232"), QStringLiteral("False")));
  EXPECT_EQ(Get(QStringLiteral("RS232")), QStringLiteral("False"));
  const QDir folder(QFileInfo(m_path).path());
  const QStringList copies = folder.entryList({QStringLiteral("*.damaged-*")}, QDir::Files);
  ASSERT_EQ(copies.size(), 1);
  EXPECT_EQ(QFileInfo(folder, copies[0]).size(), spoiled.size());
}

}  // namespace
}  // namespace tarnwell::platform
