#pragma once

#include <QFile>
#include <QFileInfo>
#include <string_view>

namespace tarnwell::snapshot {

/// A snapshot's file while it is written. Every line goes to the operating system at once, so that a full disk shows
/// at the line that found it full. It is written beside its name, as NAME.new, and takes the name when it is whole: one
/// that was killed never passes for a snapshot, and an older file stays until then. Closed by the destructor.
class SnapshotFile {
 public:
  explicit SnapshotFile(const QString& path) : m_path(path), m_file(path) {}

  /// Creates the file. False: the system refused it, or the name that it is to take.
  bool Open();

  /// Writes one line of a snapshot, in the file's encoding. A control character of `text` becomes "?": a line end sent
  /// by a device would tear the line. False: not the whole line was written, and what there is of it is taken back.
  bool WriteLine(std::string_view text);

  /// Closes the file behind its last line and gives it its name. False: it isn't there any more, or can't take the
  /// name.
  bool Finish();

  /// Writes the line that tells a reader not to trust the end of the file, without check character, and gives the file
  /// its name where no older one has that; errors ignored. Does nothing where the file isn't open.
  void FinishIncomplete();

  /// The path and why the last of these failed.
  QString Failure() const;

  /// What the file is called that has not taken its name, behind a line feed; empty for one that has or will.
  QString Kept() const;

 private:
  bool OpenBeside(const QFileInfo& target);
  bool OpenInPlace();
  bool TakeName();
  bool Write(std::string_view line);

  QString m_path;           ///< as it was chosen
  QString m_target;         ///< the name that it takes, links followed; empty: it is written in place
  bool m_replaces = false;  ///< an older file has that name
  QFile m_file;
  QString m_reason;
};

}  // namespace tarnwell::snapshot
