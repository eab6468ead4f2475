#include "Compare.h"

#include <algorithm>
#include <cwchar>

namespace MailSpool
{

namespace
{

using Texts = std::vector<std::wstring>;

void CompareProperties(const QTalBase::PropertyBag& iFresh, const QTalBase::PropertyBag& iStored, Texts& oDifferences)
{
    for (const wchar_t* lName : GetMessagePropertyNames())
    {
        if (GetText(iFresh, lName) != GetText(iStored, lName))
        {
            oDifferences.push_back(std::wstring(L"the property ") + lName);
        }
    }
}

void CompareFields(const std::vector<HeaderField>& iFresh, const std::vector<HeaderField>& iStored, Texts& oDifferences)
{
    for (std::size_t lIndex = 0; lIndex < std::min(iFresh.size(), iStored.size()); ++lIndex)
    {
        const HeaderField& lFresh = iFresh[lIndex];
        const HeaderField& lStored = iStored[lIndex];
        if (lFresh.mName != lStored.mName || lFresh.mValue != lStored.mValue)
        {
            oDifferences.push_back(L"header field " + std::to_wstring(lIndex + 1) + L", " + lFresh.mName);
        }
    }
    if (iFresh.size() != iStored.size())
    {
        oDifferences.push_back(L"the number of header fields: " + std::to_wstring(iFresh.size()) + L" in the file, " +
                               std::to_wstring(iStored.size()) + L" in the job");
    }
}

// On bytes, not on characters: it is the bytes that are sent on.
void CompareBodies(const MailMessage& iFresh, const MailMessage& iStored, Texts& oDifferences)
{
    const std::string lFresh = EncodeText(iFresh.mBody, iFresh.mBodyCharset);
    const std::string lStored = EncodeText(iStored.mBody, iStored.mBodyCharset);
    if (lFresh != lStored)
    {
        const auto lPlaces = std::mismatch(lFresh.begin(), lFresh.end(), lStored.begin(), lStored.end());
        oDifferences.push_back(L"the body, from byte " + std::to_wstring(lPlaces.first - lFresh.begin()));
    }
}

// Not with operator==: it reads its own side as stored and the other side unescaped, so a bag with a '*' or a '+' in
// any value, and hardly a message is without one, is unequal even to itself. IsSubset reads both sides alike, but it
// answers for one direction only, and takes a missing name for the empty text; no value of a job is empty, so asked
// both ways it tells whether the bags hold the same.
bool HoldTheSame(const QTalBase::PropertyBag& iFirst, const QTalBase::PropertyBag& iSecond)
{
    return iFirst.IsSubset(&iSecond) && iSecond.IsSubset(&iFirst);
}

} // namespace

Texts FindDifferences(const QTalBase::PropertyBag& iFresh, const MailMessage& iFreshMessage,
                      const QTalBase::PropertyBag& iStored)
{
    Texts lDifferences;
    const MailMessage lStored = GetMessage(iStored);
    if (!HoldTheSame(*MakeMessageBag(iFresh), *MakeMessageBag(iStored)))
    {
        CompareProperties(iFresh, iStored, lDifferences);
        lDifferences.push_back(L"the bag of the message");
    }
    CompareFields(iFreshMessage.mFields, lStored.mFields, lDifferences);
    CompareBodies(iFreshMessage, lStored, lDifferences);
    return lDifferences;
}

} // namespace MailSpool
