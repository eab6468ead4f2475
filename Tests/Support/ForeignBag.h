// A client's own implementation of the bag interface that shares no code with the library's. It keeps one list of
// entries, so a nested bag may stand before a plain value, notes every call, and can be given only by hand: the
// operations that change a bag are not its business and throw std::logic_error.

#ifndef TESTS_SUPPORT_FOREIGNBAG_H
#define TESTS_SUPPORT_FOREIGNBAG_H

#include "TalBase/PropertyBag.h"

#include "Tests/Support/CallLog.h"
#include "Tests/Support/Describe.h"

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

namespace Support
{

class ForeignBag : public virtual QTalBase::PropertyBag
{
public:
    struct Entry
    {
        std::wstring mName;
        std::wstring mValue; // of a nested bag: its text form
        BagPtr mBag;
    };

    explicit ForeignBag(CallLog& oLog, const wchar_t* ipObject = L"other") : mRecorder(oLog, ipObject) {}

    ForeignBag& Set(const wchar_t* ipName, const wchar_t* ipValue)
    {
        mEntries.push_back({ipName, ipValue, nullptr});
        return *this;
    }

    ForeignBag& Nest(const wchar_t* ipName, const BagPtr& iBag)
    {
        mEntries.push_back({ipName, Text(iBag->GetString(true, nullptr, nullptr, true)), iBag});
        return *this;
    }

    // What GetString answers, whatever it is asked.
    ForeignBag& SetText(const wchar_t* ipText)
    {
        mText = ipText;
        return *this;
    }

    std::vector<Entry>& Entries()
    {
        return mEntries;
    }

    void AddRef() const noexcept override
    {
        ++mRefCount;
    }

    void Release() const noexcept override
    {
        if (--mRefCount == 0)
        {
            delete this;
        }
    }

    QBase::ReturnWString GetProperty(const wchar_t* ipName) const override
    {
        mRecorder.Call(L"GetProperty", ipName);
        const Entry* lEntry = hFind(ipName);
        return lEntry == nullptr ? L"" : lEntry->mValue.c_str();
    }

    bool IsPropertyEmbedded(const wchar_t* ipName) const override
    {
        mRecorder.Call(L"IsPropertyEmbedded", ipName);
        const Entry* lEntry = hFind(ipName);
        return lEntry != nullptr && lEntry->mBag != nullptr;
    }

    BagPtr GetPropertyBag(const wchar_t* ipName) const override
    {
        mRecorder.Call(L"GetPropertyBag", ipName);
        return hFind(ipName)->mBag;
    }

    unsigned int GetCount() const override
    {
        mRecorder.Call(L"GetCount");
        return static_cast<unsigned int>(mEntries.size());
    }

    QBase::ReturnWString GetName(unsigned int iIndex) const override
    {
        mRecorder.Call(L"GetName", iIndex);
        return mEntries.at(iIndex).mName.c_str();
    }

    QBase::ReturnWString GetValue(unsigned int iIndex) const override
    {
        mRecorder.Call(L"GetValue", iIndex);
        return mEntries.at(iIndex).mValue.c_str();
    }

    bool IsEmbedded(unsigned int iIndex) const override
    {
        mRecorder.Call(L"IsEmbedded", iIndex);
        return mEntries.at(iIndex).mBag != nullptr;
    }

    BagPtr GetValuePropertyBag(unsigned int iIndex) const override
    {
        mRecorder.Call(L"GetValuePropertyBag", iIndex);
        return mEntries.at(iIndex).mBag;
    }

    QBase::ReturnWString GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                   bool iWithSensitiveInfo) const override
    {
        mRecorder.Call(L"GetString", iWithMetadata, ipBegin, ipEnd, iWithSensitiveInfo);
        return mText.c_str();
    }

    bool operator==(const QTalBase::PropertyBag&) const override
    {
        mRecorder.Call(L"operator==");
        return mEqualAnswer;
    }

    bool IsSubset(const QTalBase::PropertyBag*) const override
    {
        mRecorder.Call(L"IsSubset");
        return mSubsetAnswer;
    }

    void SetEqualAnswer(bool iAnswer)
    {
        mEqualAnswer = iAnswer;
    }

    void SetSubsetAnswer(bool iAnswer)
    {
        mSubsetAnswer = iAnswer;
    }

    const wchar_t* GetBeginDelimiter() const override
    {
        mRecorder.Call(L"GetBeginDelimiter");
        return L"(";
    }

    const wchar_t* GetEndDelimiter() const override
    {
        mRecorder.Call(L"GetEndDelimiter");
        return L")";
    }

    void Serialize(QSerialization::WriteDataStream&) const override
    {
        hRefuse();
    }

    void DeSerialize(QSerialization::ReadDataStream&) override
    {
        hRefuse();
    }

    void SetProperty(const wchar_t*, const wchar_t*, bool) override
    {
        hRefuse();
    }

    void EmbedProperty(const wchar_t*, const QTalBase::PropertyBag*) override
    {
        hRefuse();
    }

    void RemoveProperty(const wchar_t*) override
    {
        hRefuse();
    }

    void AddString(const wchar_t*) override
    {
        hRefuse();
    }

    void AddPropertyBag(const QTalBase::PropertyBag*) override
    {
        hRefuse();
    }

    QBase::ReturnWString GetStringWithoutSensitiveInfo(bool, const wchar_t*, const wchar_t*) const override
    {
        hRefuse();
    }

    void ChangeDelimiters(const wchar_t*, const wchar_t*) override
    {
        hRefuse();
    }

    QTalBase::PropertyBag* Clone() const override
    {
        hRefuse();
    }

    QTalBase::PropertyBag* FilteredClone(const QDataType::StringCollection*) const override
    {
        hRefuse();
    }

    void MoveProperty(const wchar_t*, unsigned int) override
    {
        hRefuse();
    }

private:
    [[noreturn]] static void hRefuse()
    {
        throw std::logic_error("an operation that this bag does not have");
    }

    const Entry* hFind(const wchar_t* ipName) const
    {
        for (const Entry& lEntry : mEntries)
        {
            if (lEntry.mName == ipName)
            {
                return &lEntry;
            }
        }
        return nullptr;
    }

    Recorder mRecorder;
    std::vector<Entry> mEntries;
    std::wstring mText;
    bool mEqualAnswer = false;
    bool mSubsetAnswer = false;
    mutable std::atomic<int> mRefCount{0};
};

} // namespace Support

#endif
