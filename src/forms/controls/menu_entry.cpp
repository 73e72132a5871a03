#include "forms/controls/menu_entry.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include "forms/controls/input_gate.h"

namespace tarnwell::forms {

Menu::Menu(const char* name, Form& form, const char* caption)
    : QObject(&form), m_menu(form.MenuBar().addMenu(QString::fromUtf8(caption))) {
  m_action = m_menu->menuAction();
  setObjectName(QString::fromUtf8(name));
  m_action->setObjectName(objectName());
}

Menu::Menu(const char* name, Menu& menu, const char* caption)
    : QObject(menu.parent()), m_action(menu.m_menu->addAction(QString::fromUtf8(caption))) {
  setObjectName(QString::fromUtf8(name));
  m_action->setObjectName(objectName());
  // An assistive tool reaches the menu of a form that stands behind a modal one, and waits until its call returns.
  connect(m_action, &QAction::triggered, this, [this] {
    InputGate::Instance().ActLater([entry = QPointer<Menu>(this)] {
      if (entry == nullptr || !entry->m_action->isEnabled()) return;
      const QWidget* modal = QApplication::activeModalWidget();
      if (modal == nullptr || modal == entry->parent()) Q_EMIT entry->Click();
    });
  });
}

QString Menu::Caption() const { return m_action->text(); }

void Menu::SetCaption(const QString& caption) { m_action->setText(caption); }

bool Menu::isEnabled() const { return m_action->isEnabled(); }

void Menu::setEnabled(bool enabled) { m_action->setEnabled(enabled); }

}  // namespace tarnwell::forms
