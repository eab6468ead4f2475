#include "Data.h"

#include "Mail.h"

#include <cstdint>
#include <cwchar>

namespace Bench
{

namespace
{

// A small generator of our own (splitmix64), because the standard distributions differ from library to library.
class Random
{
public:
    std::size_t Below(std::size_t iLimit)
    {
        mState += 0x9E3779B97F4A7C15U;
        std::uint64_t lWord = mState;
        lWord = (lWord ^ (lWord >> 30)) * 0xBF58476D1CE4E5B9U;
        lWord = (lWord ^ (lWord >> 27)) * 0x94D049BB133111EBU;
        return static_cast<std::size_t>((lWord ^ (lWord >> 31)) % iLimit);
    }

    // Words of lower-case letters with blanks between them, neither at the front nor at the end.
    std::wstring Text(std::size_t iLength)
    {
        std::wstring lText(iLength, L' ');
        for (std::size_t lIndex = 0; lIndex < iLength; ++lIndex)
        {
            const bool lBlank = lIndex % 7 == 6 && lIndex + 1 < iLength;
            lText[lIndex] = lBlank ? L' ' : static_cast<wchar_t>(L'a' + static_cast<wchar_t>(Below(26)));
        }
        return lText;
    }

private:
    std::uint64_t mState = 1;
};

std::wstring Numbered(const wchar_t* ipPrefix, std::size_t iNumber)
{
    wchar_t lDigits[32];
    std::swprintf(lDigits, 32, L"%05zu", iNumber);
    return std::wstring(ipPrefix) + lDigits;
}

DataSet MakeDataSet(std::string iName, std::vector<Record> iDocuments)
{
    DataSet lSet{std::move(iName), std::move(iDocuments), 0, "property"};
    for (const Record& lDocument : lSet.mDocuments)
    {
        lSet.mUnits += CountTotals(lDocument, false).mProperties;
    }
    return lSet;
}

std::size_t CountBytes(const std::wstring& iText)
{
    std::size_t lBytes = 0;
    for (const wchar_t lCharacter : iText)
    {
        lBytes += lCharacter < 0x80 ? 1U : lCharacter < 0x800 ? 2U : lCharacter < 0x10000 ? 3U : 4U;
    }
    return lBytes;
}

void AddTotals(const Record& iRecord, bool iAsUtf8, Totals& oTotals)
{
    const auto lLength = [iAsUtf8](const std::wstring& iText) { return iAsUtf8 ? CountBytes(iText) : iText.size(); };
    oTotals.mProperties += iRecord.mValues.size() + iRecord.mRecords.size();
    for (const auto& [lName, lValue] : iRecord.mValues)
    {
        oTotals.mCharacters += lLength(lName) + lLength(lValue);
    }
    for (const Record& lNested : iRecord.mRecords)
    {
        oTotals.mCharacters += lLength(lNested.mName);
        AddTotals(lNested, iAsUtf8, oTotals);
    }
}

} // namespace

Record MakeSmallRecord()
{
    Record lSender{L"Sender",
                   {{L"Name", L"Anna Berg"},
                    {L"Address", L"anna.berg@example.org"},
                    {L"Host", L"mx3.example.org"},
                    {L"Authenticated", L"true"}},
                   {}};
    Record lRoute{L"Route",
                  {{L"Protocol", L"ESMTP"}, {L"Relay", L"relay.example.net"}, {L"Port", L"25"}, {L"Retries", L"3"}},
                  {}};
    return {L"",
            {{L"JobId", L"5f0c2d1e-7a41-4be3-9c1d-2f64d0a7b913"},
             {L"Queue", L"outbound"},
             {L"State", L"waiting"},
             {L"Priority", L"5"},
             {L"Subject", L"Delivery report for the second quarter"},
             {L"Created", L"2026-11-21T02:49:00Z"},
             {L"Expires", L"2026-11-26T02:49:00Z"},
             {L"Size", L"48213"},
             {L"ContentType", L"text/plain; charset=utf-8"},
             {L"Recipients", L"12"},
             {L"Language", L"en"},
             {L"Trace", L"gateway-07/spool/0001f3a2"}},
            {lSender, lRoute}};
}

Record MakeWideRecord(std::size_t iProperties)
{
    Random lRandom;
    Record lRecord;
    for (std::size_t lIndex = 0; lIndex < iProperties; ++lIndex)
    {
        lRecord.mValues.emplace_back(Numbered(L"Property", lIndex), lRandom.Text(1 + lRandom.Below(30)));
    }
    return lRecord;
}

Record MakeManyRecord(std::size_t iRecords)
{
    static const wchar_t* const gNames[] = {L"Id",   L"Name",  L"State", L"Queue",  L"Host",
                                            L"Size", L"Owner", L"Group", L"Remark", L"Checksum"};
    Random lRandom;
    Record lRecord;
    for (std::size_t lIndex = 0; lIndex < iRecords; ++lIndex)
    {
        Record lNested{Numbered(L"Record", lIndex), {}, {}};
        for (const wchar_t* lName : gNames)
        {
            lNested.mValues.emplace_back(lName, lRandom.Text(1 + lRandom.Below(20)));
        }
        lRecord.mRecords.push_back(std::move(lNested));
    }
    return lRecord;
}

Record MakeDeepRecord(std::size_t iLevels)
{
    Record lRecord{L"", {{L"Depth", std::to_wstring(iLevels)}}, {}};
    for (std::size_t lLevel = iLevels - 1; lLevel > 0; --lLevel)
    {
        Record lOuter{L"", {{L"Depth", std::to_wstring(lLevel)}}, {}};
        lRecord.mName = L"Level";
        lOuter.mRecords.push_back(std::move(lRecord));
        lRecord = std::move(lOuter);
    }
    return lRecord;
}

Record MakeBigValueRecord(std::size_t iLength)
{
    return {L"", {{L"Text", Random().Text(iLength)}}, {}};
}

std::vector<DataSet> MakeDataSets(const std::string& iMailFolder)
{
    constexpr std::size_t lBigLength = 10'000'000;
    std::vector<DataSet> lSets;
    lSets.push_back(MakeDataSet("SMALL", {MakeSmallRecord()}));
    lSets.push_back(MakeDataSet("WIDE", {MakeWideRecord(10'000)}));
    lSets.push_back(MakeDataSet("MANY", {MakeManyRecord(1'000)}));
    lSets.push_back(MakeDataSet("MAIL", ReadMailRecords(iMailFolder)));
    lSets.push_back(MakeDataSet("DEEP", {MakeDeepRecord(1'000)}));
    lSets.push_back({"BIGVALUE", {MakeBigValueRecord(lBigLength)}, lBigLength / 1'000, "1,000 characters"});
    return lSets;
}

Totals CountTotals(const Record& iRecord, bool iAsUtf8)
{
    Totals lTotals;
    AddTotals(iRecord, iAsUtf8, lTotals);
    return lTotals;
}

} // namespace Bench
