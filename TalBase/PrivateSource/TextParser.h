// The grammar of a text form, once. A parser takes what a cutter finds and tells a handler what it meets; it makes
// nothing itself and knows no bag.
//
//   text     = { property } tail                         the tail is ignored
//   property = name Begin ( End                          nothing is set
//                         | value End                    a plain property
//                         | property { property } End )  a nest
//
// In "Sub++++Key++++v***Ann++++b******rest", under "++++" and "***", it meets
//
//   a nest that opens      Sub                what looked like a value, Key, is the name of its first property
//   a plain property       Key, v
//   a plain property       Ann, b
//   the end of the nest    where a name should be, a delimiter stands
//
// and gives back the tail "rest". See "Grammar" in Docs/TextFormat.md, which has more examples.
//
// A handler is any class with these. Names and values are never empty, and are pieces of the text, so they tell where
// they stand.
//
//   void Cut(std::wstring_view iRun, Found iFound)    each delimiter with the run of text before it, before it is
//                                                     understood; at the end of the text Found::Nothing and the tail
//   void Plain(iName, iValue, bool iMayContainStart)  a plain property; whether the first character of a delimiter may
//                                                     occur in its value
//   void Empty(iName)                                 a property without a value
//   void OpenNest(iName)                              what follows, up to its CloseNest, is inside
//   void CloseNest()

#ifndef TALBASE_PRIVATESOURCE_TEXTPARSER_H
#define TALBASE_PRIVATESOURCE_TEXTPARSER_H

#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/RowCutter.h"
#include "TalBase/PrivateSource/TextCutters.h"

#include <cstddef>
#include <string_view>

namespace QTalBase
{

template <class Cutter, class Handler>
class TextParser
{
public:
    TextParser(const Cutter& iCutter, Handler& oHandler) : mCutter(iCutter), mHandler(oHandler) {}

    // Parses to the end. Throws PropertyBagException, as PropertyBag::AddString tells, and what the handler throws.
    // Returns the tail.
    std::wstring_view Parse()
    {
        for (;;)
        {
            const Found lFound = hCut();
            if (lFound == Found::Nothing)
            {
                hRequire(mDepth == 0, Messages::gTokenExpected);
                return mCutter.GetRest();
            }
            if (mCutter.GetRun().empty())
            {
                hEndNest(lFound);
                continue;
            }
            hRequire(lFound == Found::Begin, Messages::gBeginTokenExpected);
            hParseProperty(mCutter.GetRun());
        }
    }

private:
    // What stands behind a name and its begin delimiter.
    void hParseProperty(std::wstring_view iName)
    {
        for (std::wstring_view lName = iName;;)
        {
            const Found lFound = hCut();
            const std::wstring_view lRun = mCutter.GetRun();
            hRequire(lFound != Found::Nothing, Messages::gTokenExpected);
            if (lRun.empty())
            {
                hRequire(lFound == Found::End, Messages::gStringTokenExpected);
                mHandler.Empty(lName);
                return;
            }
            if (lFound == Found::End)
            {
                mHandler.Plain(lName, lRun, mCutter.MayContainStart());
                return;
            }
            hRequire(lFound == Found::Begin, Messages::gStringOrBeginTokenExpected);
            mHandler.OpenNest(lName);
            ++mDepth;
            lName = lRun;
        }
    }

    // A delimiter where a name should be.
    void hEndNest(Found iFound)
    {
        hRequire(mDepth != 0, Messages::gStringTokenExpected);
        hRequire(iFound == Found::End, Messages::gEndTokenExpected);
        mHandler.CloseNest();
        --mDepth;
    }

    Found hCut()
    {
        const Found lFound = mCutter.Next();
        mHandler.Cut(lFound != Found::Nothing ? mCutter.GetRun() : mCutter.GetRest(), lFound);
        return lFound;
    }

    static void hRequire(bool iIsMet, const wchar_t* ipText)
    {
        if (!iIsMet) [[unlikely]]
        {
            Messages::Throw<PropertyBagException>(ipText);
        }
    }

    Cutter mCutter;
    Handler& mHandler;
    std::size_t mDepth = 0;
};

// Parses the properties of a text, from behind its header. The pair must be allowed. Throws and returns as Parse does.
template <class Handler>
std::wstring_view ParseText(std::wstring_view iText, const DelimiterPair& iPair, Handler& oHandler)
{
    if (RowCutter::MayCut(iText, iPair.mBegin, iPair.mEnd))
    {
        return TextParser(RowCutter(iText, iPair.mBegin, iPair.mEnd), oHandler).Parse();
    }
    if (AreShortDelimiters(iPair.mBegin, iPair.mEnd))
    {
        return TextParser(ShortCutter(iText, iPair.mBegin, iPair.mEnd), oHandler).Parse();
    }
    return TextParser(LongCutter(iText, iPair.mBegin, iPair.mEnd), oHandler).Parse();
}

// What follows a header that ends at a position. One whose closing delimiter is cut off ends behind the text.
inline std::wstring_view ContentOf(std::wstring_view iText, unsigned int iPosition) noexcept
{
    return iText.substr(iPosition < iText.size() ? iPosition : iText.size());
}

} // namespace QTalBase

#endif
