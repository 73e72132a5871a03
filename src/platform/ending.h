#pragma once

#include <QObject>

class QSocketNotifier;

namespace tarnwell::platform {

/// True once the program was told to end from outside, also while its thread hasn't come back to the event loop: work
/// that blocks for long asks, and gives up. Only where an Ending lives.
bool EndAsked();

/// Takes the system's requests to end: SIGTERM, SIGINT and SIGHUP, which would end the process where it stands with
/// the line driven, and the end of the desktop session. One at a time.
class Ending : public QObject {
  Q_OBJECT

 public:
  Ending();
  ~Ending() override;

  /// Closes menus, message boxes and other dialogs that are up, so that what waits for them goes on.
  static void CloseDialogs();

 Q_SIGNALS:
  /// From the event loop, once for each request.
  void Asked();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Take();

  QSocketNotifier* m_signals = nullptr;
};

}  // namespace tarnwell::platform
