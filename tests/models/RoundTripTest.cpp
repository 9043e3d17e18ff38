#include "models/RecordCoding.h"

#include <QJsonDocument>

#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using test::decode;
using test::encode;

/// Records of every shape, the same in each run.
class Chance {
public:
    explicit Chance(unsigned seed) : engine(seed) {}

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(engine); }
    bool half() { return upTo(1) == 1; }

    qint64 number()
    {
        const qint64 any = std::uniform_int_distribution<qint64>(
            std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max())(engine);
        return half() ? upTo(100) : any;
    }

    /// Whole milliseconds, as files keep them.
    Date date()
    {
        return Date(std::chrono::milliseconds(
            std::uniform_int_distribution<qint64>(-9'000'000'000'000, 9'000'000'000'000)(engine)));
    }

    QString text()
    {
        static const QStringList parts = {
            u"a"_s,       u"B"_s,      u" "_s,
            u"\n"_s,      u"\r\n"_s,   u"\t"_s,
            u"\""_s,      u"\\"_s,     u"/"_s,
            u"ä"_s,       u"漢"_s,     u"😀"_s,
            u"e\u0301"_s, u"{{x}}"_s,  u"\u2028"_s,
            u"\b"_s,      u"\u007F"_s, QString(QChar(0)),
            u"\u0001"_s,  u"</"_s,     u"\U0001F468\u200D\U0001F469"_s};
        QString result;
        for (int i = upTo(30); i > 0; --i)
            result += parts[upTo(static_cast<int>(parts.size()) - 1)];
        return result;
    }

    QStringList texts()
    {
        QStringList result;
        for (int i = upTo(4); i > 0; --i)
            result.append(text());
        return result;
    }

    QMap<QString, QString> map()
    {
        QMap<QString, QString> result;
        for (int i = upTo(4); i > 0; --i)
            result.insert(text(), text());
        return result;
    }

    template <typename Make>
    auto maybe(Make make)
    {
        return half() ? std::optional(make()) : std::nullopt;
    }

    Snippet snippet()
    {
        return Snippet(SnippetFields{.id = text(),
                                     .title = text(),
                                     .subtitle = text().repeated(1 + upTo(10)),
                                     .collection = text(),
                                     .content = text(),
                                     .keywords = texts(),
                                     .createdAt = date(),
                                     .updatedAt = date(),
                                     .usageCount = number(),
                                     .lastUsedAt = maybe([this] { return date(); }),
                                     .displayOrder = maybe([this] { return number(); }),
                                     .variables = map()});
    }

    QList<Snippet> snippets()
    {
        QList<Snippet> result;
        for (int i = upTo(3); i > 0; --i)
            result.append(snippet());
        return result;
    }

    SyncCollection head()
    {
        return {text(), text(), maybe([this] { return text(); }), date()};
    }

    std::optional<SyncSettings> settings()
    {
        return maybe([this] { return SyncSettings{number(), half()}; });
    }

    VellumryData library()
    {
        VellumryData result{text(), date(), text(), {}, settings()};
        result.data.collections = {head(), head()};
        result.data.snippets = snippets();
        result.data.categoryColors = map();
        return result;
    }

    LegacyExportData legacy()
    {
        LegacyExportData result{
            maybe([this] { return text(); }), maybe([this] { return date(); }), {}};
        for (int i = upTo(3); i > 0; --i)
            result.collections.append({maybe([this] { return text(); }), text(),
                                       maybe([this] { return number(); }),
                                       maybe([this] { return text(); }), snippets()});
        return result;
    }

private:
    std::mt19937 engine;
};

template <typename T>
void expectRoundTrip(const T& record)
{
    const QByteArray bytes = encode(record);
    const T again = decode<T>(bytes);
    EXPECT_EQ(again, record);
    EXPECT_EQ(encode(again), bytes);
    QJsonParseError error;
    QJsonDocument::fromJson(bytes, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << qPrintable(error.errorString());
}

TEST(RoundTrip, EveryRecordComesBackAsItWas)
{
    Chance chance(20260309);
    for (int i = 0; i < 300; ++i) {
        expectRoundTrip(chance.snippet());
        expectRoundTrip(chance.head());
        expectRoundTrip(SyncSettings{chance.number(), chance.half()});
        expectRoundTrip(chance.library());
        expectRoundTrip(CollectionFileData{chance.text(), chance.date(), chance.text(),
                                           chance.head(), chance.snippets()});
        expectRoundTrip(MetadataFileData{chance.text(), chance.date(), chance.text(),
                                         chance.texts(), chance.settings()});
        expectRoundTrip(chance.legacy());
        ASSERT_FALSE(HasFailure()) << i;
    }
}

TEST(RoundTrip, ADateKeepsItsMillisecondsAlone)
{
    SnippetFields fields;
    fields.updatedAt = Date(std::chrono::nanoseconds(1'234'567'891));
    const Snippet again = decode<Snippet>(encode(Snippet(fields)));
    EXPECT_EQ(again.updatedAt(), Date(std::chrono::milliseconds(1'234)));
}

TEST(RoundTrip, DamagedBytesAreRefusedOrDecodeButNeverCrash)
{
    Chance chance(7);
    int refused = 0;
    for (int i = 0; i < 500; ++i) {
        QByteArray bytes = encode(chance.library());
        for (int j = 1 + chance.upTo(3); j > 0; --j)
            bytes[chance.upTo(static_cast<int>(bytes.size()) - 1)] =
                static_cast<char>(chance.upTo(255));
        try {
            const VellumryData library = decode<VellumryData>(bytes);
            EXPECT_EQ(decode<VellumryData>(encode(library)), library);
        } catch (const DecodingError& error) {
            EXPECT_FALSE(error.description().isEmpty());
            ++refused;
        }
    }
    EXPECT_GT(refused, 100);
}

} // namespace
} // namespace vellumry
