# Finds GNUstep Base through gnustep-config and defines the interface target
# Rovani::GNUstep that carries its Objective-C++ flags and libraries.

find_program(GNUSTEP_CONFIG gnustep-config REQUIRED)

execute_process(COMMAND ${GNUSTEP_CONFIG} --objc-flags
                OUTPUT_VARIABLE _gs_objc_flags OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND ${GNUSTEP_CONFIG} --base-libs
                OUTPUT_VARIABLE _gs_base_libs OUTPUT_STRIP_TRAILING_WHITESPACE)
separate_arguments(_gs_objc_flags UNIX_COMMAND "${_gs_objc_flags}")
separate_arguments(_gs_base_libs UNIX_COMMAND "${_gs_base_libs}")

# gnustep-config speaks for a make-based build; dependency files, debug and
# optimisation levels, warnings and "-I." are this project's own business.
set(_gs_compile_flags "")
foreach(flag IN LISTS _gs_objc_flags)
  if(flag MATCHES "^-(MMD|MP|g|O[0-9s]?|Wall|I\\.)$")
    continue()
  endif()
  list(APPEND _gs_compile_flags ${flag})
endforeach()

# Library words must follow the objects on the link line, so -l/-L go to
# target_link_libraries and the rest to link options.
set(_gs_link_libs "")
set(_gs_link_options "")
foreach(flag IN LISTS _gs_base_libs)
  if(flag MATCHES "^-[lL]")
    list(APPEND _gs_link_libs ${flag})
  else()
    list(APPEND _gs_link_options ${flag})
  endif()
endforeach()

# objc/objc.h lives in GCC's own include directory.
execute_process(COMMAND gcc -print-file-name=include
                OUTPUT_VARIABLE _gcc_include OUTPUT_STRIP_TRAILING_WHITESPACE)

add_library(RovaniGNUstep INTERFACE)
add_library(Rovani::GNUstep ALIAS RovaniGNUstep)
target_compile_options(RovaniGNUstep INTERFACE
  $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc -fconstant-string-class=NSConstantString
    -fobjc-exceptions -fexceptions ${_gs_compile_flags} -isystem ${_gcc_include}
    -Wno-deprecated-declarations>)
target_link_options(RovaniGNUstep INTERFACE ${_gs_link_options})
target_link_libraries(RovaniGNUstep INTERFACE ${_gs_link_libs})
