#include <QGuiApplication>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>

#include "tools/shared/files.h"
#include "tools/shared/painting.h"
#include "tools/vorel-snapshot/commands.h"

namespace {

using tarnwell::vorel_snapshot::kExitUnreadable;

/// False when the stream doesn't take it all: a closed pipe, a full disk.
bool Print(const QByteArray& bytes, std::FILE* stream) {
  const auto size = static_cast<std::size_t>(bytes.size());
  return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

int Main(int argc, char** argv) {
  tarnwell::tools::SurviveFileLimit();
  QStringList arguments;
  for (int i = 1; i < argc; ++i) arguments += tarnwell::tools::NameFromBytes(argv[i]);
  std::unique_ptr<QGuiApplication> painting;
  if (tarnwell::vorel_snapshot::NeedsPainting(arguments)) painting = tarnwell::tools::PreparePainting(argc, argv);
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
