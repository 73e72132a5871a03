#include <QGuiApplication>
#include <cstdio>
#include <exception>
#include <memory>

#include "tools/shared/files.h"
#include "tools/shared/painting.h"
#include "tools/vorel-line/commands.h"

int main(int argc, char** argv) {
  try {
    tarnwell::tools::SurviveFileLimit();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    std::unique_ptr<QGuiApplication> painting;
    if (tarnwell::vorel_line::NeedsPainting(arguments)) painting = tarnwell::tools::PreparePainting(argc, argv);
    return tarnwell::vorel_line::Run(arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorel-line: %s\n", error.what());
    return tarnwell::vorel_line::kExitUnusable;
  }
}
