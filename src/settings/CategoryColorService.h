#pragma once

#include "platform/PreferencesStore.h"

#include <QColor>
#include <QMap>
#include <QString>

#include <optional>
#include <span>

namespace vellumry {

/// The colours of the collections, by collection name, as this machine shows them. A colour text
/// is the name of a preset, or hexadecimal digits behind a "#". Everything unknown or unreadable
/// is gray. As safe to use from any thread as the preferences; a change is load, edit, save.
class CategoryColorService {
public:
    struct Preset {
        QString name;
        QColor color;
    };

    /// `store` outlives the service.
    explicit CategoryColorService(PreferencesStore& store) : preferences(store) {}

    /// The one that the program uses.
    [[nodiscard]] static CategoryColorService& shared();

    /// The colour text by collection name; empty when nothing readable is stored.
    [[nodiscard]] QMap<QString, QString> loadColors() const;
    void saveColors(const QMap<QString, QString>& colors);

    /// The colour to show for a collection.
    [[nodiscard]] QColor getColor(const QString& collectionName) const;

    /// The same as hexadecimal text. A stored "#" text comes back unchecked; nothing for a preset
    /// that does not exist.
    [[nodiscard]] std::optional<QString> getColorHex(const QString& collectionName) const;

    /// The same of colours that are loaded once for many collections.
    [[nodiscard]] static std::optional<QString> hexOf(const QMap<QString, QString>& colors,
                                                      const QString& collectionName);

    /// The colours to choose from, in the order of the menu.
    [[nodiscard]] static std::span<const Preset> presetColors();

private:
    PreferencesStore& preferences;
};

/// Reads RRGGBB or RRGGBBAA; every "#" in it and white space around it count for nothing. The
/// reading stops at the first character that is no hexadecimal digit, but the count of all
/// characters decides between the two forms.
[[nodiscard]] std::optional<QColor> colorFromHex(const QString& text);

/// "#RRGGBB" of the colour in sRGB, each channel cut to an integer, without alpha. "#808080" of
/// an invalid colour.
[[nodiscard]] QString toHex(const QColor& color);

} // namespace vellumry
