// What rows mean, read from their names, and that every data row of the library's table
// names a kind.
#include <gtest/gtest.h>

#include <string_view>

#include "gateway/operation.hpp"

namespace {

TEST(RowMeaning, ReadFromNames) {
  constexpr auto V = Target::Variable, A = Target::Attribute;
  const struct {
    std::string_view name;
    Access access;
    Target target;
    Form form;
    std::optional<DataKind> kind;
    DataInput data;
  } cases[] = {
      {"getVarDouble", Access::Get, V, Form::Whole, DataKind::Double, DataInput::Plain},
      {"getVar1Short", Access::Get, V, Form::One, DataKind::Short, DataInput::Plain},
      {"getVaraString", Access::Get, V, Form::Block, DataKind::String, DataInput::Plain},
      {"getVarsVlen", Access::Get, V, Form::Strided, DataKind::Vlen, DataInput::Plain},
      {"putVarText", Access::Put, V, Form::Whole, DataKind::Text, DataInput::Bytes},
      {"putVar1UInt64", Access::Put, V, Form::One, DataKind::Uint64, DataInput::Plain},
      {"putVarsString", Access::Put, V, Form::Strided, DataKind::String, DataInput::Strings},
      {"putVaraVlen", Access::Put, V, Form::Block, DataKind::Vlen, DataInput::Vlen},
      {"getAttUbyte", Access::Get, A, Form::Whole, DataKind::Ubyte, DataInput::Plain},
      {"putAttText", Access::Put, A, Form::Whole, DataKind::Text, DataInput::Plain},
      {"putAttString", Access::Put, A, Form::Whole, DataKind::String, DataInput::Strings},
      {"putVara", Access::Put, V, Form::Block, std::nullopt, DataInput::OwnType},
      {"putAtt", Access::Put, A, Form::Whole, std::nullopt, DataInput::OwnType},
      {"getVar1", Access::Get, V, Form::One, std::nullopt, DataInput::Plain},
      {"defVarFill", Access::None, V, Form::Whole, std::nullopt, DataInput::Vlen},
      {"getVarDoubles", Access::None, V, Form::Whole, std::nullopt, DataInput::Plain},
      {"getChunkCache", Access::None, V, Form::Whole, std::nullopt, DataInput::Plain},
      {"inqVar", Access::None, V, Form::Whole, std::nullopt, DataInput::Plain},
  };
  for (const auto& c : cases) {
    const RowMeaning m = meaningOf(c.name);
    EXPECT_EQ(c.access, m.access) << c.name;
    EXPECT_EQ(c.target, m.target) << c.name;
    EXPECT_EQ(c.form, m.form) << c.name;
    EXPECT_EQ(c.kind, m.kind) << c.name;
    EXPECT_EQ(c.data, m.data) << c.name;
  }
}

TEST(RowMeaning, EveryTypedDataRowOfTheTableNamesAKind) {
  int dataRows = 0;
  for (const OperationRow& row : operationTable()) {
    const std::string_view name = row.name;
    // The typed data rows; untyped ones come after them.
    if (row.opId > 137 || (!name.starts_with("getVar") && !name.starts_with("putVar") &&
                           !name.starts_with("getAtt") && !name.starts_with("putAtt"))) {
      continue;
    }
    ++dataRows;
    EXPECT_TRUE(row.meaning.kind.has_value()) << name;
    // Subset forms take their inputs from the form.
    const int expected = (row.meaning.access == Access::Put ? 1 : 0) +
                         (row.meaning.target == Target::Attribute
                              ? 3 + (row.meaning.access == Access::Put ? 1 : 0)
                              : 2 + static_cast<int>(row.meaning.form));
    EXPECT_EQ(expected, row.nInputs) << name;
  }
  EXPECT_EQ(28 + 26 + 26 * 3, dataRows);
}

}  // namespace
