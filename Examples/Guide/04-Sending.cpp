// A job goes from one process to another.

#include "Job.h"

#include "TalBase/Bytes.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// [sending]
// One job for each connection: the text does not say how long it is, so here it ends where the connection ends.
void Send(std::FILE* ipConnection, const QTalBase::PropertyBag& iJob)
{
    const std::string lBytes = QTalBase::PropertyBagToUTF8(iJob);
    std::fwrite(lBytes.data(), 1, lBytes.size(), ipConnection);
}

BagPtr Receive(std::FILE* ipConnection)
{
    std::string lBytes;
    char lPiece[1024];
    while (const std::size_t lSize = std::fread(lPiece, 1, sizeof(lPiece), ipConnection))
    {
        lBytes.append(lPiece, lSize);
    }
    return BagPtr(QTalBase::CreatePropertyBagFromUTF8(lBytes));
}
// [sending]

int main()
{
    const QTalBase::Initializer lInitializer;
    int lPipe[2];
    if (::pipe(lPipe) != 0)
    {
        return EXIT_FAILURE;
    }
    const pid_t lReceiver = ::fork();
    if (lReceiver == 0)
    {
        ::close(lPipe[1]);
        std::FILE* lConnection = ::fdopen(lPipe[0], "r");
        const BagPtr lJob = Receive(lConnection);
        std::fclose(lConnection);
        std::printf("received a job for %ls by way of %ls\n", lJob->GetProperty(L"Recipient").c_str(),
                    QTalBase::GetValueAt(*lJob, L"Transport/Host").c_str());
        return EXIT_SUCCESS;
    }
    ::close(lPipe[0]);
    std::FILE* lConnection = ::fdopen(lPipe[1], "w");
    Send(lConnection, *MakeJob(L"ann@north.example", L"Timetable"));
    std::fclose(lConnection);
    int lStatus = EXIT_FAILURE;
    ::waitpid(lReceiver, &lStatus, 0);
    return lStatus;
}
