#include "Text/TextBuilder.h"

#include "Text/Delimiters.h"
#include "Text/Errors.h"
#include "Text/Messages.h"
#include "Text/Text.h"

#include <algorithm>
#include <stdexcept>

namespace TalBaseTool
{

namespace
{

constexpr const wchar_t* gHeaderWord = L"EndDelimiter"; // with which a header begins

} // namespace

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

namespace
{

using QTalBase::TextFaultKind;

Fault NameFault(TextFaultKind iKind)
{
    switch (iKind)
    {
    case TextFaultKind::None:
        return Fault::None;
    case TextFaultKind::Empty:
        return Fault::EmptyName;
    case TextFaultKind::HoldsZero:
        return Fault::NameHasZero;
    default:
        return Fault::NameHasDelimiter;
    }
}

Fault ValueFault(TextFaultKind iKind)
{
    switch (iKind)
    {
    case TextFaultKind::None:
    case TextFaultKind::NotEscaped: // reading escapes it, and a caller sees the same
        return Fault::None;
    case TextFaultKind::Empty:
        return Fault::EmptyValue;
    case TextFaultKind::HoldsZero:
        return Fault::ValueHasZero;
    default:
        return Fault::ValueHasDelimiter;
    }
}

} // namespace

TextBuilder::TextBuilder(const std::wstring& iBegin, const std::wstring& iEnd)
    : mBegin(iBegin),
      mEnd(iEnd),
      mEscaping(iBegin.c_str(), iEnd.c_str()),
      mCheck(iBegin.c_str(), iEnd.c_str()),
      mOpened{OpenedBag{0, 0, 0, false}}
{
}

Fault TextBuilder::AddPlain(std::wstring_view iName, std::wstring_view iValue)
{
    return hAddPlain(
        iName, [&] { mText.append(iValue); }, false);
}

Fault TextBuilder::AddPlain(std::wstring_view iName, std::string_view iValue)
{
    return hAddPlain(
        iName, [&] { AppendWide(iValue, mText); }, false);
}

Fault TextBuilder::AddStored(std::wstring_view iName, std::wstring_view iStored)
{
    return hAddPlain(
        iName, [&] { mText.append(iStored); }, true);
}

Fault TextBuilder::OpenBag(std::wstring_view iName)
{
    const Fault lFault = hCheckName(iName);
    if (lFault == Fault::None)
    {
        const std::size_t lStart = mText.size();
        mText.append(iName).append(mBegin);
        mOpened.back().mHasNest = true;
        mOpened.push_back(OpenedBag{lStart, mText.size(), 0, false});
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
        mOpened.back().mDropped += iSpan.mStop - iSpan.mStart;
    }
}

// Under a pair that no header can name, nested bags may be read as others.
bool TextBuilder::IsAsWritten() const
{
    if (!mIsInBagOrder || mText.rfind(gHeaderWord, 0) == 0)
    {
        return false;
    }
    try
    {
        const BagPtr lBag(QTalBase::CreatePropertyBag(WriteHeader({mBegin, mEnd}).c_str()));
        return mBegin == lBag->GetBeginDelimiter() && mEnd == lBag->GetEndDelimiter();
    }
    catch (const QBase::Message&)
    {
        return false;
    }
    catch (const std::out_of_range&)
    {
        return false;
    }
}

const std::wstring& TextBuilder::GetText()
{
    hCutDropped();
    return mText;
}

BagPtr TextBuilder::MakeBag()
{
    hCutDropped();
    const BagPtr lBag(QTalBase::CreatePropertyBag(mBegin.c_str(), mEnd.c_str()));
    if (mText.rfind(gHeaderWord, 0) == 0) // a name that would be taken for a header
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

// The value is put where it will stand, and checked there: a copy of it could take as much as all of the text.
template <class Append>
Fault TextBuilder::hAddPlain(std::wstring_view iName, const Append& iAppend, bool iIsStored)
{
    Fault lFault = hCheckName(iName);
    if (lFault == Fault::None)
    {
        const std::size_t lStart = mText.size();
        mText.append(iName).append(mBegin);
        const std::size_t lValue = mText.size();
        iAppend();
        lFault = hFinishValue(lValue, iIsStored);
        if (lFault != Fault::None)
        {
            mText.resize(lStart);
        }
    }
    mIsInBagOrder = mIsInBagOrder && (lFault != Fault::None || !mOpened.back().mHasNest);
    return lFault;
}

Fault TextBuilder::hFinishValue(std::size_t iStart, bool iIsStored)
{
    const auto lGet = [&] { return std::wstring_view(mText).substr(iStart); };
    const bool lHoldsEscape = !iIsStored && mEscaping.HoldsEscape(lGet());
    if (!iIsStored)
    {
        mEscaping.EscapeFrom(iStart, mText);
    }
    const Fault lFault = ValueFault(mCheck.CheckStoredValue(lGet()));
    if (lFault != Fault::None)
    {
        return lFault;
    }
    mText.append(mEnd);
    return lHoldsEscape ? Fault::ValueHasEscape : Fault::None;
}

Fault TextBuilder::hCheckName(std::wstring_view iName)
{
    return NameFault(mCheck.CheckName(iName));
}

namespace
{

// How long the text of a bag becomes, or a little less.
std::size_t Measure(const BagPtr& iBag, const std::wstring& iBegin, const std::wstring& iEnd)
{
    const Escaping lEscaping(iBegin.c_str(), iEnd.c_str());
    std::size_t lSize = 0;
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        if (lWalk.GetStep() != Step::Leave)
        {
            lSize += std::wstring_view(lWalk.GetName()).size() + iBegin.size() + iEnd.size();
        }
        if (lWalk.GetStep() == Step::Plain)
        {
            const QBase::ReturnWString lValue = lWalk.GetValue();
            lSize += lValue.GetLength() + lEscaping.CountGrowth(lValue);
        }
    }
    return lSize;
}

void AddContent(TextBuilder& oBuilder, const BagPtr& iBag, bool iIsSame, const Gate& iGate, const Keeps& iKeeps)
{
    const Escaping lEscaping(iBag->GetBeginDelimiter(), iBag->GetEndDelimiter());
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        if (iKeeps && !iKeeps(lWalk))
        {
            lWalk.GetStep() == Step::Enter ? lWalk.Skip() : void();
            continue;
        }
        Fault lFault = Fault::None;
        switch (lWalk.GetStep())
        {
        case Step::Plain:
            lFault = iIsSame ? oBuilder.AddStored(lWalk.GetName(), lWalk.GetValue())
                             : oBuilder.AddPlain(lWalk.GetName(), lEscaping.Unescape(lWalk.GetValue()));
            break;
        case Step::Enter:
            lFault = oBuilder.OpenBag(lWalk.GetName());
            break;
        case Step::Leave:
            oBuilder.CloseBag();
            break;
        }
        if (lFault != Fault::None)
        {
            throw DataError(iGate.ShowPath(lWalk.GetPath()) + ": with these delimiters it would be " +
                            Describe(lFault));
        }
    }
}

} // namespace

void Rebuild(BagPtr& oBag, const std::wstring& iBegin, const std::wstring& iEnd, const Gate& iGate, const Keeps& iKeeps)
{
    TextBuilder lBuilder(iBegin, iEnd);
    lBuilder.Reserve(Measure(oBag, iBegin, iEnd));
    AddContent(lBuilder, oBag, iBegin == oBag->GetBeginDelimiter() && iEnd == oBag->GetEndDelimiter(), iGate, iKeeps);
    oBag = {};
    try
    {
        oBag = lBuilder.MakeBag();
    }
    catch (const QBase::Message& lMessage)
    {
        throw DataError("with these delimiters the text could not be read back: " + ShowMessage(lMessage.GetMessage()));
    }
}

BagPtr WithDelimiters(BagPtr iBag, const std::wstring& iBegin, const std::wstring& iEnd, const Gate& iGate)
{
    if (iBegin != iBag->GetBeginDelimiter() || iEnd != iBag->GetEndDelimiter())
    {
        Rebuild(iBag, iBegin, iEnd, iGate);
    }
    return iBag;
}

} // namespace TalBaseTool
