#include "Commands/Commands.h"

#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Text.h"

#include "TalBase/DeliveryWindow.h"

#include <algorithm>
#include <ctime>

namespace TalBaseTool
{

namespace
{

using WindowPtr = QBase::SmartPtrI<QTalBase::DeliveryWindow>;

constexpr unsigned int gHours = 24;
constexpr const wchar_t* gWindowName = L"DeliveryWindow"; // what a property's name ends with
constexpr std::size_t gMostNamed = 5;

struct HourRange
{
    unsigned int mFirst;
    unsigned int mLast;
};

unsigned int ReadHour(const std::string& iText)
{
    const bool lIsNumber = !iText.empty() && iText.size() <= 2 && iText.find_first_not_of("0123456789") == iText.npos;
    const unsigned int lHour = lIsNumber ? static_cast<unsigned int>(std::stoul(iText)) : gHours;
    if (lHour >= gHours)
    {
        throw UsageError("'" + ShowFile(iText) + "' is no hour from 0 to 23");
    }
    return lHour;
}

// "9-17", both ends included, past midnight where the end is smaller; "12" alone.
HourRange ReadRange(const std::string& iText)
{
    const std::size_t lDash = iText.find('-');
    const unsigned int lFirst = ReadHour(iText.substr(0, lDash));
    return {lFirst, lDash == std::string::npos ? lFirst : ReadHour(iText.substr(lDash + 1))};
}

// A bag with nothing but a window.
BagPtr MakeWindowBag(const std::wstring& iName, const std::wstring& iValue)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(iName.c_str(), iValue.c_str(), false);
    return lBag;
}

// The bag that holds the window's property.
BagPtr FindWindowBag(const Document& iDocument, const WindowOptions& iOptions)
{
    if (iOptions.mBagPath.empty())
    {
        return iDocument.mBag;
    }
    const Path lPath = ParsePath(iOptions.mBagPath);
    if (FindKind(iDocument.mBag, lPath) != Kind::Bag)
    {
        throw DataError("there is no bag " + ShowPath(lPath));
    }
    return FindParent(iDocument.mBag, lPath)->GetPropertyBag(lPath.back().c_str());
}

// The window of the value or of the bag, or where there is none of them one of its own, with the ranges applied.
WindowPtr ReadWindow(const WindowOptions& iOptions, const std::wstring& iPrefix, const BagPtr& iBag)
{
    const WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    BagPtr lBag = iBag;
    if (iOptions.mValue)
    {
        lBag = MakeWindowBag(iPrefix + gWindowName, ReadArgument(*iOptions.mValue, "--value"));
    }
    lWindow->DeSerializeFromPropertyBag(iPrefix.c_str(), lBag.get());
    // Whoever has nothing and opens hours wants the others closed.
    if (!lBag && !iOptions.mRanges.empty() && iOptions.mRanges.front().mIsOpen)
    {
        lWindow->DisableTimeBlock(0, gHours - 1);
    }
    for (const WindowRange& lRange : iOptions.mRanges)
    {
        const HourRange lHours = ReadRange(lRange.mHours);
        lRange.mIsOpen ? lWindow->EnableTimeBlock(lHours.mFirst, lHours.mLast)
                       : lWindow->DisableTimeBlock(lHours.mFirst, lHours.mLast);
    }
    return lWindow;
}

unsigned int HourOfNow()
{
    const std::time_t lNow = std::time(nullptr);
    std::tm lLocal = {};
    ::localtime_r(&lNow, &lLocal);
    return static_cast<unsigned int>(lLocal.tm_hour);
}

std::string TwoDigits(unsigned int iHour)
{
    return (iHour < 10 ? "0" : "") + std::to_string(iHour);
}

// "open 07:00-21:59, 23:00-23:59", in lines of a width, if that is not 0.
std::string ListOpenHours(const QTalBase::DeliveryWindow& iWindow, std::size_t iWidth)
{
    std::string lText = "open";
    std::size_t lUsed = lText.size();
    for (unsigned int lHour = 0; lHour < gHours; ++lHour)
    {
        if (iWindow.IsEnabled(lHour))
        {
            const unsigned int lFirst = lHour;
            while (lHour + 1 < gHours && iWindow.IsEnabled(lHour + 1))
            {
                ++lHour;
            }
            const std::string lRange = TwoDigits(lFirst) + ":00-" + TwoDigits(lHour) + ":59";
            const bool lIsFirst = lText == "open";
            lText += lIsFirst ? "" : ",";
            const bool lFits = iWidth == 0 || lIsFirst || lUsed + lRange.size() + 3 <= iWidth; // a comma may follow
            lText += (lFits ? " " : "\n     ") + lRange;
            lUsed = (lFits ? lUsed + 2 : 5) + lRange.size();
        }
    }
    return lText == "open" ? "never open" : lText;
}

// How many hours are drawn side by side: all, unless the terminal is too narrow.
unsigned int CountHoursOfRow(std::size_t iWidth)
{
    for (const unsigned int lCount : {24U, 12U, 8U, 6U, 4U, 3U, 2U})
    {
        if (iWidth == 0 || std::size_t{3} * lCount - 1 <= iWidth)
        {
            return lCount;
        }
    }
    return 1;
}

// The mark below an hour of a row, with what it says on the side where there is room.
std::string DrawMark(unsigned int iPlace, bool iIsOpen, std::size_t iWidth)
{
    const std::string lWord = iIsOpen ? "open" : "closed";
    const std::size_t lBefore = std::size_t{3} * iPlace;
    if (iWidth == 0 || lBefore + 3 + lWord.size() <= iWidth)
    {
        return std::string(lBefore, ' ') + "^^ " + lWord;
    }
    return lBefore > lWord.size() ? std::string(lBefore - lWord.size() - 1, ' ') + lWord + " ^^"
                                  : std::string(lBefore, ' ') + "^^";
}

// A window is shown as a whole or not at all.
void CheckIsShown(const Document& iDocument, const WindowOptions& iOptions, const std::wstring& iName,
                  const QTalBase::PropertyBag& iBag)
{
    const Path lPath = iOptions.mBagPath.empty() ? Path() : ParsePath(iOptions.mBagPath);
    const Gate& lGate = iDocument.mGate;
    if (lGate.HidesValue(iName, iBag.GetProperty(iName.c_str()).c_str()) ||
        std::any_of(lPath.begin(), lPath.end(), [&lGate](const std::wstring& iStep) { return lGate.HidesBag(iStep); }))
    {
        const std::string lReason = lGate.GetReason();
        throw RefusedError(ShowFile(iOptions.mFile) + ": " +
                           (lReason.empty() ? "the window is hidden; --show-secrets shows it" : lReason));
    }
}

void Draw(const QTalBase::DeliveryWindow& iWindow, const WindowOptions& iOptions, const Streams& iStreams)
{
    const Palette lPalette(iOptions.mColor, iStreams.mIsOutTerminal);
    const bool lHasMark = iOptions.mHasNow || iOptions.mHour;
    const unsigned int lNow = iOptions.mHour ? *iOptions.mHour : HourOfNow();
    const unsigned int lCount = CountHoursOfRow(iStreams.mWidth);
    for (unsigned int lFirst = 0; lFirst < gHours; lFirst += lCount)
    {
        std::string lHours;
        std::string lBlocks;
        for (unsigned int lHour = lFirst; lHour < lFirst + lCount; ++lHour)
        {
            lHours += (lHour > lFirst ? " " : "") + TwoDigits(lHour);
            lBlocks += (lHour > lFirst ? " " : "") + (iWindow.IsEnabled(lHour) ? lPalette.Paint(Style::Added, "██")
                                                                               : lPalette.Paint(Style::Quiet, "··"));
        }
        iStreams.mOut << lHours << '\n' << lBlocks << '\n';
        if (lHasMark && lNow >= lFirst && lNow < lFirst + lCount)
        {
            iStreams.mOut << DrawMark(lNow - lFirst, iWindow.IsEnabled(lNow), iStreams.mWidth) << '\n';
        }
    }
    iStreams.mOut << ListOpenHours(iWindow, iStreams.mWidth) << '\n';
}

// The windows in a bag and in those below it, as they may be named; not those in bags that are hidden.
struct OtherWindows
{
    std::size_t mCount = 0;
    std::string mNames; // of the first ones
};
OtherWindows FindWindows(const Document& iDocument, const Path& iBagPath, const BagPtr& iBag)
{
    constexpr std::wstring_view lEnding = gWindowName;
    OtherWindows lFound;
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        const std::wstring_view lName = lWalk.GetName();
        if (lWalk.GetStep() == Step::Enter && iDocument.mGate.HidesBag(lName))
        {
            lWalk.Skip();
        }
        const bool lIsWindow = lWalk.GetStep() == Step::Plain && lName.size() >= lEnding.size() &&
                               lName.substr(lName.size() - lEnding.size()) == lEnding;
        if (lIsWindow && lFound.mCount++ < gMostNamed)
        {
            Path lPath = iBagPath;
            const Path lBelow = lWalk.GetPath();
            lPath.insert(lPath.end(), lBelow.begin(), lBelow.end());
            lFound.mNames += (lFound.mNames.empty() ? "" : ", ") + iDocument.mGate.ShowPath(lPath);
        }
    }
    lFound.mNames += lFound.mCount > gMostNamed ? ", …" : "";
    return lFound;
}

// What is drawn of a bag without a window is nothing that stands in it. Returns whether another window may have been
// meant.
bool ReportNoWindow(const Document& iDocument, const WindowOptions& iOptions, const BagPtr& iBag,
                    const std::wstring& iName, const Streams& iStreams)
{
    const Path lBagPath = iOptions.mBagPath.empty() ? Path() : ParsePath(iOptions.mBagPath);
    Path lPath = lBagPath;
    lPath.push_back(iName);
    iStreams.Remarks() << "talbase: " << ShowFile(iDocument.mFile) << ": there is no "
                       << iDocument.mGate.ShowPath(lPath) << "; none stored means open all day\n";
    const OtherWindows lOthers = FindWindows(iDocument, lBagPath, iBag);
    if (lOthers.mCount > 0)
    {
        iStreams.Remarks() << "talbase: " << ShowFile(iDocument.mFile) << ": there "
                           << (lOthers.mCount == 1 ? "is " : "are ") << lOthers.mNames
                           << "; --path and --prefix choose one\n";
    }
    return lOthers.mCount > 0 && !iOptions.mPrefix;
}

} // namespace

int Window(const WindowOptions& iOptions, const Streams& iStreams)
{
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    if (iOptions.mHour.value_or(0) >= gHours)
    {
        throw UsageError("--at needs an hour from 0 to 23");
    }
    if (iOptions.mIsSet && !iOptions.mHasFile)
    {
        throw UsageError("--set needs a file, or - for standard input");
    }
    if (iOptions.mTarget.mIsInPlace && !iOptions.mIsSet)
    {
        throw UsageError("--in-place goes with --set");
    }
    const std::wstring lPrefix = ReadArgument(iOptions.mPrefix.value_or(""), "--prefix");
    const std::wstring lName = lPrefix + gWindowName;
    if (!iOptions.mHasFile)
    {
        Draw(*ReadWindow(iOptions, lPrefix, {}), iOptions, iStreams);
        return ExitGood;
    }
    const Document lDocument = iOptions.mIsSet
                                   ? LoadToChange(iOptions.mFile, iOptions.mPair, iOptions.mSecrets, iOptions.mTarget)
                                   : Load(iOptions.mFile, iOptions.mPair, iOptions.mSecrets);
    const BagPtr lBag = FindWindowBag(lDocument, iOptions);
    if (!iOptions.mIsSet)
    {
        CheckIsShown(lDocument, iOptions, lPrefix + L"DeliveryWindow", *lBag);
    }
    const WindowPtr lWindow = ReadWindow(iOptions, lPrefix, lBag);
    if (!iOptions.mIsSet)
    {
        const bool lIsThere = FindKind(lBag, {lName}) != Kind::Missing;
        const bool lIsDoubtful = !lIsThere && ReportNoWindow(lDocument, iOptions, lBag, lName, iStreams);
        Draw(*lWindow, iOptions, iStreams);
        return lIsDoubtful ? ExitBad : ExitGood;
    }
    const BagPtr lMade(
        lWindow->SerializeToPropertyBag(lPrefix.c_str(), lBag->GetBeginDelimiter(), lBag->GetEndDelimiter()));
    // Taken from the new bag even where that is empty: with every hour open there is no property.
    lBag->SetProperty(lName.c_str(), lMade->GetProperty(lName.c_str()).c_str(), false);
    Save(lDocument, iOptions.mTarget, iStreams);
    return ExitGood;
}

} // namespace TalBaseTool
