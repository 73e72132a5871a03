#include "forms/controls/answers.h"

#include <QApplication>
#include <QTextDocument>
#include <QVariant>
#include <initializer_list>

namespace tarnwell::forms {

namespace {

constexpr const char* kAnsweredAt = "answeredAt";
constexpr const char* kOwnToolTip = "ownToolTip";  ///< there only while the control is old

QString Since(const QWidget& control) {
  const QTime at = control.property(kAnsweredAt).toTime();
  return at.isValid() ? QStringLiteral("No answer since ") + at.toString(QStringLiteral("hh:mm:ss"))
                      : QStringLiteral("No answer yet");
}

/// The application's disabled colours for a control that stays enabled.
QPalette DisabledColours() {
  const QPalette application = QApplication::palette();
  QPalette palette;
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::Base}) {
    const QColor colour = application.color(QPalette::Disabled, role);
    palette.setColor(QPalette::Active, role, colour);
    palette.setColor(QPalette::Inactive, role, colour);
  }
  return palette;
}

/// Controls with a colour of their own know by themselves how they look.
void Draw(QWidget& control, bool old) {
  if (control.inherits("QLineEdit") || control.inherits("QRadioButton")) {
    control.setPalette(old ? DisabledColours() : QPalette());
  }
  control.update();
}

void ShowOld(QWidget& control, const QString& why) {
  if (IsOld(control)) return;
  control.setProperty(kOwnToolTip, control.toolTip());
  control.setToolTip(why);
  Draw(control, true);
}

void ShowLive(QWidget& control) {
  if (!IsOld(control)) return;
  control.setToolTip(control.property(kOwnToolTip).toString());
  control.setProperty(kOwnToolTip, QVariant());
  Draw(control, false);
}

}  // namespace

bool IsOld(const QWidget& control) { return control.property(kOwnToolTip).isValid(); }

void ShowAnswered(const Shown& controls, const QTime& now) {
  for (QWidget* control : controls) {
    control->setProperty(kAnsweredAt, now);
    ShowLive(*control);
  }
}

void ShowUnanswered(const Shown& controls) {
  for (QWidget* control : controls) ShowOld(*control, Since(*control));
}

void ShowDoubtful(const Shown& controls, const QString& why) {
  for (QWidget* control : controls) {
    ShowLive(*control);
    if (!why.isEmpty()) ShowOld(*control, PlainToolTip(why));
  }
}

void ForgetAnswers(const Shown& controls) {
  for (QWidget* control : controls) {
    control->setProperty(kAnsweredAt, QVariant());
    ShowLive(*control);
  }
}

QString PlainToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()) : text;
}

void SetOwnToolTip(QWidget& control, const QString& text) {
  if (IsOld(control)) {
    control.setProperty(kOwnToolTip, text);
  } else {
    control.setToolTip(text);
  }
}

}  // namespace tarnwell::forms
