// CreateGUID with a random source that is interrupted, gives little at a time, or fails. This program's own getrandom
// takes the place of the system's, so it is a program of its own.

#include "QBase/Guid.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace
{

// One answer of the source: so many bytes, or a failure with an errno.
struct Answer
{
    std::size_t mBytes;
    int mError;
};

const Answer gInterrupted = {0, EINTR};
const std::size_t gAll = 1000; // as many bytes as are asked for

// What the source answers, call by call, and what it was asked.
struct Source
{
    std::vector<Answer> mAnswers;
    std::vector<std::size_t> mAsked;
    unsigned int mFlags = 0;
    unsigned int mNextByte = 0; // it gives 00 01 02 ... unless mStep is 0
    unsigned int mStep = 1;
};

Source gSource;

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name of the system's own function
extern "C" ssize_t getrandom(void* opBytes, std::size_t iSize, unsigned int iFlags)
{
    gSource.mFlags |= iFlags;
    gSource.mAsked.push_back(iSize);
    if (gSource.mAsked.size() > gSource.mAnswers.size())
    {
        errno = ENOSYS;
        return -1;
    }
    const Answer lAnswer = gSource.mAnswers[gSource.mAsked.size() - 1];
    if (lAnswer.mError != 0)
    {
        errno = lAnswer.mError;
        return -1;
    }
    const std::size_t lSize = lAnswer.mBytes < iSize ? lAnswer.mBytes : iSize;
    auto* lBytes = static_cast<std::uint8_t*>(opBytes);
    for (std::size_t lIndex = 0; lIndex < lSize; ++lIndex)
    {
        lBytes[lIndex] = static_cast<std::uint8_t>(gSource.mNextByte);
        gSource.mNextByte += gSource.mStep;
    }
    return static_cast<ssize_t>(lSize);
}

namespace
{

const _GUID gBefore = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

_GUID CreateFrom(const std::vector<Answer>& iAnswers)
{
    gSource = Source();
    gSource.mAnswers = iAnswers;
    _GUID lGuid = gBefore;
    QBase::CreateGUID(lGuid);
    return lGuid;
}

std::wstring TextFrom(const std::vector<Answer>& iAnswers)
{
    return Support::Text(QBase::Guid2String(CreateFrom(iAnswers)));
}

TEST(CreateGUIDRandomSource, OneAnswerGivesAllButVersionAndVariant)
{
    EXPECT_EQ(TextFrom({{gAll, 0}}), L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_EQ(gSource.mAsked, std::vector<std::size_t>{16});
    EXPECT_EQ(gSource.mFlags, 0U); // it waits for the source rather than fail early after the machine's start
}

TEST(CreateGUIDRandomSource, EveryBitButVersionAndVariantIsTheSources)
{
    gSource = Source();
    gSource.mAnswers = {{gAll, 0}, {gAll, 0}};
    gSource.mStep = 0;
    _GUID lGuid = gBefore;
    QBase::CreateGUID(lGuid);
    EXPECT_STREQ(QBase::Guid2String(lGuid).c_str(), L"00000000-0000-4000-8000-000000000000");
    gSource.mNextByte = 0xFF;
    QBase::CreateGUID(lGuid);
    EXPECT_STREQ(QBase::Guid2String(lGuid).c_str(), L"ffffffff-ffff-4fff-bfff-ffffffffffff");
}

TEST(CreateGUIDRandomSource, ShortAnswersAreContinuedWhereTheyEnd)
{
    EXPECT_EQ(TextFrom({{1, 0}, {6, 0}, {8, 0}, {gAll, 0}}), L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_EQ(gSource.mAsked, (std::vector<std::size_t>{16, 15, 9, 1}));
    EXPECT_EQ(TextFrom(std::vector<Answer>(16, Answer{1, 0})), L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_EQ(gSource.mAsked.size(), 16U);
}

TEST(CreateGUIDRandomSource, InterruptionsAreRepeated)
{
    EXPECT_EQ(TextFrom({gInterrupted, gInterrupted, {5, 0}, gInterrupted, {gAll, 0}}),
              L"00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_EQ(gSource.mAsked, (std::vector<std::size_t>{16, 16, 16, 11, 11}));
}

TEST(CreateGUIDRandomSource, FailuresThrowAndLeaveTheTarget)
{
    const std::vector<Answer> lFailures[] = {
        {{0, ENOSYS}},       {{0, EAGAIN}},
        {{0, EFAULT}},       {{0, 0}}, // no byte and no error would be asked for ever
        {{15, 0}, {0, EIO}}, {gInterrupted, {15, 0}, {0, 0}},
    };
    for (const std::vector<Answer>& lAnswers : lFailures)
    {
        gSource = Source();
        gSource.mAnswers = lAnswers;
        _GUID lGuid = gBefore;
        EXPECT_MESSAGE(QBase::CreateGUID(lGuid), QBase::Message, L"QBase::CreateGUID; The random source failed");
        EXPECT_EQ(lGuid, gBefore);
        EXPECT_EQ(gSource.mAsked.size(), lAnswers.size());
    }
}

} // namespace
