#pragma once

#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"

#include <QString>
#include <gtest/gtest.h>

namespace vellumry::test {

template <typename T>
T decode(QByteArrayView json)
{
    return JSONDecoder::vellumry().decode<T>(json);
}

/// What the decoder says of `json`, or a test failure if it decodes after all.
template <typename T>
DecodingError failure(QByteArrayView json)
{
    try {
        (void)decode<T>(json);
    } catch (const DecodingError& error) {
        return error;
    }
    ADD_FAILURE() << "decoded: " << std::string(json.data(), static_cast<size_t>(json.size()));
    return DecodingError(QString());
}

template <typename T>
bool decodes(QByteArrayView json)
{
    try {
        (void)decode<T>(json);
        return true;
    } catch (const DecodingError&) {
        return false;
    }
}

template <typename T>
QByteArray encode(const T& record)
{
    return JSONEncoder::vellumry().encode(record).toByteArray();
}

} // namespace vellumry::test
