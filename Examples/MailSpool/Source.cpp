#include "Source.h"

#include "Errors.h"
#include "FileIO.h"

#include <algorithm>
#include <cstdio>

namespace MailSpool
{

namespace
{

using Paths = std::vector<std::filesystem::path>;

bool IsHidden(const std::filesystem::path& iPath)
{
    return iPath.filename().string().substr(0, 1) == ".";
}

Paths FindFilesIn(const std::filesystem::path& iFolder)
{
    Paths lFiles;
    std::error_code lError;
    std::filesystem::recursive_directory_iterator lEntry(iFolder, lError);
    for (const std::filesystem::recursive_directory_iterator lEnd; !lError && lEntry != lEnd; lEntry.increment(lError))
    {
        std::error_code lIgnored;
        if (IsHidden(lEntry->path()))
        {
            lEntry.disable_recursion_pending();
        }
        else if (lEntry->is_regular_file(lIgnored))
        {
            lFiles.push_back(lEntry->path());
        }
    }
    if (lError)
    {
        throw IoError("cannot read the folder " + iFolder.string() + ": " + lError.message());
    }
    if (lFiles.empty())
    {
        throw IoError("there is no file in the folder " + iFolder.string());
    }
    std::sort(lFiles.begin(), lFiles.end());
    return lFiles;
}

} // namespace

Paths FindFiles(const Paths& iPaths)
{
    Paths lFiles;
    for (const std::filesystem::path& lPath : iPaths)
    {
        std::error_code lIgnored;
        const Paths lFound = std::filesystem::is_directory(lPath, lIgnored) ? FindFilesIn(lPath) : Paths{lPath};
        lFiles.insert(lFiles.end(), lFound.begin(), lFound.end());
    }
    return lFiles;
}

MailMessage ReadMessage(const std::filesystem::path& iPath)
{
    return ParseMessage(ReadFile(iPath, gMaxMessageSize));
}

std::wstring GetSourceName(const std::filesystem::path& iPath)
{
    const DecodedText lPath = DecodeBytes(std::filesystem::weakly_canonical(iPath).string());
    std::wstring lName;
    for (const wchar_t lCharacter : lPath.mText)
    {
        if (lCharacter == L'%' || (lPath.mCharset == Charset::Latin1 && lCharacter > 127))
        {
            wchar_t lNumber[8];
            std::swprintf(lNumber, std::size(lNumber), L"%%%02X", static_cast<unsigned int>(lCharacter));
            lName += lNumber;
        }
        else
        {
            lName += lCharacter;
        }
    }
    return lName;
}

} // namespace MailSpool
