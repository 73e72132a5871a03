#include "forms/controls/control.h"

#include <cmath>

#include "forms/controls/form_style.h"

namespace tarnwell::forms {

namespace {

int Pixels(Twips length) { return static_cast<int>(std::lround(static_cast<double>(length) / kTwipsPerPixel)); }

/// A control's font is all its own: Qt would hand a frame's font down to what stands in it.
void GiveOwnFont(QWidget& control, const Settings& settings) {
  const QFont& inherited = control.window()->font();
  QFont font = inherited;
  font.setFamilies(inherited.families());
  font.setPointSizeF(settings.points > 0.0 ? settings.points : inherited.pointSizeF());
  font.setBold(settings.has(Settings::kBoldFlag));
  control.setFont(font);
}

}  // namespace

void InitControl(QWidget& control, const char* name, const char* toolTip, const Settings& settings) {
  control.setObjectName(QString::fromUtf8(name));
  control.setStyle(FormStyle::Instance());
  control.setToolTip(QString::fromUtf8(toolTip));
  GiveOwnFont(control, settings);
  if (settings.has(Settings::kHiddenFlag)) control.hide();
  if (settings.has(Settings::kDisabledFlag)) control.setEnabled(false);
  if (settings.has(Settings::kNoTabStopFlag)) {
    control.setFocusPolicy(static_cast<Qt::FocusPolicy>(control.focusPolicy() & ~Qt::TabFocus));
  }
}

bool IsLent(Qt::FocusReason reason) {
  return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
}

void Place(QWidget& control, Twips left, Twips top, Twips width, Twips height) {
  const QPoint from(Pixels(left), Pixels(top));
  control.setGeometry(from.x(), from.y(), Pixels(left + width) - from.x(), Pixels(top + height) - from.y());
}

void SetFontSize(QWidget& control, double points) {
  if (points <= 0.0) return;
  QFont font = control.font();
  font.setPointSizeF(points);
  control.setFont(font);
}

double FontSize(const QWidget& control) { return control.font().pointSizeF(); }

void SetBold(QWidget& control, bool bold) {
  QFont font = control.font();
  font.setBold(bold);
  control.setFont(font);
}

bool Bold(const QWidget& control) { return control.font().bold(); }

}  // namespace tarnwell::forms
