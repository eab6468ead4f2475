// Brings failures about and notes what they show. The parts of the library are provoked in files of their own.

#ifndef TESTS_CONTRACT_DOCUMENTS_PROVOKER_H
#define TESTS_CONTRACT_DOCUMENTS_PROVOKER_H

#include "Tests/Contract/Documents/BagNotation.h"
#include "Tests/Contract/Documents/Provocations.h"
#include "Tests/Support/Describe.h"

#include <functional>
#include <string>
#include <vector>

namespace Documents
{

using State = std::function<std::wstring()>;
using Action = std::function<void()>;

class Provoker
{
public:
    // iPlaceholders: what the message is expected to have been given. Throws std::runtime_error where nothing is
    // thrown.
    void Provoke(const std::string& iOperation, const State& iState, const Action& iAction,
                 const Placeholders& iPlaceholders = Placeholders());

    // For what has no state of its own: factories, free functions.
    void Provoke(const std::string& iOperation, const Action& iAction,
                 const Placeholders& iPlaceholders = Placeholders())
    {
        Provoke(
            iOperation, [] { return std::wstring(); }, iAction, iPlaceholders);
    }

    void Provoke(const std::string& iOperation, const Support::BagPtr& iBag, const Action& iAction)
    {
        Provoke(
            iOperation, [&] { return Support::Describe(*iBag); }, iAction);
    }

    std::vector<Observation> Take()
    {
        return std::move(mObservations);
    }

private:
    std::vector<Observation> mObservations;
};

// A bag that has everything; plain "a" is at position 0, the nested bag "n" at 1.
inline Support::BagPtr SampleBag()
{
    return MakeBag(L"{'a'='1' 'n'={'k'='v'}}", gBegin, gEnd);
}

// What bags throw when they are set, read, written and compared.
void ProvokeBags(Provoker& oProvoker);

} // namespace Documents

#endif
