#include "snapshot/snapshot_line.h"

#include "link/frame_codec.h"

namespace tarnwell::snapshot {

// The arithmetic of a frame's checksum, so that a service tool needs one routine for both.
char CheckCharacter(std::string_view text) { return link::ChecksumCharacter(text); }

std::string FormatSnapshotLine(std::string_view text) {
  std::string line(text.substr(0, kTextLength));
  line.resize(kTextLength, ' ');
  return line + CheckCharacter(line);
}

}  // namespace tarnwell::snapshot
