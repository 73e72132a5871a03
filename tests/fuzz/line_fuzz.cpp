#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "fuzz.h"
#include "tools/vorel-line/events.h"
#include "tools/vorel-line/recording.h"
#include "tools/vorel-line/requests.h"

namespace {

using namespace tarnwell;
using namespace tarnwell::vorel_line;

/// All records, those behind damage as well.
std::vector<Record> Read(std::string_view file, std::size_t piece, Decoder::Result& end) {
  Decoder decoder;
  std::vector<Record> records;
  for (std::size_t at = 0; at < file.size(); at += piece) {
    decoder.Feed(file.substr(at, piece));
    for (Record record; (end = decoder.Next(record)) != Decoder::Result::kEnd;) {
      if (end == Decoder::Result::kDamaged && decoder.WholeBytes() == 0) return records;
      if (end == Decoder::Result::kRecord) records.push_back(record);
      if (end == Decoder::Result::kDamaged) decoder.PassOver();
    }
  }
  return records;
}

/// A file says the same in one piece and byte by byte.
void RequireSameInPieces(std::string_view file) {
  Decoder::Result wholeEnd = Decoder::Result::kEnd, pieceEnd = wholeEnd;
  const auto whole = Read(file, file.size() + 1, wholeEnd), pieces = Read(file, 1, pieceEnd);
  const auto isSame = [](const Record& a, const Record& b) {
    return std::tie(a.kind, a.at, a.lasted, a.bytes, a.offset) == std::tie(b.kind, b.at, b.lasted, b.bytes, b.offset);
  };
  fuzz::Require(wholeEnd == pieceEnd && std::equal(whole.begin(), whole.end(), pieces.begin(), pieces.end(), isSame));
}

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Records made of the bytes: kind and rest, length, text. They come back as they were, and what is told is plain text.
void RequireReadable(std::string_view bytes) {
  Encoder encoder;
  std::string file = Encoder::Header();
  Record record{Kind::kConsole, 1'700'000'000'000'000, 0, {}, 0};
  while (bytes.size() > 2) {
    const auto head = static_cast<unsigned char>(bytes[0]);
    record.kind = static_cast<Kind>(head % 3 + 1);
    record.at += (head / 3) * 40'000;
    record.bytes = std::string(bytes.substr(2, static_cast<unsigned char>(bytes[1]) % 64));
    bytes.remove_prefix(2 + record.bytes.size());
    file += encoder.Encode(record);
  }
  Events events([](const Event& event) {
    fuzz::Require(IsPlain(event.text));
    for (const Condition& condition : event.conditions) fuzz::Require(IsPlain(condition.name));
  });
  Words words;
  Turns turns([&](const Turn& turn) {
    events.Take(turn);
    words.Learn(turn.bytes);
    fuzz::Require(IsPlain(words.Meaning(turn.bytes)) && IsPlain(words.Asks(turn.request)));
    fuzz::Require(IsPlain(GroupOf(turn.request)));
  });
  Decoder::Result end = Decoder::Result::kEnd;
  for (const Record& read : Read(file, 7, end)) turns.Take(read);
  fuzz::Require(end == Decoder::Result::kEnd);
  turns.End();
  events.End();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::Text(data, size);
  RequireSameInPieces(bytes);
  RequireSameInPieces(Encoder::Header() + std::string(bytes));
  RequireReadable(bytes);
  return 0;
}
