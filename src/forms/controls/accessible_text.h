#pragma once

class QAccessibleInterface;

namespace tarnwell::forms {

class TextBox;

/// The accessible interface of a text box: what a tool types passes the same handlers as keys, and its press is Enter.
QAccessibleInterface* NewAccessibleTextBox(TextBox& box);

}  // namespace tarnwell::forms
