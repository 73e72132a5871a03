#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include "tools/vorel-snapshot/snapshot.h"

namespace tarnwell::vorel_snapshot {

/// Bytes of a file as text for the reader; control characters are replaced.
QString Text(std::string_view bytes);

/// "43.2 dBm", "disabled", "none (NA)", "not read (#ERR)".
QString ValueText(const Value& value, std::string_view unit);

/// The same of an entry with one value; of a list its alarms with commas, or "NONE".
QString EntryText(const Entry& entry);

/// "(27, 1.22)", as in the file.
QString PointText(const Point& point);

/// "temperature (°C)"
QString FieldTitle(const Field& field);

/// "rack2.txt:12: column 4: ..."
QString FaultText(const QString& file, const Fault& fault);

/// All of them, one a line.
QString FaultLines(const QString& file, const Snapshot& snapshot);

/// "whole", "whole, 107 values not read", "damaged", "not a snapshot".
QString StateText(const Snapshot& snapshot);

/// ", 107 values not read"; empty where all were. A table's point is one value.
QString NotReadText(const Snapshot& snapshot);

/// What the device calls itself.
QString Model(const Snapshot& snapshot);

/// The time that stands in the file, or an invalid one. It has no zone: the reader's may lack that hour, so that the
/// clock's digits stand as UTC.
QDateTime TimeOf(const QString& text);

/// "2007-03-14T09:26:41"
QString IsoTime(const QDateTime& time);

/// The same of a time as it stands in the file, or the text as it is where it is no date.
QString IsoTime(const QString& text);

/// "amplifier", "redundancy controller" or "not a snapshot".
QString KindText(const Snapshot& snapshot);

/// The text of the entry with that label, or nothing.
QString TextOf(const Snapshot& snapshot, std::string_view label);

}  // namespace tarnwell::vorel_snapshot
