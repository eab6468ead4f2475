#include "Text/TextBuilder.h"

#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Messages.h"

#include <algorithm>

namespace TalBaseTool
{

const char* Describe(Fault iFault)
{
    switch (iFault)
    {
    case Fault::EmptyName:
        return "an empty name";
    case Fault::NameHasDelimiter:
        return "a name that holds a delimiter or runs into one";
    case Fault::NameHasZero:
        return "a name with a zero character";
    case Fault::EmptyValue:
        return "an empty text";
    case Fault::ValueHasDelimiter:
        return "a value that holds a delimiter or runs into one";
    case Fault::ValueHasEscape:
        return "a value that holds an escape already";
    case Fault::ValueHasZero:
        return "a value with a zero character";
    case Fault::None:
        break;
    }
    return "nothing";
}

TextBuilder::TextBuilder(const std::wstring& iBegin, const std::wstring& iEnd)
    : mBegin(iBegin), mEnd(iEnd), mEscaping(iBegin.c_str(), iEnd.c_str())
{
}

Fault TextBuilder::AddPlain(std::wstring_view iName, std::wstring_view iValue)
{
    const bool lHasZero = iValue.find(L'\0') != std::wstring_view::npos; // where escaping would end
    const std::wstring lStored = lHasZero ? std::wstring(iValue) : mEscaping.Escape(iValue);
    const Fault lFault = hCheckPlain(iName, lStored);
    if (lFault == Fault::None && mEscaping.Unescape(lStored) != iValue)
    {
        return Fault::ValueHasEscape;
    }
    if (lFault == Fault::None)
    {
        hAdd(iName, lStored);
    }
    return lFault;
}

Fault TextBuilder::AddStored(std::wstring_view iName, std::wstring_view iStored)
{
    const Fault lFault = hCheckPlain(iName, iStored);
    if (lFault == Fault::None)
    {
        hAdd(iName, iStored);
    }
    return lFault;
}

Fault TextBuilder::OpenBag(std::wstring_view iName)
{
    const Fault lFault = hCheckName(iName);
    if (lFault == Fault::None)
    {
        const std::size_t lStart = mText.size();
        mText.append(iName).append(mBegin);
        mOpened.push_back(OpenedBag{lStart, mText.size(), 0});
    }
    return lFault;
}

std::size_t TextBuilder::CloseBag()
{
    const OpenedBag lBag = mOpened.back();
    mOpened.pop_back();
    if (mText.size() - lBag.mContent > lBag.mDropped)
    {
        mText.append(mEnd);
    }
    else
    {
        mText.resize(lBag.mStart);
        while (!mDropped.empty() && mDropped.back().mStart >= lBag.mStart)
        {
            mDropped.pop_back();
        }
    }
    return lBag.mStart;
}

void TextBuilder::Drop(const TextSpan& iSpan)
{
    if (iSpan.mStart < iSpan.mStop)
    {
        mDropped.push_back(iSpan);
        if (!mOpened.empty())
        {
            mOpened.back().mDropped += iSpan.mStop - iSpan.mStart;
        }
    }
}

BagPtr TextBuilder::MakeBag()
{
    hCutDropped();
    const BagPtr lBag(QTalBase::CreatePropertyBag(mBegin.c_str(), mEnd.c_str()));
    if (mText.rfind(L"EndDelimiter", 0) == 0) // a name that would be taken for a header
    {
        mText.insert(0, lBag->GetString(true, nullptr, nullptr, true));
    }
    lBag->AddString(mText.c_str());
    mText = {};
    return lBag;
}

void TextBuilder::hCutDropped()
{
    std::sort(mDropped.begin(), mDropped.end(),
              [](const TextSpan& iLeft, const TextSpan& iRight) { return iLeft.mStart < iRight.mStart; });
    std::size_t lSize = 0;
    std::size_t lNext = 0; // of what is still to be kept
    const auto lKeep = [&](std::size_t iStop) {
        if (iStop > lNext)
        {
            std::copy(mText.begin() + static_cast<std::ptrdiff_t>(lNext),
                      mText.begin() + static_cast<std::ptrdiff_t>(iStop),
                      mText.begin() + static_cast<std::ptrdiff_t>(lSize));
            lSize += iStop - lNext;
        }
    };
    for (const TextSpan& lSpan : mDropped)
    {
        lKeep(lSpan.mStart);
        lNext = std::max(lNext, lSpan.mStop);
    }
    lKeep(mText.size());
    mText.resize(lSize);
    mDropped.clear();
}

Fault TextBuilder::hCheckPlain(std::wstring_view iName, std::wstring_view iStored) const
{
    const Fault lFault = hCheckName(iName);
    if (lFault != Fault::None)
    {
        return lFault;
    }
    if (iStored.empty())
    {
        return Fault::EmptyValue;
    }
    if (iStored.find(L'\0') != std::wstring_view::npos)
    {
        return Fault::ValueHasZero;
    }
    return hRunsInto(iStored, mEnd) ? Fault::ValueHasDelimiter : Fault::None;
}

void TextBuilder::hAdd(std::wstring_view iName, std::wstring_view iStored)
{
    mText.append(iName).append(mBegin).append(iStored).append(mEnd);
}

Fault TextBuilder::hCheckName(std::wstring_view iName) const
{
    if (iName.empty())
    {
        return Fault::EmptyName;
    }
    if (iName.find(L'\0') != std::wstring_view::npos)
    {
        return Fault::NameHasZero;
    }
    return hRunsInto(iName, mBegin) ? Fault::NameHasDelimiter : Fault::None;
}

// Whether a reader finds a delimiter before the one that ends the run.
bool TextBuilder::hRunsInto(std::wstring_view iRun, const std::wstring& iDelimiter) const
{
    if (iRun.find(mBegin) != std::wstring_view::npos || iRun.find(mEnd) != std::wstring_view::npos)
    {
        return true;
    }
    const std::size_t lReach = std::max(mBegin.size(), mEnd.size()) - 1;
    std::wstring lBorder(iRun.substr(iRun.size() - std::min(iRun.size(), lReach)));
    const std::size_t lRun = lBorder.size();
    lBorder += iDelimiter;
    return std::min(lBorder.find(mBegin), lBorder.find(mEnd)) != lRun;
}

BagPtr Rebuild(const BagPtr& iBag, const std::wstring& iBegin, const std::wstring& iEnd)
{
    const bool lIsSame = iBegin == iBag->GetBeginDelimiter() && iEnd == iBag->GetEndDelimiter();
    const Escaping lEscaping(iBag->GetBeginDelimiter(), iBag->GetEndDelimiter());
    TextBuilder lBuilder(iBegin, iEnd);
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        Fault lFault = Fault::None;
        switch (lWalk.GetStep())
        {
        case Step::Plain:
            lFault = lIsSame ? lBuilder.AddStored(lWalk.GetName(), lWalk.GetValue())
                             : lBuilder.AddPlain(lWalk.GetName(), lEscaping.Unescape(lWalk.GetValue()));
            break;
        case Step::Enter:
            lFault = lBuilder.OpenBag(lWalk.GetName());
            break;
        case Step::Leave:
            lBuilder.CloseBag();
            break;
        }
        if (lFault != Fault::None)
        {
            throw DataError(ShowPath(lWalk.GetPath()) + ": with these delimiters it would be " + Describe(lFault));
        }
    }
    try
    {
        return lBuilder.MakeBag();
    }
    catch (const QBase::Message& lMessage)
    {
        throw DataError("with these delimiters the text could not be read back: " + ShowMessage(lMessage.GetMessage()));
    }
}

BagPtr WithDelimiters(const BagPtr& iBag, const std::wstring& iBegin, const std::wstring& iEnd)
{
    const bool lIsSame = iBegin == iBag->GetBeginDelimiter() && iEnd == iBag->GetEndDelimiter();
    return lIsSame ? iBag : Rebuild(iBag, iBegin, iEnd);
}

} // namespace TalBaseTool
