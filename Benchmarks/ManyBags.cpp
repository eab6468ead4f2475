// What the tool takes for 100,000 bags beside what the library takes for the same ones, in processor time:
//
//   many-bags build/release/Tools/TalBaseTool/talbase FOLDER [COUNT]
//
// Writes the bags into the folder, as JSON lines and as files of their own. The library's run reads the lines, and
// decodes, parses and renders each text; the tool's runs read the lines, or the files, whose reading is measured by
// cat. Each figure is the least of three runs.

#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"

#include "QBase/Convert.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

namespace fs = std::filesystem;

constexpr int gRuns = 3;

// A job as services hand it on: texts, a window, a nested bag in a nested bag; one in ten has a password.
std::string MakeText(unsigned int iNumber)
{
    const std::string lNumber = std::to_string(iNumber);
    std::string lText = "EndDelimiter***BeginDelimiter++++***Job++++" + lNumber + "***Subject++++Delivery " + lNumber +
                        " of the day &#43; copies***Sender++++post" + lNumber +
                        "@example.com***DeliveryWindow++++ 0, 1, 2, 3, 4, 5,22,23,***";
    lText += iNumber % 10 == 0 ? "FTPServerPassword++++secret" + lNumber + "***" : "";
    lText += "Transport++++Host++++ftp" + lNumber + ".example.com***Port++++21***Path++++/var/spool/" + lNumber +
             "***Route++++Via++++mx1***Port++++25*********Retry++++After++++10***Times++++3******";
    return lText;
}

void WriteBags(const fs::path& iFolder, unsigned int iCount)
{
    fs::remove_all(iFolder / "bags");
    std::ofstream lLines(iFolder / "bags.lines", std::ios::binary);
    for (unsigned int lNumber = 0; lNumber < iCount; ++lNumber)
    {
        const std::string lText = MakeText(lNumber);
        lLines << '"' << lText << "\"\n";
        const fs::path lIn = iFolder / "bags" / std::to_string(lNumber / 1000);
        fs::create_directories(lIn);
        std::ofstream(lIn / (std::to_string(lNumber) + ".bag"), std::ios::binary) << lText;
    }
}

void RunLibrary(const fs::path& iLines)
{
    const QTalBase::Initializer lInitializer;
    std::ifstream lLines(iLines, std::ios::binary);
    std::size_t lSize = 0;
    for (std::string lLine; std::getline(lLines, lLine);)
    {
        const std::wstring lText = QBase::UTF8ToWideChar(std::string_view(lLine).substr(1, lLine.size() - 2), true);
        const QBase::SmartPtrI<QTalBase::PropertyBag> lBag(QTalBase::CreatePropertyBag(lText.c_str()));
        lSize += lBag->GetString(true, nullptr, nullptr, true).GetLength();
    }
    std::fprintf(stderr, "%zu characters rendered\n", lSize);
}

// The processor time that a child takes, its own children included.
double Measure(const std::function<void()>& iRun)
{
    double lLeast = 1e9;
    for (int lRun = 0; lRun < gRuns; ++lRun)
    {
        const pid_t lChild = ::fork();
        if (lChild == 0)
        {
            iRun();
            std::_Exit(0);
        }
        rusage lUsage = {};
        int lStatus = 0;
        ::wait4(lChild, &lStatus, 0, &lUsage);
        if (lStatus != 0)
        {
            std::fprintf(stderr, "a run failed\n");
            std::exit(2);
        }
        const auto lSeconds = [](const timeval& iTime) {
            return static_cast<double>(iTime.tv_sec) + static_cast<double>(iTime.tv_usec) / 1e6;
        };
        lLeast = std::min(lLeast, lSeconds(lUsage.ru_utime) + lSeconds(lUsage.ru_stime));
    }
    return lLeast;
}

double MeasureShell(const std::string& iCommand)
{
    return Measure([&] {
        ::execl("/bin/sh", "sh", "-c", iCommand.c_str(), static_cast<char*>(nullptr));
        std::_Exit(127);
    });
}

} // namespace

int main(int iCount, char** ipArguments)
{
    if (iCount < 3)
    {
        std::fprintf(stderr, "usage: many-bags TALBASE FOLDER [COUNT]\n");
        return 2;
    }
    const std::string lTool = ipArguments[1];
    const fs::path lFolder = ipArguments[2];
    fs::create_directories(lFolder);
    WriteBags(lFolder, iCount > 3 ? static_cast<unsigned int>(std::atoi(ipArguments[3])) : 100000);
    const std::string lLines = (lFolder / "bags.lines").string();
    const std::string lFiles = (lFolder / "bags").string();
    const double lLibrary = Measure([&] { RunLibrary(lLines); });
    const double lCat = MeasureShell("find " + lFiles + " -type f -print0 | xargs -0 cat >/dev/null");
    std::printf("library %.3f s, cat of the files %.3f s\n", lLibrary, lCat);
    for (const char* lCommand : {"list", "to-json --lines"})
    {
        const std::string lRun = lTool + " " + lCommand;
        const double lAsLines = MeasureShell(lRun + " <" + lLines + " >/dev/null");
        const double lAsFiles = MeasureShell(lRun + " -r " + lFiles + " >/dev/null");
        std::printf("%-16s lines %.3f s, %.2f of the library; files %.3f s, %.2f of cat more\n", lCommand, lAsLines,
                    lAsLines / lLibrary, lAsFiles, (lAsFiles - lAsLines) / lCat);
    }
}
