// An ordered bag of named wide-string properties, in which a value is either a plain wide string or a nested bag, with
// a self-describing delimited text form. Services keep their jobs, settings and routes in bags, hand them to each other
// as text and store them in binary streams.
//
// Ownership. A factory or Clone returns a new bag with reference count 0; the first QBase::SmartPtrI takes the first
// reference, and the bag deletes itself when the last one is dropped. A bag holds one reference on each nested bag.
//
// Positions. A bag keeps its plain properties and its nested bags in two sequences, each in order of insertion. A
// position counts the plain properties first and then the nested bags, from 0; the order between the two kinds is not
// kept.
//
// Time. Operations on whole bags and texts take time that grows linearly with what goes in and comes out, at any depth
// of nesting, and no stack for it; single look-ups scan. Docs/Limits.md names the exceptions: delimiters that no header
// can carry, and classes of your own, which are asked call by call.
//
// Names are compared exactly, case-sensitively. Setting or embedding a name first removes what bore it, so it occurs
// once, and moves to the end of its sequence. Look-ups are linear scans and take the first match.
//
// Errors. What is thrown is QBase::ExceptionImpl of the class named here; its text is given to the character, its
// domain is QBase::MESSAGE_DOMAIN_UNKNOWN and its ID -1. std::bad_alloc may come from everything that returns or keeps
// a text. Unless an operation says otherwise, a failure leaves the bag unchanged.
//
// Threads. References may be taken and dropped from any thread. Const operations may run at the same time on one bag;
// a bag (and so a nested bag that a clone shares) must not be changed while another thread uses it.
//
// Arguments may point into the bag's own storage (its own delimiters, for example) and work as if copied first.

#ifndef TALBASE_PROPERTYBAG_H
#define TALBASE_PROPERTYBAG_H

#include "QBase/Message.h"
#include "QBase/ReferenceCounted.h"
#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "QSerialization/DataStream.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"

namespace QDataType
{
class StringCollection;
}

// The default begin and end delimiter: modifiable pointers to "++++" and "***". The library reads them at the moment of
// use: when a bag is created without delimiters, unchecked, and when a value is set or read by name, to decide whether
// the bag uses the defaults and its values are escaped. Re-pointing them changes no existing bag's delimiters. Do it
// before other threads use bags; the texts must outlive their use.
extern TALBASE_EXPORT const wchar_t* BEGIN;
extern TALBASE_EXPORT const wchar_t* END;

namespace QTalBase
{

// A bad text form, or a clash between delimiters, names and values.
class TALBASE_EXPORT PropertyBagException : public QBase::Message
{
public:
    explicit PropertyBagException(const QBase::Message& iMessage);
    PropertyBagException(const PropertyBagException&) = default;
    PropertyBagException& operator=(const PropertyBagException&) = default;
    ~PropertyBagException() override;
};

// A mistake of the caller: a null argument, a missing name, a position out of range.
class TALBASE_EXPORT PropertyBagUserErrorException : public PropertyBagException
{
public:
    explicit PropertyBagUserErrorException(const QBase::Message& iMessage);
    PropertyBagUserErrorException(const PropertyBagUserErrorException&) = default;
    PropertyBagUserErrorException& operator=(const PropertyBagUserErrorException&) = default;
    ~PropertyBagUserErrorException() override;
};

// Serialize (from QSerialization::SerializableObject) writes three wide strings: the begin delimiter, the end
// delimiter, and GetString(true, nullptr, nullptr, true), sensitive properties included. The text is rendered first, so
// nothing has been written when rendering throws. DeSerialize reads the three, takes the delimiters as they are,
// unchecked, and then calls AddString with the text: it keeps what the bag holds already. When it fails, the delimiters
// read so far stay assigned and the properties are as AddString leaves them. What the stream throws passes on.
class TALBASE_EXPORT PropertyBag : public virtual QSerialization::SerializableObject,
                                   public virtual QBase::ReferenceCounted
{
public:
    ~PropertyBag() override;

    // Sets a property, replacing what bears the name, at the end of its sequence. The empty value only removes.
    //
    // iIsPropertyBag false: a plain value. While the bag's delimiters equal the texts at BEGIN and END, '*' is stored
    // as "&#42;" and '+' as "&#43;"; nothing else is escaped, so a value that already holds such a sequence comes back
    // unescaped. iIsPropertyBag true: ipValue is a text form (see AddString), read into a new nested bag that has this
    // bag's delimiters.
    //
    // Throws, checked in this order, the bag unchanged:
    //   PropertyBagUserErrorException "QTalBase::PropertyBagImpl::SetProperty; ipName may not be NULL"
    //   PropertyBagException "QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters"
    //   PropertyBagUserErrorException "QTalBase::PropertyBagImpl::SetProperty; ipValue may not be NULL"
    //   PropertyBagException "QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: "
    //     + value + ", begin delimiter: " + begin + ", end delimiter: " + end (plain values only)
    // and, with iIsPropertyBag true, what AddString throws and, for delimiters that came unchecked, from a stream or
    // from BEGIN and END, what ChangeDelimiters throws: the old property of that name is then gone and nothing is
    // added.
    virtual void SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag) = 0;

    // Embeds a copy of a bag under a name: renders it with this bag's delimiters, sensitive properties included, and
    // sets that text as a nested bag. Later changes to *ipPropertyBag do not reach the copy. ipPropertyBag may not be
    // null. Throws what GetString and SetProperty throw (rendering comes before the name is checked).
    virtual void EmbedProperty(const wchar_t* ipName, const PropertyBag* ipPropertyBag) = 0;

    // Removes the first plain property and the first nested bag of that name. A null or unknown name does nothing.
    virtual void RemoveProperty(const wchar_t* ipName) = 0;

    // Returns the plain value of that name, unescaped while the bag's delimiters equal the texts at BEGIN and END; else
    // the nested bag's GetString(true, nullptr, nullptr, true); else, when the name is unknown, the empty text. ipName
    // may not be null. Throws what that GetString throws.
    virtual QBase::ReturnWString GetProperty(const wchar_t* ipName) const = 0;

    // Returns whether a nested bag has that name. ipName may not be null.
    virtual bool IsPropertyEmbedded(const wchar_t* ipName) const = 0;

    // Returns the nested bag of that name itself, not a copy, with a reference for the caller: it outlives this bag
    // while the caller holds it, and changing it changes this bag. ipName may not be null. Throws
    // PropertyBagUserErrorException "QTalBase::PropertyBagImpl::GetPropertyBag; ipName is not embedded" for a plain
    // property and "QTalBase::PropertyBagImpl::GetPropertyBag; ipName does not exist" for an unknown name.
    virtual QBase::SmartPtrI<PropertyBag> GetPropertyBag(const wchar_t* ipName) const = 0;

    // Returns the number of plain properties and nested bags together.
    virtual unsigned int GetCount() const = 0;

    // Returns the name at a position. Throws PropertyBagUserErrorException
    // "QTalBase::PropertyBagImpl::GetName; iIndex is out of range" where there is no entry.
    virtual QBase::ReturnWString GetName(unsigned int iIndex) const = 0;

    // Returns the plain value at a position as it is stored (escaped), or a nested bag's
    // GetString(true, nullptr, nullptr, true). Throws PropertyBagUserErrorException
    // "QTalBase::PropertyBagImpl::GetValue; iIndex is out of range" where there is no entry, and what that GetString
    // throws.
    virtual QBase::ReturnWString GetValue(unsigned int iIndex) const = 0;

    // Returns whether the position belongs to the nested bags. The position equal to the count answers true. Above it
    // throws PropertyBagUserErrorException "QTalBase::PropertyBagImpl::GetValue; iIndex is out of range" (sic).
    virtual bool IsEmbedded(unsigned int iIndex) const = 0;

    // Returns the nested bag at a position itself, with a reference for the caller. Throws
    // PropertyBagUserErrorException "QTalBase::PropertyBagImpl::GetPropertyBag; iIndex is out of range" (sic) where
    // there is no entry and "QTalBase::PropertyBagImpl::GetPropertyBag; Value at iIndex is not Embedded" for a plain
    // property.
    virtual QBase::SmartPtrI<PropertyBag> GetValuePropertyBag(unsigned int iIndex) const = 0;

    // Reads a text form and merges its properties into this bag, as AddPropertyBag does. With a header the text is read
    // with the header's delimiters, without one with this bag's; this bag keeps its own. ipString may not be null.
    // Accepted silently: text after the last delimiter (ignored), a property with an empty value (nothing is set), a
    // nested bag without properties (dropped, except directly in this bag where its own empty nests left it so),
    // repeated names (the last one counts).
    //
    // Throws PropertyBagException with one of the texts
    //   "QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. It must contain BeginDelimiter"
    //   "QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. EndDelimiter cannot be empty"
    //   "QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. BeginDelimiter cannot be empty"
    //   "QTalBase::PropertyBagImpl::GetNextToken; A token was expected"
    //   "QTalBase::PropertyBagImpl::ExtractData; A string token was expected"
    //   "QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected"
    //   "QTalBase::PropertyBagImpl::ExtractData; A mEnd token was expected"
    // or what ChangeDelimiters throws for the delimiters that the text is read with, or std::out_of_range for a header
    // that ends too early; this bag is then exactly as it was. What SetProperty throws while the properties are merged
    // (a name or value holding this bag's delimiters) leaves merged what came before.
    virtual void AddString(const wchar_t* ipString) = 0;

    // Merges a bag into this one: SetProperty of each of its properties in order of position, plain values as stored,
    // nested bags as text. Properties of equal name are replaced and move to the end, all others stay. ipPropertyBag
    // may not be null and may be any implementation of the interface. Throws what its operations and SetProperty throw;
    // what came before the failure stays merged.
    virtual void AddPropertyBag(const PropertyBag* ipPropertyBag) = 0;

    // Returns the text form: with iWithMetadata a header that names the delimiters, then every plain property, then
    // every nested bag. ipBegin, ipEnd: the delimiters to write with at every level, null for each bag's own; stored
    // texts are written as they are, so a foreign delimiter that occurs in one makes the text unreadable.
    // iWithSensitiveInfo false leaves out this bag's own plain properties named "FTPServerPassword"; nested bags are
    // ALWAYS written whole. Throws, checked in this order, nothing written:
    //   PropertyBagUserErrorException "QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty"
    //   PropertyBagUserErrorException "QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty"
    //   PropertyBagException "QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal"
    //   PropertyBagException "QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not contain End"
    //   PropertyBagException "QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin"
    virtual QBase::ReturnWString GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                           bool iWithSensitiveInfo) const = 0;

    // Returns GetString(iWithMetadata, ipBegin, ipEnd, false).
    virtual QBase::ReturnWString GetStringWithoutSensitiveInfo(bool iWithMetadata, const wchar_t* ipBegin,
                                                               const wchar_t* ipEnd) const = 0;

    // Returns whether both bags hold the same properties, whatever their order and their delimiters. This bag's values
    // are read as stored and the other's unescaped, so a bag that holds an escaped value is unequal to itself; a name
    // that the other bag lacks reads as the empty text. Nested bags are compared by the other bag's nested bag. With
    // names that occur twice the answer depends on which side is asked: `a == b` and `a != b` always ask a. Between
    // classes of your own that implement this interface write `a.operator==(b)`. Throws what GetProperty of the other
    // bag throws.
    virtual bool operator==(const PropertyBag& iOther) const = 0;

    // Returns whether every property of the ARGUMENT is found, equal, in this bag: plain values unescaped on both
    // sides, nested bags by IsSubset in turn. A name that this bag lacks reads as the empty text. ipSubset may not be
    // null. What the operations of a class of your own throw passes through, and what rendering a nested bag
    // throws, where a name is both kinds in one of the bags.
    virtual bool IsSubset(const PropertyBag* ipSubset) const = 0;

    // Replaces the delimiters of this bag and of every nested bag at every depth. Stored names and values stay as they
    // are. Neither pointer may be null. Throws what GetString throws for an invalid pair; all bags are then unchanged.
    virtual void ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd) = 0;

    // Return the delimiters. The pointer is valid until the delimiters change or the bag dies.
    virtual const wchar_t* GetBeginDelimiter() const = 0;
    virtual const wchar_t* GetEndDelimiter() const = 0;

    // Returns a new bag, reference count 0, with the same delimiters and properties. The nested bags are SHARED, each
    // with one more reference: a change to one is seen through both. Throws what GetString throws for an invalid pair
    // of this bag, which a stream brings or BEGIN and END; that of a nested bag does not matter.
    virtual PropertyBag* Clone() const = 0;

    // Returns a new bag, reference count 0, with the same delimiters and only the properties that the filter names, in
    // the filter's order. Nested bags are independent copies, made through their text form. Names that this bag lacks
    // and empty values are left out. ipFilter may not be null; a name that it holds twice is applied twice. What a
    // filter of your own, or an overrider, changes while it is asked counts from then on. Throws what SetProperty and
    // EmbedProperty throw, what GetString throws for an invalid pair of this bag, and what a filter of your own throws,
    // for whose count nothing is set aside.
    virtual PropertyBag* FilteredClone(const QDataType::StringCollection* ipFilter) const = 0;

    // Swaps a property with the one at a position of the same kind; nothing is shifted. Does nothing for a null or
    // unknown name, for the property's own position, or for a position of the other kind. A nested bag can only be
    // moved to a position below the number of nested bags. Never throws.
    virtual void MoveProperty(const wchar_t* ipName, unsigned int iIndex) = 0;
};

inline bool operator!=(const PropertyBag& iLeft, const PropertyBag& iRight)
{
    return !iLeft.operator==(iRight);
}

// Creates an empty bag with the delimiters at BEGIN and END, unchecked. Reference count 0.
TALBASE_EXPORT PropertyBag* CreatePropertyBag();

// Creates an empty bag with the given delimiters. Neither may be null. Reference count 0. Throws what
// PropertyBag::GetString throws for an invalid pair.
TALBASE_EXPORT PropertyBag* CreatePropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd);

// Creates a bag from a text form with a header, whose delimiters it takes; the empty text gives an empty bag with
// "++++" and "***". ipString may not be null. Reference count 0. Throws PropertyBagException
// "QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: " + text for a text without a header, and
// what AddString throws.
TALBASE_EXPORT PropertyBag* CreatePropertyBag(const wchar_t* ipString);

} // namespace QTalBase

#endif
