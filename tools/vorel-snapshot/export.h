#pragma once

#include <QByteArray>

#include "tools/vorel-snapshot/snapshot.h"

class QString;

namespace tarnwell::vorel_snapshot {

/// One JSON object, UTF-8; its form is told in the manual page.
QByteArray ExportJson(const QString& file, const Snapshot& snapshot);

/// Rows of label, point, field, value, unit, state with a heading, UTF-8, line feeds.
QByteArray ExportCsv(const Snapshot& snapshot);

}  // namespace tarnwell::vorel_snapshot
