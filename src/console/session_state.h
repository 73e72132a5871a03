#pragma once

#include <QString>

namespace tarnwell::console {

/// The program's name and version, as titles and snapshots have it. Properties are stored under it: a new version
/// starts with properties of its own.
inline const QString kApplicationTitle = QStringLiteral("Tarnwell v" TARNWELL_VERSION);

// The main window's title says the state of the link, and the link watch reads it there.
inline const QString kConnectedTo = QStringLiteral("Connected to");
inline const QString kLostConnectionTo = QStringLiteral("Lost Connection to");

inline QString TitleOf(const QString& state) {
  return QStringLiteral("Vorel ") + kApplicationTitle + QStringLiteral(" : ") + state;
}
inline QString TitleWithout() { return TitleOf(QStringLiteral("No Connection")); }
inline QString TitleConnected(const QString& device) { return TitleOf(kConnectedTo + QLatin1Char(' ') + device); }
inline QString TitleLost(const QString& device) {
  return TitleOf(kLostConnectionTo + QLatin1Char(' ') + device + QStringLiteral(" Retrying..."));
}

/// What the main form knows of the session under way.
struct SessionState {
  QString DeviceName;          ///< the device's model text
  bool PollRunning = false;    ///< a poll loop is to go on
  bool PollHeartbeat = false;  ///< a poll loop has ended a step since the last tick of the watchdog
  int PollLength = 0;          ///< steps of the schedule
  bool GainInDoubt = false;    ///< a gain was sent and not answered: it is asked for as soon as the device answers
};

}  // namespace tarnwell::console
