#pragma once

#include <QAccessible>
#include <QList>

namespace vellumry::test {

/// Writes down what screen readers would be told, for as long as it lives. One at a time.
class AccessibleEvents {
public:
    AccessibleEvents() { current = this; }
    ~AccessibleEvents() { current = nullptr; }
    AccessibleEvents(const AccessibleEvents&) = delete;
    AccessibleEvents& operator=(const AccessibleEvents&) = delete;

    /// How often this was told of it since that was asked last.
    [[nodiscard]] qsizetype take(const QObject* object, QAccessible::Event type)
    {
        return events.removeIf(
            [&](const Event& event) { return event.object == object && event.type == type; });
    }

    static void note(const QAccessibleEvent& event)
    {
        if (current)
            current->events.append({event.object(), event.type()});
    }

private:
    struct Event {
        const QObject* object;
        QAccessible::Event type;
    };

    inline static AccessibleEvents* current = nullptr;
    QList<Event> events;
};

} // namespace vellumry::test
