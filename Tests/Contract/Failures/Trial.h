// An operation on trial: it runs again and again with its first allocation failing, then its second, and so on until
// it succeeds, once with that allocation failing alone and once with all from there on. Each time it works on things
// made anew, and after each failure
//
// - what can be seen of them is what the header promises: what was there before, or one of the states that it names;
// - the operation, run again, does what it does on things that no failure has touched;
// - nothing has leaked when they are gone.

#ifndef TESTS_CONTRACT_FAILURES_TRIAL_H
#define TESTS_CONTRACT_FAILURES_TRIAL_H

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Failures
{

// What an operation works on.
class Scene
{
public:
    virtual ~Scene() = default;

    virtual void Run() = 0;

    // Returns everything that can be seen of it, results included.
    virtual std::wstring See() const = 0;

    // Returns which objects it holds, for those whose identity is part of what is there.
    virtual std::vector<const void*> Identify() const = 0;
};

// Whether an operation allocates. Where it cannot fail, that is a promise.
enum class Kind
{
    CanFail,
    CannotFail,
    MayNotAllocate // for texts short enough to need no memory
};

struct Case
{
    std::string mOperation; // as Tests/Golden/Layout/VirtualSlots.txt or the symbol table writes it
    std::string mSituation;
    std::function<std::unique_ptr<Scene>()> mMake;
    Kind mKind = Kind::CanFail;
    bool mMayDoWithout = false;             // where memory only makes it faster
    bool mCopiesVector = false;             // with the vector's own constructor
    std::vector<std::wstring> mMayLeave;    // besides what was there before
    bool mLeavesEach = false;               // each of these by some failure
    std::vector<std::wstring> mMayComeLast; // what a second run may make of these, besides what the first one makes

    Case&& MayLeave(std::vector<std::wstring> iStates) &&
    {
        mMayLeave = std::move(iStates);
        return std::move(*this);
    }

    // For states that are a promise themselves: what was there before is not all that may be left.
    Case&& LeavesEachOf(std::vector<std::wstring> iStates) &&
    {
        mMayLeave = std::move(iStates);
        mLeavesEach = true;
        return std::move(*this);
    }

    Case&& MayComeLast(std::vector<std::wstring> iStates) &&
    {
        mMayComeLast = std::move(iStates);
        return std::move(*this);
    }

    Case&& CannotFail() &&
    {
        mKind = Kind::CannotFail;
        return std::move(*this);
    }

    Case&& MayDoWithout() &&
    {
        mMayDoWithout = true;
        return std::move(*this);
    }

    Case&& CopiesVector() &&
    {
        mCopiesVector = true;
        return std::move(*this);
    }

    Case&& MayNotAllocate() &&
    {
        mKind = Kind::MayNotAllocate;
        return std::move(*this);
    }
};

using Cases = std::vector<Case>;

// All operations, by who has them.
Cases MakeBagChangeCases();
Cases MakeBagReadCases();
Cases MakeRareBagCases();
Cases MakeCollectionCases();
Cases MakeValueCases();
Cases MakeConversionCases();
Cases MakeTemplateCases();
Cases MakeViewCases();
Cases MakeOutputCases();
Cases MakePlatformCases();

// A subject has See() and Identify(); iMake makes one for each run.
template <class Subject>
class SubjectScene : public Scene
{
public:
    SubjectScene(std::unique_ptr<Subject> iSubject, const std::function<void(Subject&)>& iRun)
        : mSubject(std::move(iSubject)), mRun(iRun)
    {
    }

    void Run() override
    {
        mRun(*mSubject);
    }

    std::wstring See() const override
    {
        return mSubject->See();
    }

    std::vector<const void*> Identify() const override
    {
        return mSubject->Identify();
    }

private:
    std::unique_ptr<Subject> mSubject;
    const std::function<void(Subject&)>& mRun; // the case outlives its scenes
};

template <class Subject>
Case On(const char* ipOperation, const char* ipSituation, std::function<std::unique_ptr<Subject>()> iMake,
        std::function<void(Subject&)> iRun)
{
    const auto lRun = std::make_shared<std::function<void(Subject&)>>(std::move(iRun));
    Case lCase;
    lCase.mOperation = ipOperation;
    lCase.mSituation = ipSituation;
    lCase.mMake = [lMake = std::move(iMake), lRun] { return std::make_unique<SubjectScene<Subject>>(lMake(), *lRun); };
    return lCase;
}

// Runs the trial; what is wrong fails the test that calls.
void Try(const Case& iCase);

} // namespace Failures

#endif
