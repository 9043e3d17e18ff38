#include "core/FatalError.h"

#include <QByteArray>
#include <QStringBuilder>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace vellumry {

namespace {

std::function<void(const FatalErrorReport&)>& explainer()
{
    static std::function<void(const FatalErrorReport&)> explain;
    return explain;
}

[[noreturn]] void end(const FatalErrorReport& report)
{
    const QByteArray bytes = report.text.toUtf8();
    std::fprintf(stderr, "%s\n", bytes.constData());
    std::fflush(stderr);
    if (const auto& explain = explainer())
        explain(report);
    std::_Exit(EXIT_FAILURE);
}

} // namespace

void fatalError(QStringView text)
{
    end({.text = text.toString(), .key = {}, .file = {}});
}

void fatalDuplicateKey(QStringView key, const QString& file)
{
    end({.text = u"Duplicate values for key: '" % key % u'\'',
         .key = key.toString(),
         .file = file});
}

void setFatalErrorExplainer(std::function<void(const FatalErrorReport&)> explain)
{
    explainer() = std::move(explain);
}

} // namespace vellumry
