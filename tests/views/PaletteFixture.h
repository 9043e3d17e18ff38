#pragma once

#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/CommandPaletteViewModel.h"
#include "palette/RandomPasswordService.h"
#include "palette/SearchServiceProtocol.h"
#include "storage/StorageServiceProtocol.h"
#include "support/FakeRandomSource.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "views/common/OverlayScrollBar.h"
#include "views/common/Theme.h"
#include "views/palette/CommandPaletteView.h"
#include "views/palette/DarkSearchFieldView.h"
#include "views/palette/KeyHandlingTextField.h"
#include "views/palette/PaletteListView.h"

#include <QImage>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace vellumry::test {

/// A library that is just a list.
class ListStorage final : public StorageServiceProtocol {
public:
    QList<Snippet> snippets;
    int loads = 0;

    std::optional<VellumryData> loadFullData() override { return std::nullopt; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override
    {
        ++loads;
        return snippets;
    }
    bool saveSnippets(const QList<Snippet>& changed) override
    {
        snippets = changed;
        return true;
    }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}
};

/// Finds titles that hold the query.
class TitleSearch final : public SearchServiceProtocol {
public:
    QList<Snippet> search(const QString& query, const QList<Snippet>& snippets) const override
    {
        QList<Snippet> found;
        for (const Snippet& snippet : snippets) {
            if (snippet.title().contains(query))
                found.append(snippet);
        }
        return found;
    }
};

class RecordingClipboard final : public ClipboardServiceProtocol {
public:
    QStringList texts;
    QStringList secrets;
    void copy(const QString& text) override { texts.append(text); }
    void copySecret(const QString& text) override { secrets.append(text); }
};

/// A palette on a library, with time in the test's hands.
class PaletteFixture : public testing::Test {
public:
    static Snippet snippet(const QString& title, std::optional<Date> lastUsedAt = {},
                           qint64 usageCount = 0,
                           const QString& collection = QStringLiteral("Shell"))
    {
        SnippetFields fields;
        fields.id = QStringLiteral("id-") + title;
        fields.title = title;
        fields.collection = collection;
        fields.content = QStringLiteral("content of ") + title;
        fields.usageCount = usageCount;
        fields.lastUsedAt = lastUsedAt;
        return Snippet(fields);
    }

    /// Twelve snippets "a00" to "a11" in this order, never used.
    void fillLibrary()
    {
        for (int i = 0; i < 12; ++i) {
            Snippet one = snippet(QStringLiteral("a%1").arg(i, 2, 10, QChar(u'0')));
            one.setUpdatedAt(clock.now() - std::chrono::hours(i));
            storage.snippets.append(one);
        }
    }

    /// Shows the palette as its owner does.
    void open()
    {
        view().show();
        view().setPresented(true);
        view().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view()));
        settle();
    }

    /// Lets pass the debounce of the query and the delays of the focus.
    void settle() { scheduler.advance(std::chrono::milliseconds(200)); }

    void type(const QString& text)
    {
        QTest::keyClicks(&field(), text);
        settle();
    }

    CommandPaletteView& view()
    {
        if (!paletteView) {
            paletteView = std::make_unique<CommandPaletteView>(
                CommandPaletteView::Dependencies{.viewModel = viewModel,
                                                 .notifications = notifications,
                                                 .scheduler = scheduler,
                                                 .clock = clock,
                                                 .theme = theme,
                                                 .collectionColor = collectionColor});
        }
        return *paletteView;
    }
    PaletteListView& list() { return view().list(); }
    KeyHandlingTextField& field() { return view().searchField().textField(); }

    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&field(), which, modifiers);
    }
    QPoint middleOf(const QString& rowId) { return list().rowRect(rowId).center(); }
    void moveTo(const QString& rowId) { QTest::mouseMove(list().viewport(), middleOf(rowId)); }
    void click(const QString& rowId)
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middleOf(rowId));
    }

    /// The colour that stands at a point of the view, in device-independent pixels.
    QColor pixel(const QPoint& point)
    {
        const QImage image = view().grab().toImage();
        return image.pixelColor((QPointF(point) * image.devicePixelRatio()).toPoint());
    }
    /// The background of a row: near its lower right corner, where there is no text.
    QColor rowColor(const QString& rowId)
    {
        const QRect row = list().rowRect(rowId);
        return pixel(list().viewport()->mapTo(&view(), row.bottomRight() - QPoint(9, 5)));
    }

    static QColor collectionColor(const QString&) { return {0x3C, 0x9F, 0x57}; }

    ManualScheduler scheduler;
    ManualClock clock;
    Theme theme{ColorScheme::light, 1};
    ListStorage storage;
    TitleSearch search;
    RecordingClipboard clipboard;
    NotificationCenter notifications;
    int dismissals = 0;
    FakeRandomSource randomSource;
    RandomPasswordService passwordService{randomSource};
    CommandPaletteViewModel viewModel{
        {storage, search, clipboard, passwordService, notifications, scheduler, clock},
        [](const Snippet&) {},
        [this] { ++dismissals; }};

private:
    std::unique_ptr<CommandPaletteView> paletteView;
};

} // namespace vellumry::test
