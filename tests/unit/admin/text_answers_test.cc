#include "admin/text_answers.h"

#include <gmock/gmock.h>

#include <map>
#include <string>

namespace zendrix::admin {
namespace {

using ::testing::SizeIs;

class TextAnswersTest : public ::testing::Test {
 protected:
  TextAnswersTest() {
    for (int i = 1; i < 1000; ++i) pool_.Intern(std::to_string(i));
  }
  bool EndsInSeven(store::TextId id) {
    return answers_.Of(id, [this](std::string_view text) {
      ++asked_[std::string(text)];
      return text.ends_with('7');
    });
  }
  store::TextPool pool_;
  TextAnswers answers_{pool_};
  std::map<std::string, int> asked_;
};

TEST_F(TextAnswersTest, EveryTextIsAskedAboutOnce) {
  for (int round = 0; round < 2; ++round)
    for (store::TextId id = pool_.size(); id-- > 0;) EXPECT_EQ(EndsInSeven(id), id % 10 == 7) << id;
  EXPECT_THAT(asked_, SizeIs(1000));
  for (const auto& [text, times] : asked_) EXPECT_EQ(times, 1) << text;
}

TEST_F(TextAnswersTest, NothingIsAskedThatLiesFarAway) {
  EXPECT_TRUE(EndsInSeven(7));
  EXPECT_LT(asked_.size(), 500u);
  EXPECT_EQ(asked_.count("999"), 0u);
}

TEST_F(TextAnswersTest, TextsThatComeLaterAreNoMatter) {
  EXPECT_TRUE(EndsInSeven(997));
  for (int i = 0; i < 1000; ++i) pool_.Intern("later " + std::to_string(i));
  EXPECT_FALSE(EndsInSeven(998));
  EXPECT_EQ(asked_.count("later 0"), 0u);
}

}  // namespace
}  // namespace zendrix::admin
