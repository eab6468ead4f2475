#include "QDataType/StringCollection.h"

#include "QBase/Message.h"

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

    // Collected first, so that a failure changes nothing and a collection can be inserted into itself.
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
            QBase::Message lMessage;
            lMessage.SetDomainAndID(QBase::MESSAGE_DOMAIN_UNKNOWN, -1);
            lMessage.SetMessage(L"QDataType::StringCollection::GetString; iIndex is out of range");
            throw QBase::ExceptionImpl<QBase::Message>(lMessage);
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
