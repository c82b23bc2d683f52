# The portable core: every .cpp directly inside a subsystem folder of src/ (never a win32/ folder).
set(MARQUILL_SUBSYSTEMS app clipboard hotkeys settings listfiles listwindow ui platform)
set(MARQUILL_CORE_SOURCES "")
foreach(dir IN LISTS MARQUILL_SUBSYSTEMS)
  file(GLOB _src CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${dir}/*.cpp)
  list(APPEND MARQUILL_CORE_SOURCES ${_src})
endforeach()

# One static library of the core per set of extra compile flags (plain, sanitized, fuzzing).
function(marquill_core_library name flags)
  add_library(${name} STATIC ${MARQUILL_CORE_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  if(flags)
    target_compile_options(${name} PUBLIC ${flags})
    target_link_options(${name} PUBLIC ${flags})
  endif()
endfunction()
