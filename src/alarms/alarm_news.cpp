#include "alarms/alarm_news.h"

#include <QStringList>

#include "alarms/alarm_table.h"

namespace tarnwell::alarms {

namespace {

/// The slots that became active, that became latched and that lost their alarm.
struct Changes {
  QStringList active, latched, gone;
};

Changes ChangesOf(const link::AlarmTable& former, const link::AlarmTable& now,
                  const std::function<QString(int)>& nameOf) {
  Changes changes;
  for (std::size_t i = 0; i < now.size(); ++i) {
    const link::AlarmSlot& was = former[i];
    const link::AlarmSlot& is = now[i];
    if (was.Active == is.Active && was.Latched == is.Latched) continue;
    const QString name = nameOf(static_cast<int>(i));
    if (name.isEmpty()) continue;
    (is.Active ? changes.active : is.Latched ? changes.latched : changes.gone) += name;
  }
  return changes;
}

}  // namespace

QString AlarmNews(const link::AlarmTable& former, const link::AlarmTable& now,
                  const std::function<QString(int)>& nameOf) {
  const Changes changes = ChangesOf(former, now, nameOf);
  QStringList news;
  for (const QString& name : changes.active) news += QStringLiteral("Alarm active: ") + name;
  for (const QString& name : changes.latched) news += QStringLiteral("Alarm latched: ") + name;
  for (const QString& name : changes.gone) news += QStringLiteral("Alarm gone: ") + name;
  return news.join(QStringLiteral(". "));
}

QString AlarmNews(const link::AlarmTable& former, const link::AlarmTable& now) {
  const Changes changes = ChangesOf(former, now, [](int) { return QStringLiteral("Alarm"); });
  if (!changes.active.isEmpty()) return QStringLiteral("Alarm");
  if (!changes.latched.isEmpty()) return QStringLiteral("Alarm latched");
  if (changes.gone.isEmpty()) return {};
  const AlarmSummary left = GetAlarmSummary(now);
  return left.AckedPresent || left.UnackedPresent ? QStringLiteral("Alarm gone") : QStringLiteral("No alarm");
}

}  // namespace tarnwell::alarms
