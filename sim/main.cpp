#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "sim/commands.h"
#include "sim/ending.h"
#include "sim/options.h"
#include "sim/pty.h"
#include "sim/station.h"

namespace tarnwell::sim {

namespace {

constexpr const char* kVersion = "vorel-sim " TARNWELL_VERSION "\n";

/// Serves the line and standard input until told to end.
class Program {
 public:
  Program(const Options& options, Line& line) : m_station(options), m_line(line), m_quiet(options.quiet) {}

  int Run() {
    const sigset_t whileWaiting = PrepareEnding();
    signal(SIGTTIN, SIG_IGN);  // in the background of a terminal a read fails then, and doesn't stop the program
    if (!OpenLine()) return EXIT_FAILURE;
    Announce();
    while (!EndAsked() && !m_station.Asked().quit) {
      Wait(whileWaiting);
      Work();
    }
    m_line.Close();
    return EXIT_SUCCESS;
  }

 private:
  double Now() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count(); }

  bool OpenLine() {
    const std::string error = m_line.Open();
    if (!error.empty()) std::fprintf(stderr, "vorel-sim: %s\n", error.c_str());
    return error.empty();
  }

  /// The path stands alone on the first line, for scripts.
  void Announce() {
    std::printf("%s\n", m_line.Path().c_str());
    const Outcome shown = Execute(m_station, 0.0, "show");
    std::fputs(shown.text.c_str(), stdout);
  }

  void Wait(const sigset_t& whileWaiting) {
    m_polled[0] = {m_inputOpen ? STDIN_FILENO : -1, POLLIN, 0};
    m_polled[1] = {m_line.Descriptor(), POLLIN, 0};
    timespec wait{};
    const auto due = m_station.NextDue();
    if (due) {
      const double seconds = std::max(0.0, *due - Now());
      wait.tv_sec = static_cast<time_t>(seconds);
      wait.tv_nsec = static_cast<long>((seconds - std::floor(seconds)) * 1e9);
    }
    if (ppoll(m_polled.data(), m_polled.size(), due ? &wait : nullptr, &whileWaiting) < 0) {
      for (pollfd& polled : m_polled) polled.revents = 0;
    }
  }

  void Work() {
    if (m_polled[1].revents != 0) ReadLine();
    if (m_polled[0].revents != 0) ReadInput();
    FollowPlug();
    const std::string bytes = m_station.Send(Now());
    // What doesn't fit is lost: a line doesn't wait for a console that reads nothing.
    if (!bytes.empty() && ::write(m_line.Descriptor(), bytes.data(), bytes.size()) < 0) return;
  }

  void ReadLine() {
    std::array<char, 512> buffer;
    const ssize_t count = ::read(m_line.Descriptor(), buffer.data(), buffer.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
      std::fputs("vorel-sim: the line is gone; plug opens it again\n", stderr);
      m_station.Asked().plugged = false;
    }
    if (count <= 0) return;
    m_line.LiftClaim();
    for (const std::string& line : m_station.Receive(Now(), {buffer.data(), static_cast<std::size_t>(count)})) {
      if (m_station.Asked().trace) std::printf("%s\n", line.c_str());
    }
  }

  void ReadInput() {
    std::array<char, 512> buffer;
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count <= 0) {
      m_inputOpen = false;  // goes on without: it may run in the background
      if (!m_typed.empty()) m_typed += '\n';
    } else {
      m_typed.append(buffer.data(), static_cast<std::size_t>(count));
    }
    for (std::size_t end = m_typed.find('\n'); end != std::string::npos; end = m_typed.find('\n')) {
      Carry(m_typed.substr(0, end));
      m_typed.erase(0, end + 1);
    }
  }

  void Carry(const std::string& line) {
    const Outcome outcome = Execute(m_station, Now(), line);
    std::fputs(outcome.text.c_str(), outcome.ok ? stdout : stderr);
    if (!outcome.ok) std::fputs("\n", stderr);
    // Each command by itself: a pull and a plug that come together are a new line, and not none.
    const bool inForce = FollowPlug();
    if (inForce && !outcome.command.empty() && !m_quiet) std::printf("ok %s\n", outcome.command.c_str());
  }

  /// False: the line that a plug asked for couldn't be opened.
  bool FollowPlug() {
    const bool open = m_line.Descriptor() >= 0;
    if (open == m_station.Asked().plugged) return true;
    if (open) {
      m_line.Close();
      m_station.LoseLine();
    } else if (OpenLine()) {
      std::printf("%s\n", m_line.Path().c_str());
    } else {
      m_station.Asked().plugged = false;
    }
    return open || m_station.Asked().plugged;
  }

  Station m_station;
  Line& m_line;
  bool m_quiet;
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  std::array<pollfd, 2> m_polled{};
  bool m_inputOpen = true;
  std::string m_typed;
};

/// With a standard stream closed, the line would be opened in its place and be read as what is typed.
void FillStandardStreams() {
  int descriptor = 0;
  do {
    descriptor = ::open("/dev/null", O_RDWR);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) ::close(descriptor);
}

int Main(const std::vector<std::string>& arguments) {
  FillStandardStreams();
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  const auto parsed = ParseOptions(arguments);
  if (const auto* error = std::get_if<std::string>(&parsed)) {
    std::fprintf(stderr, "vorel-sim: %s\nvorel-sim --help lists the options.\n", error->c_str());
    return 2;
  }
  const auto& options = std::get<Options>(parsed);
  if (options.help) std::fputs(OptionsHelp().c_str(), stdout);
  if (options.version) std::fputs(kVersion, stdout);
  if (options.help || options.version) return EXIT_SUCCESS;
  const auto line = options.port.empty() ? MakePty(options.link) : MakePort(options.port, options.rate);
  return Program(options, *line).Run();
}

}  // namespace

}  // namespace tarnwell::sim

int main(int argc, char** argv) {
  try {
    return tarnwell::sim::Main({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fputs(error.what(), stderr);
    return EXIT_FAILURE;
  }
}
