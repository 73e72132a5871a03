#pragma once

#include <QWidget>
#include <vector>

namespace tarnwell::forms {

class OptionButton;

/// The controls inside `container` that take the focus by their kind, also those that are hidden or disabled now, in
/// the order in which a page is read: row by row, a frame's content at the frame's place.
std::vector<QWidget*> ReadingOrder(const QWidget& container);

/// True while the focus could go to `control`: it is enabled, visible, and its place is inside the form.
bool TakesFocus(const QWidget& control);

/// Where the access key of `container` leads: its first control that takes the focus, of a group of options the
/// selected one. A group without a selected option that takes it gets the focus itself, for any of its options would be
/// a command. Null where nothing takes the focus.
QWidget* EntryPoint(QWidget& container);

/// The option at which an arrow key arrives when the group itself, `frame`, has the focus: the selected one, else the
/// first or last that takes the focus. Null where none does.
OptionButton* EntryOption(const QWidget& frame, bool forward);

}  // namespace tarnwell::forms
