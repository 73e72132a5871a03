#include "support/program_test.h"

#ifdef __GLIBC__  // which tells what is in use
#include <malloc.h>

namespace tarnwell::test {
namespace {

/// Bytes that the program has taken and not given back.
std::int64_t BytesInUse() {
  const auto memory = mallinfo2();
  return static_cast<std::int64_t>(memory.uordblks + memory.hblkhd);
}

class OpeningsTest : public ProgramTest {
 protected:
  void OpenOften(int times) {
    for (; times > 0; --times) {
      for (const char* entry : {"mnuSSPASettings", "mnuSWOpt", "mnuSnapshot"}) {
        Open([this, entry] { Choose(entry); }, [this] { Front().UnloadForm(); });
      }
      Open([this] { ClickOn("cmdViewAlarms"); }, [this] { Front().UnloadForm(); });
      m_port.TakeTranscript();
    }
  }
};

// What stays of a form, in its own objects or in what the toolkit keeps, stays of each opening.
TEST_F(OpeningsTest, FormsLeaveNothingBehind) {
  constexpr int kOpenings = 200;
  constexpr std::int64_t kEach = 1000;  ///< of all four forms; one picture of a button takes 9 kB
  Start();
  m_yielder.OnYieldAfter(13, [this] {
    OpenOften(20);
    const std::int64_t before = BytesInUse();
    OpenOften(kOpenings);
    EXPECT_LT(BytesInUse() - before, kEach * kOpenings);
    DisconnectAfter(1);
  });
  Connect();
}

}  // namespace
}  // namespace tarnwell::test

#endif
