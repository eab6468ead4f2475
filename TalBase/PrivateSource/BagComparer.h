// Compares two bags that are exactly PropertyBagImpl, with all their nests, without recursion.
//
// Invariant: answers, and throws, as the operations would if each called itself on the nests. The names that a level
// looks up in the other bag are looked up as a scan from the front would, so a name that occurs twice gives the same.

#ifndef TALBASE_PRIVATESOURCE_BAGCOMPARER_H
#define TALBASE_PRIVATESOURCE_BAGCOMPARER_H

#include "TalBase/PrivateSource/BagIndex.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include <string_view>
#include <vector>

namespace QTalBase
{

class BagComparer
{
public:
    // What iAsked.operator==(iOther) answers.
    static bool AreEqual(const PropertyBagImpl& iAsked, const PropertyBagImpl& iOther);

    // What iWhole.IsSubset(&iPart) answers.
    static bool IsSubset(const PropertyBagImpl& iWhole, const PropertyBagImpl& iPart);

private:
    // Two bags whose plain properties have been compared and whose nests are.
    struct Level
    {
        const PropertyBagImpl* mLeft;
        const PropertyBagImpl* mRight;
        std::size_t mNextNest;
        bool mIsLeftRendered; // its nests are known to render without failing
        bool mIsRightRendered;
        BagIndex mIndex;
    };

    using Levels = std::vector<Level>;

    // Whether the pair's counts and plain properties allow it to be equal, or a subset; then it becomes a level.
    static bool hEnterEqual(Levels& oLevels, const PropertyBagImpl& iAsked, const PropertyBagImpl& iOther,
                            bool iIsAskedRendered, bool iIsOtherRendered);
    static bool hEnterSubset(Levels& oLevels, const PropertyBagImpl& iWhole, const PropertyBagImpl& iPart);
    static bool hArePlainPropertiesEqual(const PropertyBagImpl& iAsked, const PropertyBagImpl& iOther, BagIndex& oIndex,
                                         bool iIsOtherRendered);
    static bool hArePlainPropertiesInside(const PropertyBagImpl& iWhole, const PropertyBagImpl& iPart,
                                          BagIndex& oWholeIndex);
};

} // namespace QTalBase

#endif
