#include "views/window/ContentsGround.h"

#include "views/common/Strokes.h"
#include "views/common/Theme.h"
#include "views/list/SnippetListPanelView.h"
#include "views/sidebar/CollectionSidebarView.h"

#include <QPainter>
#include <QStyle>

#include <utility>

namespace vellumry {

ContentsGround::ContentsGround(const Theme& usedTheme, Kind ofContents, QWidget* parent)
    : QWidget(parent), theme(usedTheme), kind(ofContents)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ContentsGround::paintEvent(QPaintEvent*)
{
    if (kind == Kind::columns)
        paintColumns();
    else
        QPainter(this).fillRect(rect(), theme.colors().editor);
    if (!std::exchange(isPainted, true))
        QMetaObject::invokeMethod(this, &ContentsGround::painted, Qt::QueuedConnection);
}

void ContentsGround::paintColumns()
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const qreal line = lineWidth(painter);
    const auto fillColumn = [&](int x, int columnWidth, const QColor& color) {
        const QRect column =
            QStyle::visualRect(layoutDirection(), rect(), {x, 0, columnWidth, height()});
        painter.fillRect(column, color);
        painter.fillRect(QRectF(column.x() + columnWidth - line, 0, line, height()), token.stroke);
    };
    constexpr int besideSidebar = CollectionSidebarView::sidebarWidth;
    constexpr int besideList = besideSidebar + SnippetListPanelView::firstWidth;
    fillColumn(0, besideSidebar, token.sidebar);
    fillColumn(besideSidebar, SnippetListPanelView::firstWidth, token.list);
    painter.fillRect(QStyle::visualRect(layoutDirection(), rect(),
                                        {besideList, 0, width() - besideList, height()}),
                     token.editor);
}

} // namespace vellumry
