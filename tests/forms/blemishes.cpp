#include "tests/forms/blemishes.h"

#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QTabBar>
#include <cstdlib>
#include <optional>

#include "forms/controls/command_button.h"
#include "forms/controls/form_style.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/option_button.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/tab_strip.h"
#include "forms/controls/text_box.h"

namespace tarnwell::forms {

namespace {

constexpr int kTitleLeft = 8;    // pixels to a frame's title
constexpr int kEasyToRead = 80;  // per cent of a text's own width

/// What a control shows, and the room that it has for it.
struct Shown {
  QString text;
  QSize room;
  int flags = Qt::TextShowMnemonic;
};

QSize EditField(const ComboBox& box) {
  QStyleOptionComboBox option;
  option.initFrom(&box);
  return box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box).size();
}

QSize Contents(const QWidget& control, QStyle::SubElement part) {
  QStyleOptionButton option;
  option.initFrom(&control);
  return control.style()->subElementRect(part, &option, &control).size();
}

/// What can't be drawn narrower has no room where it doesn't fit.
Shown Rigid(const QWidget& control, const QString& text, QSize room) {
  return {text, control.fontMetrics().horizontalAdvance(text) <= room.width() ? room : QSize(0, 0)};
}

std::optional<Shown> Show(const QWidget& control) {
  if (const auto* label = qobject_cast<const Label*>(&control)) return {{label->text(), label->contentsRect().size()}};
  if (const auto* option = qobject_cast<const OptionButton*>(&control)) {
    return {{option->text(), Contents(control, QStyle::SE_RadioButtonContents)}};
  }
  if (const auto* button = qobject_cast<const CommandButton*>(&control)) {
    constexpr int kFlags = static_cast<int>(Qt::TextShowMnemonic) | static_cast<int>(Qt::TextWordWrap);
    return {{button->text().trimmed(), Contents(control, QStyle::SE_PushButtonContents), kFlags}};
  }
  if (const auto* frame = qobject_cast<const Frame*>(&control)) {
    return {{frame->title(), frame->size() - QSize(2 * kTitleLeft, 0)}};
  }
  if (const auto* box = qobject_cast<const TextBox*>(&control)) {
    return Rigid(*box, box->text(), box->size() - QSize(8, 4));
  }
  const auto* box = qobject_cast<const ComboBox*>(&control);
  if (box != nullptr) return Rigid(*box, box->currentText(), EditField(*box));
  return std::nullopt;
}

void LookAtText(const QWidget& control, QStringList& found) {
  const std::optional<Shown> shown = Show(control);
  if (!shown || shown->text.trimmed().isEmpty()) return;
  const int stretch = FormStyle::Stretch(control.font(), shown->flags, shown->text, shown->room);
  if (stretch < kEasyToRead) found << QStringLiteral("%1: drawn at %2 %").arg(control.objectName()).arg(stretch);
  if (shown->room.height() < control.fontMetrics().tightBoundingRect(QStringLiteral("Agq")).height()) {
    found << QStringLiteral("%1: text too high for %2 pixels").arg(control.objectName()).arg(shown->room.height());
  }
}

void LookAtCaption(const QWidget& control, QStringList& found) {
  const auto* label = qobject_cast<const Label*>(&control);
  if (label == nullptr) return;
  const QWidget* field = label->buddy();
  if (field == nullptr) {
    const bool caption =
        label->Caption().endsWith(QLatin1Char(':')) && label->objectName() != QLatin1String("lblAuxSense");
    if (caption) found << label->objectName() + QStringLiteral(": names no field");
    return;
  }
  const int apart = std::abs(label->geometry().center().y() - field->geometry().center().y());
  if (apart > std::max(3, label->height() / 4)) found << label->objectName() + QStringLiteral(": not beside its field");
}

/// What a control covers: of a tab strip the tabs alone, since the buttons and pages stand on its pane.
QRect Covered(const QWidget& control) {
  if (const auto* strip = qobject_cast<const TabStrip*>(&control)) {
    return strip->findChild<QTabBar*>()->geometry().translated(strip->pos());
  }
  return control.geometry();
}

QRect TitleOf(const QWidget& container) {
  const auto* frame = qobject_cast<const Frame*>(&container);
  if (frame == nullptr) return {};
  return {QPoint(kTitleLeft, 0), frame->fontMetrics().size(Qt::TextShowMnemonic, frame->title())};
}

/// Edges that meet may share a pixel, since each is rounded for itself.
bool Meet(const QRect& a, const QRect& b) {
  const QRect common = a & b;
  return common.width() > 1 && common.height() > 1;
}

void LookAtPlaces(const QWidget& container, QStringList& found) {
  QList<const QWidget*> seen;
  for (const QWidget* child : container.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (!child->isVisible()) continue;
    const QString name = child->objectName();
    if (child->size().isEmpty()) found << name + QStringLiteral(": no size");
    if (!container.rect().contains(child->geometry())) found << name + QStringLiteral(": leaves its frame");
    if (Meet(child->geometry(), TitleOf(container))) found << name + QStringLiteral(": stands on the title");
    for (const QWidget* other : seen) {
      if (Meet(Covered(*child), Covered(*other))) found << name + QStringLiteral(" stands on ") + other->objectName();
    }
    seen << child;
  }
}

}  // namespace

QStringList Blemishes(Form& form) {
  QStringList found;
  LookAtPlaces(form.Inner(), found);
  for (const QWidget* control : form.Inner().findChildren<QWidget*>()) {
    if (!control->isVisible()) continue;
    LookAtText(*control, found);
    LookAtCaption(*control, found);
    if (qobject_cast<const Frame*>(control) != nullptr) LookAtPlaces(*control, found);
  }
  return found;
}

}  // namespace tarnwell::forms
