// SPDX-License-Identifier: MIT
#include "answers/file_wish.h"

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

EvidenceRow file(const std::string& folder, Grade grade) {
    EvidenceRow row;
    row.folder = folder;
    row.name = "x.jpg";
    row.extension = "jpg";
    row.grade = grade;
    return row;
}

TEST(FileWishTest, NothingAskedForIsEveryFile) {
    EXPECT_TRUE(fits({}, file("a", Grade::Good)));
    EXPECT_TRUE(fits({}, EvidenceRow{}));
}

TEST(FileWishTest, AllThatIsAskedForMustHold) {
    FileWish wish;
    wish.grades = {Grade::Good, Grade::Corrupt};
    wish.extensions = {"jpg"};
    EXPECT_TRUE(fits(wish, file("a", Grade::Corrupt)));
    EXPECT_FALSE(fits(wish, file("a", Grade::Unknown)));
    wish.extensions = {"png"};
    EXPECT_FALSE(fits(wish, file("a", Grade::Corrupt)));
    wish = {};
    wish.reasons = {Reason::Noise};
    EXPECT_FALSE(fits(wish, file("a", Grade::Corrupt)));
    auto noisy = file("a", Grade::Corrupt);
    noisy.reason = Reason::Noise;
    EXPECT_TRUE(fits(wish, noisy));
}

TEST(FileWishTest, BelowAFolderIsTheFolderAndAllBeneathIt) {
    FileWish wish;
    wish.below = "photos/2019";
    EXPECT_TRUE(fits(wish, file("photos/2019", Grade::Good)));
    EXPECT_TRUE(fits(wish, file("photos/2019/may", Grade::Good)));
    EXPECT_FALSE(fits(wish, file("photos/2019b", Grade::Good)));
    EXPECT_FALSE(fits(wish, file("photos", Grade::Good)));
}

TEST(FileWishTest, DoubtAndUnread) {
    FileWish wish;
    wish.doubt = true;
    auto doubted = file("a", Grade::Good);
    EXPECT_FALSE(fits(wish, doubted));
    doubted.doubt = "cut";
    EXPECT_TRUE(fits(wish, doubted));
    wish = {};
    wish.unread = true;
    EXPECT_FALSE(fits(wish, doubted));
    doubted.unread = 12;
    EXPECT_TRUE(fits(wish, doubted));
    EXPECT_TRUE(fits(wish, file("a", Grade::AccessError)));
}

TEST(FileWishTest, NamesAreThoseOfTheEvidence) {
    EXPECT_EQ(gradeNamed("common-header"), Grade::CommonHeader);
    EXPECT_EQ(reasonNamed("leading-zeros"), Reason::LeadingZeros);
    EXPECT_FALSE(gradeNamed("Good"));
    EXPECT_FALSE(reasonNamed(""));
}

}  // namespace

}  // namespace quillon::test
