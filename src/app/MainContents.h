#pragma once

#include "views/common/Theme.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QUrl;
class QWidget;

namespace vellumry {

class DependencyContainer;
class LaunchState;
class MainContentView;
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
        std::function<void()> showSettings;
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
    /// A page in the browser, or a folder in the file manager.
    void openExternally(const QUrl& url);

    Dependencies with;
    std::unique_ptr<Theme> ownTheme;
    QPointer<MainContentView> view;
};

} // namespace vellumry
