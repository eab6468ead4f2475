// The plain implementation of PropertyBag: every operation step by step, as simple as it can be and exponential in the
// depth of nesting. The library's own implementation must not differ from it in anything but speed; the differential
// tests and the fuzzers compare the two.

#ifndef TESTS_SUPPORT_PLAINPROPERTYBAG_H
#define TESTS_SUPPORT_PLAINPROPERTYBAG_H

#include "QSynch/AtomicLong.h"
#include "TalBase/PropertyBag.h"

#include <list>
#include <string>
#include <utility>
#include <vector>

namespace Plain
{

using QTalBase::PropertyBag;

// A position that no entry has: the name is absent.
inline constexpr unsigned int gNotFoundPosition = 0xFFFFFFFF;

class PlainPropertyBag : public virtual PropertyBag
{
public:
    PlainPropertyBag();
    PlainPropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd);
    ~PlainPropertyBag() override;

    PlainPropertyBag(const PlainPropertyBag&) = delete;
    PlainPropertyBag& operator=(const PlainPropertyBag&) = delete;

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

    // Remove the first entry of that name from one of the two sequences; null or unknown does nothing. A failure to
    // allocate inside them ends the process.
    virtual void RemovePropertyInValueContent(const wchar_t* ipName) noexcept;
    virtual void RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept;

    void AddRef() const noexcept override;
    void Release() const noexcept override;

    // Return the position, within one of the two sequences, of the first entry of that name, or gNotFoundPosition.
    unsigned int NamePositionInValueContent(const wchar_t* ipName) const;
    unsigned int NamePositionInEmbeddedContent(const wchar_t* ipName) const;

    // Throws for a pair that no bag may have (the texts are in TalBase/PropertyBag.h, at GetString).
    static void CheckValidityOfDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd);

    struct Delimiters
    {
        std::wstring mBegin;
        std::wstring mEnd;
    };

    // Reads the header of a text form. Returns the position at which the content begins, 0 where there is no header;
    // with one, replaces both delimiters. Loose on purpose: both searches are for any character of a set, and 14
    // characters are skipped unseen.
    static unsigned int ExtractDelimiters(const std::wstring& iText, Delimiters& oDelimiters);

protected:
    enum TokenKind : int
    {
        BeginToken,
        EndToken,
        StringToken
    };

    struct Token
    {
        TokenKind mKind;
        std::wstring mText;
    };

    using TokenList = std::list<Token>;

    static Token PeekNextToken(const TokenList& iTokens);
    static Token GetNextToken(TokenList& iTokens);

    // Reads one property from the front of the list into the bag.
    void ExtractData(TokenList& iTokens, PropertyBag* ipPropertyBag) const;

    static QBase::ReturnWString hConvertDelimiters(const wchar_t* ipValue);
    static QBase::ReturnWString hInverseConvertDelimiters(const wchar_t* ipValue);
    static bool IsSensitiveProperty(const std::wstring& iName);

private:
    bool hUsesDefaultDelimiters() const;
    void hExtractNestedBag(TokenList& iTokens, const std::wstring& iName, PropertyBag* ipPropertyBag) const;

    std::wstring mBeginDelimiter;
    std::wstring mEndDelimiter;
    std::vector<std::pair<std::wstring, std::wstring>> mValueContent;
    std::vector<std::pair<std::wstring, QBase::SmartPtrI<PropertyBag>>> mEmbeddedContent;
    mutable QSynch::AtomicLong mRefCount;
};

// The factories of TalBase/PropertyBag.h, for plain bags.
PropertyBag* CreatePlainPropertyBag();
PropertyBag* CreatePlainPropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd);
PropertyBag* CreatePlainPropertyBag(const wchar_t* ipString);

} // namespace Plain

#endif
