#include "palette/SnippetVariableService.h"

#include "core/Text.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

class SnippetVariables : public testing::Test {
protected:
    const SnippetVariableService& service = SnippetVariableService::shared();
};

using Values = QMap<QString, QString>;

TEST_F(SnippetVariables, ThereIsOneSharedService)
{
    EXPECT_EQ(&SnippetVariableService::shared(), &service);
}

TEST_F(SnippetVariables, NamesComeInTheOrderOfTheirFirstOccurrence)
{
    EXPECT_EQ(service.extractNames(u"{{b}} {{a}} {{b}} {{ a }} {{c}}"_s),
              QStringList({u"b"_s, u"a"_s, u"c"_s}));
    EXPECT_EQ(service.extractNames(u"{{A}} {{a}}"_s), QStringList({u"A"_s, u"a"_s}));
    EXPECT_EQ(service.extractNames(QString()), QStringList());
    EXPECT_EQ(service.extractNames(u"no placeholder"_s), QStringList());
}

TEST_F(SnippetVariables, ANameMayHoldBlanksAndLineFeedsMayStandAroundIt)
{
    EXPECT_EQ(service.extractNames(u"{{ first name }}"_s), QStringList({u"first name"_s}));
    EXPECT_EQ(service.extractNames(u"{{\n\n a\t\n}}"_s), QStringList({u"a"_s}));
    EXPECT_EQ(service.extractNames(u"{{a\nb}}"_s), QStringList());
    EXPECT_EQ(service.extractNames(u"{{a\rb}}"_s), QStringList({u"a\rb"_s}));
    EXPECT_EQ(service.extractNames(u"{{\u00a0\u3000a\u2028}}"_s), QStringList({u"a"_s}));
}

TEST_F(SnippetVariables, OtherWhiteSpaceBelongsToTheName)
{
    EXPECT_EQ(service.extractNames(u"{{\va\x85}}"_s), QStringList({u"\va\x85"_s}));
}

TEST_F(SnippetVariables, BracesInsideAreNoName)
{
    EXPECT_EQ(service.extractNames(u"{{}} {{a{b}} {{a}b}} {a} {{a} }} {{"_s), QStringList());
    EXPECT_EQ(service.extractNames(u"{{{a}}}"_s), QStringList({u"a"_s}));
    EXPECT_EQ(service.resolve(u"{{{a}}}"_s, {{u"a"_s, u"1"_s}}), u"{1}"_s);
    EXPECT_EQ(service.extractNames(u"{{a{{b}}"_s), QStringList({u"b"_s}));
    EXPECT_EQ(service.extractNames(u"{{\n}}{{a}}"_s), QStringList({u"a"_s}));
}

TEST_F(SnippetVariables, ABlankPlaceholderHasNoName)
{
    EXPECT_EQ(service.extractNames(u"{{   }} {{\t}}"_s), QStringList());
    EXPECT_EQ(service.resolve(u"{{   }}"_s, {{QString(), u"1"_s}, {u" "_s, u"2"_s}}), u"{{   }}"_s);
    // A line separator is white space of the pattern, but is not trimmed from a name.
    EXPECT_EQ(service.extractNames(u"{{ \u2028 }}"_s), QStringList());
    EXPECT_EQ(service.extractNames(u"{{ \u2028}}"_s), QStringList({u"\u2028"_s}));
}

TEST_F(SnippetVariables, FillsInEveryOccurrence)
{
    EXPECT_EQ(service.resolve(u"{{a}} {{a}}"_s, {{u"a"_s, u"1"_s}}), u"1 1"_s);
    EXPECT_EQ(service.extractNames(u"{{a}} {{a}}"_s), QStringList({u"a"_s}));
}

TEST_F(SnippetVariables, BlanksAroundANameDoNotMatter)
{
    EXPECT_EQ(service.resolve(u"x{{ a }}y{{a}}z"_s, {{u"a"_s, u"1"_s}}), u"x1y1z"_s);
}

TEST_F(SnippetVariables, WithoutValuesTheContentStaysAsItIs)
{
    const QString content = u"{{a}} {{b}}"_s;
    EXPECT_EQ(service.resolve(content, {}).constData(), content.constData());
    EXPECT_EQ(service.resolve(content, {{u"c"_s, u"1"_s}}), content);
    EXPECT_EQ(service.resolve(QString(), {{u"a"_s, u"1"_s}}), QString());
    EXPECT_EQ(service.resolve(u"plain"_s, {{u"a"_s, u"1"_s}}), u"plain"_s);
}

TEST_F(SnippetVariables, ABlankValueIsNoValue)
{
    for (const QString& value : {u""_s, u"   "_s, u"\t"_s, u"\n"_s, u" \r\n \u2028"_s}) {
        EXPECT_EQ(service.resolve(u"{{ a }}"_s, {{u"a"_s, value}}), u"{{ a }}"_s);
        EXPECT_EQ(service.prunedValues({{u"a"_s, value}}, u"{{a}}"_s), Values());
    }
}

TEST_F(SnippetVariables, AValueIsFilledInWithItsBlanks)
{
    EXPECT_EQ(service.resolve(u"[{{a}}]"_s, {{u"a"_s, u"  x "_s}}), u"[  x ]"_s);
    EXPECT_EQ(service.prunedValues({{u"a"_s, u"  x "_s}}, u"{{a}}"_s),
              Values({{u"a"_s, u"  x "_s}}));
}

TEST_F(SnippetVariables, AValueIsNotResolvedAgain)
{
    const Values values{{u"a"_s, u"{{b}}"_s}, {u"b"_s, u"2"_s}};
    EXPECT_EQ(service.resolve(u"{{a}}"_s, values), u"{{b}}"_s);
    EXPECT_EQ(service.resolve(u"{{a}}{{b}}"_s, values), u"{{b}}2"_s);
    // Nor does a value become a placeholder together with what stands around it.
    EXPECT_EQ(service.resolve(u"{{{a}}}"_s, {{u"a"_s, u"{b}"_s}, {u"b"_s, u"2"_s}}), u"{{b}}"_s);
}

TEST_F(SnippetVariables, NamesAreCaseSensitive)
{
    EXPECT_EQ(service.resolve(u"{{A}}{{a}}"_s, {{u"a"_s, u"1"_s}}), u"{{A}}1"_s);
}

TEST_F(SnippetVariables, NoNameIsBuiltIn)
{
    const QString content = u"{{date}}{{time}}{{clipboard}}{{cursor}}"_s;
    EXPECT_EQ(service.resolve(content, {{u"a"_s, u"1"_s}}), content);
}

TEST_F(SnippetVariables, KeepsTheValuesThatTheTextCanUse)
{
    const Values values{{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}, {u" c"_s, u"3"_s}};
    EXPECT_EQ(service.prunedValues(values, u"{{ a }} {{c}}"_s), Values({{u"a"_s, u"1"_s}}));
    EXPECT_EQ(service.prunedValues(values, QString()), Values());
    EXPECT_EQ(service.prunedValues({}, u"{{a}}"_s), Values());
}

TEST_F(SnippetVariables, LongTextsNeedNoMoreThanOnePass)
{
    constexpr qsizetype length = 5'000'000;
    const QString blanks(length, u' ');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(service.extractNames(u"{{"_s + blanks), QStringList());
    EXPECT_EQ(service.extractNames(u"{{"_s + blanks + u"}}"_s), QStringList());
    EXPECT_EQ(service.extractNames(u"{{"_s + blanks + u"a"_s + blanks + u"}}"_s),
              QStringList({u"a"_s}));
    EXPECT_EQ(service.extractNames(QString(length, u'{')), QStringList());
    EXPECT_EQ(service.extractNames(u"{{a\n"_s.repeated(length / 4)), QStringList());
    EXPECT_EQ(service.extractNames(QString(length, u'\n').prepend(u"{{"_s) + u"}}"_s),
              QStringList());
    EXPECT_EQ(service.resolve(u"{{a}}"_s.repeated(length / 5), {{u"a"_s, u"bc"_s}}),
              u"bc"_s.repeated(length / 5));
    // A pass takes milliseconds; anything in the square of the length would take hours.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(1));
}

/// The operations as the regular expression defines them.
class ByRegularExpression {
public:
    ByRegularExpression()
        : expression(SnippetVariableService::pattern.toString().replace(u"\\s"_s,
                                                                        u"[\\t\\n\\f\\r\\p{Z}]"_s))
    {
        EXPECT_TRUE(expression.isValid());
    }

    [[nodiscard]] QStringList extractNames(const QString& text) const
    {
        QStringList names;
        for (const auto& match : expression.globalMatch(text)) {
            const QString name = trimmedHorizontally(match.capturedView(1)).toString();
            if (!name.isEmpty() && !names.contains(name))
                names.append(name);
        }
        return names;
    }

    [[nodiscard]] QString resolve(QString content, const Values& values) const
    {
        if (content.isEmpty() || values.isEmpty())
            return content;
        QList<QRegularExpressionMatch> matches;
        for (const auto& match : expression.globalMatch(content))
            matches.prepend(match);
        for (const auto& match : std::as_const(matches)) {
            const QString name = trimmedHorizontally(match.capturedView(1)).toString();
            const QString value = values.value(name);
            if (!name.isEmpty() && !trimmedWithLineBreaks(value).isEmpty())
                content.replace(match.capturedStart(), match.capturedLength(), value);
        }
        return content;
    }

private:
    QRegularExpression expression;
};

TEST_F(SnippetVariables, PlaceholdersAreToldWithTheirPlaces)
{
    const QString text = u"a {{ b }} {{}} {{{c}} {{b}}"_s;
    const auto found = service.placeholders(text);
    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(text.sliced(found[0].begin, found[0].length), u"{{ b }}");
    EXPECT_EQ(found[0].name, u"b");
    EXPECT_EQ(text.sliced(found[1].begin, found[1].length), u"{{c}}");
    EXPECT_EQ(found[1].name, u"c");
    EXPECT_EQ(found[2].begin, 22);
    EXPECT_EQ(found[2].name, u"b");
}

TEST_F(SnippetVariables, EqualTheRegularExpressionOnRandomTexts)
{
    const ByRegularExpression expected;
    const std::array pieces{u"{"_s,      u"{{"_s,     u"}"_s,          u"}}"_s,     u"a"_s,
                            u"b"_s,      u" "_s,      u"\n"_s,         u"\t"_s,     u"\r"_s,
                            u"\u2028"_s, u"\u00a0"_s, u"\x85"_s,       u"\v"_s,     u"\f"_s,
                            u"{{ "_s,    u" }}"_s,    u"\U0001F600"_s, u"\u0301"_s, u"\u180e"_s};
    std::mt19937 engine(1);
    const auto random = [&](size_t limit) {
        return std::uniform_int_distribution<size_t>(0, limit - 1)(engine);
    };
    const Values values{{u"a"_s, u"<{{b}}>"_s}, {u"b"_s, u" x "_s},    {u"\r"_s, u"cr"_s},
                        {u"\u2028"_s, u"ls"_s}, {u"a b"_s, u"both"_s}, {u"ab"_s, u" \n"_s}};
    int found = 0;
    for (int round = 0; round < 300000; ++round) {
        QString text;
        const size_t variety = random(2) == 0 ? 8 : pieces.size();
        for (size_t count = random(14); count > 0; --count)
            text += pieces[random(variety)];
        const QStringList names = service.extractNames(text);
        ASSERT_EQ(names, expected.extractNames(text)) << qPrintable(text);
        ASSERT_EQ(service.resolve(text, values), expected.resolve(text, values))
            << qPrintable(text);
        found += static_cast<int>(names.size());
    }
    EXPECT_GT(found, 10000);
}

} // namespace
} // namespace vellumry
