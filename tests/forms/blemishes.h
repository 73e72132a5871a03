#pragma once

#include <QAbstractButton>
#include <QStringList>
#include <QStyleOptionButton>
#include <QTabBar>
#include <cstdlib>

#include "forms/controls/form_style.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/tab_strip.h"

namespace tarnwell::forms {

/// What an operator would see on a form as it stands: texts cut off or drawn too narrow to read, controls that reach
/// out of their container, stand on each other or on a frame's title, captions without or away from their field.
class Blemishes {
 public:
  explicit Blemishes(Form& form) {
    LookAtPlaces(form.Inner());
    for (const QWidget* control : form.Inner().findChildren<QWidget*>()) {
      if (!control->isVisible()) continue;
      LookAtText(*control);
      if (const auto* label = qobject_cast<const Label*>(control)) LookAtCaption(*label);
      if (qobject_cast<const Frame*>(control) != nullptr) LookAtPlaces(*control);
    }
  }

  std::string Found() const { return m_found.join(QStringLiteral("; ")).toStdString(); }

 private:
  static constexpr int kTitleLeft = 8;  // pixels to a frame's title

  void Say(const QWidget& control, const QString& what) { m_found << control.objectName() + what; }

  void LookAtText(const QWidget& control) {
    QString text;
    QSize room = control.size();
    int narrowest = 80;  // per cent of a text's own width
    int flags = Qt::TextShowMnemonic;
    if (const auto* label = qobject_cast<const Label*>(&control)) {
      text = label->text();
      room = label->contentsRect().size();
    } else if (const auto* frame = qobject_cast<const Frame*>(&control)) {
      text = frame->title();
      room -= QSize(2 * kTitleLeft, 0);
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) {
      const bool option = button->isCheckable();
      QStyleOptionButton style;
      style.initFrom(button);
      const auto part = option ? QStyle::SE_RadioButtonContents : QStyle::SE_PushButtonContents;
      text = button->text();
      room = button->style()->subElementRect(part, &style, button).size();
      if (!option) flags |= Qt::TextWordWrap;
    } else {
      const bool combo = qobject_cast<const ComboBox*>(&control) != nullptr;
      text = control.property(combo ? "currentText" : "text").toString();
      room -= QSize(combo ? 24 : 8, 4);  // the arrow and the edge
      narrowest = 100;
    }
    if (text.trimmed().isEmpty()) return;
    const int stretch = FormStyle::Stretch(control.font(), flags, text.trimmed(), room);
    if (stretch < narrowest) Say(control, QStringLiteral(": drawn at %1 %").arg(stretch));
    const int letters = control.fontMetrics().tightBoundingRect(QStringLiteral("Agq")).height();
    if (room.height() < letters) Say(control, QStringLiteral(": text too high for %1 pixels").arg(room.height()));
  }

  void LookAtCaption(const Label& label) {
    if (const QWidget* field = label.buddy()) {
      const int apart = std::abs(label.geometry().center().y() - field->geometry().center().y());
      if (apart > std::max(3, label.height() / 4)) Say(label, QStringLiteral(": not beside its field"));
    } else if (label.Caption().endsWith(QLatin1Char(':')) && label.objectName() != QLatin1String("lblAuxSense")) {
      Say(label, QStringLiteral(": names no field"));
    }
  }

  void LookAtPlaces(const QWidget& container) {
    // Edges that meet may share a pixel, since each is rounded for itself.
    const auto meet = [](const QRect& a, const QRect& b) { return (a & b).width() > 1 && (a & b).height() > 1; };
    QRect title;
    if (const auto* frame = qobject_cast<const Frame*>(&container)) {
      title = {QPoint(kTitleLeft, 0), frame->fontMetrics().size(Qt::TextShowMnemonic, frame->title())};
    }
    std::vector<std::pair<QString, QRect>> seen;
    for (const QWidget* child : container.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      if (!child->isVisible()) continue;
      if (child->size().isEmpty()) Say(*child, QStringLiteral(": no size"));
      if (!container.rect().contains(child->geometry())) Say(*child, QStringLiteral(": leaves its frame"));
      if (meet(child->geometry(), title)) Say(*child, QStringLiteral(": stands on the title"));
      // Of a tab strip the tabs alone count: the buttons and pages stand on its pane.
      const auto* strip = qobject_cast<const TabStrip*>(child);
      const QRect own = strip != nullptr ? strip->findChild<QTabBar*>()->geometry() : child->rect();
      const QRect covered = own.translated(child->pos());
      for (const auto& [name, place] : seen) {
        if (meet(covered, place)) Say(*child, QStringLiteral(" stands on ") + name);
      }
      seen.emplace_back(child->objectName(), covered);
    }
  }

  QStringList m_found;
};

}  // namespace tarnwell::forms
