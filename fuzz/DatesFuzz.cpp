#include "FuzzInput.h"
#include "core/Date.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vellumry;
    using fuzz::require;

    const auto date = parseDate(fuzz::FuzzInput(data, size).remaining());
    if (!date)
        return 0;
    require(truncatedToMilliseconds(*date) == *date, "a date has whole milliseconds");
    const QByteArray text = formatDate(*date).toLatin1();
    require(text.size() == dateTextLength, "the text of a date has its length");
    require(parseDate(text) == date, "a date comes back from its text");
    return 0;
}
