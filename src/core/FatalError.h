#pragma once

#include <QString>
#include <QStringView>

#include <functional>

namespace vellumry {

/// What the program ended of, for whoever explains it to the person.
struct FatalErrorReport {
    QString text;
    QString key;  ///< that stands twice where keys must be unique; or empty
    QString file; ///< the path of the file in which it does; or empty
};

/// Ends the process at once after printing the text to standard error: for what must never be, and
/// what going on would make worse. The status is 1; nothing is torn down and no core is dumped.
[[noreturn]] void fatalError(QStringView text);

/// The end for a key that stands twice in a file where keys must be unique.
[[noreturn]] void fatalDuplicateKey(QStringView key, const QString& file);

/// Is called with the report after the text was printed, right before the end. It must be quick and
/// touch nothing of what the program was doing. To be set while there is one thread only.
void setFatalErrorExplainer(std::function<void(const FatalErrorReport&)> explain);

} // namespace vellumry
