#include "views/common/CollectionColors.h"

#include "settings/CategoryColorService.h"

namespace vellumry {

CollectionColors::CollectionColors(CategoryColorService& colors, QObject* parent)
    : QObject(parent), service(colors)
{
}

QColor CollectionColors::color(const QString& collection) const
{
    const auto found = known.constFind(collection);
    if (found != known.constEnd())
        return *found;
    return *known.insert(collection, service.getColor(collection));
}

void CollectionColors::setColor(const QString& collection, const QString& colorText)
{
    auto colors = service.loadColors();
    colors.insert(collection, colorText);
    service.saveColors(colors);
    refresh();
}

void CollectionColors::refresh()
{
    known.clear();
    Q_EMIT changed();
}

} // namespace vellumry
