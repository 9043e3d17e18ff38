#include "expression/ParseCache.h"

namespace vellumry::expression {

ParseCache& ParseCache::shared()
{
    static ParseCache cache;
    return cache;
}

ParsedExpression ParseCache::get(std::string_view text, ParsedExpression (*parse)(std::string_view))
{
    {
        const std::lock_guard lock(mutex);
        if (const auto entry = entries.find(text); entry != entries.end())
            return entry->second;
    }
    // Others need not wait for the parse; who else reads the same text finds the same.
    ParsedExpression parsed = parse(text);
    const std::lock_guard lock(mutex);
    entries.emplace(text, parsed);
    return parsed;
}

void ParseCache::clear()
{
    const std::lock_guard lock(mutex);
    entries.clear();
}

void ParseCache::clear(std::string_view text)
{
    const std::lock_guard lock(mutex);
    if (const auto entry = entries.find(text); entry != entries.end())
        entries.erase(entry);
}

std::size_t ParseCache::size() const
{
    const std::lock_guard lock(mutex);
    return entries.size();
}

} // namespace vellumry::expression
