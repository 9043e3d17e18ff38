#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

namespace vellumry::test {

/// Another value of a variable of the environment, for the time being.
class Environment {
public:
    Environment(const char* variable, const QByteArray& value) : name(variable)
    {
        if (qEnvironmentVariableIsSet(name))
            before = qgetenv(name);
        qputenv(name, value);
    }
    ~Environment()
    {
        if (before)
            qputenv(name, *before);
        else
            qunsetenv(name);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name;
    std::optional<QByteArray> before;
};

} // namespace vellumry::test
