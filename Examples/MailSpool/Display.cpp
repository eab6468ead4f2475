#include "Display.h"

#include "Table.h"

#include "QBase/Message.h"

#include <exception>

namespace MailSpool
{

namespace
{

// The library keeps the list of sensitive names and leaves them out of a rendering when asked to; so we ask.
bool IsSensitive(const wchar_t* ipName)
{
    const BagPtr lProbe(QTalBase::CreatePropertyBag());
    lProbe->SetProperty(ipName, L"probe", false);
    return lProbe->GetStringWithoutSensitiveInfo(false, nullptr, nullptr).GetLength() == 0;
}

} // namespace

BagPtr MakeDisplayBag(const QTalBase::PropertyBag& iBag)
{
    // Not a Clone: that shares its nested bags with the original, and removing a password from the clone's would take
    // it away from the job.
    BagPtr lCopy(QTalBase::CreatePropertyBag(iBag.GetBeginDelimiter(), iBag.GetEndDelimiter()));
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = iBag.GetName(lIndex);
        if (IsSensitive(lName.c_str()))
        {
            continue;
        }
        if (iBag.IsEmbedded(lIndex))
        {
            lCopy->EmbedProperty(lName.c_str(), MakeDisplayBag(*iBag.GetValuePropertyBag(lIndex)).get());
        }
        else
        {
            lCopy->SetProperty(lName.c_str(), iBag.GetValue(lIndex).c_str(), false);
        }
    }
    return lCopy;
}

std::wstring MakeDisplayMessage(const std::wstring& iMessage)
{
    for (const std::wstring_view lLabel : {L" - lPropertyString: ", L". ipValue: "})
    {
        const std::size_t lFound = iMessage.find(lLabel);
        if (lFound != iMessage.npos)
        {
            const std::size_t lKept = lFound + lLabel.size();
            return iMessage.substr(0, lKept) + L"(" + std::to_wstring(iMessage.size() - lKept) +
                   L" characters not shown)";
        }
    }
    return iMessage;
}

std::string DescribeException()
{
    try
    {
        throw;
    }
    catch (const QBase::Message& lMessage)
    {
        return ToUtf8(MakePrintable(MakeDisplayMessage(lMessage.GetMessage())));
    }
    catch (const std::exception& lException)
    {
        return ToUtf8(MakePrintable(DecodeBytes(lException.what()).mText));
    }
}

} // namespace MailSpool
