#pragma once

#include "library/PickFolder.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>

namespace vellumry::test {

/// A dialog for folders that a test answers by hand.
class FolderQuestion {
public:
    [[nodiscard]] PickFolder asker()
    {
        return [this](const QString& title, auto onAnswer) {
            titles.append(title);
            open.push_back(std::move(onAnswer));
        };
    }

    [[nodiscard]] bool isOpen() const { return !open.empty(); }

    void choose(const QString& path) { answer(PickedFile{.path = path, .error = {}}); }
    void fail(const QString& message) { answer(PickedFile{.path = {}, .error = message}); }
    void cancel() { answer(std::nullopt); }

    QStringList titles; ///< of all dialogs that were asked for

private:
    void answer(const std::optional<PickedFile>& given)
    {
        ASSERT_TRUE(isOpen());
        const auto onAnswer = std::move(open.front());
        open.pop_front();
        onAnswer(given);
    }

    std::deque<std::function<void(const std::optional<PickedFile>&)>> open;
};

} // namespace vellumry::test
