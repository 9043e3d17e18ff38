#include "hotkey/XServer.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vellumry::hotkey {

namespace {

constexpr int startLimit = 30'000; // milliseconds
constexpr int notFound = 127;

[[noreturn]] void becomeServer(int reportDescriptor, pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(notFound);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    // Keys that are held repeat soon, so that the tests need not wait.
    const std::string report = std::to_string(reportDescriptor);
    execlp("Xvfb", "Xvfb", "-displayfd", report.c_str(), "-noreset", "-nolisten", "tcp", "-screen",
           "0", "320x240x24", "-ardelay", "100", "-arinterval", "20", static_cast<char*>(nullptr));
    _exit(notFound);
}

std::string readLine(int descriptor)
{
    std::string line;
    char character = 0;
    pollfd source{descriptor, POLLIN, 0};
    while (poll(&source, 1, startLimit) > 0 && read(descriptor, &character, 1) == 1) {
        if (character == '\n')
            return line;
        line += character;
    }
    return {};
}

} // namespace

XServer::XServer()
{
    std::array<int, 2> report{};
    if (pipe(report.data()) != 0) {
        problem = "no pipe for the X server";
        return;
    }
    const pid_t parent = getpid();
    process = fork();
    if (process == 0) {
        close(report[0]);
        becomeServer(report[1], parent);
    }
    close(report[1]);
    const std::string number = readLine(report[0]);
    close(report[0]);
    if (number.empty())
        problem = "Xvfb did not start: install the packages xvfb and x11-xkb-utils";
    else
        display = ":" + number;
}

XServer::~XServer()
{
    kill();
}

void XServer::kill()
{
    if (process <= 0)
        return;
    ::kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    process = -1;
}

bool XServer::run(std::initializer_list<const char*> command) const
{
    std::vector<char*> arguments;
    for (const char* argument : command)
        arguments.push_back(const_cast<char*>(argument));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        setenv("DISPLAY", display.c_str(), 1);
        execvp(arguments.front(), arguments.data());
        _exit(notFound);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace vellumry::hotkey
