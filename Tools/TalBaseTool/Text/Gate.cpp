#include "Text/Gate.h"

#include "Text/Display.h"
#include "Text/Text.h"

#include <algorithm>
#include <cstdlib>

namespace TalBaseTool
{

namespace
{

// How a text in good order begins.
struct Beginning
{
    DelimiterTexts mPair;
    std::size_t mContent; // where the properties begin
};

// The header that a text begins with, if it is one that the library writes.
std::optional<Beginning> ReadHeader(const std::wstring& iText)
{
    constexpr std::size_t lEnd = 12; // behind "EndDelimiter"
    const std::size_t lWord = iText.find_first_of(L"BeginDelimiter", lEnd);
    const std::size_t lBegin = lWord + 14;
    if (lWord == std::wstring::npos || lBegin > iText.size())
    {
        return {};
    }
    const std::wstring lEndDelimiter = iText.substr(lEnd, lWord - lEnd);
    const std::size_t lStop = iText.find_first_of(lEndDelimiter, lBegin);
    if (lStop == std::wstring::npos)
    {
        return {};
    }
    const DelimiterTexts lPair{iText.substr(lBegin, lStop - lBegin), lEndDelimiter};
    const std::wstring lHeader = WriteHeader(lPair);
    return iText.rfind(lHeader, 0) == 0 ? std::make_optional(Beginning{lPair, lHeader.size()}) : std::nullopt;
}

// The same of a text that reads without an error, with a header or with a pair.
std::optional<Beginning> ReadBeginning(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair,
                                       const SensitiveNames& iNames)
{
    const std::optional<Beginning> lBeginning = iPair ? Beginning{*iPair, 0} : ReadHeader(iText);
    const bool lIsGood = lBeginning && !iNames.IsIn(lBeginning->mPair.mBegin) && !iNames.IsIn(lBeginning->mPair.mEnd);
    return lIsGood ? lBeginning : std::nullopt;
}

} // namespace

std::shared_ptr<const SensitiveNames> ReadSensitiveNames(const SecretOptions& iOptions)
{
    std::vector<std::wstring> lNames;
    for (const std::string& lName : iOptions.mNames)
    {
        lNames.push_back(ReadArgument(lName, "--name"));
    }
    // The same for every text of a run, so that only the first of many pays for them.
    static std::vector<std::wstring> lKnownNames;
    static std::string lKnownVariable;
    static std::shared_ptr<const SensitiveNames> lKnown;
    const char* const lVariable = std::getenv("TALBASE_SENSITIVE_NAMES");
    if (!lKnown || lNames != lKnownNames || lKnownVariable != (lVariable != nullptr ? lVariable : ""))
    {
        lKnown = std::make_shared<SensitiveNames>(lNames);
        lKnownNames = std::move(lNames);
        lKnownVariable = lVariable != nullptr ? lVariable : "";
    }
    return lKnown;
}

Gate::Gate(const SecretOptions& iOptions, const std::wstring& iText, const std::optional<DelimiterTexts>& iPair,
           bool iIsRead)
    : mNames(ReadSensitiveNames(iOptions))
{
    if (iOptions.mShowSecrets || !mNames->IsIn(iText))
    {
        return;
    }
    mOpening = Opening::Nothing;
    const std::optional<Beginning> lBeginning = iIsRead ? ReadBeginning(iText, iPair, *mNames) : std::nullopt;
    if (lBeginning)
    {
        mPair = lBeginning->mPair;
        mContent = lBeginning->mContent;
        HiddenParts lHidden = FindHiddenParts(iText, mContent, mPair, *mNames, false);
        const bool lIsNestMisread = lHidden.mHasNest && !ReadHeader(WriteHeader(mPair));
        mOpening = lHidden.mIsNameCut || lIsNestMisread ? Opening::Nothing : Opening::Masked;
        mNeighbours = std::move(lHidden.mNames);
    }
}

Gate Gate::ForNames(const SecretOptions& iOptions)
{
    Gate lGate;
    lGate.mNames = ReadSensitiveNames(iOptions);
    lGate.mOpening = iOptions.mShowSecrets ? Opening::Everything : Opening::Masked;
    return lGate;
}

void Gate::Join(const Gate& iOther)
{
    mNames = mNames ? mNames : iOther.mNames;
    mOpening = std::max(mOpening, iOther.mOpening);
    mNeighbours.insert(iOther.mNeighbours.begin(), iOther.mNeighbours.end());
}

void Gate::TakeForGood()
{
    mOpening = mOpening == Opening::Nothing ? Opening::Masked : mOpening;
}

std::string Gate::GetReason() const
{
    return mOpening == Opening::Nothing ? "a sensitive name is in this text, which is not in good order, so nothing of "
                                          "it is shown; --show-secrets shows it"
                                        : "";
}

std::vector<TextPart> Gate::FindParts(std::wstring_view iText) const
{
    switch (mOpening)
    {
    case Opening::Everything:
        break;
    case Opening::Masked:
        return FindHiddenParts(iText, mContent, mPair, *mNames, true).mParts;
    case Opening::Nothing:
        return {{0, iText.size()}};
    }
    return {};
}

std::string Gate::ShowName(std::wstring_view iName) const
{
    const std::wstring_view lShown = hShownPart(iName);
    const bool lIsWhole = lShown.size() == iName.size() && mOpening != Opening::Nothing;
    return ToUtf8(MakeControlsPrintable(lShown)) + (lIsWhole ? "" : gHidden);
}

std::string Gate::ShowDelimiter(std::wstring_view iDelimiter) const
{
    return mOpening == Opening::Nothing ? gHidden : ToUtf8(MakePrintable(iDelimiter));
}

std::string Gate::ShowPath(const Path& iPath) const
{
    const auto lFirst = iPath.end() - static_cast<std::ptrdiff_t>(std::min(iPath.size(), gMostNames));
    const bool lIsBelowHidden =
        std::any_of(iPath.begin(), lFirst, [this](const std::wstring& iName) { return HidesBag(iName); });
    return ShowPath(Path(lFirst, iPath.end()), iPath.size(), lIsBelowHidden);
}

std::string Gate::ShowPath(const Path& iLast, std::size_t iLevel, bool iIsBelowHidden) const
{
    Path lShown;
    bool lIsHidden = iIsBelowHidden;
    for (std::size_t lIndex = 0; lIndex < iLast.size() && !lIsHidden; ++lIndex)
    {
        lShown.emplace_back(hShownPart(iLast[lIndex]));
        lIsHidden = HidesBag(iLast[lIndex]);
    }
    const bool lIsLastWhole =
        !lShown.empty() && mOpening != Opening::Nothing && lShown.back().size() == iLast[lShown.size() - 1].size();
    const std::string lText = TalBaseTool::ShowPath(lShown, iLevel - (iLast.size() - lShown.size()));
    const bool lIsCut = lShown.size() < iLast.size();
    return lText + (lShown.empty() || lIsLastWhole ? "" : gHidden) + (lIsCut && !lShown.empty() ? "/" : "") +
           (lIsCut ? gHidden : "");
}

bool Gate::hHidesValue(std::wstring_view iName, std::wstring_view iValue) const
{
    return hHidesBag(iName) || (mOpening == Opening::Masked && mNames->FindWord(iValue));
}

bool Gate::hHidesBag(std::wstring_view iName) const
{
    return mOpening == Opening::Nothing ||
           (mOpening == Opening::Masked && (mNames->FindWord(iName) || hIsNeighbour(iName)));
}

bool Gate::hIsNeighbour(std::wstring_view iName) const
{
    return !mNeighbours.empty() && mNeighbours.count(std::wstring(iName)) != 0;
}

// The beginning of a name that is not hidden.
std::wstring_view Gate::hShownPart(std::wstring_view iName) const
{
    if (mOpening == Opening::Everything)
    {
        return iName;
    }
    if (mOpening == Opening::Nothing || hIsNeighbour(iName))
    {
        return {};
    }
    const std::optional<NamePlace> lWord = mNames->FindWord(iName);
    return lWord ? iName.substr(0, lWord->mStop) : iName;
}

void ReportHidden(const std::string& iFile, const Gate& iGate, std::ostream& oErr)
{
    if (iGate.GetOpening() == Gate::Opening::Nothing)
    {
        oErr << ShowFile(iFile) << ": " << iGate.GetReason() << '\n';
    }
}

} // namespace TalBaseTool
