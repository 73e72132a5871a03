#pragma once

#include <QAction>

#include "forms/controls/control.h"

class QMenu;

namespace tarnwell::forms {

/// A menu of the menu bar, or an entry of a menu.
class Menu : public QObject {
  Q_OBJECT

 public:
  /// A menu of the form's menu bar.
  Menu(const char* name, Form& form, const char* caption);
  /// An entry of `menu`.
  Menu(const char* name, Menu& menu, const char* caption);

  QString Caption() const;
  void SetCaption(const QString& caption);
  bool isEnabled() const;
  void setEnabled(bool enabled);

 Q_SIGNALS:
  void Click();

 private:
  QAction* m_action;
  QMenu* m_menu = nullptr;  ///< null for an entry
};

}  // namespace tarnwell::forms
