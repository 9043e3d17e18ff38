#pragma once

#include "platform/StatusArea.h"

#include <chrono>

namespace vellumry {

class Scheduler;

/// The status area of the desktop: the one that announces itself on the session bus, or else the
/// older one of the X display. The toolkit asks for the area once and remembers the answer for the
/// life of the process, so nothing of it may be touched before appeared().
class DesktopStatusArea final : public StatusArea {
    Q_OBJECT

public:
    /// A session that has just begun may have its area by then.
    static constexpr std::chrono::milliseconds patience{10'000};

    explicit DesktopStatusArea(Scheduler& scheduler, QObject* parent = nullptr);

    void startLooking() override;

private Q_SLOTS:
    void hostAppeared();

private:
    void askForHost();
    void settle();

    Scheduler& scheduler;
    bool isThere = false;
};

} // namespace vellumry
