# Product sources, by subsystem folder. The entry (app/main.cpp) is kept out
# so that tests link everything else.
file(GLOB MAVU_CORE_SOURCES CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/app/*.cpp
    ${CMAKE_SOURCE_DIR}/events/*.cpp
    ${CMAKE_SOURCE_DIR}/video/*.cpp
    ${CMAKE_SOURCE_DIR}/gps/*.cpp
    ${CMAKE_SOURCE_DIR}/persistence/*.cpp
    ${CMAKE_SOURCE_DIR}/ui/*.cpp)
list(REMOVE_ITEM MAVU_CORE_SOURCES ${CMAKE_SOURCE_DIR}/app/main.cpp)

# The filter base layer and the program's own filters: also linked into the
# synthetic camera DLL, so kept apart from the rest.
file(GLOB MAVU_FILTER_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/filters/*.cpp)
