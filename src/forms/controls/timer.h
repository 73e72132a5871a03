#pragma once

#include <QTimer>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// A periodic tick, on or off.
class Timer : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool enabled READ Enabled WRITE SetEnabled)
  Q_PROPERTY(int interval READ Interval)

 public:
  Timer(const char* name, Form& form, Settings settings);

  bool Enabled() const { return m_timer.isActive(); }
  /// Switching on starts a whole period; switching on what is on changes nothing.
  void SetEnabled(bool enabled);
  int Interval() const { return m_timer.interval(); }

 Q_SIGNALS:
  void Tick();

 private:
  QTimer m_timer;
};

}  // namespace tarnwell::forms
