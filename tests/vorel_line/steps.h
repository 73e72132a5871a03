#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "support/scripted_port.h"
#include "tools/vorel-line/record_file.h"
#include "tools/vorel-line/record_reader.h"

namespace tarnwell::vorel_line {

using test::Framed;

inline constexpr std::int64_t kStart = 1'700'000'000'000'000;

/// A session in short: seconds, ">" or "<" or "-", and the bytes.
struct Step {
  double at;
  char side;
  std::string bytes;
};

/// "1>G? 1.05<G=0 2<{A 3-device_gone": what has no brace is a frame of address 1, or a note.
inline std::vector<Step> StepsOf(const std::string& text) {
  std::vector<Step> steps;
  std::istringstream words(text);
  for (Step step; words >> step.at >> step.side >> step.bytes; steps.push_back(step)) {
    if (step.side == '-') std::replace(step.bytes.begin(), step.bytes.end(), '_', ' ');
    if (step.side != '-' && step.bytes.find_first_of("{}") == std::string::npos) step.bytes = Framed(step.bytes, 1);
  }
  return steps;
}

inline Record RecordOf(const Step& step) {
  const Kind kind = step.side == '>' ? Kind::kConsole : step.side == '<' ? Kind::kDevice : Kind::kNote;
  return {kind, kStart + std::llround(step.at * 1e6), 0, step.bytes, 60};
}

template <class Reader>
void Feed(Reader& reader, const std::vector<Step>& steps) {
  for (const Step& step : steps) reader.Take(RecordOf(step));
  reader.End();
}

/// A question and its answer, which comes too late for an echo.
inline void Ask(std::vector<Step>& steps, double at, const char* request, const char* reply, std::uint8_t address = 1) {
  steps.push_back({at, '>', Framed(request, address)});
  steps.push_back({at + .05, '<', Framed(reply, address)});
}

/// Replies to their queries, so many seconds apart; "!S=X" is what a command has for an answer.
inline void AskAll(std::vector<Step>& steps, double apart, const char* replies, std::uint8_t address = 1) {
  std::istringstream words(replies);
  for (std::string reply; words >> reply;) {
    const bool isCommand = reply[0] == '!';
    if (isCommand) reply.erase(0, 1);
    const std::string request = isCommand ? reply : reply.substr(0, reply.find('=')) + "?";
    Ask(steps, steps.back().at + apart, request.c_str(), reply.c_str(), address);
  }
}

using Texts = std::vector<std::string>;

/// Recordings in a folder of their own.
class Files : public testing::Test {
 protected:
  std::string Path(const char* ending = "") const {
    return m_folder.filePath(QStringLiteral("a.rec")).toStdString() + ending;
  }
  qint64 Size(const char* ending = "") const { return QFile(QString::fromStdString(Path(ending))).size(); }

  /// What the file couldn't be opened for, else nothing.
  std::string Write(const std::vector<Step>& steps, const char* ending = "", FileRules rules = {}) {
    rules.path = Path(ending);
    RecordFile file(rules);
    const std::string error = file.Open();
    for (const Step& step : steps) file.Put(RecordOf(step));
    file.Close();
    return error;
  }

  void Append(const QByteArray& bytes, const char* ending = "") {
    QFile file(QString::fromStdString(Path(ending)));
    ASSERT_TRUE(file.open(QIODevice::Append) && file.write(bytes) == bytes.size());
  }

  Texts Read(const char* ending = "", Exit expected = kExitFine) {
    Texts texts;
    const auto note = [&](const Record& record) { texts.push_back(record.bytes); };
    EXPECT_EQ(ReadFiles({Path(ending)}, false, note), expected) << ending;
    return texts;
  }

  QTemporaryDir m_folder;
};

}  // namespace tarnwell::vorel_line
