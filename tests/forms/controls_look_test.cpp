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
  const QString plain = QStringLiteral("<b>AMP</b> & a name that doesn't fit\uFFFD");
  const QString whole = QStringLiteral("a long name that doesn't fit in here");
  struct Case {
    QString caption;
    QString text;
    QString toolTip;
  };
  for (const Case& row : {Case{QStringLiteral("A&B"), QStringLiteral("A&B"), QStringLiteral("Model")},
                          {QStringLiteral("<b>AMP</b> & a name that doesn't fit\x07"), plain,
                           QStringLiteral("<qt>%1</qt>").arg(plain.toHtmlEscaped())},
                          {whole, whole, whole}}) {
    field.SetCaption(row.caption);
    EXPECT_EQ(field.Caption(), row.caption);
    EXPECT_EQ(field.textFormat(), Qt::PlainText);
    EXPECT_EQ(field.toolTip(), row.toolTip);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&field)->text(QAccessible::Name), row.text);
  }
  field.show();
  Place(field, 0, 5000, 6000, 300);
  EXPECT_EQ(field.toolTip(), QStringLiteral("Model")) << "wide enough now";
  SetFontSize(field, 40);
  EXPECT_EQ(field.toolTip(), whole) << "too large now";
}

TEST_F(LookTest, ALabelIsGreyByItsOwnStateNotByItsFrames) {
  Label boxed("lblState", form.fraState, "SSPA1", "", kBoxed);
  Label plain("lblCaption", form.fraState, "Path &A");
  plain.setBuddy(&form.txtGain);
  for (Label* label : {&boxed, &plain}) {
    Place(*label, 150, 1000, 1500, 300);
    label->show();
    const QImage live = Picture(*label);
    form.fraState.setEnabled(false);
    EXPECT_EQ(Picture(*label), live);
    Settle();
    label->setEnabled(false);
    EXPECT_NE(Picture(*label), live);
    label->setEnabled(true);
    EXPECT_EQ(Picture(*label), live);
    form.fraState.setEnabled(true);
  }
}

TEST_F(LookTest, BackgroundsFillAndTheirCaptionStaysReadable) {
  Label label("lblState", form, "", "", kBoxed | Background(qRgb(255, 0, 0)));
  CommandButton button("cmdAck", form, "", "", kGraphical | Background(qRgb(255, 0, 0)));
  for (QWidget* control : std::initializer_list<QWidget*>{&label, &button}) {
    Place(*control, 0, 5000, 900, 450);
    for (const bool enabled : {true, false}) {
      control->setEnabled(enabled);
      const QColor centre = Picture(*control).pixelColor(control->rect().center());
      EXPECT_GT(centre.red(), centre.green() + 60) << enabled;
      const QColor text = control->palette().color(control->foregroundRole());
      EXPECT_EQ(text, enabled ? ReadableOn(centre) : WeakOn(centre));
    }
  }
  label.SetBackground(QColor());
  EXPECT_EQ(Picture(label).pixelColor(label.rect().center()), form.palette().color(QPalette::Window));
  EXPECT_EQ(ReadableOn(Qt::yellow), QColor(Qt::black));
  EXPECT_EQ(ReadableOn(Qt::blue), QColor(Qt::white));
}

TEST_F(LookTest, WhatIsOldIsDrawnAsWhatIsDisabledAndSaysSinceWhen) {
  Label label("lblAlarm", form, "OK", "Alarms", kBoxed | Background(qRgb(0, 255, 0)));
  Label level("lblLevel", form, "47.8 dBm", "Level", kBoxed);
  Image image("imgOk", form, ":/pictures/good.svg", "No alarm");
  for (QWidget* control : std::initializer_list<QWidget*>{&label, &level, &image}) {
    Place(*control, 0, 5000, 900, 450);
    control->show();
    const QImage live = Picture(*control);
    const QString own = control->toolTip();
    control->setEnabled(false);
    const QImage disabled = Picture(*control);
    EXPECT_NE(disabled, live) << control->objectName().toStdString();
    control->setEnabled(true);
    ShowAnswered({control}, QTime(14, 3, 22));
    ShowUnanswered({control});
    EXPECT_TRUE(Picture(*control) == disabled && control->isEnabled());
    EXPECT_EQ(control->toolTip(), QStringLiteral("No answer since 14:03:22"));
    ShowAnswered({control}, QTime(14, 3, 25));
    EXPECT_TRUE(Picture(*control) == live && control->toolTip() == own);
  }
  const QImage live = Picture(form.optOnline);
  ShowUnanswered({&form.optOnline});
  EXPECT_NE(Picture(form.optOnline), live);
}

TEST_F(LookTest, DisabledTextCanBeReadOnEveryPalette) {
  const QPalette own = QApplication::palette();
  QPalette dark(QColor(60, 60, 60), QColor(45, 45, 45));
  for (const QPalette& palette : {own, dark}) {
    QApplication::setPalette(palette);
    Settle();
    for (const auto& [text, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                       {QPalette::Text, QPalette::Base},
                                       {QPalette::ButtonText, QPalette::Button}}) {
      const auto colour = [role = text, back = ground](QPalette::ColorGroup group) {
        const QPalette colours = QApplication::palette();
        return Contrast(colours.color(group, role), colours.color(group, back));
      };
      EXPECT_GE(colour(QPalette::Disabled), 3.9);
      EXPECT_GE(colour(QPalette::Active), 1.5 * colour(QPalette::Disabled));
    }
  }
  QApplication::setPalette(own);
}

TEST_F(LookTest, PlaceAloneDecidesTheGeometryAndAFrameKeepsItsFont) {
  ComboBox combo("cbo", form);
  form.cmdConnect.SetCaption(QStringLiteral("a caption much longer than its button"));
  for (QWidget* control : std::initializer_list<QWidget*>{&combo, &form.cmdConnect, &form.txtGain, &form.fraState}) {
    Place(*control, 8, 22, 15, 30);
    EXPECT_EQ(control->geometry(), QRect(1, 1, 1, 2)) << control->objectName().toStdString();
  }
  Place(form.cmdConnect, 7, 0, 100, 300);
  Place(form.txtGain, 107, 0, 100, 300);
  EXPECT_EQ(form.cmdConnect.geometry().right() + 1, form.txtGain.x()) << "neighbours meet";
  SetFontSize(form.fraState, 6);
  SetBold(form.fraState, true);
  EXPECT_EQ(FontSize(form.optOnline), kDefaultPoints);
  EXPECT_FALSE(Bold(form.optOnline));
}

}  // namespace

}  // namespace tarnwell::forms
