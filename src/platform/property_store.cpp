#include "platform/property_store.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QStringList>
#include <QTemporaryFile>

namespace tarnwell::platform {

namespace {

QSettings Open(const QString& application) {
  return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tarnwell"), application};
}

/// True where the file can't be parsed as a whole. The settings classes share what they have parsed and tell its faults
/// once, so a copy is looked at.
bool IsDamaged(const QString& path) {
  QFile file(path);
  QTemporaryFile copy;
  if (!file.open(QIODevice::ReadOnly) || !copy.open()) return false;
  copy.write(file.readAll());
  copy.flush();
  const QSettings settings(copy.fileName(), QSettings::IniFormat);
  settings.allKeys();  // sections are parsed only when they are read
  return settings.status() == QSettings::FormatError;
}

/// What can't be parsed is dropped by the next write: the damaged file is kept beside it.
void KeepDamagedFile(const QString& path) {
  const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
  QFile::copy(path, path + QStringLiteral(".damaged-") + stamp);
}

/// Why the system lets nothing be written to `path`.
QString WriteFailure(const QString& path) {
  constexpr qsizetype kBlock = 4096;
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return file.errorString();
  file.write(QByteArray(kBlock, ' '));
  const bool written = file.flush();
  const QString reason = file.errorString();
  file.cancelWriting();
  return written ? QStringLiteral("it could not be written") : reason;
}

}  // namespace

PropertyStore::PropertyStore(const QString& application) : m_application(application) {}

QString PropertyStore::Get(const QString& section, const QString& key) const {
  const QVariant value = Open(m_application).value(section + QLatin1Char('/') + key);
  // A hand-edited value with commas and no quotes reads as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(QLatin1Char(','));
  return value.toString();
}

bool PropertyStore::Save(const QString& section, const QString& key, const QString& text) {
  QSettings settings = Open(m_application);
  const QString path = settings.fileName();
  if (IsDamaged(path)) KeepDamagedFile(path);
  settings.setValue(section + QLatin1Char('/') + key, text);
  settings.sync();
  if (settings.status() != QSettings::AccessError) return true;
  m_failure = path + QStringLiteral(": ") + WriteFailure(path);
  return false;
}

}  // namespace tarnwell::platform
