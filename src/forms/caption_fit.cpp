#include "forms/caption_fit.h"

#include <QStyleOptionButton>
#include <algorithm>
#include <optional>

#include "forms/controls/command_button.h"
#include "forms/controls/form_style.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/option_button.h"
#include "forms/layout.h"

namespace tarnwell::forms {

namespace {

constexpr int kNarrowest = 80;  ///< per cent of its own width at which a caption reads well
constexpr double kLeastPoints = 4.0;
constexpr int kFrameTitleMargins = 16;  ///< pixels beside a frame's title

/// What a control says, and the room that it has for it.
struct Caption {
  QString text;
  QSize room;
  int flags = Qt::TextShowMnemonic;
};

QSize Contents(const QWidget& control, QStyle::SubElement part) {
  QStyleOptionButton option;
  option.initFrom(&control);
  return control.style()->subElementRect(part, &option, &control).size();
}

std::optional<Caption> CaptionOf(const QWidget& control) {
  if (const auto* option = qobject_cast<const OptionButton*>(&control)) {
    return Caption{option->text(), Contents(control, QStyle::SE_RadioButtonContents)};
  }
  if (const auto* button = qobject_cast<const CommandButton*>(&control)) {
    constexpr int kFlags = static_cast<int>(Qt::TextShowMnemonic) | static_cast<int>(Qt::TextWordWrap);
    return Caption{button->text().trimmed(), Contents(control, QStyle::SE_PushButtonContents), kFlags};
  }
  if (const auto* frame = qobject_cast<const Frame*>(&control)) {
    return Caption{frame->title(), frame->size() - QSize(kFrameTitleMargins, 0)};
  }
  const auto* label = qobject_cast<const Label*>(&control);
  if (label != nullptr && label->frameShape() == QFrame::NoFrame) return Caption{label->text(), label->size()};
  return std::nullopt;
}

bool Fits(const QWidget& control, const QString& text, const Caption& caption) {
  return text.isEmpty() || FormStyle::Stretch(control.font(), caption.flags, text, caption.room) >= kNarrowest;
}

bool AllFit(Form& form, std::initializer_list<LaterCaption> later) {
  const auto controls = form.Inner().findChildren<QWidget*>();
  const auto fits = [](const QWidget* control) {
    const std::optional<Caption> caption = CaptionOf(*control);
    return !caption || Fits(*control, caption->text, *caption);
  };
  const auto fitsLater = [](const LaterCaption& row) { return Fits(row.control, row.text, *CaptionOf(row.control)); };
  return std::all_of(controls.begin(), controls.end(), fits) && std::all_of(later.begin(), later.end(), fitsLater);
}

}  // namespace

double FitCaptions(Form& form, double points, std::initializer_list<LaterCaption> later) {
  SetFontSizes(form, points);
  while (points > kLeastPoints && !AllFit(form, later)) {
    points -= kPointStep;
    SetFontSizes(form, points);
  }
  return points;
}

}  // namespace tarnwell::forms
