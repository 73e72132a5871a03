#pragma once

#include <QString>

#include "platform/property_store.h"

namespace tarnwell::session {

/// The properties that survive between two runs. The section and the application name are always the same; each
/// version of the program has a set of its own.
class StoredProperties {
 public:
  StoredProperties();

  /// The text of the key; empty for a key that isn't there.
  QString GetStoredProperty(const QString& key) const;
  /// False: it couldn't be stored, and is gone when the program ends. Failure tells why.
  bool SaveStoredProperty(const QString& key, const QString& text);
  const QString& Failure() const { return m_store.Failure(); }

 private:
  platform::PropertyStore m_store;
};

}  // namespace tarnwell::session
