#include <sys/stat.h>
#include <unistd.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <filesystem>

#include "support/file_limit.h"
#include "tools/shared/files.h"
#include "vorel_snapshot/snapshot_commands.h"

namespace tarnwell::test {
namespace {

TEST_F(SnapshotCommands, VerifyTellsWhatIsDamagedByLineAndColumn) {
  const std::string whole = SampleFile("amplifier.txt");
  const auto all = [&whole](const char* before, const char* after) {
    return QByteArray::fromStdString(whole).replace(before, after).toStdString();
  };
  std::string utf16;
  for (const char c : whole) utf16 += {c, '\0'};
  const auto with = [](std::size_t line, const char* text) { return Changed({{line, text}}); };
  const auto replaced = [&](std::size_t at, std::size_t length, const std::string& bytes) {
    return std::string(whole).replace(at, length, bytes);
  };
  const struct {
    std::string file;
    const char* told;
  } cases[] = {
      {whole, "whole, amplifier, 57 lines"},
      {Changed({{13, "[rf level] #ERR"}, {46, "[rf level table (dBm,V)] (#ERR, #ERR), (D, D)"}}),
       "whole, 2 values not read, amplifier, 57 lines"},
      {"", "the file is empty"},
      {std::string(4674, '\0'), "nothing but zeros is in the file"},
      {all("\r\n", "\r"), "all lines end in CR rather than CR LF: a converted file"},
      {all("\n", "\r\n"), "all lines end in CR CR LF rather than CR LF: a converted file"},
      {"\xFF\xFE" + utf16, "the characters are UTF-16 rather than windows-1252: a converted file"},
      {std::string("\0\1\2\xFF\r\n\n\r", 8), "not a snapshot: no line of one is in it"},
      {all("\r\n", "\n"), "all lines end in LF rather than CR LF: a converted file"},
      {all("\xB0", "\xC2\xB0"), "the characters are UTF-8 rather than windows-1252: a converted file"},
      {'\0' + utf16.substr(0, utf16.size() - 1),
       "the characters are UTF-16 rather than windows-1252: a converted file"},
      {"\xEF\xBB\xBF" + SampleFile("controller.txt"),
       "the characters are UTF-8 rather than windows-1252: a converted file"},
      {whole.substr(0, At(50, 9)) + SampleFile("controller.txt"),
       "2 snapshots in one file, from lines 1, 50: only the first is read|49: [pin diode table] has 3 lines rather "
       "than 11|50: column 81: too long: 88 characters, a line has 80|50: column 1: no label that can stand here|50: "
       "[software] is missing ahead of this line"},
      {whole.substr(0, At(56, 33)),
       "56: column 33: too short: 32 characters, a line has 80|56: no line end: the file stops in this line|56: [pin "
       "diode table] has 10 lines rather than 11|56: column 32: no point in brackets"},
      {whole.substr(0, At(20, 1)), "19: truncated: [temp amp2] and what follows it is missing behind this line"},
      {whole.substr(0, At(31, 1)) + "#ERROR: FILE MAY BE INCOMPLETE\r\n",
       "31: the console gave up here: #ERROR: FILE MAY BE INCOMPLETE|31: truncated: [pin diodes] and what follows it "
       "is missing behind this line"},
      {replaced(At(13, 6), 0, "Q"),
       "13: column 81: too long: 81 characters, a line has 80|13: column 6: the label [rf level] is damaged"},
      {replaced(At(13, 6), 1, ""),
       "13: column 80: too short: 79 characters, a line has 80|13: column 6: the label [rf level] is damaged"},
      {replaced(At(13, 80), 1, "\x7F"),
       "13: column 80: control character, code 127|13: check character code 127, for this text \"C\""},
      {replaced(At(8, 1), 82, ""), "8: [temp comp] is missing ahead of this line"},
      {replaced(At(8, 1), 0, whole.substr(At(8, 1), 82)), "9: repeats [temp comp] of line 8"},
      {with(4, "[sspa] 240W    x"), "4: column 16: text behind the padding"},
      {with(7, "[operating state] ONWARD"), "7: column 21: none of the words that stand here"},
      {with(3, "[time dd/mm/yyyy hh:mm:ss] 29/02/2007 09:26:41"), "3: column 28: no day of the calendar"},
      {with(5, "[address] 32"), "5: column 11: no address from 0 to 31"},
      {with(14, "[reflected rf level] #NA"), "14: column 22: no number"},
      {with(22, "[latched alarms] OVER_TEMP_AMP1, RF_LEVEL_LOW, AUXILIARY"),
       "22: column 34: no alarm that can stand here"},
      {with(22, "[latched alarms] OVER_TEMP_AMP1, AUXILIARY"), "22: 2 alarms rather than 3"},
      {with(36, "[rf temp comp points (\xB0\x43,dB)] (-20, 1.5), (25, 0)"), "36: 2 points rather than 3"},
      {with(37, "[sys temp comp points (\xB0\x43,dB)] (-40, 2.500000000), (-20, 1.500000000), (0, .5000000)"),
       "whole, amplifier, 57 lines"},
      {with(40, "[rf level table (dBm,V)] (D, 0.80), (26, 1.01), (27, 1.22), (28, 1.43)"),
       "40: column 34: a value at a point that is disabled"},
      {with(47, "[pin diode table (dB,DAC)] (0, 12), (2, 18), (2, 24), (3, 30)"), "47: point 2 where 1 belongs"},
  };
  const QRegularExpression cured(QStringLiteral(", cured by: (.*)")), place(QStringLiteral("a\\.txt: ?"));
  for (const auto& row : cases) {
    Write("a.txt", row.file);
    const int code = Run("verify a.txt");
    const std::string faults = m_out.substr(0, std::min(m_out.find("\na.txt: damaged"), m_out.rfind("\n1 file: ")));
    std::string told = QString::fromStdString(faults).remove(cured).remove(place).toStdString();
    std::replace(told.begin(), told.end(), '\n', '|');
    EXPECT_EQ(told, row.told);
    EXPECT_EQ(code, told.find("whole") != std::string::npos ? 0 : 1) << told;
    const std::string cure = cured.match(QString::fromStdString(faults)).captured(1).toStdString();
    if (cure.empty()) continue;
    EXPECT_EQ(Shell("cp a.txt FILE && " + cure + " && mv NEW cured.txt"), 0) << faults;
    EXPECT_EQ(Run("verify cured.txt"), 0) << faults;
  }
}

TEST_F(SnapshotCommands, TakeFoldersAndKnowFilesByWhatIsInThem) {
  Write("f.d/b", Changed({{3, "[time dd/mm/yyyy hh:mm:ss] 02/01/2008 00:00:00"}, {5, "[address] 10"}}));
  Write("f.d/a.txt", SampleFile("amplifier.txt"));
  Write("f.d/c", SampleFile("controller.txt").substr(0, At(16, 1)));
  Write("f.d/picture.png", std::string(100, '\xFF'));
  Write("f.d/big", std::string(70'000, '['));
  Write("f.d/more/d", SampleFile("controller.txt"));
  const std::string pipe = m_folder.filePath(QStringLiteral("f.d/pipe")).toStdString();
  ASSERT_TRUE(mkfifo(pipe.c_str(), 0600) == 0 && symlink("..", (pipe + "link").c_str()) == 0);
  EXPECT_EQ(Run("verify --quiet --recursive f.d"), 1);
  EXPECT_EQ(m_out,
            "f.d/c:15: truncated: [path b] and what follows it is missing behind this line\nf.d/c: damaged, 1 told\n"
            "6 files: 3 whole, 1 damaged, 2 not a snapshot\n");
  const std::string a =
      "2007-03-14 09:26:41  240W C-BAND  1   0264C-01 V6.0  rack 2 after service  whole    f.d/a.txt\n";
  const std::string b = "2008-01-02 00:00:00  240W C-BAND  10  0264C-01 V6.0  rack 2 after service  whole    f.d/b\n";
  const std::string c = "2007-11-02 16:05:12  7316         4   0264C-01 V6.0  hub B weekly check    damaged  f.d/c\n";
  for (const auto& [options, expected] :
       {std::pair{"", a + c + b}, {" --by state", c + a + b}, {" --by file", a + b + c}}) {
    EXPECT_EQ(Run(std::string("list f.d") + options), 1);
    EXPECT_EQ(m_out, expected) << options;
    EXPECT_EQ(m_err, "f.d/c:15: truncated: [path b] and what follows it is missing behind this line\n");
  }
  EXPECT_EQ(Run("trend f.d -o t.csv"), 1);
  EXPECT_EQ(m_err.find("f.d/c:15: truncated"), 0) << m_err;
  ASSERT_TRUE(QFile::remove(m_folder.filePath(QStringLiteral("f.d/c"))));
  EXPECT_EQ(Run("verify f.d"), 0) << "a picture beside them is no fault";
  EXPECT_EQ(Run("verify --quiet --strict f.d"), 1);
  EXPECT_EQ(m_out,
            "f.d/big: not a snapshot: larger than any\nf.d/picture.png: not a snapshot: no line of one is in it\n"
            "4 files: 2 whole, 0 damaged, 2 not a snapshot\n");
  Write("f.d/empty", "");
  EXPECT_EQ(Run("verify --quiet f.d"), 1) << "it may be what is left of a snapshot";
  Write("f.d/empty", std::string(4674, '\0'));
  Write("f.d/grown", SampleFile("amplifier.txt") + std::string(70'000, ' '));
  EXPECT_EQ(Run("verify --quiet f.d"), 1);
  EXPECT_EQ(m_out.substr(0, m_out.find("f.d/grown:58")),
            "f.d/empty: nothing but zeros is in the file\n"
            "f.d/grown: larger than any snapshot: its first 64 KiB are read\n");
  ExpectLines({"6 files: 2 whole, 2 damaged, 2 not a snapshot"});
}

TEST_F(SnapshotCommands, EndWithTheirCodesAndSayWhyOnStandardError) {
  Write("a.txt", SampleFile("amplifier.txt"));
  Write("c.txt", SampleFile("controller.txt"));
  QDir(m_folder.path()).mkdir(QStringLiteral("e.d"));
  Write("zeros.txt", std::string(80, '\0'));
  const struct {
    const char* command;
    int code;
    const char* err;
  } cases[] = {
      {"verify a.txt gone.txt c.txt", 2, "vorel-snapshot: gone.txt: No such file or directory\n"},
      {"verify e.d", 2, "vorel-snapshot: e.d: no snapshot is in it\n"},
      {"verify --quiet a.txt --quiet", 2, "vorel-snapshot: verify: --quiet is given twice\n"},
      {"diff - -", 2, "vorel-snapshot: diff: - is given twice\n"},
      {"trend a.txt --of rf_level --of rf_max -o t.csv", 0, ""},
      {"diff a.txt zeros.txt", 4, "zeros.txt: nothing but zeros is in the file\n"},
      {"export a.txt --json -o -", 2, "vorel-snapshot: -: is no file; one of that name is ./-\n"},
      {"export a.txt", 2, "vorel-snapshot: export: give either --json or --csv\n"},
      {"plot c.txt -o p.svg", 3, "vorel-snapshot: c.txt: a redundancy controller has no calibration tables\n"},
      {"plot a.txt -o p.gif", 2, "vorel-snapshot: plot: -o takes a file that ends in .svg or .png\n"},
      {"diff a.txt", 2, "vorel-snapshot: usage: diff [--readings] BEFORE AFTER\n"},
      {"verify ", 2, "vorel-snapshot: a file's name is empty\n"},
      {"look", 2, "vorel-snapshot: no command look\n"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Run(row.command), row.code) << row.command;
    EXPECT_EQ(m_err.substr(0, m_err.find('\n') + 1), row.err) << row.command;
  }
}

TEST_F(SnapshotCommands, WriteWholeFilesOrNoneAndSayWhy) {
  Write("a.txt", SampleFile("amplifier.txt"));
  Write("old.csv", "old");
  const auto path = [&](const char* name) { return m_folder.filePath(QLatin1String(name)).toStdString(); };
  ASSERT_EQ(mkfifo(path("pipe.svg").c_str(), 0600), 0);
  ASSERT_EQ(symlink("pipe.svg", path("link.csv").c_str()), 0);
  ASSERT_EQ(symlink("nowhere", path("gone.csv").c_str()), 0);
  Write("f.d/w.csv", SampleFile("amplifier.txt"));
  Write("s.csv", SampleFile("controller.txt").substr(At(9, 1)) + std::string(70'000, ' '));
  Write("r.csv", "vorel-line recording 1\n\1");
  for (const char* target :
       {"plot a.txt -o pipe.svg", "export --csv a.txt -o link.csv", "export --csv a.txt -o gone.csv",
        "export --csv a.txt -o ./a.txt", "trend f.d -o f.d/../f.d/w.csv", "export --csv a.txt -o s.csv",
        "export --csv old.csv -o old.csv", "trend a.txt -o r.csv"}) {
    EXPECT_EQ(Run(target), 2) << target;
    EXPECT_NE(m_err.find(": not replaced\n"), std::string::npos) << m_err;
  }
  struct stat pipe {};
  EXPECT_TRUE(stat(path("link.csv").c_str(), &pipe) == 0 && S_ISFIFO(pipe.st_mode));
  EXPECT_EQ(Run("verify a.txt f.d/w.csv"), 0);
  EXPECT_EQ(Run("trend f.d -o f.d/t.csv") + Run("trend f.d -o f.d/t.csv"), 0);
  {
    const FileLimit full(4096);
    EXPECT_EQ(Run("export --csv a.txt -o old.csv"), 2);
    EXPECT_EQ(m_err, "vorel-snapshot: old.csv: File too large\n");
  }
  EXPECT_EQ(QFileInfo(m_folder.filePath(QStringLiteral("old.csv"))).size(), 3);
}

TEST_F(SnapshotCommands, OpenNamesInAnyEncodingAndShowThemOnOneLine) {
  Write("a.txt", SampleFile("amplifier.txt"));
  const QByteArray name = m_folder.path().toUtf8() + "/S\xFC\x64\n\xC3\xBC.txt";
  std::filesystem::copy_file(m_folder.filePath(QStringLiteral("a.txt")).toStdString(), name.toStdString());
  vorel_snapshot::Output output;
  EXPECT_EQ(vorel_snapshot::Run({QStringLiteral("verify"), tools::NameFromBytes(name)}, output), 0);
  EXPECT_TRUE(output.out.contains("/S\uFFFDd\uFFFD")) << output.out.toStdString();
  EXPECT_EQ(output.out.count('\n'), 2);
  std::filesystem::remove(name.toStdString());  // the folder's own cleaning doesn't see it
}

TEST_F(SnapshotCommands, TheProgramReadsStandardInputAndTellsOfAFileAtItsLimit) {
  Write("a.txt", SampleFile("amplifier.txt"));
  EXPECT_EQ(Shell(VOREL_SNAPSHOT " verify - < a.txt > told.txt"), 0);
  EXPECT_EQ(Load("told.txt").left(49), "standard input: whole, amplifier, 57 lines\n1 file");
  EXPECT_EQ(Shell(VOREL_SNAPSHOT " list - <&- 2> told.txt"), 2);
  EXPECT_EQ(Load("told.txt"), "vorel-snapshot: standard input: Bad file descriptor\n");
  EXPECT_EQ(Shell("ulimit -f 1; " VOREL_SNAPSHOT " export --json a.txt > t.json 2> told.txt"), 2);
  EXPECT_EQ(Load("told.txt"), "vorel-snapshot: standard output took not all: File too large\n");
}

}  // namespace
}  // namespace tarnwell::test
