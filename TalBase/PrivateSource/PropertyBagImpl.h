// The implementation of PropertyBag; see TalBase/PropertyBag.h for what it promises.
//
// A class of dispatches. Where an operation calls another operation, of this bag or of another one, it calls through
// the virtual table, so a derived class sees every call: BagByCalls. Only where this bag, or the other one, is exactly
// a PropertyBagImpl, so that nobody can see the calls, is the work done at once, on the states. Nested bags are always
// exactly PropertyBagImpl; nothing recurses into them.

#ifndef TALBASE_PRIVATESOURCE_PROPERTYBAGIMPL_H
#define TALBASE_PRIVATESOURCE_PROPERTYBAGIMPL_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PropertyBag.h"

#include <cstddef>
#include <new>
#include <string_view>

namespace QTalBase
{

// A position that no entry has: the name is absent.
inline constexpr unsigned int gNotFoundPosition = 0xFFFFFFFF;

class TALBASE_EXPORT PropertyBagImpl : public virtual PropertyBag
{
public:
    PropertyBagImpl();
    PropertyBagImpl(const wchar_t* ipBegin, const wchar_t* ipEnd);
    ~PropertyBagImpl() override;

    // Shares its delimiters, which are allowed, or are checked right after.
    PropertyBagImpl(const SharedWString& iBegin, const SharedWString& iEnd, bool iIsPairChecked) noexcept;

    // A bag may be made with so many bytes behind it, so its memory has no size that the class knows.
    struct Behind
    {
        std::size_t mSize;
    };

    static void* operator new(std::size_t iSize)
    {
        return ::operator new(iSize);
    }

    static void* operator new(std::size_t iSize, Behind iBehind)
    {
        return ::operator new(iSize + iBehind.mSize);
    }

    static void* operator new(std::size_t /*iSize*/, void* ipPlace) noexcept
    {
        return ipPlace;
    }

    static void operator delete(void* ipMemory) noexcept
    {
        ::operator delete(ipMemory);
    }

    static void operator delete(void* ipMemory, Behind /*iBehind*/) noexcept
    {
        ::operator delete(ipMemory);
    }

    PropertyBagImpl(const PropertyBagImpl&) = delete;
    PropertyBagImpl& operator=(const PropertyBagImpl&) = delete;

    void Serialize(QSerialization::WriteDataStream& iStream) const override;
    void DeSerialize(QSerialization::ReadDataStream& iStream) override;

    void SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag) override;
    void EmbedProperty(const wchar_t* ipName, const PropertyBag* ipPropertyBag) override;
    void RemoveProperty(const wchar_t* ipName) override;
    QBase::ReturnWString GetProperty(const wchar_t* ipName) const override;
    bool IsPropertyEmbedded(const wchar_t* ipName) const override;
    QBase::SmartPtrI<PropertyBag> GetPropertyBag(const wchar_t* ipName) const override;
    unsigned int GetCount() const override;
    QBase::ReturnWString GetName(unsigned int iIndex) const override;
    QBase::ReturnWString GetValue(unsigned int iIndex) const override;
    bool IsEmbedded(unsigned int iIndex) const override;
    QBase::SmartPtrI<PropertyBag> GetValuePropertyBag(unsigned int iIndex) const override;
    void AddString(const wchar_t* ipString) override;
    void AddPropertyBag(const PropertyBag* ipPropertyBag) override;
    QBase::ReturnWString GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                   bool iWithSensitiveInfo) const override;
    QBase::ReturnWString GetStringWithoutSensitiveInfo(bool iWithMetadata, const wchar_t* ipBegin,
                                                       const wchar_t* ipEnd) const override;
    bool operator==(const PropertyBag& iOther) const override;
    bool IsSubset(const PropertyBag* ipSubset) const override;
    void ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd) override;
    const wchar_t* GetBeginDelimiter() const override;
    const wchar_t* GetEndDelimiter() const override;
    PropertyBag* Clone() const override;
    PropertyBag* FilteredClone(const QDataType::StringCollection* ipFilter) const override;
    void MoveProperty(const wchar_t* ipName, unsigned int iIndex) override;

    // Remove the first entry of that name from one of the two sequences; null or unknown does nothing. Neither
    // allocates.
    virtual void RemovePropertyInValueContent(const wchar_t* ipName) noexcept;
    virtual void RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept;

    void AddRef() const noexcept override;
    void Release() const noexcept override;

    // What everything but the dispatches works on.
    BagState& GetState() noexcept
    {
        return mState;
    }

    const BagState& GetState() const noexcept
    {
        return mState;
    }

    // Return the position, within one of the two sequences, of the first entry of that name, or gNotFoundPosition.
    unsigned int NamePositionInValueContent(const wchar_t* ipName) const;
    unsigned int NamePositionInEmbeddedContent(const wchar_t* ipName) const;

    // Throws for a pair that no bag may have (the texts are in TalBase/PropertyBag.h, at GetString).
    static void CheckValidityOfDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd);

protected:
    static QBase::ReturnWString hConvertDelimiters(const wchar_t* ipValue);
    static QBase::ReturnWString hInverseConvertDelimiters(const wchar_t* ipValue);
    static bool IsSensitiveProperty(std::wstring_view iName);

private:
    bool hIsExact() const noexcept;
    bool hMayRepeatNames() const noexcept;
    void hSetPlain(const wchar_t* ipName, std::wstring_view iValue);

    BagState mState;
};

// The left operand is asked, whatever the language version: without these, C++20 would prefer the reversed candidate of
// `bag == impl` and ask the right one.
inline bool operator==(const PropertyBag& iLeft, const PropertyBagImpl& iRight)
{
    return iLeft.operator==(static_cast<const PropertyBag&>(iRight));
}

inline bool operator==(const PropertyBagImpl& iLeft, const PropertyBagImpl& iRight)
{
    return iLeft.operator==(static_cast<const PropertyBag&>(iRight));
}

} // namespace QTalBase

#endif
