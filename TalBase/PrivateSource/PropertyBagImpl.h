// The implementation of PropertyBag; see TalBase/PropertyBag.h for what it promises.
//
// Where an operation calls another operation, of this bag or of another one, it calls through the virtual table, so a
// derived class sees every call. Only where this bag, or the other one, is exactly a PropertyBagImpl, so that nobody
// can see the calls, is the work done at once: the text form in TextReader and TextWriter, comparisons in BagComparer,
// many settings in BagMerger. Nested bags are always exactly PropertyBagImpl; none of these recurses into them.

#ifndef TALBASE_PRIVATESOURCE_PROPERTYBAGIMPL_H
#define TALBASE_PRIVATESOURCE_PROPERTYBAGIMPL_H

#include "QSynch/AtomicLong.h"
#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/SharedWString.h"
#include "TalBase/PrivateSource/ValueContent.h"
#include "TalBase/PropertyBag.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QTalBase
{

class TextReader;

inline QBase::ReturnWString AsName(std::wstring_view iName)
{
    return {iName.data(), iName.size()};
}

// A position that no entry has: the name is absent.
inline constexpr unsigned int gNotFoundPosition = 0xFFFFFFFF;

class TALBASE_EXPORT PropertyBagImpl : public virtual PropertyBag
{
public:
    PropertyBagImpl();
    PropertyBagImpl(const wchar_t* ipBegin, const wchar_t* ipEnd);
    ~PropertyBagImpl() override;

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
    friend class BagComparer;
    friend class BagIndex;
    friend class BagMerger;
    friend class NestCopier;
    friend class TextChecker;
    friend class TextFaultFinder;
    friend class TextReader;
    friend class TextWriter;
    friend PropertyBag* CreatePropertyBag(const wchar_t* ipString);

    // A short name lies in the entry itself.
    using EmbeddedEntry = std::pair<QBase::ReturnWString, QBase::SmartPtrI<PropertyBagImpl>>;

    // A nested bag, or one whose pair is checked right after: shares its delimiters.
    PropertyBagImpl(const SharedWString& iBegin, const SharedWString& iEnd, bool iAreValid) noexcept;

    // A new bag with a pair that is allowed. Its first reference is stored, not counted: nobody else can see it yet.
    static QBase::SmartPtrI<PropertyBagImpl> hMake(const SharedWString& iBegin, const SharedWString& iEnd);

    // The bag itself where its class is exactly this one, so that no overrider can see what is called; else null.
    static const PropertyBagImpl* hExactly(const PropertyBag& iBag) noexcept;
    bool hIsExact() const noexcept;

    // Only what a derived class overrides can give a bag a name twice, and only a clone carries that on.
    bool hMayRepeatNames() const noexcept
    {
        return mMayRepeatNames || !hIsExact();
    }

    DelimiterPair hPair() const noexcept
    {
        return {mBeginDelimiter.View(), mEndDelimiter.View()};
    }

    bool hIsOwnPair(const DelimiterPair& iPair) const noexcept
    {
        return mBeginDelimiter == iPair.mBegin && mEndDelimiter == iPair.mEnd;
    }

    bool hIsEmpty() const noexcept
    {
        return mValueContent.GetCount() == 0 && mEmbeddedContent.empty();
    }

    void hCheckOwnDelimiters() const;
    void hAcceptOwnDelimiters();
    std::size_t hFindEmbedded(std::wstring_view iName) const noexcept;
    std::wstring hReadValue(std::size_t iIndex) const;
    std::wstring hTextOfNest(const PropertyBagImpl& iNest) const;
    void hCopyNamed(const QDataType::StringCollection& iFilter, PropertyBagImpl& oClone) const;
    void hCopyNamedByCalls(const QDataType::StringCollection& iFilter, PropertyBagImpl& oClone) const;
    void hMergeExact(const PropertyBagImpl& iOther);
    void hFindOutWhetherNamesRepeat();
    void hSetPlain(const wchar_t* ipName, std::wstring_view iValue);
    TextReader hMakeReader(const DelimiterPair& iPair);
    void hAddTextOneByOne(std::wstring_view iText);
    bool hAddText(std::wstring_view iText);
    bool hAddContent(std::wstring_view iText, unsigned int iPosition, const DelimiterPair& iPair);
    void hMergeScratch(const TextReader& iReader, const PropertyBagImpl& iScratch, std::size_t& oEntry);
    QBase::SmartPtrI<PropertyBagImpl> hMakeNested(std::wstring_view iText);
    bool hHolds(const PropertyBagImpl& iBag) const;
    static void hReleaseNests(std::vector<EmbeddedEntry>& iEntries, PropertyBagImpl*& oDying) noexcept;

    SharedWString mBeginDelimiter;
    SharedWString mEndDelimiter;
    ValueContent mValueContent;
    std::vector<EmbeddedEntry> mEmbeddedContent;
    mutable QSynch::AtomicLong mRefCount;
    bool mAreDelimitersValid; // false only says that they have not been checked
    bool mMayRepeatNames = false;
    PropertyBagImpl* mNextDying = nullptr; // links the nests that die with their bag, so that this takes no stack
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
