#include "Commands/Commands.h"

#include "Text/Errors.h"
#include "Text/Text.h"

#include "TalBase/DeliveryWindow.h"

#include <ctime>

namespace TalBaseTool
{

namespace
{

using WindowPtr = QBase::SmartPtrI<QTalBase::DeliveryWindow>;

constexpr unsigned int gHours = 24;

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
        lBag = MakeWindowBag(iPrefix + L"DeliveryWindow", ReadArgument(*iOptions.mValue, "--value"));
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

// "open 07:00-21:59, 23:00-23:59"
std::string ListOpenHours(const QTalBase::DeliveryWindow& iWindow)
{
    std::string lText;
    for (unsigned int lHour = 0; lHour < gHours; ++lHour)
    {
        if (iWindow.IsEnabled(lHour))
        {
            unsigned int lLast = lHour;
            while (lLast + 1 < gHours && iWindow.IsEnabled(lLast + 1))
            {
                ++lLast;
            }
            lText += (lText.empty() ? "open " : ", ") + TwoDigits(lHour) + ":00-" + TwoDigits(lLast) + ":59";
            lHour = lLast;
        }
    }
    return lText.empty() ? "never open" : lText;
}

void Draw(const QTalBase::DeliveryWindow& iWindow, const WindowOptions& iOptions, const Streams& iStreams)
{
    const Palette lPalette(iOptions.mColor, iStreams.mIsOutTerminal);
    std::string lHours;
    std::string lBlocks;
    for (unsigned int lHour = 0; lHour < gHours; ++lHour)
    {
        const bool lIsOpen = iWindow.IsEnabled(lHour);
        lHours += (lHour > 0 ? " " : "") + TwoDigits(lHour);
        lBlocks += (lHour > 0 ? " " : "") +
                   (lIsOpen ? lPalette.Paint(Style::Added, "██") : lPalette.Paint(Style::Quiet, "··"));
    }
    iStreams.mOut << lHours << '\n' << lBlocks << '\n';
    if (iOptions.mHasNow || iOptions.mHour)
    {
        const unsigned int lNow = iOptions.mHour ? *iOptions.mHour : HourOfNow();
        iStreams.mOut << std::string(std::size_t{3} * lNow, ' ') << "^^ "
                      << (iWindow.IsEnabled(lNow) ? "open" : "closed") << '\n';
    }
    iStreams.mOut << ListOpenHours(iWindow) << '\n';
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
    const std::wstring lPrefix = ReadArgument(iOptions.mPrefix, "--prefix");
    if (!iOptions.mHasFile)
    {
        Draw(*ReadWindow(iOptions, lPrefix, {}), iOptions, iStreams);
        return ExitGood;
    }
    const Document lDocument = iOptions.mIsSet ? LoadToChange(iOptions.mFile, iOptions.mPair, {}, iOptions.mTarget)
                                               : Load(iOptions.mFile, iOptions.mPair);
    const BagPtr lBag = FindWindowBag(lDocument, iOptions);
    const WindowPtr lWindow = ReadWindow(iOptions, lPrefix, lBag);
    if (!iOptions.mIsSet)
    {
        Draw(*lWindow, iOptions, iStreams);
        return ExitGood;
    }
    const BagPtr lMade(
        lWindow->SerializeToPropertyBag(lPrefix.c_str(), lBag->GetBeginDelimiter(), lBag->GetEndDelimiter()));
    const std::wstring lName = lPrefix + L"DeliveryWindow";
    // Taken from the new bag even where that is empty: with every hour open there is no property.
    lBag->SetProperty(lName.c_str(), lMade->GetProperty(lName.c_str()).c_str(), false);
    Save(lDocument, iOptions.mTarget, iStreams);
    return ExitGood;
}

} // namespace TalBaseTool
