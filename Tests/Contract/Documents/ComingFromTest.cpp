// What the pages for those who come from elsewhere put side by side is code that is compiled and run: each piece of
// their tables stands in the program of its column.

#include "Tests/Contract/Documents/Document.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Documents;

namespace
{

void ExpectColumnInProgram(const std::string& iDocument, const std::vector<std::string>& iColumns,
                           const std::string& iColumn, const std::string& iProgram)
{
    const std::string lProgram = ReadProjectFile("Examples/ComingFrom/" + iProgram);
    bool lIsOneNamed = false;
    for (const Row& lRow : RowsWithColumns(ReadTables(ReadProjectFile(iDocument)), iColumns))
    {
        for (const std::string& lCode : CodeSpans(lRow.at(iColumn)))
        {
            lIsOneNamed = true;
            EXPECT_NE(lProgram.find(lCode), std::string::npos) << iProgram << " has no " << lCode;
        }
    }
    EXPECT_TRUE(lIsOneNamed) << iColumn;
}

} // namespace

TEST(ComingFromJsonDocument, TableConsistsOfCompiledCode)
{
    const char* const lDocument = "Docs/ComingFromJson.md";
    const std::vector<std::string> lColumns = {"", "nlohmann-json", "RapidJSON", "here"};
    ExpectColumnInProgram(lDocument, lColumns, "nlohmann-json", "Nlohmann.cpp");
    ExpectColumnInProgram(lDocument, lColumns, "RapidJSON", "RapidJson.cpp");
    ExpectColumnInProgram(lDocument, lColumns, "here", "Json.cpp");
}

TEST(ComingFromPropertyTreesDocument, TableConsistsOfCompiledCode)
{
    const char* const lDocument = "Docs/ComingFromPropertyTrees.md";
    const std::vector<std::string> lColumns = {"", "Boost.PropertyTree", "here"};
    ExpectColumnInProgram(lDocument, lColumns, "Boost.PropertyTree", "Boost.cpp");
    ExpectColumnInProgram(lDocument, lColumns, "here", "PropertyTree.cpp");
}
