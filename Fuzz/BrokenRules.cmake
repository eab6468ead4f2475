# Shows that the replays find what they are for: each of these programs has one rule of the library broken, and its replay
# must say so. Where a line that is broken here has changed, name another one.

#   talbase_broken_rule(Name FUZZER fuzzer FILE file FROM text TO text)
# Replaces the text in the file of the library and replays the fuzzer's corpus with that.
function(talbase_broken_rule iName)
    cmake_parse_arguments(PARSE_ARGV 1 i "" "FUZZER;FILE;FROM;TO" "")
    set(lFile ${PROJECT_SOURCE_DIR}/${i_FILE})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lFile})
    file(READ ${lFile} lText)
    string(REPLACE "${i_FROM}" "${i_TO}" lBroken "${lText}")
    if(lBroken STREQUAL lText)
        message(FATAL_ERROR "Fuzz/BrokenRules.cmake: ${i_FILE} has no '${i_FROM}'")
    endif()
    set(lSource ${CMAKE_CURRENT_BINARY_DIR}/BrokenRules/${iName}.cpp)
    file(CONFIGURE OUTPUT ${lSource} CONTENT "@lBroken@" @ONLY)
    # The broken file comes first, so nothing takes its functions from the library.
    add_executable(${iName}Broken ${lSource} Support/Replay.cpp)
    target_include_directories(${iName}Broken PRIVATE ${PROJECT_SOURCE_DIR}/Platform)
    target_link_libraries(${iName}Broken PRIVATE ${i_FUZZER}Test FuzzSupport TalBaseInside)
    add_test(NAME Fuzz.BrokenRule.${iName}
        COMMAND ${iName}Broken ${CMAKE_CURRENT_SOURCE_DIR}/Corpus/${i_FUZZER})
    set_tests_properties(Fuzz.BrokenRule.${iName} PROPERTIES PASS_REGULAR_EXPRESSION "A RULE IS BROKEN")
endfunction()

# A bag that is merged into itself takes the wrong values.
talbase_broken_rule(MergeIntoItself FUZZER BagOperations FILE TalBase/BagMerger.cpp
    FROM "mBag.mValues.GetValue(2 * lStep)" TO "mBag.mValues.GetValue(lStep)")
# A header with an empty begin delimiter is accepted.
talbase_broken_rule(EmptyBeginDelimiter FUZZER BagText FILE TalBase/Delimiters.cpp
    FROM "lBeginStop <= lBeginStart" TO "lBeginStop < lBeginStart")
# A text is checked without the bags that its header's delimiters ask for.
talbase_broken_rule(CheckWithoutBags FUZZER BagText FILE TalBase/TextCheck.cpp
    FROM "ipForeign != nullptr || !IsEveryNestFinal(lPair)" TO "false")
# A value that is there is remarked on as an empty one.
talbase_broken_rule(RemarkWithoutLoss FUZZER BagText FILE TalBase/TextCheck.cpp
    FROM "mBuilder->Plain(iName, iValue, iMayContainStart)"
    TO "mBuilder->Plain(iName, iValue, iMayContainStart), Empty(iName)")
# The shortest tail is not remarked on.
talbase_broken_rule(ShortTail FUZZER BagText FILE TalBase/TextCheck.cpp
    FROM "!lTail.empty()" TO "lTail.size() > 1")
# The smallest int is read as the second smallest.
talbase_broken_rule(SmallestInt FUZZER Conversions FILE Platform/QBase/Convert.cpp
    FROM "(lIsNegative ? 1 : 0)" TO "0")
# A leap second is accepted in every minute.
talbase_broken_rule(LeapSecond FUZZER DateTimes FILE Platform/QDataType/DateTime.cpp
    FROM "(lTime.mIsLeapSecond && !IsFirstOfMonth(lSeconds))" TO "(false && !IsFirstOfMonth(lSeconds))")
# An opening brace need not be closed.
talbase_broken_rule(ClosingBrace FUZZER Identifiers FILE Platform/QBase/Guid.cpp
    FROM "L\"}\" : L\"\"" TO "L\"\" : L\"\"")
# A flag may be anything.
talbase_broken_rule(Flag FUZZER Streams FILE Platform/QSerialization/MemoryDataStream.cpp
    FROM "Require(lFlag <= 1, gNoFlag)" TO "Require(true, gNoFlag)")
# Memory is taken for as many strings as the bytes claim to hold.
talbase_broken_rule(ClaimedCount FUZZER Streams FILE TalBase/SerializableStringCollectionImpl.cpp
    FROM "iStream.ReadUInt64(lCount)" TO "iStream.ReadUInt64(lCount), std::wstring().reserve(lCount % 1000000000)")
# The second byte of a sequence may make it a surrogate.
talbase_broken_rule(SurrogateBytes FUZZER Utf8 FILE Platform/QBase/Convert.cpp
    FROM "iFirst == 0xED ? 0x9F : 0xBF" TO "0xBF")
# A range past midnight leaves out the first hour.
talbase_broken_rule(Midnight FUZZER WindowText FILE TalBase/DeliveryWindowImpl.cpp
    FROM "hSetBlocks(0, iEnd, iEnable)" TO "hSetBlocks(1, iEnd, iEnable)")
