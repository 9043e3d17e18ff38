#include "FuzzInput.h"
#include "core/Text.h"
#include "palette/SnippetVariableService.h"

#include <QSet>

// The placeholders of a text. The input is lines: names and values in turn, and the text last.

namespace {

using namespace vellumry;
using fuzz::require;

bool hasText(const QString& value)
{
    return !trimmedWithLineBreaks(value).isEmpty();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzInput input(data, size);
    QMap<QString, QString> values;
    for (int count = input.byte() % 5; count > 0; --count) {
        const QString name = input.text();
        values.insert(name, input.text());
    }
    const QString content = input.text();

    const SnippetVariableService& service = SnippetVariableService::shared();
    const QStringList names = service.extractNames(content);
    const QSet<QString> distinct(names.begin(), names.end());
    require(distinct.size() == names.size(), "names are distinct");
    for (const QString& name : names) {
        require(!name.isEmpty(), "a name is not empty");
        require(trimmedHorizontally(name).size() == name.size(), "a name is trimmed");
        require(content.contains(name), "a name stands in the text");
        require(!name.contains(u'{') && !name.contains(u'}') && !name.contains(u'\n'),
                "a name has no braces and no line feed");
    }

    const QMap<QString, QString> pruned = service.prunedValues(values, content);
    for (auto entry = values.begin(); entry != values.end(); ++entry)
        require(pruned.contains(entry.key()) ==
                    (distinct.contains(entry.key()) && hasText(entry.value())),
                "exactly the values of use are kept");
    for (auto entry = pruned.begin(); entry != pruned.end(); ++entry)
        require(values.value(entry.key()) == entry.value(), "kept values are unchanged");

    const QString resolved = service.resolve(content, values);
    require(resolved == service.resolve(content, pruned), "only the values of use matter");
    if (pruned.isEmpty())
        require(resolved == content, "without values the text stays as it is");
    return 0;
}
