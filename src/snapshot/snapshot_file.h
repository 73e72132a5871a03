#pragma once

#include <QFile>
#include <QFileInfo>
#include <string_view>

namespace tarnwell::snapshot {

/// A snapshot's file while it is written. Every line goes to the operating system at once, so that a full disk shows
/// at the line that found it full. An older file stays until the new one is whole: that is written beside it, and stays
/// there where it fails. Closed by the destructor.
class SnapshotFile {
 public:
  explicit SnapshotFile(const QString& path) : m_path(path), m_file(path) {}

  /// Creates the file. False: the system refused.
  bool Open();

  /// Writes one line of a snapshot, in the file's encoding. A control character of `text` becomes "?": a line end sent
  /// by a device would tear the line. False: not the whole line was written, and what there is of it is taken back.
  bool WriteLine(std::string_view text);

  /// Closes the file behind its last line and puts it in the place of an older one. False: it isn't there any more, or
  /// the older one can't be replaced.
  bool Finish();

  /// Writes the line that tells a reader not to trust the end of the file; no check character, errors ignored. Does
  /// nothing where the file never opened.
  void WriteErrorMark();

  /// The path and why the last of these failed.
  QString Failure() const;

  /// That the older file stayed and what the new one is called, behind a line feed; empty where there is no older one.
  QString Kept() const;

 private:
  bool OpenBeside(const QFileInfo& older);
  bool OpenInPlace();
  bool Replace();
  bool Write(std::string_view line);

  QString m_path;   ///< as it was chosen
  QString m_older;  ///< the file that is replaced, links followed; empty: none is
  QFile m_file;
  QString m_reason;
};

}  // namespace tarnwell::snapshot
