// Random sequences of adding, changing, removing and clearing, compared with a simple model.
#include "tests/unit/StoreModelFixture.h"

namespace kv::control {
namespace {

TEST_F(StoreModelTest, RandomSequencesEndAsTheDescribedStepsDo) {
    run({.name = "foreign records, keys that meet",
         .own = 0,
         .fresh = 0,
         .again = 5,
         .changes = 5,
         .keyChanges = 30,
         .clears = 5},
        3000);
}

TEST_F(StoreModelTest, RecordsOfItsOwnClassEndAlike) {
    run({.name = "keys that meet", .fresh = 10, .changes = 3, .keyChanges = 30, .clears = 5}, 3000);
}

TEST_F(StoreModelTest, RecordsWithKeysOfTheirOwnEndAlike) {
    run({.name = "fresh keys", .additions = 53}, 1500);
}

TEST_F(StoreModelTest, ChangesOfRecordsAreSeenInTime) {
    run({.name = "fresh keys and changes", .fresh = 99, .changes = 40, .keyChanges = 4, .clears = 2}, 2000);
}

TEST_F(StoreModelTest, BothClassesOfRecordsMayMeet) {
    run({.name = "a foreign record now and then", .own = 95, .fresh = 98, .changes = 20, .keyChanges = 10, .clears = 3},
        1500);
}

TEST_F(StoreModelTest, AForeignRecordThatHasLeftLeavesNothingBehind) {
    run({.name = "few channels, foreign records come and go", .own = 85, .changes = 20, .additions = 47}, 2500);
}

TEST_F(StoreModelTest, KeysOfTheOtherKindAndKeysWithoutAKindEndAlike) {
    run({.name = "keys with another prefix", .fresh = 97, .wrongKind = 20, .changes = 5, .keyChanges = 10}, 1500);
}

TEST_F(StoreModelTest, KeysThatChangeAfterAddingEndAlike) {
    run({.name = "changed keys", .fresh = 99, .changes = 40, .keyChanges = 70, .clears = 2}, 2000);
}

TEST_F(StoreModelTest, TheSameRecordMayBeAddedAgainOrToBothKinds) {
    run({.name = "records added again", .own = 97, .again = 15, .changes = 20, .keyChanges = 40, .clears = 2}, 1500);
}

TEST_F(StoreModelTest, TheSameKeysMayReturnAfterTheirKindWasCleared) {
    run({.name = "reloads", .fresh = 98, .changes = 5, .keyChanges = 20, .clears = 3, .reloads = 4, .additions = 52},
        1000);
}

TEST_F(StoreModelTest, AnAdditionThatFailsAfterItsKeyEndsAlike) {
    run({.name = "bandwidths that are too large", .again = 2, .changes = 10, .keyChanges = 5, .unreadable = 4}, 1500);
}

TEST_F(StoreModelTest, TwoControlsSeeTheChangesOfTheirCommonRecords) {
    run({.name = "two controls",
         .own = 99,
         .fresh = 98,
         .again = 45,
         .changes = 30,
         .keyChanges = 15,
         .clears = 2,
         .reloads = 1,
         .controls = 2},
        1200);
}

TEST_F(StoreModelTest, ManyChannelsEndAsFewDo) {
    run({.name = "many channels, seldom anything unusual",
         .own = 100,
         .fresh = 99,
         .changes = 10,
         .keyChanges = 5,
         .clears = 0,
         .atFirst = 600,
         .additions = 25,
         .comparisons = 4},
        700);
}

// So many channels of each kind are removed that both lists close their holes.
TEST_F(StoreModelTest, ManyRemovalsFromBothListsAgreeWithTheModel) {
    run({.name = "many removals, seldom anything unusual",
         .own = 98,
         .changes = 5,
         .keyChanges = 20,
         .clears = 0,
         .atFirst = 1200,
         .additions = 2,
         .comparisons = 2},
        1000);
}

}  // namespace
}  // namespace kv::control
