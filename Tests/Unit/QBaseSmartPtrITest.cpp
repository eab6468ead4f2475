#include "QBase/SmartPtrI.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{

using QBase::SmartPtrI;

// A counted object that owns the next one, tells its count and where it died, and runs what it is given when it dies.
class Node
{
public:
    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    virtual ~Node()
    {
        if (mDeleted != nullptr)
        {
            *mDeleted += 1;
        }
    }

    void AddRef() const noexcept
    {
        ++mCount;
        ++mTaken;
    }

    void Release() const noexcept
    {
        if (mWatched != nullptr)
        {
            mSeenByRelease = mWatched->get();
        }
        if (--mCount == 0 && mDeleted != nullptr)
        {
            delete this;
        }
    }

    mutable int mCount = 0;
    mutable int mTaken = 0;              // references taken so far
    int* mDeleted = nullptr;             // where deletions are counted; null for objects that are not on the heap
    SmartPtrI<Node> mNext;               // what this object alone keeps alive
    SmartPtrI<Node>* mWatched = nullptr; // the pointer whose content Release looks at
    mutable const Node* mSeenByRelease = nullptr;
};

class Leaf : public Node
{
};

class Other
{
public:
    void AddRef() const noexcept {}

    void Release() const noexcept {}
};

using Pointer = SmartPtrI<Node>;
using ConstPointer = SmartPtrI<const Node>;
using LeafPointer = SmartPtrI<Leaf>;

static_assert(sizeof(Pointer) == sizeof(Node*));
static_assert(std::is_nothrow_default_constructible_v<Pointer>);
static_assert(std::is_nothrow_copy_constructible_v<Pointer> && std::is_nothrow_move_constructible_v<Pointer>);
static_assert(std::is_nothrow_copy_assignable_v<Pointer> && std::is_nothrow_move_assignable_v<Pointer>);
static_assert(std::is_nothrow_destructible_v<Pointer> && std::is_nothrow_swappable_v<Pointer>);
static_assert(std::is_nothrow_constructible_v<Pointer, Node*> && std::is_nothrow_assignable_v<Pointer&, Node*>);
static_assert(std::is_nothrow_constructible_v<Pointer, std::nullptr_t>);
static_assert(std::is_nothrow_assignable_v<Pointer&, std::nullptr_t>);
static_assert(std::is_nothrow_constructible_v<Pointer, const LeafPointer&>);
static_assert(std::is_nothrow_constructible_v<Pointer, LeafPointer&&>);
static_assert(std::is_nothrow_assignable_v<Pointer&, const LeafPointer&>);
static_assert(std::is_nothrow_assignable_v<Pointer&, LeafPointer&&>);
static_assert(noexcept(std::declval<const Pointer&>().get()) && noexcept(static_cast<bool>(std::declval<Pointer&>())));
static_assert(noexcept(*std::declval<const Pointer&>()) && noexcept(std::declval<const Pointer&>().operator->()));
static_assert(noexcept(std::declval<Pointer&>() == nullptr) && noexcept(nullptr != std::declval<Pointer&>()));
static_assert(noexcept(std::declval<Pointer&>() == std::declval<LeafPointer&>()));
static_assert(noexcept(std::declval<Pointer&>() != std::declval<Leaf*>()));
static_assert(noexcept(std::declval<Pointer&>().swap(std::declval<Pointer&>())));
static_assert(noexcept(std::declval<Pointer&>().Detach()));

// Implicit from a plain pointer, and to a base or to const, but never back.
static_assert(std::is_convertible_v<Node*, Pointer> && std::is_convertible_v<Leaf*, Pointer>);
static_assert(std::is_convertible_v<LeafPointer, Pointer> && std::is_convertible_v<Pointer, ConstPointer>);
static_assert(std::is_convertible_v<LeafPointer, ConstPointer> && std::is_convertible_v<Leaf*, ConstPointer>);
static_assert(!std::is_constructible_v<LeafPointer, Pointer> && !std::is_constructible_v<LeafPointer, Node*>);
static_assert(!std::is_constructible_v<Pointer, ConstPointer> && !std::is_constructible_v<Pointer, const Node*>);
static_assert(!std::is_assignable_v<LeafPointer&, Pointer> && !std::is_assignable_v<Pointer&, ConstPointer>);
static_assert(!std::is_assignable_v<Pointer&, const Node*>);
static_assert(!std::is_constructible_v<SmartPtrI<Other>, Pointer> && !std::is_constructible_v<SmartPtrI<Other>, Node*>);
static_assert(!std::is_convertible_v<Pointer, Node*> && !std::is_convertible_v<Pointer, bool>);
static_assert(std::is_constructible_v<bool, Pointer>);

// The pointer's constness is not the object's.
static_assert(std::is_same_v<decltype(*std::declval<const Pointer&>()), Node&>);
static_assert(std::is_same_v<decltype(std::declval<const Pointer&>().get()), Node*>);
static_assert(std::is_same_v<decltype(std::declval<const Pointer&>().operator->()), Node*>);
static_assert(std::is_same_v<decltype(*std::declval<ConstPointer&>()), const Node&>);

// A class may hold a pointer to a class that is only declared.
class Declared;
struct Holder
{
    SmartPtrI<Declared>* mPointer;
};

constinit Pointer gStatic; // built at compile time, so that static objects may use it at any time

class SmartPtrITest : public testing::Test
{
protected:
    Node mFirst;
    Node mSecond;
    Leaf mLeaf;
};

TEST_F(SmartPtrITest, DefaultHoldsNothing)
{
    const Pointer lPointer;
    EXPECT_EQ(lPointer.get(), nullptr);
    EXPECT_EQ(gStatic.get(), nullptr);
    EXPECT_FALSE(static_cast<bool>(lPointer));
}

TEST_F(SmartPtrITest, EverySpellingOfNullHoldsNothing)
{
    const Pointer lFromNullptr(nullptr);
    const Pointer lFromNull(NULL);
    const Pointer lFromBraces{};
    const Pointer lFromPlain(static_cast<Node*>(nullptr));
    const Pointer lInitialised = nullptr;
    EXPECT_EQ(lFromNullptr.get(), nullptr);
    EXPECT_EQ(lFromNull.get(), nullptr);
    EXPECT_EQ(lFromBraces.get(), nullptr);
    EXPECT_EQ(lFromPlain.get(), nullptr);
    EXPECT_EQ(lInitialised.get(), nullptr);
}

TEST_F(SmartPtrITest, PlainPointerTakesAReferenceAndTheEndDropsIt)
{
    {
        const Pointer lPointer = &mFirst;
        EXPECT_EQ(lPointer.get(), &mFirst);
        EXPECT_EQ(mFirst.mCount, 1);
        EXPECT_TRUE(static_cast<bool>(lPointer));
    }
    EXPECT_EQ(mFirst.mCount, 0);
    EXPECT_EQ(mFirst.mTaken, 1);
}

TEST_F(SmartPtrITest, CopyTakesAReferenceOfItsOwn)
{
    const Pointer lPointer(&mFirst);
    {
        const Pointer lCopy(lPointer);
        EXPECT_EQ(lCopy.get(), &mFirst);
        EXPECT_EQ(mFirst.mCount, 2);
    }
    EXPECT_EQ(mFirst.mCount, 1);
    const Pointer lNull;
    EXPECT_EQ(Pointer(lNull).get(), nullptr);
}

TEST_F(SmartPtrITest, MoveTakesTheReferenceOver)
{
    Pointer lPointer(&mFirst);
    const Pointer lMoved(std::move(lPointer));
    EXPECT_EQ(lMoved.get(), &mFirst);
    EXPECT_EQ(lPointer.get(), nullptr);
    EXPECT_EQ(mFirst.mCount, 1);
    EXPECT_EQ(mFirst.mTaken, 1);
}

TEST_F(SmartPtrITest, ConvertingCopyTakesAReferenceOfItsOwn)
{
    const LeafPointer lLeaf(&mLeaf);
    const Pointer lBase(lLeaf);
    const ConstPointer lConst(lLeaf);
    const ConstPointer lConstOfBase = lBase;
    EXPECT_EQ(lBase.get(), &mLeaf);
    EXPECT_EQ(lConst.get(), &mLeaf);
    EXPECT_EQ(lConstOfBase.get(), &mLeaf);
    EXPECT_EQ(mLeaf.mCount, 4);
}

TEST_F(SmartPtrITest, ConvertingMoveTakesTheReferenceOver)
{
    LeafPointer lLeaf(&mLeaf);
    Pointer lBase(std::move(lLeaf));
    EXPECT_EQ(lLeaf.get(), nullptr);
    const ConstPointer lConst(std::move(lBase));
    EXPECT_EQ(lBase.get(), nullptr);
    EXPECT_EQ(lConst.get(), &mLeaf);
    EXPECT_EQ(mLeaf.mCount, 1);
    EXPECT_EQ(mLeaf.mTaken, 1);
}

// A base that does not stand at the start of its object: the conversion moves the address.
class Padding
{
public:
    virtual ~Padding() = default;
    long mNumber = 0;
};

class Shifted : public Padding, public Node
{
};

TEST_F(SmartPtrITest, ConversionsAdjustTheAddress)
{
    Shifted lObject;
    SmartPtrI<Shifted> lShifted(&lObject);
    const Pointer lCopy(lShifted);
    EXPECT_EQ(lCopy.get(), static_cast<Node*>(&lObject));
    EXPECT_NE(static_cast<void*>(lCopy.get()), static_cast<void*>(&lObject));
    EXPECT_EQ(lCopy, lShifted);
    const Pointer lMoved(std::move(lShifted));
    EXPECT_EQ(lMoved, lCopy);
    SmartPtrI<Shifted> lNull;
    EXPECT_EQ(Pointer(lNull).get(), nullptr); // null stays null
    EXPECT_EQ(Pointer(std::move(lNull)).get(), nullptr);
}

TEST_F(SmartPtrITest, CopyAssignmentExchangesTheReferences)
{
    const Pointer lSource(&mFirst);
    Pointer lTarget(&mSecond);
    EXPECT_EQ(&(lTarget = lSource), &lTarget);
    EXPECT_EQ(lTarget.get(), &mFirst);
    EXPECT_EQ(mFirst.mCount, 2);
    EXPECT_EQ(mSecond.mCount, 0);
    lTarget = Pointer();
    EXPECT_EQ(lTarget.get(), nullptr);
    EXPECT_EQ(mFirst.mCount, 1);
}

TEST_F(SmartPtrITest, MoveAssignmentTakesTheReferenceOver)
{
    Pointer lSource(&mFirst);
    Pointer lTarget(&mSecond);
    EXPECT_EQ(&(lTarget = std::move(lSource)), &lTarget);
    EXPECT_EQ(lTarget.get(), &mFirst);
    EXPECT_EQ(lSource.get(), nullptr);
    EXPECT_EQ(mFirst.mCount, 1);
    EXPECT_EQ(mFirst.mTaken, 1);
    EXPECT_EQ(mSecond.mCount, 0);
}

TEST_F(SmartPtrITest, ConvertingAssignmentsCountLikeTheOthers)
{
    LeafPointer lLeaf(&mLeaf);
    Pointer lBase(&mFirst);
    ConstPointer lConst(&mSecond);
    lBase = lLeaf;
    lConst = lBase;
    EXPECT_EQ(mLeaf.mCount, 3);
    EXPECT_EQ(mFirst.mCount, 0);
    EXPECT_EQ(mSecond.mCount, 0);
    lBase = std::move(lLeaf);
    EXPECT_EQ(lLeaf.get(), nullptr);
    EXPECT_EQ(lBase.get(), &mLeaf);
    EXPECT_EQ(mLeaf.mCount, 2);
    lConst = std::move(lBase);
    EXPECT_EQ(mLeaf.mCount, 1);
    EXPECT_EQ(lConst.get(), &mLeaf);
}

TEST_F(SmartPtrITest, PlainPointerAssignmentExchangesTheReferences)
{
    Pointer lPointer(&mFirst);
    EXPECT_EQ(&(lPointer = &mSecond), &lPointer);
    EXPECT_EQ(mFirst.mCount, 0);
    EXPECT_EQ(mSecond.mCount, 1);
    lPointer = &mLeaf;
    EXPECT_EQ(lPointer.get(), &mLeaf);
    EXPECT_EQ(mSecond.mCount, 0);
}

TEST_F(SmartPtrITest, AssigningEverySpellingOfNullLetsGo)
{
    Pointer lPointer(&mFirst);
    lPointer = nullptr;
    EXPECT_EQ(mFirst.mCount, 0);
    lPointer = &mFirst;
    lPointer = NULL;
    EXPECT_EQ(mFirst.mCount, 0);
    lPointer = &mFirst;
    lPointer = {};
    EXPECT_EQ(mFirst.mCount, 0);
    lPointer = &mFirst;
    lPointer = static_cast<Node*>(nullptr);
    EXPECT_EQ(mFirst.mCount, 0);
    EXPECT_EQ(lPointer.get(), nullptr);
    lPointer = nullptr; // once more, with nothing to let go
    EXPECT_EQ(lPointer.get(), nullptr);
}

TEST_F(SmartPtrITest, AssignmentToItselfKeepsTheObject)
{
    int lDeleted = 0;
    Node* lNode = new Node;
    lNode->mDeleted = &lDeleted;
    Pointer lPointer(lNode);
    Pointer& lSame = lPointer;
    lPointer = lSame;
    EXPECT_EQ(lPointer.get(), lNode);
    lPointer = std::move(lSame);
    EXPECT_EQ(lPointer.get(), lNode);
    lPointer = lNode;
    EXPECT_EQ(lPointer.get(), lNode);
    lPointer.swap(lSame);
    EXPECT_EQ(lPointer.get(), lNode);
    EXPECT_EQ(lNode->mCount, 1);
    EXPECT_EQ(lDeleted, 0);
    lPointer = nullptr;
    EXPECT_EQ(lDeleted, 1);
}

// A chain of two on the heap, of which the first alone keeps the second alive.
Pointer Chain(int& oDeleted)
{
    Pointer lFirst(new Node);
    lFirst->mDeleted = &oDeleted;
    lFirst->mNext = new Node;
    lFirst->mNext->mDeleted = &oDeleted;
    return lFirst;
}

TEST_F(SmartPtrITest, AssignmentFromWhatTheOldObjectOwnsIsSafe)
{
    int lDeleted = 0;
    Pointer lCopied = Chain(lDeleted);
    lCopied = lCopied->mNext;
    EXPECT_EQ(lDeleted, 1);
    EXPECT_EQ(lCopied->mCount, 1);
    Pointer lMoved = Chain(lDeleted);
    lMoved = std::move(lMoved->mNext);
    EXPECT_EQ(lDeleted, 2);
    EXPECT_EQ(lMoved->mCount, 1);
    Pointer lPlain = Chain(lDeleted);
    lPlain = lPlain->mNext.get();
    EXPECT_EQ(lDeleted, 3);
    EXPECT_EQ(lPlain->mCount, 1);
    Pointer lSource = Chain(lDeleted);
    ConstPointer lConverted(lSource);
    lSource = nullptr;
    lConverted = lConverted->mNext;
    EXPECT_EQ(lDeleted, 4);
    EXPECT_EQ(lConverted->mCount, 1);
}

TEST_F(SmartPtrITest, ReleaseFindsThePointerAlreadyCleared)
{
    Pointer lPointer(&mFirst);
    mFirst.mWatched = &lPointer;
    mFirst.mSeenByRelease = &mFirst;
    lPointer = nullptr;
    EXPECT_EQ(mFirst.mSeenByRelease, nullptr);
    lPointer = &mFirst;
    lPointer = &mSecond; // the new object is there before the old one is let go
    EXPECT_EQ(mFirst.mSeenByRelease, &mSecond);
    lPointer = &mFirst;
    lPointer = Pointer(&mSecond);
    EXPECT_EQ(mFirst.mSeenByRelease, &mSecond);
}

TEST_F(SmartPtrITest, DestructorClearsBeforeItReleases)
{
    alignas(Pointer) unsigned char lStorage[sizeof(Pointer)];
    Pointer* lPointer = new (lStorage) Pointer(&mFirst);
    mFirst.mWatched = lPointer;
    mFirst.mSeenByRelease = &mFirst;
    lPointer->~Pointer();
    EXPECT_EQ(mFirst.mSeenByRelease, nullptr);
    EXPECT_EQ(mFirst.mCount, 0);
    mFirst.mWatched = nullptr;
}

TEST_F(SmartPtrITest, ObjectThatClearsItsOwnPointerIsReleasedOnce)
{
    int lDeleted = 0;
    Pointer lPointer(new Node);
    lPointer->mDeleted = &lDeleted;
    lPointer->mNext = lPointer; // a ring of one
    EXPECT_EQ(lPointer->mCount, 2);
    Pointer& lRing = lPointer->mNext;
    lPointer = nullptr;
    EXPECT_EQ(lDeleted, 0);
    lRing = nullptr;
    EXPECT_EQ(lDeleted, 1);
}

TEST_F(SmartPtrITest, AccessReachesTheObject)
{
    const Pointer lPointer(&mFirst);
    EXPECT_EQ(&*lPointer, &mFirst);
    EXPECT_EQ(lPointer->mCount, 1);
    (*lPointer).mTaken = 40;
    EXPECT_EQ(mFirst.mTaken, 40);
}

TEST_F(SmartPtrITest, ComparisonsWithAnotherPointerCompareAddresses)
{
    const Pointer lFirst(&mFirst);
    const Pointer lSame(&mFirst);
    const Pointer lSecond(&mSecond);
    const Pointer lLeafAsNode(&mLeaf);
    const LeafPointer lLeaf(&mLeaf);
    const ConstPointer lConst(&mFirst);
    EXPECT_TRUE(lFirst == lSame);
    EXPECT_FALSE(lFirst != lSame);
    EXPECT_FALSE(lFirst == lSecond);
    EXPECT_TRUE(lFirst != lSecond);
    EXPECT_TRUE(lLeaf == lLeafAsNode && lLeafAsNode == lLeaf);
    EXPECT_TRUE(lLeaf != lFirst && lFirst != lLeaf);
    EXPECT_TRUE(lConst == lFirst && lFirst == lConst);
    EXPECT_TRUE(Pointer() == LeafPointer());
    EXPECT_TRUE(lFirst != Pointer());
}

TEST_F(SmartPtrITest, ComparisonsWithNullAskWhetherItHolds)
{
    const Pointer lPointer(&mFirst);
    const Pointer lNull;
    EXPECT_TRUE(lPointer != nullptr && nullptr != lPointer);
    EXPECT_FALSE(lPointer == nullptr || nullptr == lPointer);
    EXPECT_TRUE(lNull == nullptr && nullptr == lNull);
    EXPECT_FALSE(lNull != nullptr || nullptr != lNull);
    EXPECT_TRUE(lNull == NULL && lPointer != NULL);
}

TEST_F(SmartPtrITest, ComparisonsWithAPlainPointerCompareAddresses)
{
    const LeafPointer lLeaf(&mLeaf);
    Node* lNode = &mLeaf;
    const Leaf* lConst = &mLeaf;
    EXPECT_TRUE(lLeaf == &mLeaf && &mLeaf == lLeaf);
    EXPECT_TRUE(lLeaf == lNode && lNode == lLeaf);
    EXPECT_TRUE(lLeaf == lConst && lConst == lLeaf);
    EXPECT_TRUE(lLeaf != &mFirst && &mFirst != lLeaf);
    EXPECT_FALSE(lLeaf != lNode || lNode != lLeaf);
    EXPECT_FALSE(lLeaf == &mFirst || &mFirst == lLeaf);
    EXPECT_EQ(mLeaf.mTaken, 1); // no comparison takes a reference
}

TEST_F(SmartPtrITest, SwapExchangesWithoutCounting)
{
    Pointer lFirst(&mFirst);
    Pointer lSecond(&mSecond);
    lFirst.swap(lSecond);
    EXPECT_EQ(lFirst.get(), &mSecond);
    EXPECT_EQ(lSecond.get(), &mFirst);
    using std::swap;
    swap(lFirst, lSecond);
    EXPECT_EQ(lFirst.get(), &mFirst);
    Pointer lNull;
    lNull.swap(lFirst);
    EXPECT_EQ(lFirst.get(), nullptr);
    EXPECT_EQ(lNull.get(), &mFirst);
    EXPECT_EQ(mFirst.mTaken, 1);
    EXPECT_EQ(mSecond.mTaken, 1);
}

TEST_F(SmartPtrITest, DetachHandsTheReferenceToTheCaller)
{
    Pointer lPointer(&mFirst);
    EXPECT_EQ(lPointer.Detach(), &mFirst);
    EXPECT_EQ(lPointer.get(), nullptr);
    EXPECT_EQ(mFirst.mCount, 1);
    EXPECT_EQ(mFirst.mTaken, 1);
    EXPECT_EQ(lPointer.Detach(), nullptr);
    mFirst.Release();
    EXPECT_EQ(mFirst.mCount, 0);
}

TEST_F(SmartPtrITest, VectorOfPointersKeepsTheCounts)
{
    std::vector<Pointer> lPointers;
    for (int lIndex = 0; lIndex < 100; ++lIndex)
    {
        lPointers.emplace_back(&mFirst);
    }
    EXPECT_EQ(mFirst.mCount, 100);
    EXPECT_EQ(mFirst.mTaken, 100); // growing moves them
    lPointers.erase(lPointers.begin(), lPointers.begin() + 60);
    EXPECT_EQ(mFirst.mCount, 40);
    lPointers.clear();
    EXPECT_EQ(mFirst.mCount, 0);
}

} // namespace
