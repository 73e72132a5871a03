#include "forms/pages.h"

#include <QApplication>
#include <algorithm>

namespace tarnwell::forms {

void PlacePage(const TabStrip& tabs, Frame& page) {
  page.move(tabs.ClientLeft() / kTwipsPerPixel, tabs.ClientTop() / kTwipsPerPixel);
}

void ShowSelectedPage(TabStrip& tabs, std::initializer_list<Frame*> pages) {
  // Else the page that is disabled would hand the focus to a button that nobody chose.
  const QWidget* focused = QApplication::focusWidget();
  const auto holdsFocus = [focused](const Frame* page) { return focused != nullptr && page->isAncestorOf(focused); };
  if (std::any_of(pages.begin(), pages.end(), holdsFocus)) tabs.setFocus();

  int tab = 0;
  for (Frame* page : pages) {
    const bool selected = ++tab == tabs.SelectedTab();
    page->setEnabled(selected);
    if (!selected) continue;
    PlacePage(tabs, *page);
    page->raise();
  }
}

}  // namespace tarnwell::forms
