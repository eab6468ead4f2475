// The time of operations on hostile input grows with its length and not with the square of it. `./dev bench` measures
// the growth closely; here each case has to stay far below a square, on any machine and under any load.

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Benchmarks/Cases.h"
#include "QDataType/StringCollection.h"
#include "Tests/Support/Describe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t gSize = 1 << 10;
constexpr std::size_t gFactor = 32;    // a square would take 1,024 times as long
constexpr double gLargestGrowth = 320; // ten times what is linear, for caches and whatever else disturbs
constexpr double gLeastSeconds = 2e-5; // below that the clock counts for too much
constexpr int gRounds = 3;             // the fastest counts

double ProcessorSeconds()
{
    timespec lTime = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &lTime);
    return static_cast<double>(lTime.tv_sec) + 1e-9 * static_cast<double>(lTime.tv_nsec);
}

// The operation and the end of what it made.
double SecondsOnce(const Bench::HostileCase& iCase, std::size_t iSize)
{
    Bench::PreparedCase lCase = iCase.mPrepare(iSize);
    const double lStart = ProcessorSeconds();
    lCase.mRun();
    double lSeconds = ProcessorSeconds() - lStart;
    lCase.mCheck();
    const double lEnd = ProcessorSeconds();
    lCase = {};
    return lSeconds + ProcessorSeconds() - lEnd;
}

double Seconds(const Bench::HostileCase& iCase, std::size_t iSize)
{
    double lFastest = SecondsOnce(iCase, iSize);
    for (int lRound = 1; lRound < gRounds; ++lRound)
    {
        lFastest = std::min(lFastest, SecondsOnce(iCase, iSize));
    }
    return lFastest;
}

void ExpectNoSquare(const Bench::HostileCase& iCase)
{
    const double lShort = std::max(Seconds(iCase, gSize), gLeastSeconds);
    const double lLong = Seconds(iCase, gFactor * gSize);
    EXPECT_LT(lLong, gLargestGrowth * lShort) << iCase.mName;
    fprintf(stderr, "%-50s %10.6f %10.6f %6.2f\n", iCase.mName.c_str(), lShort, lLong, lLong / lShort);
}

// Answers every name at once, so that asking takes no time.
class AnsweringBag : public QTalBase::PropertyBagImpl
{
public:
    QBase::ReturnWString GetProperty(const wchar_t*) const override
    {
        return L"v";
    }

    bool IsPropertyEmbedded(const wchar_t*) const override
    {
        return false;
    }
};

Bench::PreparedCase PrepareFilteringDerived(std::size_t iSize)
{
    const QBase::SmartPtrI<const QTalBase::PropertyBagImpl> lBag(new AnsweringBag());
    const std::shared_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (std::size_t lNumber = 0; lNumber < iSize; ++lNumber)
    {
        lFilter->Insert(std::to_wstring(lNumber).c_str());
    }
    const auto lClone = std::make_shared<QBase::SmartPtrI<QTalBase::PropertyBag>>();
    return {[lBag, lFilter, lClone] {
                *lClone = QBase::SmartPtrI<QTalBase::PropertyBag>(lBag->FilteredClone(lFilter.get()));
            },
            [lClone, iSize] { EXPECT_EQ((*lClone)->GetCount(), iSize); }};
}

std::wstring TextOfNames(std::size_t iCount)
{
    std::wstring lText = L"EndDelimiter***BeginDelimiter++++***";
    for (std::size_t lNumber = 0; lNumber < iCount; ++lNumber)
    {
        lText += L"name" + std::to_wstring(lNumber) + L"++++v***";
    }
    return lText;
}

using Support::BagPtr;

Bench::PreparedCase PrepareMergingIntoItsNest(std::size_t iSize)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag((TextOfNames(iSize) + L"nest++++k++++v******").c_str()));
    const BagPtr lNest = lBag->GetPropertyBag(L"nest");
    return {[lBag, lNest] { lNest->AddPropertyBag(lBag.get()); },
            [lNest, iSize] { EXPECT_EQ(lNest->GetCount(), iSize + 2); }};
}

Bench::PreparedCase PrepareAddingToACloneOfADerivedClass(std::size_t iSize)
{
    const BagPtr lOfDerived(new AnsweringBag());
    const BagPtr lClone(lOfDerived->Clone());
    const std::wstring lText = TextOfNames(iSize);
    return {[lClone, lText] { lClone->AddString(lText.c_str()); },
            [lClone, iSize] { EXPECT_EQ(lClone->GetCount(), iSize); }};
}

// Seconds that an operation on a fresh bag of many names takes, the least of several times.
template <class Operation>
double SecondsOnALargeBag(const Operation& iOperation)
{
    double lLeast = 1e9;
    for (int lRound = 0; lRound < 5; ++lRound)
    {
        const BagPtr lBag(QTalBase::CreatePropertyBag(TextOfNames(100000).c_str()));
        lBag->SetProperty(L"first", L"makes room for more", false);
        const auto lStart = std::chrono::steady_clock::now();
        iOperation(*lBag);
        lLeast = std::min(lLeast, std::chrono::duration<double>(std::chrono::steady_clock::now() - lStart).count());
        EXPECT_GT(lBag->GetCount(), 100000U);
    }
    return lLeast;
}

} // namespace

TEST(Growth, HostileInputTakesTimeInProportionToItsLength)
{
    const std::vector<Bench::HostileCase> lCases = Bench::MakeGrowthCases();
    EXPECT_FALSE(lCases.empty());
    for (const Bench::HostileCase& lCase : lCases)
    {
        ExpectNoSquare(lCase);
    }
}

TEST(Growth, FilteredCloneOfADerivedClassTakesTimeInProportionToTheFilter)
{
    ExpectNoSquare({"FilteredClone of a derived class", "names in the filter", PrepareFilteringDerived});
}

TEST(Growth, MergeIntoANestOfTheMergedBagTakesTimeInProportionToIt)
{
    ExpectNoSquare({"merge into a nest of the merged bag", "properties", PrepareMergingIntoItsNest});
}

TEST(Growth, AddStringIntoACloneOfADerivedClassTakesTimeInProportionToTheText)
{
    ExpectNoSquare({"AddString into a clone of a derived class", "properties", PrepareAddingToACloneOfADerivedClass});
}

TEST(Growth, SmallTextIntoALargeBagTakesTheTimeOfItsSettings)
{
    const double lText =
        SecondsOnALargeBag([](QTalBase::PropertyBag& oBag) { oBag.AddString(L"new++++1***name7++++2***"); });
    const double lSettings = SecondsOnALargeBag([](QTalBase::PropertyBag& oBag) {
        oBag.SetProperty(L"new", L"1", false);
        oBag.SetProperty(L"name7", L"2", false);
    });
    EXPECT_LT(lText, 4 * lSettings);
}
