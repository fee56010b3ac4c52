# ROVANI_SANITIZE: every target is built and linked with AddressSanitizer and
# UndefinedBehaviorSanitizer. The library links with --no-undefined, so the
# sanitizer runtime is the shared one (-shared-libasan), which also carries
# UBSan's; programs find it through their rpath.
set(_rovani_sanitizers -fsanitize=address,undefined)
add_compile_options(${_rovani_sanitizers} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
add_link_options(${_rovani_sanitizers} -shared-libasan)

execute_process(COMMAND ${ROVANI_CLANGXX} -print-file-name=libclang_rt.asan-x86_64.so
                OUTPUT_VARIABLE _rovani_asan_runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT EXISTS "${_rovani_asan_runtime}")
  message(FATAL_ERROR "ROVANI_SANITIZE needs clang's sanitizer runtime (libclang-rt-14-dev)")
endif()
get_filename_component(_rovani_asan_dir "${_rovani_asan_runtime}" DIRECTORY)
add_link_options(-Wl,-rpath,${_rovani_asan_dir})
