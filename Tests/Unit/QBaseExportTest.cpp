#include "QBase/Export.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>

namespace
{

// Operations of each library, by the names that a client's object file asks for. No data: a program may hold a copy of
// that itself.
struct Exported
{
    const char* mSymbol;
    const char* mLibrary;
};

const Exported gExported[] = {
    {"_ZN5QBase7Message10SetMessageEPKw", "libQ8Base4.so.4"},
    {"_ZN5QBase16ReferenceCountedD2Ev", "libQ8Base4.so.4"},
    {"_ZN14QSerialization14ReadDataStreamD2Ev", "libQ8Base4.so.4"},
    {"_ZN6QSynch11InitializerC1Ev", "libQ8Synch4.so.4"},
    {"_ZN4QLog12CreateRouterEPKcS1_i", "libQ8Log2.so.2"},
    {"_ZN9QDataType22CreateStringCollectionEv", "libQ8DatTy4.so.4"},
    {"_ZN14QSerialization21MemoryWriteDataStreamC1Ev", "libQ8Stream1.so.1"},
};

std::string LibraryOf(const char* ipSymbol)
{
    const void* lAddress = ::dlsym(RTLD_DEFAULT, ipSymbol);
    Dl_info lInfo{};
    if (lAddress == nullptr || ::dladdr(lAddress, &lInfo) == 0)
    {
        return "none";
    }
    const std::string lPath = lInfo.dli_fname;
    return lPath.substr(lPath.rfind('/') + 1);
}

TEST(Export, OperationsOfTheFamilyComeFromTheirOwnLibraries)
{
    for (const Exported& lExported : gExported)
    {
        EXPECT_EQ(lExported.mLibrary, LibraryOf(lExported.mSymbol)) << lExported.mSymbol;
    }
}

TEST(Export, WhatIsNotMarkedIsHidden)
{
    EXPECT_EQ("none", LibraryOf("_ZN5QBase5ThrowINS_7MessageEEEvPKw"));
    EXPECT_EQ("none", LibraryOf("_ZN5QBase5ThrowIN14QSerialization15StreamExceptionEEEvPKw"));
}

} // namespace
