#pragma once

#include <QStringList>
#include <QWidget>

namespace tarnwell::forms {

/// What the program says once to those who don't see it. It is never drawn: a notification whose name is the text, and
/// that is told as showing each time. The toolkit of this version has no event that makes a screen reader speak, and
/// hands its alert event on to no tool on Linux.
class Announcement : public QWidget {
  Q_OBJECT

 public:
  explicit Announcement(QWidget& form);

  /// At once, behind what is due, in one: a tool asks for the text when it hears of it, which may be after the next.
  void Say(const QString& text);
  void SayLater(const QString& text) { m_due.append(text); }
  void SayDue();

 private:
  QStringList m_due;
};

}  // namespace tarnwell::forms
