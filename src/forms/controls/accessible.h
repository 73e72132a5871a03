#pragma once

class QWidget;

namespace tarnwell::forms {

/// Gives the kit's controls their accessible interfaces. To be called once an application is there; later calls do
/// nothing.
void InstallAccessibility();

/// True where an assistive tool may act on `control` as mouse and keys do: it could take the focus, stands in front,
/// and was drawn as it is now.
bool TakesAssistiveAct(const QWidget& control);

/// True for what stands on a page that another one covers, or that is out of sight.
bool IsCovered(const QWidget& control);

}  // namespace tarnwell::forms
