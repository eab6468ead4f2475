#include "File/TerminalBuffer.h"

#include "Text/Text.h"

#include "QBase/Convert.h"

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gMostHeld = std::size_t{1} << 16;

// Where the last character begins, which may go on with what comes next.
std::size_t FindLastCharacter(const std::string& iBytes)
{
    std::size_t lPlace = iBytes.size();
    while (lPlace > 0 && (static_cast<unsigned char>(iBytes[lPlace - 1]) & 0xC0U) == 0x80U)
    {
        --lPlace;
    }
    return lPlace > 0 ? lPlace - 1 : 0;
}

} // namespace

TerminalBuffer::~TerminalBuffer()
{
    hHandOn(mHeld.size());
}

TerminalBuffer::int_type TerminalBuffer::overflow(int_type iCharacter)
{
    if (!traits_type::eq_int_type(iCharacter, traits_type::eof()))
    {
        const char lCharacter = traits_type::to_char_type(iCharacter);
        xsputn(&lCharacter, 1);
    }
    return traits_type::not_eof(iCharacter);
}

std::streamsize TerminalBuffer::xsputn(const char* ipText, std::streamsize iCount)
{
    mHeld.append(ipText, static_cast<std::size_t>(iCount));
    if (mHeld.size() > gMostHeld)
    {
        hHandOn(FindLastCharacter(mHeld));
    }
    return iCount;
}

int TerminalBuffer::sync()
{
    hHandOn(mHeld.size());
    mOut.flush();
    return 0;
}

void TerminalBuffer::hHandOn(std::size_t iCount)
{
    mOut << ToUtf8(MakeSafe(QBase::UTF8ToWideChar(mHeld.substr(0, iCount), false)));
    mHeld.erase(0, iCount);
}

} // namespace TalBaseTool
