// A wide text that many bags share: the delimiters. A stream can bring a delimiter of a million characters and a
// hundred thousand nests that use it, so a bag holds a counted handle and never a copy.
//
// Invariant: the text never changes, is terminated by a zero character, and dies with its last handle. The two default
// delimiters are constants that are never counted, so the usual bag costs no atomic instruction for its delimiters.

#ifndef TALBASE_PRIVATESOURCE_SHAREDWSTRING_H
#define TALBASE_PRIVATESOURCE_SHAREDWSTRING_H

#include "TalBase/PrivateSource/TextPrimitives.h"

#include <atomic>
#include <cstddef>
#include <string_view>
#include <utility>

namespace QTalBase
{

class SharedWString
{
public:
    static constexpr wchar_t gDefaultBegin[] = L"++++";
    static constexpr wchar_t gDefaultEnd[] = L"***";

    explicit SharedWString(std::wstring_view iText);

    SharedWString(const SharedWString& iOther) noexcept : mText(iOther.mText)
    {
        if (mText->mIsCounted)
        {
            mText->mCount.fetch_add(1, std::memory_order_relaxed);
        }
    }

    SharedWString& operator=(SharedWString iOther) noexcept
    {
        std::swap(mText, iOther.mText);
        return *this;
    }

    ~SharedWString()
    {
        if (mText->mIsCounted && mText->mCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            hFree();
        }
    }

    const wchar_t* c_str() const noexcept
    {
        return mText->mCharacters;
    }

    std::wstring_view View() const noexcept
    {
        return {mText->mCharacters, mText->mLength};
    }

    // Whether this is one of the two constants that the default delimiters are.
    bool IsDefaultBegin() const noexcept
    {
        return mText == &gDefaultBeginText;
    }

    bool IsDefaultEnd() const noexcept
    {
        return mText == &gDefaultEndText;
    }

    // Whether both are handles of one text; two texts may be equal all the same.
    bool IsSame(const SharedWString& iOther) const noexcept
    {
        return mText == iOther.mText;
    }

    // The same handle answers without looking at the characters.
    bool operator==(const SharedWString& iOther) const noexcept
    {
        return mText == iOther.mText || AreEqualTexts(View(), iOther.View());
    }

    bool operator==(std::wstring_view iOther) const noexcept
    {
        return AreEqualTexts(View(), iOther);
    }

private:
    struct Text
    {
        const wchar_t* mCharacters;
        std::size_t mLength;
        std::atomic<std::size_t> mCount;
        bool mIsCounted;
    };

    static Text gEmptyText;
    static Text gDefaultBeginText;
    static Text gDefaultEndText;

    static Text* hMake(std::wstring_view iText);
    void hFree() noexcept;

    Text* mText;
};

// Whether nobody needs to look at a pair: it is "++++" and "***", which every bag has by default.
inline bool IsConstantPair(const SharedWString& iBegin, const SharedWString& iEnd) noexcept
{
    return iBegin.IsDefaultBegin() && iEnd.IsDefaultEnd();
}

} // namespace QTalBase

#endif
