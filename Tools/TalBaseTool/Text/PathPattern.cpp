#include "Text/PathPattern.h"

#include "Text/Errors.h"
#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

// Whether a name consists of the pieces with anything between them. Each piece is taken where it comes first, since
// that leaves the most for those behind it.
bool Matches(const std::vector<std::wstring>& iPieces, std::wstring_view iName)
{
    const std::wstring& lFirst = iPieces.front();
    const std::wstring& lLast = iPieces.back();
    if (iPieces.size() == 1)
    {
        return iName == lFirst;
    }
    if (iName.size() < lFirst.size() + lLast.size() || iName.substr(0, lFirst.size()) != lFirst ||
        iName.substr(iName.size() - lLast.size()) != lLast)
    {
        return false;
    }
    std::wstring_view lLeft = iName.substr(lFirst.size(), iName.size() - lFirst.size() - lLast.size());
    for (std::size_t lIndex = 1; lIndex + 1 < iPieces.size(); ++lIndex)
    {
        const std::size_t lPlace = lLeft.find(iPieces[lIndex]);
        if (lPlace == std::wstring_view::npos)
        {
            return false;
        }
        lLeft.remove_prefix(lPlace + iPieces[lIndex].size());
    }
    return true;
}

} // namespace

PathPattern::PathPattern(const std::string& iArgument)
{
    const std::wstring lText = ReadArgument(iArgument, "the path");
    const std::string lShown = "the path '" + ToUtf8(MakeControlsPrintable(lText)) + "' ";
    mSteps.push_back({false, {L""}});
    for (std::size_t lIndex = 0; lIndex < lText.size(); ++lIndex)
    {
        Step& lStep = mSteps.back();
        if (lText[lIndex] == L'/')
        {
            mSteps.push_back({false, {L""}});
        }
        else if (lText[lIndex] == L'*')
        {
            lStep.mPieces.emplace_back();
        }
        else
        {
            if (lText[lIndex] == L'\\' &&
                (++lIndex == lText.size() || std::wstring_view(L"/\\*").find(lText[lIndex]) == std::wstring_view::npos))
            {
                throw UsageError(lShown + "has a \\ that is neither \\/ (for a / in a name) nor \\\\ nor \\*");
            }
            lStep.mPieces.back() += lText[lIndex];
        }
    }
    for (Step& lStep : mSteps)
    {
        if (lStep.mPieces == std::vector<std::wstring>{L""})
        {
            throw UsageError(lShown + "has an empty name; write it as NAME or NAME/NAME/...");
        }
        lStep.mIsAnyDepth = lStep.mPieces == std::vector<std::wstring>(3);
    }
}

bool PathPattern::IsPath() const
{
    return std::all_of(mSteps.begin(), mSteps.end(), [](const Step& iStep) { return iStep.mPieces.size() == 1; });
}

Path PathPattern::GetPath() const
{
    Path lPath;
    for (const Step& lStep : mSteps)
    {
        lPath.push_back(lStep.mPieces.front());
    }
    return lPath;
}

bool PathPattern::EndsWithName() const
{
    return mSteps.back().mPieces.size() == 1;
}

bool PathPattern::TakesAll(const Places& iPlaces) const
{
    return iPlaces.back() && mSteps.back().mIsAnyDepth;
}

bool PathPattern::TakesNone(const Places& iPlaces)
{
    return std::find(iPlaces.begin(), iPlaces.end(), true) == iPlaces.end();
}

PathPattern::Places PathPattern::Begin() const
{
    Places lPlaces(mSteps.size());
    lPlaces[0] = true;
    hPassOver(lPlaces);
    return lPlaces;
}

PathPattern::Match PathPattern::Enter(const Places& iPlaces, std::wstring_view iName) const
{
    Match lMatch{false, Places(mSteps.size())};
    for (std::size_t lIndex = 0; lIndex < mSteps.size(); ++lIndex)
    {
        const Step& lStep = mSteps[lIndex];
        if (!iPlaces[lIndex] || (!lStep.mIsAnyDepth && !Matches(lStep.mPieces, iName)))
        {
            continue;
        }
        const bool lIsLast = lIndex + 1 == mSteps.size();
        lMatch.mIsWhole = lMatch.mIsWhole || lIsLast;
        if (lStep.mIsAnyDepth)
        {
            lMatch.mNext[lIndex] = true;
        }
        else if (!lIsLast)
        {
            lMatch.mNext[lIndex + 1] = true;
        }
    }
    hPassOver(lMatch.mNext);
    return lMatch;
}

// A step of any depth may also stand for no name.
void PathPattern::hPassOver(Places& oPlaces) const
{
    for (std::size_t lIndex = 0; lIndex + 1 < mSteps.size(); ++lIndex)
    {
        if (oPlaces[lIndex] && mSteps[lIndex].mIsAnyDepth)
        {
            oPlaces[lIndex + 1] = true;
        }
    }
}

} // namespace TalBaseTool
