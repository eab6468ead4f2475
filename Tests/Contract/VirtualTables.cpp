// Makes the compiler lay out the virtual table of every class that crosses the library's border, as VirtualTables.sh
// reads it. This file is never linked: deriving from a class is enough to have its table laid out, and it works alike
// for interfaces and for implementation classes, wherever their own tables are emitted.

#include "QBase/Message.h"
#include "QBase/ReferenceCounted.h"
#include "QDataType/StringCollection.h"
#include "QLog/Router.h"
#include "QSerialization/DataStream.h"
#include "QSerialization/MemoryDataStream.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Guid.h"
#include "TalBase/PrivateSource/BufferedWStringImpl.h"
#include "TalBase/PrivateSource/DeliveryWindowImpl.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/PropertyBagsImpl.h"
#include "TalBase/PrivateSource/SerializableStringCollectionImpl.h"

// The one function of its own comes last in the table and brings the table into this file.
template <class Class>
class Probe : public Class
{
public:
    virtual void Anchor();
};

template <class Class>
void Probe<Class>::Anchor()
{
}

template class Probe<QBase::ReferenceCounted>;
template class Probe<QBase::Message>;
template class Probe<QBase::ExceptionImpl<QBase::Message>>;
template class Probe<QSerialization::SerializableObject>;
template class Probe<QSerialization::WriteDataStream>;
template class Probe<QSerialization::ReadDataStream>;
template class Probe<QSerialization::MemoryWriteDataStream>;
template class Probe<QSerialization::MemoryReadDataStream>;
template class Probe<QSerialization::StreamException>;
template class Probe<QDataType::StringCollection>;
template class Probe<QLog::Router>;
template class Probe<QTalBase::PropertyBag>;
template class Probe<QTalBase::PropertyBagImpl>;
template class Probe<QTalBase::PropertyBags>;
template class Probe<QTalBase::PropertyBagsImpl>;
template class Probe<QTalBase::SerializableStringCollection>;
template class Probe<QTalBase::SerializableStringCollectionImpl>;
template class Probe<QTalBase::BufferedWString>;
template class Probe<QTalBase::BufferedWStringImpl>;
template class Probe<QTalBase::DeliveryWindow>;
template class Probe<QTalBase::DeliveryWindowImpl>;
template class Probe<QTalBase::PropertyBagException>;
template class Probe<QTalBase::PropertyBagUserErrorException>;
template class Probe<QTalBase::DeliveryWindowUserErrorException>;
template class Probe<QTalBase::GuidException>;
