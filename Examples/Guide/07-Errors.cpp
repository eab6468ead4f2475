// What goes wrong, and what a log may say of it.

#include "Job.h"

#include "TalBase/DeliveryWindow.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace
{

// [logging]
// Two of the messages go on with a value or a whole text behind a label. That is nothing for a log.
std::wstring ForLog(const QBase::Message& iMessage)
{
    const std::wstring lText = iMessage.GetMessage();
    return lText.substr(0, lText.find(L": "));
}

template <class Action>
void Try(Action iAction)
{
    try
    {
        iAction();
    }
    catch (const QTalBase::PropertyBagUserErrorException& lError)
    {
        std::printf("our mistake: %ls\n", ForLog(lError).c_str());
    }
    catch (const QTalBase::PropertyBagException& lError) // the base of the one above: after it
    {
        std::printf("bad data: %ls\n", ForLog(lError).c_str());
    }
    catch (const QBase::Message& lError) // whatever else the library throws
    {
        std::printf("other: %ls\n", ForLog(lError).c_str());
    }
    catch (const std::exception&) // memory, and a header that is cut off
    {
        std::printf("from the standard library\n");
    }
}
// [logging]

} // namespace

int main()
{
    const QTalBase::Initializer lInitializer;
    const BagPtr lJob = MakeJob(L"ann@north.example", L"Timetable");
    // [trying]
    Try([&] { lJob->GetPropertyBag(L"Header"); });
    Try([&] { lJob->SetProperty(L"a***b", L"1", false); });
    Try([&] { QTalBase::CreatePropertyBag(L"FTPServerPassword++++open sesame***"); });
    Try([&] { lJob->AddString(L"Subject++++Menu***Header++++"); });
    Try([&] { QTalBase::CreatePropertyBag(L"EndDelimiter***Begin"); });
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    Try([&] { lWindow->EnableTimeBlock(8, 24); });
    std::printf("the subject is still '%ls'\n", lJob->GetProperty(L"Subject").c_str());
    // [trying]
}
