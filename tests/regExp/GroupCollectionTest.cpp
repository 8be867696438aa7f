#include "toolkit/regExp/GroupCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::Pair;

// Fixture with a collection of the groups "zero", "one" and "two".
class GroupCollectionTest : public testing::Test {
protected:
    GroupCollectionTest()
    {
        unsigned short number = 0;
        for (const char* value : {"zero", "one", "two"})
            m_groups.Add(smart_ptr<Group>(new Group(value, number++)));
    }

    GroupCollection m_groups;
};

TEST(GroupTest, HasValueAndIndexButNoName)
{
    const Group group("value", 65535);

    EXPECT_EQ(group.value, "value");
    EXPECT_EQ(group.index, 65535);
    EXPECT_EQ(group.name, "");
}

TEST_F(GroupCollectionTest, IsEmptyAfterConstruction)
{
    const GroupCollection groups;

    EXPECT_EQ(groups.Count(), 0u);
    EXPECT_TRUE(groups.names.empty());
    EXPECT_FALSE(groups[0].IsValid());
}

TEST_F(GroupCollectionTest, KeepsGroupsInTheirOrder)
{
    EXPECT_EQ(m_groups.Count(), 3u);
    EXPECT_EQ(m_groups[0]->value, "zero");
    EXPECT_EQ(m_groups[2]->value, "two");
    EXPECT_EQ(m_groups[2]->index, 2);
}

TEST_F(GroupCollectionTest, ReturnsAnEmptyPointerForNumbersAfterTheLast)
{
    constexpr unsigned short numbers[] = {3, 4, 65535};
    for (const unsigned short number : numbers) {
        SCOPED_TRACE(number);
        EXPECT_FALSE(m_groups[number].IsValid());
    }
}

TEST_F(GroupCollectionTest, SharesItsGroupsWithCallers)
{
    m_groups[1]->value = "changed";

    EXPECT_EQ(m_groups[1]->value, "changed");
    EXPECT_EQ(m_groups[1].Get(), m_groups.groups[1].Get());
}

TEST_F(GroupCollectionTest, LetsGroupsOutliveTheCollection)
{
    smart_ptr<Group> group;
    {
        GroupCollection groups;
        groups.Add(smart_ptr<Group>(new Group("kept", 0)));
        group = groups[0];
    }

    EXPECT_EQ(group->value, "kept");
}

TEST_F(GroupCollectionTest, AddsANameAndSetsItOnTheGroup)
{
    m_groups.AddNamedGroupKey("first", 1);

    EXPECT_THAT(m_groups.names, ElementsAre(Pair("first", 1)));
    EXPECT_EQ(m_groups[1]->name, "first");
    EXPECT_EQ(m_groups[0]->name, "");
}

TEST_F(GroupCollectionTest, IgnoresNamesForNumbersWithoutAGroup)
{
    for (const int number : {3, 4, 65536, 65537, -1, -65535})
        m_groups.AddNamedGroupKey("name", number);

    EXPECT_TRUE(m_groups.names.empty());
    EXPECT_EQ(m_groups[1]->name, "");
}

TEST_F(GroupCollectionTest, KeepsTheFirstNumberOfARepeatedName)
{
    m_groups.AddNamedGroupKey("twice", 2);
    m_groups.AddNamedGroupKey("twice", 1);

    EXPECT_THAT(m_groups.names, ElementsAre(Pair("twice", 2)));
    EXPECT_EQ(m_groups[1]->name, "twice");
    EXPECT_EQ(m_groups[2]->name, "twice");
}

TEST_F(GroupCollectionTest, KeepsTheLastNameOfAGroup)
{
    m_groups.AddNamedGroupKey("one", 1);
    m_groups.AddNamedGroupKey("another", 1);

    EXPECT_EQ(m_groups[1]->name, "another");
    EXPECT_THAT(m_groups.names, ElementsAre(Pair("another", 1), Pair("one", 1)));
}

TEST_F(GroupCollectionTest, OrdersNamesByTheirBytes)
{
    for (const char* name : {"b", "\xC3\xA9", "B", "ab"})
        m_groups.AddNamedGroupKey(name, 1);

    EXPECT_THAT(m_groups.names,
                ElementsAre(Pair("B", 1), Pair("ab", 1), Pair("b", 1), Pair("\xC3\xA9", 1)));
}

TEST_F(GroupCollectionTest, FindsAGroupByItsName)
{
    m_groups.AddNamedGroupKey("second", 2);

    EXPECT_EQ(m_groups.GetGroup("second").Get(), m_groups[2].Get());
    EXPECT_FALSE(m_groups.GetGroup("third").IsValid());
}

TEST_F(GroupCollectionTest, AcceptsAnEmptyPointerAndANameForIt)
{
    m_groups.Add(smart_ptr<Group>());
    m_groups.AddNamedGroupKey("nobody", 3);

    EXPECT_EQ(m_groups.Count(), 4u);
    EXPECT_FALSE(m_groups.GetGroup("nobody").IsValid());
}

TEST_F(GroupCollectionTest, RemovesAllGroupsAndNamesWhenCleared)
{
    m_groups.AddNamedGroupKey("first", 1);

    m_groups.Clear();

    EXPECT_EQ(m_groups.Count(), 0u);
    EXPECT_TRUE(m_groups.names.empty());
    EXPECT_FALSE(m_groups.GetGroup("first").IsValid());
}

} // namespace
} // namespace Toolkit
