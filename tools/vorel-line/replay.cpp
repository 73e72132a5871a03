#include "tools/vorel-line/replay.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <set>

#include "link/frame_codec.h"
#include "sim/ending.h"
#include "sim/pty.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/record_reader.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::size_t kLongestFrame = 64;

std::int64_t Now() {
  return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

/// Answers requests as the script has it.
class Player {
 public:
  Player(Script& script, sim::Line& line, bool fast) : m_script(script), m_line(line), m_fast(fast) {}

  void Run(const sigset_t& whileWaiting) {
    while (!sim::EndAsked()) {
      pollfd polled{m_line.Descriptor(), POLLIN, 0};
      const std::int64_t left = m_due.empty() ? 0 : std::max<std::int64_t>(m_due.begin()->first - Now(), 0);
      const timespec wait{left / 1'000'000, left % 1'000'000 * 1000};
      if (ppoll(&polled, 1, m_due.empty() ? nullptr : &wait, &whileWaiting) > 0) Read();
      for (; !m_due.empty() && m_due.begin()->first <= Now(); m_due.erase(m_due.begin())) {
        const std::string& bytes = m_due.begin()->second;
        if (::write(m_line.Descriptor(), bytes.data(), bytes.size()) < 0)
          vorel_line::Complain("the console took no more; bytes are lost");
      }
    }
  }

 private:
  void Read() {
    std::array<char, 512> buffer;
    const ssize_t count = ::read(m_line.Descriptor(), buffer.data(), buffer.size());
    m_line.LiftClaim();
    for (ssize_t i = 0; i < count; ++i) {
      const char byte = buffer[static_cast<std::size_t>(i)];
      if (byte == link::kOpeningBrace || m_frame.size() > kLongestFrame) m_frame.clear();
      m_frame += byte;
      if (byte == link::kClosingBrace) Answer();
    }
  }

  void Answer() {
    const auto reply = m_script.Next(m_frame);
    if (!reply || reply->last) Complain(!reply ? "not in the recording: " : "asked more often than recorded: ");
    m_frame.clear();
    if (!reply) return;
    const std::int64_t now = Now();
    if (m_fast && !reply->taken.empty()) m_due.emplace(now, reply->taken);
    if (m_fast) return;
    for (const Script::Piece& piece : reply->pieces) Play(now + piece.after, piece);
  }

  /// Its last byte, a closing brace, comes when it came.
  void Play(std::int64_t at, const Script::Piece& piece) {
    const std::size_t first = piece.lasted > 0 ? piece.bytes.size() - 1 : piece.bytes.size();
    m_due.emplace(at, piece.bytes.substr(0, first));
    if (first < piece.bytes.size()) m_due.emplace(at + piece.lasted, piece.bytes.substr(first));
  }

  /// Once a request: a console that polls would fill the terminal.
  void Complain(const char* what) {
    if (!m_told.insert(m_frame).second) return;
    std::printf("%s%s\n", what, Readable(m_frame).c_str());
    std::fflush(stdout);
  }

  Script& m_script;
  sim::Line& m_line;
  bool m_fast;
  std::string m_frame;
  std::multimap<std::int64_t, std::string> m_due;  // what is to be sent, by its moment
  std::set<std::string> m_told;
};

}  // namespace

void Script::Take(const Record& record) {
  m_turns.Take(record);
  if (record.kind != Kind::kDevice || m_frame.empty()) return;
  m_replies[m_frame].back().pieces.push_back(
      {std::max<std::int64_t>(record.at - m_askedAt, 0), record.lasted, record.bytes});
  m_settled = true;
}

void Script::Take(const Turn& turn) {
  switch (turn.what) {
    case What::kAsked:
      DropUnsettled();
      m_frame = turn.bytes;
      m_askedAt = turn.at;
      m_settled = false;
      m_replies[m_frame].push_back({});
      return;
    case What::kAnswer:
    case What::kEcho:
      // What a setting's copy was is told when the query behind it has been answered.
      m_replies[link::BuildRequestFrame(turn.request, static_cast<std::uint8_t>(turn.address - link::AddressByte(0)))]
          .back()
          .taken += turn.bytes;
      return;
    case What::kSilence:
      m_settled = true;
      return;
    case What::kDropped:
    case What::kLate:
    case What::kNoise:
    case What::kNote:
      return;
  }
}

void Script::End() {
  m_turns.End();
  DropUnsettled();
}

void Script::DropUnsettled() {
  if (m_frame.empty() || m_settled) return;
  m_replies[m_frame].pop_back();
  if (m_replies[m_frame].empty()) m_replies.erase(m_frame);
}

std::optional<Script::Reply> Script::Next(const std::string& frame) {
  const auto found = m_replies.find(frame);
  if (found == m_replies.end()) return std::nullopt;
  std::deque<Reply>& replies = found->second;
  Reply reply = replies.front();
  if (replies.size() > 1) {
    replies.pop_front();
  } else {
    // The next time it will be one too many.
    replies.front().last = true;
  }
  return reply;
}

std::vector<int> Script::Addresses() const {
  // The keys are in order, and an address is a frame's first byte behind its brace.
  std::vector<int> addresses;
  for (const auto& [frame, replies] : m_replies) {
    const int address = frame[1] - link::AddressByte(0);
    const auto answers = [](const Reply& reply) { return !reply.pieces.empty(); };
    if (std::none_of(replies.begin(), replies.end(), answers)) continue;
    if (addresses.empty() || addresses.back() != address) addresses.push_back(address);
  }
  return addresses;
}

namespace {

/// A console that is set to another one gets no answer.
std::string AddressesText(const std::vector<int>& addresses) {
  std::string text;
  for (const int address : addresses) text += (text.empty() ? "" : ", ") + std::to_string(address);
  return (addresses.size() > 1 ? "recorded addresses: " : "recorded address: ") + text;
}

}  // namespace

int ReplayFiles(const std::vector<std::string>& files, const std::string& link, bool fast) {
  Script script;
  const Exit read = ReadFiles(files, false, [&](const Record& record) { script.Take(record); });
  script.End();
  if (script.Empty()) return Complain("no request to answer"), kExitUnusable;
  const sigset_t whileWaiting = sim::PrepareEnding();
  const auto line = sim::MakePty(link, sim::OldLink::kPutBack);
  const std::string error = line->Open();
  if (!error.empty()) return Complain(error), kExitUnusable;
  std::printf("%s\n%s\n", line->Path().c_str(), AddressesText(script.Addresses()).c_str());
  std::fflush(stdout);
  Player(script, *line, fast).Run(whileWaiting);
  line->Close();
  return read;
}

}  // namespace tarnwell::vorel_line
