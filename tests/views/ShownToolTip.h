#pragma once

#include <QTextDocumentFragment>
#include <QWidget>

namespace vellumry::test {

/// What people read in the tool tip of a widget, which takes for markup what looks like it.
[[nodiscard]] inline QString shownToolTip(const QWidget& widget)
{
    const QString tip = widget.toolTip();
    return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

} // namespace vellumry::test
