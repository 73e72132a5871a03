#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/vorel-snapshot/lines.h"
#include "tools/vorel-snapshot/values.h"

namespace tarnwell::vorel_snapshot {

/// One label of a file with what stands behind it, on however many lines.
struct Entry {
  const Row* row = nullptr;
  std::string name = {};                 ///< the label as an operator reads it
  Value value = {};                      ///< also of a list or table that is lacking or was not read
  std::vector<std::string> alarms = {};  ///< of a list with alarms
  std::vector<Point> points = {};        ///< of a table that is there: all its points, lost ones included
  bool damaged = false;                  ///< at least one of its lines is

  /// A list or a table whose contents stand in its lines, rather than "NA" or "#ERR".
  bool HasContents() const { return value.kind == Value::Kind::kText; }
};

struct Snapshot {
  bool known = true;     ///< false: no line of a snapshot is in the file
  bool foreign = false;  ///< something else; a file that is empty or all zeros may be what is left of a snapshot
  Kind kind = Kind::kAmplifier;
  std::size_t lines = 0;
  std::vector<Entry> entries = {};  ///< in the order of the format; a label that isn't in the file is left out
  std::vector<Fault> faults = {};   ///< by line; none: the file is whole

  const Entry* Find(const Row& row) const;
};

/// Reads what can be read and tells what is damaged. Any bytes may be given. Of several snapshots in one file the first
/// is read, and the damage of all is told.
Snapshot ReadSnapshot(std::string_view file);

}  // namespace tarnwell::vorel_snapshot
