// The diagrams of Docs/Architecture.md say what the build links and what the sources include.

#include "Tests/Contract/Documents/Document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace Documents;

namespace
{

namespace fs = std::filesystem;

using Edges = std::set<std::pair<std::string, std::string>>;

struct Flowchart
{
    std::map<std::string, std::vector<std::string>> mLabels; // of a node: the lines that it shows
    Edges mEdges;
    std::vector<std::string> mTexts; // on the edges
};

std::vector<std::string> SplitAt(std::string iText, const std::string& iMark)
{
    std::vector<std::string> lParts;
    for (std::size_t lEnd = iText.find(iMark); lEnd != std::string::npos; lEnd = iText.find(iMark))
    {
        lParts.push_back(iText.substr(0, lEnd));
        iText.erase(0, lEnd + iMark.size());
    }
    lParts.push_back(iText);
    return lParts;
}

// Takes a line "node["text<br>text"]", "node --> node" or "node -->|"text"| node".
void AddLine(Flowchart& oChart, const std::string& iLine)
{
    std::istringstream lWords(iLine);
    std::string lNode;
    std::string lArrow;
    lWords >> lNode >> lArrow;
    const std::size_t lBracket = iLine.find("[\"");
    if (lBracket != std::string::npos)
    {
        const std::size_t lFirst = iLine.find_first_not_of(' ');
        const std::string lText = iLine.substr(lBracket + 2, iLine.rfind("\"]") - lBracket - 2);
        oChart.mLabels[iLine.substr(lFirst, lBracket - lFirst)] = SplitAt(lText, "<br>");
        return;
    }
    if (lArrow.compare(0, 3, "-->") != 0)
    {
        throw std::runtime_error("no line of a flowchart: " + iLine);
    }
    oChart.mEdges.emplace(lNode, iLine.substr(iLine.rfind(' ') + 1));
    if (lArrow.size() > 3)
    {
        oChart.mTexts.push_back(SplitAt(iLine, "\"").at(1));
    }
}

std::vector<Flowchart> ReadFlowcharts(const std::string& iText)
{
    std::vector<Flowchart> lCharts;
    bool lIsInside = false;
    std::istringstream lStream(iText);
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        if (lLine == "```mermaid")
        {
            std::getline(lStream, lLine); // the kind of chart
            lCharts.emplace_back();
            lIsInside = true;
        }
        else if (lLine == "```")
        {
            lIsInside = false;
        }
        else if (lIsInside)
        {
            AddLine(lCharts.back(), lLine);
        }
    }
    return lCharts;
}

const Flowchart& Chart(std::size_t iIndex)
{
    static const std::vector<Flowchart> lCharts = ReadFlowcharts(ReadProjectFile("Docs/Architecture.md"));
    return lCharts.at(iIndex);
}

// Returns the files below a folder of the project that hold C++.
std::vector<fs::path> Sources(const fs::path& iFolder)
{
    std::vector<fs::path> lSources;
    for (const auto& lFile : fs::recursive_directory_iterator(fs::path(TALBASE_SOURCE_DIR) / iFolder))
    {
        const std::string lEnding = lFile.path().extension().string();
        if (lEnding == ".h" || lEnding == ".cpp")
        {
            lSources.push_back(lFile.path());
        }
    }
    return lSources;
}

// Returns what a file includes between quotation marks.
std::vector<std::string> Includes(const fs::path& iFile)
{
    std::vector<std::string> lIncludes;
    std::ifstream lStream(iFile);
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        if (lLine.compare(0, 10, "#include \"") == 0)
        {
            lIncludes.push_back(lLine.substr(10, lLine.rfind('"') - 10));
        }
    }
    return lIncludes;
}

// Adds an edge to each other folder of public headers that a file of this one includes.
void AddEdges(const std::string& iName, const fs::path& iFolder, Edges& oEdges)
{
    for (const fs::path& lSource : Sources(iFolder))
    {
        for (const std::string& lInclude : Includes(lSource))
        {
            const std::string lOther = lInclude.substr(0, lInclude.find('/'));
            if (lOther != iName && lOther != "PrivateSource")
            {
                oEdges.emplace(iName, lOther);
            }
        }
    }
}

} // namespace

// TALBASE_LINKS is a file that the build writes: a line for each library, its file and those that it is linked with.
TEST(ArchitectureDocument, LibrariesAreLinkedAsDrawn)
{
    Edges lDrawn;
    for (const auto& [lFrom, lTo] : Chart(0).mEdges)
    {
        lDrawn.emplace(Chart(0).mLabels.at(lFrom).front(), Chart(0).mLabels.at(lTo).front());
    }
    Edges lLinked;
    std::ifstream lStream(TALBASE_LINKS);
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        std::istringstream lWords(lLine);
        std::string lLibrary;
        lWords >> lLibrary;
        for (std::string lOther; lWords >> lOther;)
        {
            lLinked.emplace(lLibrary, lOther);
        }
    }
    EXPECT_EQ(lLinked.count({"libTalBase", "libQ8Base4"}), 1U);
    EXPECT_EQ(lDrawn, lLinked);
}

TEST(ArchitectureDocument, FoldersIncludeEachOtherAsDrawn)
{
    Edges lIncluded;
    AddEdges("TalBase", "TalBase", lIncluded);
    for (const char* lFolder : {"QBase", "QSynch", "QLog", "QDataType", "QSerialization"})
    {
        AddEdges(lFolder, fs::path("Platform") / lFolder, lIncluded);
    }
    EXPECT_EQ(Chart(1).mEdges, lIncluded);
}

// The operations on states know no class, and no class lets them in: only the class's own sources include it.
TEST(ArchitectureDocument, ImplementationOfABagIsKnownToItsOwnSourcesOnly)
{
    std::set<std::string> lKnowing;
    for (const fs::path& lSource : Sources("TalBase"))
    {
        for (const std::string& lInclude : Includes(lSource))
        {
            if (lInclude == "TalBase/PrivateSource/PropertyBagImpl.h")
            {
                lKnowing.insert(lSource.filename().string());
            }
        }
    }
    EXPECT_EQ(lKnowing, (std::set<std::string>{"PropertyBag.cpp", "PropertyBagImpl.cpp"}));
    EXPECT_EQ(ReadProjectFile("TalBase/PrivateSource/PropertyBagImpl.h").find("friend"), std::string::npos);
}

// Headers that are left when those that include none of the others are taken away, again and again.
TEST(ArchitectureDocument, HeadersIncludeEachOtherInNoCircle)
{
    std::map<std::string, std::set<std::string>> lLeft;
    for (const fs::path& lSource : Sources("TalBase"))
    {
        if (lSource.extension() == ".h")
        {
            const std::vector<std::string> lIncludes = Includes(lSource);
            lLeft[fs::relative(lSource, TALBASE_SOURCE_DIR).string()] = {lIncludes.begin(), lIncludes.end()};
        }
    }
    EXPECT_GT(lLeft.size(), 30U);
    for (std::size_t lBefore = 0; lBefore != lLeft.size();)
    {
        lBefore = lLeft.size();
        for (auto lHeader = lLeft.begin(); lHeader != lLeft.end();)
        {
            const bool lIsFree = std::none_of(lHeader->second.begin(), lHeader->second.end(),
                                              [&](const std::string& iOther) { return lLeft.count(iOther) != 0; });
            lHeader = lIsFree ? lLeft.erase(lHeader) : std::next(lHeader);
        }
    }
    for (const auto& [lHeader, lIncludes] : lLeft)
    {
        ADD_FAILURE() << lHeader << " is in a circle, or includes one";
    }
}

TEST(ArchitectureDocument, PrivateHeadersAreIncludedByTheLibraryAndItsTestsOnly)
{
    const std::set<std::string> lAllowed = {"TalBase", "Tests", "Fuzz"};
    std::set<std::string> lFound;
    for (const auto& lEntry : fs::directory_iterator(TALBASE_SOURCE_DIR))
    {
        const std::string lFolder = lEntry.path().filename().string();
        if (!lEntry.is_directory() || lFolder.front() == '.' || lFolder == "build")
        {
            continue;
        }
        for (const fs::path& lSource : Sources(lFolder))
        {
            for (const std::string& lInclude : Includes(lSource))
            {
                if (lInclude.find("TalBase/PrivateSource/") != std::string::npos)
                {
                    lFound.insert(lFolder);
                }
            }
        }
    }
    EXPECT_EQ(lFound.count("TalBase"), 1U);
    EXPECT_TRUE(std::includes(lAllowed.begin(), lAllowed.end(), lFound.begin(), lFound.end()));
}

// README names the public headers and says that each speaks of threads; the two that only mark what is shown have
// nothing that runs.
TEST(ReadmeDocument, HeadersSayWhichThreadsMayUseThem)
{
    std::size_t lCount = 0;
    for (const Row& lRow : RowsWithColumns(ReadTables(ReadProjectFile("README.md")), {"header", "for"}))
    {
        for (const std::string& lHeader : CodeSpans(lRow.at("header")))
        {
            const bool lIsLibrarys = lHeader.compare(0, 8, "TalBase/") == 0;
            const std::string lText = ReadProjectFile((lIsLibrarys ? "" : "Platform/") + lHeader);
            const bool lIsMark = lHeader.find("/Export.h") != std::string::npos;
            EXPECT_EQ(lText.find("thread") == std::string::npos, lIsMark) << lHeader;
            ++lCount;
        }
    }
    EXPECT_EQ(lCount, 35U);
}

// The words before a bracket, a colon or a comma are operations, which a public header declares.
TEST(ArchitectureDocument, RoadConsistsOfOperations)
{
    std::string lHeaders;
    for (const char* lHeader : {"TalBase/PropertyBag.h", "Platform/QBase/Convert.h",
                                "Platform/QBase/ReferenceCounted.h", "Platform/QSerialization/SerializableObject.h"})
    {
        lHeaders += ReadProjectFile(lHeader);
    }
    EXPECT_EQ(Chart(2).mTexts.size(), 10U);
    for (const std::string& lText : Chart(2).mTexts)
    {
        const std::string lOperation = lText.substr(0, lText.find_first_of("(:,"));
        EXPECT_NE(lHeaders.find(" " + lOperation + "("), std::string::npos) << lText;
    }
}
