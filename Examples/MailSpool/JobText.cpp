#include "JobText.h"

#include "Errors.h"
#include "FileIO.h"

#include "TalBase/Bytes.h"

namespace MailSpool
{

namespace
{

// Every character of a message may become a reference of up to nine bytes.
constexpr std::size_t gMaxJobSize = gMaxMessageSize * 10;

} // namespace

std::string WriteJobText(const QTalBase::PropertyBag& iJob)
{
    return QTalBase::PropertyBagToUTF8(iJob);
}

BagPtr ReadJobText(std::string_view iBytes)
{
    BagPtr lJob(QTalBase::CreatePropertyBagFromUTF8(iBytes));
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
