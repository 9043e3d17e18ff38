#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

namespace vellumry {

/// The desktop's file manager. Nothing here waits for it. Main thread only.
class FileViewer {
public:
    /// Told why it did not work, in words, later and on the main thread; not if the owner is gone.
    using FailureHandler = std::function<void(const QString& reason)>;

    virtual ~FileViewer() = default;

    /// Shows what is in the folder.
    virtual void showFolder(const QString& path, const QPointer<QObject>& owner,
                            FailureHandler whenFailed) = 0;

    /// Shows the folder that the file or folder is in, with it selected where that can be done.
    virtual void showItem(const QString& path, const QPointer<QObject>& owner,
                          FailureHandler whenFailed) = 0;
};

} // namespace vellumry
