#include "forms/view.h"

#include <QApplication>

#include "forms/controls/drawing.h"

// Outside every namespace, as the macro demands. A static library's resources are linked only where somebody asks.
static void UsePictures() { Q_INIT_RESOURCE(pictures); }

namespace tarnwell::forms {

void PairUp(std::initializer_list<CaptionOf> pairs) {
  for (const CaptionOf& pair : pairs) pair.caption.setBuddy(&pair.field);
}

void NameSpins(std::initializer_list<SpinOf> spins) {
  for (const SpinOf& row : spins) {
    QString name = row.caption.Caption();
    name.remove(QLatin1Char('&'));
    if (name.endsWith(QLatin1Char(':'))) name.chop(1);
    row.spin.setAccessibleName(name);
    const UpDown& spin = row.spin;
    QString limits = QStringLiteral("%1 to %2").arg(spin.Shown(spin.Minimum())).arg(spin.Shown(spin.Maximum()));
    if (spin.Increment() != 1) limits += QStringLiteral(", arrow keys step %1").arg(spin.Shown(spin.Increment()));
    row.field.setAccessibleDescription(limits);
  }
}

// One for all forms, read once.
void GiveIcon() {
  UsePictures();
  if (QApplication::windowIcon().isNull()) {
    QApplication::setWindowIcon(Drawing(QStringLiteral(":/pictures/tarnwell.svg")));
  }
}

}  // namespace tarnwell::forms
