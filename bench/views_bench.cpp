// What the main window's views cost, with the real widgets, painted into memory: against the time
// that a person takes for none, or against themselves over a library of 1000.
//
//   views_bench [N ...]     measures with libraries of N snippets, by default 1000 10000 100000

#include "core/Log.h"
#include "library/SaveFileDialog.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/FuzzySearchService.h"
#include "platform/FileSystem.h"
#include "platform/Pasteboard.h"
#include "platform/linux/SettingsFilePreferencesStore.h"
#include "settings/CategoryColorService.h"
#include "storage/StorageServiceProtocol.h"
#include "support/LibraryGenerator.h"
#include "support/Ratio.h"
#include "views/common/Theme.h"
#include "views/editor/EditorContentSection.h"
#include "views/editor/MacTextEditor.h"
#include "views/editor/SnippetEditorView.h"
#include "views/list/SnippetCardListView.h"
#include "views/list/SnippetListPanelView.h"
#include "views/window/MainContentView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace vellumry::bench {

namespace {

constexpr int smallCount = 1000;
constexpr int goalCount = 100000;
constexpr int wheelSteps = 600;
constexpr double frame = 0.008;
constexpr double keystroke = 0.016;
constexpr double themeTime = 0.1;

/// Gives a library, and keeps nothing: what the disk costs is measured elsewhere.
class MemoryStorage final : public StorageServiceProtocol {
public:
    explicit MemoryStorage(VellumryData data) : library(std::move(data)) {}
    std::optional<VellumryData> loadFullData() override { return library; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override { return library.data.snippets; }
    bool saveSnippets(const QList<Snippet>&) override { return true; }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}

private:
    VellumryData library;
};

class NoPasteboard final : public Pasteboard {
public:
    void setString(const QString&) override {}
    void setSecretString(const QString&) override {}
};

class NoClipboard final : public ClipboardServiceProtocol {
public:
    void copy(const QString&) override {}
    void copySecret(const QString&) override {}
};

class NoSaveDialog final : public SaveFileDialog {
public:
    void ask(const Request&, std::function<void(const QString&)>) override {}
    void warn(const QString&, const QString&) override {}
};

/// A loaded list model, and the window upon it.
class World {
public:
    explicit World(int count) : storage(LibraryGenerator::generate(count))
    {
        model.loadSnippets();
        (void)model.collections();
    }

    void openWindow()
    {
        window = std::make_unique<MainContentView>(MainContentView::Dependencies{
            model, colors, notifications, EventLoopScheduler::shared(), SystemClock::shared(),
            theme, pasteboard,
            SnippetEditorView::maker({{storage, [this] { return storage.loadFullData(); },
                                       clipboard, FileSystem::local(), saveDialog, notifications,
                                       EventLoopScheduler::shared(), SystemClock::shared()},
                                      theme}),
            [] { return QString(); }, [](const QUrl&) {}});
        window->resize(1024, 680);
        window->show();
        draw();
    }
    void closeWindow()
    {
        window.reset();
        draw();
    }
    /// Lets everything be painted that is to be, now rather than with the screen's next frame.
    void draw()
    {
        QApplication::processEvents();
        if (!window)
            return;
        QEvent update(QEvent::UpdateRequest);
        QApplication::sendEvent(window.get(), &update);
    }

    QTemporaryDir directory;
    SettingsFilePreferencesStore preferences{directory.filePath(QStringLiteral("preferences"))};
    CategoryColorService colors{preferences};
    NotificationCenter notifications;
    MemoryStorage storage;
    FuzzySearchService search;
    SnippetListViewModel model{{storage, search, colors, notifications,
                                EventLoopScheduler::shared(), SystemClock::shared()}};
    Theme theme{ColorScheme::light, 1};
    NoPasteboard pasteboard;
    NoClipboard clipboard;
    NoSaveDialog saveDialog;
    std::unique_ptr<MainContentView> window;
};

std::optional<double> goalAt(int count, double goal)
{
    return count == goalCount ? std::optional(goal) : std::nullopt;
}

void measureOpening(World& world, World& small, int count)
{
    const auto variant = [](World& each) {
        return Variant{[&each] { each.openWindow(); }, [&each] { each.closeWindow(); }};
    };
    const auto times = medianTimes({variant(world), variant(small)}, 15);
    printTimes({"window opened to its first frame", count, times[0], "itself at 1000", times[1],
                goalAt(count, 2)});
}

/// Counts how often a widget is painted, so that a step that is not drawn does not count as fast.
class PaintCounter final : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

/// The time that all but one of a hundred steps of the wheel take, each drawn.
double wheelTime(World& world)
{
    SnippetCardListView& cards = world.window->list().cards();
    const PaintCounter counter(*cards.viewport());
    cards.verticalScrollBar()->setValue(0);
    world.draw();
    const QPointF middle = cards.viewport()->rect().center();
    const QPointF onScreen = cards.viewport()->mapToGlobal(middle);
    std::vector<double> times;
    for (int step = 0; step < wheelSteps; ++step) {
        QWheelEvent wheel(middle, onScreen, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        const auto start = std::chrono::steady_clock::now();
        QApplication::sendEvent(cards.viewport(), &wheel);
        world.draw();
        times.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    if (counter.paints < wheelSteps)
        std::exit(1);
    std::sort(times.begin(), times.end());
    return times[times.size() * 99 / 100];
}

void measureFilter(World& world, int count)
{
    const auto typing = [](World& each) {
        return [&each, typed = 0]() mutable {
            const QStringList queries{QStringLiteral("e"), QStringLiteral("en"),
                                      QStringLiteral("end"), QStringLiteral("en"), QString()};
            each.model.setSearchText(queries.at(++typed % queries.size()));
            each.draw();
        };
    };
    World alone(count); // without a window
    const auto times = medianTimes({{typing(world), [] {}}, {typing(alone), [] {}}}, 25);
    printTimes({"key in the filter to cards drawn", count, times[0], "the list model alone",
                times[1], goalAt(count, 1.5)});
    world.model.setSearchText({});
}

void measureUse(World& world, int count)
{
    world.openWindow();
    printTimes(
        {"wheel step drawn, 99 of 100", count, wheelTime(world), "8 ms", frame, goalAt(count, 1)});

    measureFilter(world, count);

    int edits = 0;
    const double draft = medianTimes({{[&] {
                                           Snippet snippet = world.model.snippets().at(1);
                                           snippet.setTitle(QString::number(++edits));
                                           world.model.setUnsavedEdit(snippet);
                                           world.draw();
                                       },
                                       [] {}}},
                                     25)
                             .front();
    printTimes(
        {"key in a draft's title to card drawn", count, draft, "8 ms", frame, goalAt(count, 1)});

    bool isDark = false;
    const double theme =
        medianTimes({{[&] {
                          isDark = !isDark;
                          world.theme.setScheme(isDark ? ColorScheme::dark : ColorScheme::light);
                          world.draw();
                      },
                      [] {}}},
                    25)
            .front();
    printTimes(
        {"other theme to everything drawn", count, theme, "100 ms", themeTime, goalAt(count, 1)});
    world.closeWindow();
}

void measureSelection(World& world, int count)
{
    world.openWindow();
    world.model.setSelectedSnippetID(world.model.filteredSnippets().at(1).id());
    world.draw();
    bool isDown = false;
    const double selection =
        medianTimes({{[&] {
                          isDown = !isDown;
                          isDown ? world.model.moveSelectionDown() : world.model.moveSelectionUp();
                          world.draw();
                      },
                      [] {}}},
                    25)
            .front();
    printTimes({"snippet selected to its editor drawn", count, selection, "16 ms", keystroke,
                goalAt(count, 1)});
    world.closeWindow();
}

/// A key in a long text: what it costs until the event is dealt with, and until all is drawn.
void measureTyping(World& world, int count, const std::string& what, const QString& text,
                   const QMap<QString, QString>& values, const QString& term)
{
    Snippet snippet = world.model.snippets().at(2);
    world.model.clearUnsavedEdit(snippet.id());
    world.model.setSelectedSnippetID(std::nullopt);
    world.openWindow();
    snippet.setContent(text);
    snippet.setVariables(values);
    world.model.setUnsavedEdit(snippet);
    world.model.setSelectedSnippetID(snippet.id());
    world.draw();
    auto& view = static_cast<SnippetEditorView&>(*world.window->editorPanel()->editor());
    MacTextEditor& editor = view.contentSection().textEditor();
    editor.setSearchTerm(term);
    QTextCursor cursor(editor.document());
    cursor.setPosition(int(text.size() / 2));
    editor.setTextCursor(cursor);
    world.draw();
    const auto type = [&editor] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, {}, QStringLiteral("x"));
        QApplication::sendEvent(&editor, &press);
    };
    const double work = medianTimes({{type, [&] { world.draw(); }}}, 25).front();
    const double drawn = medianTimes({{[&] {
                                           type();
                                           world.draw();
                                       },
                                       [] {}}},
                                     25)
                             .front();
    printTimes({"key " + what, count, work, "8 ms", frame, 1});
    printTimes({"key " + what + " to all drawn", count, drawn, "16 ms", keystroke, 1});
    world.closeWindow();
}

void measureLongTexts(World& world, int count)
{
    QString lines;
    QString wide;
    constexpr int length = 5'000'000;
    while (lines.size() < length)
        lines += QStringLiteral("a line of a long text, {{with}} a placeholder\n");
    while (wide.size() < length)
        wide += QStringLiteral("a line of a long text, {{with}} a placeholder\r\n");
    const QMap<QString, QString> values{{QStringLiteral("with"), QStringLiteral("without")}};
    const std::string name = "in 5 million characters";
    measureTyping(world, count, name, lines, {}, {});
    measureTyping(world, count, name + ", with a value", lines, values, {});
    measureTyping(world, count, name + ", matches shown", lines, values, QStringLiteral("long"));
    measureTyping(world, count, name + " with wide breaks", wide, {}, {});
}

} // namespace

} // namespace vellumry::bench

int main(int argc, char** argv)
{
    using namespace vellumry::bench;
    const QApplication application(argc, argv);
    vellumry::setLogSink([](QStringView) {});
    // What the platform without a screen cannot do, it says each time.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i)
        counts.push_back(std::max(1, std::atoi(argv[i])));
    if (counts.empty())
        counts = {smallCount, 10000, goalCount};
    World small(smallCount);
    small.openWindow(); // what the process does once for all windows is no part of it
    small.closeWindow();
    for (const int count : counts) {
        World world(count);
        measureOpening(world, small, count);
        small.closeWindow();
        world.closeWindow();
        measureUse(world, count);
        measureSelection(world, count);
        if (count == counts.front())
            measureLongTexts(world, count);
    }
}
