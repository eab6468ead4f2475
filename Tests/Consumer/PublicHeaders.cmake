# The target public-headers compiles every public header alone and first in its translation unit, as each language
# version that a client may use. The headers are those that the libraries install; there is no second list.
get_property(lLibraries GLOBAL PROPERTY TALBASE_LIBRARIES)
get_property(lHeaders GLOBAL PROPERTY TALBASE_PUBLIC_HEADERS)
add_custom_target(public-headers)
set(lSources "")
foreach(lHeader IN LISTS lHeaders)
    string(REPLACE "/" "_" lName ${lHeader})
    set(lSource ${CMAKE_CURRENT_BINARY_DIR}/PublicHeaders/${lName}.cpp)
    # Twice, since a header without a guard compiles once.
    file(CONFIGURE OUTPUT ${lSource} CONTENT "#include \"${lHeader}\"\n#include \"${lHeader}\"\n" @ONLY)
    list(APPEND lSources ${lSource})
endforeach()
foreach(lStandard IN ITEMS 17 20 23)
    add_library(public-headers-${lStandard} OBJECT EXCLUDE_FROM_ALL ${lSources})
    set_target_properties(public-headers-${lStandard} PROPERTIES
        CXX_STANDARD ${lStandard} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
    target_link_libraries(public-headers-${lStandard} PRIVATE ${lLibraries})
    talbase_warnings(public-headers-${lStandard})
    add_dependencies(public-headers public-headers-${lStandard})
endforeach()
