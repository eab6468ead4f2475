#include "File/Files.h"

#include "File/FileDescriptor.h"
#include "File/Progress.h"
#include "Text/Encoding.h"
#include "Text/Errors.h"
#include "Text/Place.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <algorithm>
#include <deque>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace TalBaseTool
{

namespace
{

constexpr wchar_t gReplacement = L'\uFFFD'; // for a byte that is no character
constexpr std::size_t gBlock = std::size_t{1} << 16;

// The number of bytes at the end that begin a character whose rest is still to come.
std::size_t CountUnfinished(std::string_view iBytes)
{
    const auto lIsFollowing = [](char iByte) { return (static_cast<unsigned char>(iByte) & 0xC0U) == 0x80; };
    std::size_t lCount = 1;
    while (lCount <= std::min<std::size_t>(3, iBytes.size()))
    {
        const unsigned char lByte = static_cast<unsigned char>(iBytes[iBytes.size() - lCount]);
        if (!lIsFollowing(iBytes[iBytes.size() - lCount]))
        {
            const std::size_t lWanted = lByte >= 0xF0 ? 4 : lByte >= 0xE0 ? 3 : lByte >= 0xC0 ? 2 : 1;
            return lCount < lWanted ? lCount : 0;
        }
        ++lCount;
    }
    return 0;
}

// Decodes bytes as they come.
class Decoder
{
public:
    // iSize: about how many bytes will come. What is not needed of them is never touched, so it takes no memory.
    Decoder(const std::string& iFile, std::size_t iSize) : mFile(iFile)
    {
        mText.reserve(iSize);
    }

    void Take(std::string_view iBytes)
    {
        mLeft.append(iBytes);
        if (mText.empty() && mLeft.size() < gTellingBytes)
        {
            return;
        }
        hCheckEncoding();
        const std::size_t lWhole = mLeft.size() - CountUnfinished(mLeft);
        hDecode(std::string_view(mLeft).substr(0, lWhole));
        mLeft.erase(0, lWhole);
    }

    std::wstring Finish()
    {
        hCheckEncoding();
        hDecode(mLeft);
        if (!mFault.empty())
        {
            throw EncodingError(mFault, std::move(mText), mPlace);
        }
        return std::move(mText);
    }

private:
    // Nothing of such a text is shown, because what is sensitive in it could not be found.
    void hCheckEncoding()
    {
        const char* const lEncoding = mText.empty() ? FindForeignEncoding(mLeft) : nullptr;
        if (lEncoding != nullptr)
        {
            mText = gReplacement;
            hKeep(std::string("this is ") + lEncoding + ", but a text form is in UTF-8", 0);
            throw EncodingError(mFault, std::move(mText), mPlace);
        }
    }

    void hDecode(std::string_view iBytes)
    {
        if (!mFault.empty())
        {
            mText += QBase::UTF8ToWideChar(iBytes, false);
            return;
        }
        try
        {
            mText += QBase::UTF8ToWideChar(iBytes, true);
        }
        catch (const QBase::Message& lMessage)
        {
            hRefuse(iBytes, lMessage.GetMessage());
        }
        const std::size_t lZero = iBytes.find('\0') != std::string_view::npos ? mText.find(L'\0') : mText.npos;
        if (lZero < (mFault.empty() ? mText.size() : mPlace))
        {
            hKeep("a zero character, which ends a text form", lZero);
        }
    }

    // The message ends with the place of the bad byte.
    void hRefuse(std::string_view iBytes, const std::wstring& iMessage)
    {
        const std::size_t lBad = std::stoul(iMessage.substr(iMessage.rfind(L' ') + 1));
        mText += QBase::UTF8ToWideChar(iBytes.substr(0, lBad), true);
        const std::size_t lPlace = mText.size();
        mText += gReplacement;
        mText += QBase::UTF8ToWideChar(iBytes.substr(lBad + 1), false);
        const unsigned int lByte = static_cast<unsigned char>(iBytes[lBad]);
        const char* const lDigits = "0123456789abcdef";
        hKeep(std::string("byte 0x") + lDigits[lByte / 16] + lDigits[lByte % 16] + " is not UTF-8", lPlace);
    }

    // The first fault is told when all is decoded, because whoever shows it has to know what stands behind it.
    void hKeep(const std::string& iWhat, std::size_t iPlace)
    {
        mFault = ShowPlace(mFile, FindPlace(mText, iPlace)) + iWhat;
        mPlace = iPlace;
    }

    std::string mFile;
    std::string mLeft;
    std::wstring mText;
    std::string mFault; // empty where there is none
    std::size_t mPlace = 0;
};

// A text that grows takes twice its size whenever it moves, and characters four times that of bytes; so the bytes come
// first where nobody knows how many they are.
std::wstring ReadPipe(const std::string& iFile, const char* ipWhat)
{
    std::deque<std::string> lBlocks;
    std::size_t lSize = 0;
    const auto lTake = [&](std::string_view iBytes) {
        lBlocks.emplace_back(iBytes);
        lSize += iBytes.size();
    };
    ReadBlocks(iFile, lTake, ipWhat);
    return DecodeText(iFile, std::move(lBlocks), lSize);
}

int Open(const std::string& iFile, int iOpened)
{
    if (iOpened < 0)
    {
        return iFile == "-" ? STDIN_FILENO : ::open(iFile.c_str(), O_RDONLY | O_CLOEXEC);
    }
    return ::lseek(iOpened, 0, SEEK_SET) == 0 ? ::fcntl(iOpened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1;
}

} // namespace

void ReadBlocks(const std::string& iFile, const std::function<void(std::string_view)>& iTake, const char* ipWhat,
                int iOpened)
{
    const FileDescriptor lFile(Open(iFile, iOpened));
    struct stat lStatus = {};
    if (lFile.Get() < 0 || ::fstat(lFile.Get(), &lStatus) != 0)
    {
        ThrowIoError("cannot read", iFile);
    }
    if (iFile == "-" && ::isatty(STDIN_FILENO) == 1)
    {
        Progress::TellWaiting(ipWhat);
    }
    Progress lProgress("reading " + ShowFile(iFile),
                       S_ISREG(lStatus.st_mode) ? static_cast<std::size_t>(lStatus.st_size) : 0);
    std::vector<char> lBuffer(gBlock);
    for (std::size_t lDone = 0;;)
    {
        const ssize_t lRead = ::read(lFile.Get(), lBuffer.data(), lBuffer.size());
        if (lRead == 0)
        {
            return;
        }
        if (lRead < 0 && errno != EINTR)
        {
            ThrowIoError("cannot read", iFile);
        }
        const std::size_t lCount = lRead < 0 ? 0 : static_cast<std::size_t>(lRead);
        iTake({lBuffer.data(), lCount});
        lDone += lCount;
        lProgress.Step(lDone);
    }
}

std::wstring ReadText(const std::string& iFile, const char* ipWhat, int iOpened)
{
    struct stat lStatus = {};
    const int lResult = iFile == "-" ? ::fstat(STDIN_FILENO, &lStatus) : ::stat(iFile.c_str(), &lStatus);
    if (lResult == 0 && S_ISREG(lStatus.st_mode))
    {
        Decoder lDecoder(iFile, static_cast<std::size_t>(lStatus.st_size));
        const auto lTake = [&](std::string_view iBytes) { lDecoder.Take(iBytes); };
        ReadBlocks(iFile, lTake, ipWhat, iOpened);
        return lDecoder.Finish();
    }
    return ReadPipe(iFile, ipWhat);
}

std::wstring DecodeText(const std::string& iFile, std::deque<std::string> iBlocks, std::size_t iSize)
{
    Decoder lDecoder(iFile, iSize);
    for (; !iBlocks.empty(); iBlocks.pop_front())
    {
        lDecoder.Take(iBlocks.front());
    }
    return lDecoder.Finish();
}

void EncodeBlocks(std::wstring_view iText, const std::function<void(std::string_view)>& iTake)
{
    constexpr std::size_t lBlock = gBlock / 4;
    for (std::size_t lStart = 0; lStart < iText.size(); lStart += lBlock)
    {
        iTake(ToUtf8(iText.substr(lStart, lBlock)));
    }
}

} // namespace TalBaseTool
