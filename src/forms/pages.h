#pragma once

#include <initializer_list>

#include "forms/controls/frame.h"
#include "forms/controls/tab_strip.h"

namespace tarnwell::forms {

/// Moves `page` to the client area that the strip has with its present font.
void PlacePage(const TabStrip& tabs, Frame& page);

/// Enables the page of the selected tab, moves it to the client area and brings it to the front. The others are
/// disabled and stay where they are, covered by it. `pages` stand in the order of the tabs.
void ShowSelectedPage(TabStrip& tabs, std::initializer_list<Frame*> pages);

}  // namespace tarnwell::forms
