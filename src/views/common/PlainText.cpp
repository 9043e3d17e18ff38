#include "views/common/PlainText.h"

#include <QAbstractButton>
#include <QStringBuilder>
#include <QTextDocument>

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

QString toolTipText(const QString& plain)
{
    if (!Qt::mightBeRichText(plain))
        return plain;
    return u"<span style=\"white-space:pre\">" % plain.toHtmlEscaped() % u"</span>";
}

} // namespace vellumry
