#include "Tests/Support/Twins.h"

#include "QBase/Message.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "Tests/Support/PlainPropertyBag.h"

#include <algorithm>
#include <stdexcept>
#include <typeinfo>

namespace Support
{

using QTalBase::PropertyBag;

namespace
{

template <class Bag>
class Keeper : public Bag
{
public:
    Keeper(bool iKeepsValues, bool iKeepsNests) : mKeepsValues(iKeepsValues), mKeepsNests(iKeepsNests) {}

    void RemovePropertyInValueContent(const wchar_t* ipName) noexcept override
    {
        if (!mKeepsValues)
        {
            Bag::RemovePropertyInValueContent(ipName);
        }
    }

    void RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept override
    {
        if (!mKeepsNests)
        {
            Bag::RemovePropertyInEmbeddedContent(ipName);
        }
    }

private:
    bool mKeepsValues;
    bool mKeepsNests;
};

using PlainKeeper = Keeper<Plain::PlainPropertyBag>;
using LibraryKeeper = Keeper<QTalBase::PropertyBagImpl>;

} // namespace

BagPtr MakeBag(Side iSide)
{
    return iSide == Library ? QTalBase::CreatePropertyBag() : Plain::CreatePlainPropertyBag();
}

BagPtr MakeBag(Side iSide, const std::wstring& iBegin, const std::wstring& iEnd)
{
    return iSide == Library ? QTalBase::CreatePropertyBag(iBegin.c_str(), iEnd.c_str())
                            : Plain::CreatePlainPropertyBag(iBegin.c_str(), iEnd.c_str());
}

BagPtr MakeBag(Side iSide, const std::wstring& iText)
{
    return iSide == Library ? QTalBase::CreatePropertyBag(iText.c_str()) : Plain::CreatePlainPropertyBag(iText.c_str());
}

BagPtr MakeKeeper(Side iSide, bool iKeepsValues, bool iKeepsNests)
{
    return iSide == Library ? static_cast<PropertyBag*>(new LibraryKeeper(iKeepsValues, iKeepsNests))
                            : static_cast<PropertyBag*>(new PlainKeeper(iKeepsValues, iKeepsNests));
}

bool IsKeeper(const PropertyBag& iBag)
{
    return dynamic_cast<const LibraryKeeper*>(&iBag) != nullptr || dynamic_cast<const PlainKeeper*>(&iBag) != nullptr;
}

unsigned int DepthOf(const PropertyBag& iBag)
{
    unsigned int lDepth = 0;
    unsigned int lDeepest = 0;
    Walk(
        iBag, [&](const PropertyBag&, const PropertyBag*) { lDeepest = std::max(lDeepest, lDepth++); },
        [](const PropertyBag&, unsigned int) {}, [&] { --lDepth; });
    return lDeepest;
}

std::size_t CountAll(const PropertyBag& iBag)
{
    std::size_t lCount = 0;
    Walk(
        iBag, [](const PropertyBag&, const PropertyBag*) {}, [&](const PropertyBag&, unsigned int) { ++lCount; },
        [] {});
    return lCount;
}

std::wstring Outcome(const std::function<std::wstring()>& iOperation)
{
    try
    {
        return iOperation();
    }
    catch (const QBase::Message& lMessage)
    {
        const std::string lClass = typeid(lMessage).name();
        return L"throws " + std::wstring(lClass.begin(), lClass.end()) + L" " + lMessage.GetMessage();
    }
    catch (const std::out_of_range&)
    {
        return L"throws std::out_of_range";
    }
}

} // namespace Support
