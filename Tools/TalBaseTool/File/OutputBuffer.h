// Standard output as a stream that knows why something could not be written. The standard's own forgets.

#ifndef TALBASETOOL_FILE_OUTPUTBUFFER_H
#define TALBASETOOL_FILE_OUTPUTBUFFER_H

#include <streambuf>
#include <vector>

namespace TalBaseTool
{

class OutputBuffer : public std::streambuf
{
public:
    explicit OutputBuffer(int iDescriptor);

    // Writes what is left.
    ~OutputBuffer() override;

    // What errno said of the first write that failed; 0 where none did.
    int GetError() const
    {
        return mError;
    }

protected:
    int_type overflow(int_type iCharacter) override;
    std::streamsize xsputn(const char* ipText, std::streamsize iCount) override;
    int sync() override;

private:
    bool hWrite(const char* ipText, std::size_t iCount);

    int mDescriptor;
    int mError = 0;
    std::vector<char> mBuffer;
};

} // namespace TalBaseTool

#endif
