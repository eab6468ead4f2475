// Goes through a bag and everything in it, in the order in which the bag lists its properties, without recursion: a
// text from a stranger may nest a million levels.
//
//   for (BagWalk lWalk(lBag); lWalk.Next();)
//       switch (lWalk.GetStep()) ...

#ifndef TALBASETOOL_TEXT_BAGWALK_H
#define TALBASETOOL_TEXT_BAGWALK_H

#include "Text/Path.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace TalBaseTool
{

enum class Step
{
    Plain, // a plain property
    Enter, // a nested bag, whose properties come next
    Leave  // the end of that bag
};

class BagWalk
{
public:
    explicit BagWalk(const BagPtr& iBag)
    {
        constexpr std::size_t lFew = 8; // most bags are not nested deeper
        mFrames.reserve(lFew);
        mFrames.push_back(Frame{iBag, 0, iBag->GetCount()});
    }

    // Goes to the next step; returns false where there is none.
    bool Next();

    // After Enter: goes to that bag's end without its properties.
    void Skip()
    {
        mFrames.back().mNext = mFrames.back().mCount;
    }

    // After Plain or Leave: the property was taken out of its bag.
    void Removed()
    {
        --mFrames.back().mNext;
        --mFrames.back().mCount;
    }

    Step GetStep() const
    {
        return mStep;
    }

    // The property's name.
    const wchar_t* GetName() const
    {
        return mName.c_str();
    }

    // The value of a plain property, as it is stored.
    QBase::ReturnWString GetValue() const
    {
        return GetHolder()->GetValue(mFrames.back().mNext - 1);
    }

    // The nested bag, after Enter and after Leave.
    const BagPtr& GetBag() const
    {
        return mBag;
    }

    // The bag that holds the property.
    const BagPtr& GetHolder() const
    {
        return mFrames[mFrames.size() - (mStep == Step::Enter ? 2 : 1)].mBag;
    }

    // How many bags are around the property, besides the outermost one.
    std::size_t GetDepth() const
    {
        return mFrames.size() - (mStep == Step::Enter ? 2 : 1);
    }

    // Whether the property is the last one of its bag.
    bool IsLast() const
    {
        const Frame& lFrame = mFrames[mFrames.size() - (mStep == Step::Enter ? 2 : 1)];
        return lFrame.mNext == lFrame.mCount;
    }

    Path GetPath() const;

private:
    // A bag around the step. It has no name here, because a text may nest a million levels; the bag around it knows.
    struct Frame
    {
        BagPtr mBag;
        unsigned int mNext;
        unsigned int mCount;
    };

    // The name of the property that a bag is at.
    static QBase::ReturnWString hGetName(const Frame& iFrame)
    {
        return iFrame.mBag->GetName(iFrame.mNext - 1);
    }

    std::vector<Frame> mFrames;
    Step mStep = Step::Plain;
    QBase::ReturnWString mName{L""};
    BagPtr mBag;
};

// Says at each step of a walk whether the property is kept; of a bag at its beginning and at its end, in the same way.
using Keeps = std::function<bool(const BagWalk&)>;

// Finds the properties of a bag by name without a scan for each.
class NameIndex
{
public:
    static constexpr unsigned int gNone = 0xFFFFFFFF;

    explicit NameIndex(const QTalBase::PropertyBag& iBag);

    // The position of the property of that name, or gNone.
    unsigned int Find(const std::wstring& iName) const;

private:
    std::map<std::wstring, unsigned int> mPositions; // a stranger's names could be chosen to have hashes alike
};

// The path of the first property of a bag that another bag does not have in the same place with the same stored value.
std::optional<Path> FindChange(const BagPtr& iBag, const BagPtr& iOther);

} // namespace TalBaseTool

#endif
