#include "Spool.h"

#include "Errors.h"
#include "FileIO.h"

#include "QBase/Convert.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace MailSpool
{

namespace
{

constexpr char gExtension[] = ".bag";

// Every character of a message may become a reference of up to nine bytes.
constexpr std::size_t gMaxJobSize = gMaxMessageSize * 10;

// Unlike any name that this process or another gives, now or later, and in the order of time: so adding needs no lock.
std::string MakeName(unsigned int iNumber)
{
    const auto lNow = std::chrono::system_clock::now().time_since_epoch();
    const auto lMicroseconds = std::chrono::duration_cast<std::chrono::microseconds>(lNow).count();
    char lName[80];
    std::snprintf(lName, sizeof lName, "%018lld-%d-%05u%s", static_cast<long long>(lMicroseconds),
                  static_cast<int>(::getpid()), iNumber, gExtension);
    return lName;
}

} // namespace

Spool::Spool(std::filesystem::path iFolder) : mFolder(std::move(iFolder)) {}

void Spool::Create()
{
    std::error_code lError;
    if (std::filesystem::create_directories(mFolder, lError))
    {
        std::filesystem::permissions(mFolder, std::filesystem::perms::owner_all, lError);
    }
    if (lError || !std::filesystem::is_directory(mFolder))
    {
        throw IoError("cannot make the folder " + mFolder.string() + (lError ? ": " + lError.message() : ""));
    }
}

std::string Spool::Add(const QTalBase::PropertyBag& iJob)
{
    const std::string lName = MakeName(++mAdded);
    ReplaceFile(GetPath(lName), WriteJobText(iJob));
    return lName;
}

std::vector<std::string> Spool::GetNames() const
{
    std::error_code lError;
    std::vector<std::string> lNames;
    for (std::filesystem::directory_iterator lEntry(mFolder, lError), lEnd; !lError && lEntry != lEnd;
         lEntry.increment(lError))
    {
        // Anything else is not ours: a temporary file that a crash left behind has no such name.
        if (lEntry->path().extension() == gExtension)
        {
            lNames.push_back(lEntry->path().filename().string());
        }
    }
    if (lError)
    {
        throw IoError("cannot read the folder " + mFolder.string() + ": " + lError.message());
    }
    std::sort(lNames.begin(), lNames.end());
    return lNames;
}

BagPtr Spool::Read(const std::string& iName) const
{
    return ReadJobText(ReadFile(GetPath(iName), gMaxJobSize));
}

std::filesystem::path Spool::GetPath(const std::string& iName) const
{
    return mFolder / iName;
}

std::string WriteJobText(const QTalBase::PropertyBag& iJob)
{
    return EncodeText(iJob.GetString(true, nullptr, nullptr, true), Charset::Utf8);
}

BagPtr ReadJobText(std::string_view iBytes)
{
    const std::wstring lText = QBase::UTF8ToWideChar(iBytes, true);
    if (lText.find(L'\0') != lText.npos)
    {
        // The library would stop reading here, and the rest would be gone without a word.
        throw DamageError("there is a zero character in the text");
    }
    BagPtr lJob(QTalBase::CreatePropertyBag(lText.c_str()));
    CheckJob(*lJob);
    return lJob;
}

} // namespace MailSpool
