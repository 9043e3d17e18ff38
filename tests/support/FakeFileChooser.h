#pragma once

#include "platform/FileChooser.h"

#include <QList>
#include <QPointer>

#include <utility>

namespace vellumry::test {

/// The dialogs of a desktop, answered by hand.
class FakeFileChooser final : public FileChooser {
public:
    void ask(const Request& request, QObject& asker, Handlers given) override
    {
        requests.append(request);
        owner = &asker;
        handlers = std::move(given);
    }

    /// Whether the last dialog is on the screen.
    [[nodiscard]] bool isOpen() const { return owner != nullptr; }

    void choose(const QUrl& place)
    {
        end([&](const Handlers& call) { call.onAnswer(place); });
    }
    void choose(const QString& path) { choose(QUrl::fromLocalFile(path)); }
    void cancel()
    {
        end([](const Handlers& call) { call.onAnswer(std::nullopt); });
    }
    void beUnavailable()
    {
        end([](const Handlers& call) { call.whenUnavailable(); });
    }

    QList<Request> requests;

private:
    template <typename Answer>
    void end(const Answer& answer)
    {
        if (std::exchange(owner, nullptr))
            answer(std::exchange(handlers, {}));
    }

    QPointer<QObject> owner;
    Handlers handlers;
};

} // namespace vellumry::test
