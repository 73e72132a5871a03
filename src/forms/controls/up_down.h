#pragma once

#include <QBasicTimer>
#include <optional>

#include "forms/controls/control.h"
#include "platform/input_clock.h"

namespace tarnwell::forms {

/// A spin control beside its text box: two arrows and no text of its own. Takes no focus; the text box has the keys.
/// A press takes back what is half typed anywhere on the form, which a later Enter would send.
/// Disabled or hidden under the press it goes back to the value of the press, since no MouseUp will follow.
class UpDown : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int value READ Value WRITE SetValue NOTIFY Change)
  Q_PROPERTY(int minimum READ Minimum)
  Q_PROPERTY(int maximum READ Maximum)
  Q_PROPERTY(int singleStep READ Increment)

 public:
  UpDown(const char* name, Container container, const char* caption = "", const char* toolTip = "",
         Settings settings = {});

  int Value() const { return m_value; }
  /// Holds `value` within the range; raises Change if it is another one.
  void SetValue(int value);

  int Minimum() const { return m_minimum; }
  int Maximum() const { return m_maximum; }
  int Increment() const { return m_increment; }

  /// `value` in the unit that the field beside shows.
  double Shown(int value) const { return m_tenths ? value / 10.0 : value; }

  /// An assistive tool sets `value`: a press and its release.
  void Choose(int value);

 Q_SIGNALS:
  void Change();
  /// The mouse button was released on the control, once a press.
  void MouseUp();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int DirectionAt(const QPoint& position) const;
  QRect ArrowArea(int direction) const;
  void PaintArrow(QPainter& painter, int direction);
  void Hold(int value);
  void Step();
  void RepeatIn(int milliseconds);
  void LetGo();
  void TakeBack();
  void TakeBackTyping();

  int m_value;
  int m_minimum;
  int m_maximum;
  int m_increment;
  bool m_tenths;
  int m_heldDirection = 0;         ///< +1 or -1 while an arrow is held
  bool m_onArrow = false;          ///< the pointer is on the held arrow
  std::optional<int> m_pressedAt;  ///< the value at the press, while nothing but steps has changed it
  QBasicTimer m_repeat;
  platform::Moment m_repeatDue = 0;
};

}  // namespace tarnwell::forms
