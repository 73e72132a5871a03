#pragma once

#include <QTime>
#include <QWidget>
#include <vector>

namespace tarnwell::forms {

/// The controls that show what one question to the device is answered.
using Shown = std::vector<QWidget*>;

/// The question was answered at that time of day: what they show is live.
void ShowAnswered(const Shown& controls, const QTime& now);

/// The question had no answer at its last turn. What they show stays, and is drawn dimmed until it is answered; their
/// tool tip says since when.
void ShowUnanswered(const Shown& controls);

/// What they show isn't known to be so, for the reason that their tool tip gives, until the question is answered; where
/// `why` is empty, they are live.
void ShowDoubtful(const Shown& controls, const QString& why);

/// They are to show another device, which hasn't been asked yet.
void ForgetAnswers(const Shown& controls);

bool IsOld(const QWidget& control);

/// `text` as a tool tip, which takes what looks like markup for markup.
QString PlainToolTip(const QString& text);

/// The tool tip that `control` has while what it shows isn't old.
void SetOwnToolTip(QWidget& control, const QString& text);

}  // namespace tarnwell::forms
