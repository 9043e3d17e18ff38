#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace vellumry::test {

/// A message bus of the test's own that starts no services, so that only those are there which the
/// test brings. Ends with the object, or with the test program however that ends.
class PrivateBus {
public:
    /// Starts it and waits until it answers; `address` is empty when it did not come up.
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] const QString& address() const { return busAddress; }
    /// What to say when it is not there.
    [[nodiscard]] const QString& failure() const { return problem; }

    /// A connection of its own for each call; they all end with the object. Any thread, one at a
    /// time.
    [[nodiscard]] QDBusConnection connect();

private:
    QProcess daemon;
    QString busAddress;
    QString problem;
    QStringList names;
};

} // namespace vellumry::test
