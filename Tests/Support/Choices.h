// Where the choices of random tests come from: a seeded generator, or the bytes of a fuzzer.

#ifndef TESTS_SUPPORT_CHOICES_H
#define TESTS_SUPPORT_CHOICES_H

#include <cstddef>
#include <cstdint>
#include <random>

namespace Support
{

class Choices
{
public:
    virtual ~Choices() = default;

    // Returns a number below iLimit, which is at least 1 and at most 256.
    virtual unsigned int Below(unsigned int iLimit) = 0;

    // Says that the choices of another step follow. Returns whether there are any.
    virtual bool NextStep() = 0;

    // Returns whether it is the case that happens once in iTimes.
    bool Once(unsigned int iTimes)
    {
        return Below(iTimes) == 0;
    }
};

class RandomChoices : public Choices
{
public:
    explicit RandomChoices(std::uint64_t iSeed);
    unsigned int Below(unsigned int iLimit) override;
    bool NextStep() override;

private:
    std::mt19937_64 mEngine;
};

// Bytes in records, one for each step, so that inserting, removing and moving records inserts, removes and moves steps
// and leaves the others what they are. The first bytes of a record are choices; the last four are the seed of all
// further ones.
class RecordChoices : public Choices
{
public:
    static constexpr std::size_t gDirect = 12;
    static constexpr std::size_t gRecord = gDirect + 4;

    // A last record may be shorter: the rest of it is zeros. The bytes must outlive the choices.
    RecordChoices(const std::uint8_t* ipBytes, std::size_t iSize);
    unsigned int Below(unsigned int iLimit) override;
    bool NextStep() override;

private:
    const std::uint8_t* mBytes;
    std::size_t mLeft;
    std::uint8_t mRecord[gRecord] = {};
    std::size_t mUsed = 0;
    std::uint32_t mSeed = 0;
};

} // namespace Support

#endif
