// The operation table as the interface lists it, and every row reached through the entry.
#include <gtest/gtest.h>

#include <string>

#include "gateway/operation.hpp"
#include "test_support.hpp"

namespace {

struct ExpectedRow {
  int opId;
  const char* name;
  int nInputs;
};

constexpr ExpectedRow kInterface[] = {
    {0, "abort", 1},
    {1, "close", 1},
    {2, "copyAtt", 5},
    {3, "pCreate", 4},
    {4, "create", 2},
    {5, "defDim", 3},
    {6, "defGrp", 2},
    {7, "defVar", 4},
    {8, "defVarChunking", 4},
    {9, "defVarDeflate", 5},
    {10, "defVarFill", 4},
    {11, "defVarFletcher32", 3},
    {12, "defVlen", 3},
    {13, "delAtt", 3},
    {14, "pEndDef", 5},
    {15, "endDef", 1},
    {16, "getAttDouble", 3},
    {17, "getAttFloat", 3},
    {18, "getAttInt64", 3},
    {19, "getAttUint64", 3},
    {20, "getAttInt", 3},
    {21, "getAttUint", 3},
    {22, "getAttShort", 3},
    {23, "getAttUshort", 3},
    {24, "getAttSchar", 3},
    {25, "getAttUchar", 3},
    {26, "getAttUbyte", 3},
    {27, "getAttText", 3},
    {28, "getAttString", 3},
    {29, "getAttVlen", 3},
    {136, "getConstantNames", 0},
    {30, "getVarDouble", 2},
    {31, "getVarFloat", 2},
    {32, "getVarInt64", 2},
    {33, "getVarUint64", 2},
    {34, "getVarInt", 2},
    {35, "getVarUint", 2},
    {36, "getVarShort", 2},
    {37, "getVarUshort", 2},
    {38, "getVarSchar", 2},
    {39, "getVarUchar", 2},
    {40, "getVarText", 2},
    {41, "getVarString", 2},
    {42, "getVarVlen", 2},
    {43, "getVar1Double", 3},
    {43, "getVaraDouble", 4},
    {43, "getVarsDouble", 5},
    {44, "getVar1Float", 3},
    {44, "getVaraFloat", 4},
    {44, "getVarsFloat", 5},
    {45, "getVar1Int64", 3},
    {45, "getVaraInt64", 4},
    {45, "getVarsInt64", 5},
    {46, "getVar1Uint64", 3},
    {46, "getVaraUint64", 4},
    {46, "getVarsUint64", 5},
    {47, "getVar1Int", 3},
    {47, "getVaraInt", 4},
    {47, "getVarsInt", 5},
    {48, "getVar1Uint", 3},
    {48, "getVaraUint", 4},
    {48, "getVarsUint", 5},
    {49, "getVar1Short", 3},
    {49, "getVaraShort", 4},
    {49, "getVarsShort", 5},
    {50, "getVar1Ushort", 3},
    {50, "getVaraUshort", 4},
    {50, "getVarsUshort", 5},
    {51, "getVar1Schar", 3},
    {51, "getVaraSchar", 4},
    {51, "getVarsSchar", 5},
    {52, "getVar1Uchar", 3},
    {52, "getVaraUchar", 4},
    {52, "getVarsUchar", 5},
    {53, "getVar1Text", 3},
    {53, "getVaraText", 4},
    {53, "getVarsText", 5},
    {54, "getVar1String", 3},
    {54, "getVaraString", 4},
    {54, "getVarsString", 5},
    {55, "getVar1Vlen", 3},
    {55, "getVaraVlen", 4},
    {55, "getVarsVlen", 5},
    {56, "inq", 1},
    {57, "inqAtt", 3},
    {58, "inqAttID", 3},
    {59, "inqAttName", 3},
    {60, "inqDim", 2},
    {61, "inqDimID", 2},
    {62, "inqDimIDs", 2},
    {65, "inqFormat", 1},
    {66, "inqGrpName", 1},
    {67, "inqGrpNameFull", 1},
    {68, "inqGrps", 1},
    {69, "inqGrpParent", 1},
    {70, "inqLibVers", 0},
    {71, "inqNcid", 2},
    {75, "inqVarID", 2},
    {77, "inqVar", 2},
    {78, "inqVarChunking", 2},
    {79, "inqVarDeflate", 2},
    {83, "inqVarFletcher32", 2},
    {62, "inqDimIDs", 1},
    {72, "inqUnlimDims", 1},
    {73, "inqUserType", 2},
    {74, "inqVlen", 2},
    {76, "inqVarIDs", 1},
    {82, "inqVarFill", 2},
    {137, "parameter", 1},
    {84, "pOpen", 3},
    {85, "open", 2},
    {86, "putAttDouble", 5},
    {87, "putAttFloat", 5},
    {88, "putAttInt64", 5},
    {89, "putAttUint64", 5},
    {90, "putAttInt", 5},
    {91, "putAttUint", 5},
    {92, "putAttShort", 5},
    {93, "putAttUshort", 5},
    {94, "putAttSchar", 5},
    {95, "putAttUchar", 5},
    {96, "putAttUbyte", 5},
    {97, "putAttText", 5},
    {98, "putAttString", 5},
    {99, "putAttVlen", 5},
    {100, "putVarDouble", 3},
    {101, "putVarFloat", 3},
    {102, "putVarInt64", 3},
    {103, "putVarUint64", 3},
    {104, "putVarInt", 3},
    {105, "putVarUint", 3},
    {106, "putVarShort", 3},
    {107, "putVarUshort", 3},
    {108, "putVarSchar", 3},
    {109, "putVarUchar", 3},
    {110, "putVarText", 3},
    {111, "putVarString", 3},
    {112, "putVarVlen", 3},
    {113, "putVar1Double", 4},
    {113, "putVaraDouble", 5},
    {113, "putVarsDouble", 6},
    {114, "putVar1Float", 4},
    {114, "putVaraFloat", 5},
    {114, "putVarsFloat", 6},
    {115, "putVar1Int64", 4},
    {115, "putVaraInt64", 5},
    {115, "putVarsInt64", 6},
    {116, "putVar1UInt64", 4},
    {116, "putVaraUint64", 5},
    {116, "putVarsUint64", 6},
    {117, "putVar1Int", 4},
    {117, "putVaraInt", 5},
    {117, "putVarsInt", 6},
    {118, "putVar1UInt", 4},
    {118, "putVaraUint", 5},
    {118, "putVarsUint", 6},
    {119, "putVar1Short", 4},
    {119, "putVaraShort", 5},
    {119, "putVarsShort", 6},
    {120, "putVar1Ushort", 4},
    {120, "putVaraUshort", 5},
    {120, "putVarsUshort", 6},
    {121, "putVar1Schar", 4},
    {121, "putVaraSchar", 5},
    {121, "putVarsSchar", 6},
    {122, "putVar1Uchar", 4},
    {122, "putVaraUchar", 5},
    {122, "putVarsUchar", 6},
    {123, "putVar1Text", 4},
    {123, "putVaraText", 5},
    {123, "putVarsText", 6},
    {124, "putVar1String", 4},
    {124, "putVaraString", 5},
    {124, "putVarsString", 6},
    {125, "putVar1Vlen", 4},
    {125, "putVaraVlen", 5},
    {125, "putVarsVlen", 6},
    {126, "redef", 1},
    {127, "renameAtt", 4},
    {128, "renameDim", 3},
    {129, "renameVar", 3},
    {130, "setDefaultFormat", 1},
    {131, "setFill", 2},
    {133, "sync", 1},
    {134, "setChunkCache", 3},
    {135, "getChunkCache", 0},
};

TEST(OperationTable, HoldsTheWholeInterfaceInOrder) {
  const auto table = operationTable();
  ASSERT_EQ(std::size(kInterface), table.size());
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(kInterface[i].opId, table[i].opId) << i;
    EXPECT_STREQ(kInterface[i].name, table[i].name) << i;
    EXPECT_EQ(kInterface[i].nInputs, table[i].nInputs) << i;
    EXPECT_NE(nullptr, table[i].handler) << i;
  }
}

void callWith(const char* operation, const std::vector<const qvArray*>& inputs) {
  const qvArrayPtr name = test::charRow(operation);
  std::vector<const qvArray*> all{name.get()};
  all.insert(all.end(), inputs.begin(), inputs.end());
  test::Outputs out;
  netcdflib(kNetcdflibMaxOutputs, out.data(), static_cast<int>(all.size()), all.data());
}

// Every name with one input too many is refused by count; with its own count of empty
// inputs it reaches a handler, which then refuses the first input by its own rules.
TEST(OperationTable, EveryRowIsReachedThroughTheEntry) {
  const qvArrayPtr empty = test::zeros(qvDOUBLE_CLASS, {0, 0});
  for (const ExpectedRow& row : kInterface) {
    SCOPED_TRACE(row.name);
    std::vector<const qvArray*> inputs(static_cast<std::size_t>(row.nInputs) + 1, empty.get());
    if (std::string(row.name) == "inqDimIDs" && row.nInputs == 1) {
      // Shadowed by the two-input row of the same name: one input is a wrong count.
      inputs.pop_back();
      const auto shadowed = test::catchMsgId([&] { callWith(row.name, inputs); });
      ASSERT_TRUE(shadowed);
      EXPECT_EQ("QUARNA:imagesci:validate:wrongNumberOfInputs", shadowed->id);
      continue;
    }
    const auto tooMany = test::catchMsgId([&] { callWith(row.name, inputs); });
    ASSERT_TRUE(tooMany);
    EXPECT_EQ("QUARNA:imagesci:validate:wrongNumberOfInputs", tooMany->id);
    inputs.pop_back();
    const auto reached = test::catchMsgId([&] { callWith(row.name, inputs); });
    if (row.nInputs == 0) {
      EXPECT_FALSE(reached) << reached->id;
    } else {
      ASSERT_TRUE(reached);
      EXPECT_NE("QUARNA:imagesci:netcdf:unrecognizedOperation", reached->id);
      EXPECT_NE("QUARNA:imagesci:validate:wrongNumberOfInputs", reached->id);
    }
  }
}

}  // namespace
