#include "tools/vorel-line/readers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>

#include "link/frame_codec.h"
#include "tools/shared/csv.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/events.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/record_reader.h"
#include "tools/vorel-line/requests.h"
#include "tools/vorel-line/turns.h"
#include "tools/vorel-line/words.h"

namespace tarnwell::vorel_line {

namespace {

int Code(Exit read) {
  const bool printed = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  if (!printed) Complain("standard output took not all");
  return printed ? read : kExitUnusable;
}

std::string Milliseconds(std::int64_t microseconds) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f ms", static_cast<double>(microseconds) / 1000.0);
  return text.data();
}

/// Lines of `show`.
class Transcript {
 public:
  void Print(const Turn& turn) {
    const auto move = m_addresses.Take(turn);
    if (move) m_words[move->second] = Words(m_words[move->first]);
    const std::string meaning = Meaning(turn);
    if (move) m_words.erase(move->first);
    std::string line = TimeText(turn.at, turn.offset) + Sign(turn.what) + Readable(turn.bytes);
    if (!meaning.empty()) line += std::string(turn.bytes.empty() ? "" : "  ") + meaning;
    // What a setting's copy was is known only by what followed it.
    if (turn.at < m_latest) line += ", as what followed it tells";
    m_latest = std::max(m_latest, turn.at);
    std::printf("%s\n", line.c_str());
  }

 private:
  static const char* Sign(What what) {
    if (what == What::kAsked || what == What::kNoise) return " > ";
    return what == What::kAnswer || what == What::kLate || what == What::kEcho ? " < " : " - ";
  }

  std::string Meaning(const Turn& turn) {
    switch (turn.what) {
      case What::kAsked: {
        const std::string what = KindOf(turn.request) == RequestKind::kQuery ? "? " : "! ";
        return what + m_words[turn.address].Asks(turn.request) +
               (turn.attempt > 1 ? ", try " + std::to_string(turn.attempt) : "");
      }
      case What::kAnswer:
        return Answer(turn);
      case What::kSilence:
        return "no answer to " + Readable(turn.request) + (turn.last ? ", given up" : "");
      case What::kDropped:
        return "no answer to " + Readable(turn.request) + " was awaited, or recorded";
      case What::kLate:
        return "late: nobody waits for it";
      case What::kEcho:
        return "echo of the line";
      case What::kNoise:
        return "no whole request";
      case What::kNote:
        Learn(turn);
        return {};
    }
    return {};
  }

  void Learn(const Turn& turn) {
    const std::string frame = KnownFrame(turn);
    if (!frame.empty()) m_words[turn.address].Learn(link::ReplyPayload(frame));
  }

  std::string Answer(const Turn& turn) {
    const std::string time = " [" + Milliseconds(turn.took) + "]";
    if (turn.fault != Fault::kNone) {
      return "bad: " + std::string(FaultText(turn.fault)) + (turn.last ? ", given up" : "") + time;
    }
    Words& words = m_words[turn.address];
    const std::string_view reply = link::ReplyPayload(turn.bytes);
    words.Learn(reply);
    return words.Meaning(reply) + time;
  }

  std::map<char, Words> m_words;
  AddressFollower m_addresses;
  std::int64_t m_latest = 0;  ///< of the lines so far
};

void PrintRaw(const Record& record) {
  const char* sign = record.kind == Kind::kConsole ? " > " : record.kind == Kind::kDevice ? " < " : " - ";
  std::string line = TimeText(record.at, record.offset) + sign;
  if (record.kind == Kind::kNote) {
    line += Readable(record.bytes);
  } else {
    for (const char byte : record.bytes) {
      std::array<char, 8> code{};
      std::snprintf(code.data(), code.size(), "%02x ", static_cast<unsigned char>(byte));
      line += code.data();
    }
    line += " " + Readable(record.bytes);
  }
  std::printf("%s\n", line.c_str());
}

void PrintEvent(const Event& event, std::string_view format) {
  const std::string time = TimeText(event.at, event.offset);
  const std::string address = event.address ? std::to_string(*event.address) : "";
  const std::string request = Readable(event.request), reply = Readable(event.reply);
  if (format == "text") {
    std::printf("%s  %2s  %-9s  %s\n", time.c_str(), event.address ? address.c_str() : "-", event.type.c_str(),
                event.text.c_str());
  } else if (format == "csv") {
    std::printf("%s,%s,%s,%s,%s,%s\r\n", time.c_str(), address.c_str(), event.type.c_str(),
                tools::CsvCell(event.text).c_str(), tools::CsvCell(request).c_str(), tools::CsvCell(reply).c_str());
  } else {
    std::printf(R"({"time":"%s","utc":"%s","address":%s,"type":"%s","text":%s,"request":%s,"reply":%s})"
                "\n",
                time.c_str(), UtcText(event.at).c_str(), event.address ? address.c_str() : "null", event.type.c_str(),
                JsonText(event.text).c_str(), JsonText(request).c_str(), JsonText(reply).c_str());
  }
}

struct Counts {
  std::uint64_t transactions = 0;
  std::uint64_t tries = 0;
  std::array<std::uint64_t, kFaults> faults{};
  std::vector<std::int64_t> times;

  void Take(const Turn& turn) {
    if (turn.what == What::kAsked) {
      ++tries;
      if (turn.attempt == 1) ++transactions;
    }
    if (turn.what != What::kAnswer && turn.what != What::kSilence) return;
    ++faults[static_cast<std::size_t>(turn.fault)];
    if (turn.fault == Fault::kNone) times.push_back(turn.took);
  }

  void Print(const std::string& name) {
    std::sort(times.begin(), times.end());
    std::string line = name;
    line.resize(std::max<std::size_t>(line.size(), 9), ' ');
    const auto share = [this](double part) {
      // The least value that this part of all reaches at most.
      const double rank = std::ceil(part * static_cast<double>(times.size()));
      return times.empty() ? 0.0 : static_cast<double>(times[static_cast<std::size_t>(rank) - 1]) / 1e3;
    };
    std::printf("%s %12llu %9llu %9llu %9.1f %9.1f %9.1f", line.c_str(), static_cast<unsigned long long>(transactions),
                static_cast<unsigned long long>(tries), static_cast<unsigned long long>(faults[0]), share(0.5),
                share(0.99), share(1.0));
    for (std::size_t i = 1; i < kFaults; ++i) {
      if (faults[i] == 0) continue;
      std::printf("  %llu %s", static_cast<unsigned long long>(faults[i]),
                  std::string(FaultText(static_cast<Fault>(i))).c_str());
    }
    std::printf("\n");
  }
};

}  // namespace

int PrintShow(const std::vector<std::string>& files, bool raw, bool follow) {
  if (raw) return Code(ReadFiles(files, follow, PrintRaw));
  Transcript transcript;
  Turns turns([&](const Turn& turn) { transcript.Print(turn); });
  const Exit read = ReadFiles(files, follow, [&](const Record& record) { turns.Take(record); });
  turns.End();
  return Code(read);
}

int PrintEvents(const std::vector<std::string>& files, std::string_view format, bool follow) {
  if (format == "csv") std::printf("time,address,type,text,request,reply\r\n");
  Events events([format](const Event& event) { PrintEvent(event, format); });
  Turns turns([&](const Turn& turn) { events.Take(turn); });
  const Exit read = ReadFiles(files, follow, [&](const Record& record) { turns.Take(record); });
  turns.End();
  events.End();
  return Code(read);
}

int PrintStats(const std::vector<std::string>& files) {
  std::map<std::string, Counts> counts;
  Counts all;
  Turns turns([&](const Turn& turn) {
    if (turn.request.empty()) return;
    counts[GroupOf(turn.request)].Take(turn);
    all.Take(turn);
  });
  const Exit read = ReadFiles(files, false, [&](const Record& record) { turns.Take(record); });
  turns.End();
  std::printf("request   transactions     tries  answered  median ms   99 %% ms    max ms  failed tries\n");
  for (auto& [name, row] : counts) row.Print(name);
  all.Print("all");
  return Code(read);
}

}  // namespace tarnwell::vorel_line
