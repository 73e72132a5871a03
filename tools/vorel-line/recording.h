#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::vorel_line {

/// What a record holds.
enum class Kind : std::uint8_t {
  kConsole = 1,  ///< bytes from the console
  kDevice = 2,   ///< bytes from the device
  kNote = 3,     ///< a text of the recorder's: what befell the line
  kClock = 4     ///< the time of day, in the file alone
};

struct Record {
  Kind kind = Kind::kNote;
  std::int64_t at = 0;      ///< microseconds since 1970, UTC, in steps of 100; of the first byte
  std::int64_t lasted = 0;  ///< microseconds from the first byte to the last
  std::string bytes;
  int offset = 0;  ///< minutes that the local time of the recording is ahead of UTC; not in each record of the file
};

// Notes.
inline constexpr std::string_view kFormat = "format ";  ///< and the format, or that it was refused
inline constexpr std::string_view kKnown = "known ";  ///< and an address byte and a frame: what a device told of itself
inline constexpr std::string_view kLost = "records lost: ";  ///< and how many, and why
inline constexpr std::string_view kUnreadable =
    " bytes unreadable";  ///< behind how many; by the reader, not in the file
inline constexpr std::string_view kAnew = "recording begun anew: the file ";  ///< and what became of it
inline constexpr std::string_view kRenamed = "was renamed";                   ///< of it: nothing is missing
inline constexpr std::string_view kStarted = "recording started";
inline constexpr std::string_view kEnded = "recording ended";
inline constexpr std::string_view kDeviceGone = "device gone";
inline constexpr std::string_view kDeviceBack = "device back";

/// The format that a note puts in force; empty for any other text, also where the port refused one.
inline std::string_view FormatOfNote(std::string_view note) {
  const bool inForce = note.starts_with(kFormat) && note.find(' ', kFormat.size()) == std::string_view::npos;
  return inForce ? note.substr(kFormat.size()) : std::string_view();
}

/// Whether records are missing ahead of a note.
inline bool IsGap(std::string_view note) {
  return note.starts_with(kLost) || note.ends_with(kUnreadable) ||
         (note.starts_with(kAnew) && !note.ends_with(kRenamed));
}

/// What a recording of any version begins with.
inline constexpr std::string_view kRecordingHead = "vorel-line recording ";

/// Longest text of a record in bytes; a writer splits what is longer.
inline constexpr std::size_t kLongestRecord = 4096;

/// Writes records; docs/recording.md tells the format.
class Encoder {
 public:
  /// The bytes of the next record, the time of day ahead of it where that is due.
  std::string Encode(const Record& record);
  /// The next record follows nothing: a new file, or one that records were lost in.
  void Restart() { m_clockAt.reset(); }

  static std::string Header();

 private:
  std::optional<std::int64_t> m_clockAt;
  int m_offset = 0;
  std::int64_t m_last = 0;
};

/// Reads a recording, also one that is still being written.
class Decoder {
 public:
  enum class Result { kRecord, kEnd, kDamaged };

  void Feed(std::string_view bytes);
  /// The next record into `record`; kEnd where only a part of one is left. kDamaged comes again and again, until
  /// PassOver.
  Result Next(Record& record);
  /// Has Next go on behind damage at the next time of day: the times of all records ahead of it are unknown. No way on
  /// where WholeBytes is 0: that is no recording.
  void PassOver() { m_passing = true; }
  /// Bytes that were passed over.
  std::uint64_t Unreadable() const { return m_unreadable + (m_passing ? m_fed - m_taken : 0); }
  /// Forgets what was fed behind the last whole record; what is fed next follows that one.
  void DropPart();
  /// Bytes up to the end of the last whole record.
  std::uint64_t WholeBytes() const { return m_taken; }

 private:
  Result TakeHeader();
  bool FindClock();

  std::string m_data;
  std::size_t m_at = 0;
  std::uint64_t m_fed = 0;
  std::uint64_t m_taken = 0;
  bool m_passing = false;
  std::uint64_t m_unreadable = 0;
  bool m_headerRead = false;
  bool m_clockRead = false;
  std::int64_t m_last = 0;
  int m_offset = 0;
};

}  // namespace tarnwell::vorel_line
