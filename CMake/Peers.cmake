# The libraries that the benchmarks compare with, each as an imported or built target Peers::<name>. A peer that is not
# there is left out, and the tables say so. `./dev bench` brings them all: packages, and in TALBASE_PEERS_DIR what
# CMake/PeersFetch.sh makes. All peers that are built here get the flags that the library gets.

set(TALBASE_PEERS_DIR "${PROJECT_BINARY_DIR}/peers" CACHE PATH "Where CMake/PeersFetch.sh put its peers")

# A peer that is headers only, found by one of them.
function(talbase_header_peer iName iHeader)
    find_path(TALBASE_PEER_${iName}_INCLUDE ${iHeader} HINTS ${ARGN})
    if(TALBASE_PEER_${iName}_INCLUDE)
        add_library(Peers::${iName} INTERFACE IMPORTED GLOBAL)
        target_include_directories(Peers::${iName} SYSTEM INTERFACE ${TALBASE_PEER_${iName}_INCLUDE})
    endif()
endfunction()

talbase_header_peer(RapidJson rapidjson/document.h)
talbase_header_peer(RapidXml rapidxml/rapidxml_print.hpp)
talbase_header_peer(Nlohmann nlohmann/json.hpp)
talbase_header_peer(Boost boost/json/src.hpp ${TALBASE_PEERS_DIR}/boost)

talbase_header_peer(JsonCpp json/json.h PATH_SUFFIXES jsoncpp)
find_library(TALBASE_PEER_JsonCpp_LIBRARY jsoncpp)
if(TARGET Peers::JsonCpp)
    target_link_libraries(Peers::JsonCpp INTERFACE ${TALBASE_PEER_JsonCpp_LIBRARY})
endif()

if(EXISTS ${TALBASE_PEERS_DIR}/pugixml/src/pugixml.cpp)
    add_library(PeersPugiXml STATIC EXCLUDE_FROM_ALL ${TALBASE_PEERS_DIR}/pugixml/src/pugixml.cpp)
    target_compile_definitions(PeersPugiXml PUBLIC PUGIXML_WCHAR_MODE)
    target_include_directories(PeersPugiXml SYSTEM PUBLIC ${TALBASE_PEERS_DIR}/pugixml/src)
    # And with narrow characters, by another name, because both are in one program.
    add_library(PeersPugiXmlChar STATIC EXCLUDE_FROM_ALL ${TALBASE_PEERS_DIR}/pugixml/src/pugixml.cpp)
    target_compile_definitions(PeersPugiXmlChar PRIVATE pugi=pugichar)
    target_link_libraries(PeersPugiXml PUBLIC PeersPugiXmlChar)
    add_library(Peers::PugiXml ALIAS PeersPugiXml)
endif()
