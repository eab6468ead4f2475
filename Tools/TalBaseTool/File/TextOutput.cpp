#include "File/TextOutput.h"

#include "Text/BagWalk.h"
#include "Text/Delimiters.h"
#include "Text/Text.h"

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gBlock = std::size_t{1} << 14; // characters

// Collects short texts, and cuts long ones.
class BlockWriter
{
public:
    explicit BlockWriter(const TakeBytes& iTake) : mTake(iTake) {}

    void Add(std::wstring_view iText)
    {
        while (mBlock.size() + iText.size() > gBlock)
        {
            const std::size_t lCount = gBlock - mBlock.size();
            mBlock.append(iText.substr(0, lCount));
            iText.remove_prefix(lCount);
            Flush();
        }
        mBlock.append(iText);
    }

    void Flush()
    {
        mTake(ToUtf8(mBlock));
        mBlock.clear();
    }

private:
    const TakeBytes& mTake;
    std::wstring mBlock;
};

} // namespace

void WriteBag(const BagPtr& iBag, bool iHasHeader, const TakeBytes& iTake)
{
    BlockWriter lWriter(iTake);
    if (iHasHeader)
    {
        lWriter.Add(WriteHeader({iBag->GetBeginDelimiter(), iBag->GetEndDelimiter()}));
    }
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        if (lWalk.GetStep() != Step::Leave)
        {
            lWriter.Add(lWalk.GetName());
            lWriter.Add(lWalk.GetHolder()->GetBeginDelimiter());
        }
        if (lWalk.GetStep() == Step::Plain)
        {
            lWriter.Add(lWalk.GetValue());
        }
        if (lWalk.GetStep() != Step::Enter)
        {
            lWriter.Add(lWalk.GetHolder()->GetEndDelimiter());
        }
    }
    lWriter.Flush();
}

} // namespace TalBaseTool
