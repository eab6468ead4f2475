#include "Tests/Contract/Documents/Provoker.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Guid.h"

#include <stdexcept>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>

namespace Documents
{

namespace
{

using namespace QTalBase;

std::string ClassName(const QBase::Message& iMessage)
{
    using QBase::ExceptionImpl;
    static const std::unordered_map<std::type_index, std::string> lNames = {
        {typeid(ExceptionImpl<PropertyBagException>), "PropertyBagException"},
        {typeid(ExceptionImpl<PropertyBagUserErrorException>), "PropertyBagUserErrorException"},
        {typeid(ExceptionImpl<DeliveryWindowUserErrorException>), "DeliveryWindowUserErrorException"},
        {typeid(ExceptionImpl<GuidException>), "GuidException"},
        {typeid(ExceptionImpl<QSerialization::StreamException>), "StreamException"},
        {typeid(ExceptionImpl<QBase::Message>), "QBase::Message"}};
    return lNames.at(typeid(iMessage));
}

} // namespace

void Provoker::Provoke(const std::string& iOperation, const State& iState, const Action& iAction,
                       const Placeholders& iPlaceholders)
{
    const std::wstring lBefore = iState();
    try
    {
        iAction();
    }
    catch (const QBase::Message& lMessage)
    {
        if (lMessage.GetDomain() != QBase::MESSAGE_DOMAIN_UNKNOWN || lMessage.GetID() != -1)
        {
            throw std::runtime_error(iOperation + " throws another domain or ID");
        }
        mObservations.push_back(
            {iOperation, ClassName(lMessage), lMessage.GetMessage(), iState() == lBefore, iPlaceholders});
        return;
    }
    catch (const std::out_of_range&)
    {
        mObservations.push_back({iOperation, "std::out_of_range", L"", iState() == lBefore, iPlaceholders});
        return;
    }
    throw std::runtime_error(iOperation + " throws nothing");
}

} // namespace Documents
