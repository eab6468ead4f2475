// Nests a million levels deep, on a thread with the smallest stack: nothing may recurse into what a text can nest.

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/TextCheck.h"

#include "Tests/Support/Describe.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <memory>
#include <pthread.h>
#include <string>
#include <unistd.h>

namespace
{

using Support::BagPtr;

#if defined(__SANITIZE_ADDRESS__)
const std::size_t gLevels = 100000;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
const std::size_t gLevels = 100000;
#else
const std::size_t gLevels = 1000000;
#endif
#else
const std::size_t gLevels = 1000000;
#endif

void* Call(void* ipAction)
{
    (*static_cast<std::function<void()>*>(ipAction))();
    return nullptr;
}

// Runs an action on a thread with 64 KiB of stack, or what the platform asks for at least.
void OnSmallStack(std::function<void()> iAction)
{
    const long lLeast = sysconf(_SC_THREAD_STACK_MIN);
    const std::size_t lSize = std::max<std::size_t>(64 * 1024, lLeast > 0 ? static_cast<std::size_t>(lLeast) : 0);
    pthread_attr_t lAttributes;
    ASSERT_EQ(pthread_attr_init(&lAttributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&lAttributes, lSize), 0);
    pthread_t lThread;
    ASSERT_EQ(pthread_create(&lThread, &lAttributes, Call, &iAction), 0);
    ASSERT_EQ(pthread_join(lThread, nullptr), 0);
    pthread_attr_destroy(&lAttributes);
}

std::wstring DeepText(std::size_t iLevels)
{
    std::wstring lText = L"EndDelimiter***BeginDelimiter++++***";
    for (std::size_t lLevel = 0; lLevel < iLevels; ++lLevel)
    {
        lText += L"n++++";
    }
    lText += L"k++++v***";
    for (std::size_t lLevel = 0; lLevel < iLevels; ++lLevel)
    {
        lText += L"***";
    }
    return lText;
}

BagPtr DeepBag()
{
    return BagPtr(QTalBase::CreatePropertyBag(DeepText(gLevels).c_str()));
}

std::wstring TextOf(const BagPtr& iBag)
{
    return std::wstring(iBag->GetString(true, nullptr, nullptr, true));
}

} // namespace

TEST(Depth, ParsingRenderingAndDestroyingTakeNoStack)
{
    OnSmallStack([] {
        const std::wstring lText = DeepText(gLevels);
        const BagPtr lBag(QTalBase::CreatePropertyBag(lText.c_str()));
        EXPECT_TRUE(TextOf(lBag) == lText);
        EXPECT_EQ(lBag->GetProperty(L"n").GetLength(), lText.size() - 8);
    });
}

// An escape may then move a delimiter, so the nest with the value is read again; those around it are not.
TEST(Depth, DefaultsThatShareCharactersWithEscapesTakeNoStack)
{
    OnSmallStack([] {
        const Support::RepointedDefaults lDefaults(L"&&", L";;");
        std::wstring lNests;
        std::wstring lEnds;
        for (std::size_t lLevel = 0; lLevel < gLevels; ++lLevel)
        {
            lNests += L"n&&";
            lEnds += L";;";
        }
        const BagPtr lBag(QTalBase::CreatePropertyBag());
        lBag->AddString((lNests + L"k&&1*2;;" + lEnds).c_str());
        EXPECT_TRUE(std::wstring(lBag->GetString(false, nullptr, nullptr, true)) == lNests + L"k&&1&#42;2;;" + lEnds);
    });
}

TEST(Depth, ComparingTakesNoStack)
{
    OnSmallStack([] {
        const BagPtr lLeft = DeepBag();
        const BagPtr lRight = DeepBag();
        EXPECT_TRUE(*lLeft == *lRight);
        EXPECT_TRUE(lLeft->IsSubset(lRight.get()));
        lRight->SetProperty(L"more", L"1", false);
        EXPECT_TRUE(*lLeft != *lRight);
        EXPECT_FALSE(lLeft->IsSubset(lRight.get()));
    });
}

TEST(Depth, FindingTextFaultsTakesNoStack)
{
    OnSmallStack([] {
        const BagPtr lBag = DeepBag();
        EXPECT_TRUE(QTalBase::FindTextFault(*lBag, true, nullptr, nullptr).IsNone());
        const QTalBase::TextFault lFault = QTalBase::FindTextFault(*lBag, true, L"k", L"***");
        EXPECT_EQ(lFault.mKind, QTalBase::TextFaultKind::HoldsDelimiter);
        EXPECT_EQ(lFault.mPath.size(), gLevels + 1);
        lBag->ChangeDelimiters(L"[", L"end"); // no header can carry them, so the text is written, and read
        EXPECT_EQ(QTalBase::FindTextFault(*lBag, false, nullptr, nullptr).mKind, QTalBase::TextFaultKind::NotCarried);
    });
}

TEST(Depth, ChangingDelimitersTakesNoStack)
{
    OnSmallStack([] {
        const BagPtr lBag = DeepBag();
        lBag->ChangeDelimiters(L"<", L">");
        EXPECT_TRUE(TextOf(lBag).substr(0, 40) == L"EndDelimiter>BeginDelimiter<>n<n<n<n<n<n");
        EXPECT_STREQ(lBag->GetPropertyBag(L"n")->GetPropertyBag(L"n")->GetBeginDelimiter(), L"<");
    });
}

TEST(Depth, CopyingAndEmbeddingTakeNoStack)
{
    OnSmallStack([] {
        const BagPtr lBag = DeepBag();
        const BagPtr lClone(lBag->Clone());
        EXPECT_EQ(lClone->GetPropertyBag(L"n").get(), lBag->GetPropertyBag(L"n").get());
        const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
        lFilter->Insert(L"n");
        const BagPtr lFiltered(lBag->FilteredClone(lFilter.get()));
        EXPECT_TRUE(TextOf(lFiltered) == TextOf(lBag));
        const BagPtr lOuter(QTalBase::CreatePropertyBag(L"<", L">"));
        lOuter->EmbedProperty(L"inside", lBag.get());
        EXPECT_TRUE(lOuter->IsPropertyEmbedded(L"inside"));
    });
}

TEST(Depth, MergingTakesNoStack)
{
    OnSmallStack([] {
        const BagPtr lBag = DeepBag();
        const BagPtr lOther(QTalBase::CreatePropertyBag(L"[[", L"]]"));
        lOther->AddPropertyBag(lBag.get());
        lOther->AddString(DeepText(gLevels).c_str());
        EXPECT_EQ(lOther->GetCount(), 1U);
        EXPECT_STREQ(lOther->GetPropertyBag(L"n")->GetBeginDelimiter(), L"[[");
        lBag->AddPropertyBag(lBag.get());
        EXPECT_EQ(lBag->GetCount(), 1U);
    });
}

TEST(Depth, StreamsTakeNoStack)
{
    OnSmallStack([] {
        const QBase::SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
        lBags->Add(L"deep", DeepBag().get());
        QSerialization::MemoryWriteDataStream lWriter;
        lBags->Serialize(lWriter);
        QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lWriter.GetBytes().size());
        lBags->DeSerialize(lReader);
        EXPECT_TRUE(TextOf(lBags->GetPropertyBag(0)) == DeepText(gLevels));
    });
}

TEST(Depth, NestsThatNeverCloseAreRefused)
{
    OnSmallStack([] {
        std::wstring lText = DeepText(gLevels);
        lText.resize(lText.size() - 3);
        const BagPtr lBag(QTalBase::CreatePropertyBag());
        EXPECT_THROW(lBag->AddString(lText.c_str()), QTalBase::PropertyBagException);
        EXPECT_EQ(lBag->GetCount(), 0U);
    });
}

TEST(Depth, ReleasingANestThatSomebodyHoldsKeepsWhatIsBelow)
{
    OnSmallStack([] {
        BagPtr lBag = DeepBag();
        BagPtr lNest = lBag;
        for (int lLevel = 0; lLevel < 100; ++lLevel)
        {
            lNest = lNest->GetPropertyBag(L"n");
        }
        lBag = nullptr;
        EXPECT_EQ(lNest->GetCount(), 1U);
        EXPECT_TRUE(lNest->IsPropertyEmbedded(L"n"));
    });
}
