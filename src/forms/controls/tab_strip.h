#pragma once

#include <QStringList>
#include <QTabBar>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// A row of tabs above a client area. The pages are frames of the form, which logic brings to the front.
class TabStrip : public QWidget {
  Q_OBJECT

 public:
  TabStrip(const char* name, Container container, std::initializer_list<const char*> captions);

  /// The selected tab, 1 the first.
  int SelectedTab() const { return m_tabs->currentIndex() + 1; }
  /// Selects a tab from code; raises nothing.
  void SelectTab(int tab);

  /// The part under the tabs, in twips, in the container's coordinates.
  Twips ClientLeft() const;
  Twips ClientTop() const;
  Twips ClientWidth() const;
  Twips ClientHeight() const;

 Q_SIGNALS:
  /// The operator chose a tab.
  void Click();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QRect ClientArea() const;
  void PlaceTabs();

  QTabBar* m_tabs;
};

}  // namespace tarnwell::forms
