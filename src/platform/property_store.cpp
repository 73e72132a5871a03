#include "platform/property_store.h"

#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <QStringList>
#include <utility>

namespace tarnwell::platform {

namespace {

QSettings Open(const QString& application) {
  return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tarnwell"), application};
}

/// What can't be parsed is dropped by the next write: the damaged file is kept beside it.
void KeepDamagedFile(const QSettings& settings) {
  const QString path = settings.fileName();
  const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
  QFile::copy(path, path + QStringLiteral(".damaged-") + stamp);
}

}  // namespace

PropertyStore::PropertyStore(const QString& application) : m_application(application) {
  const QSettings settings = Open(m_application);
  settings.allKeys();  // sections are parsed only when they are read, and their faults told only then
  m_damaged = settings.status() == QSettings::FormatError;
}

QString PropertyStore::Get(const QString& section, const QString& key) const {
  const QVariant value = Open(m_application).value(section + QLatin1Char('/') + key);
  // A hand-edited value with commas and no quotes reads as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(QLatin1Char(','));
  return value.toString();
}

void PropertyStore::Save(const QString& section, const QString& key, const QString& text) {
  QSettings settings = Open(m_application);
  if (std::exchange(m_damaged, false)) KeepDamagedFile(settings);
  settings.setValue(section + QLatin1Char('/') + key, text);
  settings.sync();
}

}  // namespace tarnwell::platform
