#pragma once

#include <QByteArray>
#include <QStringList>

namespace tarnwell::vorel_snapshot {

/// How the program ends.
enum Exit : int {
  kExitFine = 0,
  kExitDamaged = 1,
  kExitDiffers = 1,     ///< diff, as diff(1) ends
  kExitUnreadable = 2,  ///< a file can't be read or written, or the command line is wrong
  kExitNoTables = 3,    ///< plot: nothing to draw
  kExitDiffDamaged = 4  ///< diff: a file is damaged, and what differs isn't sure
};

/// What the program prints, UTF-8.
struct Output {
  QByteArray out;
  QByteArray err;
};

/// Whether the arguments ask for a picture, which takes a QGuiApplication.
bool NeedsPainting(const QStringList& arguments);

/// Carries the command line, without the program's name, and gives the exit code.
int Run(const QStringList& arguments, Output& output);

}  // namespace tarnwell::vorel_snapshot
