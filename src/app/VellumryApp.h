#pragma once

namespace vellumry {

/// The entry value of the program: builds the parts in their order, runs the event loop, and ends
/// what it began.
class VellumryApp {
public:
    VellumryApp() = delete;

    /// Runs the program; returns its exit status.
    static int run(int& argc, char** argv);
};

} // namespace vellumry
