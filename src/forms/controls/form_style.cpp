#include "forms/controls/form_style.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPointer>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <algorithm>
#include <cmath>

#include "forms/controls/colours.h"
#include "forms/controls/command_button.h"

namespace tarnwell::forms {

namespace {

constexpr int kButtonMargin = 2;  ///< pixels at both sides of a button's text

QSizeF TextSize(const QFont& font, int flags, const QString& text, const QSize& room) {
  return QFontMetricsF(font).boundingRect(QRectF(QPointF(), QSizeF(room)), flags, text).size();
}

bool Fits(const QFont& font, int flags, const QString& text, const QSize& room) {
  const QSizeF size = TextSize(font, flags, text, room);
  // a line higher than its room loses nothing but leading; only a further line would be cut
  const bool oneLine = size.height() < 1.5 * QFontMetricsF(font).height();
  return size.width() <= room.width() && (oneLine || size.height() <= room.height());
}

/// What a coloured button has on its ground.
QPalette TextColours(const CommandButton& button, QPalette colours) {
  const QColor ground = button.Background();
  const QColor text = button.ShowsDimmed() ? WeakOn(Dimmed(ground)) : ReadableOn(ground);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    colours.setColor(group, QPalette::ButtonText, text);
  }
  return colours;
}

void DrawButtonLabel(const QStyle& style, const QStyleOptionButton& button, QPainter* painter) {
  // the blanks in front of a caption are for the line that it breaks into
  const QString text = button.text.trimmed();
  const QRect room = button.rect.adjusted(kButtonMargin, 0, -kButtonMargin, 0);
  style.drawItemText(painter, room, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextWordWrap, button.palette,
                     (button.state & QStyle::State_Enabled) != 0, text, QPalette::ButtonText);
}

/// A corner that tells the alarm colours apart for those who can't: full for active, a line for latched.
void DrawMark(QPainter& painter, const QRectF& area, QRgb colour) {
  const double side = std::min(area.width(), area.height()) * 0.35;
  const QPolygonF corner({area.topRight() - QPointF(side, 0), area.topRight(), area.topRight() + QPointF(0, side)});
  if (colour == kActiveColour) {
    painter.setBrush(Qt::black);
    painter.drawPolygon(corner);
  } else if (colour == kLatchedColour) {
    painter.drawLine(corner[0], corner[2]);
  }
}

/// As the toolkit has it: once a key has moved the focus.
bool ShowsFocus(const QStyleOption& option) {
  constexpr QStyle::State kShown = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
  return (option.state & kShown) == kShown;
}

/// Seen on any of the colours.
void DrawFocus(QPainter& painter, const QRectF& area) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Qt::black, 2.0));
  painter.drawRect(area);
  painter.setPen(QPen(Qt::white, 1.0));
  painter.drawRect(area.adjusted(2, 2, -2, -2));
}

/// The toolkit's own bevel would wash the colour out.
void DrawColouredButton(const QStyleOption& option, QPainter& painter, const CommandButton& button) {
  const QColor colour = button.ShowsDimmed() ? Dimmed(button.Background()) : button.Background();
  const bool pressed = (option.state & (QStyle::State_Sunken | QStyle::State_On)) != 0;
  const QRectF area = QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour.darker(220), 1.0));
  painter.setBrush(pressed ? colour.darker(130) : colour);
  painter.drawRect(area);
  DrawMark(painter, area, button.Background().rgb());
  if (ShowsFocus(option)) DrawFocus(painter, area);
  painter.restore();
}

/// The toolkit draws tabs and their pane lighter than the pages that stand on it.
QPalette TabColours(QPalette colours) {
  colours.setColor(QPalette::Button, colours.color(QPalette::Window).darker(103));
  return colours;
}

void DrawPane(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, option.palette.window());
  DrawBorder(painter, option.rect, LineColour(option.palette));
}

/// Around an option's circle, whose own line is darker than the window.
void DrawRing(const QStyleOption& option, QPainter& painter) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(LineColour(option.palette));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
  painter.restore();
}

/// The toolkit keeps a picture of each button that it drew under the key of its palette, and the palette of a new
/// widget has a key of its own though the colours are the application's: each form that opens would add its pictures to
/// those.
QPalette WithSharedKey(const QPalette& palette) {
  QPalette shared = QApplication::palette();
  if (palette != shared) return palette;
  shared.setCurrentColorGroup(palette.currentColorGroup());
  return shared;
}

}  // namespace

void DrawBorder(QPainter& painter, const QRect& area, const QColor& colour) {
  const QRect inside = area.adjusted(1, 1, -1, -1);
  for (const QRect& part : QRegion(area) - inside) painter.fillRect(part, colour);
}

FormStyle::FormStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

FormStyle* FormStyle::Instance() {
  static QPointer<FormStyle> instance;
  if (instance.isNull()) {
    instance = new FormStyle;
    instance->setParent(qApp);
  }
  return instance;
}

int FormStyle::Stretch(const QFont& font, int flags, const QString& text, const QSize& room) {
  constexpr int kNarrowest = 50;
  QFont narrow = font;
  int stretch = 100;
  while (stretch > kNarrowest && !Fits(narrow, flags, text, room)) {
    const double width = TextSize(narrow, flags, text, room).width();
    const int wanted = static_cast<int>(std::floor(stretch * room.width() / std::max(width, 1.0)));
    stretch = std::clamp(wanted, kNarrowest, stretch - 1);
    narrow.setStretch(stretch);
  }
  return stretch;
}

double FormStyle::RoomFor(const QFont& font, int flags, const QString& text, const QSize& room) {
  return 100.0 * room.width() / std::max(TextSize(font, flags, text, room).width(), 1.0);
}

void FormStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  const auto* label = qstyleoption_cast<const QStyleOptionButton*>(option);
  const auto* button = qobject_cast<const CommandButton*>(widget);
  const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
  const bool coloured = button != nullptr && button->Background().isValid();
  if (element == CE_PushButtonLabel && label != nullptr) {
    QStyleOptionButton drawn = *label;
    if (coloured) drawn.palette = TextColours(*button, label->palette);
    DrawButtonLabel(*this, drawn, painter);
  } else if (element == CE_PushButtonBevel && coloured) {
    DrawColouredButton(*option, *painter, *button);
  } else if (element == CE_TabBarTabShape && tab != nullptr) {
    QStyleOptionTab shaded = *tab;
    shaded.palette = TabColours(tab->palette);
    QProxyStyle::drawControl(element, &shaded, painter, widget);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void FormStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  if (element == PE_FrameTabWidget) return DrawPane(*option, *painter);
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  if (element == PE_PanelButtonCommand && button != nullptr) {
    QStyleOptionButton shared = *button;
    shared.palette = WithSharedKey(button->palette);
    return QProxyStyle::drawPrimitive(element, &shared, painter, widget);
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element == PE_IndicatorRadioButton && IsDark(option->palette)) DrawRing(*option, *painter);
}

QRect FormStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
  const QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
  if (control != CC_ComboBox || (part != SC_ComboBoxArrow && part != SC_ComboBoxEditField)) return rect;
  const QRect arrow = QProxyStyle::subControlRect(control, option, SC_ComboBoxArrow, widget);
  const int wider = std::max(0, option->fontMetrics.height() - arrow.width());
  return part == SC_ComboBoxArrow ? rect.adjusted(-wider, 0, 0, 0) : rect.adjusted(0, 0, -wider, 0);
}

void FormStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                   const QWidget* widget) const {
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control != CC_ComboBox || box == nullptr) {
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
  QStyleOptionComboBox plain = *box;
  plain.subControls &= ~SC_ComboBoxArrow;
  plain.palette = WithSharedKey(box->palette);
  QProxyStyle::drawComplexControl(control, &plain, painter, widget);
  const QRect area = subControlRect(control, option, SC_ComboBoxArrow, widget);
  DrawArrow(*painter, area, option->fontMetrics.height() / 2, -1, option->palette.color(QPalette::ButtonText));
}

QSize FormStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                  const QWidget* widget) const {
  const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  return type == CT_MenuBarItem ? size - QSize(0, 1) : size;
}

void FormStyle::DrawArrow(QPainter& painter, const QRect& area, int width, int direction, const QColor& colour) {
  const QPointF centre = QRectF(area).center();
  const QPointF side(width / 2.0, 0);
  const QPointF tip(0, -direction * width / 4.0);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygonF({centre - side - tip, centre + side - tip, centre + tip}));
  painter.restore();
}

void FormStyle::drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette, bool enabled,
                             const QString& text, QPalette::ColorRole textRole) const {
  const QFont font = painter->font();
  const int stretch = Stretch(font, flags, text, rect.size());
  if (stretch < 100) {
    QFont narrow = font;
    narrow.setStretch(stretch);
    painter->setFont(narrow);
  }
  QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, textRole);
  painter->setFont(font);
}

int FormStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  constexpr int kSmallestCircle = 10;
  const int em = widget != nullptr ? QFontInfo(widget->font()).pixelSize() : 0;
  switch (metric) {
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return std::max(em * 4 / 5, kSmallestCircle);
    case PM_RadioButtonLabelSpacing:
      return std::max(em / 4, 3);
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

}  // namespace tarnwell::forms
