#include "views/common/Fonts.h"

#include <QFontDatabase>

namespace vellumry {

QFont uiFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setFamilies({font.family(), QStringLiteral("Noto Color Emoji"), QStringLiteral("Inter"),
                      QStringLiteral("Noto Sans")});
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace vellumry
