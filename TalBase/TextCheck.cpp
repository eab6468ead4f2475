// The steps of CreatePropertyBag and AddString, with the place of what is read beside them. The cutters and the token
// reader are those of every reading; only their fast way of taking whole properties is left, token by token, because it
// passes over what is remarked on here.
//
// Nested bags are read without being made where that cannot fail: where every one of them is clean (see TextReader),
// and where nothing has to be merged into a bag with other delimiters. Otherwise they are made, as in every reading.

#include "TalBase/TextCheck.h"

#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextReader.h"
#include "TalBase/PrivateSource/TextSearch.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace QTalBase
{

namespace
{

// A delimiter, and what a run right behind it begins with when the delimiter could also begin further on: "+" for
// "++++".
class Overlap
{
public:
    explicit Overlap(std::wstring_view iDelimiter) : mDelimiter(iDelimiter)
    {
        TextSearcher lSearcher(iDelimiter);
        mLength = iDelimiter.size() - lSearcher.GetLongestBorder();
    }

    // How many characters of the run belong to the delimiter that begins further on, or 0.
    std::size_t FindIn(std::wstring_view iRun) const
    {
        const bool lIsThere =
            mLength < mDelimiter.size() && iRun.substr(0, mLength) == mDelimiter.substr(mDelimiter.size() - mLength);
        return lIsThere ? mLength : 0;
    }

private:
    std::wstring_view mDelimiter;
    std::size_t mLength;
};

} // namespace

// Checks one text that is read with one pair and merged into a new bag with another one, or with the same.
class TextChecker
{
public:
    TextChecker(std::wstring_view iText, TextCheckResult& oResult) : mText(iText), mResult(oResult) {}

    // What reading throws leaves the place where it happened in oResult.
    void CheckWithHeader()
    {
        DelimiterPair lPair;
        if (mText.empty())
        {
            return;
        }
        const unsigned int lPosition = ReadHeader(mText, lPair, &mResult.mPosition);
        if (lPosition == 0)
        {
            // A header that does not end gives 0, too.
            mResult.mPosition = mText.substr(0, gHeaderEndWord.size()) == gHeaderEndWord ? mText.size() : 0;
            Messages::Throw<PropertyBagException>((Messages::gStringMalformed + std::wstring(mText)).c_str());
        }
        hCheckHeaderPair(lPair);
        hCheckContent(lPosition, SharedWString(lPair.mBegin), SharedWString(lPair.mEnd), nullptr);
    }

    void CheckWithPair(const DelimiterPair& iOwn)
    {
        CheckValidityOfDelimiters(iOwn);
        DelimiterPair lPair = iOwn;
        const unsigned int lPosition = ReadHeader(mText, lPair, &mResult.mPosition);
        if (lPair.mBegin == iOwn.mBegin && lPair.mEnd == iOwn.mEnd)
        {
            hCheckContent(lPosition, SharedWString(iOwn.mBegin), SharedWString(iOwn.mEnd), nullptr);
            return;
        }
        hCheckHeaderPair(lPair);
        const QBase::SmartPtrI<PropertyBagImpl> lBag(
            new PropertyBagImpl(SharedWString(iOwn.mBegin), SharedWString(iOwn.mEnd), true));
        hCheckContent(lPosition, SharedWString(lPair.mBegin), SharedWString(lPair.mEnd), lBag.get());
    }

private:
    using Token = TextReader::Token;
    using State = TextReader::State;

    void hCheckHeaderPair(const DelimiterPair& iPair)
    {
        mResult.mPosition = gHeaderEndWord.size() + iPair.mEnd.size() + gHeaderBeginWord.size(); // the begin delimiter
        CheckValidityOfDelimiters(iPair);
    }

    // ipForeign: the bag with other delimiters that the text is merged into, or null.
    void hCheckContent(unsigned int iPosition, const SharedWString& iBegin, const SharedWString& iEnd,
                       PropertyBagImpl* ipForeign)
    {
        TextReader& lReader = mReader.emplace(iBegin, iEnd);
        mBeginOverlap.emplace(iBegin.View());
        mEndOverlap.emplace(iEnd.View());
        mAreBagsMade = ipForeign != nullptr || !lReader.hIsEveryNestClean();
        const std::wstring_view lText = mText.substr(std::min<std::size_t>(iPosition, mText.size()));
        lReader.mTextStop = lText.data() + lText.size();
        mResult.mContentPosition = mText.size() - lText.size();
        if (AreShortDelimiters(iBegin.View(), iEnd.View()))
        {
            ShortCutter lCutter(lText, iBegin.View(), iEnd.View());
            hTakeAllOf(lCutter);
        }
        else
        {
            LongCutter lCutter(lText, iBegin.View(), iEnd.View());
            hTakeAllOf(lCutter);
        }
        hRemarkOnReplaced();
        if (mAreBagsMade && (ipForeign != nullptr || !lReader.IsClean()))
        {
            const QBase::SmartPtrI<PropertyBagImpl> lBag(
                ipForeign != nullptr ? ipForeign : new PropertyBagImpl(iBegin, iEnd, true));
            hMerge(*lBag);
        }
    }

    template <class Cutter>
    void hTakeAllOf(Cutter& oCutter)
    {
        for (Found lFound = oCutter.Next(); lFound != Found::Nothing; lFound = oCutter.Next())
        {
            const std::wstring_view lRun = oCutter.GetRun();
            if (!lRun.empty())
            {
                mReader->mMayRunBeEscapable = oCutter.MayHoldFirstCharacter();
                mReader->Take(Token::String, lRun);
                hRemarkOnOverlap(lRun);
            }
            mLastFound = lFound;
            mLastPlace = hPlaceOf(lRun) + lRun.size();
            mResult.mPosition = mLastPlace;
            hTakeDelimiter(lFound == Found::Begin ? Token::Begin : Token::End);
        }
        mResult.mPosition = mText.size();
        mReader->Finish();
        const std::wstring_view lTail = oCutter.GetRest();
        if (!lTail.empty())
        {
            hRemark(TextRemarkKind::IgnoredTail, lTail);
        }
    }

    // The result's position is the delimiter's; where something else may be refused, it becomes the place of that.
    void hTakeDelimiter(Token iToken)
    {
        const State lState = mReader->mState;
        if (iToken == Token::End && lState == State::Name && mReader->mFrames.GetCount() > 1)
        {
            hCloseNest();
            return;
        }
        if (iToken == Token::End && lState == State::Value)
        {
            hRemark(TextRemarkKind::EmptyValue, mReader->mName);
        }
        if (iToken == Token::End && lState == State::ValueEnd)
        {
            mResult.mPosition = hPlaceOf(mReader->mValue);
        }
        mReader->Take(iToken, {});
    }

    void hCloseNest()
    {
        TextReader& lReader = *mReader;
        const TextReader::Frame lFrame = lReader.mFrames.Top();
        bool lIsEmpty = hRemarkOnReplaced();
        mResult.mPosition = hPlaceOf(lFrame.mName);
        if (mAreBagsMade)
        {
            lReader.Take(Token::End, {});
            lIsEmpty = lReader.mNests.Top().mBag->hIsEmpty();
        }
        else
        {
            lReader.mPlains.CutTo(lFrame.mFirstPlain);
            lReader.mNests.CutTo(lFrame.mFirstNest);
            lReader.mFrames.CutTo(lReader.mFrames.GetCount() - 1);
            lReader.mNests.Push(TextReader::Nest{lFrame.mName, nullptr, true, false});
        }
        mIsNestEmpty.resize(lFrame.mFirstNest);
        mIsNestEmpty.push_back(lIsEmpty);
        if (lIsEmpty)
        {
            hRemark(TextRemarkKind::EmptyBag, lFrame.mName);
        }
    }

    // Of the innermost frame. Returns whether nothing is left of it.
    bool hRemarkOnReplaced()
    {
        TextReader& lReader = *mReader;
        const TextReader::Frame lFrame = lReader.mFrames.Top();
        lReader.hMarkReplaced(lFrame);
        bool lIsEmpty = true;
        for (std::size_t lIndex = lFrame.mFirstPlain; lIndex < lReader.mPlains.GetCount(); ++lIndex)
        {
            const bool lIsReplaced = lReader.mPlains[lIndex].mEscapable == TextReader::gReplaced;
            lIsEmpty = lIsEmpty && lIsReplaced;
            if (lIsReplaced)
            {
                hRemark(TextRemarkKind::RepeatedName, lReader.mPlains[lIndex].mName);
            }
        }
        for (std::size_t lIndex = lFrame.mFirstNest; lIndex < lReader.mNests.GetCount(); ++lIndex)
        {
            const bool lIsReplaced = lReader.mNests[lIndex].mIsReplaced;
            lIsEmpty = lIsEmpty && (lIsReplaced || mIsNestEmpty[lIndex]);
            if (lIsReplaced)
            {
                hRemark(TextRemarkKind::RepeatedName, lReader.mNests[lIndex].mName);
            }
        }
        return lIsEmpty;
    }

    // A run that was just taken, and the delimiter before it. Under the default pair a value holds no character of the
    // end delimiter that is not escaped, so what follows one belongs to the next name.
    void hRemarkOnOverlap(std::wstring_view iRun)
    {
        const bool lIsAmbiguous = mLastFound == Found::Begin || (mLastFound == Found::End && !mReader->mIsDefaultPair);
        const std::size_t lLength =
            lIsAmbiguous ? (mLastFound == Found::Begin ? *mBeginOverlap : *mEndOverlap).FindIn(iRun) : 0;
        if (lLength != 0)
        {
            const std::wstring_view lFrom = mText.substr(mLastPlace);
            hRemark(TextRemarkKind::AmbiguousDelimiter,
                    lFrom.substr(0, static_cast<std::size_t>(iRun.data() - lFrom.data()) + lLength));
        }
    }

    // Into a bag for which a name or a value may be unfit. The entry that is merged is found again among what was read.
    void hMerge(PropertyBagImpl& oBag)
    {
        TextReader& lReader = *mReader;
        const QBase::SmartPtrI<PropertyBagImpl> lScratch(lReader.MakeBag());
        std::size_t lEntry = 0;
        try
        {
            oBag.hMergeScratch(lReader, *lScratch, lEntry);
        }
        catch (...)
        {
            mResult.mPosition = hFindEntry(lEntry, oBag);
            throw;
        }
    }

    // The place of the name that is refused, or else of the value.
    std::size_t hFindEntry(std::size_t iEntry, const PropertyBagImpl& iBag)
    {
        for (std::size_t lIndex = 0; lIndex < mReader->mPlains.GetCount(); ++lIndex)
        {
            const TextReader::Plain& lPlain = mReader->mPlains[lIndex];
            if (lPlain.mEscapable != TextReader::gReplaced && iEntry-- == 0)
            {
                const bool lIsName = Contains(lPlain.mName, iBag.mEndDelimiter.View()) ||
                                     Contains(lPlain.mName, iBag.mBeginDelimiter.View());
                return hPlaceOf(lIsName ? lPlain.mName : lPlain.mValue);
            }
        }
        std::size_t lNest = 0; // what was merged is one of them
        while (mReader->mNests[lNest].mIsReplaced || iEntry-- != 0)
        {
            ++lNest;
        }
        return hPlaceOf(mReader->mNests[lNest].mName);
    }

    void hRemark(TextRemarkKind iKind, std::wstring_view iPart)
    {
        mResult.mRemarks.push_back(TextRemark{iKind, hPlaceOf(iPart), iPart.size()});
    }

    // iPart: a piece of the text.
    std::size_t hPlaceOf(std::wstring_view iPart) const
    {
        return static_cast<std::size_t>(iPart.data() - mText.data());
    }

    std::wstring_view mText;
    TextCheckResult& mResult;
    std::optional<TextReader> mReader; // of the content
    bool mAreBagsMade = false;
    std::vector<bool> mIsNestEmpty;    // for each nest that the reader holds
    Found mLastFound = Found::Nothing; // the delimiter before what is taken next, and its place
    std::size_t mLastPlace = 0;
    std::optional<Overlap> mBeginOverlap;
    std::optional<Overlap> mEndOverlap;
};

namespace
{

TextCheckResult CheckWith(const wchar_t* ipText, const DelimiterPair* ipPair)
{
    TextCheckResult lResult{true, 0, L"", 0, {}};
    try
    {
        TextChecker lChecker(ipText, lResult);
        if (ipPair != nullptr)
        {
            lChecker.CheckWithPair(*ipPair);
        }
        else
        {
            lChecker.CheckWithHeader();
        }
        lResult.mPosition = 0;
    }
    catch (const PropertyBagException& lException)
    {
        lResult.mIsValid = false;
        lResult.mMessage = lException.GetMessage();
    }
    catch (const std::out_of_range& lException)
    {
        const std::string_view lWhat = lException.what();
        lResult.mIsValid = false;
        lResult.mMessage = std::wstring(lWhat.begin(), lWhat.end());
    }
    std::stable_sort(
        lResult.mRemarks.begin(), lResult.mRemarks.end(),
        [](const TextRemark& iLeft, const TextRemark& iRight) { return iLeft.mPosition < iRight.mPosition; });
    return lResult;
}

} // namespace

TextCheckResult CheckText(const wchar_t* ipText)
{
    return CheckWith(ipText, nullptr);
}

TextCheckResult CheckText(const wchar_t* ipText, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    const DelimiterPair lPair{ipBegin, ipEnd};
    return CheckWith(ipText, &lPair);
}

} // namespace QTalBase
