#include "TalBase/SensitiveNames.h"

#include "QBase/SmartPtrI.h"
#include "TalBase/PropertyBag.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

std::vector<std::wstring> Names()
{
    std::vector<std::wstring> lNames;
    for (const wchar_t* const* lName = QTalBase::GetSensitiveNames(); *lName != nullptr; ++lName)
    {
        lNames.emplace_back(*lName);
    }
    return lNames;
}

} // namespace

TEST(SensitiveNames, AreTheseInThisOrder)
{
    EXPECT_EQ(Names(), std::vector<std::wstring>{L"FTPServerPassword"});
    EXPECT_EQ(QTalBase::GetSensitiveNames(), QTalBase::GetSensitiveNames());
}

TEST(SensitiveNames, AreThoseThatATextWithoutThemLacks)
{
    for (const std::wstring& lName : Names())
    {
        const QBase::SmartPtrI<QTalBase::PropertyBag> lBag(QTalBase::CreatePropertyBag());
        lBag->SetProperty(lName.c_str(), L"x", false);
        lBag->SetProperty((lName + L"2").c_str(), L"y", false);
        EXPECT_EQ(std::wstring(lBag->GetStringWithoutSensitiveInfo(false, nullptr, nullptr).c_str()),
                  lName + L"2++++y***");
    }
}
