# Product sources by layer. The entry (app/main.cpp) is kept out so that
# tests link everything else.

# The bottom layer: includes nothing of the project.
file(GLOB MAVU_BASE_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/base/*.cpp)

# The filter base layer and the program's own filters: also linked into the
# synthetic camera DLL, so kept apart from the rest.
file(GLOB MAVU_FILTER_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/filters/*.cpp)

# The engine: devices, graphs, the options and their file, the GPS link. No
# window of the program's own; a program that links it supplies the report
# channel (ReportUserMessage).
file(GLOB MAVU_ENGINE_SOURCES CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/persistence/*.cpp
    ${CMAKE_SOURCE_DIR}/video/*.cpp
    ${CMAKE_SOURCE_DIR}/gps/*.cpp)

# The application above it: events, windows, start-up and commands.
file(GLOB MAVU_CORE_SOURCES CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/app/*.cpp
    ${CMAKE_SOURCE_DIR}/events/*.cpp
    ${CMAKE_SOURCE_DIR}/ui/*.cpp)
list(REMOVE_ITEM MAVU_CORE_SOURCES ${CMAKE_SOURCE_DIR}/app/main.cpp)
