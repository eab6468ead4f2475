// What every fuzzer defines: one test of the bytes that the fuzzing engine, or the replay, chose.

#ifndef TALBASE_FUZZ_SUPPORT_TARGET_H
#define TALBASE_FUZZ_SUPPORT_TARGET_H

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize);

#endif
