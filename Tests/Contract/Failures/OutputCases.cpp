// The operators that write the library's objects to a std::ostream. They are compiled into their callers, so no table
// of a library names them.

#include "Tests/Contract/Failures/Subjects.h"

#include "TalBase/Output.h"

#include <ostream>
#include <streambuf>

namespace Failures
{

namespace
{

// Keeps a number that stands for everything that is written, and no text, so that all that fails is the library's: a
// stream would keep a failure of its own buffer from its caller.
class NumberingBuffer : public std::streambuf
{
public:
    // Returns 0 where nothing was written.
    unsigned long GetNumber() const
    {
        return mNumber;
    }

protected:
    int_type overflow(int_type iCharacter) override
    {
        hAdd(traits_type::to_char_type(iCharacter));
        return traits_type::not_eof(iCharacter);
    }

    std::streamsize xsputn(const char* ipText, std::streamsize iCount) override
    {
        for (std::streamsize lIndex = 0; lIndex < iCount; ++lIndex)
        {
            hAdd(ipText[lIndex]);
        }
        return iCount;
    }

private:
    void hAdd(char iCharacter)
    {
        mNumber = mNumber * 1000003 + static_cast<unsigned char>(iCharacter) + 1;
    }

    unsigned long mNumber = 0;
};

// A stream, to which nothing may have been written when something failed.
struct StreamSubject
{
    std::wstring See() const
    {
        return std::to_wstring(mBuffer.GetNumber());
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    NumberingBuffer mBuffer;
};

// iHolder: a pointer to what is written.
template <class Holder>
Case Writing(const char* ipOperation, const char* ipSituation, const Holder& iHolder)
{
    return On<StreamSubject>(ipOperation, ipSituation, std::make_unique<StreamSubject>,
                             [iHolder](StreamSubject& oSubject) {
                                 std::ostream lStream(&oSubject.mBuffer);
                                 lStream << *iHolder;
                             });
}

template <class Object>
std::shared_ptr<const Object> Holding(const Object& iObject)
{
    return std::make_shared<const Object>(iObject);
}

BagPtr Deep()
{
    std::wstring lText = L"FTPServerPassword++++secret***" LONG_C L"++++" LONG_V L"\\'\n***";
    for (int lLevel = 0; lLevel < 20; ++lLevel)
    {
        lText.insert(0, L"n++++").append(L"***");
    }
    return Support::ReadBag(Support::gHeader + lText);
}

QBase::SmartPtrI<QTalBase::PropertyBags> SomeBags()
{
    const QBase::SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    lBags->Add(LONG_A, Filled().get());
    lBags->Add(LONG_B, Raw().get());
    return lBags;
}

template <class Strings>
void Insert(Strings& oStrings)
{
    for (const wchar_t* lText : {LONG_A, L"", LONG_V})
    {
        oStrings.Insert(lText);
    }
}

void AddTexts(Cases& oCases)
{
    oCases.push_back(Writing("operator<<(std::ostream&, const ReturnWString&)", "",
                             Holding(QBase::ReturnWString(LONG_V L"\t" LONG_A))));
    oCases.push_back(
        Writing("operator<<(std::ostream&, const ReturnWString&)", "short", Holding(QBase::ReturnWString(L"a")))
            .MayNotAllocate());
    const QBase::SmartPtrI<QTalBase::BufferedWString> lBuffer(QTalBase::CreateBufferedWString());
    *lBuffer += LONG_V L"\x1B" LONG_A;
    oCases.push_back(Writing("operator<<(std::ostream&, const QTalBase::BufferedWString&)", "", lBuffer));
    oCases.push_back(Writing("operator<<(std::ostream&, const _GUID&)", "", Holding(_GUID{1, 2, 3, {4}})));
    QDataType::DateTime lInstant;
    lInstant.FromString("2024-02-29T12:34:56Z");
    oCases.push_back(Writing("operator<<(std::ostream&, const DateTime&)", "", Holding(lInstant)));
}

void AddObjects(Cases& oCases)
{
    const std::shared_ptr<QDataType::StringCollection> lStrings(QDataType::CreateStringCollection());
    Insert(*lStrings);
    oCases.push_back(Writing("operator<<(std::ostream&, const StringCollection&)", "", lStrings));
    const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lSerializable(
        QTalBase::CreateSerializableStringCollection());
    Insert(*lSerializable);
    oCases.push_back(
        Writing("operator<<(std::ostream&, const QTalBase::SerializableStringCollection&)", "", lSerializable));
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    for (const unsigned int lHour : {2U, 5U, 8U, 11U, 14U, 20U})
    {
        lWindow->DisableTimeBlock(lHour, lHour + 1);
    }
    oCases.push_back(Writing("operator<<(std::ostream&, const QTalBase::DeliveryWindow&)", "", lWindow));
    const char* const lBag = "operator<<(std::ostream&, const QTalBase::PropertyBag&)";
    oCases.push_back(Writing(lBag, "many", Many()));
    oCases.push_back(Writing(lBag, "deep", Deep()));
    oCases.push_back(Writing(lBag, "a foreign class", Foreign()));
    oCases.push_back(Writing("operator<<(std::ostream&, const QTalBase::PropertyBags&)", "", SomeBags()));
}

void AddPointers(Cases& oCases)
{
    const char* const lPointer = "operator<<(std::ostream&, const SmartPtrI<T>&)";
    oCases.push_back(Writing(lPointer, "a bag", Holding(Filled())));
    oCases.push_back(Writing(lPointer, "a collection", Holding(SomeBags())));
    oCases.push_back(Writing(lPointer, "null", Holding(Nothing())).CannotFail());
}

} // namespace

Cases MakeOutputCases()
{
    Cases lCases;
    AddTexts(lCases);
    AddObjects(lCases);
    AddPointers(lCases);
    return lCases;
}

} // namespace Failures
