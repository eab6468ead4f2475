// Times operations side by side: a little of each in turn, again and again, so that what disturbs the machine disturbs
// all of them alike. What counts is the median.

#ifndef BENCHMARKS_RUNNER_H
#define BENCHMARKS_RUNNER_H

#include "Subject.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Bench
{

// Times of one operation on one data set, by library, in nanoseconds of processor time per unit, a sample for each
// round. All libraries have the same number of samples, and those of equal position were taken next to each other.
using Samples = std::map<std::string, std::vector<double>>;

using SubjectMap = std::map<std::string, std::shared_ptr<Subject>>;

double GetMedian(std::vector<double> iValues);

// Returns the median of what the first took in each round compared with the second.
double GetMedianRatio(const std::vector<double>& iFirst, const std::vector<double>& iSecond);

// Runs one operation of all these subjects in rounds of a few milliseconds each, for as many seconds in all as the
// limit says; at least three rounds. Subjects that lack the operation are left out.
Samples Measure(OperationKind iKind, const SubjectMap& iSubjects, double iSeconds);

// Binds the library to the data in a child process and tries those operations there. Returns those whose result is
// right; an operation that crashes or takes longer than the limit ends the child, and it and those after it are
// missing.
std::set<OperationKind> FindWorkingOperations(const Library& iLibrary, const DataSet& iData,
                                              const std::vector<OperationKind>& iKinds, double iSecondsEach);

} // namespace Bench

#endif
