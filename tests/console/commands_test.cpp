#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class CommandsTest : public ProgramTest {
 protected:
  /// The commands that `act` causes in a session, up to the end of the yield in which it happens.
  std::string CommandsOf(std::function<void()> act) {
    m_yielder.OnYieldAfter(1, [this, act = std::move(act)] {
      m_port.TakeTranscript();
      act();
      QCoreApplication::processEvents();
      m_caused = m_port.Commands();
    });
    Connect(1);
    return m_caused;
  }

  std::string m_caused;
};

/// An option, another one of its group, and a device that stands at the other.
struct OptionRow {
  bool controller;
  const char* option;
  const char* sibling;
  const char* command;
  const char* query;
  const char* before;   ///< the query's reply
  const char* obeyed;   ///< the same once the command was obeyed
  const char* refused;  ///< commands with a device that answers and stays as it is
};

constexpr OptionRow kOptionRows[] = {
    {false, "optOnline", "optStandby", "S=O", "S?", "S=ST", "S=OT", "S=O S?"},
    {false, "optStandby", "optOnline", "S=S", "S?", "S=OT", "S=ST", "S=S S?"},
    // a mute that the device tells is taken over as the operator's own, and sent
    {false, "optRFOn", "optRFMute", "S=T", "S?", "S=OX", "S=OT", "S=T S? S=X S?"},
    {false, "optRFMute", "optRFOn", "S=X", "S?", "S=OT", "S=OX", "S=X S?"},
    {false, "optLLO", "optREM", "LLO", "S?", "S=OT", "S=OTY", "LLO S?"},
    {false, "optREM", "optLLO", "REM", "S?", "S=OTY", "S=OT", "REM S?"},
    {true, "opt7316Auto", "opt7316Manual", "S=A", "S?", "S=M", "S=A", "S=A S?"},
    {true, "opt7316Manual", "opt7316Auto", "S=M", "S?", "S=A", "S=M", "S=M S?"},
    {true, "opt7316PathA1", "opt7316PathA2", "PA=1", "PA?", "PA=2", "PA=1", "PA=1 PA?"},
    {true, "opt7316PathA2", "opt7316PathA1", "PA=2", "PA?", "PA=1", "PA=2", "PA=2 PA?"},
    {true, "opt7316PathB2", "opt7316PathB3", "PB=2", "PB?", "PB=3", "PB=2", "PB=2 PB?"},
    {true, "opt7316PathB3", "opt7316PathB2", "PB=3", "PB?", "PB=2", "PB=3", "PB=3 PB?"},
};

enum class Device { kObeys, kRefuses, kIsSilent };

class OptionTest : public CommandsTest, public testing::WithParamInterface<OptionRow> {
 protected:
  void Choose(bool byKeys) {
    const OptionRow& row = GetParam();
    QWidget& option = Find(row.option);
    if (byKeys) {
      const bool forward = Find(row.sibling).x() < option.x() || Find(row.sibling).y() < option.y();
      QTest::keyClick(&Find(row.sibling), forward ? Qt::Key_Right : Qt::Key_Left);
    } else {
      QTest::mousePress(&option, Qt::LeftButton);
      QCoreApplication::processEvents();
      QTest::mouseRelease(&option, Qt::LeftButton);
    }
    QCoreApplication::processEvents();
  }

  /// What goes out when the option is chosen, and which of the two is shown as soon as that is over.
  std::string Story(Device device, bool byKeys) {
    const OptionRow& row = GetParam();
    m_replies = row.controller ? ControllerReplies() : AmplifierReplies();
    for (const char* command : {"S=O", "S=S", "S=T", "S=X", "LLO", "REM", "S=A", "S=M"}) m_replies[command] = "S=";
    for (const char* command : {"PA=1", "PA=2", "PB=2", "PB=3"}) m_replies[command] = command;
    m_replies[row.query] = row.before;
    std::string shown;
    const std::string commands = CommandsOf([&] {
      if (byKeys) {  // the keys start from the option that the device stands at
        Find(row.sibling).setFocus();
        QCoreApplication::processEvents();
      }
      m_port.TakeTranscript();
      if (device == Device::kObeys) m_replies[row.query] = row.obeyed;
      if (device == Device::kIsSilent) m_replies.erase(row.command);
      Choose(byKeys);
      shown = Find<forms::OptionButton>(row.option).Value() ? row.option : row.sibling;
      EXPECT_FALSE(Find<forms::OptionButton>(row.option).Value() && Find<forms::OptionButton>(row.sibling).Value());
      EXPECT_FALSE(Find<QAbstractButton>(row.option).isDown());
    });
    return commands + " > " + shown;
  }
};

TEST_P(OptionTest, SendsReadsBackAndShowsWhatTheDeviceSays) {
  const OptionRow& row = GetParam();
  const std::string command = row.command;
  Start();
  for (const bool byKeys : {false, true}) {
    EXPECT_EQ(Story(Device::kObeys, byKeys), command + ' ' + row.query + " > " + row.option);
    EXPECT_EQ(Story(Device::kRefuses, byKeys), row.refused + std::string(" > ") + row.sibling);
    // the status follows at once; a path shows what was read last
    const char* shown = std::string(row.query).front() == 'P' ? row.sibling : row.option;
    EXPECT_EQ(Story(Device::kIsSilent, byKeys), command + ' ' + command + ' ' + command + " > " + shown);
  }
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(All, OptionTest, testing::ValuesIn(kOptionRows),
                         [](const auto& row) { return std::string(row.param.option); });

TEST_F(CommandsTest, GainByKeysAndSpin) {
  const struct {
    const char* read;
    const char* act;  ///< keys in the emptied field; "^" Up, "e" Escape, "l" left, "+" a click on the upper arrow
    const char* command;
    const char* shown;
  } cases[] = {{"-3.4", "-3.41\r", "G=-3.41", "-3.41"},
               {"-3.4", "-25\r", "G=-20", "-20.0"},
               {"-3.4", "5\r", "G= 0", "0.0"},
               {"-3.4", "-,2\r", "G=-.2", "-0.2"},
               {"-3.4", "-\r", "", "-3.4"},
               {"-3.4", "1-2\r", "", "-3.4"},
               {"-3.4", "x\r", "", "-3.4"},
               {"-0.2", "^^", "G= 0", "0.0"},  // at the limit the key sends nothing
               {"-0.2", "+", "G= 0", "0.0"},
               {"0", "25+", "G= 0", "0.0"},  // what is half typed is never sent
               {"0", "25e", "", "0.0"},
               {"0", "25l", "", "0.0"}};
  const std::map<char, Qt::Key> keys = {{'\r', Qt::Key_Return}, {'^', Qt::Key_Up}, {'e', Qt::Key_Escape}};
  m_replies = AmplifierReplies();
  m_replies.merge(ReplyTable{{"G=-3.41", "G=-3.4"}, {"G=-20", "G=-20"}, {"G= 0", "G=0"}, {"G=-.2", "G=-0.2"}});
  Start();
  for (const auto& c : cases) {
    m_replies["G?"] = std::string("G=") + c.read;
    EXPECT_EQ(CommandsOf([&] {
                auto& field = Find<forms::TextBox>("txtGainAdjust");
                QWidget& spin = Find("updwnGainAdjust");
                field.setFocus();
                QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
                QTest::keyClick(&field, Qt::Key_Backspace);
                for (const char key : std::string(c.act)) {
                  if (key == '+') {
                    QTest::mousePress(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
                    EXPECT_EQ(m_port.Commands(), "") << "nothing goes out while the arrow is held";
                    QTest::mouseRelease(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
                  } else if (key == 'l') {
                    Main().cmdConnect.setFocus();
                  } else if (const auto special = keys.find(key); special != keys.end()) {
                    QTest::keyClick(&field, special->second);
                  } else {
                    QTest::keyClick(&field, key);
                  }
                }
                EXPECT_EQ(field.Text().toStdString(), c.shown) << c.act;
              }),
              c.command)
        << c.act;
  }
}

TEST_F(CommandsTest, DelaysOfAWriter) {
  m_replies = AmplifierReplies();
  m_replies["G=-3.4"] = "G=-3.4";
  Start();
  double before = 0.0;
  double after = 0.0;
  const auto timed = [&](const std::function<void()>& act) {
    CommandsOf([&] {
      before = m_counter.Seconds();
      act();
      QCoreApplication::processEvents();
      after = m_counter.Seconds();
    });
    return after - before;
  };
  // a frame of 7 bytes holds the line for 0.0173 s, one of 6 for 0.0163 s; an answer comes 0.02 s after its request
  const double obeyed = timed([this] { ClickOn("optStandby"); });
  EXPECT_NEAR(obeyed, 0.1 + 0.05 + 0.1 + 2 * 0.02, 0.02);
  const double silent = timed([this] { ClickOn("optLLO"); });
  EXPECT_NEAR(silent, 0.1 + 3 * (0.0173 + 2.0 + 0.05) + 0.1, 0.01) << "the last delay runs also after a failure";
  const double gain = timed([this] {
    Find("txtGainAdjust").setFocus();
    QTest::keyClick(&Find("txtGainAdjust"), Qt::Key_Return);
  });
  EXPECT_NEAR(gain, 0.05 + 0.02 + 0.05, 0.01);
}

}  // namespace
}  // namespace tarnwell::test
