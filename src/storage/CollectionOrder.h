#pragma once

#include "models/SyncCollection.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace vellumry {

/// Puts the collections into the order of the ids; those without a place keep theirs at the end.
/// An id that stands twice in `order` ends the process, which names `orderFile` as where it stands.
void arrangeByOrder(QList<SyncCollection>& collections, const QStringList& order,
                    const QString& orderFile);

/// The colours of those that have one, by name; the last of a name wins.
[[nodiscard]] QMap<QString, QString> colorsByName(const QList<SyncCollection>& collections);

} // namespace vellumry
