#pragma once

#include "platform/FileViewer.h"

#include <QStringList>

#include <utility>

namespace vellumry::test {

/// A file manager that writes down what it is to show, and can be made to fail.
class FakeFileViewer final : public FileViewer {
public:
    void showFolder(const QString& path, const QPointer<QObject>& asker,
                    FailureHandler whenFailed) override
    {
        folders.append(path);
        owner = asker;
        handler = std::move(whenFailed);
    }
    void showItem(const QString& path, const QPointer<QObject>& asker,
                  FailureHandler whenFailed) override
    {
        items.append(path);
        owner = asker;
        handler = std::move(whenFailed);
    }

    /// What the last call came to. As in the desktop, an owner that is gone hears nothing.
    void fail(const QString& reason) const
    {
        if (owner)
            handler(reason);
    }

    QStringList folders;
    QStringList items;

private:
    QPointer<QObject> owner;
    FailureHandler handler;
};

} // namespace vellumry::test
