#include "Runner.h"
#include "Sections.h"

#include <algorithm>

namespace Bench
{

namespace
{

constexpr double gSecondsPerOperation = 1; // all libraries together
constexpr double gSecondsPerTrial = 10;    // for one operation to show that it works
constexpr char gOurName[] = "TalBase";

// What a reader who knows one of the peers looks for first.
struct Comparison
{
    OperationKind mKind;
    const char* mPeer;
};

constexpr Comparison gComparisons[] = {{OperationKind::Parse, "pugixml wide"},
                                       {OperationKind::Parse, "RapidJSON UTF32"},
                                       {OperationKind::Parse, "Boost.PropertyTree wide"},
                                       {OperationKind::Parse, "nlohmann"},
                                       {OperationKind::Render, "RapidJSON UTF32"},
                                       {OperationKind::Render, "Boost.JSON"},
                                       {OperationKind::BytesIn, "Boost.JSON"},
                                       {OperationKind::BytesIn, "pugixml char"},
                                       {OperationKind::BytesOut, "Boost.JSON"},
                                       {OperationKind::Clone, "RapidJSON UTF32"},
                                       {OperationKind::Equality, "nlohmann ordered"},
                                       {OperationKind::LookUpHit, "RapidJSON UTF32"},
                                       {OperationKind::LookUpMiss, "RapidJSON UTF32"}};
constexpr const char* gComparedData[] = {"SMALL", "WIDE", "MANY", "MAIL"};

bool IsLookUp(OperationKind iKind)
{
    return iKind == OperationKind::LookUpHit || iKind == OperationKind::LookUpMiss;
}

// All that was measured, by operation and name of the data.
using Results = std::map<std::pair<OperationKind, std::string>, Samples>;

std::vector<OperationKind> SelectOperations(const Options& iOptions, const DataSet& iData)
{
    std::vector<OperationKind> lKinds;
    for (const OperationKind lKind : gOperationKinds)
    {
        const std::string lName = std::string("ratios/") + GetOperationName(lKind) + '/' + iData.mName;
        if (std::regex_search(lName, iOptions.mFilter) && (!IsLookUp(lKind) || iData.mName == "SMALL"))
        {
            lKinds.push_back(lKind);
        }
    }
    return lKinds;
}

void MeasureDataSet(const std::vector<Library>& iLibraries, const DataSet& iData,
                    const std::vector<OperationKind>& iKinds, Results& oResults)
{
    std::map<std::string, std::set<OperationKind>> lWorking;
    SubjectMap lSubjects;
    for (const Library& lLibrary : iLibraries)
    {
        ShowProgress(iData.mName + ": trying " + lLibrary.mName);
        lWorking[lLibrary.mName] = FindWorkingOperations(lLibrary, iData, iKinds, gSecondsPerTrial);
        if (!lWorking[lLibrary.mName].empty())
        {
            lSubjects[lLibrary.mName] = lLibrary.mBind(iData);
        }
    }
    for (const OperationKind lKind : iKinds)
    {
        ShowProgress(iData.mName + ": timing " + GetOperationName(lKind));
        SubjectMap lCandidates;
        for (const auto& [lName, lSubject] : lSubjects)
        {
            if (lWorking[lName].count(lKind) != 0)
            {
                lCandidates[lName] = lSubject;
            }
        }
        oResults[{lKind, iData.mName}] = Measure(lKind, lCandidates, gSecondsPerOperation);
    }
}

// A time, and in parentheses ours divided by it.
std::string MakeCell(const Results& iResults, OperationKind iKind, const std::string& iData,
                     const std::string& iLibrary)
{
    const auto lSamples = iResults.find({iKind, iData});
    if (lSamples == iResults.end() || lSamples->second.count(iLibrary) == 0)
    {
        return "-";
    }
    const std::vector<double>& lTimes = lSamples->second.at(iLibrary);
    std::string lCell = FormatShort(GetMedian(lTimes));
    const auto lOurs = lSamples->second.find(gOurName);
    if (iLibrary != gOurName && lOurs != lSamples->second.end())
    {
        lCell += " (" + Format(GetMedianRatio(lOurs->second, lTimes), 2) + ')';
    }
    return lCell;
}

Table MakeOperationTable(const Results& iResults, OperationKind iKind, const std::vector<Library>& iLibraries,
                         const std::vector<DataSet>& iData)
{
    Table lTable{std::string("Time of ") + GetOperationName(iKind), {"library"}, {}};
    for (const DataSet& lSet : iData)
    {
        if (!IsLookUp(iKind) || lSet.mName == "SMALL")
        {
            lTable.mHeader.push_back(lSet.mName);
        }
    }
    for (const Library& lLibrary : iLibraries)
    {
        std::vector<std::string> lRow{lLibrary.mName};
        for (std::size_t lColumn = 1; lColumn < lTable.mHeader.size(); ++lColumn)
        {
            lRow.push_back(MakeCell(iResults, iKind, lTable.mHeader[lColumn], lLibrary.mName));
        }
        if (std::any_of(lRow.begin() + 1, lRow.end(), [](const std::string& iCell) { return iCell != "-"; }))
        {
            lTable.mRows.push_back(std::move(lRow));
        }
    }
    return lTable;
}

std::string FormatRatio(const Results& iResults, const Comparison& iComparison, const char* ipData)
{
    const auto lFound = iResults.find({iComparison.mKind, ipData});
    if (lFound == iResults.end() || lFound->second.count(gOurName) == 0 || lFound->second.count(iComparison.mPeer) == 0)
    {
        return "-";
    }
    return Format(GetMedianRatio(lFound->second.at(gOurName), lFound->second.at(iComparison.mPeer)), 2);
}

Table MakeComparisonTable(const Results& iResults)
{
    Table lTable{"Our time divided by the peer's: below 1 we are faster", {"operation", "peer"}, {}};
    lTable.mHeader.insert(lTable.mHeader.end(), std::begin(gComparedData), std::end(gComparedData));
    for (const Comparison& lComparison : gComparisons)
    {
        std::vector<std::string> lRow{GetOperationName(lComparison.mKind), lComparison.mPeer};
        for (const char* lData : gComparedData)
        {
            lRow.push_back(FormatRatio(iResults, lComparison, lData));
        }
        lTable.mRows.push_back(std::move(lRow));
    }
    return lTable;
}

Table MakeVersionTable(const std::vector<Library>& iLibraries)
{
    Table lTable{"The peers", {"library", "version"}, {}};
    for (const Library& lLibrary : iLibraries)
    {
        if (!lLibrary.mVersion.empty())
        {
            std::string lVersion = lLibrary.mVersion;
            std::replace(lVersion.begin(), lVersion.end(), '_', '.'); // as Boost writes it
            lTable.mRows.push_back({lLibrary.mName, lVersion});
        }
    }
    return lTable;
}

} // namespace

std::vector<Table> MakeRatioTables(const Options& iOptions)
{
    const std::vector<Library> lLibraries = MakeLibraries();
    const std::vector<DataSet> lData = MakeDataSets(iOptions.mMailFolder);
    Results lResults;
    for (const DataSet& lSet : lData)
    {
        const std::vector<OperationKind> lKinds = SelectOperations(iOptions, lSet);
        if (!lKinds.empty())
        {
            MeasureDataSet(lLibraries, lSet, lKinds, lResults);
        }
    }
    if (lResults.empty())
    {
        return {};
    }
    std::vector<Table> lTables{MakeComparisonTable(lResults)};
    for (const OperationKind lKind : gOperationKinds)
    {
        Table lTable = MakeOperationTable(lResults, lKind, lLibraries, lData);
        if (!lTable.mRows.empty())
        {
            lTables.push_back(std::move(lTable));
        }
    }
    lTables.push_back(MakeVersionTable(lLibraries));
    return lTables;
}

} // namespace Bench
