#include <QScreen>

#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class StartUpTest : public ProgramTest {};

TEST_F(StartUpTest, FirstRunWithAnEmptyStore) {
  Start();
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  EXPECT_TRUE(Shared().AudibleNotify && Shared().PortRS232 && Shared().RS485Control == 0);
  EXPECT_TRUE(Main().tmrForcePollResume.Enabled());
  EXPECT_FALSE(Main().tmrFlasher.Enabled());
  EXPECT_EQ(Main().size(), QSize(640, 480));
  EXPECT_EQ(Main().geometry().center(), Main().screen()->geometry().center());
  EXPECT_FALSE(m_port.PortOpen());
  Choose("mnuExit");
  EXPECT_TRUE(Main().Unloaded());
}

TEST_F(StartUpTest, WithoutACounterTheProgramEnds) {
  m_counter.Break();
  m_program.emplace(app::Machine{m_counter, m_yielder, m_port, m_desktop});
  EXPECT_FALSE(m_program->Start());
  EXPECT_EQ(m_desktop.TakeMessages(),
            QStringList(QStringLiteral("(X) PC does not support high performance counters needed!")));
  EXPECT_TRUE(Main().Unloaded());
  EXPECT_FALSE(Main().isVisible());
}

TEST_F(StartUpTest, StoredPropertiesAreAppliedAndEachRefusedOneHasItsOwnMessageAlone) {
  const auto startWith = [this](const char* properties) {
    for (const QString& row : QString::fromLatin1(properties).split(QLatin1Char(' '))) {
      SaveProperty(row.section(QLatin1Char('='), 0, 0).toLatin1(), row.section(QLatin1Char('='), 1).toLatin1());
    }
    Start();
    return m_port.Settings() + '|' + std::to_string(m_port.CommPort()) + '|' + std::to_string(m_port.Handshaking()) +
           '|' + std::to_string(Shared().ConnectAddress) + '|' + std::to_string(Shared().RS485Control) + '|' +
           (Shared().AudibleNotify ? "audible" : "") + (Shared().PortRS232 ? " RS232" : "");
  };
  m_port.Refuse("Settings");
  EXPECT_EQ(startWith("Settings=fast CommPort=none Handshaking=many ConnectAddress=32 AudibleNotify=maybe RS232=maybe "
                      "RS485Control=x"),
            "9600,n,8,1|1|0|0|0|");
  EXPECT_EQ(m_desktop.TakeMessages(),
            QStringList({QStringLiteral("(!) Corrupted Registry entry for data format or baud rate, using default."),
                         QStringLiteral("(!) Corrupted Registry entry for handshaking, using default."),
                         QStringLiteral("(!) Corrupted Registry entry for address, using default.")}));
  EXPECT_EQ(StoredProperty("ConnectAddress"), QStringLiteral("32")) << "a bad value stays in the store";
  m_port.Refuse("");
  EXPECT_EQ(startWith("Settings=1200,e,7,2 CommPort=3 Handshaking=2 ConnectAddress=31 AudibleNotify=True RS232=False "
                      "RS485Control=1"),
            "1200,e,7,2|3|2|31|1|audible");
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  const std::tuple<const char*, int, int> cases[] = {{"31", 31, 0},  {"-1", 0, 1},  {"abc", 0, 1}, {"3.7", 4, 0},
                                                     {"31.2", 0, 1}, {"nan", 0, 1}, {" 5 ", 5, 0}};
  for (const auto& [text, address, messages] : cases) {
    SaveProperty("ConnectAddress", text);
    Start();
    EXPECT_EQ(Shared().ConnectAddress, address) << text;
    EXPECT_EQ(Find<forms::TextBox>("txtConnectAddress").Text(), QString::number(address)) << text;
    EXPECT_EQ(m_desktop.TakeMessages().size(), messages) << text;
  }
}

TEST_F(StartUpTest, AddressEntryIsStoredAtOnce) {
  Start();
  ClickOn("txtConnectAddress");
  QTest::keyClick(&Find("txtConnectAddress"), Qt::Key_A, Qt::ControlModifier);
  // each key, what the field shows then, and what is stored and in use
  const std::tuple<Qt::Key, const char*, const char*> keys[] = {
      {Qt::Key_4, "4", ""},           {Qt::Key_X, "4", ""},     {Qt::Key_5, "45", ""},
      {Qt::Key_Return, "31", "31"},   {Qt::Key_Up, "31", "31"}, {Qt::Key_Down, "30", "30"},
      {Qt::Key_Backspace, "3", "30"}, {Qt::Key_Tab, "30", "30"}};
  for (const auto& [key, shown, stored] : keys) {
    QTest::keyClick(&Find("txtConnectAddress"), key);
    EXPECT_EQ(Main().txtConnectAddress.Text().toStdString(), shown) << key;
    EXPECT_EQ(StoredProperty("ConnectAddress").toStdString(), stored) << key;
    EXPECT_EQ(Shared().ConnectAddress, std::atoi(stored)) << key;
  }
}

}  // namespace
}  // namespace tarnwell::test
