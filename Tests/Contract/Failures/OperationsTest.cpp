// What every public operation leaves behind when memory runs out at any of its allocations, for a moment or for good;
// and that no operation is forgotten: the virtual ones are those of Tests/Golden/Layout/VirtualSlots.txt, the others
// those that the libraries export, and those that are inline stand in a list.

#include "Tests/Contract/Failures/Trial.h"

#include "QBase/Atomic.h"
#include "QBase/Message.h"
#include "QBase/ReferenceCounted.h"
#include "QBase/SmartPtrI.h"

#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>

namespace
{

using namespace Failures;

void TryAll(const Cases& iCases)
{
    for (const Case& lCase : iCases)
    {
        Try(lCase);
    }
}

Cases AllCases()
{
    Cases lAll;
    for (const auto& lMake :
         {MakeBagChangeCases, MakeBagReadCases, MakeRareBagCases, MakeCollectionCases, MakeValueCases,
          MakeConversionCases, MakeTemplateCases, MakeViewCases, MakeOutputCases, MakePlatformCases})
    {
        const Cases lCases = lMake();
        lAll.insert(lAll.end(), lCases.begin(), lCases.end());
    }
    return lAll;
}

std::set<std::string> Tried()
{
    std::set<std::string> lOperations;
    for (const Case& lCase : AllCases())
    {
        lOperations.insert(lCase.mOperation);
    }
    return lOperations;
}

// The virtual operations of the interfaces, as "Class::Operation(arguments) const". The two of a base that each class
// brings along count once for each class.
std::set<std::string> VirtualOperations()
{
    const std::regex lSlot(R"( *[0-9]+ (.*\)(?: const)?) -> .*)");
    std::ifstream lFile(TALBASE_SOURCE_DIR "/Tests/Golden/Layout/VirtualSlots.txt");
    std::set<std::string> lOperations;
    std::string lClass;
    for (std::string lLine; std::getline(lFile, lLine);)
    {
        std::smatch lMatch;
        if (std::regex_match(lLine, lMatch, lSlot))
        {
            lOperations.insert(lClass + "::" + lMatch[1].str());
        }
        else if (lLine[0] == 'Q')
        {
            lClass = lLine.substr(0, lLine.find(' '));
        }
    }
    return lOperations;
}

// An implementation's overriders are what its interface's operations run, the bases are abstract, and the streams in
// memory are tried by the names under which they are exported.
bool IsOfAnInterface(const std::string& iOperation)
{
    static const std::regex lOthers(
        R"((QBase::ReferenceCounted|QSerialization::SerializableObject|QSerialization::(Memory)?(Read|Write)DataStream|.*Impl)::.*)");
    return !std::regex_match(iOperation, lOthers) ||
           iOperation.rfind("QTalBase::PropertyBagImpl::RemovePropertyIn", 0) == 0;
}

// The functions that a library file exports, by their names in C++.
std::set<std::string> ExportedFunctions(const std::string& iLibrary)
{
    std::set<std::string> lFunctions;
    std::FILE* const lPipe = ::popen(("nm -DC --defined-only '" + iLibrary + "'").c_str(), "r");
    char lLine[4096];
    while (lPipe != nullptr && std::fgets(lLine, sizeof lLine, lPipe) != nullptr)
    {
        const std::string lText = lLine;
        const std::size_t lType = lText.find(" T ");
        if (lType != std::string::npos)
        {
            lFunctions.insert(lText.substr(lType + 3, lText.size() - lType - 4));
        }
    }
    EXPECT_TRUE(lPipe != nullptr && ::pclose(lPipe) == 0) << "nm " << iLibrary;
    return lFunctions;
}

// Destructors that do nothing but end an object's life run with every object that dies; helpers and implementations
// run within the operations that need them.
bool IsPublicFunction(const std::string& iFunction)
{
    static const std::regex lOthers(R"(.*(thunk to|::~|Impl::|::h[A-Z]).*)");
    static const std::regex lOurs(R"(Q(TalBase|Base|Synch|Log|DataType|Serialization)::.*)");
    return std::regex_match(iFunction, lOurs) && !std::regex_match(iFunction, lOthers);
}

// "wchar_t const*" is how the symbol table writes "const wchar_t*". Standard libraries keep their types in namespaces
// that name a version, and count instants in units of their own.
std::string Spelled(const std::string& iOperation)
{
    static const std::regex lVersion(R"(__1::|__cxx11::|_V2::|\[abi:cxx11\])");
    static const std::regex lInstant(R"(std::chrono::time_point<[^()]*>)");
    static const std::regex lConstBehind(R"(([A-Za-z_][A-Za-z_:]*) const([*&]))");
    const std::string lText = std::regex_replace(std::regex_replace(iOperation, lVersion, ""), lInstant, "instant");
    return std::regex_replace(lText, lConstBehind, "const $1$2");
}

// The types that an operator of TalBase/Output.h writes, as that header spells them.
std::set<std::string> OutputOperators()
{
    const std::regex lOperator(R"(.*std::ostream& operator<<\(std::ostream& \w+, const ([A-Za-z_:<>]+)& \w+\).*)");
    std::ifstream lFile(TALBASE_SOURCE_DIR "/TalBase/Output.h");
    std::set<std::string> lOperators;
    for (std::string lLine; std::getline(lFile, lLine);)
    {
        std::smatch lMatch;
        if (std::regex_match(lLine, lMatch, lOperator))
        {
            lOperators.insert("operator<<(std::ostream&, const " + lMatch[1].str() + "&)");
        }
    }
    return lOperators;
}

// What is compiled into its callers, so that no library and no virtual table names it. What is noexcept is left out but
// where a loop needs it.
std::set<std::string> InlineOperations()
{
    std::set<std::string> lOperations = {
        "QTalBase::operator!=(const PropertyBag&, const PropertyBag&)",
        "QTalBase::Property::GetName() const",
        "QTalBase::Property::IsEmbedded() const",
        "QTalBase::Property::GetValue() const",
        "QTalBase::Property::GetBag() const",
        "QTalBase::BagEntry::GetName() const",
        "QTalBase::BagEntry::GetBag() const",
        "QTalBase::begin(const PropertyBag&)",
        "QTalBase::end(const PropertyBag&)",
        "QTalBase::begin(const PropertyBags&)",
        "QTalBase::end(const PropertyBags&)",
        "QTalBase::Each(SmartPtrI<const PropertyBag>)",
        "QTalBase::Each(SmartPtrI<const PropertyBags>)",
        "QTalBase::Get<T>(const PropertyBag&, const wchar_t*, T)",
        "QTalBase::Get(const PropertyBag&, const wchar_t*, const wchar_t*)",
        "QTalBase::Set(PropertyBag&, const wchar_t*, const T&)",
        "QTalBase::AsPathStep(std::wstring_view)",
        "QTalBase::GetBagAt(const PropertyBag&, const wchar_t*)",
        "QTalBase::GetValueAt(const PropertyBag&, const wchar_t*)",
        "QSerialization::operator>>(ReadDataStream&, SmartPtrI<const PropertyBag>&)",
        "QClone::Clear(std::vector<Entry>&)",
        "QClone::Deep(std::vector<Entry>&, std::vector<Entry>)",
        "operator<<(WriteDataStream&, const std::vector<Entry>&)",
        "operator>>(ReadDataStream&, std::vector<Entry>&)",
    };
    lOperations.merge(OutputOperators());
    return lOperations;
}

std::string Missing(const std::set<std::string>& iOperations, const std::set<std::string>& iTried)
{
    std::set<std::string> lTried;
    for (const std::string& lOperation : iTried)
    {
        lTried.insert(Spelled(lOperation));
    }
    std::string lMissing;
    for (const std::string& lOperation : iOperations)
    {
        lMissing += lTried.count(Spelled(lOperation)) == 0 ? lOperation + "\n" : "";
    }
    return lMissing;
}

} // namespace

TEST(FailedAllocation, OperationsThatChangeABag)
{
    TryAll(MakeBagChangeCases());
}

TEST(FailedAllocation, OperationsThatReadABag)
{
    TryAll(MakeBagReadCases());
}

TEST(FailedAllocation, BagsInRareStates)
{
    TryAll(MakeRareBagCases());
}

TEST(FailedAllocation, Collections)
{
    TryAll(MakeCollectionCases());
}

TEST(FailedAllocation, BuffersAndWindows)
{
    TryAll(MakeValueCases());
}

TEST(FailedAllocation, ConversionsAndStart)
{
    TryAll(MakeConversionCases());
}

TEST(FailedAllocation, SerializationTemplates)
{
    TryAll(MakeTemplateCases());
}

TEST(FailedAllocation, Views)
{
    TryAll(MakeViewCases());
}

TEST(FailedAllocation, Output)
{
    TryAll(MakeOutputCases());
}

TEST(FailedAllocation, Platform)
{
    TryAll(MakePlatformCases());
}

TEST(FailedAllocation, NoVirtualOperationIsForgotten)
{
    std::set<std::string> lOperations;
    for (const std::string& lOperation : VirtualOperations())
    {
        if (IsOfAnInterface(lOperation))
        {
            lOperations.insert(lOperation);
        }
    }
    EXPECT_EQ(lOperations.count("QTalBase::PropertyBag::MoveProperty(const wchar_t*, unsigned int)"), 1U);
    EXPECT_EQ(lOperations.count("QTalBase::DeliveryWindow::Clone() const"), 1U);
    EXPECT_EQ(Missing(lOperations, Tried()), "");
}

TEST(FailedAllocation, NoExportedFunctionIsForgotten)
{
    std::istringstream lLibraries(TALBASE_LIBRARIES);
    std::set<std::string> lFunctions;
    for (std::string lLibrary; std::getline(lLibraries, lLibrary, ':');)
    {
        const std::set<std::string> lExported = ExportedFunctions(lLibrary);
        EXPECT_FALSE(lExported.empty()) << lLibrary;
        for (const std::string& lFunction : lExported)
        {
            if (IsPublicFunction(lFunction))
            {
                lFunctions.insert(lFunction);
            }
        }
    }
    EXPECT_EQ(lFunctions.count("QTalBase::CheckText(wchar_t const*)"), 1U);
    EXPECT_EQ(Missing(lFunctions, Tried()), "");
}

TEST(FailedAllocation, NoInlineOperationIsForgotten)
{
    EXPECT_EQ(OutputOperators().count("operator<<(std::ostream&, const QTalBase::PropertyBag&)"), 1U);
    EXPECT_EQ(Missing(InlineOperations(), Tried()), "");
}

// Where the contract lets a failure end the process, the step is one that cannot fail.
TEST(FailedAllocation, StepsThatWouldEndTheProcessCannotFail)
{
    static_assert(std::is_nothrow_default_constructible_v<QBase::Message>);
    static_assert(noexcept(std::declval<QBase::Message&>().SetDomainAndID(0, 0)));
    static_assert(noexcept(std::declval<const QBase::ReferenceCounted&>().AddRef()));
    static_assert(noexcept(std::declval<const QBase::ReferenceCounted&>().Release()));
    static_assert(noexcept(QSynch_AtomicIncrement(std::declval<QSynch::AtomicLong&>())));
    static_assert(noexcept(QSynch_AtomicDecrement(std::declval<QSynch::AtomicLong&>())));
    static_assert(std::is_nothrow_copy_constructible_v<QBase::ExceptionImpl<QBase::Message>>);
    const std::set<std::string> lNames = {
        "QBase::Message::Message()",
        "QBase::Message::SetDomainAndID(unsigned short, int)",
        "QTalBase::PropertyBagImpl::RemovePropertyInValueContent(const wchar_t*)",
        "QTalBase::PropertyBagImpl::RemovePropertyInEmbeddedContent(const wchar_t*)",
    };
    std::size_t lCount = 0;
    for (const Case& lCase : AllCases())
    {
        if (lNames.count(lCase.mOperation) == 1)
        {
            EXPECT_EQ(lCase.mKind, Kind::CannotFail) << lCase.mOperation;
            Try(lCase);
            ++lCount;
        }
    }
    EXPECT_EQ(lCount, 10U);
}
