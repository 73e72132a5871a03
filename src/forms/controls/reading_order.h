#pragma once

#include <QWidget>
#include <vector>

namespace tarnwell::forms {

/// The controls inside `container` that take the focus by their kind, also those that are hidden or disabled now, in
/// the order in which a page is read: row by row, a frame's content at the frame's place.
std::vector<QWidget*> ReadingOrder(const QWidget& container);

/// True while the focus could go to `control`: it is enabled, visible, and its place is inside the form.
bool TakesFocus(const QWidget& control);

/// Where the access key of `container` leads: its first control, of a group of options the selected one. Where that
/// one takes no focus, the first that does; null when none does.
QWidget* EntryPoint(const QWidget& container);

}  // namespace tarnwell::forms
