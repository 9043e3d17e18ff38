#pragma once

#include "views/common/Theme.h"
#include "views/editor/SaveFilePanel.h"
#include "views/editor/SnippetEditorView.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QUrl;
class QWidget;

namespace vellumry {

class DependencyContainer;
class FirstLaunch;
class FirstLaunchView;
class KeyboardShortcutsView;
class LaunchState;
class LoadingOverlayView;
class MainContentView;
class SheetHost;
struct QuitQuestion;

/// What the main window is filled with: the list's model and the views of it, what lies over them,
/// and the looks that they share with the other windows. Nothing is built before the first window
/// asks for its contents. Main thread only.
class MainContents : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    struct Dependencies {
        DependencyContainer& container;
        LaunchState& launchState;
        std::function<void(SheetHost&)> showSettings; ///< over what the host covers
    };

    explicit MainContents(Dependencies dependencies, QObject* parent = nullptr);
    ~MainContents() override;

    /// New contents for a window, which takes them over.
    [[nodiscard]] QWidget* make();

    /// Puts the question over the contents that were made last, which are on the screen, and waits.
    /// Nothing if there are none or they went away.
    [[nodiscard]] std::optional<qsizetype> ask(const QuitQuestion& question);

    /// Hides or shows the sidebar of the contents that were made last.
    void toggleSidebar();

    /// The looks of the person's choice.
    [[nodiscard]] Theme& theme();

private:
    [[nodiscard]] SnippetEditorView::Dependencies editorDependencies();
    void showFirstLaunchView();
    void dismissFirstLaunchView();
    void showLoadingOverlay();
    void showKeyboardShortcuts();
    /// A page in the browser, or a folder in the file manager.
    void openExternally(const QUrl& url);

    Dependencies with;
    std::unique_ptr<Theme> ownTheme;          ///< made when it is first asked for
    std::unique_ptr<SaveFilePanel> savePanel; ///< of the editors
    std::unique_ptr<FirstLaunch> firstLaunch; ///< of the first launch alone
    QPointer<MainContentView> view;           ///< the contents that were made last
    // What lies over them at present.
    QPointer<FirstLaunchView> firstLaunchView;
    QPointer<LoadingOverlayView> overlay;
    QPointer<KeyboardShortcutsView> shortcuts;
};

} // namespace vellumry
