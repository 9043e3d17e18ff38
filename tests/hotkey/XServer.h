#pragma once

#include <initializer_list>
#include <string>
#include <sys/types.h>

namespace vellumry::hotkey {

/// An X server without a screen (Xvfb) of the test's own, which ends with the object, or with the
/// test program however that ends.
class XServer {
public:
    /// Starts it and waits until it answers; `displayName` is empty when it did not come up.
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Such as ":5".
    [[nodiscard]] const std::string& displayName() const { return display; }
    /// What to say when it is not there.
    [[nodiscard]] const std::string& failure() const { return problem; }

    /// Ends the server at once, as a crash would.
    void kill();

    /// Runs a program on this display and waits for its end; true when it succeeded.
    [[nodiscard]] bool run(std::initializer_list<const char*> command) const;

private:
    pid_t process = -1;
    std::string display;
    std::string problem;
};

} // namespace vellumry::hotkey
