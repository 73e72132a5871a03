#include "support/program_test.h"

namespace tarnwell::test {
namespace {

enum class Device { kObeys, kRefuses, kIsSilent };

struct Choice {
  const char* option;
  const char* command;
  const char* told;  ///< the query's reply where the device stands at it
};

class CommandsTest : public ProgramTest {
 protected:
  /// What goes out when the operator changes from one option to the other, and which is shown as soon as that is over.
  std::string Story(const char* query, const Choice& from, const Choice& to, Device device, Qt::Key key) {
    m_replies = std::string_view(to.option).substr(0, 7) == "opt7316" ? ControllerReplies() : AmplifierReplies();
    m_replies[to.command] = *query == 'P' ? to.command : "S=";
    m_replies[query] = from.told;
    std::string shown;
    const std::string paces = PacesOf([&] {
      if (device == Device::kObeys) m_replies[query] = to.told;
      if (device == Device::kIsSilent) m_replies.erase(to.command);
      if (key != 0) {
        Find(from.option).setFocus();
        QCoreApplication::processEvents();
        m_port.TakeTranscript();
        QTest::keyClick(&Find(from.option), key);
      } else {
        QTest::mousePress(&Find(to.option), Qt::LeftButton);
        QCoreApplication::processEvents();
        QTest::mouseRelease(&Find(to.option), Qt::LeftButton);
      }
      QCoreApplication::processEvents();
      for (const char* option : {from.option, to.option}) {
        if (Find<forms::OptionButton>(option).Value()) shown += std::string(" > ") + option;
        EXPECT_FALSE(Find<QAbstractButton>(option).isDown());
      }
    });
    return paces + shown;
  }
};

TEST_F(CommandsTest, AnOptionSendsReadsBackAndShowsWhatTheDeviceSays) {
  const struct {
    const char* query;
    Choice choices[2];  // as they stand on the form
  } rows[] = {{"S?", {{"optOnline", "S=O", "S=OT"}, {"optStandby", "S=S", "S=ST"}}},
              {"S?", {{"optRFOn", "S=T", "S=OT"}, {"optRFMute", "S=X", "S=OX"}}},
              {"S?", {{"optREM", "REM", "S=OT"}, {"optLLO", "LLO", "S=OTY"}}},
              {"S?", {{"opt7316Auto", "S=A", "S=A"}, {"opt7316Manual", "S=M", "S=M"}}},
              {"PA?", {{"opt7316PathA1", "PA=1", "PA=1"}, {"opt7316PathA2", "PA=2", "PA=2"}}},
              {"PB?", {{"opt7316PathB2", "PB=2", "PB=2"}, {"opt7316PathB3", "PB=3", "PB=3"}}}};
  for (const auto& [query, choices] : rows) {
    Start();
    for (const int chosen : {0, 1}) {
      const Choice& from = choices[1 - chosen];
      const Choice& to = choices[chosen];
      const std::string command = to.command;
      const std::string sent = "100 " + command + " 50 " + query + " 100";
      for (const Qt::Key key : {Qt::Key(0), chosen == 0 ? Qt::Key_Left : Qt::Key_Right}) {
        SCOPED_TRACE(std::string(to.option) + (key == 0 ? " by the mouse" : " by a key"));
        EXPECT_EQ(Story(query, from, to, Device::kObeys, key), sent + " > " + to.option);
        // a mute that the device tells is taken over as the operator's own, and sent
        const std::string taken = command == "S=T" ? " S=X 50 S? 200" : "";
        EXPECT_EQ(Story(query, from, to, Device::kRefuses, key), sent + taken + " > " + from.option);
        // the next status is at hand; of a path nothing is known yet
        EXPECT_EQ(Story(query, from, to, Device::kIsSilent, key),
                  "100 " + command + " 2050 " + command + " 2050 " + command + " 2150" +
                      (*query == 'P' ? "" : std::string(" > ") + to.option));
      }
    }
  }
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
}

TEST_F(CommandsTest, GainByKeysAndSpin) {
  const struct {
    const char* read;
    const char* act;  ///< keys in the emptied field; "^" Up, "\033" Escape, "l" leave it, "+" click the upper arrow
    const char* command;
    const char* shown;
  } cases[] = {{"-3.4", "-3.41\r", "G=-3.41", "-3.41"},
               {"-3.4", "-25\r", "G=-20", "-20.0"},
               {"-3.4", "5\r", "G= 0", "0.0"},
               {"-3.4", "-,2\r", "G=-.2", "-0.2"},
               {"-3.4", "-\r", "", "-3.4"},
               {"-3.4", "1-2\r", "", "-3.4"},
               {"-0.2", "^^", "G= 0", "0.0"},  // at the limit the key sends nothing
               {"-0.2", "+", "G= 0", "0.0"},
               {"0", "25+", "G= 0", "0.0"},  // what is half typed is never sent
               {"0", "25\033", "", "0.0"},
               {"0", "25l", "", "0.0"}};
  m_replies.merge(ReplyTable{{"G=-3.41", "G=-3.4"}, {"G=-20", "G=-20"}, {"G= 0", "G=0"}, {"G=-.2", "G=-0.2"}});
  Start();
  for (const auto& c : cases) {
    m_replies["G?"] = std::string("G=") + c.read;
    const std::string paces = PacesOf([&] {
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
        } else if (key == '^') {
          QTest::keyClick(&field, Qt::Key_Up);
        } else {
          QTest::keyClick(&field, key);
        }
      }
      EXPECT_EQ(field.Text().toStdString(), c.shown) << c.act;
    });
    EXPECT_EQ(paces, *c.command == 0 ? "0" : std::string("50 ") + c.command + " 50") << c.act;
  }
}

}  // namespace
}  // namespace tarnwell::test
