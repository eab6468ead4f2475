#include "Text/TextMatcher.h"

#include "Text/Errors.h"
#include "Text/Text.h"
#include "Text/Utf8Locale.h"

#include <algorithm>
#include <cctype>

namespace TalBaseTool
{

namespace
{

// A plain text as a basic regular expression.
std::string Escaped(const std::string& iText)
{
    std::string lPattern;
    for (const char lCharacter : iText)
    {
        lPattern += std::string_view("\\.[*^$").find(lCharacter) != std::string_view::npos ? "\\" : "";
        lPattern += lCharacter;
    }
    return lPattern;
}

bool HasBackReference(const std::string& iPattern)
{
    for (std::size_t lIndex = 0; lIndex + 1 < iPattern.size(); ++lIndex)
    {
        if (iPattern[lIndex] == '\\' && std::isdigit(static_cast<unsigned char>(iPattern[++lIndex])) != 0)
        {
            return true;
        }
    }
    return false;
}

void Compile(regex_t& oCompiled, const std::string& iPattern, int iFlags)
{
    const int lError = ::regcomp(&oCompiled, iPattern.c_str(), iFlags);
    if (lError != 0)
    {
        char lWhy[256];
        ::regerror(lError, &oCompiled, lWhy, sizeof lWhy);
        throw UsageError("the pattern '" + ShowFile(iPattern) + "' is no regular expression: " + lWhy);
    }
}

} // namespace

TextMatcher::TextMatcher(const std::string& iPattern, PatternKind iKind, bool iIgnoresCase)
{
    ReadArgument(iPattern, "the pattern"); // refuses what is not UTF-8
    const Utf8Locale lLocale;
    const bool lIsExtended = iKind == PatternKind::Extended;
    const std::string lPattern = iKind == PatternKind::Fixed ? Escaped(iPattern) : iPattern;
    const int lFlags = REG_NOSUB | (lIsExtended ? REG_EXTENDED : 0) | (iIgnoresCase ? REG_ICASE : 0);
    Compile(mCompiled, lPattern, lFlags);
    if (!HasBackReference(lPattern))
    {
        ::regfree(&mCompiled);
        Compile(mCompiled, lIsExtended ? "^.*(" + lPattern + ")" : "^.*\\(" + lPattern + "\\)", lFlags);
    }
}

TextMatcher::~TextMatcher()
{
    ::regfree(&mCompiled);
}

bool TextMatcher::IsIn(std::wstring_view iText)
{
    mText.clear();
    AppendUtf8(iText, mText);
    const Utf8Locale lLocale;
    std::size_t lStart = 0;
    for (std::size_t lStop = 0; lStop < mText.size(); lStart = lStop + 1)
    {
        lStop = std::min(mText.find('\n', lStart), mText.size());
        if (hIsInLine(lStart, lStop))
        {
            return true;
        }
    }
    return mText.empty() && hIsInLine(0, 0);
}

bool TextMatcher::hIsInLine(std::size_t iStart, std::size_t iStop) const
{
    regmatch_t lPart{0, static_cast<regoff_t>(iStop - iStart)};
    const int lError = ::regexec(&mCompiled, mText.c_str() + iStart, 0, &lPart, REG_STARTEND);
    if (lError != 0 && lError != REG_NOMATCH)
    {
        throw IoError("there is not enough memory for the pattern");
    }
    return lError == 0;
}

} // namespace TalBaseTool
