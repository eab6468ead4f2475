#include "JobText.h"

#include "Errors.h"
#include "FileIO.h"

#include "QBase/Convert.h"

namespace MailSpool
{

namespace
{

// Every character of a message may become a reference of up to nine bytes.
constexpr std::size_t gMaxJobSize = gMaxMessageSize * 10;

} // namespace

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

void WriteJobFile(const std::filesystem::path& iFolder, const QTalBase::PropertyBag& iJob)
{
    // CheckJob has made sure that the identifier is one, so it names a file in this folder and nothing else.
    CheckJob(iJob);
    ReplaceFile(iFolder / (ToUtf8(GetText(iJob, gJobName)) + ".bag"), WriteJobText(iJob));
}

BagPtr ReadJobFile(const std::filesystem::path& iPath)
{
    return ReadJobText(ReadFile(iPath, gMaxJobSize));
}

} // namespace MailSpool
