#include "JobBag.h"

#include "Errors.h"
#include "Escapes.h"
#include "MailAddress.h"

#include "QDataType/StringCollection.h"
#include "TalBase/PropertyBagHelpers.h"

#include <map>
#include <memory>

namespace MailSpool
{

namespace
{

constexpr wchar_t gDateName[] = L"Date";
constexpr wchar_t gMessageIdName[] = L"Message-ID";
constexpr wchar_t gEightBitName[] = L"EightBit";
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

template <class Value>
void SetValue(QTalBase::PropertyBag& oBag, const wchar_t* ipName, const Value& iValue)
{
    oBag.SetProperty(ipName, QTalBase::Stringize(iValue).c_str(), false);
}

// UnStringize reports no bad text, so the way back has to tell: what does not give the same text again was none.
template <class Value>
Value GetValue(const QTalBase::PropertyBag& iBag, const wchar_t* ipName)
{
    const std::wstring lText(iBag.GetProperty(ipName));
    Value lValue{};
    QTalBase::UnStringize(lText.c_str(), lValue);
    if (std::wstring(QTalBase::Stringize(lValue)) != lText)
    {
        throw DamageError("the job is damaged: '" + ToUtf8(lText) + "' is no value for " + ToUtf8(ipName));
    }
    return lValue;
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

BagPtr MakeTransportBag(const std::wstring& iRoute, const JobSettings& iSettings)
{
    constexpr unsigned short lFtpPort = 21;
    BagPtr lTransport(QTalBase::CreatePropertyBag());
    SetText(*lTransport, gProtocolName, L"ftp");
    SetText(*lTransport, gHostName, iRoute);
    SetValue(*lTransport, gPortName, lFtpPort);
    SetText(*lTransport, L"FTPServerUser", iSettings.mUser);
    SetText(*lTransport, L"FTPServerPassword", iSettings.mPassword);
    return lTransport;
}

void AddMessage(const MailMessage& iMessage, QTalBase::PropertyBag& oJob)
{
    SetText(oJob, gSenderName, GetSender(iMessage));
    SetText(oJob, gRecipientName, GetRecipient(iMessage));
    SetText(oJob, gSubjectName, GetFieldValue(iMessage, gSubjectName));
    SetText(oJob, gDateName, GetFieldValue(iMessage, gDateName));
    SetText(oJob, gMessageIdName, GetFieldValue(iMessage, gMessageIdName));
    SetValue(oJob, gSizeName, static_cast<unsigned int>(iMessage.mSize));
    SetValue(oJob, gEightBitName, iMessage.mIsEightBit);
    SetText(oJob, gMboxLineName, iMessage.mMboxLine);
    SetText(oJob, gHeaderCharsetName, GetCharsetName(iMessage.mHeaderCharset));
    SetText(oJob, gBodyCharsetName, GetCharsetName(iMessage.mBodyCharset));
    SetText(oJob, gLineEndingName, GetLineEndingName(iMessage.mLineEnding));
    SetText(oJob, gBodyName, iMessage.mBody);
    oJob.EmbedProperty(gHeaderName, MakeHeaderBag(iMessage.mFields).get());
}

// The window writes itself into a bag of its own, as one property that bears the route's name; merged, it becomes one
// of the job. A window that is always open writes nothing.
void AddWindow(const std::wstring& iRoute, const QTalBase::DeliveryWindow& iWindow, QTalBase::PropertyBag& oJob)
{
    const BagPtr lWindow(
        iWindow.SerializeToPropertyBag(EscapeName(iRoute).c_str(), oJob.GetBeginDelimiter(), oJob.GetEndDelimiter()));
    oJob.AddPropertyBag(lWindow.get());
}

void CheckEmbedded(const QTalBase::PropertyBag& iJob, const wchar_t* ipName)
{
    if (!iJob.IsPropertyEmbedded(ipName))
    {
        throw DamageError("the job is not complete: there is no " + ToUtf8(ipName));
    }
}

} // namespace

std::wstring GetRoute(const MailMessage& iMessage)
{
    return GetDomain(GetRecipient(iMessage));
}

BagPtr MakeJobBag(const MailMessage& iMessage, const JobSettings& iSettings)
{
    const std::wstring lRoute = GetRoute(iMessage);
    BagPtr lJob(QTalBase::CreatePropertyBag());
    SetValue(*lJob, gJobName, iSettings.mJob);
    SetValue(*lJob, gQueuedName, iSettings.mQueued);
    SetValue(*lJob, gAttemptsName, 0U);
    SetText(*lJob, gSourceName, iSettings.mSource);
    SetText(*lJob, gRouteName, lRoute);
    if (iSettings.mWindow)
    {
        AddWindow(lRoute, *iSettings.mWindow, *lJob);
    }
    AddMessage(iMessage, *lJob);
    lJob->EmbedProperty(gTransportName, MakeTransportBag(lRoute, iSettings).get());
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
    lMessage.mSize = GetValue<unsigned int>(iJob, gSizeName);
    lMessage.mIsEightBit = GetValue<bool>(iJob, gEightBitName);
    return lMessage;
}

WindowPtr GetWindow(const QTalBase::PropertyBag& iJob)
{
    WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DeSerializeFromPropertyBag(EscapeName(GetText(iJob, gRouteName)).c_str(), &iJob);
    return lWindow;
}

const std::vector<const wchar_t*>& GetMessagePropertyNames()
{
    static const std::vector<const wchar_t*> lNames = {
        gSenderName,   gRecipientName, gSubjectName,       gDateName,        gMessageIdName,  gSizeName,
        gEightBitName, gMboxLineName,  gHeaderCharsetName, gBodyCharsetName, gLineEndingName, gBodyName};
    return lNames;
}

BagPtr MakeMessageBag(const QTalBase::PropertyBag& iJob)
{
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (const wchar_t* lName : GetMessagePropertyNames())
    {
        lFilter->Insert(lName);
    }
    lFilter->Insert(gHeaderName);
    return BagPtr(iJob.FilteredClone(lFilter.get()));
}

std::wstring GetText(const QTalBase::PropertyBag& iBag, const wchar_t* ipName)
{
    return Unescape(iBag.GetProperty(ipName));
}

void CheckJob(const QTalBase::PropertyBag& iJob)
{
    std::vector<const wchar_t*> lNames = GetMessagePropertyNames();
    lNames.insert(lNames.end(), {gJobName, gQueuedName, gAttemptsName, gSourceName, gRouteName});
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
    GetValue<_GUID>(iJob, gJobName);
    GetValue<QDataType::DateTime>(iJob, gQueuedName);
    GetValue<unsigned int>(iJob, gAttemptsName);
    GetValue<unsigned int>(iJob, gSizeName);
    GetValue<bool>(iJob, gEightBitName);
    GetWindow(iJob);
}

} // namespace MailSpool
