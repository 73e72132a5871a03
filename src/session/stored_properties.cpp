#include "session/stored_properties.h"

#include "console/session_state.h"

namespace tarnwell::session {

namespace {

const QString kSection = QStringLiteral("Properties");

}  // namespace

StoredProperties::StoredProperties() : m_store(console::kApplicationTitle) {}

QString StoredProperties::GetStoredProperty(const QString& key) const { return m_store.Get(kSection, key); }

bool StoredProperties::SaveStoredProperty(const QString& key, const QString& text) {
  return m_store.Save(kSection, key, text);
}

}  // namespace tarnwell::session
