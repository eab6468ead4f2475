# How every target of the project is made: one place for warnings, visibility, output names and the installed package.

# Warnings for our own code only; a project that embeds us never inherits them.
function(talbase_warnings iTarget)
    target_compile_options(${iTarget} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(TALBASE_WERROR)
        target_compile_options(${iTarget} PRIVATE -Werror)
    endif()
endfunction()

# A shared library of the family.
#   talbase_library(Q8Base ALIAS Q8::Base OUTPUT Q8Base4 SOVERSION 4 SOURCES ... HEADERS ... LINK ...)
# HEADERS are the public headers, relative to BASE_DIR, and are what is installed.
function(talbase_library iTarget)
    cmake_parse_arguments(PARSE_ARGV 1 i "" "ALIAS;OUTPUT;SOVERSION;BASE_DIR;EXPORT_NAME" "SOURCES;HEADERS;LINK")
    add_library(${iTarget} SHARED ${i_SOURCES})
    add_library(${i_ALIAS} ALIAS ${iTarget})
    target_compile_features(${iTarget} PRIVATE cxx_std_20 INTERFACE cxx_std_17)
    set_target_properties(${iTarget} PROPERTIES
        OUTPUT_NAME ${i_OUTPUT}
        EXPORT_NAME ${i_EXPORT_NAME}
        VERSION ${i_SOVERSION}.0.0
        SOVERSION ${i_SOVERSION}
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        INSTALL_RPATH "$ORIGIN") # the family lies in one folder: a client links one and finds the others beside it
    target_include_directories(${iTarget} PUBLIC
        $<BUILD_INTERFACE:${i_BASE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${iTarget} PUBLIC ${i_LINK})
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize") # a sanitizer's own symbols stay open in a shared library
        target_link_options(${iTarget} PRIVATE LINKER:--no-undefined)
    endif()
    target_link_options(${iTarget} PRIVATE LINKER:--version-script=${PROJECT_SOURCE_DIR}/CMake/Exports.map)
    set_target_properties(${iTarget} PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/CMake/Exports.map)
    # Calls inside a library need not go through its table of symbols: nobody replaces a single function of it. clang
    # assumes so by itself.
    target_compile_options(${iTarget} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
    talbase_warnings(${iTarget})
    target_sources(${iTarget} PUBLIC FILE_SET HEADERS BASE_DIRS ${i_BASE_DIR} FILES ${i_HEADERS})
    set_property(GLOBAL APPEND PROPERTY TALBASE_LIBRARIES ${iTarget})
    foreach(lHeader IN LISTS i_HEADERS)
        file(RELATIVE_PATH lName ${i_BASE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/${lHeader})
        set_property(GLOBAL APPEND PROPERTY TALBASE_PUBLIC_HEADERS ${lName})
    endforeach()
    string(REGEX REPLACE "::.*" "" lFamily ${i_ALIAS}) # Q8 or TalBase: the namespace that the target is installed with
    install(TARGETS ${iTarget} EXPORT ${lFamily}Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
    talbase_install_pkgconfig(${iTarget})
endfunction()

# The file that `pkg-config talbase` reads, and one for each library of the family: q8base, q8datatype and so on. Reads
# the arguments of talbase_library, which calls it. The files find the prefix from where they lie, so that it can be
# moved, unless a folder was given as an absolute path.
function(talbase_install_pkgconfig iTarget)
    set(lPrefix ${CMAKE_INSTALL_PREFIX})
    set(lLibraries ${CMAKE_INSTALL_FULL_LIBDIR})
    set(lHeaders ${CMAKE_INSTALL_FULL_INCLUDEDIR})
    if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR} AND NOT IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
        file(RELATIVE_PATH lWayUp /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
        string(REGEX REPLACE "/$" "" lWayUp ${lWayUp})
        set(lPrefix "\${pcfiledir}/${lWayUp}")
        set(lLibraries "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
        set(lHeaders "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
    endif()
    set(lVersion ${i_SOVERSION}.0.0)
    set(lDescription "A library of the platform family beneath TalBase")
    if(${iTarget} STREQUAL PROJECT_NAME)
        set(lVersion ${PROJECT_VERSION})
        set(lDescription ${PROJECT_DESCRIPTION})
    endif()
    string(REPLACE "::" "" lRequires "${i_LINK}")
    string(TOLOWER "${lRequires}" lRequires)
    string(JOIN " " lRequires ${lRequires})
    string(TOLOWER ${iTarget} lName)
    configure_file(${PROJECT_SOURCE_DIR}/CMake/PkgConfig.pc.in ${PROJECT_BINARY_DIR}/pkgconfig/${lName}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${lName}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# The CMake package that find_package(TalBase) reads.
function(talbase_install_package)
    set(lDestination ${CMAKE_INSTALL_LIBDIR}/cmake/TalBase)
    configure_package_config_file(${PROJECT_SOURCE_DIR}/CMake/TalBaseConfig.cmake.in
        ${PROJECT_BINARY_DIR}/TalBaseConfig.cmake INSTALL_DESTINATION ${lDestination})
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/TalBaseConfigVersion.cmake
        VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/TalBaseConfig.cmake ${PROJECT_BINARY_DIR}/TalBaseConfigVersion.cmake
        DESTINATION ${lDestination} COMPONENT development)
    foreach(lFamily IN ITEMS Q8 TalBase)
        install(EXPORT ${lFamily}Targets NAMESPACE ${lFamily}:: DESTINATION ${lDestination} COMPONENT development)
    endforeach()
endfunction()
