# Product sources, by subsystem folder. The entry (app/main.cpp) is kept out
# so that tests link everything else.
file(GLOB MAVU_CORE_SOURCES CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/app/*.cpp
    ${CMAKE_SOURCE_DIR}/events/*.cpp
    ${CMAKE_SOURCE_DIR}/video/*.cpp
    ${CMAKE_SOURCE_DIR}/filters/*.cpp
    ${CMAKE_SOURCE_DIR}/gps/*.cpp
    ${CMAKE_SOURCE_DIR}/persistence/*.cpp
    ${CMAKE_SOURCE_DIR}/ui/*.cpp)
list(REMOVE_ITEM MAVU_CORE_SOURCES ${CMAKE_SOURCE_DIR}/app/main.cpp)
