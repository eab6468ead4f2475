// Lines of JSON, as bags come and go by the thousand.

#ifndef TALBASETOOL_FILE_LINES_H
#define TALBASETOOL_FILE_LINES_H

#include "Text/Text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace TalBaseTool
{

// What messages call a line: "bags.jsonl:3", "(standard input):3".
inline std::string LineName(const std::string& iFile, std::size_t iNumber)
{
    return (iFile == "-" ? ShowFile(iFile) : iFile) + ":" + std::to_string(iNumber);
}

// Whether a line says nothing.
inline bool IsBlankLine(std::string_view iLine)
{
    return iLine.find_first_not_of(" \t\r") == std::string_view::npos;
}

// Hands the lines of blocks on, without their ends.
class LineSplitter
{
public:
    template <class Take>
    void Split(std::string_view iBlock, const Take& iTake)
    {
        for (std::size_t lStop; (lStop = iBlock.find('\n')) != std::string_view::npos;)
        {
            if (mLeft.empty())
            {
                iTake(iBlock.substr(0, lStop));
            }
            else
            {
                mLeft.append(iBlock.substr(0, lStop));
                iTake(mLeft);
                mLeft.clear();
            }
            iBlock.remove_prefix(lStop + 1);
        }
        mLeft.append(iBlock);
    }

    template <class Take>
    void Finish(const Take& iTake)
    {
        if (!mLeft.empty())
        {
            iTake(mLeft);
        }
    }

private:
    std::string mLeft;
};

} // namespace TalBaseTool

#endif
