#include "settings/CategoryColorService.h"

#include "core/Text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace vellumry {

namespace {

QString storageKey()
{
    return QStringLiteral("categoryColors");
}

const CategoryColorService::Preset* presetNamed(const QString& name)
{
    const auto presets = CategoryColorService::presetColors();
    const auto found = std::find_if(presets.begin(), presets.end(),
                                    [&](const auto& preset) { return preset.name == name; });
    return found == presets.end() ? nullptr : &*found;
}

QString textOf(const QMap<QString, QString>& colors, const QString& collectionName)
{
    return colors.value(collectionName, QStringLiteral("gray"));
}

std::optional<quint32> leadingHexadecimal(QStringView text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    });
    bool isNumber = false;
    const quint32 number = text.first(end - text.begin()).toUInt(&isNumber, 16);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

CategoryColorService& CategoryColorService::shared()
{
    static CategoryColorService service(PreferencesStore::standard());
    return service;
}

QMap<QString, QString> CategoryColorService::loadColors() const
{
    const auto stored = preferences.data(storageKey());
    if (!stored)
        return {};
    const QJsonObject object = QJsonDocument::fromJson(*stored).object();
    QMap<QString, QString> colors;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it.value().isString())
            return {};
        colors.insert(it.key(), it.value().toString());
    }
    return colors;
}

void CategoryColorService::saveColors(const QMap<QString, QString>& colors)
{
    QJsonObject object;
    for (auto it = colors.begin(); it != colors.end(); ++it)
        object.insert(it.key(), it.value());
    preferences.setData(storageKey(), QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QColor CategoryColorService::getColor(const QString& collectionName) const
{
    const QColor gray = presetColors().front().color;
    const QString text = textOf(loadColors(), collectionName);
    if (text.startsWith(u'#'))
        return colorFromHex(text).value_or(gray);
    const Preset* preset = presetNamed(text);
    return preset ? preset->color : gray;
}

std::optional<QString> CategoryColorService::getColorHex(const QString& collectionName) const
{
    return hexOf(loadColors(), collectionName);
}

std::optional<QString> CategoryColorService::hexOf(const QMap<QString, QString>& colors,
                                                   const QString& collectionName)
{
    const QString colorText = textOf(colors, collectionName);
    if (colorText.startsWith(u'#'))
        return colorText;
    if (const Preset* preset = presetNamed(colorText))
        return toHex(preset->color);
    return std::nullopt;
}

std::span<const CategoryColorService::Preset> CategoryColorService::presetColors()
{
    static const std::array presets{
        Preset{QStringLiteral("gray"), QColor(0x86, 0x8c, 0x89)},
        Preset{QStringLiteral("blue"), QColor(0x2f, 0x7b, 0xe0)},
        Preset{QStringLiteral("purple"), QColor(0x9a, 0x5b, 0xd0)},
        Preset{QStringLiteral("pink"), QColor(0xe2, 0x50, 0x8f)},
        Preset{QStringLiteral("red"), QColor(0xdc, 0x46, 0x3d)},
        Preset{QStringLiteral("orange"), QColor(0xef, 0x87, 0x22)},
        Preset{QStringLiteral("yellow"), QColor(0xdf, 0xae, 0x12)},
        Preset{QStringLiteral("green"), QColor(0x3c, 0x9f, 0x57)},
        Preset{QStringLiteral("mint"), QColor(0x00, 0xc6, 0xbf)},
        Preset{QStringLiteral("teal"), QColor(0x30, 0xaf, 0xc6)},
        Preset{QStringLiteral("cyan"), QColor(0x54, 0xc9, 0xef)},
        Preset{QStringLiteral("indigo"), QColor(0x59, 0x56, 0xd6)},
    };
    return presets;
}

std::optional<QColor> colorFromHex(const QString& text)
{
    QString digits = trimmedWithLineBreaks(text).toString();
    digits.remove(u'#');
    const auto number = leadingHexadecimal(digits);
    if (!number)
        return std::nullopt;
    const auto byte = [&](int shift) { return static_cast<int>(*number >> shift & 0xff); };
    switch (characterCount(digits)) {
    case 6:
        return QColor(byte(16), byte(8), byte(0));
    case 8:
        return QColor(byte(24), byte(16), byte(8), byte(0));
    default:
        return std::nullopt;
    }
}

QString toHex(const QColor& color)
{
    const QColor srgb = color.toRgb();
    if (!srgb.isValid())
        return QStringLiteral("#808080");
    const QRgba64 channels = srgb.rgba64();
    const auto cut = [](quint16 channel) { return channel * 255 / 0xffff; };
    return QString::asprintf("#%02X%02X%02X", cut(channels.red()), cut(channels.green()),
                             cut(channels.blue()));
}

} // namespace vellumry
