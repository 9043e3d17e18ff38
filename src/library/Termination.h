#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace vellumry {

class NotificationCenter;
class SnippetListViewModel;

/// A question to the person, as an alert of the warning style puts it.
struct QuitQuestion {
    QString title;
    QString informativeText;
    QStringList buttons; ///< in their order

    friend bool operator==(const QuitQuestion&, const QuitQuestion&) = default;
};

/// How the program ends: only with the person's word on drafts that are not saved. Nothing is torn
/// down at the end. Main thread only.
class Termination {
public:
    enum class Reply { terminateNow, terminateCancel };

    /// Outlive the object.
    struct Dependencies {
        SnippetListViewModel& list;
        NotificationCenter& notifications;
        /// Puts the question and waits for the answer, which is the position of the button; nothing
        /// when the question went away otherwise.
        std::function<std::optional<qsizetype>(const QuitQuestion&)> ask;
    };

    explicit Termination(Dependencies dependencies);

    /// False: closing the last window never ends the program.
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Whether the program may end. Asks about the drafts if there are any, and saves or discards
    /// them by the answer; while the question is up, another call changes nothing.
    [[nodiscard]] Reply applicationShouldTerminate();

    /// The same at the end of the desktop's session. `mayAsk` is asked only when there is something
    /// to ask the person. If it says no, or the question is up already, the program ends and writes
    /// nothing.
    [[nodiscard]] Reply sessionShouldEnd(const std::function<bool()>& mayAsk);

    /// The last word before the end.
    void applicationWillTerminate();

private:
    Dependencies with;
    bool isAsking = false;
};

} // namespace vellumry
