#include "forms/view.h"

#include <QIcon>

// Outside every namespace, as the macro demands. A static library's resources are linked only where somebody asks.
static void UsePictures() { Q_INIT_RESOURCE(pictures); }

namespace tarnwell::forms {

void PairUp(std::initializer_list<CaptionOf> pairs) {
  for (const CaptionOf& pair : pairs) pair.caption.setBuddy(&pair.field);
}

void GiveIcon(Form& form) {
  UsePictures();
  form.setWindowIcon(QIcon(QStringLiteral(":/pictures/tarnwell.svg")));
}

}  // namespace tarnwell::forms
