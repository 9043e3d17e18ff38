#pragma once

#include "library/LibraryWorld.h"
#include "platform/Pasteboard.h"
#include "views/common/Button.h"
#include "views/common/SheetHost.h"
#include "views/common/Theme.h"
#include "views/list/ListHeader.h"
#include "views/list/ListKeyHandlingTextField.h"
#include "views/list/ListSearchField.h"
#include "views/list/SnippetCardListView.h"
#include "views/list/SnippetListPanelView.h"
#include "views/sidebar/CollectionSidebarView.h"
#include "views/sidebar/NewCollectionTextField.h"
#include "views/window/MainContentView.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {

class RecordingPasteboard final : public Pasteboard {
public:
    QStringList texts;
    void setString(const QString& text) override { texts.append(text); }
    void setSecretString(const QString&) override { ADD_FAILURE() << "a secret?"; }
};

/// For as long as it lives, animations take no time.
class ReducedMotion {
public:
    ReducedMotion() { QApplication::setStyle(new Style); }
    ~ReducedMotion() { QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion"))); }
    ReducedMotion(const ReducedMotion&) = delete;
    ReducedMotion& operator=(const ReducedMotion&) = delete;

private:
    class Style final : public QProxyStyle {
    public:
        Style() : QProxyStyle(QStringLiteral("Fusion")) {}
        int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                      QStyleHintReturn* data) const override
        {
            if (hint == SH_Widget_Animation_Duration)
                return 0;
            return QProxyStyle::styleHint(hint, option, widget, data);
        }
    };
};

/// The contents of the main window over a library in memory, with an editor that is a mere text,
/// and with time in the test's hands. The pointer is over none of it.
class MainFixture : public testing::Test {
public:
    using N = NotificationCenter;

    static Snippet card(const QString& title, const QString& subtitle, const QString& collection,
                        qint64 order, std::chrono::seconds ago)
    {
        SnippetFields fields;
        fields.id = QStringLiteral("id-") + title;
        fields.title = title;
        fields.subtitle = subtitle;
        fields.collection = collection;
        fields.content = QStringLiteral("content of {{what}} ") + title;
        fields.displayOrder = order;
        fields.createdAt = fields.updatedAt = ManualClock().now() - ago;
        fields.variables = {{QStringLiteral("what"), QStringLiteral("it")}};
        return Snippet(fields);
    }

    /// "One", "Two" and "Three" in "Work", "Four" in "Home"; "Empty" is empty.
    void loadFour()
    {
        using namespace std::chrono_literals;
        world.load(
            {makeCollection(QStringLiteral("W"), QStringLiteral("Work")),
             makeCollection(QStringLiteral("H"), QStringLiteral("Home")),
             makeCollection(QStringLiteral("E"), QStringLiteral("Empty"))},
            {card(QStringLiteral("One"), QStringLiteral("first"), QStringLiteral("Work"), 0, 720s),
             card(QStringLiteral("Two"), {}, QStringLiteral("Work"), 1, 4000s),
             card(QStringLiteral("Three"), QStringLiteral("third"), QStringLiteral("Work"), 2,
                  90000s),
             card(QStringLiteral("Four"), {}, QStringLiteral("Home"), 3, 0s)});
    }

    /// Shows the view, active and with nothing under the pointer.
    void open(const QSize& size = {1024, 680})
    {
        QCursor::setPos({5000, 5000});
        content().resize(size);
        content().show();
        content().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&content()));
        QApplication::processEvents();
        hover(sidebar(), false);
        hover(list(), false);
    }

    MainContentView& content()
    {
        if (!mainContent)
            mainContent = std::make_unique<MainContentView>(MainContentView::Dependencies{
                world.model, world.colors, world.notifications, world.scheduler, world.clock, theme,
                pasteboard, makeEditor, [] { return QStringLiteral("/data/folder"); },
                [this](const QUrl& url) { opened.append(url); }});
        return *mainContent;
    }
    CollectionSidebarView& sidebar() { return content().sidebar(); }
    SnippetListPanelView& list() { return content().list(); }
    SnippetCardListView& cards() { return list().cards(); }
    QLineEdit& filterField() { return list().searchField().textField(); }
    SheetHost& sheets() { return content().sheets(); }

    /// A key for whatever has the focus.
    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget* focus = content().focusWidget();
        QTest::keyClick(focus ? focus : &content(), which, modifiers);
    }
    void type(const QString& text) { QTest::keyClicks(content().focusWidget(), text); }
    static void click(QWidget& widget, const QPoint& position)
    {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, position);
    }
    static void click(QAbstractButton* button) { click(*button, button->rect().center()); }
    void clickRow(CollectionRowView* row) { click(*row, row->rect().center()); }
    QPoint middleOf(const QString& title)
    {
        return cards().cardRect(QStringLiteral("id-") + title).center();
    }
    void clickCard(const QString& title) { click(*cards().viewport(), middleOf(title)); }
    /// Enters or leaves a column with the pointer.
    static void hover(QWidget& column, bool isOver)
    {
        if (isOver) {
            QEnterEvent event({5, 5}, {5, 5}, column.mapToGlobal(QPointF(5, 5)));
            QApplication::sendEvent(&column, &event);
        } else {
            QEvent event(QEvent::Leave);
            QApplication::sendEvent(&column, &event);
        }
    }
    void pass(std::chrono::milliseconds time) { world.scheduler.advance(time); }

    [[nodiscard]] QString selected() const
    {
        return world.model.selectedSnippetID().value_or(QStringLiteral("none")).mid(3);
    }
    [[nodiscard]] QStringList shownTitles() const
    {
        QStringList titles;
        for (const Snippet& snippet : world.model.filteredSnippets())
            titles.append(snippet.title());
        return titles;
    }
    /// Counts a notification from now on.
    int& counted(void (N::*notification)())
    {
        counts.push_back(std::make_unique<int>(0));
        QObject::connect(&world.notifications, notification, &world.notifications,
                         [count = counts.back().get()] { ++*count; });
        return *counts.back();
    }
    void editTitle(const QString& title, const QString& newTitle)
    {
        Snippet draft = world.snippet(QStringLiteral("id-") + title);
        draft.setTitle(newTitle);
        world.model.setUnsavedEdit(draft);
    }

    ReducedMotion reducedMotion;
    LibraryWorld world;
    SnippetListViewModel& model = world.model;
    Theme theme{ColorScheme::light, 1};
    RecordingPasteboard pasteboard;
    QList<QUrl> opened;
    int editors = 0; ///< how many were made
    SnippetEditorRequest lastRequest;
    /// What the window is opened with.
    MakeSnippetEditor makeEditor = [this](const SnippetEditorRequest& request, QWidget* parent) {
        ++editors;
        lastRequest = request;
        auto* editor = new QPlainTextEdit(request.snippet.content(), parent);
        editor->setObjectName(request.snippet.id());
        return editor;
    };

private:
    std::vector<std::unique_ptr<int>> counts;
    std::unique_ptr<MainContentView> mainContent;
};

} // namespace vellumry::test
