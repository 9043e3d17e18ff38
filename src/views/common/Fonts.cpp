#include "views/common/Fonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

namespace vellumry {

namespace {

QStringList familiesBehind(const QFont& systemFont)
{
    QStringList families;
    for (const QString& family :
         {systemFont.family(), QStringLiteral("Inter"), QStringLiteral("Noto Sans")}) {
        // Without a desktop the system's font is a mere alias. At the head of the list it would
        // stand for nothing, and the emoji font would serve blanks and digits.
        if (QFontDatabase::hasFamily(family))
            families.append(family);
    }
    if (families.isEmpty())
        families.append(QFontInfo(systemFont).family());
    families.insert(1, QStringLiteral("Noto Color Emoji"));
    return families;
}

} // namespace

QFont uiFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    static QString systemFamily;
    static QStringList families;
    if (families.isEmpty() || systemFamily != font.family()) {
        systemFamily = font.family();
        families = familiesBehind(font);
    }
    font.setFamilies(families);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

QFont monoFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setFamilies(
        {QStringLiteral("JetBrains Mono"), QStringLiteral("Noto Sans Mono"), font.family()});
    font.setStyleStrategy(QFont::PreferNoShaping);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace vellumry
