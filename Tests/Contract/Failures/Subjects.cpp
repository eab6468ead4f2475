#include "Tests/Contract/Failures/Subjects.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/PlainPropertyBag.h"

namespace Failures
{

namespace
{

using Support::BagBuilder;
using Support::Describe;
using Support::Quoted;
using Support::Text;

class DerivedBag : public QTalBase::PropertyBagImpl
{
};

std::wstring SeeTextOf(const QTalBase::PropertyBag& iBag)
{
    try
    {
        return Text(iBag.GetString(true, nullptr, nullptr, true));
    }
    catch (const QTalBase::PropertyBagException& lRefused)
    {
        return lRefused.GetMessage();
    }
}

void AppendByName(const QTalBase::PropertyBag& iBag, std::wstring& oSeen)
{
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = iBag.GetName(lIndex);
        if (!iBag.IsEmbedded(lIndex))
        {
            oSeen += L" " + Text(lName) + L"=" + Text(iBag.GetProperty(lName.c_str()));
            continue;
        }
        const BagPtr lNest = iBag.GetPropertyBag(lName.c_str());
        oSeen += L" " + Text(lName) + (lNest == iBag.GetValuePropertyBag(lIndex) ? L"=(" : L"!=(");
        AppendByName(*lNest, oSeen);
        oSeen += L")";
    }
}

void AppendNests(const QTalBase::PropertyBag& iBag, std::vector<const void*>& oNests)
{
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        if (iBag.IsEmbedded(lIndex))
        {
            const BagPtr lNest = iBag.GetValuePropertyBag(lIndex);
            oNests.push_back(lNest.get());
            AppendNests(*lNest, oNests);
        }
    }
}

void Fill(const BagPtr& oBag)
{
    oBag->SetProperty(LONG_A, LONG_V, false);
    oBag->AddString(LONG_B L"++++" LONG_A L"++++1***" LONG_B L"++++" LONG_V L"******");
    oBag->AddString(L"n++++" LONG_C L"++++" LONG_B L"***m++++k++++v***l++++" LONG_V L"*********");
}

} // namespace

std::wstring SeeBag(const BagPtr& iBag)
{
    if (!iBag)
    {
        return L"null";
    }
    std::wstring lSeen = Describe(iBag) + L" by name:";
    AppendByName(*iBag, lSeen);
    return lSeen + L" text: " + SeeTextOf(*iBag);
}

std::vector<const void*> IdentifyNests(const BagPtr& iBag)
{
    std::vector<const void*> lNests;
    if (iBag)
    {
        AppendNests(*iBag, lNests);
    }
    return lNests;
}

std::wstring BagSubject::See() const
{
    return SeeBag(mBag) + L"\nother " + (mOther == mBag ? L"is the same" : SeeBag(mOther)) + L"\nanswers " +
           Quoted(Text(mText)) + L" " + std::to_wstring(mNumber) + L" " + SeeBag(mAnswer);
}

std::vector<const void*> BagSubject::Identify() const
{
    std::vector<const void*> lNests = IdentifyNests(mBag);
    const std::vector<const void*> lOthers = IdentifyNests(mOther);
    lNests.insert(lNests.end(), lOthers.begin(), lOthers.end());
    return lNests;
}

BagPtr Empty()
{
    return QTalBase::CreatePropertyBag();
}

BagPtr Filled()
{
    const BagPtr lBag = Empty();
    Fill(lBag);
    return lBag;
}

BagPtr Derived()
{
    const BagPtr lBag(new DerivedBag);
    Fill(lBag);
    return lBag;
}

BagPtr Many()
{
    const BagPtr lBag = Filled();
    for (int lNumber = 0; lNumber < 40; ++lNumber)
    {
        const std::wstring lName = L"a name that is longer than a string object " + std::to_wstring(lNumber);
        lBag->SetProperty(lName.c_str(), lNumber % 2 == 0 ? lName.c_str() : L"k++++v***", lNumber % 2 != 0);
    }
    return lBag;
}

BagPtr Raw()
{
    return BagBuilder(L"[[", L"]]")
        .Set(LONG_A, LONG_V)
        .Nest(LONG_B, BagBuilder().Set(LONG_C, LONG_V))
        .Nest(L"n", BagBuilder().Set(L"k", L"v"));
}

BagPtr Foreign()
{
    const BagPtr lBag = Plain::CreatePlainPropertyBag();
    Fill(lBag);
    return lBag;
}

BagPtr Nothing()
{
    return nullptr;
}

Case OnBags(const char* ipOperation, const char* ipSituation, const MakeBag& iMake, const MakeBag& iMakeOther,
            const RunOnBag& iRun)
{
    const auto lMake = [iMake, iMakeOther] {
        auto lSubject = std::make_unique<BagSubject>();
        lSubject->mBag = iMake();
        lSubject->mOther = iMakeOther();
        return lSubject;
    };
    return On<BagSubject>(ipOperation, ipSituation, lMake, iRun);
}

Case OnBag(const char* ipOperation, const char* ipSituation, const MakeBag& iMake, const RunOnBag& iRun)
{
    return OnBags(ipOperation, ipSituation, iMake, Nothing, iRun);
}

namespace
{

// iIsSeen: whether the other bag belongs to what can be seen.
std::vector<std::wstring> Beginnings(const MakeBag& iMake, const MakeBag& iMakeOther, bool iIsSeen)
{
    std::vector<std::wstring> lBeginnings;
    for (unsigned int lSteps = 0;; ++lSteps)
    {
        const BagPtr lOther = iMakeOther();
        BagSubject lSubject;
        lSubject.mBag = iMake();
        lSubject.mOther = iIsSeen ? lOther : nullptr;
        const BagPtr lFrom = lOther ? lOther : lSubject.mBag;
        for (unsigned int lIndex = 0; lIndex < lSteps; ++lIndex)
        {
            lSubject.mBag->SetProperty(lFrom->GetName(lIndex).c_str(), lFrom->GetValue(lIndex).c_str(),
                                       lFrom->IsEmbedded(lIndex));
        }
        lBeginnings.push_back(lSubject.See());
        if (lSteps == lFrom->GetCount())
        {
            return lBeginnings;
        }
        if (lFrom->IsEmbedded(lSteps))
        {
            lSubject.mBag->RemoveProperty(lFrom->GetName(lSteps).c_str());
            lBeginnings.push_back(lSubject.See());
        }
    }
}

} // namespace

std::vector<std::wstring> BeginningsOfMerge(const MakeBag& iMake, const MakeBag& iMakeOther)
{
    return Beginnings(iMake, iMakeOther, true);
}

std::vector<std::wstring> BeginningsOfText(const MakeBag& iMake, const std::wstring& iText)
{
    return Beginnings(
        iMake, [&] { return Support::ReadBag(iText); }, false);
}

void AddComparing(Cases& oCases, const char* ipSituation, const MakeBag& iMake, const MakeBag& iMakeOther)
{
    const auto lEqual = [](BagSubject& oSubject) {
        oSubject.mNumber = oSubject.mBag->operator==(*oSubject.mOther) ? 1 : 0;
    };
    const auto lSubset = [](BagSubject& oSubject) {
        oSubject.mNumber = oSubject.mBag->IsSubset(oSubject.mOther.get()) ? 1 : 0;
    };
    oCases.push_back(OnBags("QTalBase::PropertyBag::operator==(const QTalBase::PropertyBag&) const", ipSituation, iMake,
                            iMakeOther, lEqual)
                         .MayNotAllocate());
    oCases.push_back(OnBags("QTalBase::PropertyBag::IsSubset(const QTalBase::PropertyBag*) const", ipSituation, iMake,
                            iMakeOther, lSubset)
                         .MayNotAllocate());
}

} // namespace Failures
