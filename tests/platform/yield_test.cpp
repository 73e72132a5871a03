#include "platform/yield.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include "platform/posted_call.h"
#include "tests/platform/clocks.h"

namespace tarnwell::platform {
namespace {

using namespace test;

class YieldTest : public testing::Test {
 protected:
  YieldTest() { QCoreApplication::processEvents(); }

  double Elapsed() const { return Milliseconds() - m_start; }

  MonotonicCounter m_counter;
  EventLoopYielder m_yielder{m_counter};
  double m_start = Milliseconds();
};

TEST_F(YieldTest, HandlesEverythingPendingAlsoWhenTheDeadlineHasPassed) {
  int handled = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&handled] { ++handled; });
  timer.start(0);
  m_yielder.Yield(CountAfter(0));
  EXPECT_EQ(handled, 1);
  EXPECT_LT(Elapsed(), 50);
}

TEST_F(YieldTest, WaitsInTheSystemUntilTheDeadlineAndNoLonger) {
  const std::int64_t deadline = CountAfter(20);
  const double busy = ProcessorMilliseconds();
  int yields = 0;
  for (; CountAfter(0) < deadline; ++yields) m_yielder.Yield(deadline);
  EXPECT_GE(Elapsed(), 20);
  EXPECT_LT(Elapsed(), 500);
  EXPECT_LE(yields, 3) << "an idle pause wakes up for its end, not over and over";
  EXPECT_LT(ProcessorMilliseconds() - busy, 10);
}

TEST_F(YieldTest, TheCounterRestsUntilShortlyBeforeACountAndNeverLater) {
  const double busy = ProcessorMilliseconds();
  int late = 0;
  for (int rest = 0; rest < 20; ++rest) {
    const std::int64_t end = CountAfter(5);
    m_counter.RestUntil(end);
    late += CountAfter(0) > end ? 1 : 0;
  }
  EXPECT_LT(late, 20) << "but where others have the processor";
  EXPECT_GE(Elapsed(), 20 * 3);
  EXPECT_LT(ProcessorMilliseconds() - busy, 20);
  m_counter.RestUntil(CountAfter(-1000));
}

TEST_F(YieldTest, InAWaitForTheDeviceNothingHappensButDrawing) {
  QStringList happened;
  const auto notes = [&](const char* what) { return [&happened, what] { happened += QLatin1String(what); }; };
  struct : QWidget {
    int drawn = 0, keys = 0;
    void paintEvent(QPaintEvent*) override { ++drawn; }
    void keyPressEvent(QKeyEvent*) override { ++keys; }
  } canvas;
  canvas.show();
  QCoreApplication::processEvents();
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, &canvas, notes("tick"));
  tick.start(0);
  QTimer once;
  once.setSingleShot(true);
  QObject::connect(&once, &QTimer::timeout, &canvas, notes("once"));
  once.start(0);
  PostCall(canvas, notes("call"));
  auto* gone = new QObject;
  PostCall(*gone, notes("call of what is gone"));
  int pipe[2] = {};
  ASSERT_EQ(::pipe(pipe), 0);
  ASSERT_EQ(write(pipe[1], "x", 1), 1);
  QSocketNotifier signal(pipe[0], QSocketNotifier::Read);
  QObject::connect(&signal, &QSocketNotifier::activated, &signal, [&] {
    signal.setEnabled(false);
    happened += QStringLiteral("signal");
  });
  canvas.drawn = 0;
  canvas.update();
  QCoreApplication::postEvent(&canvas, new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
  {
    const DrawingOnly around;
    for (int slice = 0; slice < 3; ++slice) m_yielder.LetDraw();
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(happened, QStringList());
  EXPECT_TRUE(canvas.drawn == 1 && canvas.keys == 0);
  delete gone;
  tick.stop();
  m_yielder.Yield(CountAfter(0));
  EXPECT_EQ(canvas.keys, 1) << "an assistive tool gave it back meanwhile";
  happened.sort();
  EXPECT_EQ(happened, QStringList({QStringLiteral("call"), QStringLiteral("once"), QStringLiteral("signal")}));
  for (const int end : pipe) close(end);
}

}  // namespace
}  // namespace tarnwell::platform
