#include "expression/Arity.h"

#include <gtest/gtest.h>

namespace vellumry::expression {

namespace {

TEST(ArityTest, describesItself)
{
    EXPECT_EQ(Arity::exactly(0).description(), "0 arguments");
    EXPECT_EQ(Arity::exactly(1).description(), "1 argument");
    EXPECT_EQ(Arity::exactly(2).description(), "2 arguments");
    EXPECT_EQ(Arity::atLeast(1).description(), "at least 1 argument");
    EXPECT_EQ(Arity::atLeast(2).description(), "at least 2 arguments");
    EXPECT_EQ(Arity::any.description(), "at least 0 arguments");
}

TEST(ArityTest, aNumberStandsForExactly)
{
    const Arity arity = 3;
    EXPECT_EQ(arity.kind(), Arity::Case::exactly);
    EXPECT_EQ(arity.count(), 3);
}

TEST(ArityTest, theSameKindIsEqualByCount)
{
    EXPECT_EQ(Arity::exactly(2), Arity::exactly(2));
    EXPECT_NE(Arity::exactly(2), Arity::exactly(3));
    EXPECT_EQ(Arity::atLeast(2), Arity::atLeast(2));
    EXPECT_NE(Arity::atLeast(2), Arity::atLeast(3));
    EXPECT_EQ(Arity::any, Arity::atLeast(0));
}

TEST(ArityTest, exactlyEqualsAnAtLeastThatItReaches)
{
    EXPECT_EQ(Arity::exactly(3), Arity::atLeast(2));
    EXPECT_EQ(Arity::exactly(2), Arity::atLeast(2));
    EXPECT_NE(Arity::exactly(1), Arity::atLeast(2));
    EXPECT_EQ(Arity::atLeast(2), Arity::exactly(3));
    EXPECT_NE(Arity::atLeast(2), Arity::exactly(1));
    EXPECT_EQ(Arity::any, Arity::exactly(0));
}

TEST(ArityTest, hashTakesNoAccountOfThePayload)
{
    const std::hash<Arity> hash;
    EXPECT_EQ(hash(Arity::exactly(3)), hash(Arity::atLeast(2)));
    EXPECT_EQ(hash(Arity::exactly(3)), hash(Arity::exactly(4)));
}

} // namespace

} // namespace vellumry::expression
