#include "forms/controls/reading_order.h"

#include <algorithm>

#include "forms/controls/form.h"
#include "forms/controls/frame.h"
#include "forms/controls/option_button.h"

namespace tarnwell::forms {

namespace {

/// Half of this, in pixels, is how far the tops of a row's neighbours differ at most, however tall one of them is.
constexpr int kRowHeight = 24;

std::vector<QWidget*> Children(const QWidget& container) {
  std::vector<QWidget*> children;
  for (QWidget* child : container.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (!child->isWindow()) children.push_back(child);
  }
  return children;
}

bool Higher(const QWidget* a, const QWidget* b) { return a->y() < b->y(); }
bool FurtherLeft(const QWidget* a, const QWidget* b) { return a->x() < b->x(); }

void SortByColumns(std::vector<QWidget*>& widgets) {
  std::stable_sort(widgets.begin(), widgets.end(), Higher);
  std::stable_sort(widgets.begin(), widgets.end(), FurtherLeft);
}

void SortByRows(std::vector<QWidget*>& widgets) {
  std::stable_sort(widgets.begin(), widgets.end(), Higher);
  for (auto row = widgets.begin(); row != widgets.end();) {
    const int limit = (*row)->y() + std::min((*row)->height(), kRowHeight) / 2;
    const auto end = std::find_if(row, widgets.end(), [&](const QWidget* w) { return w != *row && w->y() >= limit; });
    std::stable_sort(row, end, FurtherLeft);
    row = end;
  }
}

}  // namespace

std::vector<QWidget*> ReadingOrder(const QWidget& container) {
  std::vector<QWidget*> children = Children(container);
  const auto* frame = qobject_cast<const Frame*>(&container);
  frame != nullptr && frame->IsInColumns() ? SortByColumns(children) : SortByRows(children);
  std::vector<QWidget*> order;
  for (QWidget* child : children) {
    if (child->focusPolicy() != Qt::NoFocus) {
      order.push_back(child);
      continue;
    }
    const std::vector<QWidget*> inside = ReadingOrder(*child);
    order.insert(order.end(), inside.begin(), inside.end());
  }
  return order;
}

bool TakesFocus(const QWidget& control) {
  auto* form = qobject_cast<Form*>(control.window());
  if (form == nullptr || !control.isEnabled() || !control.isVisibleTo(form)) return false;
  // A page that isn't in front may stand far to the left of the form, enabled and "visible".
  const QRect place(control.mapTo(&form->Inner(), QPoint()), control.size());
  return place.intersects(form->Inner().rect());
}

QWidget* EntryPoint(QWidget& container) {
  for (QWidget* control : ReadingOrder(container)) {
    if (!TakesFocus(*control) || (control->focusPolicy() & Qt::TabFocus) == 0) continue;
    auto* option = qobject_cast<OptionButton*>(control);
    if (option == nullptr) return control;
    OptionButton* stop = option->GroupTabStop();
    return stop != nullptr ? stop : option->parentWidget();
  }
  return nullptr;
}

OptionButton* EntryOption(const QWidget& frame, bool forward) {
  std::vector<OptionButton*> options;
  for (QWidget* control : ReadingOrder(frame)) {
    auto* option = qobject_cast<OptionButton*>(control);
    if (option != nullptr && option->parentWidget() == &frame && TakesFocus(*option)) options.push_back(option);
  }
  if (options.empty()) return nullptr;
  OptionButton* stop = options.front()->GroupTabStop();
  return stop != nullptr ? stop : forward ? options.front() : options.back();
}

}  // namespace tarnwell::forms
