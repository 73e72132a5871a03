#pragma once

#include <QString>

namespace tarnwell::platform {

/// The per-user settings store: text values by application, section and key. Lives with the operating system (the
/// registry, or a file of the user's configuration folder).
class PropertyStore {
 public:
  explicit PropertyStore(const QString& application);

  /// The text stored under the key; empty when nothing is.
  QString Get(const QString& section, const QString& key) const;

  /// Stores the text at once, beside what another program has stored since. A file that can't be parsed by now is
  /// copied aside before. False: the system let nothing be written.
  bool Save(const QString& section, const QString& key, const QString& text);

  /// The path and why the last Save failed.
  const QString& Failure() const { return m_failure; }

 private:
  QString m_application;
  QString m_failure;
};

}  // namespace tarnwell::platform
