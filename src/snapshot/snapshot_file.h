#pragma once

#include <QFile>
#include <string_view>

namespace tarnwell::snapshot {

/// A snapshot's file while it is written. Every line goes to the operating system at once, so that a full disk shows
/// at the line that found it full. Closed by the destructor.
class SnapshotFile {
 public:
  explicit SnapshotFile(const QString& path) : m_file(path) {}

  /// Creates the file or empties it. False: the system refused.
  bool Open();

  /// Writes one line of a snapshot, in the file's encoding. A control character of `text` becomes "?": a line end sent
  /// by a device would tear the line. False: not the whole line was written, and what there is of it is taken back.
  bool WriteLine(std::string_view text);

  /// Closes the file behind its last line. False: it isn't there any more.
  bool Finish();

  /// Writes the line that tells a reader not to trust the end of the file; no check character, errors ignored. Does
  /// nothing where the file never opened.
  void WriteErrorMark();

  /// The path and why the last of these failed.
  QString Failure() const;

 private:
  bool Write(std::string_view line);

  QFile m_file;
  QString m_reason;
};

}  // namespace tarnwell::snapshot
