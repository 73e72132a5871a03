#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

// What the start of the console takes beside that of a window of the toolkit with one label: from the start of the
// process until the middle of the screen shows what it painted, both in turn. The screen is to be empty, without a
// window manager: a window then stands in its middle, and shows the root's colour until its own first picture is there.

namespace {

constexpr int kPairs = 41;
constexpr int kWarmUps = 2;
constexpr auto kLongest = std::chrono::seconds(10);

using Clock = std::chrono::steady_clock;

struct Start {
  double wall;
  double processor;
};

int ShowEmptyWindow(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  QWidget window;
  QFont font;
  font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  font.setPointSizeF(9.75);
  window.setFont(font);
  window.resize(640, 480);
  window.move(QGuiApplication::primaryScreen()->geometry().center() - window.rect().center());
  QLabel label(QStringLiteral("Not connected"), &window);
  window.show();
  return QApplication::exec();
}

double Milliseconds(Clock::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

QRgb MiddleOfScreen() {
  QScreen& screen = *QGuiApplication::primaryScreen();
  const QPoint middle = screen.geometry().center();
  return screen.grabWindow(0, middle.x(), middle.y(), 1, 1).toImage().pixel(0, 0);
}

/// False where the middle of the screen doesn't come to hold or to lose the colour.
bool WaitForMiddle(QRgb colour, bool held) {
  const auto started = Clock::now();
  while ((MiddleOfScreen() == colour) != held) {
    if (Clock::now() - started > kLongest) return false;
    usleep(200);
  }
  return true;
}

/// Of all threads; the system keeps it in nanoseconds.
double ProcessorMilliseconds(pid_t process) {
  const QDir tasks(QStringLiteral("/proc/%1/task").arg(process));
  double sum = 0.0;
  for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile file(tasks.filePath(task + QStringLiteral("/schedstat")));
    if (file.open(QIODevice::ReadOnly)) sum += file.readAll().split(' ').constFirst().toDouble();
  }
  return sum / 1e6;
}

Start Measure(const char* program, const char* argument) {
  const QRgb root = MiddleOfScreen();
  const auto started = Clock::now();
  const pid_t process = fork();
  if (process == 0) {
    execl(program, program, argument, nullptr);
    _exit(127);
  }
  const bool stands = WaitForMiddle(root, false);
  const Start start{Milliseconds(Clock::now() - started), ProcessorMilliseconds(process)};
  kill(process, SIGTERM);
  waitpid(process, nullptr, 0);
  if (stands && WaitForMiddle(root, true)) return start;
  std::fprintf(stderr, "bench_start: no window of %s in the middle of the screen, or still another one\n", program);
  std::exit(1);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Print(const char* name, double Start::*time, const std::vector<Start>& consoles,
           const std::vector<Start>& empties) {
  std::vector<double> console, empty, ratio;
  for (std::size_t i = 0; i < consoles.size(); ++i) {
    console.push_back(consoles[i].*time);
    empty.push_back(empties[i].*time);
    ratio.push_back(console.back() / empty.back());
  }
  std::printf("| %-45s | %9.1f ms | %9.1f ms | %5.2f |\n", name, Median(console), Median(empty), Median(ratio));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--empty") return ShowEmptyWindow(argc, argv);
  const QGuiApplication application(argc, argv);
  const QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  std::vector<Start> consoles, empties;
  for (int pair = -kWarmUps; pair < kPairs; ++pair) {
    const Start console = Measure(argc == 2 ? argv[1] : TARNWELL, nullptr);
    const Start empty = Measure(argv[0], "--empty");
    if (pair < 0) continue;
    consoles.push_back(console);
    empties.push_back(empty);
  }
  std::printf("| %-45s | Console | Empty window | Ratio |\n|---|---|---|---|\n",
              "From the start to the first picture, median");
  Print("time", &Start::wall, consoles, empties);
  Print("processor time", &Start::processor, consoles, empties);
}
