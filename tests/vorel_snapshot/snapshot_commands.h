#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "snapshot/snapshot_line.h"
#include "support/snapshot_sample.h"
#include "tools/vorel-snapshot/commands.h"

namespace tarnwell::test {

/// The place of a character in a file whose lines are whole, both from 1.
constexpr std::size_t At(std::size_t line, std::size_t column) { return (line - 1) * 82 + column - 1; }

class SnapshotCommands : public testing::Test {
 protected:
  /// The exit code; "_" is a blank within a word; what is printed stands in m_out and m_err, the folder's name taken
  /// out.
  int Run(const std::string& command) {
    vorel_snapshot::Output output;
    QStringList arguments = QString::fromStdString(command).split(QLatin1Char(' '));
    for (QString& word : arguments) {
      word.replace(QLatin1Char('_'), QLatin1Char(' '));
      if (word.contains(QLatin1Char('.')) && !word.front().isDigit()) word = m_folder.filePath(word);
    }
    const int code = vorel_snapshot::Run(arguments, output);
    m_out = output.out.replace((m_folder.path() + QLatin1Char('/')).toUtf8(), "").toStdString();
    m_err = output.err.replace((m_folder.path() + QLatin1Char('/')).toUtf8(), "").toStdString();
    return code;
  }

  /// The exit status of a command in the folder.
  int Shell(const std::string& command) {
    const int status = std::system(("cd " + m_folder.path().toStdString() + " && " + command).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  void Write(const char* name, const std::string& bytes) {
    QFile file(m_folder.filePath(QLatin1String(name)));
    QDir().mkpath(QFileInfo(file).path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes.data(), static_cast<qint64>(bytes.size()));
  }

  QByteArray Load(const char* name) {
    QFile file(m_folder.filePath(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  void ExpectLines(std::initializer_list<const char*> lines) {
    for (const std::string line : lines) EXPECT_NE(m_out.find("\n" + line + "\n"), std::string::npos) << line << m_out;
  }

  /// The amplifier's file with other texts in some lines, by their numbers.
  static std::string Changed(const std::vector<std::pair<std::size_t, std::string>>& changes) {
    std::string file = SampleFile("amplifier.txt");
    for (const auto& [line, text] : changes) file.replace(At(line, 1), 80, snapshot::FormatSnapshotLine(text));
    return file;
  }

  QTemporaryDir m_folder;
  std::string m_out;
  std::string m_err;
};

}  // namespace tarnwell::test
