#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "tools/vorel-line/recording.h"
#include "tools/vorel-line/turns.h"
#include "tools/vorel-line/words.h"

namespace tarnwell::vorel_line {

struct FileRules {
  std::string path;
  std::uint64_t largest = 0;                  ///< bytes at which a new file is begun; 0: none
  int keep = 0;                               ///< old files that are kept, as path.1, path.2; 0: one file for all days
  std::chrono::milliseconds syncEvery{5000};  ///< what a loss of power may cost, alarms and commands apart
};

/// The file of a recording, written by a thread of its own, so that no disk holds up the line. A record that the disk
/// doesn't take is lost whole, and how many were stands in the file once it takes some again. Where the file is
/// removed, renamed, replaced or shortened by others, the next record begins one anew.
class RecordFile {
 public:
  explicit RecordFile(FileRules rules);
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  /// Opens the file behind its last whole record; one that is damaged ahead of its end is set aside as FILE.damaged.
  /// What went wrong, or nothing. No other program may be writing to it. A new file without a record doesn't stay.
  std::string Open();

  /// Queues a record and returns at once.
  void Put(Record record);

  /// Waits until all that was put has been written or lost, and closes the file. False: the disk hasn't answered within
  /// five seconds; the thread stands in it, and the program can only be left at once.
  bool Close();

 private:
  void Work();
  void Write(const Record& record);
  /// What a later file is to tell of it.
  void Learn(const Record& record);
  void Learn(const Turn& turn);
  /// Begins anew where the name leads to another file or none, or the file has shrunk.
  void FollowName();
  std::string WhatBefell() const;
  void SyncWhereDue();
  void Sync();
  void Lose(std::uint64_t count, const std::string& reason);
  /// The record, behind what stands ahead of it: the header of a new file, a note of those that were lost.
  std::string Encode(const Record& record);
  bool Append(const std::string& bytes);
  bool NewFileDue(const Record& record, std::size_t more) const;
  void Rotate();
  bool IsOtherDay(int day) const;
  // What went wrong, or nothing.
  std::string OpenPath();
  std::string FindEnd();
  std::string Begin(std::uint64_t size);
  std::string SetAside();

  FileRules m_rules;
  int m_descriptor = -1;
  bool m_made = false;    // by this program
  bool m_goesOn = false;  // what is found in a file from now on says nothing of this line
  std::uint64_t m_size = 0;
  int m_day = 0;
  std::uint64_t m_rotateFrom = 0;  // bytes below which a failed rotation isn't tried again
  std::uint64_t m_lost = 0;
  std::string m_reason;
  std::string m_befell;                                           // the file before, till this one tells it
  std::optional<std::chrono::steady_clock::time_point> m_syncAt;  // where something is written and not synchronised
  bool m_weighty = false;
  bool m_syncFailed = false;
  // What each file tells by itself, so that it can be read alone.
  std::string m_format;
  std::map<std::string, std::string> m_known;  // by address byte and request
  std::map<char, std::string> m_alarms;        // the last answer, by address byte
  AddressFollower m_addresses;
  Turns m_turns;
  Encoder m_encoder;

  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::deque<Record> m_queue;
  std::uint64_t m_overflown = 0;
  bool m_ending = false;
  std::condition_variable m_idle;
  bool m_finished = false;
  std::thread m_thread;
};

}  // namespace tarnwell::vorel_line
