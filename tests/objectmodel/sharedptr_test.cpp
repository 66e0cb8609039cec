#include "objectmodel/shared.h"
#include "objectmodel/sharedptr.h"

#include <gtest/gtest.h>

using Morvex::Shared;
using Morvex::SharedPtr;

namespace {

struct Base : Shared
{
    explicit Base(int *deleted)
        : deletions(deleted)
    {
    }
    ~Base() override { ++*deletions; }

    int *deletions;
};

struct Derived : Base
{
    using Base::Base;
};

} // namespace

TEST(SharedPtrTest, DeletesTheObjectOnceWithItsLastPointer)
{
    int deletions = 0;
    {
        SharedPtr<Base> first(new Base(&deletions));
        SharedPtr<Base> second = first;
        SharedPtr<Base> again(first.data());
        EXPECT_EQ(first->refCount(), 3);
        first = nullptr;
        second = again;
        EXPECT_EQ(deletions, 0);
    }
    EXPECT_EQ(deletions, 1);
}

TEST(SharedPtrTest, SelfAssignmentAndMovesKeepTheCount)
{
    int deletions = 0;
    SharedPtr<Base> pointer(new Base(&deletions));
    const SharedPtr<Base> &same = pointer;
    pointer = same;
    SharedPtr<Base> moved = std::move(pointer);
    EXPECT_TRUE(pointer.isNull());
    EXPECT_EQ(moved->refCount(), 1);
    EXPECT_EQ(deletions, 0);
}

TEST(SharedPtrTest, ConvertsToThePointerOfABase)
{
    int deletions = 0;
    {
        SharedPtr<Derived> derived(new Derived(&deletions));
        SharedPtr<Base> base = derived;
        derived = nullptr;
        EXPECT_EQ(base->refCount(), 1);
    }
    EXPECT_EQ(deletions, 1);
}
