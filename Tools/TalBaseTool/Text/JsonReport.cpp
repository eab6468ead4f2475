#include "Text/JsonReport.h"

#include "Text/Text.h"

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gShown = 3;

// What the places have, one and many of it, and what has become of it.
struct Wording
{
    const char* mOne;
    const char* mMany;
    const char* mOutcome;
};

constexpr Wording gWordings[] = {{"empty text", "empty texts", "left out"},
                                 {"empty object", "empty objects", "left out"},
                                 {"empty array", "empty arrays", "left out"},
                                 {"empty name", "empty names", "left out with what it names"},
                                 {"name or value that its text form would not give back",
                                  "names or values that their text form would not give back", "left out"},
                                 {"repeated name", "repeated names", "the last one counts"},
                                 {"number, true, false or null", "numbers, true, false or null", "kept as text"},
                                 {"object with the names of an array's elements",
                                  "objects with the names of an array's elements", "would come back as an array"},
                                 {"array with elements left out before others",
                                  "arrays with elements left out before others", "would come back as an object"},
                                 {"object with plain values behind nested ones",
                                  "objects with plain values behind nested ones", "plain values moved to the front"}};

} // namespace

bool JsonReport::WantsPlace(Loss iLoss) const
{
    return mIsVerbose || mKinds[static_cast<std::size_t>(iLoss)].mPlaces.size() < gShown;
}

void JsonReport::Add(Loss iLoss, const Path& iLast, std::size_t iLevel, bool iIsBelowHidden)
{
    Kind& lKind = mKinds[static_cast<std::size_t>(iLoss)];
    ++lKind.mCount;
    if (WantsPlace(iLoss))
    {
        const std::string lPath = mGate.ShowPath(iLast, iLevel, iIsBelowHidden);
        lKind.mPlaces.push_back(iLevel == 0 ? "the document" : lPath.empty() ? "\"\"" : lPath);
    }
}

bool JsonReport::HasLoss() const
{
    for (std::size_t lIndex = 0; lIndex < static_cast<std::size_t>(Loss::Order); ++lIndex)
    {
        if (mKinds[lIndex].mCount != 0)
        {
            return true;
        }
    }
    return false;
}

void JsonReport::Write(std::ostream& oErr) const
{
    for (std::size_t lIndex = 0; lIndex < mKinds.size(); ++lIndex)
    {
        const Kind& lKind = mKinds[lIndex];
        if (lKind.mCount == 0)
        {
            continue;
        }
        const Wording& lWording = gWordings[lIndex];
        oErr << "talbase: " << Count(lKind.mCount, lWording.mOne, lWording.mMany) << ": " << lWording.mOutcome << " (";
        for (std::size_t lPlace = 0; lPlace < lKind.mPlaces.size(); ++lPlace)
        {
            oErr << (lPlace > 0 ? ", " : "") << lKind.mPlaces[lPlace];
        }
        oErr << (lKind.mPlaces.size() < lKind.mCount ? ", …)\n" : ")\n");
    }
}

} // namespace TalBaseTool
