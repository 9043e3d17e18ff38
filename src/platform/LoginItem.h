#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace vellumry {

/// The launch at login could not be changed.
class LoginItemError : public std::exception {
public:
    /// What failed and why, in words.
    explicit LoginItemError(const QString& description);

    [[nodiscard]] const QString& description() const { return words; }
    [[nodiscard]] const char* what() const noexcept override { return bytes.constData(); }

private:
    QString words;
    QByteArray bytes;
};

/// The system's note that it is to launch this program when the user logs in. Others may change it
/// at any time. Main thread only.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// Whether the program will be launched. A note that cannot be read is none.
    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// Makes the system launch the program. Throws LoginItemError; then all is as it was.
    virtual void registerItem() = 0;

    /// Makes the system launch it no more. Throws LoginItemError; then all is as it was.
    virtual void unregisterItem() = 0;
};

} // namespace vellumry
