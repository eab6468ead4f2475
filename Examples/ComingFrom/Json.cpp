// What Docs/ComingFromJson.md says of bags. The first part has every piece of code of its table.

#include "Check.h"
#include "Section.h"

#include "QBase/Convert.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/TextCheck.h"
#include "TalBase/Views.h"

#include <cstdio>
#include <string>

namespace
{

using namespace QTalBase;
using BagPtr = QBase::SmartPtrI<PropertyBag>;

// The right column of the table, from top to bottom.
void Map()
{
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"a", L"1", false);
    Set(*lBag, L"n", 42);
    Check(Get(*lBag, L"n", 0) == 42, "typed value");
    const BagPtr lOther(CreatePropertyBag());
    lOther->SetProperty(L"k", L"v", false);
    lBag->EmbedProperty(L"o", lOther.get());
    Check(lBag->GetPropertyBag(L"o")->GetCount() == 1, "nested bag");
    Check(!GetValueAt(*lBag, L"o/k").c_str()[1], "path");
    const bool lHas = lBag->IsPropertyEmbedded(L"o") || lBag->GetProperty(L"o").GetLength() != 0;
    Check(lHas, "contains");
    Check(lBag->GetCount() == 3, "size");
    unsigned int lSeen = 0;
    for (const Property& lProperty : *lBag)
    {
        lSeen += lProperty.GetName().GetLength() == 1 ? 1 : 0;
    }
    Check(lSeen == 3, "loop");
    const std::wstring lText = lBag->GetString(true, nullptr, nullptr, true).c_str();
    const BagPtr lRead(CreatePropertyBag(lText.c_str()));
    Check(*lRead == *lBag, "text and equality");
    lBag->AddPropertyBag(lOther.get());
    Check(lBag->IsSubset(lOther.get()), "merge and subset");
    lBag->RemoveProperty(L"a");
    Check(lBag->GetCount() == 3, "erase");
    const BagPtr lCopy(CreatePropertyBag());
    lCopy->AddPropertyBag(lBag.get());
    Check(*lCopy == *lBag, "copy");
    QSerialization::MemoryWriteDataStream lStream;
    lBag->Serialize(lStream);
    Check(!lStream.GetBytes().empty(), "binary");
}

void Types()
{
    const Section lSection("types");
    // [types]
    const BagPtr lBag(CreatePropertyBag());
    Set(*lBag, L"n", 0);
    Set(*lBag, L"b", true);
    std::printf("%ls %ls\n", lBag->GetProperty(L"n").c_str(), lBag->GetProperty(L"b").c_str());
    std::printf("%d %d %d\n", Get(*lBag, L"n", -1), Get(*lBag, L"b", -1), Get(*lBag, L"missing", -1));
    // [types]
}

void Lists()
{
    const Section lSection("lists");
    // [lists]
    const BagPtr lBag(CreatePropertyBag());
    const BagPtr lHosts(CreatePropertyBag());
    lHosts->SetProperty(L"1", L"north.example", false);
    lHosts->SetProperty(L"2", L"south.example", false);
    lBag->EmbedProperty(L"Hosts", lHosts.get());
    std::printf("%ls\n", GetValueAt(*lBag, L"Hosts/2").c_str());
    // [lists]
}

void Empty()
{
    const Section lSection("empty");
    // [empty]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"a", L"", false);
    lBag->EmbedProperty(L"o", BagPtr(CreatePropertyBag()).get());
    std::printf("%u properties, '%ls'\n", lBag->GetCount(), lBag->GetProperty(L"a").c_str());
    // [empty]
}

void Order()
{
    const Section lSection("order");
    // [order]
    const BagPtr lBag(CreatePropertyBag(L"=", L";"));
    lBag->SetProperty(L"o", L"k=v;", true);
    lBag->SetProperty(L"b", L"1", false);
    lBag->SetProperty(L"a", L"2", false);
    lBag->SetProperty(L"b", L"3", false);
    std::printf("%ls\n", lBag->GetString(false, nullptr, nullptr, true).c_str());
    // [order]
}

void Names()
{
    const Section lSection("names");
    // [names]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L" \"a\\b\"\n{}[]:, ", L"any name, with no escapes", false);
    const BagPtr lRead(CreatePropertyBag(lBag->GetString(true, nullptr, nullptr, true).c_str()));
    std::printf("%ls\n", lRead->GetProperty(L" \"a\\b\"\n{}[]:, ").c_str());

    lBag->AddString(L"twice++++1***twice++++2***");
    std::printf("%u properties, %ls\n", lBag->GetCount(), lBag->GetProperty(L"twice").c_str());
    // [names]
}

void Escapes()
{
    const Section lSection("escapes");
    // [escapes]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"a", L"\"2 * 3\"", false);
    const BagPtr lOther(CreatePropertyBag(L"=", L";"));
    lOther->SetProperty(L"a", L"\"2 * 3\"", false);
    std::printf("%ls\n", lBag->GetString(false, nullptr, nullptr, true).c_str());
    std::printf("%ls\n", lOther->GetString(false, nullptr, nullptr, true).c_str());
    std::printf("%ls\n", lOther->GetString(true, nullptr, nullptr, true).c_str());
    // [escapes]
}

void Equality()
{
    const Section lSection("equality");
    // [equality]
    const BagPtr lBag(CreatePropertyBag(L"EndDelimiter;BeginDelimiter=;a=1;b=2;"));
    const BagPtr lOther(CreatePropertyBag(L"EndDelimiter***BeginDelimiter++++***b++++2***a++++1***"));
    std::printf("%d\n", *lBag == *lOther);
    lOther->SetProperty(L"a", L"1+1", false);
    std::printf("%d %d\n", *lOther == *lOther, lOther->IsSubset(lOther.get()));
    // [equality]
}

void Text()
{
    const Section lSection("text");
    // [text]
    const BagPtr lBag(CreatePropertyBag());
    lBag->AddString(L" a ++++ 1 ***and a tail that is no property");
    std::printf("'%ls'\n", lBag->GetProperty(L" a ").c_str());
    try
    {
        lBag->AddString(L"b++++2***c***");
    }
    catch (const PropertyBagException& lError)
    {
        std::printf("%ls\n%u property\n", lError.GetMessage(), lBag->GetCount());
    }
    std::printf("at character %zu\n", CheckText(L"b++++2***c***", L"++++", L"***").mPosition);
    // [text]
}

void Merging()
{
    const Section lSection("merging");
    // [merging]
    const BagPtr lBag(CreatePropertyBag());
    lBag->AddString(L"a++++1***o++++k++++v******");
    lBag->AddString(L"b++++2***o++++l++++w******");
    std::printf("%ls\n", lBag->GetString(false, nullptr, nullptr, true).c_str());
    // [merging]
}

void Sharing()
{
    const Section lSection("sharing");
    // [sharing]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"o", L"k++++v***", true);
    const BagPtr lSame = lBag;          // the same bag
    const BagPtr lClone(lBag->Clone()); // a bag of its own, but the same nested bags
    const BagPtr lCopy(CreatePropertyBag());
    lCopy->AddPropertyBag(lBag.get()); // a copy to the bottom
    lBag->SetProperty(L"a", L"1", false);
    Set(*lBag->GetPropertyBag(L"o"), L"k", L"w");
    for (const BagPtr& lEach : {lSame, lClone, lCopy})
    {
        std::printf("%ls\n", lEach->GetString(false, nullptr, nullptr, true).c_str());
    }
    // [sharing]
}

} // namespace

int main()
{
    const Initializer lInitializer;
    Map();
    Types();
    Lists();
    Empty();
    Order();
    Names();
    Escapes();
    Equality();
    Text();
    Merging();
    Sharing();
}
