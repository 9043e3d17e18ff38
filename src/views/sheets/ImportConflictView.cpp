#include "views/sheets/ImportConflictView.h"

#include "library/ImportPreview.h"
#include "views/common/Button.h"
#include "views/common/DateText.h"
#include "views/common/Label.h"
#include "views/common/Shadow.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/common/TextPainting.h"
#include "views/sheets/ConflictTableView.h"

#include <QPainter>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int margin = 20;
constexpr int footerMarginY = 9;
constexpr int ring = SelectableButton::ringRoom;
constexpr int warningSize = 26;
constexpr int modeHeight = 42;
constexpr int modesGap = 4; ///< below their heading
constexpr int modesBelow = 6;

constexpr int detailRadius = 10;
constexpr int detailPaddingX = 14;
constexpr int detailPaddingY = 12;
constexpr int detailRoom = 24; ///< for the shadow, on all sides
constexpr int detailGap = 12;

constexpr QStringView detailTitle = u"Update Time";
constexpr QStringView localName = u"Local:";
constexpr QStringView importedName = u"Imported:";

qreal widthOf(const QFont& font, const QString& text)
{
    return std::ceil(QFontMetricsF(font).horizontalAdvance(text)) + 1;
}

} // namespace

ImportConflictView::ImportConflictView(Dependencies dependencies, QWidget* parent)
    : ScrollingSheet(dependencies.theme, dependencies.scheduler, frame.width(), parent),
      services(std::move(dependencies)),
      conflicts(new ConflictTableView(services.theme, services.scheduler,
                                      services.conflictResult.conflicts, bodyWidget())),
      time(new UpdateTimeDetail(services.theme, this)),
      cancelling(new Button(services.theme, Button::Kind::secondary, QStringLiteral("Cancel"),
                            footerWidget())),
      proceed(new Button(services.theme, Button::Kind::primary, QStringLiteral("Continue"),
                         footerWidget()))
{
    setAccessibleName(QStringLiteral("Import Conflicts Detected"));
    setWholeHeight(frame.height());
    buildHeader();
    auto* column = new QVBoxLayout;
    column->setContentsMargins(margin - ring, 0, margin - ring, 0);
    column->setSpacing(0);
    const auto inset = [column](QWidget* widget, int above, int below, int stretch) {
        auto* row = new QVBoxLayout;
        row->setContentsMargins(ring, above, ring, below);
        row->addWidget(widget);
        column->addLayout(row, stretch);
    };
    // As high as it has rows, and at most as there is room.
    conflicts->setMaximumHeight(conflicts->sizeHint().height());
    connect(&services.theme, &Theme::changed, conflicts,
            [this] { conflicts->setMaximumHeight(conflicts->sizeHint().height()); });
    inset(conflicts, 0, 0, 1);
    inset(new Label(services.theme, TextStyle::bodyStrong, &ColorTokens::textPrimary,
                    QStringLiteral("How would you like to resolve these conflicts?"), bodyWidget()),
          12, modesGap - ring, 0);
    for (const ConflictResolutionMode mode : allConflictResolutionModes) {
        auto* row = new OptionRow(
            services.theme,
            {.symbol = symbol(mode), .title = title(mode), .detail = vellumry::description(mode)},
            {.height = modeHeight - 2 * ring,
             .symbolSize = 16,
             .markSize = 16,
             .selectedMark = QStringLiteral("largecircle.fill.circle"),
             .plainMark = QStringLiteral("circle"),
             .isMarkFirst = true,
             .isBordered = false,
             .titleStyle = TextStyle::bodyStrong},
            [this, mode] {
                setSelectedMode(mode);
                services.onModeChange(mode);
            },
            bodyWidget());
        column->addWidget(row);
        modes.push_back(row);
    }
    column->addSpacing(modesBelow - ring);
    column->addStretch();
    body().addLayout(column, 1);

    Label* news = nullptr;
    if (!note().isEmpty())
        news = new Label(services.theme, TextStyle::label, &ColorTokens::textSecondary, note(),
                         footerWidget());
    addFooter(news, {cancelling, proceed}, margin, footerMarginY);
    proceed->setDefault(true);
    time->hide();

    connect(conflicts, &ConflictTableView::detailRowChanged, this, &ImportConflictView::showDetail);
    connect(&services.theme, &Theme::changed, this, &ImportConflictView::showDetail);
    connect(cancelling, &Button::clicked, this, services.onCancel);
    connect(proceed, &Button::clicked, this, services.onConfirm);
    setSelectedMode(services.selectedMode);
}

void ImportConflictView::buildHeader()
{
    auto* head = new QHBoxLayout;
    head->setContentsMargins(margin, 16, margin, 12);
    head->setSpacing(12);
    head->addWidget(new SymbolView(services.theme, QStringLiteral("exclamationmark.triangle.fill"),
                                   warningSize, &ColorTokens::warningFill, headerWidget()));
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(new Label(services.theme, TextStyle::sheetTitle, &ColorTokens::textPrimary,
                                QStringLiteral("Import Conflicts Detected"), headerWidget()));
    titles->addWidget(new Label(services.theme, TextStyle::label, &ColorTokens::textSecondary,
                                QStringLiteral("Found %1 snippet(s) with the same title")
                                    .arg(services.conflictResult.snippetConflictCount()),
                                headerWidget()));
    head->addLayout(titles, 1);
    header().addLayout(head);
}

QWidget* ImportConflictView::firstFocus() const
{
    return proceed;
}

QString ImportConflictView::note() const
{
    const auto count = services.conflictResult.newSnippets.size();
    return count == 0 ? QString() : QStringLiteral("%1 new item(s) will be imported").arg(count);
}

void ImportConflictView::setSelectedMode(ConflictResolutionMode mode)
{
    services.selectedMode = mode;
    for (const ConflictResolutionMode each : allConflictResolutionModes)
        modes[static_cast<size_t>(each)]->setSelected(each == mode);
    conflicts->setSelectedMode(mode);
}

void ImportConflictView::showDetail()
{
    const int row = conflicts->detailRow();
    time->setVisible(row >= 0);
    if (row < 0)
        return;
    time->setConflict(conflicts->contents(row).conflict);
    time->resize(time->sizeHint());
    // Under the mark, or above it where there is no room; within the sheet.
    const QRect mark(conflicts->viewport()->mapTo(this, conflicts->infoRect(row).topLeft()),
                     conflicts->infoRect(row).size());
    const int x =
        std::min(mark.right() + detailGap + detailRoom, width() + detailRoom - 4) - time->width();
    int y = mark.bottom() - detailRoom + 2;
    if (y + time->height() - detailRoom > height())
        y = mark.top() - time->height() + detailRoom - 2;
    time->move(x, y);
    time->raise();
}

UpdateTimeDetail::UpdateTimeDetail(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void UpdateTimeDetail::setConflict(const ImportConflict& conflict)
{
    local = mediumDateTime(conflict.localUpdatedAt);
    imported = mediumDateTime(conflict.importedUpdatedAt);
    setAccessibleName(QStringLiteral("%1, %2 %3, %4 %5")
                          .arg(detailTitle, localName, local, importedName, imported));
    update();
}

QSize UpdateTimeDetail::sizeHint() const
{
    const QFont font = theme.font(TextStyle::label);
    const qreal names =
        std::max(widthOf(font, localName.toString()), widthOf(font, importedName.toString()));
    const qreal times = std::max(widthOf(font, local), widthOf(font, imported));
    const int line = theme.lineHeight(TextStyle::label) + 2;
    return {qCeil(names + detailGap + times) + 2 * (detailPaddingX + detailRoom),
            3 * line + 4 + 2 * (detailPaddingY + detailRoom)};
}

void UpdateTimeDetail::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const QRectF card = QRectF(rect()).adjusted(detailRoom, detailRoom, -detailRoom, -detailRoom);
    Shadow::pill.paint(painter, card, detailRadius, token.shadow);
    fillRounded(painter, card.adjusted(-1, -1, 1, 1), detailRadius + 1, token.strokeStrong);
    fillRounded(painter, card, detailRadius, token.menu);

    const QFont font = theme.font(TextStyle::label);
    const qreal line = theme.lineHeight(TextStyle::label) + 2;
    const qreal names =
        std::max(widthOf(font, localName.toString()), widthOf(font, importedName.toString()));
    QRectF row(card.x() + detailPaddingX, card.y() + detailPaddingY,
               card.width() - 2 * detailPaddingX, line);
    paintLine(painter, row, detailTitle.toString(), theme.font(TextStyle::labelStrong),
              token.textPrimary);
    row.translate(0, 4);
    for (const auto& [name, text] :
         {std::pair(localName, local), std::pair(importedName, imported)}) {
        row.translate(0, line);
        paintLine(painter, row, name.toString(), font, token.textSecondary);
        paintLine(painter, row.adjusted(names + detailGap, 0, 0, 0), text, font, token.textPrimary);
    }
}

} // namespace vellumry
