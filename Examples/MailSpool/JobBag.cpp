#include "JobBag.h"

#include "Errors.h"
#include "Escapes.h"
#include "MailAddress.h"

#include "QBase/Convert.h"

#include <map>

namespace MailSpool
{

namespace
{

constexpr wchar_t gDateName[] = L"Date";
constexpr wchar_t gMessageIdName[] = L"Message-ID";
constexpr wchar_t gMboxLineName[] = L"MboxLine";
constexpr wchar_t gHeaderCharsetName[] = L"HeaderCharset";
constexpr wchar_t gBodyCharsetName[] = L"BodyCharset";
constexpr wchar_t gLineEndingName[] = L"LineEnding";
constexpr wchar_t gBodyName[] = L"Body";
constexpr wchar_t gHeaderName[] = L"Header";

void SetText(QTalBase::PropertyBag& oBag, const std::wstring& iName, std::wstring_view iValue)
{
    oBag.SetProperty(iName.c_str(), EscapeValue(iValue).c_str(), false);
}

std::wstring_view GetFieldValue(const MailMessage& iMessage, std::wstring_view iName)
{
    const HeaderField* lField = FindField(iMessage, iName);
    return lField != nullptr ? std::wstring_view(lField->mValue) : std::wstring_view();
}

// A bag holds a name once, so a repeated field gets a number. No field name holds a blank, so no number is mistaken for
// a part of one. Field names are the same in any case, hence the count by lower case.
BagPtr MakeHeaderBag(const std::vector<HeaderField>& iFields)
{
    BagPtr lHeader(QTalBase::CreatePropertyBag());
    std::map<std::wstring, unsigned int> lCounts;
    for (const HeaderField& lField : iFields)
    {
        const unsigned int lCount = ++lCounts[ToLower(lField.mName)];
        std::wstring lName = EscapeName(lField.mName);
        if (lCount > 1)
        {
            lName += L' ' + std::to_wstring(lCount);
        }
        SetText(*lHeader, lName, lField.mValue);
    }
    return lHeader;
}

std::vector<HeaderField> GetFields(const QTalBase::PropertyBag& iHeader)
{
    std::vector<HeaderField> lFields;
    for (unsigned int lIndex = 0; lIndex < iHeader.GetCount(); ++lIndex)
    {
        const std::wstring lName(iHeader.GetName(lIndex));
        lFields.push_back({Unescape(lName.substr(0, lName.find(L' '))), GetText(iHeader, lName.c_str())});
    }
    return lFields;
}

BagPtr MakeTransportBag(const std::wstring& iRecipient, const JobSettings& iSettings)
{
    BagPtr lTransport(QTalBase::CreatePropertyBag());
    SetText(*lTransport, gProtocolName, L"ftp");
    SetText(*lTransport, gHostName, GetDomain(iRecipient));
    SetText(*lTransport, gPortName, QBase::ToDecimalWString(21));
    SetText(*lTransport, L"FTPServerUser", iSettings.mUser);
    SetText(*lTransport, L"FTPServerPassword", iSettings.mPassword);
    return lTransport;
}

void CheckEmbedded(const QTalBase::PropertyBag& iJob, const wchar_t* ipName)
{
    if (!iJob.IsPropertyEmbedded(ipName))
    {
        throw DamageError("the job is not complete: there is no " + ToUtf8(ipName));
    }
}

} // namespace

BagPtr MakeJobBag(const MailMessage& iMessage, const JobSettings& iSettings)
{
    const std::wstring lRecipient = GetRecipient(iMessage);
    BagPtr lJob(QTalBase::CreatePropertyBag());
    SetText(*lJob, gSenderName, GetSender(iMessage));
    SetText(*lJob, gRecipientName, lRecipient);
    SetText(*lJob, gSubjectName, GetFieldValue(iMessage, gSubjectName));
    SetText(*lJob, gDateName, GetFieldValue(iMessage, gDateName));
    SetText(*lJob, gMessageIdName, GetFieldValue(iMessage, gMessageIdName));
    SetText(*lJob, gSizeName, QBase::ToDecimalWString(static_cast<int>(iMessage.mSize)));
    SetText(*lJob, gSourceName, iSettings.mSource);
    SetText(*lJob, gQueuedName, iSettings.mQueued.ToWString());
    SetText(*lJob, gAttemptsName, QBase::ToDecimalWString(0));
    SetText(*lJob, gMboxLineName, iMessage.mMboxLine);
    SetText(*lJob, gHeaderCharsetName, GetCharsetName(iMessage.mHeaderCharset));
    SetText(*lJob, gBodyCharsetName, GetCharsetName(iMessage.mBodyCharset));
    SetText(*lJob, gLineEndingName, GetLineEndingName(iMessage.mLineEnding));
    SetText(*lJob, gBodyName, iMessage.mBody);
    lJob->EmbedProperty(gHeaderName, MakeHeaderBag(iMessage.mFields).get());
    lJob->EmbedProperty(gTransportName, MakeTransportBag(lRecipient, iSettings).get());
    return lJob;
}

MailMessage GetMessage(const QTalBase::PropertyBag& iJob)
{
    CheckJob(iJob);
    MailMessage lMessage;
    lMessage.mMboxLine = GetText(iJob, gMboxLineName);
    lMessage.mFields = GetFields(*iJob.GetPropertyBag(gHeaderName));
    lMessage.mBody = GetText(iJob, gBodyName);
    lMessage.mHeaderCharset = GetCharsetByName(GetText(iJob, gHeaderCharsetName));
    lMessage.mBodyCharset = GetCharsetByName(GetText(iJob, gBodyCharsetName));
    lMessage.mLineEnding = GetLineEndingByName(GetText(iJob, gLineEndingName));
    lMessage.mSize = static_cast<std::size_t>(QBase::DecimalToInt(GetText(iJob, gSizeName).c_str()));
    return lMessage;
}

const std::vector<const wchar_t*>& GetMessagePropertyNames()
{
    static const std::vector<const wchar_t*> lNames = {
        gSenderName, gRecipientName, gSubjectName,       gDateName,        gMessageIdName,  gSizeName,
        gSourceName, gMboxLineName,  gHeaderCharsetName, gBodyCharsetName, gLineEndingName, gBodyName};
    return lNames;
}

std::wstring GetText(const QTalBase::PropertyBag& iBag, const wchar_t* ipName)
{
    return Unescape(iBag.GetProperty(ipName));
}

void CheckJob(const QTalBase::PropertyBag& iJob)
{
    std::vector<const wchar_t*> lNames = GetMessagePropertyNames();
    lNames.insert(lNames.end(), {gQueuedName, gAttemptsName});
    for (const wchar_t* lName : lNames)
    {
        // An empty value is kept as an escape, so what reads as empty is missing.
        if (iJob.IsPropertyEmbedded(lName) || iJob.GetProperty(lName).GetLength() == 0)
        {
            throw DamageError("the job is not complete: there is no " + ToUtf8(lName));
        }
    }
    CheckEmbedded(iJob, gHeaderName);
    CheckEmbedded(iJob, gTransportName);
}

} // namespace MailSpool
