#include "forms/controls/announcement.h"

#include <QAccessible>

namespace tarnwell::forms {

Announcement::Announcement(QWidget& form) : QWidget(&form) {
  hide();
  resize(0, 0);
}

void Announcement::Say(const QString& text) {
  if (text.isEmpty()) return;
  m_due.append(text);
  SayDue();
}

void Announcement::SayDue() {
  if (m_due.isEmpty()) return;
  setAccessibleName(m_due.join(QStringLiteral(". ")));
  m_due.clear();
  QAccessibleEvent showing(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&showing);
}

}  // namespace tarnwell::forms
