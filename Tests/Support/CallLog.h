// A list of calls with their arguments, L"bag.SetProperty(a, 1, false)", that recording objects write and tests compare
// whole. Objects of one test share a list, so it also shows the order between them.

#ifndef TESTS_SUPPORT_CALLLOG_H
#define TESTS_SUPPORT_CALLLOG_H

#include <string>
#include <vector>

namespace Support
{

using CallLog = std::vector<std::wstring>;

inline std::wstring Argument(const wchar_t* ipText)
{
    return ipText == nullptr ? L"NULL" : ipText;
}

inline std::wstring Argument(bool iFlag)
{
    return iFlag ? L"true" : L"false";
}

inline std::wstring Argument(unsigned int iNumber)
{
    return std::to_wstring(iNumber);
}

// Writes the calls of one object to a list.
class Recorder
{
public:
    Recorder(CallLog& oLog, const wchar_t* ipObject) : mLog(&oLog), mObject(ipObject) {}

    template <class... Arguments>
    void Call(const wchar_t* ipOperation, Arguments... iArguments) const
    {
        std::wstring lList;
        ((lList += (lList.empty() ? L"" : L", ") + Argument(iArguments)), ...);
        mLog->push_back(mObject + L"." + ipOperation + (sizeof...(iArguments) == 0 ? L"" : L"(" + lList + L")"));
    }

private:
    CallLog* mLog;
    std::wstring mObject;
};

} // namespace Support

#endif
