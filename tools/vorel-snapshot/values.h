#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/vorel-snapshot/rows.h"

namespace tarnwell::vorel_snapshot {

/// One value of a line, or one field of a point.
struct Value {
  enum class Kind {
    kText,
    kNumber,
    kDisabled,
    kLacking,  ///< the device has none
    kError,    ///< could not be read, or is not known
    kCut,      ///< the line of the format had no room for it
    kLost      ///< the file is damaged: nothing that may stand there can be read
  };
  Kind kind = Kind::kLost;
  std::string text = {};  ///< as it stands in the file, without its unit; of a lost number as well
  double number = 0.0;    ///< of kNumber
};

struct Point {
  Value first;
  Value second;
  bool damaged = false;  ///< its line is, or it isn't sure which point it is
};

/// Where a value stops being what the writer could have written.
struct Mismatch {
  std::size_t offset;  ///< characters of the value that are right
  std::string what;
};

template <class T>
struct Read {
  T value;
  std::optional<Mismatch> mismatch;
};

/// Several of one line, with each that can't be read.
template <class T>
struct ReadMany {
  std::vector<T> values;
  std::vector<Mismatch> mismatches;
};

/// The value behind a label that has one value.
Read<Value> ReadSingle(const Row& row, std::string_view text);

/// The tokens of one line of an alarm list. `slot` is where the search goes on; 0 on the first line of a list.
ReadMany<std::string> ReadAlarms(Kind kind, std::string_view text, std::size_t& slot);

/// The points of one line of a table. `cut`: the line is full, so that its last point may have lost its end. A point
/// that can't be read is lost, and so are those behind it unless `goOn`.
ReadMany<Point> ReadPoints(const TableShape& shape, std::string_view text, bool cut, bool goOn);

}  // namespace tarnwell::vorel_snapshot
