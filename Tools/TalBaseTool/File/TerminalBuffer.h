// Data on its way to a terminal: what that would take for a command, or could not show, is an escape. Line ends and
// tabs pass.

#ifndef TALBASETOOL_FILE_TERMINALBUFFER_H
#define TALBASETOOL_FILE_TERMINALBUFFER_H

#include <ostream>
#include <streambuf>
#include <string>

namespace TalBaseTool
{

class TerminalBuffer : public std::streambuf
{
public:
    // oOut: must outlive this.
    explicit TerminalBuffer(std::ostream& oOut) : mOut(oOut) {}

    // Hands on what is left.
    ~TerminalBuffer() override;

protected:
    int_type overflow(int_type iCharacter) override;
    std::streamsize xsputn(const char* ipText, std::streamsize iCount) override;
    int sync() override;

private:
    void hHandOn(std::size_t iCount);

    std::ostream& mOut;
    std::string mHeld;
};

} // namespace TalBaseTool

#endif
