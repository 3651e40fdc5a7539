# Warnings are errors in our own code; third-party headers come in as system headers.
function(corecommon_strict_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
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
