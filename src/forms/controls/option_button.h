#pragma once

#include <QPointer>
#include <QRadioButton>
#include <optional>
#include <vector>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// -1 or +1 for an arrow key by which an operator goes through a group of options, otherwise 0.
int StepOf(const QKeyEvent& event);

/// One of a group of options; its group is its container. An option acts when it gets the focus (GotFocus), or, built
/// with kActsOnClick, on its click (Click). A click or the space bar on the focused one is an arrival too unless it is
/// selected: the device may have chosen another meanwhile. No handler runs inside the toolkit's own focus or mouse
/// event.
class OptionButton : public QRadioButton {
  Q_OBJECT

 public:
  OptionButton(const char* name, Container container, const char* caption, const char* toolTip = "",
               Settings settings = {});

  QString Caption() const { return text(); }
  bool Value() const { return isChecked(); }

  /// Selects the option from code. Raises nothing; with kActsOnClick it raises Click, inside the call, if the option
  /// wasn't selected.
  void Select();

  /// Clears the option from code, so that none of its group may be selected. Raises nothing.
  void Deselect();

  /// The device's word on the operator's choice was none: the option that was selected ahead of it is so again. Does
  /// nothing where code has selected an option of the group since. Raises nothing.
  void TakeBack();

  /// Where Tab and Shift-Tab reach the group: the selected option. Null when none is selected, or that one takes no
  /// focus now or is old: passing through would command what the device isn't known to be at.
  OptionButton* GroupTabStop();

  /// The operator arrives here by an arrow key.
  void Arrive(Qt::FocusReason reason) { ArriveSelecting(reason); }

 Q_SIGNALS:
  void GotFocus();
  void Click();

 protected:
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void nextCheckState() override;

 private:
  enum class Arrival { kPlain, kSelecting };

  std::vector<OptionButton*> Group() const;
  void ArriveSelecting(Qt::FocusReason reason);
  void Choose(Qt::FocusReason reason);
  void NoteArrival(Arrival arrival);
  void ActOnArrival(Arrival arrival);
  void RememberFormer();
  /// Says the group and this option once: the device has another choice than the operator's.
  void Announce();
  void ShowSelected();
  void MoveInGroup(int step);

  bool m_actsOnClick;
  std::optional<QPointer<OptionButton>>
      m_former;                 ///< selected ahead of the operator's choice; there until code selects
  bool m_selectingDue = false;  ///< an arrival that selects has been noted and not acted on
};

}  // namespace tarnwell::forms
