#pragma once

#include "platform/FileEventStream.h"

#include <QSet>

#include <utility>

namespace vellumry::test {

/// Event streams whose events a test makes up.
class ManualFileEvents {
public:
    /// Whether streams can be made, and started.
    bool canMake = true;
    bool canStart = true;
    /// What was asked for, the latest last.
    QList<FileEventStream::Request> requests;

    [[nodiscard]] FileEventStream::Factory factory()
    {
        return [this](const FileEventStream::Request& request) -> std::unique_ptr<FileEventStream> {
            requests.append(request);
            if (!canMake)
                return nullptr;
            return std::make_unique<Stream>(*this, request);
        };
    }

    /// The folders that are being watched.
    [[nodiscard]] QStringList watchedFolders() const
    {
        QStringList folders;
        for (const Stream* stream : running)
            folders.append(stream->request.folder);
        return folders;
    }

    /// Tells the streams on the folder of a batch.
    void tell(const QStringList& paths, const QList<quint32>& flags)
    {
        const QList<Stream*> streams(running.cbegin(), running.cend());
        for (const Stream* stream : streams)
            stream->request.callback(paths, flags);
    }
    void tell(const QString& path, quint32 flags = FileEventStream::itemModified)
    {
        tell(QStringList{path}, QList<quint32>{flags});
    }

private:
    class Stream final : public FileEventStream {
    public:
        Stream(ManualFileEvents& events, Request wanted) : request(std::move(wanted)), owner(events)
        {
        }
        ~Stream() override { owner.running.remove(this); }
        Stream(const Stream&) = delete;
        Stream& operator=(const Stream&) = delete;

        bool start() override
        {
            if (owner.canStart)
                owner.running.insert(this);
            return owner.canStart;
        }
        void stop() override { owner.running.remove(this); }

        const Request request;

    private:
        ManualFileEvents& owner;
    };

    QSet<Stream*> running;
};

} // namespace vellumry::test
