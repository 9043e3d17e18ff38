#pragma once

#include "core/FatalError.h"

#include <QStringList>

#include <optional>

class QMessageBox;

namespace vellumry {

/// The window in which a process of its own says why the program has ended and how to mend it. The
/// library on the disk is not touched by it.
class FatalErrorNotice {
public:
    FatalErrorNotice() = delete;

    /// From now on a fatal error starts this very program once more, to explain it. To be called
    /// once the program has its display.
    static void install();

    /// What the arguments after the program's name say, if they are those of such a process.
    [[nodiscard]] static std::optional<FatalErrorReport> reportIn(const QStringList& arguments);
    /// The arguments that say it.
    [[nodiscard]] static QStringList argumentsFor(const FatalErrorReport& report);

    /// What the window says: what has happened and, with the steps to be taken, how to mend it.
    [[nodiscard]] static QString explanation(const FatalErrorReport& report);

    /// Fills the window.
    static void prepare(QMessageBox& window, const FatalErrorReport& report);

    /// Shows the window until the person has read it; returns the status of the process.
    static int run(const FatalErrorReport& report);
};

} // namespace vellumry
