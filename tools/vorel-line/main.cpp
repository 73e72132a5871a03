#include <cstdio>
#include <exception>

#include "tools/vorel-line/commands.h"

int main(int argc, char** argv) {
  try {
    return tarnwell::vorel_line::Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorel-line: %s\n", error.what());
    return tarnwell::vorel_line::kExitUnusable;
  }
}
