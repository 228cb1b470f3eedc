#include "core/run_time_error.h"

#include <gtest/gtest.h>

namespace zendrix::core {
namespace {

TEST(RunTimeErrors, HaveTheirFixedDescriptions) {
  EXPECT_EQ(DescriptionOf(5), "Invalid procedure call or argument");
  EXPECT_EQ(DescriptionOf(6), "Overflow");
  EXPECT_EQ(DescriptionOf(7), "Out of memory");
  EXPECT_EQ(DescriptionOf(9), "Subscript out of range");
  EXPECT_EQ(DescriptionOf(13), "Type mismatch");
  EXPECT_EQ(DescriptionOf(53), "File not found");
  EXPECT_EQ(DescriptionOf(62), "Input past end of file");
  EXPECT_EQ(DescriptionOf(70), "Permission denied");
  EXPECT_EQ(DescriptionOf(457), "This key is already associated with an element of this collection");
  EXPECT_EQ(DescriptionOf(35601), "Element not found");
  EXPECT_EQ(DescriptionOf(35602), "Key is not unique in collection");
}

TEST(RunTimeErrors, OfUnknownNumberAreApplicationDefined) {
  EXPECT_EQ(DescriptionOf(12345), "Application-defined or object-defined error");
}

TEST(RunTimeErrors, AreRaisedWithNumberAndDescription) {
  try {
    Raise(kTypeMismatch);
    FAIL();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.number, 13);
    EXPECT_EQ(error.description, "Type mismatch");
  }
}

TEST(RunTimeErrors, StandForRefusalsOfTheOutside) {
  using platform::ErrorKind;
  const auto number = [](ErrorKind kind) { return FromPlatform({kind, "detail"}).number; };
  EXPECT_EQ(number(ErrorKind::kPermissionDenied), 70);
  EXPECT_EQ(number(ErrorKind::kNotFound), 53);
  EXPECT_EQ(number(ErrorKind::kNoSpace), 61);
  for (ErrorKind kind :
       {ErrorKind::kAlreadyExists, ErrorKind::kNotRegular, ErrorKind::kUnavailable, ErrorKind::kOther}) {
    EXPECT_EQ(number(kind), 57);
  }
}

TEST(RunTimeErrors, KeepThePlatformsOwnWordsApartFromTheDescription) {
  const RunTimeError error = FromPlatform({platform::ErrorKind::kNotFound, "no such file"});
  EXPECT_EQ(error.description, "File not found");
  EXPECT_EQ(error.detail, "no such file");
}

TEST(RunTimeErrors, ValueOrRaiseGivesTheValueOrThrows) {
  EXPECT_EQ(ValueOrRaise(platform::Result<int>(5)), 5);
  EXPECT_THROW(ValueOrRaise(platform::Result<int>(platform::Error{})), RunTimeError);
}

}  // namespace
}  // namespace zendrix::core
