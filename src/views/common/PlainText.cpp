#include "views/common/PlainText.h"

#include <QAbstractButton>

namespace vellumry {

void setPlainText(QAbstractButton& button, const QString& text)
{
    button.setText(text);
    button.setShortcut({});
}

QString menuText(const QString& plain)
{
    return QString(plain).replace(QStringLiteral("&"), QStringLiteral("&&"));
}

QString plainMenuText(const QString& text)
{
    return QString(text).replace(QStringLiteral("&&"), QStringLiteral("&"));
}

} // namespace vellumry
