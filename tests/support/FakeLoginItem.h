#pragma once

#include "platform/LoginItem.h"

#include <QStringList>

namespace vellumry::test {

/// A note of the system that lives in memory. Writes down what is asked of it.
class FakeLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }
    void registerItem() override { change(QStringLiteral("register"), true); }
    void unregisterItem() override { change(QStringLiteral("unregister"), false); }

    bool enabled = false;
    bool isRefusing = false; ///< Whether changes fail.
    QStringList calls;

private:
    void change(const QString& call, bool newValue)
    {
        calls.append(call);
        if (isRefusing)
            throw LoginItemError(QStringLiteral("the system says no"));
        enabled = newValue;
    }
};

} // namespace vellumry::test
