#pragma once

#include <QList>
#include <QString>

namespace vellumry {

/// A snippet of the default library, which has only what a newcomer needs.
struct DefaultSnippet {
    QString title;
    QString content;
};

struct DefaultCollection {
    QString name;
    QString color;
    QList<DefaultSnippet> snippets;
};

/// The shape of the resource DefaultSnippets.json.
struct DefaultSnippetsContainer {
    QList<DefaultCollection> collections;
};

} // namespace vellumry
