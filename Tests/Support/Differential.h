// Does the same random operations on bags of the library and on bags of the plain implementation, and says where the
// two can be told apart: by a result, an exception's class or text, or the state of any live bag afterwards.

#ifndef TALBASE_TESTS_SUPPORT_DIFFERENTIAL_H
#define TALBASE_TESTS_SUPPORT_DIFFERENTIAL_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

namespace TalBaseTest
{

// Where the choices come from: a seeded generator, or the bytes of a fuzzer.
class Choices
{
public:
    virtual ~Choices() = default;

    // Returns a number below iLimit, which is at most 256.
    virtual unsigned int Below(unsigned int iLimit) = 0;

    // Whether there is nothing more to choose from.
    virtual bool IsAtEnd() const = 0;
};

class RandomChoices : public Choices
{
public:
    explicit RandomChoices(std::uint64_t iSeed);
    unsigned int Below(unsigned int iLimit) override;
    bool IsAtEnd() const override;

private:
    std::mt19937_64 mEngine;
};

class ByteChoices : public Choices
{
public:
    ByteChoices(const std::uint8_t* ipBytes, std::size_t iSize);
    unsigned int Below(unsigned int iLimit) override;
    bool IsAtEnd() const override;

private:
    const std::uint8_t* mBytes;
    std::size_t mLeft;
};

// Does up to iOperations operations. Returns the empty text, or what was done and where the two differ.
std::string FindDifference(Choices& iChoices, std::size_t iOperations);

} // namespace TalBaseTest

#endif
