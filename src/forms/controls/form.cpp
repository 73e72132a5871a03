#include "forms/controls/form.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMenuBar>
#include <QWindow>

#include "forms/controls/accessible.h"
#include "forms/controls/announcement.h"
#include "forms/controls/dimming.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/option_button.h"
#include "platform/desktop.h"
#include "platform/posted_call.h"
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

}  // namespace

Form::Form(const char* name, const char* title, Border border, Twips width, Twips height, TitleButtons buttons,
           double points)
    : QWidget(nullptr, WindowFlagsFor(border, buttons)),
      m_inner(new QWidget(this)),
      m_announcement(new Announcement(*this)),
      m_sizable(buttons == TitleButtons::kMinimiseMaximise),
      m_innerSize(width / kTwipsPerPixel, height / kTwipsPerPixel) {
  InstallAccessibility();
  setObjectName(QString::fromUtf8(name));
  SetTitle(QString::fromUtf8(title));
  setFont(FormFont(points));
  m_measuringFont = font();
  ResizeWindow();
  PlaceInner();
  InputGate::Instance();
  AdoptPalette();
  connect(this, &Form::Activate, m_announcement, &Announcement::SayDue);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { FollowFocus(now); });
}

Form::~Form() {
  // The focus may still move while the controls go, and this is no form any more.
  disconnect(qApp, nullptr, this, nullptr);
}

void Form::SetTitle(const QString& title) {
  const QString former = m_title;
  m_title = platform::Printable(title).replace(QLatin1Char('\n'), QChar(QChar::ReplacementCharacter));
  // The toolkit takes "[*]" for its own mark of a changed document and drops it; two stand for one that is shown.
  QString shown = m_title;
  setWindowTitle(shown.replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
  if (m_title == former) return;
  QAccessibleEvent told(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&told);
}

void Form::Announce(const QString& text) { m_announcement->Say(text); }

void Form::AnnounceOnReturn(const QString& text) { m_announcement->SayLater(text); }

bool Form::Open() {
  if (m_unloaded) return false;
  Q_EMIT Load();
  if (m_unloaded) return false;
  // With no focus of its own the window would get it from the toolkit at the first control, and that may be an option.
  if (focusWidget() == nullptr || qobject_cast<OptionButton*>(focusWidget()) != nullptr) FocusFirst();
  return true;
}

void Form::Show() {
  if (Open()) show();
}

void Form::ShowModal() {
  QWidget* opener = platform::FrontWindow();
  if (!Open()) return;
  setWindowModality(Qt::ApplicationModal);
  winId();
  if (opener != nullptr) windowHandle()->setTransientParent(opener->windowHandle());
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
  } else if (button == nullptr || !plain || IsFocusParked()) {
    QWidget::keyPressEvent(event);
  } else if (button->isVisible()) {
    button->click();
  }
}

bool Form::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) PlaceInner();
  if (event->type() == QEvent::ApplicationPaletteChange) AdoptPalette();
  if (event->type() == QEvent::WindowBlocked) Q_EMIT Blocked();
  if (event->type() == QEvent::WindowActivate) {
    if (focusWidget() == nullptr || !focusWidget()->isVisible()) {
      ParkFocus(m_focusedControl);
      LendFocusBack();  // it may be live again already
    }
    // Posted: the toolkit is still busy with the window, and a handler may take its time.
    platform::PostCall(*this, [this] {
      if (!m_unloaded) Q_EMIT Activate();
    });
  }
  return QWidget::event(event);
}

Form& FormOf(const QWidget& control) {
  auto* form = qobject_cast<Form*>(control.window());
  Q_ASSERT(form != nullptr);
  return *form;
}

}  // namespace tarnwell::forms
