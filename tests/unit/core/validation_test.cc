#include "core/validation.h"

namespace zendrix::core {
namespace {

TEST(IsValidEmail, EmptyTextIsValid) {
  EXPECT_TRUE(IsValidEmail(""));
}

TEST(IsValidEmail, NamesAtDomainsWithADotAreValid) {
  EXPECT_TRUE(IsValidEmail("name@domain.ext"));
  EXPECT_TRUE(IsValidEmail("first.last@mail.domain.ext"));
  EXPECT_TRUE(IsValidEmail("o'hara-1_x@d-1.e"));
}

TEST(IsValidEmail, NoDotAtAllIsInvalid) {
  EXPECT_FALSE(IsValidEmail("name@domain"));
}

TEST(IsValidEmail, LastDotInFrontOfTheAtIsInvalid) {
  EXPECT_FALSE(IsValidEmail("first.last@domain"));
}

TEST(IsValidEmail, DotAtTheVeryEndIsInvalid) {
  EXPECT_FALSE(IsValidEmail("name@domain.ext."));
}

TEST(IsValidEmail, NeedsExactlyOneAt) {
  EXPECT_FALSE(IsValidEmail("name.domain.ext"));
  EXPECT_FALSE(IsValidEmail("a@b@c.d"));
}

TEST(IsValidEmail, AtNeitherFirstNorLast) {
  EXPECT_FALSE(IsValidEmail("@domain.ext"));
  EXPECT_FALSE(IsValidEmail("name.ext@"));
}

TEST(IsValidEmail, DotsDoNotTouchEachOtherOrTheAt) {
  EXPECT_FALSE(IsValidEmail("na..me@domain.ext"));
  EXPECT_FALSE(IsValidEmail("name.@domain.ext"));
  EXPECT_FALSE(IsValidEmail("name@.domain.ext"));
}

TEST(IsValidEmail, DotInFrontOfEverythingIsAllowed) {
  EXPECT_TRUE(IsValidEmail(".name@domain.ext"));
}

std::string With(char character, std::string text) {
  return text.insert(2, 1, character);
}

class ForbiddenCharacter : public ::testing::TestWithParam<char> {};

TEST_P(ForbiddenCharacter, MakesAnAddressInvalid) {
  EXPECT_FALSE(IsValidEmail(With(GetParam(), "name@domain.ext")));
}
TEST_P(ForbiddenCharacter, MakesAServerInvalid) {
  EXPECT_FALSE(IsValidServer(With(GetParam(), "mail.domain.ext")));
}
INSTANTIATE_TEST_SUITE_P(All, ForbiddenCharacter,
                         ::testing::ValuesIn(std::string("\"()=+[]{}/?>,< *&^%$#!~")));

TEST(IsValidServer, EmptyTextIsValid) {
  EXPECT_TRUE(IsValidServer(""));
}

TEST(IsValidServer, NeedsTwoDots) {
  EXPECT_FALSE(IsValidServer("mail"));
  EXPECT_FALSE(IsValidServer("mail.domain"));
  EXPECT_TRUE(IsValidServer("mail.domain.ext"));
}

TEST(IsValidServer, NumericAddressPasses) {
  EXPECT_TRUE(IsValidServer("192.168.0.1"));
}

TEST(IsValidServer, DotsNeitherTouchNorStandAtAnEnd) {
  EXPECT_FALSE(IsValidServer("mail..domain.ext"));
  EXPECT_FALSE(IsValidServer(".mail.domain"));
  EXPECT_FALSE(IsValidServer("mail.domain."));
}

TEST(IsValidServer, OtherCharactersAreNotItsBusiness) {
  EXPECT_TRUE(IsValidServer("a@b.c.d"));
  EXPECT_TRUE(IsValidServer("mail.domain.ext:25"));
}

}  // namespace
}  // namespace zendrix::core
