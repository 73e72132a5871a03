#pragma once

#include <QAbstractButton>
#include <QFont>
#include <QPointer>
#include <QWidget>

class QEventLoop;
class QMenuBar;

namespace tarnwell::forms {

class Announcement;
class OptionButton;

/// Lengths of the layout, 1/1440 inch; 15 make a logical pixel.
using Twips = int;
inline constexpr int kTwipsPerPixel = 15;

/// The size of a form's font where it names none.
inline constexpr double kDefaultPoints = 8.25;

/// A window that is a view: named controls in an inner area, below the menu bar where it has one. Logic hears of its
/// life through the signals and acts through the controls.
class Form : public QWidget {
  Q_OBJECT

 public:
  enum class Border { kFixedSingle, kFixedDialog };

  /// The buttons of the title bar beside the one that closes.
  enum class TitleButtons { kNone, kMinimiseMaximise };

  /// `width` and `height` are the inner area's, in twips; `points` is the size of the form's own font.
  Form(const char* name, const char* title, Border border, Twips width, Twips height,
       TitleButtons buttons = TitleButtons::kNone, double points = kDefaultPoints);
  ~Form() override;

  /// The widget that holds the controls.
  QWidget& Inner() { return *m_inner; }
  /// Made at the first call. F10 opens its first menu.
  QMenuBar& MenuBar();
  /// Menus and message boxes are read as the form is: its font, at `points`, and never smaller than at the form's first
  /// size. The menu bar takes its height from the inner area; it keeps its font until the window has another size.
  void SetMenuFontSize(double points);

  QString Title() const { return m_title; }
  /// Control characters and line feeds become replacement characters.
  void SetTitle(const QString& title);

  /// Says `text` once to assistive tools.
  void Announce(const QString& text);
  /// Says it when the form is active again, or with what is announced ahead of that. The focus that comes back would
  /// cut what is said at once.
  void AnnounceOnReturn(const QString& text);

  Twips ScaleWidth() const;
  Twips ScaleHeight() const;
  /// Gives the inner area another size; raises Resize at once, also before the form is shown, but for a minimised
  /// form when it is restored.
  void SetInnerSize(Twips width, Twips height);

  /// Takes the place and the size of `other`, before being shown over it.
  void CoverForm(const Form& other);
  /// Takes the place in the middle of `other`, before being shown over it.
  void CentreOn(const Form& other);

  /// The width and height of a text in the form's measuring font, in twips. The measuring font is no control's.
  double TextWidth(const QString& text) const;
  double TextHeight(const QString& text) const;
  void SetMeasuringFont(const QFont& font) { m_measuringFont = font; }
  /// False when the platform can't give the size.
  bool SetMeasuringFontSize(double points);
  double MeasuringFontSize() const { return m_measuringFont.pointSizeF(); }
  const QFont& MeasuringFont() const { return m_measuringFont; }

  /// Raises Load, then shows the form modeless unless Load unloaded it. A form is opened once.
  void Show();

  /// Raises Load, then shows the form application-modal and returns when it has been unloaded.
  void ShowModal();

  /// Raises Unload once, hides the form and ends ShowModal.
  void UnloadForm();
  bool Unloaded() const { return m_unloaded; }

  /// Hides and shows the form again without raising Load or Unload, for a loop that stalls.
  void HideAndShow();

  /// The control that has the focus when the form opens: never an option. Where it is not set, or takes no focus, the
  /// first control of the form that is no option has it.
  void SetFirstFocus(QWidget& control) { m_firstFocus = &control; }

  /// The button that Escape presses, and the one that Enter presses, where the focused control has no use for the key.
  void SetCancelButton(QAbstractButton& button) { m_cancelButton = &button; }
  void SetDefaultButton(QAbstractButton& button) { m_defaultButton = &button; }

  /// Moves the focus as the Tab key does: in reading order, a group of options at its selected one alone.
  void MoveFocus(bool forward);

  /// The control that has the focus in the operator's eyes: also while another window is active or a menu is open.
  QWidget* FocusedControl() const { return m_focusedControl; }

 Q_SIGNALS:
  void Load();
  void Activate();
  void Resize();
  void Unload();
  /// Another form, a message or a dialog has come in front: what runs in this form's yields stands still until it goes.
  void Blocked();

 protected:
  bool focusNextPrevChild(bool next) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend class OptionButton;

  bool Open();
  void ResizeWindow();
  void PlaceInner();
  void RaiseResize();
  void FollowFocus(QWidget* now);
  void FocusFirst();
  void ParkFocus(QWidget* loser);
  void RememberLoser(QWidget* loser);
  bool IsFocusParked() const;
  bool IsLeftAtMenuBar() const;
  void LendFocusBack();

  QString m_title;
  QWidget* m_inner;
  Announcement* m_announcement;
  bool m_sizable;
  QSize m_innerSize;   ///< wanted, in pixels
  QSize m_raisedSize;  ///< the inner area's when Resize was last raised
  QMenuBar* m_menuBar = nullptr;
  QSize m_menuSizedFor;            ///< the window's when the menu's font was last chosen
  double m_firstMenuPoints = 0.0;  ///< the smallest that it may get
  QEventLoop* m_modalLoop = nullptr;
  QFont m_measuringFont;
  QPointer<QWidget> m_firstFocus;
  QPointer<QWidget> m_focusedControl;
  QPointer<QWidget> m_focusLoser;  ///< greyed or hidden under the focus; gets it back when it is live again
  QPointer<QAbstractButton> m_cancelButton;
  QPointer<QAbstractButton> m_defaultButton;
  bool m_unloaded = false;
};

/// What a control stands in: a form's inner area or a frame.
class Container {
 public:
  // NOLINTBEGIN(google-explicit-constructor): a row of a table names the form or the frame itself
  Container(Form& form) : m_widget(&form.Inner()) {}
  Container(QWidget& frame) : m_widget(&frame) {}
  // NOLINTEND(google-explicit-constructor)
  QWidget* Widget() const { return m_widget; }

 private:
  QWidget* m_widget;
};

/// The form that a control stands on.
Form& FormOf(const QWidget& control);

}  // namespace tarnwell::forms
