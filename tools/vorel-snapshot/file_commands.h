#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include "tools/vorel-snapshot/commands.h"

namespace tarnwell::vorel_snapshot {

inline constexpr const char* kProgram = "vorel-snapshot";

/// One command with its arguments; as many files as the command takes.
struct Call {
  const QCommandLineParser& parser;
  QStringList files;
  Output& output;

  bool Has(const char* option) const { return parser.isSet(QLatin1String(option)); }
};

/// Puts a line into standard error, with the program's name ahead.
void Complain(Output& output, const QString& text);

/// Puts what a command made into the file that -o names, and gives `code`, or why not and the code of that.
int Deliver(Call& call, const QString& path, const QByteArray& bytes, int code);

// Each gives the exit code.
int Verify(Call& call);
int List(Call& call);
int TrendFiles(Call& call);
int ShowFile(Call& call);
int DiffFiles(Call& call);
int PlotFile(Call& call);
int ExportFile(Call& call);

}  // namespace tarnwell::vorel_snapshot
