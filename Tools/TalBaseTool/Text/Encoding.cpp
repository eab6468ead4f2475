#include "Text/Encoding.h"

#include <string>

namespace TalBaseTool
{

const char* FindForeignEncoding(std::string_view iBytes)
{
    const std::string_view lBytes = iBytes.substr(0, gTellingBytes);
    std::string lShape; // 0 a zero, x another byte
    for (const char lByte : lBytes)
    {
        lShape += lByte == '\0' ? '0' : 'x';
    }
    if (lShape == "x000" || lShape == "000x" || lBytes == std::string_view("\xFF\xFE\0\0", 4) ||
        lBytes == std::string_view("\0\0\xFE\xFF", 4))
    {
        return "UTF-32";
    }
    const std::string_view lMark = lBytes.substr(0, 2);
    return lMark == "\xFF\xFE" || lMark == "\xFE\xFF" || lShape == "x0x0" || lShape == "0x0x" ? "UTF-16" : nullptr;
}

} // namespace TalBaseTool
