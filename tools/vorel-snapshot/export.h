#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::vorel_snapshot {

/// Becomes another where a field goes or means something else; a further field is no reason.
inline constexpr int kJsonSchema = 1;

/// One JSON object, UTF-8; its form is told in the manual page.
QByteArray ExportJson(const QString& file, const Snapshot& snapshot);

/// One row of comma-separated values with its line feed; double quotes where a cell needs them.
QString CsvRow(const QStringList& cells);

/// The number, as short as it can be told; empty where there is none.
QString NumberCell(const Value& value);

/// Why there is no number, "disabled", "NA", "#ERR", "lost", or that it isn't sure: "damaged"; else empty.
QString StateCell(const Value& value, bool damaged);

/// Rows of label, point, field, value, unit, state with a heading, UTF-8, line feeds.
QByteArray ExportCsv(const Snapshot& snapshot);

}  // namespace tarnwell::vorel_snapshot
