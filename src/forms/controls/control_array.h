#pragma once

#include <QByteArray>
#include <array>
#include <initializer_list>
#include <memory>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// One named control with numbered elements below `Size`; not every number needs to have one. The object name of an
/// element is "cmdAlarms(7)".
template <typename Control, int Size>
class ControlArray {
 public:
  struct Element {
    int index;
    Container container;
    const char* caption = "";
    const char* toolTip = "";
    Settings settings = {};
  };

  explicit ControlArray(const char* name) : m_name(name) {}
  ControlArray(const char* name, std::initializer_list<Element> elements) : ControlArray(name) {
    for (const Element& element : elements) Add(element);
  }
  /// Elements that differ by their number alone.
  ControlArray(const char* name, Container container, std::initializer_list<int> indices, const char* caption = "",
               const char* toolTip = "", Settings settings = {})
      : ControlArray(name) {
    for (const int index : indices) Add({index, container, caption, toolTip, settings});
  }

  void Add(const Element& element) {
    const QByteArray name = QByteArray(m_name) + '(' + QByteArray::number(element.index) + ')';
    m_elements[element.index] = std::make_unique<Control>(name.constData(), element.container, element.caption,
                                                          element.toolTip, element.settings);
  }

  /// Null where the array has no such element.
  Control* operator()(int index) const { return m_elements[index].get(); }
  static constexpr int size() { return Size; }

 private:
  const char* m_name;
  std::array<std::unique_ptr<Control>, Size> m_elements;
};

}  // namespace tarnwell::forms
