#include "forms/pages.h"

namespace tarnwell::forms {

void ShowSelectedPage(TabStrip& tabs, std::initializer_list<Frame*> pages) {
  int tab = 0;
  for (Frame* page : pages) {
    const bool selected = ++tab == tabs.SelectedTab();
    page->setEnabled(selected);
    if (!selected) continue;
    page->move(tabs.ClientLeft() / kTwipsPerPixel, tabs.ClientTop() / kTwipsPerPixel);
    page->raise();
  }
}

}  // namespace tarnwell::forms
