// Compares two bags whose class overrides nothing, with all their nests, without recursion.
//
// Equality is asked of one side: its values are taken as they are stored, the other side's as reading by name gives
// them. So under the default pair {'a'='x&#42;y'} is unequal to itself, since "x&#42;y" is not "x*y". In nests the
// sides change, as the other bag's nest is asked about this one's: {'n'={'a'='x&#42;y'}} under the default pair is
// equal to {'n'={'a'='x*y'}} under another one, which is unequal to it. See "Escapes" in Docs/TextFormat.md.
//
// Invariant: answers, and throws, as the operations would if each called itself on the nests. The names that a level
// looks up in the other bag are looked up as a scan from the front would, so a name that occurs twice gives the same.

#ifndef TALBASE_PRIVATESOURCE_BAGCOMPARER_H
#define TALBASE_PRIVATESOURCE_BAGCOMPARER_H

#include "TalBase/PrivateSource/BagIndex.h"
#include "TalBase/PrivateSource/BagState.h"

#include <string_view>
#include <vector>

namespace QTalBase
{

class BagComparer
{
public:
    // What iAsked.operator==(iOther) answers.
    static bool AreEqual(const BagState& iAsked, const BagState& iOther);

    // What iWhole.IsSubset(&iPart) answers.
    static bool IsSubset(const BagState& iWhole, const BagState& iPart);

private:
    // Two bags whose plain properties have been compared and whose nests are.
    struct Level
    {
        const BagState* mLeft;
        const BagState* mRight;
        std::size_t mNextNest;
        bool mIsLeftRendered; // its nests are known to render without failing
        bool mIsRightRendered;
        BagIndex mIndex;
    };

    using Levels = std::vector<Level>;

    // Whether the pair's counts and plain properties allow it to be equal, or a subset; then it becomes a level.
    static bool hEnterEqual(Levels& oLevels, const BagState& iAsked, const BagState& iOther, bool iIsAskedRendered,
                            bool iIsOtherRendered);
    static bool hEnterSubset(Levels& oLevels, const BagState& iWhole, const BagState& iPart);
    static bool hArePlainPropertiesEqual(const BagState& iAsked, const BagState& iOther, BagIndex& oIndex,
                                         bool iIsOtherRendered);
    static bool hArePlainPropertiesInside(const BagState& iWhole, const BagState& iPart, BagIndex& oWholeIndex);
};

} // namespace QTalBase

#endif
