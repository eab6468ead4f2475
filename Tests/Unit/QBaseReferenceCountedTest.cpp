#include "QBase/ReferenceCounted.h"

#include "QBase/Atomic.h"
#include "QBase/SmartPtrI.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

class Shape : public virtual QBase::ReferenceCounted
{
};

class Colour : public virtual QBase::ReferenceCounted
{
};

// Two interfaces with one count, as the family's objects are built.
class Object : public virtual Shape, public virtual Colour
{
public:
    explicit Object(int& oDeleted) : mDeleted(oDeleted), mRefCount(0) {}

    ~Object() override
    {
        ++mDeleted;
    }

    void AddRef() const noexcept override
    {
        QSynch_AtomicIncrement(mRefCount);
    }

    void Release() const noexcept override
    {
        if (QSynch_AtomicDecrement(mRefCount) == 0)
        {
            delete this;
        }
    }

private:
    int& mDeleted;
    mutable QSynch::AtomicLong mRefCount;
};

TEST(ReferenceCounted, ReleaseOfTheLastReferenceDeletesThroughTheVirtualDestructor)
{
    int lDeleted = 0;
    const QBase::ReferenceCounted* lObject = new Object(lDeleted);
    lObject->AddRef();
    lObject->AddRef();
    lObject->Release();
    EXPECT_EQ(0, lDeleted);
    lObject->Release();
    EXPECT_EQ(1, lDeleted);
}

TEST(ReferenceCounted, InterfacesOfOneObjectShareItsCount)
{
    int lDeleted = 0;
    auto* lObject = new Object(lDeleted);
    QBase::SmartPtrI<Shape> lShape(lObject);
    QBase::SmartPtrI<Colour> lColour(lObject);
    lShape = nullptr;
    EXPECT_EQ(0, lDeleted);
    lColour = nullptr;
    EXPECT_EQ(1, lDeleted);
}

TEST(ReferenceCounted, OperationsAreConstAndNeverThrow)
{
    const auto lCounted = static_cast<const QBase::ReferenceCounted*>(nullptr);
    static_assert(noexcept(lCounted->AddRef()));
    static_assert(noexcept(lCounted->Release()));
    static_assert(std::has_virtual_destructor_v<QBase::ReferenceCounted>);
    static_assert(sizeof(QBase::ReferenceCounted) == sizeof(void*));
    EXPECT_TRUE(std::is_abstract_v<QBase::ReferenceCounted>);
}

} // namespace
