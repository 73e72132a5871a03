#pragma once

#include <QHash>
#include <QPointer>
#include <QWidget>
#include <limits>

#include "platform/input_clock.h"

namespace tarnwell::forms {

using platform::Moment;

/// Knows since when the operator has seen each control stand as it does: in front, in its place, visible, enabled, with
/// its caption; and since when a control has the focus by the operator's own hand, or has been seen to have it.
class Stands {
 public:
  explicit Stands(platform::InputClock& clock) : m_clock(&clock) {}

  /// Forgets all that was seen on the former clock: it counts as seen from the start.
  void SetClock(platform::InputClock& clock);

  /// Takes note of an event of the program, ahead of its delivery. `actMade` is when the operator's act was made that
  /// is being delivered, where it is known.
  void Follow(QObject& receiver, const QEvent& event, std::optional<Moment> actMade);

  /// `control` is about to look different, in a way of which the toolkit sends no event.
  void Changed(QWidget& control);

  /// False for a window that is minimised or on another desktop: it is drawn when it comes back.
  static bool IsExposed(const QWidget& window);

  /// True where `control` and all that it stands on were seen as they are now at that moment.
  bool Stood(const QWidget& control, Moment made) const;
  /// True where `control` had the focus then. Also for what takes keys without having the focus, such as a menu.
  bool HadFocus(const QWidget& control, Moment made) const;

 private:
  static constexpr Moment kAlways = std::numeric_limits<Moment>::min();

  /// A state, and since when it has been seen.
  struct Seen {
    bool pending = false;  ///< it isn't drawn yet
    Moment since = kAlways;

    bool By(Moment made) const { return !pending && since <= made; }
  };
  struct Entry {
    Seen look;
    Seen focus;
  };

  void FollowWindow(QWindow& window, const QEvent& event);
  void FocusCame(QWidget& control, Qt::FocusReason reason, std::optional<Moment> actMade);
  void Drawn(Entry& entry);
  void DrawnAll(const QWidget& window);
  void Await(QWidget& control, Seen& seen);
  Entry& EntryOf(QWidget& control);

  platform::InputClock* m_clock;
  QHash<const QWidget*, Entry> m_entries;
  QHash<const QWidget*, QPointer<QWidget>> m_focused;  ///< the control that had the focus last, by its window
};

}  // namespace tarnwell::forms
