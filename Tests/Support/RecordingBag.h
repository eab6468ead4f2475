// An overrider as a client may write one: a bag of the library's own class that notes every virtual call and then does
// what the library does.

#ifndef TESTS_SUPPORT_RECORDINGBAG_H
#define TESTS_SUPPORT_RECORDINGBAG_H

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/CallLog.h"

namespace Support
{

class RecordingBag : public QTalBase::PropertyBagImpl
{
public:
    using Base = QTalBase::PropertyBagImpl;

    explicit RecordingBag(CallLog& oLog, const wchar_t* ipObject = L"bag") : mRecorder(oLog, ipObject) {}

    RecordingBag(CallLog& oLog, const wchar_t* ipObject, const wchar_t* ipBegin, const wchar_t* ipEnd)
        : Base(ipBegin, ipEnd), mRecorder(oLog, ipObject)
    {
    }

    void Serialize(QSerialization::WriteDataStream& iStream) const override
    {
        mRecorder.Call(L"Serialize");
        Base::Serialize(iStream);
    }

    void DeSerialize(QSerialization::ReadDataStream& iStream) override
    {
        mRecorder.Call(L"DeSerialize");
        Base::DeSerialize(iStream);
    }

    void SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag) override
    {
        mRecorder.Call(L"SetProperty", ipName, ipValue, iIsPropertyBag);
        Base::SetProperty(ipName, ipValue, iIsPropertyBag);
    }

    void EmbedProperty(const wchar_t* ipName, const QTalBase::PropertyBag* ipPropertyBag) override
    {
        mRecorder.Call(L"EmbedProperty", ipName);
        Base::EmbedProperty(ipName, ipPropertyBag);
    }

    void RemoveProperty(const wchar_t* ipName) override
    {
        mRecorder.Call(L"RemoveProperty", ipName);
        Base::RemoveProperty(ipName);
    }

    QBase::ReturnWString GetProperty(const wchar_t* ipName) const override
    {
        mRecorder.Call(L"GetProperty", ipName);
        return Base::GetProperty(ipName);
    }

    bool IsPropertyEmbedded(const wchar_t* ipName) const override
    {
        mRecorder.Call(L"IsPropertyEmbedded", ipName);
        return Base::IsPropertyEmbedded(ipName);
    }

    QBase::SmartPtrI<QTalBase::PropertyBag> GetPropertyBag(const wchar_t* ipName) const override
    {
        mRecorder.Call(L"GetPropertyBag", ipName);
        return Base::GetPropertyBag(ipName);
    }

    unsigned int GetCount() const override
    {
        mRecorder.Call(L"GetCount");
        return Base::GetCount();
    }

    QBase::ReturnWString GetName(unsigned int iIndex) const override
    {
        mRecorder.Call(L"GetName", iIndex);
        return Base::GetName(iIndex);
    }

    QBase::ReturnWString GetValue(unsigned int iIndex) const override
    {
        mRecorder.Call(L"GetValue", iIndex);
        return Base::GetValue(iIndex);
    }

    bool IsEmbedded(unsigned int iIndex) const override
    {
        mRecorder.Call(L"IsEmbedded", iIndex);
        return Base::IsEmbedded(iIndex);
    }

    QBase::SmartPtrI<QTalBase::PropertyBag> GetValuePropertyBag(unsigned int iIndex) const override
    {
        mRecorder.Call(L"GetValuePropertyBag", iIndex);
        return Base::GetValuePropertyBag(iIndex);
    }

    void AddString(const wchar_t* ipString) override
    {
        mRecorder.Call(L"AddString", ipString);
        Base::AddString(ipString);
    }

    void AddPropertyBag(const QTalBase::PropertyBag* ipPropertyBag) override
    {
        mRecorder.Call(L"AddPropertyBag");
        Base::AddPropertyBag(ipPropertyBag);
    }

    QBase::ReturnWString GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                   bool iWithSensitiveInfo) const override
    {
        mRecorder.Call(L"GetString", iWithMetadata, ipBegin, ipEnd, iWithSensitiveInfo);
        return Base::GetString(iWithMetadata, ipBegin, ipEnd, iWithSensitiveInfo);
    }

    QBase::ReturnWString GetStringWithoutSensitiveInfo(bool iWithMetadata, const wchar_t* ipBegin,
                                                       const wchar_t* ipEnd) const override
    {
        mRecorder.Call(L"GetStringWithoutSensitiveInfo", iWithMetadata, ipBegin, ipEnd);
        return Base::GetStringWithoutSensitiveInfo(iWithMetadata, ipBegin, ipEnd);
    }

    bool operator==(const QTalBase::PropertyBag& iOther) const override
    {
        mRecorder.Call(L"operator==");
        return Base::operator==(iOther);
    }

    bool IsSubset(const QTalBase::PropertyBag* ipSubset) const override
    {
        mRecorder.Call(L"IsSubset");
        return Base::IsSubset(ipSubset);
    }

    void ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd) override
    {
        mRecorder.Call(L"ChangeDelimiters", ipBegin, ipEnd);
        Base::ChangeDelimiters(ipBegin, ipEnd);
    }

    const wchar_t* GetBeginDelimiter() const override
    {
        mRecorder.Call(L"GetBeginDelimiter");
        return Base::GetBeginDelimiter();
    }

    const wchar_t* GetEndDelimiter() const override
    {
        mRecorder.Call(L"GetEndDelimiter");
        return Base::GetEndDelimiter();
    }

    QTalBase::PropertyBag* Clone() const override
    {
        mRecorder.Call(L"Clone");
        return Base::Clone();
    }

    QTalBase::PropertyBag* FilteredClone(const QDataType::StringCollection* ipFilter) const override
    {
        mRecorder.Call(L"FilteredClone");
        return Base::FilteredClone(ipFilter);
    }

    void MoveProperty(const wchar_t* ipName, unsigned int iIndex) override
    {
        mRecorder.Call(L"MoveProperty", ipName, iIndex);
        Base::MoveProperty(ipName, iIndex);
    }

    void RemovePropertyInValueContent(const wchar_t* ipName) noexcept override
    {
        mRecorder.Call(L"RemovePropertyInValueContent", ipName);
        Base::RemovePropertyInValueContent(ipName);
    }

    void RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept override
    {
        mRecorder.Call(L"RemovePropertyInEmbeddedContent", ipName);
        Base::RemovePropertyInEmbeddedContent(ipName);
    }

private:
    Recorder mRecorder;
};

} // namespace Support

#endif
