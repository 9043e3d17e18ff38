#include "expression/ParseCache.h"

#include "expression/Expression.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace vellumry::expression {

namespace {

std::atomic<int> parseCount = 0;

ParsedExpression counted(std::string_view text)
{
    ++parseCount;
    return Expression::parse(text, false);
}

class ParseCacheTest : public testing::Test {
protected:
    void SetUp() override { parseCount = 0; }

    ParseCache cache;
};

TEST_F(ParseCacheTest, readsATextOnce)
{
    EXPECT_EQ(cache.get("1 + 2", counted).description(), "1 + 2");
    EXPECT_EQ(cache.get("1 + 2", counted).description(), "1 + 2");
    EXPECT_EQ(parseCount, 1);
    EXPECT_EQ(cache.get("1 +  2", counted).description(), "1 + 2");
    EXPECT_EQ(parseCount, 2);
}

TEST_F(ParseCacheTest, storesFailuresToo)
{
    EXPECT_EQ(cache.get("(1", counted).error(), Error::missingDelimiter(")"));
    EXPECT_EQ(cache.get("(1", counted).error(), Error::missingDelimiter(")"));
    EXPECT_EQ(parseCount, 1);
}

TEST_F(ParseCacheTest, isEmptiedByClearAlone)
{
    constexpr int count = 10000;
    for (int i = 0; i < count; ++i)
        (void)cache.get(std::to_string(i), counted);
    EXPECT_EQ(cache.size(), static_cast<std::size_t>(count));
    cache.clear("5");
    cache.clear("no such text");
    EXPECT_EQ(cache.size(), static_cast<std::size_t>(count - 1));
    (void)cache.get("5", counted);
    EXPECT_EQ(parseCount, count + 1);
    cache.clear();
    EXPECT_EQ(cache.size(), 0U);
}

TEST_F(ParseCacheTest, expressionsUseTheOneOfTheProcess)
{
    Expression::clearCache();
    ParseCache& shared = ParseCache::shared();
    EXPECT_EQ(Expression("1 + 2").evaluate(), 3);
    EXPECT_EQ(shared.size(), 1U);
    (void)Expression::parse("3", false);
    EXPECT_EQ(shared.size(), 1U);
    (void)Expression::parse("3");
    (void)Expression::parse("(");
    EXPECT_EQ(shared.size(), 3U);
    Expression::clearCache("3");
    EXPECT_EQ(shared.size(), 2U);
    Expression::clearCache();
    EXPECT_EQ(shared.size(), 0U);
}

TEST_F(ParseCacheTest, bindingLeavesWhatIsStoredAsItWas)
{
    Expression::clearCache();
    EXPECT_EQ(Expression("x + 1", {}, {{"x", 1}}).evaluate(), 2);
    EXPECT_EQ(Expression("x + 1", {}, {{"x", 2}}).evaluate(), 3);
    EXPECT_EQ(Expression::parse("x + 1").description(), "x + 1");
    Expression::clearCache();
}

TEST_F(ParseCacheTest, manyThreadsMayUseIt)
{
    Expression::clearCache();
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t, &wrong] {
            for (int i = 0; i < 2000; ++i) {
                const int number = (i * 7 + t) % 50;
                const std::string text = std::to_string(number) + " + 1";
                if (Expression(text).evaluate() != number + 1)
                    ++wrong;
                if (Expression::parse(text + ")").error() != Error::unexpectedToken(")"))
                    ++wrong;
                if (i % 100 == t)
                    Expression::clearCache(text);
                if (i % 1000 == t)
                    Expression::clearCache();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    Expression::clearCache();
}

TEST_F(ParseCacheTest, manyThreadsMayEvaluateOneExpression)
{
    const Expression expression("max(a[x], 2) * pi + x", {}, {}, {{"a", {1, 2, 3}}},
                                {{Symbol::variable("x"), [](auto) { return 2; }}});
    const double expected = expression.evaluate();
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 5000; ++i)
                wrong += expression.evaluate() != expected ? 1 : 0;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace

} // namespace vellumry::expression
