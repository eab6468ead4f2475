#include "QDataType/StringCollection.h"

#include "PrivateSource/Throw.h"

#include <iterator>
#include <string>
#include <vector>

namespace QDataType
{

namespace
{

class StringCollectionImpl : public StringCollection
{
public:
    void Insert(const wchar_t* ipString) override
    {
        mStrings.push_back(std::wstring(ipString));
    }

    // Collected first, so that a failure changes nothing and a collection can be inserted into itself. The count is
    // taken once: what another collection answers while it is read must not keep this going for ever.
    void Insert(const StringCollection& iStrings) override
    {
        std::vector<std::wstring> lStrings;
        const unsigned long lCount = iStrings.GetCount();
        for (unsigned long lIndex = 0; lIndex < lCount; ++lIndex)
        {
            lStrings.emplace_back(iStrings.GetString(lIndex));
        }
        mStrings.insert(mStrings.end(), std::make_move_iterator(lStrings.begin()),
                        std::make_move_iterator(lStrings.end()));
    }

    unsigned long GetCount() const override
    {
        return mStrings.size();
    }

    const wchar_t* GetString(unsigned long iIndex) const override
    {
        if (iIndex >= mStrings.size())
        {
            QBase::Throw<QBase::Message>(L"QDataType::StringCollection::GetString; iIndex is out of range");
        }
        return mStrings[iIndex].c_str();
    }

    void Clear() override
    {
        mStrings.clear();
    }

private:
    std::vector<std::wstring> mStrings;
};

} // namespace

StringCollection::~StringCollection() = default;

StringCollection* CreateStringCollection()
{
    return new StringCollectionImpl();
}

} // namespace QDataType
