// The documents name what is there: the README's guide has every public header, and links lead somewhere.

#include "Tests/Contract/Documents/Document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace Documents;

namespace
{

namespace fs = std::filesystem;

// Returns the documents of the project, their paths relative to its folder. Benchmarks/Notes.md is not one: it becomes
// a part of Docs/Performance.md, where its links are true.
std::vector<std::string> AllDocuments()
{
    std::vector<std::string> lDocuments;
    const auto lAdd = [&lDocuments](const fs::path& iFile) {
        if (iFile.extension() == ".md" && iFile.filename() != "Notes.md")
        {
            lDocuments.push_back(fs::relative(iFile, TALBASE_SOURCE_DIR).string());
        }
    };
    for (const auto& lEntry : fs::directory_iterator(TALBASE_SOURCE_DIR))
    {
        const std::string lName = lEntry.path().filename().string();
        lAdd(lEntry.path());
        if (lEntry.is_directory() && lName != "build" && lName.front() != '.')
        {
            for (const auto& lFile : fs::recursive_directory_iterator(lEntry.path()))
            {
                lAdd(lFile.path());
            }
        }
    }
    return lDocuments;
}

// Returns the text of a document without its blocks of code.
std::string ReadWithoutCode(const std::string& iDocument)
{
    std::string lText;
    bool lIsCode = false;
    std::istringstream lStream(ReadProjectFile(iDocument));
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        const bool lIsFence = lLine.compare(0, 3, "```") == 0;
        lIsCode = lIsCode != lIsFence;
        if (!lIsCode && !lIsFence)
        {
            lText += lLine + "\n";
        }
    }
    return lText;
}

// Returns the include paths of the public headers below a folder of the project.
std::set<std::string> PublicHeaders(const std::string& iFolder, const std::string& iBase)
{
    std::set<std::string> lHeaders;
    for (const auto& lFile : fs::recursive_directory_iterator(fs::path(TALBASE_SOURCE_DIR) / iFolder))
    {
        const std::string lName = fs::relative(lFile.path(), fs::path(TALBASE_SOURCE_DIR) / iBase).string();
        if (lFile.path().extension() == ".h" && lName.find("PrivateSource") == std::string::npos)
        {
            lHeaders.insert(lName);
        }
    }
    return lHeaders;
}

// Returns the anchor that a heading gets: lower case, blanks as hyphens, punctuation dropped.
std::string Anchor(const std::string& iHeading)
{
    std::string lAnchor;
    for (const char lCharacter : iHeading)
    {
        if (lCharacter == ' ' || lCharacter == '-')
        {
            lAnchor += '-';
        }
        else if (std::isalnum(static_cast<unsigned char>(lCharacter)) != 0)
        {
            lAnchor += static_cast<char>(std::tolower(static_cast<unsigned char>(lCharacter)));
        }
    }
    return lAnchor;
}

bool HasAnchor(const std::string& iDocument, const std::string& iAnchor)
{
    std::istringstream lStream(ReadProjectFile(iDocument));
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        const std::size_t lText = lLine.find_first_not_of('#');
        if (lText != 0 && lText != std::string::npos && lLine[lText] == ' ' &&
            Anchor(lLine.substr(lText + 1)) == iAnchor)
        {
            return true;
        }
    }
    return false;
}

// Returns the targets of the links [text](target).
std::vector<std::string> LinkTargets(const std::string& iText)
{
    std::vector<std::string> lTargets;
    for (std::size_t lBegin = iText.find("]("); lBegin != std::string::npos; lBegin = iText.find("](", lBegin + 1))
    {
        lTargets.push_back(iText.substr(lBegin + 2, iText.find(')', lBegin) - lBegin - 2));
    }
    return lTargets;
}

// Returns whether a link in a document leads to a file of the project and to a heading in it.
bool LeadsSomewhere(const std::string& iDocument, const std::string& iTarget)
{
    const std::size_t lHash = std::min(iTarget.find('#'), iTarget.size());
    const std::string lFile = iTarget.substr(0, lHash);
    const fs::path lPath =
        lFile.empty() ? fs::path(iDocument) : (fs::path(iDocument).parent_path() / lFile).lexically_normal();
    return fs::exists(fs::path(TALBASE_SOURCE_DIR) / lPath) &&
           (lHash == iTarget.size() || HasAnchor(lPath.string(), iTarget.substr(lHash + 1)));
}

// Returns the code spans of a document that look like the pattern.
std::vector<std::string> Named(const std::string& iDocument, const std::regex& iPattern)
{
    std::vector<std::string> lNames;
    std::istringstream lStream(ReadWithoutCode(iDocument));
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        if (std::count(lLine.begin(), lLine.end(), '`') % 2 != 0)
        {
            continue; // a span that goes on in the next line
        }
        for (const std::string& lSpan : CodeSpans(lLine))
        {
            if (std::regex_match(lSpan, iPattern))
            {
                lNames.push_back(lSpan);
            }
        }
    }
    return lNames;
}

// Adds what the pattern finds in a file, its two parts joined by a dot.
void AddMatches(const fs::path& iFile, const std::regex& iPattern, std::set<std::string>& oNames)
{
    const std::string lText = ReadProjectFile(fs::relative(iFile, TALBASE_SOURCE_DIR).string());
    for (std::sregex_iterator lMatch(lText.begin(), lText.end(), iPattern); lMatch != std::sregex_iterator(); ++lMatch)
    {
        oNames.insert((*lMatch)[1].str() + "." + (*lMatch)[2].str());
    }
}

// Returns the names of all tests: those of GoogleTest, and those that CMake's files add.
std::set<std::string> TestNames()
{
    const std::regex lTest("\\nTEST(?:_[FP])?\\((\\w+),\\s*(\\w+)\\)");
    const std::regex lAdded("NAME (\\w+)\\.(\\w+)");
    std::set<std::string> lNames;
    for (const char* lFolder : {"Examples", "Tests", "Tools"})
    {
        for (const auto& lFile : fs::recursive_directory_iterator(fs::path(TALBASE_SOURCE_DIR) / lFolder))
        {
            const fs::path& lPath = lFile.path();
            if (lPath.extension() == ".cpp")
            {
                AddMatches(lPath, lTest, lNames);
            }
            else if (lPath.extension() == ".cmake" || lPath.filename() == "CMakeLists.txt")
            {
                AddMatches(lPath, lAdded, lNames);
            }
        }
    }
    return lNames;
}

} // namespace

// What `See "Heading" in Docs/Document.md` refers to in a comment of the library.
TEST(AllDocuments, SectionsThatTheSourcesNameAreThere)
{
    std::size_t lCount = 0;
    for (const auto& lFile : fs::recursive_directory_iterator(fs::path(TALBASE_SOURCE_DIR) / "TalBase"))
    {
        if (!lFile.is_regular_file())
        {
            continue;
        }
        const std::string lName = fs::relative(lFile.path(), TALBASE_SOURCE_DIR).string();
        const std::string lText = std::regex_replace(ReadProjectFile(lName), std::regex("\n *//"), "");
        const std::regex lReference("\"([^\"\n]+)\" in (Docs/[A-Za-z]+[.]md)");
        for (std::sregex_iterator lFound(lText.begin(), lText.end(), lReference), lEnd; lFound != lEnd; ++lFound)
        {
            EXPECT_TRUE(HasAnchor((*lFound)[2], Anchor((*lFound)[1]))) << lName << ": " << (*lFound)[0];
            ++lCount;
        }
    }
    EXPECT_GE(lCount, 6U) << "reader, parser, builder, merger, copier and comparer";
}

TEST(ReadmeDocument, GuideHasEveryPublicHeaderAndNoOther)
{
    std::set<std::string> lHeaders = PublicHeaders("TalBase", ".");
    lHeaders.merge(PublicHeaders("Platform", "Platform"));
    EXPECT_EQ(lHeaders.count("TalBase/PropertyBag.h"), 1U);

    std::multiset<std::string> lGuide;
    for (const Row& lRow : RowsWithColumns(ReadTables(ReadProjectFile("README.md")), {"header", "for"}))
    {
        for (const std::string& lHeader : CodeSpans(lRow.at("header")))
        {
            lGuide.insert(lHeader);
        }
    }
    EXPECT_EQ(lGuide, std::multiset<std::string>(lHeaders.begin(), lHeaders.end()));
}

TEST(ReadmeDocument, ExampleHasFifteenLines)
{
    const std::string lExample = ReadProjectFile("Examples/Documents/Example.cpp");
    EXPECT_EQ(std::count(lExample.begin(), lExample.end(), '\n'), 15);
}

TEST(AllDocuments, LinksLeadSomewhere)
{
    EXPECT_TRUE(LeadsSomewhere("Docs/Limits.md", "../README.md#limits"));
    EXPECT_FALSE(LeadsSomewhere("Docs/Limits.md", "../README.md#no-such-heading"));
    EXPECT_FALSE(LeadsSomewhere("Docs/Limits.md", "README.md"));
    for (const std::string& lDocument : AllDocuments())
    {
        for (const std::string& lTarget : LinkTargets(ReadWithoutCode(lDocument)))
        {
            EXPECT_TRUE(LeadsSomewhere(lDocument, lTarget)) << lDocument << " links to " << lTarget;
        }
    }
}

TEST(AllDocuments, NamedFilesAreThere)
{
    const std::regex lPath("[A-Z][A-Za-z0-9]*(/[A-Za-z0-9.-]+)+\\.(h|cpp|cmake|md|sh|txt)");
    bool lIsOneNamed = false;
    for (const std::string& lDocument : AllDocuments())
    {
        for (const std::string& lFile : Named(lDocument, lPath))
        {
            lIsOneNamed = true;
            EXPECT_TRUE(fs::exists(fs::path(TALBASE_SOURCE_DIR) / lFile) ||
                        fs::exists(fs::path(TALBASE_SOURCE_DIR) / "Platform" / lFile))
                << lDocument << " names " << lFile;
        }
    }
    EXPECT_TRUE(lIsOneNamed);
}

TEST(AllDocuments, NamedTestsAreThere)
{
    const std::set<std::string> lTests = TestNames();
    bool lIsOneNamed = false;
    for (const std::string& lDocument : AllDocuments())
    {
        for (const std::string& lTest : Named(lDocument, std::regex("[A-Z]\\w+\\.[A-Z]\\w+")))
        {
            lIsOneNamed = true;
            EXPECT_EQ(lTests.count(lTest), 1U) << lDocument << " names " << lTest;
        }
    }
    EXPECT_TRUE(lIsOneNamed);
}
