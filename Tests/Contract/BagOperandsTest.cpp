// `a == b` and `a != b` ask a, in every mix of interface and implementation class. C++20 considers the operands the
// other way round as well, so this file is compiled as C++17 and as C++20.

#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include <gtest/gtest.h>

#if TALBASE_EXPECTED_LANGUAGE != __cplusplus
#error "compiled as another language version than the build says"
#endif

using QTalBase::PropertyBag;
using QTalBase::PropertyBagImpl;

namespace
{

// Counts how often it is asked, and gives a fixed answer.
class Asked : public PropertyBagImpl
{
public:
    explicit Asked(bool iAnswer) : mAnswer(iAnswer) {}

    bool operator==(const PropertyBag&) const override
    {
        ++mTimes;
        return mAnswer;
    }

    mutable int mTimes = 0;

private:
    bool mAnswer;
};

// Compares an equal-saying left operand with an unequal-saying right one, and the reverse, as the two classes.
template <class Left, class Right>
void ExpectLeftIsAsked()
{
    Asked lYes(true);
    Asked lNo(false);
    Left& lYesLeft = lYes;
    Left& lNoLeft = lNo;
    Right& lYesRight = lYes;
    Right& lNoRight = lNo;
    EXPECT_TRUE(lYesLeft == lNoRight);
    EXPECT_FALSE(lYesLeft != lNoRight);
    EXPECT_EQ(lYes.mTimes, 2);
    EXPECT_EQ(lNo.mTimes, 0);
    EXPECT_FALSE(lNoLeft == lYesRight);
    EXPECT_TRUE(lNoLeft != lYesRight);
    EXPECT_EQ(lYes.mTimes, 2);
    EXPECT_EQ(lNo.mTimes, 2);
}

template <class Left>
void ExpectLeftIsAskedForEveryRight()
{
    ExpectLeftIsAsked<Left, PropertyBag>();
    ExpectLeftIsAsked<Left, const PropertyBag>();
    ExpectLeftIsAsked<Left, PropertyBagImpl>();
    ExpectLeftIsAsked<Left, const PropertyBagImpl>();
}

} // namespace

TEST(BagOperands, InterfaceOnTheLeft)
{
    ExpectLeftIsAskedForEveryRight<PropertyBag>();
    ExpectLeftIsAskedForEveryRight<const PropertyBag>();
}

TEST(BagOperands, ImplementationOnTheLeft)
{
    ExpectLeftIsAskedForEveryRight<PropertyBagImpl>();
    ExpectLeftIsAskedForEveryRight<const PropertyBagImpl>();
}

TEST(BagOperands, TheAnswerShowsWhichSideIsAsked)
{
    // The left side is read as stored, the right side unescaped.
    PropertyBagImpl lRaw(L"[[", L"]]");
    PropertyBagImpl lEscaped;
    lRaw.SetProperty(L"p", L"*", false);
    lEscaped.SetProperty(L"p", L"*", false);
    const PropertyBag& lRawBag = lRaw;
    const PropertyBag& lEscapedBag = lEscaped;
    EXPECT_TRUE(lRaw == lEscaped);
    EXPECT_TRUE(lRaw == lEscapedBag);
    EXPECT_TRUE(lRawBag == lEscaped);
    EXPECT_TRUE(lRawBag == lEscapedBag);
    EXPECT_TRUE(lEscaped != lRaw);
    EXPECT_TRUE(lEscaped != lRawBag);
    EXPECT_TRUE(lEscapedBag != lRaw);
    EXPECT_TRUE(lEscapedBag != lRawBag);
}
