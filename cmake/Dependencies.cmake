# Libraries from outside. wx headers count as system headers, so that -Werror judges only our code.

set(wxWidgets_EXCLUDE_COMMON_LIBRARIES TRUE)

# Makes the imported-style interface target `name` from a set of wx libraries.
function(om_find_wx name)
  find_package(wxWidgets 3.2 REQUIRED COMPONENTS ${ARGN})
  # wx-config adds this for a set without windows; it would reach the windows through the lower layers.
  list(REMOVE_ITEM wxWidgets_DEFINITIONS wxUSE_GUI=0)
  add_library(${name} INTERFACE)
  target_include_directories(${name} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(${name} INTERFACE ${wxWidgets_DEFINITIONS}
                             $<$<CONFIG:Debug>:${wxWidgets_DEFINITIONS_DEBUG}>)
  separate_arguments(flags UNIX_COMMAND "${wxWidgets_CXX_FLAGS}")
  target_compile_options(${name} INTERFACE ${flags})
  target_link_libraries(${name} INTERFACE ${wxWidgets_LIBRARIES})
endfunction()

om_find_wx(om_wx_base base)
om_find_wx(om_wx_xml xml base)
om_find_wx(om_wx_gui aui html xml core base)

find_package(FLEX REQUIRED)
find_package(BISON 3.8 REQUIRED)
find_package(Threads REQUIRED)
if(OM_TESTS)
  find_package(GTest REQUIRED)
  find_package(benchmark REQUIRED)
endif()
