#pragma once

#include <QProxyStyle>

namespace tarnwell::forms {

/// A line of one pixel along the inner edges of `area`. A pen's line has its middle on the edge: at a scale that is no
/// whole number its pixels may be those beyond it, which a control can't draw.
void DrawBorder(QPainter& painter, const QRect& area, const QColor& colour);

/// How the controls are drawn. Their places and font sizes follow from the form's size alone, so that a text may be
/// wider than its control: it is then drawn narrower (a button's breaks into lines first) instead of cut off.
class FormStyle : public QProxyStyle {
  Q_OBJECT

 public:
  /// The one instance; it lives as long as the application.
  static FormStyle* Instance();

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  /// The arrow of a combo box is as large as its text.
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette, bool enabled,
                    const QString& text, QPalette::ColorRole textRole) const override;

  /// An option's circle is as large as its text.
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;

  /// A filled arrow in the middle of `area`, up (1) or down (-1).
  static void DrawArrow(QPainter& painter, const QRect& area, int width, int direction, const QColor& colour);

  /// A menu bar's entries are a pixel lower: in the form's larger font the bar is as high as in the system's.
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;

  /// How narrow a text has to be drawn to fit the room: per cent of its font's own width, 100 where it fits.
  static int Stretch(const QFont& font, int flags, const QString& text, const QSize& room);
  /// The room's width, in per cent of the text's own.
  static double RoomFor(const QFont& font, int flags, const QString& text, const QSize& room);

 private:
  FormStyle();
};

}  // namespace tarnwell::forms
