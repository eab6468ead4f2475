// The steps of CreatePropertyBag and AddString, with the position of what is read beside them: the header, the parser
// and the merging are those of every reading, and the checker is another handler.
//
// Nested bags are read without being made where that cannot fail: where every one of them is final (see BagBuilder),
// and where nothing has to be merged into a bag with other delimiters. Otherwise they are made, as in every reading.

#include "TalBase/TextCheck.h"

#include "TalBase/PrivateSource/BagBuilder.h"
#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/TextParser.h"
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

// Checks one text that is read with one pair and merged into a new bag with another one, or with the same.
class TextChecker
{
public:
    TextChecker(std::wstring_view iText, TextCheckResult& oResult) : mText(iText), mResult(oResult) {}

    // Throw what reading throws, with the position where that happened in the result.
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
        const NestPtr lBag = MakeNest({}, SharedWString(iOwn.mBegin), SharedWString(iOwn.mEnd), {});
        hCheckContent(lPosition, SharedWString(lPair.mBegin), SharedWString(lPair.mEnd), lBag.get());
    }

    // What TextParser.h asks of a handler.

    // The result's position is the delimiter's; where something else may be refused, it becomes the position of that.
    void Cut(std::wstring_view iRun, Found iFound)
    {
        if (iFound == Found::Nothing)
        {
            mResult.mPosition = mText.size();
            return;
        }
        if (!iRun.empty())
        {
            hRemarkOnOverlap(iRun);
        }
        mLastFound = iFound;
        mLastPosition = hPositionOf(iRun) + iRun.size();
        mResult.mPosition = mLastPosition;
    }

    void Plain(std::wstring_view iName, std::wstring_view iValue, bool iMayContainStart)
    {
        mResult.mPosition = hPositionOf(iValue);
        mBuilder->Plain(iName, iValue, iMayContainStart);
    }

    void Empty(std::wstring_view iName)
    {
        hRemark(TextRemarkKind::EmptyValue, iName);
    }

    void OpenNest(std::wstring_view iName)
    {
        mBuilder->OpenNest(iName);
    }

    void CloseNest()
    {
        hRemarkOnReplaced();
        mResult.mPosition = hPositionOf(mBuilder->GetInnermostName());
        mBuilder->CloseNest();
        if (mBuilder->IsLastNestEmpty())
        {
            hRemark(TextRemarkKind::EmptyBag, mBuilder->GetLastNestName());
        }
    }

private:
    void hCheckHeaderPair(const DelimiterPair& iPair)
    {
        mResult.mPosition = gHeaderEndWord.size() + iPair.mEnd.size() + gHeaderBeginWord.size(); // the begin delimiter
        CheckValidityOfDelimiters(iPair);
    }

    // ipForeign: the bag with other delimiters that the text is merged into, or null.
    void hCheckContent(unsigned int iPosition, const SharedWString& iBegin, const SharedWString& iEnd,
                       BagState* ipForeign)
    {
        const DelimiterPair lPair{iBegin.View(), iEnd.View()};
        mBeginOverlap.emplace(lPair.mBegin);
        mEndOverlap.emplace(lPair.mEnd);
        mIsDefaultPair = AreDefaultDelimiters(lPair);
        const bool lMakesNests = ipForeign != nullptr || !IsEveryNestFinal(lPair);
        mBuilder.emplace(iBegin, iEnd, mText.data() + mText.size(), lMakesNests);
        const std::wstring_view lText = ContentOf(mText, iPosition);
        mResult.mContentPosition = mText.size() - lText.size();
        const std::wstring_view lTail = ParseText(lText, lPair, *this);
        if (!lTail.empty())
        {
            hRemark(TextRemarkKind::IgnoredTail, lTail);
        }
        hRemarkOnReplaced();
        if (lMakesNests)
        {
            const NestPtr lBag = ipForeign != nullptr ? NestPtr(ipForeign) : MakeNest({}, iBegin, iEnd, {});
            hMerge(*lBag);
        }
    }

    // Of the innermost nest.
    void hRemarkOnReplaced()
    {
        mBuilder->VisitInnermost([&](std::wstring_view iName, std::wstring_view /*iValue*/, bool iIsReplaced) {
            if (iIsReplaced)
            {
                hRemark(TextRemarkKind::RepeatedName, iName);
            }
        });
    }

    // Remarks on the delimiter before a run that was just cut, if it could also have begun further on. An end delimiter
    // of the default pair could not: values contain its character only escaped, so what follows belongs to a name.
    void hRemarkOnOverlap(std::wstring_view iRun)
    {
        const bool lIsAmbiguous = mLastFound == Found::Begin || (mLastFound == Found::End && !mIsDefaultPair);
        const std::size_t lLength =
            lIsAmbiguous ? (mLastFound == Found::Begin ? *mBeginOverlap : *mEndOverlap).FindIn(iRun) : 0;
        if (lLength != 0)
        {
            const std::wstring_view lFrom = mText.substr(mLastPosition);
            hRemark(TextRemarkKind::AmbiguousDelimiter,
                    lFrom.substr(0, static_cast<std::size_t>(iRun.data() - lFrom.data()) + lLength));
        }
    }

    // Merges what was read into a bag that may refuse a name or a value, which is then the result's position.
    void hMerge(BagState& oBag)
    {
        const bool lAreNestsFinal = mBuilder->AreNestsFinal();
        const NestPtr lRead = mBuilder->MakeBag();
        std::size_t lEntry = 0;
        try
        {
            MergeRead(oBag, *lRead, lAreNestsFinal, lEntry);
        }
        catch (...)
        {
            mResult.mPosition = hFindEntry(lEntry, oBag);
            throw;
        }
    }

    // The position of the name that is refused, or else of the value. A bag has its plain properties first, too.
    std::size_t hFindEntry(std::size_t iNumber, const BagState& iBag)
    {
        std::size_t lPosition = 0;
        mBuilder->VisitInnermost([&](std::wstring_view iName, std::wstring_view iValue, bool iIsReplaced) {
            if (!iIsReplaced && iNumber-- == 0)
            {
                const bool lIsName =
                    iValue.empty() || Contains(iName, iBag.mEnd.View()) || Contains(iName, iBag.mBegin.View());
                lPosition = hPositionOf(lIsName ? iName : iValue);
            }
        });
        return lPosition;
    }

    void hRemark(TextRemarkKind iKind, std::wstring_view iPart)
    {
        mResult.mRemarks.push_back(TextRemark{iKind, hPositionOf(iPart), iPart.size()});
    }

    // iPart: a piece of the text.
    std::size_t hPositionOf(std::wstring_view iPart) const
    {
        return static_cast<std::size_t>(iPart.data() - mText.data());
    }

    std::wstring_view mText;
    TextCheckResult& mResult;
    std::optional<BagBuilder> mBuilder; // of the content
    bool mIsDefaultPair = false;
    Found mLastFound = Found::Nothing; // the delimiter before what is taken next, and its position
    std::size_t mLastPosition = 0;
    std::optional<Overlap> mBeginOverlap;
    std::optional<Overlap> mEndOverlap;
};

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
