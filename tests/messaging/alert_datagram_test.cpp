// SPDX-License-Identifier: MIT
#include "messaging/alert_datagram.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

using namespace std::string_literals;

TEST(AlertDatagram, HasFiveFieldsWithABlankBeforeTheRequestAndNoneBeforeTheFlag) {
    EXPECT_EQ(encodeAlert({"LAB7", 1, "Process error", "text", 1}),
              "LAB7\xFF 1\xFFProcess error\xFFtext\xFF"
              "1"s);
    EXPECT_EQ(encodeAlert({"LAB7", 0, "", "", 0}),
              "LAB7\xFF 0\xFF\xFF\xFF"
              "0"s);
    EXPECT_EQ(encodeAlert({"LAB7", -1, "", "", 0}),
              "LAB7\xFF-1\xFF\xFF\xFF"
              "0"s);
}

TEST(AlertDatagram, CutsBlanksBehindTheSender) {
    EXPECT_EQ(encodeAlert({"LAB7  ", 1, "s", "b", 0}),
              "LAB7\xFF 1\xFFs\xFF"
              "b\xFF"
              "0"s);
}

TEST(AlertDatagram, IsOneBytePerCharacterOfThePage) {
    EXPECT_EQ(encodeAlert({"LAB7", 1, "Übung €", "日", 0}),
              "LAB7\xFF 1\xFF\xDC"
              "bung \x80\xFF?\xFF"
              "0"s);
}

TEST(AlertDatagram, Character255InATextCannotShiftTheFields) {
    const std::string bytes = encodeAlert({"LAÿB", 1, "ÿsubject", "bodyÿÿ", 1});
    EXPECT_EQ(bytes,
              "LA?B\xFF 1\xFF?subject\xFF"
              "body??\xFF"
              "1"s);
    EXPECT_EQ(alertFields(bytes).size(), 5U);
}

TEST(AlertDatagram, AcknowledgementHasThreeFields) {
    EXPECT_EQ(encodeAcknowledgement("DESK2"),
              "DESK2\xFF"
              "0\xFF"
              "Acknowledged"s);
    EXPECT_TRUE(isAcknowledgement(encodeAcknowledgement("DESK2")));
}

TEST(AlertDatagram, AcknowledgedIsComparedWithCase) {
    EXPECT_FALSE(
        isAcknowledgement("DESK2\xFF"
                          "0\xFF"
                          "acknowledged"s));
    EXPECT_FALSE(
        isAcknowledgement("DESK2\xFF"
                          "0\xFF"
                          "Acknowledged "s));
    EXPECT_FALSE(
        isAcknowledgement("DESK2\xFF"
                          "0"s));
    EXPECT_FALSE(
        isAcknowledgement("DESK2\xFF"
                          "0\xFF"
                          "Acknowledged\xFF"s));
    EXPECT_FALSE(isAcknowledgement(""));
}

TEST(AlertDatagram, TheNumberOneAsksForAnAnswerWithAndWithoutABlank) {
    for (const char* asks : {" 1", "1", "   1", "1.0", "1;"}) EXPECT_TRUE(asksForAcknowledgement(asks)) << asks;
    for (const char* asksNot : {"0", "", "word", " 0", "2", "-1", "1.5", "11", "x1"})
        EXPECT_FALSE(asksForAcknowledgement(asksNot)) << asksNot;
}

TEST(AlertDatagram, AnAlertIsReadBack) {
    const auto alert = decodeAlert(encodeAlert({"LAB7", 1, "subject", "line 1\r\nline 2", 1}));
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->sender.bytes, "LAB7");
    EXPECT_TRUE(alert->wantsAnswer);
    EXPECT_EQ(alert->subject.bytes, "subject");
    EXPECT_EQ(alert->body.bytes, "line 1\r\nline 2");
    EXPECT_TRUE(alert->problem);
}

TEST(AlertDatagram, AnythingButFiveFieldsWithASenderIsNoAlert) {
    for (const std::string& bytes : {""s, "text"s, "LAB7\xFF 1"s,
                                     "LAB7\xFF 1\xFFs\xFF"
                                     "b"s,
                                     "LAB7\xFF 1\xFFs\xFF"
                                     "b\xFF"
                                     "0\xFF"s,
                                     "\xFF 1\xFFs\xFF"
                                     "b\xFF"
                                     "0"s,
                                     "  \xFF 1\xFFs\xFF"
                                     "b\xFF"
                                     "0"s,
                                     "LAB7\xFF"
                                     "0\xFF"
                                     "Acknowledged"s})
        EXPECT_FALSE(decodeAlert(bytes)) << bytes;
}

}  // namespace
}  // namespace quillon
