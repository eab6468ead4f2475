#include "MailAddress.h"

#include <initializer_list>

namespace MailSpool
{

namespace
{

// Reads an address list up to the end of its first address. Quoted texts are copied with their quotes, comments are
// left out; both may hold any of the characters that otherwise have a meaning.
class AddressReader
{
public:
    std::wstring Read(std::wstring_view iList)
    {
        for (std::size_t lAt = 0; lAt < iList.size() && !mIsDone; ++lAt)
        {
            const wchar_t lCharacter = iList[lAt];
            const bool lIsPair = lCharacter == L'\\' && lAt + 1 < iList.size() && (mIsQuoted || mCommentDepth > 0);
            if (lIsPair)
            {
                ++lAt;
                Copy(lCharacter);
                Copy(iList[lAt]);
            }
            else
            {
                Take(lCharacter);
            }
        }
        const std::size_t lFirst = mText.find_first_not_of(L" \t\r\n");
        return lFirst == mText.npos ? std::wstring()
                                    : mText.substr(lFirst, mText.find_last_not_of(L" \t\r\n") - lFirst + 1);
    }

private:
    bool IsBlank() const
    {
        return mText.find_first_not_of(L" \t") == mText.npos;
    }

    void Copy(wchar_t iCharacter)
    {
        if (mCommentDepth == 0)
        {
            mText += iCharacter;
        }
    }

    void Take(wchar_t iCharacter)
    {
        if (mCommentDepth > 0)
        {
            mCommentDepth += iCharacter == L'(' ? 1 : (iCharacter == L')' ? -1 : 0);
        }
        else if (iCharacter == L'"')
        {
            mIsQuoted = !mIsQuoted;
            mText += iCharacter;
        }
        else if (mIsQuoted || mIsLiteral)
        {
            mIsLiteral = mIsLiteral && iCharacter != L']';
            mText += iCharacter;
        }
        else
        {
            TakePlain(iCharacter);
        }
    }

    void TakePlain(wchar_t iCharacter)
    {
        switch (iCharacter)
        {
        case L'(':
            mCommentDepth = 1;
            break;
        case L'<': // what was before is the display name
            mText.clear();
            mIsInAngles = true;
            break;
        case L'>':
            mIsDone = mIsInAngles;
            mText = mIsInAngles && IsBlank() ? L"<>" : mText;
            break;
        case L'[': // an address of the network in place of a domain
            mIsLiteral = true;
            mText += iCharacter;
            break;
        case L':': // the end of a group's name, or, in angles, of a source route
            mText.clear();
            break;
        case L',':
        case L';':
            mIsDone = !mIsInAngles && !IsBlank();
            mText += mIsDone ? L"" : L" ";
            break;
        default:
            mText += iCharacter;
        }
    }

    std::wstring mText;
    int mCommentDepth = 0;
    bool mIsQuoted = false;
    bool mIsLiteral = false;
    bool mIsInAngles = false;
    bool mIsDone = false;
};

std::wstring GetFirstOf(const MailMessage& iMessage, std::initializer_list<const wchar_t*> iNames)
{
    for (const wchar_t* lName : iNames)
    {
        const HeaderField* lField = FindField(iMessage, lName);
        std::wstring lAddress = lField != nullptr ? GetFirstAddress(lField->mValue) : std::wstring();
        if (!lAddress.empty())
        {
            return lAddress;
        }
    }
    return {};
}

// "From ann@example.org  Sat Nov 21 02:49:00 2026": the word between the first blanks.
std::wstring GetMboxSender(std::wstring_view iMboxLine)
{
    const std::size_t lFirst = iMboxLine.find_first_not_of(L' ', 4);
    if (iMboxLine.size() < 5 || lFirst == iMboxLine.npos)
    {
        return {};
    }
    return std::wstring(iMboxLine.substr(lFirst, iMboxLine.find(L' ', lFirst) - lFirst));
}

} // namespace

std::wstring GetFirstAddress(std::wstring_view iAddressList)
{
    return AddressReader().Read(iAddressList);
}

std::wstring GetSender(const MailMessage& iMessage)
{
    std::wstring lSender = GetFirstOf(iMessage, {L"Return-Path"});
    if (lSender.empty())
    {
        lSender = GetMboxSender(iMessage.mMboxLine);
    }
    return !lSender.empty() ? lSender : GetFirstOf(iMessage, {L"From", L"Sender"});
}

std::wstring GetRecipient(const MailMessage& iMessage)
{
    return GetFirstOf(iMessage, {L"Delivered-To", L"X-Original-To", L"To", L"Cc", L"Bcc"});
}

std::wstring GetDomain(std::wstring_view iAddress)
{
    const std::size_t lAt = iAddress.rfind(L'@');
    const std::wstring lDomain = lAt == iAddress.npos ? std::wstring() : ToLower(iAddress.substr(lAt + 1));
    return lDomain.empty() ? L"localhost" : lDomain;
}

} // namespace MailSpool
