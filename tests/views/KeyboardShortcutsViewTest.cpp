#include "views/sheets/KeyboardShortcutsView.h"

#include "views/SheetFixture.h"
#include "views/common/Button.h"

#include <QPointer>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;

class KeyboardShortcutsViewTest : public SheetFixture {
protected:
    KeyboardShortcutsView& open(const HotkeyConfig& hotkey = {u"t"_s, ModifierFlags::option})
    {
        window.resize(1024, 720);
        auto* made =
            new KeyboardShortcutsView(theme, scheduler, hotkey, [this] { host.dismiss(view); });
        view = made;
        return present(made, [this] { view->cancel(); });
    }

    /// A card as text: symbol, accent, tag, title, text, and its rows and tip.
    QStringList cardText(size_t number)
    {
        const BentoCard::Contents& card = view->cards().at(number)->contents();
        QStringList lines{card.symbol, card.accent.name().toUpper(), card.tag, card.title,
                          card.text};
        for (const auto& row : card.rows) {
            QStringList alternatives;
            for (const QStringList& keys : row.keys)
                alternatives.append(keys.join(u'+'));
            lines.append(alternatives.join(u" / "_s) + u": "_s + row.label);
        }
        lines.append(card.tip);
        lines.removeAll(QString());
        return lines;
    }

    QPointer<KeyboardShortcutsView> view;
};

TEST_F(KeyboardShortcutsViewTest, listsEveryKeyOfTheMainWindow)
{
    open();
    EXPECT_EQ(labelTexts(*view),
              QStringList({u"Keyboard Shortcuts"_s, u"Master Vellumry with these shortcuts"_s}));
    EXPECT_EQ(view->width(), 600);
    ASSERT_EQ(view->cards().size(), 5U);
    EXPECT_EQ(cardText(0),
              QStringList({u"#007AFF"_s, u"ESSENTIALS"_s, u"Navigate Like a Pro"_s,
                           u"Use arrow keys and Tab to move between panels seamlessly"_s,
                           u"Alt+T: Quick Search"_s, u"Ctrl+N: New Snippet"_s, u"↑+↓: Navigate"_s,
                           u"Tab: Next Panel"_s}));
    EXPECT_EQ(cardText(1),
              QStringList({u"sidebar.left"_s, u"#FF9500"_s, u"Sidebar"_s, u"↑+↓: Collections"_s,
                           u"Tab: Search"_s, u"→: List"_s, u"Ctrl+C: Copy Snippet"_s}));
    EXPECT_EQ(cardText(2), QStringList({u"text.magnifyingglass"_s, u"#5AC8FA"_s, u"FILTER"_s,
                                        u"Search Field"_s, u"Tab / ↓: First snippet"_s,
                                        u"Shift+Tab: Back to sidebar"_s, u"ESC: Clear filter"_s}));
    EXPECT_EQ(cardText(3), QStringList({u"list.bullet.rectangle"_s, u"#34C759"_s, u"Snippet List"_s,
                                        u"↑+↓: Navigate"_s, u"→: Editor"_s, u"Tab: Title field"_s,
                                        u"Shift+Tab: Search"_s, u"← / ESC: Sidebar"_s}));
    EXPECT_EQ(cardText(4),
              QStringList({u"square.and.pencil"_s, u"#FF2D55"_s, u"Editor"_s,
                           u"Ctrl+S: Save snippet"_s, u"Shift+Tab: Back to list"_s,
                           u"ESC: Revert changes"_s, u"ESC on new snippet deletes it"_s}));
    EXPECT_EQ(view->cards()[4]->contents().tipSymbol, u"lightbulb.fill"_s);
}

TEST_F(KeyboardShortcutsViewTest, showsTheHotKeyOfTheMoment)
{
    open({u"space"_s, ModifierFlags::command | ModifierFlags::control});
    EXPECT_TRUE(cardText(0).contains(u"Ctrl+Super+Space: Quick Search"_s));
}

TEST_F(KeyboardShortcutsViewTest, aScreenReaderHearsTheKeys)
{
    open();
    EXPECT_EQ(view->cards()[2]->accessibleName(), u"Search Field"_s);
    EXPECT_EQ(view->cards()[2]->accessibleDescription(),
              u"First snippet: Tab or Down. Back to sidebar: Shift+Tab. Clear filter: ESC"_s);
}

TEST_F(KeyboardShortcutsViewTest, closesByItsMarkByReturnAndByEscape)
{
    open();
    EXPECT_EQ(view->closeButton().symbol(), u"xmark.circle.fill"_s);
    EXPECT_EQ(focused(), u"Close"_s);
    click(view->closeButton());
    EXPECT_FALSE(host.isPresenting());
    open();
    key(Qt::Key_Return);
    EXPECT_FALSE(host.isPresenting());
    open();
    key(Qt::Key_Escape);
    EXPECT_FALSE(host.isPresenting());
}

TEST_F(KeyboardShortcutsViewTest, aCardGrowsUnderThePointer)
{
    open();
    BentoCard* card = view->cards()[1];
    EXPECT_EQ(card->scale(), 1.0);
    QEnterEvent enter({5, 5}, {5, 5}, card->mapToGlobal(QPointF(5, 5)));
    QApplication::sendEvent(card, &enter);
    settle();
    EXPECT_DOUBLE_EQ(card->scale(), 1.01);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(card, &leave);
    settle();
    EXPECT_DOUBLE_EQ(card->scale(), 1.0);
}

TEST_F(KeyboardShortcutsViewTest, thePageHasItsOwnColour)
{
    open();
    const QImage image = view->grab().toImage();
    EXPECT_EQ(image.pixelColor(QPoint(8, 300) * image.devicePixelRatio()).name(), u"#edf1f8"_s);
}

TEST_F(KeyboardShortcutsViewTest, noTextIsCutAtAnySize)
{
    open();
    const auto isWhole = [](const BentoCard* card) {
        return card->width() >= card->leastWidth() &&
               card->height() >= card->heightForWidth(card->width());
    };
    for (const qreal scale : {1.0, 1.25, 1.6, 2.0}) {
        theme.setTextScale(scale);
        settle();
        for (const BentoCard* card : view->cards())
            EXPECT_TRUE(isWhole(card)) << scale << ' ' << qPrintable(card->contents().title);
    }
    EXPECT_LT(view->cards()[1]->y(), view->cards()[2]->y()) << "one below the other";
    theme.setTextScale(1);
    settle();
    EXPECT_EQ(view->cards()[1]->y(), view->cards()[2]->y());
}

TEST_F(KeyboardShortcutsViewTest, aLongHotKeyHasTheRowsOfTheHeroBelowItsTexts)
{
    open();
    const int usual = view->cards()[0]->height();
    key(Qt::Key_Escape);
    open({u"space"_s, ModifierFlags::command | ModifierFlags::option | ModifierFlags::shift |
                          ModifierFlags::control});
    EXPECT_GE(view->cards()[0]->width(), view->cards()[0]->leastWidth());
    EXPECT_GT(view->cards()[0]->height(), usual);
}

TEST_F(KeyboardShortcutsViewTest, Pictures)
{
    open();
    picture(u"keyboard-shortcuts"_s);
    theme.setTextScale(1.6);
    picture(u"keyboard-shortcuts-large"_s, false);
}

} // namespace
} // namespace vellumry::test
