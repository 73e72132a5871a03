#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

/// Makes records of bytes as they pass: what one side sends in one go is one record. Times are microseconds.
class Journal {
 public:
  using Sink = std::function<void(Record)>;
  explicit Journal(Sink sink) : m_sink(std::move(sink)) {}

  void Take(Kind side, std::int64_t now, std::string_view bytes);
  void Note(std::int64_t now, std::string_view text);
  /// Hands on what has waited long enough, or at the end all.
  void Flush(std::int64_t now, bool all = false);
  /// When Flush is due; nothing: not before bytes come.
  std::optional<std::int64_t> Due() const;

 private:
  void HandOn();

  Sink m_sink;
  Record m_open;
  bool m_isOpen = false;
};

}  // namespace tarnwell::vorel_line
