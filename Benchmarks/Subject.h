// What is measured: a subject is one library bound to one data set; it offers those of the operations that the library
// has. The operations are timed side by side (Runner.h), after each has shown that it does what it should.

#ifndef BENCHMARKS_SUBJECT_H
#define BENCHMARKS_SUBJECT_H

#include "Data.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Bench
{

enum class OperationKind
{
    Parse,      // text to document, and its destruction
    Render,     // document to an owned text
    BytesIn,    // UTF-8 to document, and its destruction; for who reads UTF-8 anyway that is parsing
    BytesOut,   // document to owned UTF-8; for who writes UTF-8 anyway that is rendering
    LookUpHit,  // the value of a name as an owned text
    LookUpMiss, // the same for a name that is not there
    Clone,      // a copy without nested records (the bag: Clone of each record's plain values; the peers: a deep copy)
    Copy,       // a deep copy (the bag: FilteredClone with all names), and its destruction
    Equality,   // compared with an equal document of its own
    Merge,      // a document into another one that holds the same names
    StreamOut,  // document to bytes
    StreamIn    // bytes to document, and its destruction
};

inline constexpr OperationKind gOperationKinds[] = {
    OperationKind::Parse,     OperationKind::Render,     OperationKind::BytesIn,   OperationKind::BytesOut,
    OperationKind::LookUpHit, OperationKind::LookUpMiss, OperationKind::Clone,     OperationKind::Copy,
    OperationKind::Equality,  OperationKind::Merge,      OperationKind::StreamOut, OperationKind::StreamIn};

const char* GetOperationName(OperationKind iKind);

struct Operation
{
    std::function<void(std::size_t)> mPrepare; // what must be there before so many runs, untimed; may be empty
    std::function<void(std::size_t)> mRun;     // runs so many times over all documents of the data set
    std::size_t mUnits = 1;                    // of one run
};

class Subject
{
public:
    virtual ~Subject() = default;

    // Returns the operation, or one without mRun where the library has none. It lives as long as the subject.
    virtual Operation Make(OperationKind iKind) = 0;

    // Runs the operation once and returns whether the result has the data's content.
    virtual bool Check(OperationKind iKind) = 0;
};

struct Library
{
    std::string mName;
    std::string mVersion; // empty for our own
    std::function<std::unique_ptr<Subject>(const DataSet&)> mBind;
};

// Returns the library itself first, then the lower bounds, then the peers that were found when this program was built.
std::vector<Library> MakeLibraries();

// Keeps the compiler from dropping a result that nobody reads.
template <class T>
inline void Keep(const T& iValue)
{
    asm volatile("" : : "r,m"(iValue) : "memory");
}

} // namespace Bench

#endif
