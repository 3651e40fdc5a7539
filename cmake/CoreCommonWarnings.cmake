# Our targets warn; warnings become errors only where they help us (CI and developer builds
# turn CORECOMMON_WARNINGS_AS_ERRORS on), never in a host's or packager's build, whose
# compiler may warn about things ours does not. Third-party headers come in as system headers.
option(CORECOMMON_WARNINGS_AS_ERRORS "Treat compiler warnings in the project's own code as errors" OFF)

function(corecommon_strict_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(CORECOMMON_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# Collects the sources of a library folder, leaving out the other platform's folder.
function(corecommon_collect_sources out_var dir)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS "${dir}/*.cpp" "${dir}/*.h")
  if(WIN32)
    list(FILTER found EXCLUDE REGEX "/Linux/")
  else()
    list(FILTER found EXCLUDE REGEX "/Windows/")
  endif()
  set(${out_var} ${found} PARENT_SCOPE)
endfunction()
