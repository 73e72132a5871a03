# Prints every #include that the folders' own lists do not allow. Input, in this order: src/CMakeLists.txt, which names
# the folders lowest first; the folders' CMakeLists.txt; their sources.

# folder of "src/link/frame_codec.h": link; of "sim/device.h": sim.
function folder_of(path,    parts) {
  split(path, parts, "/")
  return parts[1] == "src" ? parts[2] : parts[1]
}

FILENAME == "src/CMakeLists.txt" {
  if (match($0, /add_subdirectory\([a-z]+\)/)) height[substr($0, RSTART + 17, RLENGTH - 18)] = ++folders
  next
}

FNR == 1 { here = folder_of(FILENAME) }

FILENAME ~ /CMakeLists\.txt$/ {
  sub(/#.*/, "")
  known[here] = 1
  while (match($0, /tarnwell_[a-z]+/)) {
    used = substr($0, RSTART + 9, RLENGTH - 9)
    $0 = substr($0, RSTART + RLENGTH)
    if (!(used in height) || used == here) continue
    uses[here, used] = 1
    if (here in height && height[used] > height[here]) print FILENAME ": " here " uses " used ", which stands above it"
  }
  next
}

!closed {
  for (k in known) for (a in known) for (b in known) if (((a, k) in uses) && ((k, b) in uses)) uses[a, b] = 1
  closed = 1
}

/^[ \t]*#[ \t]*include[ \t]+"/ {
  split($0, quoted, "\"")
  if (quoted[2] ~ /^\.\.?\//) { print FILENAME ":" FNR ": " $0 ": name the folder, not the way to it"; next }
  if (quoted[2] !~ /\//) next
  to = folder_of(quoted[2])
  if ((to in known) && to != here && !((here, to) in uses)) print FILENAME ":" FNR ": " here " may not include from " to
}
