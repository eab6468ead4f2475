// The operations of buffers and delivery windows.

#include "Tests/Contract/Failures/Subjects.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/DeliveryWindow.h"

#include <stdexcept>

namespace Failures
{

namespace
{

using QBase::SmartPtrI;
using Support::Quoted;

// A text buffer.

using BufferPtr = SmartPtrI<QTalBase::BufferedWString>;

struct BufferSubject
{
    std::wstring See() const
    {
        return Quoted(mBuffer->c_str()) + L" " + std::to_wstring(mBuffer->size()) + L" " +
               std::to_wstring(mBuffer->capacity()) + (mMade ? L" made " : L" ") + std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    BufferPtr mBuffer = QTalBase::CreateBufferedWString(4, 3);
    BufferPtr mMade;
    std::wstring mText = L"defgh";
    QBase::ReturnWString mReturned = L"defghi";
    long mNumber = -1;
};

Case OnBuffer(const char* ipOperation, const char* ipSituation, const std::function<void(BufferSubject&)>& iRun)
{
    return On<BufferSubject>(
        ipOperation, ipSituation,
        [] {
            auto lSubject = std::make_unique<BufferSubject>();
            *lSubject->mBuffer += L"abc";
            return lSubject;
        },
        iRun);
}

void AddBuffers(Cases& oCases)
{
    oCases.push_back(OnBuffer("QTalBase::CreateBufferedWString()", "",
                              [](BufferSubject& oSubject) { oSubject.mMade = QTalBase::CreateBufferedWString(); }));
    const char* const lCreate = "QTalBase::CreateBufferedWString(unsigned long, unsigned long)";
    oCases.push_back(OnBuffer(
        lCreate, "", [](BufferSubject& oSubject) { oSubject.mMade = QTalBase::CreateBufferedWString(100, 0); }));
    oCases.push_back(OnBuffer(lCreate, "both 0", [](BufferSubject& oSubject) {
        try
        {
            oSubject.mMade = QTalBase::CreateBufferedWString(0, 0);
        }
        catch (const std::invalid_argument&)
        {
            oSubject.mNumber = 1;
        }
    }));
    const char* const lAppend = "QTalBase::BufferedWString::operator+=(const wchar_t*)";
    oCases.push_back(OnBuffer(lAppend, "", [](BufferSubject& oSubject) { *oSubject.mBuffer += L"defg"; }));
    oCases.push_back(
        OnBuffer(lAppend, "what fits", [](BufferSubject& oSubject) { *oSubject.mBuffer += L"d"; }).CannotFail());
    oCases.push_back(OnBuffer(lAppend, "its own text",
                              [](BufferSubject& oSubject) { *oSubject.mBuffer += oSubject.mBuffer->c_str(); }));
    oCases.push_back(OnBuffer("QTalBase::BufferedWString::operator+=(const std::wstring&)", "",
                              [](BufferSubject& oSubject) { *oSubject.mBuffer += oSubject.mText; }));
    oCases.push_back(OnBuffer("QTalBase::BufferedWString::operator+=(const QBase::ReturnWString&)", "",
                              [](BufferSubject& oSubject) { *oSubject.mBuffer += oSubject.mReturned; }));
    oCases.push_back(OnBuffer("QTalBase::BufferedWString::c_str() const", "", [](BufferSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(*oSubject.mBuffer->c_str());
                     }).CannotFail());
    oCases.push_back(OnBuffer("QTalBase::BufferedWString::size() const", "", [](BufferSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(oSubject.mBuffer->size());
                     }).CannotFail());
    oCases.push_back(OnBuffer("QTalBase::BufferedWString::capacity() const", "", [](BufferSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(oSubject.mBuffer->capacity());
                     }).CannotFail());
    oCases.push_back(OnBuffer("QTalBase::BufferedWString::AddRef() const", "", [](BufferSubject& oSubject) {
                         oSubject.mMade = oSubject.mBuffer;
                     }).CannotFail());
    oCases.push_back(On<BufferSubject>(
                         "QTalBase::BufferedWString::Release() const", "the last reference",
                         [] {
                             auto lSubject = std::make_unique<BufferSubject>();
                             lSubject->mMade = QTalBase::CreateBufferedWString(4, 3);
                             return lSubject;
                         },
                         [](BufferSubject& oSubject) { oSubject.mMade = nullptr; })
                         .CannotFail());
}

// A delivery window.

using WindowPtr = SmartPtrI<QTalBase::DeliveryWindow>;

std::wstring SeeWindow(const WindowPtr& iWindow)
{
    std::wstring lSeen = iWindow ? L"" : L"null";
    for (unsigned int lHour = 0; iWindow && lHour < 32; ++lHour)
    {
        lSeen += iWindow->IsEnabled(lHour) ? L'+' : L'-';
    }
    return lSeen;
}

struct WindowSubject
{
    std::wstring See() const
    {
        return SeeWindow(mWindow) + L" bag " + SeeBag(mBag) + L" answers " + SeeWindow(mAnswer) +
               std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {mBag.get()};
    }

    WindowPtr mWindow = QTalBase::CreateDeliveryWindow();
    BagPtr mBag;
    WindowPtr mAnswer;
    long mNumber = -1;
};

// Noon is disabled, and the bag holds a window with the night disabled or a property that is none.
std::unique_ptr<WindowSubject> Noon()
{
    auto lSubject = std::make_unique<WindowSubject>();
    const WindowPtr lNight(QTalBase::CreateDeliveryWindow());
    lNight->DisableTimeBlock(22, 6);
    lSubject->mBag = lNight->SerializeToPropertyBag(LONG_A, L"[", L"]");
    lSubject->mBag->SetProperty(LONG_B L"DeliveryWindow", L" 1, 2;", false);
    lSubject->mBag->SetProperty(LONG_C L"DeliveryWindow", L" 1,24,", false);
    lSubject->mWindow->DisableTimeBlock(12, 12);
    return lSubject;
}

Case OnWindow(const char* ipOperation, const char* ipSituation, const std::function<void(WindowSubject&)>& iRun)
{
    return On<WindowSubject>(ipOperation, ipSituation, Noon, iRun);
}

void AddWindowBlocks(Cases& oCases)
{
    oCases.push_back(OnWindow("QTalBase::CreateDeliveryWindow()", "",
                              [](WindowSubject& oSubject) { oSubject.mAnswer = QTalBase::CreateDeliveryWindow(); }));
    const char* const lDisable = "QTalBase::DeliveryWindow::DisableTimeBlock(unsigned int, unsigned int)";
    const char* const lEnable = "QTalBase::DeliveryWindow::EnableTimeBlock(unsigned int, unsigned int)";
    oCases.push_back(OnWindow(lDisable, "", [](WindowSubject& oSubject) {
                         oSubject.mWindow->DisableTimeBlock(22, 2);
                     }).CannotFail());
    oCases.push_back(
        OnWindow(lEnable, "", [](WindowSubject& oSubject) { oSubject.mWindow->EnableTimeBlock(9, 17); }).CannotFail());
    oCases.push_back(OnWindow(lDisable, "out of range", [](WindowSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mWindow->DisableTimeBlock(0, 24); });
    }));
    oCases.push_back(OnWindow(lEnable, "out of range", [](WindowSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mWindow->EnableTimeBlock(24, 0); });
    }));
    oCases.push_back(
        OnWindow("QTalBase::DeliveryWindow::IsEnabled(unsigned int) const", "", [](WindowSubject& oSubject) {
            oSubject.mNumber = oSubject.mWindow->IsEnabled(99) ? 1 : 0;
        }).CannotFail());
    oCases.push_back(OnWindow("QTalBase::DeliveryWindow::AddRef() const", "", [](WindowSubject& oSubject) {
                         oSubject.mAnswer = oSubject.mWindow;
                     }).CannotFail());
    oCases.push_back(On<WindowSubject>(
                         "QTalBase::DeliveryWindow::Release() const", "the last reference",
                         [] {
                             auto lSubject = Noon();
                             lSubject->mAnswer = Noon()->mWindow;
                             return lSubject;
                         },
                         [](WindowSubject& oSubject) { oSubject.mAnswer = nullptr; })
                         .CannotFail());
}

void AddWindowForms(Cases& oCases)
{
    oCases.push_back(OnWindow("QTalBase::DeliveryWindow::Clone() const", "",
                              [](WindowSubject& oSubject) { oSubject.mAnswer = oSubject.mWindow->Clone(); }));
    const char* const lToBag = "QTalBase::DeliveryWindow::SerializeToPropertyBag(const wchar_t*, const wchar_t*, const "
                               "wchar_t*) const";
    oCases.push_back(OnWindow(lToBag, "", [](WindowSubject& oSubject) {
        oSubject.mBag = oSubject.mWindow->SerializeToPropertyBag(LONG_A, LONG_BEGIN, LONG_END);
    }));
    oCases.push_back(OnWindow(lToBag, "an invalid pair", [](WindowSubject& oSubject) {
        oSubject.mNumber =
            NumberOfRefusal([&] { oSubject.mBag = oSubject.mWindow->SerializeToPropertyBag(LONG_A, L"x", L"x"); });
    }));
    oCases.push_back(OnWindow(lToBag, "a prefix with a delimiter", [](WindowSubject& oSubject) {
        oSubject.mNumber =
            NumberOfRefusal([&] { oSubject.mBag = oSubject.mWindow->SerializeToPropertyBag(LONG_A, L"the", L"]"); });
    }));
    const char* const lFromBag = "QTalBase::DeliveryWindow::DeSerializeFromPropertyBag(const wchar_t*, const "
                                 "QTalBase::PropertyBag*)";
    const auto lRead = [](const wchar_t* ipPrefix, bool iWithBag) {
        return [=](WindowSubject& oSubject) {
            oSubject.mNumber = NumberOfRefusal([&] {
                oSubject.mWindow->DeSerializeFromPropertyBag(ipPrefix, iWithBag ? oSubject.mBag.get() : nullptr);
            });
        };
    };
    oCases.push_back(OnWindow(lFromBag, "", lRead(LONG_A, true)));
    oCases.push_back(OnWindow(lFromBag, "malformed", lRead(LONG_B, true)));
    oCases.push_back(OnWindow(lFromBag, "no hour", lRead(LONG_C, true)));
    oCases.push_back(OnWindow(lFromBag, "unknown", lRead(L"x", true)));
    oCases.push_back(OnWindow(lFromBag, "no bag", lRead(LONG_A, false)));
    oCases.push_back(OnWindow("QTalBase::DeliveryWindow::Serialize(QSerialization::WriteDataStream&) const", "",
                              [](WindowSubject& oSubject) {
                                  QSerialization::MemoryWriteDataStream lStream;
                                  oSubject.mWindow->Serialize(lStream);
                                  oSubject.mNumber = static_cast<long>(lStream.GetBytes().size());
                              }));
    oCases.push_back(OnWindow("QTalBase::DeliveryWindow::DeSerialize(QSerialization::ReadDataStream&)", "",
                              [](WindowSubject& oSubject) {
                                  const unsigned char lBytes[] = {1, 2, 3, 4};
                                  QSerialization::MemoryReadDataStream lStream(lBytes, sizeof lBytes);
                                  oSubject.mWindow->DeSerialize(lStream);
                              })
                         .CannotFail());
}

} // namespace

Cases MakeValueCases()
{
    Cases lCases;
    AddBuffers(lCases);
    AddWindowBlocks(lCases);
    AddWindowForms(lCases);
    return lCases;
}

} // namespace Failures
