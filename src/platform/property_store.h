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

  /// Stores the text at once. A file that was found damaged is copied aside before the first text is.
  void Save(const QString& section, const QString& key, const QString& text);

 private:
  QString m_application;
  bool m_damaged = false;
};

}  // namespace tarnwell::platform
