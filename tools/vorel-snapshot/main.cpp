#include <QGuiApplication>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>

#include "tools/vorel-snapshot/commands.h"
#include "tools/vorel-snapshot/files.h"

namespace {

using tarnwell::vorel_snapshot::kExitUnreadable;

/// False when the stream doesn't take it all: a closed pipe, a full disk.
bool Print(const QByteArray& bytes, std::FILE* stream) {
  const auto size = static_cast<std::size_t>(bytes.size());
  return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

int Main(int argc, char** argv) {
  QStringList arguments;
  for (int i = 1; i < argc; ++i) arguments += tarnwell::vorel_snapshot::NameFromBytes(argv[i]);
  std::optional<QGuiApplication> painting;
  if (tarnwell::vorel_snapshot::NeedsPainting(arguments)) {
    // No window is opened, so a picture is drawn without a display as well; Qt's remarks on locale and fonts are not
    // for the operator.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    painting.emplace(argc, argv);
  }
  tarnwell::vorel_snapshot::Output output;
  const int code = tarnwell::vorel_snapshot::Run(arguments, output);
  Print(output.err, stderr);
  if (Print(output.out, stdout)) return code;
  Print(QByteArray("vorel-snapshot: standard output took not all: ") + std::strerror(errno) + '\n', stderr);
  return kExitUnreadable;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Main(argc, argv);
  } catch (const std::exception& error) {
    std::fputs(error.what(), stderr);
    return kExitUnreadable;
  }
}
