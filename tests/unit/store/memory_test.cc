// A table's memory goes by the bytes of its file, whatever the file makes of its columns.
#include <gtest/gtest.h>

#include "support/held_bytes.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

class MemoryTest : public StoreFixture {
 protected:
  // What a new reader and its table hold once a file of these lines is loaded and the cells of
  // every fortieth row have been read.
  std::size_t HeldAfter(const std::vector<std::string>& lines) {
    ReplaceFile(lines);
    reader_.reset();
    const std::size_t before = HeldBytes();
    reader_ = std::make_unique<store::CMkvlf>(state_, log_);
    Load();
    std::size_t seen = 0;
    for (store::Bookmark row = 0; row < Rows(); row += 40) {
      for (int column = store::kDateUTC; column < reader_->EventTable->ColumnCount(); ++column)
        seen += reader_->EventTable->Text(row, column).size();
    }
    EXPECT_GT(seen, 0u);
    return HeldBytes() - before;
  }
};

// With room for every column in every row this file of 120 kB would hold 80 million texts' places.
TEST_F(MemoryTest, FirstLineOfManyFieldsCostsShortRowsNothing) {
  std::vector<std::string> lines(2'000, Line("1700000000", "System", "x"));
  const std::size_t plain = HeldAfter(lines);
  std::string fields;
  for (int i = 0; i < 40'000; ++i) fields += "|";
  lines.front() += fields;
  const std::size_t wide = HeldAfter(lines);
  EXPECT_EQ(reader_->EventTable->ColumnCount(), 40'011);
  EXPECT_EQ(Rows(), 2'000u);
  EXPECT_LT(wide, plain + 24 * fields.size());
}

TEST_F(MemoryTest, DescriptionOfManyPartsCostsTheMemoryOfItsRows) {
  std::vector<std::string> lines(2'000, Line("1700000000", "System", "x") + "|extra");
  const std::size_t plain = HeldAfter(lines);
  std::string parts = "a";
  for (int i = 0; i < 20'000; ++i) parts += " * b";
  lines.push_back(Line("1700000001", "System", parts) + "|" + std::string(1'500, 'e'));
  const std::size_t wide = HeldAfter(lines);
  EXPECT_EQ(Rows(), 22'001u);
  EXPECT_LT(wide, plain + 24 * parts.size());
}

}  // namespace
}  // namespace zendrix::test
