#pragma once

#include <QColor>
#include <QHash>
#include <QObject>
#include <QString>

namespace vellumry {

class CategoryColorService;

/// The colours of the collections as the views paint them. Reading a colour from the settings takes
/// far longer than painting a dot, so each is kept until refresh(). Main thread only.
class CollectionColors : public QObject {
    Q_OBJECT

public:
    /// The service outlives the object.
    explicit CollectionColors(CategoryColorService& service, QObject* parent = nullptr);

    [[nodiscard]] QColor color(const QString& collection) const;

    /// Stores a colour text (the name of a preset, or "#RRGGBB") for a collection.
    void setColor(const QString& collection, const QString& colorText);

    /// Reads all colours anew.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    CategoryColorService& service;
    mutable QHash<QString, QColor> known;
};

} // namespace vellumry
