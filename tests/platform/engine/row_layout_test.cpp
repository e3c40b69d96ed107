// Where fields stand in the lines of flat files.
#include "engine/source/flat/row_layout.h"

#include <gtest/gtest.h>

#include "support/flat_database.h"

namespace triglub_test {
namespace {

using triglub::RowLayout;
using triglub::Schema;

TEST(RowLayout, PutsOneSeparatorBetweenFields) {
  for (const triglub::TableSchema& table : Schema::builtin()->tables()) {
    const RowLayout layout(table);
    const FlatTable& fields = flat_schema().at(table.name);
    ASSERT_EQ(layout.field_count(), fields.size());
    std::size_t begin = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      SCOPED_TRACE(table.name + "." + fields[i].name);
      EXPECT_EQ(layout[i].begin, begin);
      EXPECT_EQ(layout[i].end, begin + fields[i].width);
      EXPECT_EQ(layout[i].may_be_cut, fields[i].is_text || fields[i].name == "lddate");
      begin = layout[i].end + 1;
    }
    EXPECT_EQ(layout.width(), flat_row(table.name, {}).size());
  }
}

}  // namespace
}  // namespace triglub_test
