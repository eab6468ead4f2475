#include "Mail.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

namespace Bench
{

namespace
{

std::wstring Trim(const std::wstring& iText)
{
    const wchar_t* const lBlanks = L" \t\n";
    const std::size_t lFirst = iText.find_first_not_of(lBlanks);
    return lFirst == std::wstring::npos ? L"" : iText.substr(lFirst, iText.find_last_not_of(lBlanks) - lFirst + 1);
}

std::wstring Widen(const std::string& iMessage)
{
    std::wstring lText;
    for (const char lByte : iMessage)
    {
        const wchar_t lCharacter = static_cast<unsigned char>(lByte);
        if (lCharacter >= 32 || lCharacter == L'\n' || lCharacter == L'\t')
        {
            lText += lCharacter;
        }
    }
    for (std::size_t lPosition = 0; (lPosition = lText.find(L"&#4", lPosition)) != std::wstring::npos; ++lPosition)
    {
        lText[lPosition] = L'%';
    }
    return lText;
}

bool IsFieldName(const std::wstring& iText)
{
    const auto lIsLetter = [](wchar_t iCharacter) { return iCharacter < 128 && std::isalpha(iCharacter) != 0; };
    return !iText.empty() && lIsLetter(iText[0]) && std::all_of(iText.begin(), iText.end(), [](wchar_t iCharacter) {
        return iCharacter < 128 && (std::isalnum(iCharacter) != 0 || iCharacter == L'-');
    });
}

// Collects fields under names that occur once; an empty value is none.
class FieldCollector
{
public:
    void Add(const std::wstring& iLine)
    {
        const std::size_t lColon = iLine.find(L':');
        if (lColon == std::wstring::npos || !IsFieldName(iLine.substr(0, lColon)))
        {
            return;
        }
        std::wstring lValue = Trim(iLine.substr(lColon + 1));
        if (!lValue.empty())
        {
            mFields.mValues.emplace_back(FreeName(iLine.substr(0, lColon)), std::move(lValue));
        }
    }

    Record Take()
    {
        return std::move(mFields);
    }

private:
    std::wstring FreeName(const std::wstring& iName)
    {
        std::wstring lName = iName;
        for (unsigned int lNumber = 2; !mNames.insert(lName).second; ++lNumber)
        {
            lName = iName + L'-' + std::to_wstring(lNumber);
        }
        return lName;
    }

    Record mFields;
    std::set<std::wstring> mNames;
};

Record ReadFields(const std::wstring& iHeader)
{
    FieldCollector lCollector;
    std::wstring lField;
    for (std::size_t lPosition = 0; lPosition < iHeader.size();)
    {
        const std::size_t lEnd = std::min(iHeader.find(L'\n', lPosition), iHeader.size());
        const bool lFolded = iHeader[lPosition] == L' ' || iHeader[lPosition] == L'\t';
        if (!lFolded)
        {
            lCollector.Add(lField);
            lField.clear();
        }
        lField += (lFolded ? L"\n" : L"") + iHeader.substr(lPosition, lEnd - lPosition);
        lPosition = lEnd + 1;
    }
    lCollector.Add(lField);
    return lCollector.Take();
}

} // namespace

Record MakeMailRecord(const std::string& iMessage)
{
    const std::wstring lText = Widen(iMessage);
    const std::size_t lHeaderEnd = std::min(lText.find(L"\n\n"), lText.size());
    Record lMail{L"", {{L"Format", L"mail"}}, {}};
    const std::wstring lBody = Trim(lText.substr(lHeaderEnd));
    if (!lBody.empty())
    {
        lMail.mValues.emplace_back(L"Body", lBody);
    }
    Record lFields = ReadFields(lText.substr(0, lHeaderEnd));
    if (!lFields.mValues.empty())
    {
        lFields.mName = L"Header";
        lMail.mRecords.push_back(std::move(lFields));
    }
    return lMail;
}

std::vector<Record> ReadMailRecords(const std::string& iFolder)
{
    std::vector<std::filesystem::path> lFiles;
    for (const auto& lEntry : std::filesystem::directory_iterator(iFolder))
    {
        if (lEntry.is_regular_file())
        {
            lFiles.push_back(lEntry.path());
        }
    }
    if (lFiles.empty())
    {
        throw std::runtime_error("no message in " + iFolder);
    }
    std::sort(lFiles.begin(), lFiles.end());
    std::vector<Record> lRecords;
    for (const std::filesystem::path& lPath : lFiles)
    {
        std::ifstream lStream(lPath, std::ios::binary);
        lRecords.push_back(MakeMailRecord({std::istreambuf_iterator<char>(lStream), {}}));
    }
    return lRecords;
}

} // namespace Bench
