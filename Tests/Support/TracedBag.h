// A property bag whose life shows: how many references are held on it, when it is cloned and when it dies.

#ifndef TESTS_SUPPORT_TRACEDBAG_H
#define TESTS_SUPPORT_TRACEDBAG_H

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/CallLog.h"

namespace Support
{

// Notes L"name.Clone" and L"name.Dies". Lives on the heap, as every counted object.
class TracedBag : public QTalBase::PropertyBagImpl
{
public:
    TracedBag(CallLog& oLog, const wchar_t* ipName) : mRecorder(oLog, ipName) {}

    ~TracedBag() override
    {
        mRecorder.Call(L"Dies");
    }

    QTalBase::PropertyBag* Clone() const override
    {
        mRecorder.Call(L"Clone");
        return PropertyBagImpl::Clone();
    }

    void AddRef() const noexcept override
    {
        ++mReferences;
        PropertyBagImpl::AddRef();
    }

    void Release() const noexcept override
    {
        --mReferences;
        PropertyBagImpl::Release();
    }

    int GetReferences() const
    {
        return mReferences;
    }

private:
    Recorder mRecorder;
    mutable int mReferences = 0;
};

} // namespace Support

#endif
