#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

#include "tools/shared/chart.h"

namespace tarnwell::tools {

/// A picture with charts.
struct Page {
  QString title;
  QString details;          ///< below the title, smaller
  QStringList legend = {};  ///< one a series, in the order of every chart's; none where there is one
  std::vector<Chart> charts = {};
  QStringList notes = {};  ///< below the charts
  bool oneARow = false;    ///< charts over the whole width, and not two beside one another
};

/// The page as a file's bytes; `format` is "svg" or "png". Needs a QGuiApplication.
QByteArray DrawPage(const Page& page, const QString& format);

}  // namespace tarnwell::tools
