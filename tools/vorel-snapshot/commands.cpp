#include "tools/vorel-snapshot/commands.h"

#include <QCommandLineParser>
#include <array>

#include "tools/vorel-snapshot/file_commands.h"
#include "tools/vorel-snapshot/inputs.h"

namespace tarnwell::vorel_snapshot {

namespace {

const char* const kVersion = "vorel-snapshot " TARNWELL_VERSION "\n";

struct Option {
  const char* name;  ///< null: no more
  const char* argument;
  const char* help;
  bool repeats = false;
};

struct Command {
  const char* name;
  const char* arguments;
  const char* summary;
  const char* details;
  int leastFiles;
  int mostFiles;
  std::array<Option, 4> options;
  int (*run)(Call&);
};

constexpr int kManyFiles = 1 << 20;
constexpr Option kRecursive = {"recursive", nullptr, "the folders in folders as well"};

const Command kCommands[] = {
    {"verify",
     "[--quiet] [--strict] [--recursive] FILE|FOLDER...",
     "say whether files are whole, and what is damaged",
     "Checks each line's length, end and check character, the form of each value, and that\n"
     "all lines are there, once and in order. Of a folder the files that are snapshots by what is\n"
     "in them, whatever their names. The last line counts. Ends with 0 when all are whole, 1 when\n"
     "one is damaged, empty or nothing but zeros, 2 when one can't be read.\n",
     1,
     kManyFiles,
     {{{"quiet", nullptr, "nothing about files that are whole"},
       {"strict", nullptr, "a file in a folder that is no snapshot is a failure"},
       kRecursive}},
     Verify},
    {"list",
     "[--by COLUMN] [--recursive] FILE|FOLDER...",
     "print one line a file: which is which",
     "Time, model, address, firmware, description, whole or damaged, and the file.\n",
     1,
     kManyFiles,
     {{{"by", "COLUMN", "sorted by time, model, address, firmware, description, state or file"}, kRecursive}},
     List},
    {"show",
     "FILE",
     "print a snapshot to read, its tables by point",
     "What stands in a damaged line is marked \"!\".\n",
     1,
     1,
     {},
     ShowFile},
    {"diff",
     "[--readings] BEFORE AFTER",
     "print what changed between two snapshots",
     "By label and by table point. Program, description and time head the report and don't\n"
     "count; nor do two different numbers of a measured value. What may be damage is marked \"!\" and\n"
     "counted apart. Ends with 0 for no difference that counts, 1 for one, 4 for a damaged file.\n",
     2,
     2,
     {{{"readings", nullptr, "measured values (levels, temperatures, rails) count as well"}}},
     DiffFiles},
    {"plot",
     "FILE [FILE] -o OUT.svg|OUT.png",
     "draw the calibration tables as curves, of two files one over the other",
     "Points that are disabled, were not read or stand in a damaged line are left out and\n"
     "told. Ends with 3 when there is nothing to draw, as for a redundancy controller.\n",
     1,
     2,
     {{{"o", "OUT", "the picture, an SVG or PNG file by its ending"}}},
     PlotFile},
    {"trend",
     "[--of VALUE]... [--by WHAT] [--recursive] FILE|FOLDER... -o OUT.svg|OUT.png|OUT.csv",
     "draw values over time, several devices told apart",
     "Without --of all levels, limits, temperatures and rails that have a number. What is damaged,\n"
     "disabled or was not read is left out and counted. Ends with 3 when there is nothing to draw.\n",
     1,
     kManyFiles,
     {{{"of", "VALUE", "such as \"rf level\" or \"rf level table:8\", a table's point; may be repeated", true},
       {"by", "WHAT", "devices told apart by address (and model), description or folder"},
       {"o", "OUT", "the picture or the values, by its ending"},
       kRecursive}},
     TrendFiles},
    {"export",
     "FILE --json|--csv [-o OUT]",
     "print a snapshot for another program",
     "Numbers as numbers, units by themselves. vorel-snapshot(1) tells the form.\n",
     1,
     1,
     {{{"json", nullptr, "one JSON object"},
       {"csv", nullptr, "comma-separated values"},
       {"o", "OUT", "into that file"}}},
     ExportFile},
};

QString HelpRow(const QString& name, const char* help) {
  return QStringLiteral("  %1 %2\n").arg(name, -12).arg(QLatin1String(help));
}

QString ProgramHelp() {
  QString text = QStringLiteral("Usage: %1 COMMAND [ARGUMENTS]\nReads the snapshot files of the console.\n\n")
                     .arg(QLatin1String(kProgram));
  for (const Command& command : kCommands) text += HelpRow(QLatin1String(command.name), command.summary);
  text += QLatin1Char('\n') + HelpRow(QStringLiteral("--help"), "print this; behind a command, what that takes") +
          HelpRow(QStringLiteral("--version"), "print the version");
  return text + QStringLiteral(
                    "\nExit status: 0 fine, 1 damaged, or different, 2 unreadable or wrong usage, 3 nothing to draw,\n"
                    "4 diff of a damaged file. The file - is standard input.\n");
}

QString OptionName(const Option& option) {
  return QLatin1String(option.name[1] != '\0' ? "--" : "-") + QLatin1String(option.name);
}

QString CommandHelp(const Command& command) {
  QString text = QStringLiteral("Usage: %1 %2 %3\n%4")
                     .arg(QLatin1String(kProgram), QLatin1String(command.name), QLatin1String(command.arguments),
                          QString::fromLatin1(command.details));
  for (const Option& option : command.options) {
    if (!option.name) continue;
    const QString name = OptionName(option);
    text += QLatin1Char('\n') +
            HelpRow(option.argument ? name + QLatin1Char(' ') + QLatin1String(option.argument) : name, option.help);
  }
  return text;
}

int Misused(Output& output, const QString& why) {
  Complain(output, why);
  output.err += "vorel-snapshot --help lists the commands.\n";
  return kExitUnreadable;
}

/// The first option, or standard input, that stands more often than it can; else nothing.
QString GivenTwice(const Command& command, const QCommandLineParser& parser) {
  const QStringList given = parser.optionNames();
  for (const Option& option : command.options) {
    if (option.name && !option.repeats && given.count(QLatin1String(option.name)) > 1) return OptionName(option);
  }
  return parser.positionalArguments().count(kStandardInput) > 1 ? QString(kStandardInput) : QString();
}

int RunCommand(const Command& command, const QStringList& arguments, Output& output) {
  QCommandLineParser parser;
  for (const Option& option : command.options) {
    if (option.name) parser.addOption({QLatin1String(option.name), {}, QLatin1String(option.argument)});
  }
  const QString help = QStringLiteral("help");
  parser.addOption({{QStringLiteral("h"), help}, {}});
  const QString name = QLatin1String(command.name);
  // the parser takes the first argument for the program's name
  if (!parser.parse(arguments)) return Misused(output, name + QStringLiteral(": ") + parser.errorText());
  if (parser.isSet(help)) {
    output.out += CommandHelp(command).toUtf8();
    return kExitFine;
  }
  const QString twice = GivenTwice(command, parser);
  if (!twice.isEmpty()) return Misused(output, QStringLiteral("%1: %2 is given twice").arg(name, twice));
  const QStringList files = parser.positionalArguments();
  if (files.size() < command.leastFiles || files.size() > command.mostFiles) {
    return Misused(output, QStringLiteral("usage: %1 %2").arg(name, QLatin1String(command.arguments)));
  }
  Call call{parser, files, output};
  return command.run(call);
}

}  // namespace

bool NeedsPainting(const QStringList& arguments) {
  return arguments.value(0) == QLatin1String("plot") || arguments.value(0) == QLatin1String("trend");
}

int Run(const QStringList& arguments, Output& output) {
  const QString first = arguments.value(0);
  const bool version = first == QLatin1String("--version");
  if (version || first == QLatin1String("--help") || first == QLatin1String("-h")) {
    output.out += version ? QByteArray(kVersion) : ProgramHelp().toUtf8();
    return kExitFine;
  }
  for (const Command& command : kCommands) {
    if (first == QLatin1String(command.name)) return RunCommand(command, arguments, output);
  }
  return Misused(output,
                 first.isEmpty() ? QStringLiteral("a command is missing") : QStringLiteral("no command ") + first);
}

}  // namespace tarnwell::vorel_snapshot
