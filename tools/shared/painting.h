#pragma once

#include <memory>

class QGuiApplication;

namespace tarnwell::tools {

/// What a program needs that draws pictures and opens no window: it works without a display as well, and silently.
/// `argc` and `argv` are main's and must outlive it.
std::unique_ptr<QGuiApplication> PreparePainting(int& argc, char** argv);

}  // namespace tarnwell::tools
