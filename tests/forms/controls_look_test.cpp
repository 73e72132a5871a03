#include <QAccessible>
#include <QImage>

#include "forms/controls/answers.h"
#include "forms/controls/label.h"
#include "forms/controls/plain_controls.h"
#include "forms/test_form.h"

namespace tarnwell::forms {
namespace {

using LookTest = ControlTest;

QImage Picture(QWidget& control) { return control.grab().toImage(); }

TEST_F(LookTest, LabelsShowPlainTextAndABoxedOneCutsWhatDoesNotFit) {
  Label field("lblModel", form, "", "Model", kBoxed);
  Place(field, 0, 5000, 1500, 300);
  const QString markup = QStringLiteral("<b>AMP</b> & a name that doesn't fit");
  const QString whole = QStringLiteral("a long name that doesn't fit in here\uFFFD");
  for (const auto& [caption, text, toolTip] : std::initializer_list<std::array<QString, 3>>{
           {QStringLiteral("A&B"), QStringLiteral("A&B"), QStringLiteral("Model")},
           {markup, markup, QStringLiteral("<qt>%1</qt>").arg(markup.toHtmlEscaped())},
           {QStringLiteral("a long name that doesn't fit in here\x07"), whole, whole}}) {
    field.SetCaption(caption);
    EXPECT_TRUE(field.Caption() == caption && field.textFormat() == Qt::PlainText);
    EXPECT_EQ(field.toolTip(), toolTip);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&field)->text(QAccessible::Name), text);
  }
  field.show();
  Place(field, 0, 5000, 6000, 300);
  EXPECT_EQ(field.toolTip(), QStringLiteral("Model")) << "wide enough now";
  SetFontSize(field, 40);
  EXPECT_EQ(field.toolTip(), whole) << "too large now";
}

TEST_F(LookTest, BackgroundsFillAndTheirCaptionStaysReadable) {
  Label label("lblState", form, "", "", kBoxed | Background(qRgb(255, 0, 0)));
  CommandButton button("cmdAck", form, "", "", kGraphical | Background(qRgb(255, 0, 0)));
  const auto centre = [](QWidget& control) { return Picture(control).pixelColor(control.rect().center()); };
  Place(label, 0, 5000, 900, 450);
  for (const bool enabled : {true, false}) {
    label.setEnabled(enabled);
    const QColor ground = centre(label);
    EXPECT_GT(ground.red(), ground.green() + 60) << enabled;
    EXPECT_EQ(label.palette().color(label.foregroundRole()), enabled ? ReadableOn(ground) : WeakOn(ground));
  }
  EXPECT_EQ(centre(button), QColor(Qt::red));
  button.setEnabled(false);
  EXPECT_EQ(centre(button), QColor(Qt::red)) << "what can't be pressed isn't old for that";
  ShowUnanswered({&button});
  EXPECT_EQ(centre(button), Dimmed(Qt::red));
  ShowAnswered({&button}, QTime());
  form.Inner().setEnabled(false);
  EXPECT_EQ(centre(button), Dimmed(Qt::red)) << "nothing in its frame is live";
  label.SetBackground(QColor());
  EXPECT_EQ(centre(label), form.palette().color(QPalette::Window));
}

// A label is grey by its own state: it may show a live value in a frame that is disabled.
TEST_F(LookTest, WhatIsOldIsDrawnAsWhatIsDisabledAndSaysSinceWhen) {
  Label alarm("lblAlarm", form.fraState, "OK", "Alarms", kBoxed | Background(qRgb(0, 255, 0)));
  Label level("lblLevel", form.fraState, "47.8 dBm", "Level", kBoxed);
  Label caption("lblCaption", form.fraState, "Path &A");
  Image image("imgOk", form.fraState, ":/pictures/good.svg", "No alarm");
  caption.setBuddy(&form.txtGain);
  for (QWidget* control : std::initializer_list<QWidget*>{&alarm, &level, &caption, &image, &form.optOnline}) {
    SCOPED_TRACE(control->objectName().toStdString());
    control->show();
    const QImage live = Picture(*control);
    const QString own = control->toolTip();
    form.fraState.setEnabled(false);
    EXPECT_EQ(Picture(*control) == live, qobject_cast<Label*>(control) != nullptr);
    control->setEnabled(false);
    const QImage disabled = Picture(*control);
    EXPECT_NE(disabled, live);
    form.fraState.setEnabled(true);
    control->setEnabled(true);
    ShowAnswered({control}, QTime(14, 3, 22));
    ShowUnanswered({control});
    EXPECT_TRUE(Picture(*control) == disabled && control->isEnabled());
    EXPECT_EQ(control->toolTip(), QStringLiteral("No answer since 14:03:22"));
    ShowAnswered({control}, QTime(14, 3, 25));
    EXPECT_TRUE(Picture(*control) == live && control->toolTip() == own);
    for (const char* why : {"first", "second"}) ShowDoubtful({control}, QLatin1String(why));
    EXPECT_TRUE(Picture(*control) == disabled && control->toolTip() == QLatin1String("second"));
    ShowDoubtful({control}, QString());
    EXPECT_TRUE(Picture(*control) == live && control->toolTip() == own);
  }
}

TEST_F(LookTest, AFrameHasItsFourEdgesAtEveryScale) {
  const QColor line = LineColour(form.palette());
  for (const double scale : {1.0, 1.25, 1.5, 1.75}) {
    QImage picture(form.size() * scale, QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    for (int at = 10; at < 14; ++at) {
      form.fraState.setGeometry(at, at, 100 + at, 60 + at);
      form.render(&picture);
      const QRect inside = form.fraState.geometry().adjusted(2, 12, -2, -2);
      const auto edges = [&](int fromX, int fromY, int toX, int toY) {
        bool found = false;
        for (int x = fromX; x <= toX; ++x) {
          for (int y = fromY; y <= toY; ++y) found = found || picture.pixelColor(x, y) == line;
        }
        return found ? 1 : 0;
      };
      const auto px = [scale](int length) { return static_cast<int>(length * scale); };
      const int middleX = px(inside.right() - 3);
      const int middleY = px(inside.bottom() - 3);
      EXPECT_EQ(edges(px(at) - 1, middleY, px(at + 2), middleY) +
                    edges(px(inside.right()), middleY, px(inside.right() + 4), middleY) +
                    edges(middleX, px(at), middleX, px(inside.top())) +
                    edges(middleX, px(inside.bottom()), middleX, px(inside.bottom() + 4)),
                4)
          << scale << ' ' << at;
    }
  }
}

TEST_F(LookTest, DisabledTextCanBeReadOnEveryPalette) {
  const QPalette own = QApplication::palette();
  for (const QPalette& palette : {own, QPalette(QColor(60, 60, 60), QColor(45, 45, 45))}) {
    QApplication::setPalette(palette);
    Settle();
    for (const auto& [text, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                       {QPalette::Text, QPalette::Base},
                                       {QPalette::ButtonText, QPalette::Button}}) {
      const QPalette now = QApplication::palette();
      const double weak = Contrast(now.color(QPalette::Disabled, text), now.color(QPalette::Disabled, ground));
      EXPECT_GE(weak, 3.9);
      EXPECT_GE(Contrast(now.color(QPalette::Active, text), now.color(QPalette::Active, ground)), 1.5 * weak);
    }
  }
  QApplication::setPalette(own);
}

}  // namespace
}  // namespace tarnwell::forms
