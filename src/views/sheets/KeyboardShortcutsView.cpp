#include "views/sheets/KeyboardShortcutsView.h"

#include "views/common/Button.h"
#include "views/common/KeyboardText.h"
#include "views/common/Label.h"
#include "views/common/Strokes.h"

#include <QGridLayout>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using Keys = QList<QStringList>;

constexpr int sheetWidth = 600;
constexpr int sheetRadius = 12;
constexpr int margin = 20;
constexpr int cardGap = 12;
constexpr int gridMargin = margin - BentoCard::growRoom;
constexpr int gridSpacing = cardGap - 2 * BentoCard::growRoom;
constexpr int closeSymbol = 20;
constexpr QColor lightPage(0xED, 0xF1, 0xF8);
constexpr QColor darkPage(0x17, 0x19, 0x1B);
constexpr QColor blue(0x00, 0x7A, 0xFF);
constexpr QColor orange(0xFF, 0x95, 0x00);
constexpr QColor lightBlue(0x5A, 0xC8, 0xFA);
constexpr QColor green(0x34, 0xC7, 0x59);
constexpr QColor pink(0xFF, 0x2D, 0x55);

std::vector<BentoCard::Contents> allCards(const HotkeyConfig& hotkey)
{
    // The keys of this system: where others have ⌘, it has Ctrl.
    const QString ctrl = QStringLiteral("Ctrl");
    const QString shift = QStringLiteral("Shift");
    const QString tab = QStringLiteral("Tab");
    const QString escape = QStringLiteral("ESC");
    const QString up = QStringLiteral("↑");
    const QString down = QStringLiteral("↓");
    const QString left = QStringLiteral("←");
    const QString right = QStringLiteral("→");
    const auto letter = [](char key) { return QString(QLatin1Char(key)); };
    return {
        {.accent = blue,
         .tag = QStringLiteral("ESSENTIALS"),
         .title = QStringLiteral("Navigate Like a Pro"),
         .text = QStringLiteral("Use arrow keys and Tab to move between panels seamlessly"),
         .rows = {{Keys{keyboardKeys(hotkey)}, QStringLiteral("Quick Search")},
                  {Keys{{ctrl, letter('N')}}, QStringLiteral("New Snippet")},
                  {Keys{{up, down}}, QStringLiteral("Navigate")},
                  {Keys{{tab}}, QStringLiteral("Next Panel")}}},
        {.symbol = QStringLiteral("sidebar.left"),
         .accent = orange,
         .title = QStringLiteral("Sidebar"),
         .rows = {{Keys{{up, down}}, QStringLiteral("Collections")},
                  {Keys{{tab}}, QStringLiteral("Search")},
                  {Keys{{right}}, QStringLiteral("List")},
                  {Keys{{ctrl, letter('C')}}, QStringLiteral("Copy Snippet")}}},
        {.symbol = QStringLiteral("text.magnifyingglass"),
         .accent = lightBlue,
         .tag = QStringLiteral("FILTER"),
         .title = QStringLiteral("Search Field"),
         .rows = {{Keys{{tab}, {down}}, QStringLiteral("First snippet")},
                  {Keys{{shift, tab}}, QStringLiteral("Back to sidebar")},
                  {Keys{{escape}}, QStringLiteral("Clear filter")}}},
        {.symbol = QStringLiteral("list.bullet.rectangle"),
         .accent = green,
         .title = QStringLiteral("Snippet List"),
         .rows = {{Keys{{up, down}}, QStringLiteral("Navigate")},
                  {Keys{{right}}, QStringLiteral("Editor")},
                  {Keys{{tab}}, QStringLiteral("Title field")},
                  {Keys{{shift, tab}}, QStringLiteral("Search")},
                  {Keys{{left}, {escape}}, QStringLiteral("Sidebar")}}},
        {.symbol = QStringLiteral("square.and.pencil"),
         .accent = pink,
         .title = QStringLiteral("Editor"),
         .rows = {{Keys{{ctrl, letter('S')}}, QStringLiteral("Save snippet")},
                  {Keys{{shift, tab}}, QStringLiteral("Back to list")},
                  {Keys{{escape}}, QStringLiteral("Revert changes")}},
         .tipSymbol = QStringLiteral("lightbulb.fill"),
         .tip = QStringLiteral("ESC on new snippet deletes it")},
    };
}

} // namespace

KeyboardShortcutsView::KeyboardShortcutsView(const Theme& look, Scheduler& scheduler,
                                             const HotkeyConfig& hotkey,
                                             std::function<void()> onCloseView, QWidget* parent)
    : ScrollingSheet(look, scheduler, sheetWidth, parent), theme(look),
      onClose(std::move(onCloseView)),
      close(Button::withSymbol(theme, QStringLiteral("xmark.circle.fill"), QStringLiteral("Close"),
                               headerWidget())),
      grid(new QGridLayout)
{
    setAccessibleName(QStringLiteral("Keyboard Shortcuts"));
    buildHeader();
    for (const BentoCard::Contents& contents : allCards(hotkey))
        shown.push_back(new BentoCard(theme, contents, bodyWidget()));
    grid->setContentsMargins(gridMargin, 0, gridMargin, gridMargin);
    grid->setSpacing(gridSpacing);
    body().addLayout(grid);
    arrange(sheetWidth);
    connect(&theme, &Theme::changed, this, [this] { arrange(width()); });
    connect(close, &Button::clicked, this, onClose);
}

void KeyboardShortcutsView::arrange(int wide)
{
    const int half = (wide - 2 * gridMargin - gridSpacing) / 2;
    // The hero takes the first row, the others follow.
    const bool isInTwo = std::all_of(shown.begin() + 1, shown.end(), [half](const BentoCard* card) {
        return card->leastWidth() <= half;
    });
    const int wanted = isInTwo ? 2 : 1;
    if (std::exchange(columns, wanted) == wanted)
        return;
    for (BentoCard* card : shown)
        grid->removeWidget(card);
    grid->addWidget(shown.front(), 0, 0, 1, columns);
    for (int i = 1; i < int(shown.size()); ++i)
        grid->addWidget(shown[size_t(i)], 1 + (i - 1) / columns, (i - 1) % columns);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, columns - 1);
}

void KeyboardShortcutsView::buildHeader()
{
    close->setSymbol(QStringLiteral("xmark.circle.fill"), closeSymbol);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(margin, 16, margin - Button::ringRoom - 4, 12 - BentoCard::growRoom);
    row->setSpacing(0);
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(new Label(theme, TextStyle::sheetTitle, &ColorTokens::textPrimary,
                                QStringLiteral("Keyboard Shortcuts"), headerWidget()));
    titles->addWidget(new Label(theme, TextStyle::label, &ColorTokens::textSecondary,
                                QStringLiteral("Master Vellumry with these shortcuts"),
                                headerWidget()));
    row->addLayout(titles, 1);
    row->addWidget(close, 0, Qt::AlignTop);
    header().addLayout(row);
}

QWidget* KeyboardShortcutsView::firstFocus() const
{
    return close;
}

void KeyboardShortcutsView::resizeEvent(QResizeEvent* event)
{
    arrange(width());
    ScrollingSheet::resizeEvent(event);
}

void KeyboardShortcutsView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    fillRounded(painter, rect(), sheetRadius,
                theme.scheme() == ColorScheme::dark ? darkPage : lightPage);
    painter.end();
    ScrollingSheet::paintEvent(event);
}

} // namespace vellumry
