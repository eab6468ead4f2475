// The data that every library is measured on: generated, the same on every machine and in every run, except for the
// mail, which is read from a folder of messages. Each library gets the same names and values in the same order, written
// in its own language (Texts.h).

#ifndef BENCHMARKS_DATA_H
#define BENCHMARKS_DATA_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Bench
{

// What one document holds: plain values first, then nested records, as a bag keeps them. Names are letters, digits and
// '-', the first a letter, and occur once; values are not empty and neither begin nor end with a blank: what each of
// the languages can carry without losing a character.
struct Record
{
    std::wstring mName; // empty for the document itself
    std::vector<std::pair<std::wstring, std::wstring>> mValues;
    std::vector<Record> mRecords;
};

inline bool operator==(const Record& iLeft, const Record& iRight)
{
    return iLeft.mName == iRight.mName && iLeft.mValues == iRight.mValues && iLeft.mRecords == iRight.mRecords;
}

// How much a document holds. Two documents of the same content have the same totals, so a library that drops or cuts
// something is found out before it is timed.
struct Totals
{
    std::size_t mProperties = 0; // plain values and nested records, at every depth
    std::size_t mCharacters = 0; // of all names and values

    bool operator==(const Totals&) const = default;
};

struct DataSet
{
    std::string mName;
    std::vector<Record> mDocuments;
    std::size_t mUnits; // what a time is divided by
    std::string mUnitName;
};

// Return one document each.
Record MakeSmallRecord();                       // a job with two nested bags
Record MakeWideRecord(std::size_t iProperties); // plain values only
Record MakeManyRecord(std::size_t iRecords);    // nested records of ten values each
Record MakeDeepRecord(std::size_t iLevels);     // one value and one nested record at each level
Record MakeBigValueRecord(std::size_t iLength); // one value

// Returns a document per message found directly in the folder, in the order of the file names. Throws
// std::runtime_error where there is none.
std::vector<Record> ReadMailRecords(const std::string& iFolder);

// Returns all data sets: SMALL, WIDE, MANY, DEEP, BIGVALUE and MAIL.
std::vector<DataSet> MakeDataSets(const std::string& iMailFolder);

// Counts a document's characters, or with iAsUtf8 the bytes that they take in UTF-8.
Totals CountTotals(const Record& iRecord, bool iAsUtf8);

} // namespace Bench

#endif
