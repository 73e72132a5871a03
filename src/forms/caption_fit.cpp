#include "forms/caption_fit.h"

#include <QStyleOptionButton>
#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "forms/controls/command_button.h"
#include "forms/controls/form_style.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/option_button.h"
#include "forms/layout.h"

namespace tarnwell::forms {

namespace {

constexpr double kNarrowest = 80;  ///< per cent of its own width at which a caption reads well
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

/// All captions of the form as they are now, and those that it gets later.
std::vector<std::pair<QFont, Caption>> Captions(Form& form, std::initializer_list<LaterCaption> later) {
  std::vector<std::pair<QFont, Caption>> captions;
  const auto add = [&captions](const QWidget& control, const QString* text) {
    std::optional<Caption> caption = CaptionOf(control);
    if (!caption) return;
    if (text != nullptr) caption->text = *text;
    if (!caption->text.isEmpty()) captions.emplace_back(control.font(), *caption);
  };
  for (const QWidget* control : form.Inner().findChildren<QWidget*>()) add(*control, nullptr);
  for (const LaterCaption& row : later) add(row.control, &row.text);
  return captions;
}

/// What the most crowded caption takes of its room when it is as narrow as it may be: more than 1 where one doesn't
/// fit. Each narrower font is looked at only where the captions' own widths leave it open.
Filling MostCrowded(Form& form, std::initializer_list<LaterCaption> later) {
  const auto captions = Captions(form, later);
  double most = 0.0;
  for (const auto& [font, caption] : captions) {
    most = std::max(most, kNarrowest / FormStyle::RoomFor(font, caption.flags, caption.text, caption.room));
  }
  if (most > 1.0) return {most, 1.0};
  const bool fit = std::all_of(captions.begin(), captions.end(), [](const auto& row) {
    const auto& [font, caption] = row;
    return FormStyle::Stretch(font, caption.flags, caption.text, caption.room) >= kNarrowest;
  });
  return {fit ? most : 1.01, 1.0};
}

}  // namespace

double FitCaptions(Form& form, double points, std::initializer_list<LaterCaption> later) {
  const auto setPoints = [&](double wanted) {
    points = wanted;
    SetFontSizes(form, wanted);
    return true;
  };
  const auto crowded = [&] { return points > kLeastPoints ? MostCrowded(form, later) : Filling{1.0, 1.0}; };
  double fitting = points;
  SetFontSizes(form, points);
  StepWhile(crowded, -kPointStep, fitting, setPoints);
  return fitting;
}

}  // namespace tarnwell::forms
