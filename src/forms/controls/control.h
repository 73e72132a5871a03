#pragma once

#include <QWidget>

#include "forms/controls/dimming.h"
#include "forms/controls/form.h"
#include "forms/controls/settings.h"

namespace tarnwell::forms {

/// Gives a new control its object name, tool tip and the settings that every kind has.
void InitControl(QWidget& control, const char* name, const char* toolTip, const Settings& settings);

/// True for the reasons by which a focus goes for a while and comes back, and never left in the operator's eyes.
bool IsLent(Qt::FocusReason reason);

/// Places a control in its container, in twips; edges are rounded to pixels, so that neighbours meet.
void Place(QWidget& control, Twips left, Twips top, Twips width, Twips height);

void SetFontSize(QWidget& control, double points);
double FontSize(const QWidget& control);

void SetBold(QWidget& control, bool bold);
bool Bold(const QWidget& control);

}  // namespace tarnwell::forms
