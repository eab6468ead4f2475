#include "Text/Path.h"

#include "Text/Errors.h"
#include "Text/Text.h"

#include "TalBase/Views.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

Kind KindOf(const QTalBase::PropertyBag& iBag, const std::wstring& iName)
{
    if (iBag.IsPropertyEmbedded(iName.c_str()))
    {
        return Kind::Bag;
    }
    return iBag.GetProperty(iName.c_str()).GetLength() != 0 ? Kind::Plain : Kind::Missing; // none holds the empty text
}

} // namespace

Path ParsePath(const std::string& iArgument)
{
    const std::wstring lText = ReadArgument(iArgument, "the path");
    const std::string lShown = "the path '" + ToUtf8(MakeControlsPrintable(lText)) + "' ";
    Path lPath;
    try
    {
        for (QTalBase::Paths::Step& lStep : QTalBase::Paths::Read(lText))
        {
            lPath.push_back(std::move(lStep.mName));
        }
    }
    catch (const QBase::Message&)
    {
        throw UsageError(lShown + "has a \\ that is neither \\/ (for a / in a name) nor \\\\");
    }
    for (const std::wstring& lName : lPath)
    {
        if (lName.empty())
        {
            throw UsageError(lShown + "has an empty name; write it as NAME or NAME/NAME/...");
        }
    }
    return lPath;
}

std::string ShowPath(const Path& iPath)
{
    return ShowPath(iPath, iPath.size());
}

std::string ShowPath(const Path& iLast, std::size_t iLevel)
{
    const std::size_t lCount = std::min(iLast.size(), gMostNames);
    std::wstring lText;
    for (std::size_t lIndex = iLast.size() - lCount; lIndex < iLast.size(); ++lIndex)
    {
        lText += (lText.empty() ? L"" : L"/") + QTalBase::AsPathStep(iLast[lIndex]);
    }
    return (lCount < iLevel ? "⋯ level " + std::to_string(iLevel) + " ⋯/" : std::string()) +
           ToUtf8(MakeControlsPrintable(lText));
}

BagPtr FindParent(const BagPtr& iRoot, const Path& iPath)
{
    BagPtr lBag = iRoot;
    for (std::size_t lIndex = 0; lIndex + 1 < iPath.size(); ++lIndex)
    {
        switch (KindOf(*lBag, iPath[lIndex]))
        {
        case Kind::Missing:
            return {};
        case Kind::Plain:
            throw DataError(ShowPath(Path(iPath.begin(), iPath.begin() + static_cast<std::ptrdiff_t>(lIndex) + 1)) +
                            " is a plain value, not a bag");
        case Kind::Bag:
            lBag = lBag->GetPropertyBag(iPath[lIndex].c_str());
        }
    }
    return lBag;
}

Kind FindKind(const BagPtr& iRoot, const Path& iPath)
{
    const BagPtr lBag = FindParent(iRoot, iPath);
    return lBag ? KindOf(*lBag, iPath.back()) : Kind::Missing;
}

} // namespace TalBaseTool
