#include "forms/controls/form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMenuBar>
#include <QWindow>
#include <algorithm>

#include "forms/controls/dimming.h"
#include "forms/controls/form_style.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/option_button.h"
#include "forms/controls/reading_order.h"
#include "platform/desktop.h"
#include "platform/text_encoding.h"

namespace tarnwell::forms {

namespace {

Qt::WindowFlags WindowFlagsFor(Form::Border border, Form::TitleButtons buttons) {
  Qt::WindowFlags flags =
      Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  if (border == Form::Border::kFixedDialog) flags |= Qt::Dialog;
  if (buttons == Form::TitleButtons::kMinimiseMaximise) flags |= Qt::WindowMinMaxButtonsHint;
  return flags;
}

QFont FormFont(double points) {
  QFont font;
  font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  font.setPointSizeF(points);
  return font;
}

/// A popup that is held open would keep a stalled loop stalled.
void ClosePopups() {
  while (QWidget* popup = QApplication::activePopupWidget()) {
    if (!popup->close()) return;
  }
}

/// True where Tab stops at `control`: of a group of options at one alone.
bool IsTabStop(QWidget* control) {
  if (!TakesFocus(*control) || (control->focusPolicy() & Qt::TabFocus) == 0) return false;
  auto* option = qobject_cast<OptionButton*>(control);
  return option == nullptr || option->GroupTabStop() == option;
}

bool SameGroup(QWidget* a, QWidget* b) {
  return a != nullptr && qobject_cast<OptionButton*>(a) != nullptr && qobject_cast<OptionButton*>(b) != nullptr &&
         a->parentWidget() == b->parentWidget();
}

/// Where in `order` the way goes on from a group of options that has the focus itself: ahead of its first option. From
/// nowhere it starts at the end of the form.
int PlaceOfGroup(const std::vector<QWidget*>& order, const QWidget* group, bool forward) {
  const auto inside = [group](const QWidget* control) { return group != nullptr && group->isAncestorOf(control); };
  const auto first = std::find_if(order.begin(), order.end(), inside);
  const auto place = static_cast<int>(first - order.begin());
  if (first != order.end()) return forward ? place - 1 : place;
  return forward ? -1 : place;
}

}  // namespace

Form::Form(const char* name, const char* title, Border border, Twips width, Twips height, TitleButtons buttons,
           double points)
    : QWidget(nullptr, WindowFlagsFor(border, buttons)),
      m_inner(new QWidget(this)),
      m_sizable(buttons == TitleButtons::kMinimiseMaximise),
      m_innerSize(width / kTwipsPerPixel, height / kTwipsPerPixel) {
  setObjectName(QString::fromUtf8(name));
  SetTitle(QString::fromUtf8(title));
  setFont(FormFont(points));
  m_measuringFont = font();
  ResizeWindow();
  PlaceInner();
  InputGate::Instance();
  AdoptPalette();
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { FollowFocus(now); });
}

Form::~Form() {
  // The focus may still move while the controls go, and this is no form any more.
  disconnect(qApp, nullptr, this, nullptr);
}

QMenuBar& Form::MenuBar() {
  if (m_menuBar == nullptr) {
    m_menuBar = new QMenuBar(this);
    m_menuBar->setNativeMenuBar(false);
    m_menuBar->setStyle(FormStyle::Instance());
    ResizeWindow();
  }
  return *m_menuBar;
}

void Form::SetMenuFontSize(double points) {
  if (m_menuBar == nullptr || size() == m_menuSizedFor) return;
  const int former = m_menuBar->sizeHint().height();
  const bool sizedByInner = size() == m_innerSize + QSize(0, former);
  QFont menu = font();
  if (m_firstMenuPoints == 0.0) m_firstMenuPoints = points;
  menu.setPointSizeF(std::max(points, m_firstMenuPoints));
  m_menuBar->setFont(menu);
  QApplication::setFont(menu, "QMenu");
  platform::SetMessageFont(menu);
  if (sizedByInner) ResizeWindow();
  m_menuSizedFor = size();
  PlaceInner();
  RaiseResize();
}

void Form::SetTitle(const QString& title) {
  m_title = platform::Printable(title).replace(QLatin1Char('\n'), QChar(QChar::ReplacementCharacter));
  // The toolkit takes "[*]" for its own mark of a changed document and drops it; two stand for one that is shown.
  QString shown = m_title;
  setWindowTitle(shown.replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
}

Twips Form::ScaleWidth() const { return m_inner->width() * kTwipsPerPixel; }

Twips Form::ScaleHeight() const { return m_inner->height() * kTwipsPerPixel; }

void Form::SetInnerSize(Twips width, Twips height) {
  m_innerSize = QSize(width / kTwipsPerPixel, height / kTwipsPerPixel);
  ResizeWindow();
  PlaceInner();
  RaiseResize();
}

void Form::CoverForm(const Form& other) {
  const int menuBar = m_menuBar != nullptr ? m_menuBar->sizeHint().height() : 0;
  SetInnerSize(other.width() * kTwipsPerPixel, (other.height() - menuBar) * kTwipsPerPixel);
  move(other.pos());
}

// The frames of both windows count as equal: a window that was never shown doesn't know its own.
void Form::CentreOn(const Form& other) {
  const QSize margins = (other.size() - size()) / 2;
  move(other.pos() + QPoint(margins.width(), margins.height()));
}

double Form::TextWidth(const QString& text) const {
  return QFontMetricsF(m_measuringFont, this).horizontalAdvance(text) * kTwipsPerPixel;
}

double Form::TextHeight(const QString& text) const {
  const auto lines = static_cast<double>(text.count(QLatin1Char('\n')) + 1);
  return QFontMetricsF(m_measuringFont, this).height() * lines * kTwipsPerPixel;
}

bool Form::SetMeasuringFontSize(double points) {
  constexpr double kLargest = 400.0;
  if (!(points > 0.0 && points <= kLargest)) return false;
  m_measuringFont.setPointSizeF(points);
  return true;
}

bool Form::Open() {
  if (m_unloaded) return false;
  Q_EMIT Load();
  if (m_unloaded) return false;
  // With no focus of its own the window would get it from the toolkit at the first control, and that may be an option.
  if (focusWidget() == nullptr || qobject_cast<OptionButton*>(focusWidget()) != nullptr) FocusSafely();
  return true;
}

void Form::Show() {
  if (Open()) show();
}

void Form::ShowModal() {
  QWidget* opener = QApplication::activeWindow();
  if (!Open()) return;
  setWindowModality(Qt::ApplicationModal);
  winId();
  if (opener != nullptr && opener != this) windowHandle()->setTransientParent(opener->windowHandle());
  QEventLoop loop;
  m_modalLoop = &loop;
  show();
  if (!m_unloaded) loop.exec();
  m_modalLoop = nullptr;
  UnloadForm();  // where the loop ended because the program does
}

void Form::UnloadForm() {
  if (m_unloaded) return;
  m_unloaded = true;
  Q_EMIT Unload();
  if (isVisible()) close();
  if (m_modalLoop != nullptr) m_modalLoop->quit();
}

void Form::HideAndShow() {
  if (!isVisible()) return;
  ClosePopups();
  move(pos());  // else the window system places the window anew
  hide();
  show();
}

void Form::MoveFocus(bool forward) {
  const std::vector<QWidget*> order = ReadingOrder(*m_inner);
  const auto count = static_cast<int>(order.size());
  const auto found = std::find(order.begin(), order.end(), focusWidget());
  QWidget* current = found != order.end() ? *found : nullptr;
  int at = current != nullptr ? static_cast<int>(found - order.begin()) : PlaceOfGroup(order, focusWidget(), forward);
  for (int tried = 0; tried < count; ++tried) {
    at = (at + (forward ? 1 : count - 1)) % count;
    QWidget* next = order[static_cast<std::size_t>(at)];
    if (!IsTabStop(next) || SameGroup(current, next)) continue;
    next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return;
  }
}

// The toolkit asks for this when the focused control is disabled or hidden; the Tab key goes through MoveFocus.
bool Form::focusNextPrevChild(bool /*next*/) {
  FocusSafely();
  return true;
}

void Form::FocusSafely() {
  QWidget* target = SafeTarget();
  // With the focus at nothing the toolkit would give it to the first option when the window is activated again.
  (target != nullptr ? target : m_inner)->setFocus(Qt::OtherFocusReason);
}

QWidget* Form::SafeTarget() const {
  if (m_safeFocus != nullptr && TakesFocus(*m_safeFocus)) return m_safeFocus;
  std::vector<QWidget*> order = ReadingOrder(*m_inner);
  const auto current = std::find(order.begin(), order.end(), focusWidget());
  if (m_safeFocus != nullptr && current != order.end()) std::rotate(order.begin(), current + 1, order.end());
  const auto safe = std::find_if(order.begin(), order.end(), [](QWidget* control) {
    return qobject_cast<OptionButton*>(control) == nullptr && IsTabStop(control);
  });
  return safe != order.end() ? *safe : nullptr;
}

void Form::FollowFocus(QWidget* now) {
  if (now != nullptr) {
    const bool control = now->window() == this && qobject_cast<QMenuBar*>(now) == nullptr;
    if (control) m_focusedControl = now != m_inner ? now : nullptr;
    return;
  }
  if (!isActiveWindow() || !isVisible()) return;
  // A frame that is disabled takes the focus from what stands in it and gives it to nothing. Posted, since a control
  // that is being destroyed does so too, and it must not get the focus again.
  m_focusedControl = nullptr;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (focusWidget() == nullptr) FocusSafely();
      },
      Qt::QueuedConnection);
}

void Form::ResizeWindow() {
  QSize size = m_innerSize;
  if (m_menuBar != nullptr) size.rheight() += m_menuBar->sizeHint().height();
  if (m_sizable) {
    resize(size);
  } else {
    setFixedSize(size);
  }
}

void Form::PlaceInner() {
  const int top = m_menuBar != nullptr ? m_menuBar->sizeHint().height() : 0;
  if (m_menuBar != nullptr) m_menuBar->setGeometry(0, 0, width(), top);
  m_inner->setGeometry(0, top, width(), std::max(0, height() - top));
}

void Form::RaiseResize() {
  if (isMinimized() || m_unloaded || m_raisedSize == m_inner->size()) return;
  m_raisedSize = m_inner->size();
  Q_EMIT Resize();
}

void Form::closeEvent(QCloseEvent* event) {
  event->accept();
  UnloadForm();
}

void Form::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  QAbstractButton* button = event->key() == Qt::Key_Escape ? m_cancelButton : enter ? m_defaultButton : nullptr;
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == 0 && !event->isAutoRepeat();
  if (plain && event->key() == Qt::Key_F10 && m_menuBar != nullptr) {
    m_menuBar->setActiveAction(m_menuBar->actions().constFirst());
  } else if (button == nullptr || !plain) {
    QWidget::keyPressEvent(event);
  } else if (button->isVisible()) {
    button->click();
  }
}

void Form::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceInner();
  RaiseResize();
}

void Form::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  // Some systems give a window its new size while it is minimised, and none when it is restored.
  if (event->type() == QEvent::WindowStateChange) RaiseResize();
}

bool Form::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) PlaceInner();
  if (event->type() == QEvent::ApplicationPaletteChange) AdoptPalette();
  if (event->type() == QEvent::WindowActivate) {
    if (focusWidget() == nullptr || !focusWidget()->isVisible()) FocusSafely();
    // Posted: the toolkit is still busy with the window, and a handler may take its time.
    QMetaObject::invokeMethod(
        this,
        [this] {
          if (!m_unloaded) Q_EMIT Activate();
        },
        Qt::QueuedConnection);
  }
  return QWidget::event(event);
}

Form& FormOf(const QWidget& control) {
  auto* form = qobject_cast<Form*>(control.window());
  Q_ASSERT(form != nullptr);
  return *form;
}

}  // namespace tarnwell::forms
