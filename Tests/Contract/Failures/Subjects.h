// What the operations on trial work on, and everything that can be seen of it.

#ifndef TESTS_CONTRACT_FAILURES_SUBJECTS_H
#define TESTS_CONTRACT_FAILURES_SUBJECTS_H

#include "Tests/Contract/Failures/Trial.h"

#include "QDataType/StringCollection.h"
#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"

#include <cwchar>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

namespace Failures
{

using Support::BagPtr;

// Longer than what any string object holds in itself, so that every copy allocates.
#define LONG_A L"the first name, longer than a string object"
#define LONG_B L"the second name, longer than a string object"
#define LONG_C L"the third name, longer than a string object"
#define LONG_V L"a value*that is longer than a string object"
#define LONG_BEGIN L"<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<"
#define LONG_END L">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>"

// A number that stands for a class and a text; made without memory, and never negative.
template <class Thrown, class Text>
long NumberOf(const Thrown& iThrown, const Text& iText)
{
    return static_cast<long>((std::hash<Text>{}(iText) ^ typeid(iThrown).hash_code()) >> 1);
}

// Runs what may be refused with a message; which one it is, is the answer: -1 where nothing was refused.
template <class Operation>
long NumberOfRefusal(const Operation& iOperation)
{
    try
    {
        iOperation();
    }
    catch (const QBase::Message& lRefused)
    {
        return NumberOf(lRefused, std::wstring_view(lRefused.GetMessage()));
    }
    catch (const std::out_of_range& lRefused)
    {
        return NumberOf(lRefused, std::string_view(lRefused.what()));
    }
    return -1;
}

// What callers see of a bag: its delimiters, every entry by position and by name at every depth, and its text.
std::wstring SeeBag(const BagPtr& iBag);

// The nested bags themselves, at every depth.
std::vector<const void*> IdentifyNests(const BagPtr& iBag);

// A bag, another one that takes part, and what an operation answered.
class BagSubject
{
public:
    std::wstring See() const;
    std::vector<const void*> Identify() const;

    BagPtr mBag;
    BagPtr mOther;
    std::unique_ptr<QDataType::StringCollection> mFilter;
    QBase::ReturnWString mText = L"";
    BagPtr mAnswer;
    long mNumber = -1;
};

using MakeBag = std::function<BagPtr()>;
using RunOnBag = std::function<void(BagSubject&)>;

// A refused call, and its refusal as the answer.
template <class Operation>
RunOnBag Refused(const Operation& iOperation)
{
    return [iOperation](BagSubject& oSubject) { oSubject.mNumber = NumberOfRefusal([&] { iOperation(oSubject); }); };
}

// The bags to work on. Filled and Derived have a plain property LONG_A and nests LONG_B and "n"; Many has so many
// properties of both kinds that they are found with tables. A derived class is asked call by call.
BagPtr Empty();
BagPtr Filled();
BagPtr Derived();
BagPtr Many();
BagPtr Raw();     // with the delimiters "[[" and "]]"
BagPtr Foreign(); // another implementation of the interface, with the same content as Filled
BagPtr Nothing();

Case OnBags(const char* ipOperation, const char* ipSituation, const MakeBag& iMake, const MakeBag& iMakeOther,
            const RunOnBag& iRun);
Case OnBag(const char* ipOperation, const char* ipSituation, const MakeBag& iMake, const RunOnBag& iRun);

// Return what a merge may leave when it fails: each beginning of it, and, where a nested bag was to be set, the bag
// without what bore its name. Without another bag it is a merge into itself. The text has a header.
std::vector<std::wstring> BeginningsOfMerge(const MakeBag& iMake, const MakeBag& iMakeOther);
std::vector<std::wstring> BeginningsOfText(const MakeBag& iMake, const std::wstring& iText);

// Cases that ask whether two bags are equal, and whether the second is inside the first.
void AddComparing(Cases& oCases, const char* ipSituation, const MakeBag& iMake, const MakeBag& iMakeOther);

} // namespace Failures

#endif
