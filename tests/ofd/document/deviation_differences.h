#pragma once

#include <QMap>
#include <QString>

// What a document with a deviation tells that the plain document does not ("+") and the other way round ("-"), line by
// line. A deviation that is not in the map must make no difference at all.
const QMap<QString, QString>& DeviationDifferences();
