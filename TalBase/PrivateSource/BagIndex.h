// Looks many names up in one bag that does not change meanwhile: by the place where the name is expected, then, for a
// small bag, by a scan, then by a table. Finds the first entry of a name, as a scan from the front would.

#ifndef TALBASE_PRIVATESOURCE_BAGINDEX_H
#define TALBASE_PRIVATESOURCE_BAGINDEX_H

#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include <memory>

namespace QTalBase
{

class BagIndex
{
public:
    static constexpr std::size_t gNotFound = static_cast<std::size_t>(-1);

    explicit BagIndex(const PropertyBagImpl& iBag) noexcept : mBag(&iBag) {}

    // Return the index in the sequence of plain properties or of nested bags, or gNotFound. iGuess: where the name
    // probably is. Throw std::bad_alloc.
    std::size_t FindValue(std::wstring_view iName, std::size_t iGuess);
    std::size_t FindEmbedded(std::wstring_view iName, std::size_t iGuess);

private:
    std::unique_ptr<NameTable> hMakeTable(bool iOfValues) const;

    const PropertyBagImpl* mBag;
    std::unique_ptr<NameTable> mValueTable;
    std::unique_ptr<NameTable> mEmbeddedTable;
};

} // namespace QTalBase

#endif
