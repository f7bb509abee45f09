#include "util/Ref.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace kv::util {
namespace {

struct Counted {
    void retain() noexcept { ++count; }
    void release() noexcept { --count; }
    int count = 1;  // The creator's own.
};

TEST(RefTest, SharesAndReleases) {
    Counted object;
    {
        const Ref<Counted> ref(&object);
        EXPECT_EQ(object.count, 2);
        EXPECT_EQ(ref.get(), &object);
        EXPECT_EQ(&*ref, &object);
        EXPECT_EQ(ref->count, 2);
        EXPECT_TRUE(static_cast<bool>(ref));
    }
    EXPECT_EQ(object.count, 1);
}

TEST(RefTest, EmptyHoldsNothing) {
    const Ref<Counted> none;
    const Ref<Counted> null(nullptr);
    const Ref<Counted> nullObject(static_cast<Counted*>(nullptr));
    Ref<Counted> copy = nullObject;
    copy = none;
    EXPECT_FALSE(none);
    EXPECT_FALSE(null);
    EXPECT_FALSE(copy);
    EXPECT_EQ(none, null);
    EXPECT_EQ(copy.get(), nullptr);
}

TEST(RefTest, AdoptTakesOverTheCallersCount) {
    Counted object;
    {
        const Ref<Counted> ref = Ref<Counted>::adopt(&object);
        EXPECT_EQ(object.count, 1);
    }
    EXPECT_EQ(object.count, 0);
}

TEST(RefTest, CopyCountsAndMoveDoesNot) {
    Counted object;
    Ref<Counted> first(&object);
    const Ref<Counted> second = first;
    EXPECT_EQ(object.count, 3);
    const Ref<Counted> third = std::move(first);
    EXPECT_EQ(object.count, 3);
    EXPECT_EQ(third.get(), &object);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved reference is empty by contract.
    EXPECT_EQ(second, third);
    static_assert(std::is_nothrow_move_constructible_v<Ref<Counted>>);
}

TEST(RefTest, AssignmentReleasesWhatWasHeld) {
    Counted old;
    Counted fresh;
    Ref<Counted> ref(&old);
    const Ref<Counted> other(&fresh);
    ref = other;
    EXPECT_EQ(old.count, 1);
    EXPECT_EQ(fresh.count, 3);
    ref = nullptr;
    EXPECT_EQ(fresh.count, 2);
    EXPECT_FALSE(ref);
}

TEST(RefTest, AssignmentToItselfKeepsTheObject) {
    Counted object;
    Ref<Counted> ref(&object);
    const Ref<Counted>& same = ref;
    ref = same;
    EXPECT_EQ(object.count, 2);
    EXPECT_EQ(ref.get(), &object);
}

TEST(RefTest, DifferentObjectsAreUnequal) {
    Counted a;
    Counted b;
    EXPECT_NE(Ref<Counted>(&a), Ref<Counted>(&b));
    EXPECT_NE(Ref<Counted>(&a), Ref<Counted>());
}

}  // namespace
}  // namespace kv::util
