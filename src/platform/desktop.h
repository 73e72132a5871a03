#pragma once

#include <QString>

namespace tarnwell::platform {

enum class MessageIcon { kNone, kInformation, kWarning, kCritical };

/// One message box. Both texts are plain text; `details` stands below `text`, smaller.
struct Message {
  QString text;
  MessageIcon icon = MessageIcon::kNone;
  QString details = {};
};

/// What the program asks of the desktop beside its windows. One door, so that a test can stand in it.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Shows a modal message box and returns when the operator has closed it.
  virtual void ShowMessage(const Message& message) = 0;

  /// The system beep, once.
  virtual void Beep() = 0;

  /// The busy mouse pointer on or off for the whole program. Not counted: off is off.
  virtual void SetBusyPointer(bool busy) = 0;
};

/// The real desktop, through the toolkit.
class ToolkitDesktop final : public Desktop {
 public:
  void ShowMessage(const Message& message) override;
  void Beep() override;
  void SetBusyPointer(bool busy) override;
};

}  // namespace tarnwell::platform
