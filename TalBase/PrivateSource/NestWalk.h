// Walks through the nests of a bag, at every depth and in their order, without recursion: a million levels take memory,
// and no stack.

#ifndef TALBASE_PRIVATESOURCE_NESTWALK_H
#define TALBASE_PRIVATESOURCE_NESTWALK_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/SmallStack.h"

#include <cstddef>

namespace QTalBase
{

// State: BagState, or const BagState where the walk changes nothing.
template <class State>
class NestWalk
{
public:
    // For each nest calls iEnter(bag around it, index in that bag), walks through the nests inside, and calls iLeave
    // with the same. Where iEnter returns false the walk ends at once, and returns false.
    //
    // A walk over a bag that has been walked over before, by the same object, allocates nothing.
    template <class Enter, class Leave>
    bool Over(State& iBag, const Enter& iEnter, const Leave& iLeave)
    {
        mAround.CutTo(0);
        Level lLevel{&iBag, 0};
        std::size_t lCount = iBag.mNests.GetCount();
        for (;;)
        {
            while (lLevel.mNextNest != lCount)
            {
                State& lBag = *lLevel.mBag;
                const std::size_t lIndex = lLevel.mNextNest++;
                if (!iEnter(lBag, lIndex))
                {
                    return false;
                }
                State* lNest = &lBag.mNests.GetNest(lIndex);
                if (lNest->mNests.IsEmpty())
                {
                    iLeave(lBag, lIndex);
                    continue;
                }
                mAround.Push(Level(lLevel)); // a copy, so that the level itself can stay in registers
                lLevel = Level{lNest, 0};
                lCount = lNest->mNests.GetCount();
            }
            if (mAround.GetCount() == 0)
            {
                return true;
            }
            lLevel = mAround.Top();
            lCount = lLevel.mBag->mNests.GetCount();
            mAround.CutTo(mAround.GetCount() - 1);
            iLeave(*lLevel.mBag, lLevel.mNextNest - 1);
        }
    }

    template <class Enter>
    bool Over(State& iBag, const Enter& iEnter)
    {
        return Over(iBag, iEnter, [](const BagState&, std::size_t) {});
    }

private:
    struct Level
    {
        State* mBag;
        std::size_t mNextNest;
    };

    SmallStack<Level, 8> mAround; // the levels around the one that the walk is in
};

} // namespace QTalBase

#endif
