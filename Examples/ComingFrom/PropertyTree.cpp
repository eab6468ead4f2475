// What Docs/ComingFromPropertyTrees.md says of bags. The first part has every piece of code of its table.

#include "Check.h"
#include "Section.h"

#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
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
    Check(Get(*lBag, L"n", 0) == 42, "typed value with a default");
    const BagPtr lOther(CreatePropertyBag());
    lOther->SetProperty(L"k", L"v", false);
    lBag->EmbedProperty(L"o", lOther.get());
    Check(lBag->GetPropertyBag(L"o")->GetCount() == 1, "child");
    Check(std::wstring(GetValueAt(*lBag, L"o/k").c_str()) == L"v", "value by path");
    Set(*GetBagAt(*lBag, L"o"), L"k", 7);
    Check(std::wstring(GetValueAt(*lBag, L"o/k").c_str()) == L"7", "value set by path");
    const bool lHas = lBag->IsPropertyEmbedded(L"o") || lBag->GetProperty(L"o").GetLength() != 0;
    Check(lHas, "find");
    Check(lBag->GetCount() == 3, "size");
    unsigned int lSeen = 0;
    for (const Property& lProperty : *lBag)
    {
        lSeen += lProperty.GetName().GetLength() == 1 ? 1 : 0;
    }
    Check(lSeen == 3, "loop");
    lBag->RemoveProperty(L"a");
    Check(lBag->GetCount() == 2, "erase");
    const std::wstring lText = lBag->GetString(true, nullptr, nullptr, true).c_str();
    const BagPtr lRead(CreatePropertyBag(lText.c_str()));
    Check(*lRead == *lBag, "text and equality");
    const BagPtr lCopy(CreatePropertyBag());
    lCopy->AddPropertyBag(lBag.get());
    Check(*lCopy == *lBag, "copy");
}

void ValueOrNest()
{
    const Section lSection("value-or-nest");
    // [value-or-nest]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"a", L"k++++v***", true); // a nested bag
    lBag->SetProperty(L"a", L"1", false);        // a plain value: the nested bag is gone
    std::printf("%u property, '%ls'\n", lBag->GetCount(), lBag->GetProperty(L"a").c_str());
    // [value-or-nest]
}

void Once()
{
    const Section lSection("once");
    // [once]
    const BagPtr lBag(CreatePropertyBag(L"=", L";"));
    lBag->SetProperty(L"b", L"1", false);
    lBag->SetProperty(L"o", L"k=v;", true);
    lBag->SetProperty(L"a", L"2", false);
    lBag->SetProperty(L"b", L"3", false);
    std::printf("%ls\n", lBag->GetString(false, nullptr, nullptr, true).c_str());
    // [once]
}

void Order()
{
    const Section lSection("order");
    // [order]
    const BagPtr lBag(CreatePropertyBag(L"EndDelimiter;BeginDelimiter=;a=1;b=2;"));
    const BagPtr lOther(CreatePropertyBag(L"EndDelimiter;BeginDelimiter=;b=2;a=1;"));
    std::printf("%d\n", *lBag == *lOther);
    // [order]
}

void PathsAndNames()
{
    const Section lSection("paths");
    // [paths]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"www.north.example", L"1", false);
    lBag->SetProperty(L"a/b", L"2", false);
    std::printf("%ls %ls\n", GetValueAt(*lBag, L"www.north.example").c_str(), GetValueAt(*lBag, L"a\\/b").c_str());
    try
    {
        GetBagAt(*lBag, L"Transport/Server");
    }
    catch (const PropertyBagUserErrorException& lError)
    {
        std::printf("%ls\n", lError.GetMessage());
    }
    // [paths]
}

void Values()
{
    const Section lSection("values");
    // [values]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"n", L"12 apples", false);
    lBag->SetProperty(L"m", L"apples", false);
    lBag->SetProperty(L"empty", L"", false);
    std::printf("%d %d %d\n", Get(*lBag, L"n", -1), Get(*lBag, L"m", -1), Get(*lBag, L"empty", -1));
    // [values]
}

void Sharing()
{
    const Section lSection("sharing");
    // [sharing]
    const BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(L"o", L"k++++v***", true);
    const BagPtr lCopy(CreatePropertyBag());
    lCopy->AddPropertyBag(lBag.get());               // a copy to the bottom
    const BagPtr lSame = lBag;                       // no copy
    const BagPtr lNest = lBag->GetPropertyBag(L"o"); // no copy
    lNest->SetProperty(L"k", L"w", false);
    std::printf("%ls %ls\n", GetValueAt(*lSame, L"o/k").c_str(), GetValueAt(*lCopy, L"o/k").c_str());
    // [sharing]
}

} // namespace

int main()
{
    const Initializer lInitializer;
    Map();
    ValueOrNest();
    Once();
    Order();
    PathsAndNames();
    Values();
    Sharing();
}
