// Makes a bag from the notation of Support::DescribeContent, {'a'='1' 'n'={'k'='v'}}. Values are set as they stand
// there, and empty bags at every depth are kept.

#ifndef TESTS_CONTRACT_DOCUMENTS_BAGNOTATION_H
#define TESTS_CONTRACT_DOCUMENTS_BAGNOTATION_H

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"

#include <stdexcept>
#include <string>

namespace Documents
{

class BagNotation
{
public:
    explicit BagNotation(const std::wstring& iNotation) : mText(iNotation) {}

    Support::BagBuilder Make(const wchar_t* ipBegin, const wchar_t* ipEnd)
    {
        const Support::BagBuilder lBag = hReadBag(ipBegin, ipEnd);
        if (mPosition != mText.size())
        {
            throw std::runtime_error("something follows the bag");
        }
        return lBag;
    }

private:
    Support::BagBuilder hReadBag(const wchar_t* ipBegin, const wchar_t* ipEnd)
    {
        Support::BagBuilder lBag(ipBegin, ipEnd);
        hExpect(L'{');
        while (hNext() != L'}')
        {
            const std::wstring lName = hReadQuoted();
            hExpect(L'=');
            if (hNext() == L'{')
            {
                lBag.Nest(lName.c_str(), hReadBag(ipBegin, ipEnd));
            }
            else
            {
                lBag.Set(lName.c_str(), hReadQuoted().c_str());
            }
            if (hNext() == L' ')
            {
                ++mPosition;
            }
        }
        hExpect(L'}');
        return lBag;
    }

    std::wstring hReadQuoted()
    {
        hExpect(L'\'');
        const std::size_t lEnd = mText.find(L'\'', mPosition);
        if (lEnd == std::wstring::npos)
        {
            throw std::runtime_error("a quote is not closed");
        }
        const std::wstring lText = mText.substr(mPosition, lEnd - mPosition);
        mPosition = lEnd + 1;
        return lText;
    }

    void hExpect(wchar_t iCharacter)
    {
        if (hNext() != iCharacter)
        {
            throw std::runtime_error("the notation of a bag is broken at character " + std::to_string(mPosition));
        }
        ++mPosition;
    }

    wchar_t hNext() const
    {
        return mPosition < mText.size() ? mText[mPosition] : L'\0';
    }

    std::wstring mText;
    std::size_t mPosition = 0;
};

inline Support::BagPtr MakeBag(const std::wstring& iNotation, const wchar_t* ipBegin = L"++++",
                               const wchar_t* ipEnd = L"***")
{
    return BagNotation(iNotation).Make(ipBegin, ipEnd);
}

} // namespace Documents

#endif
